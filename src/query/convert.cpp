// SPDX-License-Identifier: MIT
#include "query/convert.h"

#include "frontend/convert.h"

#include <bit>
#include <cstring>

GLfixed fixedFromFloat(GLfloat value)
{
    return truncateToInt(value * 65536.0f);
}

namespace {

constexpr GLint kFixedOne = 0x10000;

bool toBoolean(int32_t word, uint32_t kind)
{
    if (kind == QUERY_KIND_INTEGER) return word != 0;
    if (kind == QUERY_KIND_FIXED) return word >= kFixedOne;
    return std::bit_cast<GLfloat>(word) > 0.0f;
}

GLint toInteger(int32_t word, uint32_t kind)
{
    if (kind == QUERY_KIND_INTEGER) return word;
    if (kind == QUERY_KIND_FIXED) return word >> 16;
    const auto value = std::bit_cast<GLfloat>(word);
    // OpenGL ES 1.1, 6.1.2: 1 maps to the largest integer, -1 to the smallest; here in single precision.
    if (kind == QUERY_KIND_NORMALISED) return truncateToInt((value * 4294967296.0f - 1.0f) * 0.5f);
    return truncateToInt(value);
}

GLfloat toFloat(int32_t word, uint32_t kind)
{
    if (kind == QUERY_KIND_INTEGER) return static_cast<GLfloat>(word);
    if (kind == QUERY_KIND_FIXED) return floatFromFixed(word);
    return std::bit_cast<GLfloat>(word);
}

GLfixed toFixed(int32_t word, uint32_t kind)
{
    if (kind == QUERY_KIND_INTEGER) return static_cast<GLfixed>(static_cast<uint32_t>(word) << 16);
    if (kind == QUERY_KIND_FIXED) return word;
    return fixedFromFloat(std::bit_cast<GLfloat>(word));
}

} // namespace

void convertQueryValues(const void *values, uint32_t count, uint32_t kind, uint32_t output, void *out)
{
    if (kind < QUERY_KIND_INTEGER || kind > QUERY_KIND_NORMALISED) return;
    for (uint32_t i = 0; i < count; ++i) {
        int32_t word;
        std::memcpy(&word, static_cast<const char *>(values) + 4 * i, sizeof(word));
        switch (output) {
        case QUERY_OUTPUT_BOOLEAN:
            static_cast<GLboolean *>(out)[i] = toBoolean(word, kind);
            break;
        case QUERY_OUTPUT_INTEGER:
            static_cast<GLint *>(out)[i] = toInteger(word, kind);
            break;
        case QUERY_OUTPUT_FLOAT:
            static_cast<GLfloat *>(out)[i] = toFloat(word, kind);
            break;
        case QUERY_OUTPUT_FIXED:
            static_cast<GLfixed *>(out)[i] = toFixed(word, kind);
            break;
        default:
            return;
        }
    }
}
