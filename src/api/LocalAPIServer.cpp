#include "api/LocalAPIServer.h"
