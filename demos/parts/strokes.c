// SPDX-License-Identifier: MIT
#include "strokes.h"

#include <math.h>
#include <string.h>

enum { MAX_POINTS = 40, CURVE_STEPS = 5 };

// clang-format off
static const char *const kLetters[] = {
    "", "0g08 0404", "0g0d 3g3d", "143g 547g 0888 1c8c", "~7d7g4g0g0d0a4a7a7774340407 4i42",
    "048g ~0c3c3g0g0c ~5484885854", "~841d1g3g5g5d090704347489", "0g0d", "~3h0d0733", "~0h3d3703", "3a3g 0b6f 0f6b",
    "0868 3b35", "1402", "0848", "0404", "036h",
    // 0 to 9
    "~04747g0g04", "0d3g34", "~0d0g4g7g7c5904 0474", "~0d0g3g7g7d7a3a ~3a7a7774340407", "5g0787 5g54",
    "6g0g0b ~0b4b7b7874340406", "~6g3g0d08 ~04747b0b04", "0g7g24", "~1a6a6g1g1a ~04747a0a04", "~09797g0g09 ~7c774414",
    "0505 0b0b", "1402 1b1b", "5c0854", "0666 0a6a", "0c5804", "~0d0g3g6g6d6a3a37 3434",
    // @, A to Z
    "~37777d3d37 ~04a4ag0g04",
    "044g84 1777", "040g ~0g4g7g7a4a0a ~0a4a8a844404", "~8d8g4g0g0a04448487", "040g ~0g3g8g8a843404", "7g0g0474 0a6a",
    "7g0g04 0a6a", "~8d8g4g0g0a0444848a 8a5a", "040g 848g 0a8a", "040g", "~6g6864340407", "040g 7g09 2b74", "0g0474",
    "040g59aga4", "040g848g", "~04848g0g04", "040g ~0g4g8g894909", "~04848g0g04 5893", "040g ~0g4g8g894909 4984",
    "~8d8g4g0g0d0a4a8a8784440407", "0g8g 4g44", "~0g0a0444848a8g", "0g448g", "0g345d74ag", "048g 0g84", "0g4a8g 4a44",
    "0g8g0484",
    "3h0h0333", "0h63", "0h3h3303", "0c3g6c", "0272", "0g2e",
    // a to z
    "~04646c0c04 6c64", "0g04 ~04646c0c04", "~6a6c3c0c0804346466", "6g64 ~04646c0c04", "0868 ~686c3c0c0804346465",
    "~5g2g2c24 0c5c", "~04646c0c04 ~6c63603001", "0g04 ~080c3c6c6864", "0c04 0g0g", "~2c232000 2g2g", "0g04 5c07 2964",
    "~0g060424", "0c04 ~080c2c4c4844 ~484c6c8c8884", "0c04 ~080c3c6c6864", "~04646c0c04", "0c00 ~04646c0c04",
    "6c60 ~04646c0c04", "0c04 ~080c3c4b", "~5b5c2c0c0a0828585654240405", "~2f262454 0c5c", "~0c08043464686c 6c64",
    "0c346c", "0c244a648c", "046c 0c64", "0c34 6c20", "0c6c0464",
    "~3h1h1d1a0a ~0a1a171333", "0h02", "~0h2h2d2a3a ~3a2a272303", "~070a2a47677a",
    "~0d3d3g0g0d"};
// clang-format on

static GLfloat digit(char c)
{
    return (GLfloat)(c <= '9' ? c - '0' : c - 'a' + 10);
}

static void addSegment(struct Strokes *strokes, const GLfloat *from, const GLfloat *to)
{
    if (strokes->count == MAX_SEGMENTS) return;
    memcpy(strokes->segments[strokes->count], from, 2 * sizeof *from);
    memcpy(strokes->segments[strokes->count++] + 2, to, 2 * sizeof *to);
}

static void addLine(struct Strokes *strokes, GLfloat (*points)[2], int count)
{
    for (int i = 0; i + 1 < count; ++i)
        addSegment(strokes, points[i], points[i + 1]);
}

// Around every inner point a parabola from the middle of the line before it to the middle of the line after it.
static void addCurve(struct Strokes *strokes, GLfloat (*points)[2], int count)
{
    const int closed = points[0][0] == points[count - 1][0] && points[0][1] == points[count - 1][1];
    for (int i = closed ? 0 : 1; i + 1 < count; ++i) {
        const GLfloat *before = points[i ? i - 1 : count - 2], *at = points[i], *after = points[i + 1];
        GLfloat from[2], to[2], last[2], next[2];
        for (int k = 0; k < 2; ++k) {
            from[k] = !closed && i == 1 ? before[k] : 0.5f * (before[k] + at[k]);
            to[k] = !closed && i + 2 == count ? after[k] : 0.5f * (at[k] + after[k]);
            last[k] = from[k];
        }
        for (int step = 1; step <= CURVE_STEPS; ++step) {
            const GLfloat t = (GLfloat)step / CURVE_STEPS, s = 1.0f - t;
            for (int k = 0; k < 2; ++k)
                next[k] = s * s * from[k] + 2.0f * s * t * at[k] + t * t * to[k];
            addSegment(strokes, last, next);
            memcpy(last, next, sizeof last);
        }
    }
}

struct Strokes readStrokes(const char *text)
{
    struct Strokes strokes = {.count = 0};
    while (*text) {
        const int curved = *text == '~';
        GLfloat points[MAX_POINTS][2];
        int count = 0;
        for (text += curved; *text && *text != ' ' && count < MAX_POINTS; text += 2, ++count) {
            points[count][0] = digit(text[0]);
            points[count][1] = digit(text[1]);
            strokes.width = fmaxf(strokes.width, points[count][0]);
        }
        (curved ? addCurve : addLine)(&strokes, points, count);
        if (*text == ' ') ++text;
    }
    return strokes;
}

const char *letterStrokes(int character)
{
    const int known = character >= FIRST_LETTER && character <= LAST_LETTER;
    return kLetters[(known ? character : '?') - FIRST_LETTER];
}

GLfloat strokeCoverage(const struct Strokes *strokes, GLfloat x, GLfloat y, GLfloat thickness, GLfloat pixelsPerUnit)
{
    GLfloat nearest = 1e6f;
    for (int i = 0; i < strokes->count; ++i) {
        const GLfloat *s = strokes->segments[i], u = s[2] - s[0], v = s[3] - s[1], squared = u * u + v * v;
        const GLfloat along = squared > 0.0f ? ((x - s[0]) * u + (y - s[1]) * v) / squared : 0.0f;
        const GLfloat t = fminf(fmaxf(along, 0.0f), 1.0f);
        nearest = fminf(nearest, hypotf(x - s[0] - t * u, y - s[1] - t * v));
    }
    return fminf(fmaxf(0.5f + (0.5f * thickness - nearest) * pixelsPerUnit, 0.0f), 1.0f);
}
