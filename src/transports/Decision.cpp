#include "transports/Decision.h"
