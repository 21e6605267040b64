#include "decision/DecisionQuestion.h"
