// SPDX-License-Identifier: MIT
#include "basics.h"

#include <math.h>

enum { LARGEST_TEXTURE = 512 };

static GLubyte toByte(GLfloat value)
{
    return (GLubyte)(fminf(fmaxf(value, 0.0f), 1.0f) * 255.0f + 0.5f);
}

static int channelsOf(GLenum format, int *channels)
{
    static const struct {
        GLenum format;
        int count, channels[4];
    } kFormats[] = {{GL_ALPHA, 1, {3}},
                    {GL_LUMINANCE, 1, {0}},
                    {GL_LUMINANCE_ALPHA, 2, {0, 3}},
                    {GL_RGB, 3, {0, 1, 2}},
                    {GL_RGBA, 4, {0, 1, 2, 3}}};
    for (unsigned i = 0; i < sizeof kFormats / sizeof *kFormats; ++i) {
        if (kFormats[i].format != format) continue;
        for (int k = 0; k < 4; ++k)
            channels[k] = kFormats[i].channels[k];
        return kFormats[i].count;
    }
    return 0;
}

GLuint makeTexture(GLenum format, int size, TexelColour *colour)
{
    static GLubyte texels[LARGEST_TEXTURE * LARGEST_TEXTURE * 4];
    int channels[4];
    const int count = channelsOf(format, channels);
    GLubyte *end = texels;
    for (int i = 0; i < size * size; ++i) {
        GLfloat rgba[4] = {1.0f, 1.0f, 1.0f, 1.0f};
        colour(((GLfloat)(i % size) + 0.5f) / (GLfloat)size, ((GLfloat)(i / size) + 0.5f) / (GLfloat)size, rgba);
        for (int k = 0; k < count; ++k)
            *end++ = toByte(rgba[channels[k]]);
    }
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, (GLint)format, size, size, 0, format, GL_UNSIGNED_BYTE, texels);
    return texture;
}

GLfloat chance(unsigned seed)
{
    // Multiplying by odd numbers spreads a change of any bit upwards, the shifts bring it down again.
    seed = (seed ^ (seed >> 16)) * 0x7feb352du;
    seed = (seed ^ (seed >> 15)) * 0x846ca68bu;
    return (GLfloat)((seed ^ (seed >> 16)) >> 8) / 16777216.0f;
}

GLfloat smoothStep(GLfloat from, GLfloat to, GLfloat at)
{
    const GLfloat t = fminf(fmaxf((at - from) / (to - from), 0.0f), 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

GLfloat noise(GLfloat x, GLfloat y, int period)
{
    const int column = (int)floorf(x), row = (int)floorf(y);
    const GLfloat u = smoothStep(0.0f, 1.0f, x - (GLfloat)column), v = smoothStep(0.0f, 1.0f, y - (GLfloat)row);
    GLfloat corners[4];
    for (int i = 0; i < 4; ++i) {
        const int wrappedColumn = (column + i % 2) % period, wrappedRow = (row + i / 2) % period;
        corners[i] = chance((unsigned)(wrappedRow * period + wrappedColumn + 977 * period));
    }
    const GLfloat low = corners[0] + (corners[1] - corners[0]) * u, high = corners[2] + (corners[3] - corners[2]) * u;
    return low + (high - low) * v;
}

void lookAhead(GLfloat heightDegrees, int width, int height, GLfloat nearest, GLfloat farthest)
{
    const GLfloat halfHeight = nearest * tanf(heightDegrees * PI / 360.0f);
    const GLfloat halfWidth = halfHeight * (GLfloat)width / (GLfloat)height;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustumf(-halfWidth, halfWidth, -halfHeight, halfHeight, nearest, farthest);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}
