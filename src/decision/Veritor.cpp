#include "decision/Veritor.h"
