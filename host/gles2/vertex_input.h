// SPDX-License-Identifier: MIT
// Buffer bindings as the driver has them.
#pragma once

#include "context.h"

/// Brings the driver's array-buffer binding up to the application's. Needed before every call that reads it.
void syncArrayBuffer(Context *context);
