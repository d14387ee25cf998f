// SPDX-License-Identifier: MIT
// Changes of texture bindings and names, which keep count of who still holds an object.
#pragma once

#include "texture/texture_state.h"

/// Points a binding at an object. What it held is released, and freed when its name is gone and nobody else holds it.
void bindTextureObject(TextureObject *&binding, TextureObject *object);

/// Frees a name. The calling context's bindings of the object become the default objects; while other contexts bind it
/// the object lives on without a name. Name 0 and unknown names are ignored.
void deleteTextureName(GLIContext *ctx, GLuint name);
