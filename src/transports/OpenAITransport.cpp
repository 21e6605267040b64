#include "transports/OpenAITransport.h"
