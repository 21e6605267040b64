#include "store/QuorlStore.h"
