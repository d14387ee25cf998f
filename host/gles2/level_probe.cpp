// SPDX-License-Identifier: MIT
#include "level_probe.h"

struct ProbedFormat {
    GLenum format;
    GLenum type;
};

// In plain OpenGL ES 2.0 a format is a texture's own or is refused. The types are those of sized formats, which some
// drivers hold a texture of an EGL image to.
static constexpr ProbedFormat kFormats[] = {
    {GL_RGBA, GL_UNSIGNED_BYTE},          {GL_RGB, GL_UNSIGNED_BYTE},
    {GL_RGB, GL_UNSIGNED_SHORT_5_6_5},    {GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4},
    {GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1}, {GL_ALPHA, GL_UNSIGNED_BYTE},
    {GL_LUMINANCE, GL_UNSIGNED_BYTE},     {GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE},
};

struct Level {
    GLenum imageTarget;
    GLint level;
    ProbedFormat texels;
};

static bool reaches(const Level &level, GLint x, GLint y)
{
    driver.glTexSubImage2D(level.imageTarget, level.level, x, y, 0, 0, level.texels.format, level.texels.type, nullptr);
    return driver.glGetError() == GL_NO_ERROR;
}

// The largest of the numbers up to `limit` that the level reaches to along x or along y.
static GLint findEdge(const Level &level, bool alongX, GLint limit)
{
    GLint inside = 0;
    GLint outside = limit + 1;
    while (outside - inside > 1) {
        const GLint middle = inside + (outside - inside) / 2;
        const bool reached = alongX ? reaches(level, middle, 0) : reaches(level, 0, middle);
        (reached ? inside : outside) = middle;
    }
    return inside;
}

TextureLevel probeLevel(GLenum imageTarget, GLint level)
{
    GLint limit = 0;
    driver.glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    for (const ProbedFormat &texels : kFormats) {
        const Level candidate = {.imageTarget = imageTarget, .level = level, .texels = texels};
        if (!reaches(candidate, 0, 0)) continue;
        if (reaches(candidate, limit + 1, 0)) return {};
        return {.width = findEdge(candidate, true, limit),
                .height = findEdge(candidate, false, limit),
                .format = texels.format};
    }
    return {};
}
