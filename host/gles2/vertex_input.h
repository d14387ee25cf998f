// SPDX-License-Identifier: MIT
// Buffer bindings and vertex attributes as the driver has them.
#pragma once

#include "context.h"

/// Brings the driver's array-buffer binding up to the application's. Needed before every call that reads it.
void syncArrayBuffer(Context *context);

/// Takes buffers for deleted by somebody else: another context of the group, or one of the machine's that shares the
/// group's objects. The context may be current on another thread, which takes notice before it relies on a name again.
void expectDeletions(Context *context);

/// Gives these attributes, one bit each, back the state they had before a draw used them for something else.
void putBackAttributes(const Context *context, uint32_t locations);
