// SPDX-License-Identifier: MIT
// What the driver's shader compiler can do.
#pragma once

#include "translator.h"

/// Asks the driver; a context must be current.
DriverAbilities readDriverAbilities();
