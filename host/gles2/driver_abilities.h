// SPDX-License-Identifier: MIT
// What the driver can do.
#pragma once

#include "translator.h"

/// Asks the driver; a context must be current.
DriverAbilities readDriverAbilities();

/// True when the driver has this extension. A context must be current.
bool driverHas(const char *extension);
