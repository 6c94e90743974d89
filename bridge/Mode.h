// Now a part of:
#pragma once

#include "bridge/DetectorSettings.h"
