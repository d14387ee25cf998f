// SPDX-License-Identifier: MIT
#include "pictures/textures.h"

#include <cmath>

namespace {

void newTexture(GLsizei size, GLenum format, const std::vector<GLubyte> &texels)
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), size, size, 0, format, GL_UNSIGNED_BYTE, texels.data());
}

GLuint boundTexture()
{
    GLint name;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

GLubyte rounded(double channel)
{
    return static_cast<GLubyte>(std::lround(byteOf(channel)));
}

} // namespace

void nearestFilter(GLenum target)
{
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
}

void bindNew(GLenum minFilter)
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(minFilter));
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glColor4f(1, 1, 1, 1);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
}

GLuint plainTexture(GLenum format, std::initializer_list<GLubyte> texel)
{
    std::vector<GLubyte> texels;
    for (int i = 0; i < 16; ++i)
        texels.insert(texels.end(), texel);
    newTexture(4, format, texels);
    return boundTexture();
}

GLuint plainTexture(GLenum format, const Colour &texel)
{
    const GLubyte r = rounded(texel.r);
    const GLubyte a = rounded(texel.a);
    switch (format) {
    case GL_ALPHA:
        return plainTexture(format, {a});
    case GL_LUMINANCE:
        return plainTexture(format, {r});
    case GL_LUMINANCE_ALPHA:
        return plainTexture(format, {r, a});
    case GL_RGB:
        return plainTexture(format, {r, rounded(texel.g), rounded(texel.b)});
    default:
        return plainTexture(GL_RGBA, {r, rounded(texel.g), rounded(texel.b), a});
    }
}

GLuint halvesTexture()
{
    std::vector<GLubyte> texels;
    for (int i = 0; i < 16; ++i) {
        const bool right = i % 4 >= 2;
        for (const int channel : {right ? 0 : 255, right ? 255 : 0, 0, 255})
            texels.push_back(static_cast<GLubyte>(channel));
    }
    newTexture(4, GL_RGBA, texels);
    return boundTexture();
}

GLuint quartersTexture()
{
    newTexture(2, GL_RGBA, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255});
    return boundTexture();
}

void setEnv(GLenum pname, GLenum value)
{
    glTexEnvi(GL_TEXTURE_ENV, pname, static_cast<GLint>(value));
}

Colour sampled(GLenum format, const Colour &texel)
{
    const double r = rounded(texel.r) / 255.0;
    const double a = rounded(texel.a) / 255.0;
    switch (format) {
    case GL_ALPHA:
        return {0, 0, 0, a};
    case GL_LUMINANCE:
        return {r, r, r, 1};
    case GL_LUMINANCE_ALPHA:
        return {r, r, r, a};
    case GL_RGB:
        return {r, rounded(texel.g) / 255.0, rounded(texel.b) / 255.0, 1};
    default:
        return {r, rounded(texel.g) / 255.0, rounded(texel.b) / 255.0, a};
    }
}

void drawTexel(const Place &place, double s, double t)
{
    const GLfloat positions[] = {place.left, place.bottom, place.right, place.bottom,
                                 place.left, place.top,    place.right, place.top};
    glMultiTexCoord4f(GL_TEXTURE0, static_cast<GLfloat>(s), static_cast<GLfloat>(t), 0, 1);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableClientState(GL_VERTEX_ARRAY);
}

void drawLevelTexel(const Place &place, int size, int level, int x, int y)
{
    const GLfloat positions[] = {place.left, place.bottom, place.right, place.bottom,
                                 place.left, place.top,    place.right, place.top};
    const auto pixels = static_cast<GLfloat>((place.right - place.left) / 2 * kPictureSize);
    const auto perPixel = static_cast<GLfloat>(1 << level) / static_cast<GLfloat>(size);
    // The middle pixel is the one right of and above the middle.
    const auto first = [&](int texel) {
        return (static_cast<GLfloat>(texel) + 0.5f) * perPixel - (pixels / 2 + 0.5f) * perPixel;
    };
    const GLfloat s = first(x);
    const GLfloat t = first(y);
    const GLfloat past = pixels * perPixel;
    const GLfloat coordinates[] = {s, t, s + past, t, s, t + past, s + past, t + past};
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glVertexPointer(2, GL_FLOAT, 0, positions);
    glTexCoordPointer(2, GL_FLOAT, 0, coordinates);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}
