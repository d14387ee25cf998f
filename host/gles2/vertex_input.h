// SPDX-License-Identifier: MIT
// Buffer bindings and vertex attributes as the driver has them.
#pragma once

#include "context.h"

/// Brings the driver's array-buffer binding up to the application's. Needed before every call that reads it.
void syncArrayBuffer(Context *context);

/// Takes buffers for deleted by somebody whose calls do not come through here: a context of the machine's that shares
/// the group's objects.
void expectDeletions(Context *context);

/// Gives these attributes, one bit each, back the state they had before a draw used them for something else.
void putBackAttributes(const Context *context, uint32_t locations);
