// SPDX-License-Identifier: MIT
// The name space of a share group: a table for the names below 256, a list for the others.
#include "texture/objects.h"

#include "frontend/assert.h"
#include "frontend/context.h"
#include "vsp.h"

namespace {

constexpr uint32_t kTableStep = 16;    // the table starts with and grows by this many slots
constexpr GLuint kLastTableName = 255; // larger names go to the list

TextureObject *createObject(GLuint name)
{
    auto *object = static_cast<TextureObject *>(os_malloc(sizeof(TextureObject)));
    if (!object) return nullptr;
    *object = {};
    object->name = name;
    object->internalFormat[0] = GL_ALPHA;
    return object;
}

TextureObject *defaultObject(TextureNamespace *textures, GLenum target)
{
    switch (target) {
    case GL_TEXTURE_2D:
        return &textures->default2D;
    case GL_TEXTURE_CUBE_MAP_OES:
        return &textures->defaultCubeMap;
    case GL_TEXTURE_EXTERNAL_OES:
        return &textures->defaultExternal;
    default:
        assertThat(false, "texture target");
        return nullptr;
    }
}

void clearSlots(TextureNamespace *textures, uint32_t from, uint32_t to)
{
    for (uint32_t slot = from; slot < to; ++slot)
        textures->table[slot] = nullptr;
}

// Returns false without memory; the table is then as it was.
bool growTable(TextureNamespace *textures, GLuint name)
{
    const uint32_t size = (name + kTableStep) & ~(kTableStep - 1);
    void *table = os_realloc(textures->table, size * sizeof(TextureObject *));
    if (!table) return false;

    textures->table = static_cast<TextureObject **>(table);
    clearSlots(textures, textures->tableSize, size);
    textures->tableSize = size;
    return true;
}

TextureObject *lookupInTable(TextureNamespace *textures, GLuint name)
{
    TextureObject *&slot = textures->table[name];
    if (!slot) slot = createObject(name);
    return slot;
}

TextureObject *&recentOf(TextureNamespace *textures, GLuint name)
{
    return textures->recent[name % kRecentTextures];
}

TextureObject *findInList(TextureNamespace *textures, GLuint name)
{
    TextureObject *object = textures->overflowHead;
    while (object && object->name != name)
        object = object->next;
    return object;
}

TextureObject *appendToList(TextureNamespace *textures, GLuint name)
{
    TextureObject *object = createObject(name);
    if (!object) return nullptr;
    if (textures->overflowTail) {
        textures->overflowTail->next = object;
    } else {
        textures->overflowHead = object;
    }
    textures->overflowTail = object;
    return object;
}

// Drivers that count names up give none below 256 after a while, so the list may be long.
TextureObject *lookupInList(TextureNamespace *textures, GLuint name)
{
    TextureObject *&recent = recentOf(textures, name);
    if (recent && recent->name == name) return recent;
    TextureObject *object = findInList(textures, name);
    if (!object) object = appendToList(textures, name);
    if (object) recent = object;
    return object;
}

// Takes the object of a name out of the table or the list; null when there is none.
TextureObject *takeFromTable(TextureNamespace *textures, GLuint name)
{
    TextureObject *object = textures->table[name];
    textures->table[name] = nullptr;
    return object;
}

TextureObject *takeFromList(TextureNamespace *textures, GLuint name)
{
    TextureObject *previous = nullptr;
    TextureObject *object = textures->overflowHead;
    while (object && object->name != name) {
        previous = object;
        object = object->next;
    }
    if (!object) return nullptr;

    (previous ? previous->next : textures->overflowHead) = object->next;
    if (textures->overflowTail == object) textures->overflowTail = previous;
    object->next = nullptr;
    if (recentOf(textures, name) == object) recentOf(textures, name) = nullptr;
    return object;
}

void emptyList(TextureNamespace *textures)
{
    textures->overflowHead = nullptr;
    textures->overflowTail = nullptr;
    os_memset(textures->recent, 0, sizeof textures->recent);
}

} // namespace

void initTextureObjects(TextureNamespace *textures)
{
    textures->default2D = {};
    textures->defaultCubeMap = {};
    textures->defaultExternal = {};
    textures->default2D.internalFormat[0] = GL_ALPHA;
    textures->defaultCubeMap.internalFormat[0] = GL_ALPHA;
    // Unlike the others: video frames are opaque colours.
    textures->defaultExternal.internalFormat[0] = GL_RGBA;
    emptyList(textures);
    textures->table = static_cast<TextureObject **>(os_malloc(kTableStep * sizeof(TextureObject *)));
    textures->tableSize = textures->table ? kTableStep : 0;
    clearSlots(textures, 0, textures->tableSize);
}

void destroyTextureObjects(TextureNamespace *textures)
{
    for (uint32_t slot = 0; slot < textures->tableSize; ++slot)
        os_free(textures->table[slot]);
    os_free(textures->table);
    textures->table = nullptr;
    textures->tableSize = 0;

    TextureObject *object = textures->overflowHead;
    while (object) {
        TextureObject *next = object->next;
        os_free(object);
        object = next;
    }
    emptyList(textures);
}

TextureObject *lookupUnusualTexture(TextureNamespace *textures, GLenum target, GLuint name)
{
    if (name == 0) return defaultObject(textures, target);
    if (name < textures->tableSize) return lookupInTable(textures, name);
    // A table that could not be made stays empty: names already in the list must not be looked for in a later one.
    if (name > kLastTableName || textures->tableSize == 0) return lookupInList(textures, name);
    return growTable(textures, name) ? lookupInTable(textures, name) : nullptr;
}

void bindDefaultTextures(GLIContext *ctx)
{
    TextureNamespace *textures = ctx->textures;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        bindTextureObject(ctx->bindings.texture2D[unit], &textures->default2D);
        bindTextureObject(ctx->bindings.textureCubeMap[unit], &textures->defaultCubeMap);
        bindTextureObject(ctx->bindings.textureExternal[unit], &textures->defaultExternal);
    }
}

static void unbindTextureObject(GLIContext *ctx, const TextureObject *object)
{
    TextureNamespace *textures = ctx->textures;
    TextureBindings &bindings = ctx->bindings;
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        if (bindings.texture2D[unit] == object) bindTextureObject(bindings.texture2D[unit], &textures->default2D);
        if (bindings.textureCubeMap[unit] == object)
            bindTextureObject(bindings.textureCubeMap[unit], &textures->defaultCubeMap);
        if (bindings.textureExternal[unit] == object)
            bindTextureObject(bindings.textureExternal[unit], &textures->defaultExternal);
    }
}

void deleteTextureName(GLIContext *ctx, GLuint name)
{
    if (name == 0) return;
    TextureNamespace *textures = ctx->textures;
    TextureObject *object = name < textures->tableSize ? takeFromTable(textures, name) : takeFromList(textures, name);
    if (!object) return;

    // Only this context lets go of it (OpenGL ES 1.1, 3.7.13 and appendix C). It is not yet unnamed, so that dropping
    // the last binding does not free it here.
    unbindTextureObject(ctx, object);
    if (object->bindings == 0) {
        os_free(object);
    } else {
        object->unnamed = 1;
    }
}
