// Everything a host needs, in one include.
#pragma once
#include "platform/containers.h"
#include "platform/string.h"
#include "platform/win_types.h"
