#include "transports/HTTPSession.h"
