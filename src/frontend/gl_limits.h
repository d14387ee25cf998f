// SPDX-License-Identifier: MIT
// Limits that several subsystems share. The shader key has room for exactly these; the numbers are answered by queries.
#pragma once

#include <cstdint>

constexpr uint32_t kTextureUnits = 2;       // key words and GLSL names exist for two units
constexpr uint32_t kMaxLights = 8;          // light masks have 8 bits
constexpr uint32_t kPaletteMatrices = 20;   // array size in the generated shaders
constexpr uint32_t kMaxVertexUnits = 4;     // palette matrices blended per vertex: components of one vec4 attribute
constexpr uint32_t kModelviewDepth = 16;    // entries of the modelview stack
constexpr uint32_t kProjectionDepth = 4;    // entries of the projection stack
constexpr uint32_t kTextureMatrixDepth = 2; // entries of each unit's texture stack
constexpr float kMaxPointSize = 128.0f;     // pixels; GL_POINT_SIZE_MAX at start and its upper bound
