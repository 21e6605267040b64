#include "api/QuorlAPI.h"
