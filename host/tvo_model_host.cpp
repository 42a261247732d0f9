#include "host/tvo_model_host.h"
