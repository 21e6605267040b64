#include "store/SupportPaths.h"
