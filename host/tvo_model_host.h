// What tvo adds to a model file.
#pragma once
#include "host/models/model_host.h"

/// tvo's own components in model files.
class TvoModelHost : public ModelHost {};
