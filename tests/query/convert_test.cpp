// SPDX-License-Identifier: MIT
#include "query/convert.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

constexpr GLfloat kInfinity = std::numeric_limits<GLfloat>::infinity();
constexpr GLfloat kNaN = std::numeric_limits<GLfloat>::quiet_NaN();

int32_t wordOf(GLfloat value)
{
    return std::bit_cast<int32_t>(value);
}

// One word of a kind and what it is in the four types; the float as a word, so that -0 and NaN count.
struct Conversion {
    const char *label;
    uint32_t kind;
    int32_t word;
    GLboolean boolean;
    GLint integer;
    int32_t floatWord;
    GLfixed fixed;
};

constexpr uint32_t INTEGER = 1;
constexpr uint32_t FLOAT = 2;
constexpr uint32_t FIXED = 3;
constexpr uint32_t NORMALISED = 4;

// clang-format off
const std::vector<Conversion> kConversions = {
    {"integer 0", INTEGER, 0, 0, 0, wordOf(0), 0},
    {"integer 1", INTEGER, 1, 1, 1, wordOf(1), 0x10000},
    {"integer -1", INTEGER, -1, 1, -1, wordOf(-1), -0x10000},
    {"integer 32767", INTEGER, 32767, 1, 32767, wordOf(32767), 0x7FFF0000},
    {"integer 32768 loses its upper half", INTEGER, 32768, 1, 32768, wordOf(32768), INT32_MIN},
    {"an enum loses its upper half", INTEGER, 0x84C1, 1, 0x84C1, wordOf(33985), static_cast<GLfixed>(0x84C10000)},
    {"integer 65536", INTEGER, 65536, 1, 65536, wordOf(65536), 0},
    {"integer 2^24 + 1 rounds as a float", INTEGER, 16777217, 1, 16777217, wordOf(16777216), 0x10000},
    {"largest integer", INTEGER, INT32_MAX, 1, INT32_MAX, wordOf(2147483648.0f), -0x10000},

    {"float 0", FLOAT, wordOf(0), 0, 0, wordOf(0), 0},
    {"float -0", FLOAT, wordOf(-0.0f), 0, 0, wordOf(-0.0f), 0},
    {"float 0.2", FLOAT, wordOf(0.2f), 1, 0, wordOf(0.2f), 13107}, // 13107.2
    {"float 0.99", FLOAT, wordOf(0.99f), 1, 0, wordOf(0.99f), 64880}, // 64880.6
    {"float 2.9", FLOAT, wordOf(2.9f), 1, 2, wordOf(2.9f), 190054}, // 190054.4
    {"float -2.9", FLOAT, wordOf(-2.9f), 0, -2, wordOf(-2.9f), -190054},
    {"least positive float", FLOAT, 1, 1, 0, 1, 0},
    {"float 32767.5", FLOAT, wordOf(32767.5f), 1, 32767, wordOf(32767.5f), 0x7FFF8000},
    {"float 32768 saturates in fixed", FLOAT, wordOf(32768), 1, 32768, wordOf(32768), INT32_MAX},
    {"float -32768", FLOAT, wordOf(-32768), 0, -32768, wordOf(-32768), INT32_MIN},
    {"float -32769 saturates in fixed", FLOAT, wordOf(-32769), 0, -32769, wordOf(-32769), INT32_MIN},
    {"last float below 2^31", FLOAT, wordOf(2147483520.0f), 1, 2147483520, wordOf(2147483520.0f), INT32_MAX},
    {"float 2^31 saturates", FLOAT, wordOf(2147483648.0f), 1, INT32_MAX, wordOf(2147483648.0f), INT32_MAX},
    {"float -2^31", FLOAT, wordOf(-2147483648.0f), 0, INT32_MIN, wordOf(-2147483648.0f), INT32_MIN},
    {"float -3e9 saturates", FLOAT, wordOf(-3e9f), 0, INT32_MIN, wordOf(-3e9f), INT32_MIN},
    {"infinity", FLOAT, wordOf(kInfinity), 1, INT32_MAX, wordOf(kInfinity), INT32_MAX},
    {"minus infinity", FLOAT, wordOf(-kInfinity), 0, INT32_MIN, wordOf(-kInfinity), INT32_MIN},
    {"not a number", FLOAT, wordOf(kNaN), 0, 0, wordOf(kNaN), 0},

    {"fixed 0", FIXED, 0, 0, 0, wordOf(0), 0},
    {"fixed 0.5", FIXED, 0x8000, 0, 0, wordOf(0.5f), 0x8000},
    {"last fixed below 1", FIXED, 0xFFFF, 0, 0, wordOf(0.9999847412109375f), 0xFFFF},
    {"fixed 1", FIXED, 0x10000, 1, 1, wordOf(1), 0x10000},
    {"fixed 1.5", FIXED, 0x18000, 1, 1, wordOf(1.5f), 0x18000},
    {"least negative fixed", FIXED, -1, 0, -1, wordOf(-0x1p-16f), -1},
    {"fixed -1.5", FIXED, -0x18000, 0, -2, wordOf(-1.5f), -0x18000},
    {"least fixed", FIXED, INT32_MIN, 0, -32768, wordOf(-32768), INT32_MIN},
    {"largest fixed", FIXED, INT32_MAX, 1, 32767, wordOf(32768), INT32_MAX},

    {"colour 0", NORMALISED, wordOf(0), 0, 0, wordOf(0), 0},
    {"colour 1", NORMALISED, wordOf(1), 1, INT32_MAX, wordOf(1), 0x10000},
    {"colour 0.5", NORMALISED, wordOf(0.5f), 1, 0x40000000, wordOf(0.5f), 0x8000},
    {"colour 0.25", NORMALISED, wordOf(0.25f), 1, 0x20000000, wordOf(0.25f), 0x4000},
    {"last colour below 1", NORMALISED, wordOf(0.99999994f), 1, 2147483520, wordOf(0.99999994f), 0xFFFF},
    {"colour -1", NORMALISED, wordOf(-1), 0, INT32_MIN, wordOf(-1), -0x10000},
    {"colour -0.5", NORMALISED, wordOf(-0.5f), 0, -0x40000000, wordOf(-0.5f), -0x8000},
    {"colour 2", NORMALISED, wordOf(2), 1, INT32_MAX, wordOf(2), 0x20000},
    {"colour 2^-32", NORMALISED, wordOf(0x1p-32f), 1, 0, wordOf(0x1p-32f), 0},
    {"colour 2^-30", NORMALISED, wordOf(0x1p-30f), 1, 1, wordOf(0x1p-30f), 0}, // (4 - 1) / 2
    {"colour not a number", NORMALISED, wordOf(kNaN), 0, 0, wordOf(kNaN), 0},
};
// clang-format on

} // namespace

