#include "app/Workers.h"
