#include "store/SecretStore.h"
