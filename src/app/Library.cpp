#include "app/Library.h"
