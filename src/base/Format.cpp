#include "base/Format.h"
