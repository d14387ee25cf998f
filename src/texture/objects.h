// SPDX-License-Identifier: MIT
// Changes of texture bindings and names, which keep count of who still holds an object.
#pragma once

#include "texture/texture_state.h"
#include "vsp.h"

/// Points a binding at an object. What it held is released, and freed when its name is gone and nobody else holds it.
/// A default object has a name for ever.
inline void bindTextureObject(TextureObject *&binding, TextureObject *object)
{
    if (binding == object) return;
    ++object->bindings;
    if (binding && --binding->bindings == 0 && binding->unnamed) [[unlikely]]
        os_free(binding);
    binding = object;
}

/// Frees a name. The calling context's bindings of the object become the default objects; while other contexts bind it
/// the object lives on without a name. Name 0 and unknown names are ignored.
void deleteTextureName(GLIContext *ctx, GLuint name);
