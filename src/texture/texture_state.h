// SPDX-License-Identifier: MIT
// Texture objects and their name space, bindings per unit, texture environments and coordinate generation.
#pragma once

#include "frontend/gl_headers.h"
#include "frontend/gl_limits.h"

struct GLIContext;

constexpr uint32_t kCubeFaces = 6;
constexpr uint32_t kRecentTextures = 2048; // more than most programs have at a time

/// What the library knows of one texture name; the texels are the backend's, under the same name.
struct TextureObject {
    GLuint name;             // 0 for the three default objects
    GLint width[kCubeFaces]; // texels of level 0, per face; face 0 for 2D and external
    GLint height[kCubeFaces];
    GLenum internalFormat[kCubeFaces]; // of level 0, as normalizeInternalFormat gives it
    GLint cropRect[4];                 // GL_TEXTURE_CROP_RECT_OES: left, bottom, width, height in texels
    uint8_t generateMipmap;            // GL_GENERATE_MIPMAP: 0 or 1
    uint8_t unnamed;                   // the name was deleted; the record lives while a context binds it
    uint32_t bindings;                 // unit bindings of all contexts that point here; of no account for the default
                                       // objects, which stay
    TextureObject *next;               // next record of the overflow list
};

/// The texture names of one share group.
struct TextureNamespace {
    GLuint shareCount;       // contexts of the group
    TextureObject default2D; // name 0 of each target
    TextureObject defaultCubeMap;
    TextureObject defaultExternal;
    uint8_t unitBoundInBackend[kTextureUnits]; // glBindTexture was called on the unit
    uint32_t tableSize;                        // slots of table: a multiple of 16, 16 to 256
    TextureObject **table;                     // by name; null until the name is first looked up
    TextureObject *overflowHead;               // names that are not in the table, in the order of first use
    TextureObject *overflowTail;
    TextureObject *recent[kRecentTextures]; // of that list, the last found by the low bits of its name; null: none
};

/// Bindings of one context. Never null.
struct TextureBindings {
    TextureObject *texture2D[kTextureUnits];
    TextureObject *textureCubeMap[kTextureUnits];
    TextureObject *textureExternal[kTextureUnits];
    GLenum unitFormat[kTextureUnits]; // internal format of the texture that decides the unit's fragment code
};

/// Environment of one unit. Start values: see initTextureCombineMode.
struct TexEnvState {
    uint32_t coordReplace; // GL_COORD_REPLACE_OES; not 0 = on
    GLfloat scale[4];      // red, green, blue (GL_RGB_SCALE, three times) and alpha (GL_ALPHA_SCALE)
    GLfloat color[4];      // GL_TEXTURE_ENV_COLOR, 0..1
    GLenum mode;           // GL_TEXTURE_ENV_MODE
    GLenum combineRgb;
    GLenum combineAlpha;
    GLenum srcRgb[3];
    GLenum srcAlpha[3];
    GLenum operandRgb[3];
    GLenum operandAlpha[3];
};

/// Texture coordinate generation of one unit; its enable is EnableState::texGen.
struct TexGenState {
    GLenum mode; // GL_NORMAL_MAP_OES (start) or GL_REFLECTION_MAP_OES
};

/// Zeroes the default objects and gives them their formats; a table of 16 empty slots. With no memory for the table its
/// size is 0 and every name goes to the overflow list.
void initTextureObjects(TextureNamespace *textures);

/// Frees every record and the table. The name space itself stays with the caller.
void destroyTextureObjects(TextureNamespace *textures);

/// lookupTextureObject for everything but a known name of the table.
[[gnu::noinline]] TextureObject *lookupUnusualTexture(TextureNamespace *textures, GLenum target, GLuint name);

/// The object of a name, made when it is new; name 0 gives the target's default object, and a target that is none is an
/// assertion and null. Targets share the objects. Null without memory.
inline TextureObject *lookupTextureObject(TextureNamespace *textures, GLenum target, GLuint name)
{
    TextureObject *object = name < textures->tableSize ? textures->table[name] : nullptr;
    return object ? object : lookupUnusualTexture(textures, target, name);
}

/// The binding of the context's active unit for a target; null for a target that is none.
TextureObject **activeBinding(GLIContext *ctx, GLenum target);

/// Points all six bindings of a context at the default objects, dropping what they held.
void bindDefaultTextures(GLIContext *ctx);

/// Start values of both units' environments through the setter of the API; the active unit ends as 0.
void initTextureCombineMode(GLIContext *ctx);

/// The unit's enabled, cubeMap and external key bits from its three enable flags. When the unit is turned on its three
/// key-change bits are marked, and whenever its enables change the format of the texture that now drives the unit is
/// recorded.
void updateTextureEnables(GLIContext *ctx, uint32_t unit);

/// Records the format of the texture that drives each enabled unit; for make-current in a share group, where another
/// context may have respecified a texture.
void refreshUnitFormats(GLIContext *ctx);

/// The format recorded for an image: one of the five base formats. Compressed formats count as GL_RGBA or GL_RGB.
GLenum normalizeInternalFormat(GLenum format);

/// Records the format for the active unit when target and face are what its enables make it sample: the first face of
/// an enabled cube map, a 2D texture under no enabled cube map or external target, or an external one alone. A cube
/// face enum never is.
void updateInternalFormat(GLIContext *ctx, GLenum target, GLenum format, uint32_t face);

/// Records a format for a unit and marks what depends on it; an equal one marks nothing.
void recordUnitFormat(GLIContext *ctx, uint32_t unit, GLenum format);

/// Records the format of an object, of which an image was just given, for the units beside the active one that sample
/// it.
void refreshOtherUnits(GLIContext *ctx, const TextureObject *object);
