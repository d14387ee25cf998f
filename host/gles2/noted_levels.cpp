// SPDX-License-Identifier: MIT
#include "noted_levels.h"

#include "texture_levels.h"

static LevelPlace placeOf(GLenum imageTarget, GLint level)
{
    GLint texture = 0;
    driver.glGetIntegerv(findTextureTarget(imageTarget)->binding, &texture);
    return {.texture = static_cast<GLuint>(texture), .imageTarget = imageTarget, .level = level};
}

void noteLevel(GLenum imageTarget, GLint level, const TextureLevel &noted)
{
    const LevelPlace place = placeOf(imageTarget, level);
    NotedLevels &known = currentContext->group->notedLevels;
    const std::lock_guard<std::mutex> guard(known.lock);
    known.levels[place] = noted;
}

TextureLevel findNotedLevel(GLenum imageTarget, GLint level)
{
    const LevelPlace place = placeOf(imageTarget, level);
    NotedLevels &known = currentContext->group->notedLevels;
    const std::lock_guard<std::mutex> guard(known.lock);
    const auto found = known.levels.find(place);
    return found == known.levels.end() ? TextureLevel{} : found->second;
}

// The name may be another texture's next.
static void forgetTexture(NotedLevels &known, GLuint texture)
{
    const auto first = known.levels.lower_bound({.texture = texture, .imageTarget = 0, .level = 0});
    auto last = first;
    while (last != known.levels.end() && last->first.texture == texture)
        ++last;
    known.levels.erase(first, last);
}

void GL_APIENTRY glDeleteTextures(GLsizei n, const GLuint *textures)
{
    Context *context = currentContext;
    driver.glDeleteTextures(n, textures);
    if (!context) return;
    forgetNames(context->group->names, &SharedNames::textures, n, textures);
    NotedLevels &known = context->group->notedLevels;
    const std::lock_guard<std::mutex> guard(known.lock);
    for (GLsizei i = 0; i < n && !known.levels.empty(); ++i)
        forgetTexture(known, textures[i]);
}
