// SPDX-License-Identifier: MIT
#include "texel_formats.h"

#include <cstring>

static unsigned toBits(uint8_t value, unsigned bits)
{
    const unsigned most = (1u << bits) - 1;
    return (value * most + 127) / 255;
}

// Components of a packed texel, the first in the highest bits. Bits of the components that are not there are 0.
template <unsigned red, unsigned green, unsigned blue, unsigned alpha>
static void writePacked(const uint8_t *rgba, uint8_t *out)
{
    unsigned packed = toBits(rgba[0], red);
    packed = packed << green | toBits(rgba[1], green);
    packed = packed << blue | toBits(rgba[2], blue);
    packed = packed << alpha | toBits(rgba[3], alpha);
    const uint16_t word = static_cast<uint16_t>(packed);
    memcpy(out, &word, sizeof word);
}

template <size_t... components>
static void writeBytes(const uint8_t *rgba, uint8_t *out)
{
    size_t at = 0;
    ((out[at++] = rgba[components]), ...);
}

// A luminance texture samples as the same red, green and blue.
// clang-format off
static constexpr TexelFormat kFormats[] = {
    {GL_RGBA,            GL_UNSIGNED_BYTE,          4, writeBytes<0, 1, 2, 3>},
    {GL_RGB,             GL_UNSIGNED_BYTE,          3, writeBytes<0, 1, 2>},
    {GL_ALPHA,           GL_UNSIGNED_BYTE,          1, writeBytes<3>},
    {GL_LUMINANCE,       GL_UNSIGNED_BYTE,          1, writeBytes<0>},
    {GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE,          2, writeBytes<0, 3>},
    {GL_RGBA,            GL_UNSIGNED_SHORT_4_4_4_4, 2, writePacked<4, 4, 4, 4>},
    {GL_RGBA,            GL_UNSIGNED_SHORT_5_5_5_1, 2, writePacked<5, 5, 5, 1>},
    {GL_RGB,             GL_UNSIGNED_SHORT_5_6_5,   2, writePacked<5, 6, 5, 0>},
};
// clang-format on

const TexelFormat *findTexelFormat(GLenum format, GLenum type, GLenum &error)
{
    bool formatKnown = false;
    bool typeKnown = false;
    for (const TexelFormat &row : kFormats) {
        if (row.format == format && row.type == type) return &row;
        formatKnown = formatKnown || row.format == format;
        typeKnown = typeKnown || row.type == type;
    }
    error = formatKnown && typeKnown ? GL_INVALID_OPERATION : GL_INVALID_ENUM;
    return nullptr;
}
