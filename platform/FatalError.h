// Now a part of:
#pragma once

#include "platform/Console.h"
