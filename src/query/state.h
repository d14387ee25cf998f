// SPDX-License-Identifier: MIT
// The worker behind the global state queries.
#pragma once

#include <cstdint>

#include "frontend/gl_headers.h"

struct GLIContext;

/// Writes the state of a name, converted to the output type (QueryOutput). Returns 1 when the name is one of ours, also
/// when its answer is to write nothing; 0 when it is the backend's.
uint32_t queryState(const GLIContext *ctx, uint32_t output, GLenum pname, void *out);
