#include "app/AppModel.h"
