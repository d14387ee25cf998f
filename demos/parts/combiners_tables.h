// SPDX-License-Identifier: MIT
// What the combiner board shows: the rows and columns, and what is written under every cell. T: the texture of unit 0,
// U: of unit 1, P: the primary colour, C: the constant colour, V: what unit 0 gives to unit 1. The result's colour
// stands before its alpha.
#ifndef DEMO_COMBINERS_TABLES_H
#define DEMO_COMBINERS_TABLES_H

#include <GLES/gl.h>

enum { FORMATS = 5, MODES = 5, FUNCTIONS = 8, VARIANTS = 4, LEGEND_LINES = 5 };

static const struct {
    GLenum format;
    const char *name;
} kFormats[FORMATS] = {{GL_ALPHA, "ALPHA"},
                       {GL_LUMINANCE, "LUMINANCE"},
                       {GL_LUMINANCE_ALPHA, "LUM. + ALPHA"},
                       {GL_RGB, "RGB"},
                       {GL_RGBA, "RGBA"}};

// One caption per format; null where the standard leaves the result undefined.
static const struct {
    GLenum mode;
    const char *name;
    const char *captions[FORMATS];
} kModes[MODES] = {
    {GL_REPLACE, "REPLACE", {"P, Ta", "T, Pa", "T, Ta", "T, Pa", "T, Ta"}},
    {GL_MODULATE, "MODULATE", {"P, Pa*Ta", "P*T, Pa", "P*T, Pa*Ta", "P*T, Pa", "P*T, Pa*Ta"}},
    {GL_DECAL, "DECAL", {0, 0, 0, "T, Pa", "P to T by Ta, Pa"}},
    {GL_BLEND, "BLEND", {"P, Pa*Ta", "P to C by T, Pa", "P to C, Pa*Ta", "P to C by T, Pa", "P to C, Pa*Ta"}},
    {GL_ADD, "ADD", {"P, Pa*Ta", "P+T, Pa", "P+T, Pa*Ta", "P+T, Pa", "P+T, Pa*Ta"}}};

// formula: takes the letters of its arguments in their order.
static const struct {
    GLenum function;
    const char *name, *formula;
    int arguments;
} kFunctions[FUNCTIONS] = {{GL_REPLACE, "REPLACE", "%s", 1},
                           {GL_MODULATE, "MODULATE", "%s * %s", 2},
                           {GL_ADD, "ADD", "%s + %s", 2},
                           {GL_ADD_SIGNED, "ADD_SIGNED", "%s + %s - 1/2", 2},
                           {GL_INTERPOLATE, "INTERPOLATE", "%s < %s by %s", 3},
                           {GL_SUBTRACT, "SUBTRACT", "%s - %s", 2},
                           {GL_DOT3_RGB, "DOT3_RGB", "%s . %s", 2},
                           {GL_DOT3_RGBA, "DOT3_RGBA", "%s . %s", 2}};

static const struct {
    const char *name, *detail;
    int units;
    GLenum sources[3];  // of the last unit
    GLenum operands[3]; // of the colour
    GLfloat scale;
    int alphaToo; // 1: alpha goes through the same function with the alpha of the arguments, 0: the primary alpha
    const char *letters[3];
} kVariants[VARIANTS] = {
    // clang-format off
    {"plain", "one unit", 1, {GL_TEXTURE, GL_PRIMARY_COLOR, GL_CONSTANT},
     {GL_SRC_COLOR, GL_SRC_COLOR, GL_SRC_COLOR}, 1.0f, 0, {"T", "P", "C"}},
    {"operands", "alpha too", 1, {GL_TEXTURE, GL_CONSTANT, GL_PRIMARY_COLOR},
     {GL_ONE_MINUS_SRC_COLOR, GL_SRC_COLOR, GL_ONE_MINUS_SRC_ALPHA}, 1.0f, 1, {"(1-T)", "C", "(1-Pa)"}},
    {"scale", "2, alpha too", 1, {GL_TEXTURE, GL_CONSTANT, GL_TEXTURE},
     {GL_SRC_COLOR, GL_SRC_COLOR, GL_SRC_ALPHA}, 2.0f, 1, {"T", "C", "Ta"}},
    {"two units", "V = T", 2, {GL_TEXTURE, GL_PREVIOUS, GL_PRIMARY_COLOR},
     {GL_SRC_COLOR, GL_SRC_COLOR, GL_SRC_ALPHA}, 1.0f, 0, {"U", "V", "Pa"}}};
// clang-format on

static const char *const kLegend[LEGEND_LINES] = {
    "A to B by K:  A * (1 - K) + B * K", "A < B by K:  A * K + B * (1 - K)",
    "A . B:  4 (A - 1/2) . (B - 1/2);  DOT3_RGBA: also as alpha",
    "Pa, Ta, Ca: alphas.  A comma parts a colour and its alpha.", "Checks show through where alpha is below 1."};

#endif
