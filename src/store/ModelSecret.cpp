#include "store/ModelSecret.h"