TEST(QueryConversion, EachKindBecomesEachType)
{
    for (const Conversion &one : kConversions) {
        SCOPED_TRACE(one.label);
        GLboolean boolean = 0x5A;
        GLint integer = 0x5A5A5A5A;
        int32_t floatWord = 0x5A5A5A5A;
        GLfixed fixed = 0x5A5A5A5A;
        convertQueryValues(&one.word, 1, one.kind, 0, &boolean);
        convertQueryValues(&one.word, 1, one.kind, 1, &integer);
        convertQueryValues(&one.word, 1, one.kind, 2, &floatWord);
        convertQueryValues(&one.word, 1, one.kind, 3, &fixed);
        EXPECT_EQ(boolean, one.boolean);
        EXPECT_EQ(integer, one.integer);
        EXPECT_EQ(floatWord, one.floatWord);
        EXPECT_EQ(fixed, one.fixed);
    }
}

TEST(QueryConversion, ValuesAreConvertedInOrderAndNoMore)
{
    const GLint values[] = {3, 0, -7, 5};
    GLboolean booleans[5] = {9, 9, 9, 9, 9};
    convertQueryValues(values, 4, INTEGER, 0, booleans);
    EXPECT_EQ(std::vector<GLboolean>(booleans, booleans + 5), (std::vector<GLboolean>{1, 0, 1, 1, 9}));
    GLfloat floats[5] = {9, 9, 9, 9, 9};
    convertQueryValues(values, 3, INTEGER, 2, floats);
    EXPECT_EQ(std::vector<GLfloat>(floats, floats + 5), (std::vector<GLfloat>{3, 0, -7, 9, 9}));
}

TEST(QueryConversion, NothingIsWrittenForCountZeroAndUnknownKindsAndTypes)
{
    const GLint values[] = {1, 2};
    GLint out[2] = {9, 9};
    convertQueryValues(values, 0, INTEGER, 1, out);
    convertQueryValues(nullptr, 0, INTEGER, 1, out);
    for (const uint32_t kind : {0u, 5u, 0xFFFFFFFFu})
        convertQueryValues(values, 2, kind, 1, out);
    for (const uint32_t output : {4u, 0xFFFFFFFFu})
        convertQueryValues(values, 2, INTEGER, output, out);
    EXPECT_EQ(out[0], 9);
    EXPECT_EQ(out[1], 9);
}
