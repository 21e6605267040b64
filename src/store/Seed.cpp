#include "store/Seed.h"
