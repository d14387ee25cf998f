// SPDX-License-Identifier: MIT
// The error state of a context.
#pragma once

#include "frontend/gl_headers.h"

/// Records an error in the current context: the first one stays. When none is pending an error that the backend holds
/// is taken instead of the given one. Does nothing without a context.
void __glSetError(GLenum error);
