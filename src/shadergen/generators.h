// SPDX-License-Identifier: MIT
// GLSL ES text from a program key. Pure: the text depends on the key alone.
#pragma once

#include "shadergen/key.h"
#include "shadergen/strbuf.h"

struct GLIContext;

/// Writes the vertex shader of a key into the buffer, replacing its content. Impossible key values are assertions; the
/// piece is left out.
void generateVertexText(const ProgramKey &key, strbuf *out);

/// The same for the fragment shader.
void generateFragmentText(const ProgramKey &key, strbuf *out);

/// The texts of the context's wanted key (ShaderCache::wanted), in the context's text buffer: valid until the next
/// generation. Null when memory ran out; a text that is not complete is never returned.
const char *GenerateVertexShader(GLIContext *ctx);
const char *GenerateFragmentShader(GLIContext *ctx);

/// GLSL expression of a combiner source as seen by one unit; "" after an assertion for an unknown source.
const char *srcsel_str(const ProgramKey &key, uint32_t source, uint32_t unit);
