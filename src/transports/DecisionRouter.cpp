#include "transports/DecisionRouter.h"
