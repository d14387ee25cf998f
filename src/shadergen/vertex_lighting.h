// SPDX-License-Identifier: MIT
// The lighting part of the vertex shader text.
#pragma once

#include "shadergen/key.h"
#include "shadergen/strbuf.h"

/// Material, scene colour and light uniforms; nothing without lighting.
void emitLightingDeclarations(const ProgramKey &key, strbuf *out);

/// One function per kind of light in use, then flight(), which returns the lit colour; nothing without lighting. A
/// light count that differs from the lights' kinds is an assertion.
void emitLightingFunction(const ProgramKey &key, strbuf *out);
