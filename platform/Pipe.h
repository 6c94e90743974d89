// Now a part of:
#pragma once

#include "platform/Descriptor.h"
