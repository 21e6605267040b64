#include "transports/HTTPJSON.h"
