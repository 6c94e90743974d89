// Now a part of:
#pragma once

#include "platform/Queues.h"
