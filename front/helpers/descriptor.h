#pragma once

#include "platform/descriptor.h"
