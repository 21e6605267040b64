#include "api/RequestParser.h"
