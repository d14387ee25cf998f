// SPDX-License-Identifier: MIT
// The GL_COMBINE part of the fragment shader text.
#pragma once

#include "shadergen/key.h"
#include "shadergen/strbuf.h"

/// The statements of one unit's combiner: arguments, function, scale, clamp. An unknown source, operand or function is
/// an assertion; its piece is left out.
void emitCombine(const ProgramKey &key, uint32_t unit, strbuf *out);
