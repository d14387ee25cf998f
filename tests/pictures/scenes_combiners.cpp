// SPDX-License-Identifier: MIT
// Combiners: every function, source, operand and scale, both units reading each other's textures, and random ones.
#include "pictures/environment_reference.h"

#include <random>

namespace {

constexpr GLenum kRgbFunctions[] = {GL_REPLACE,     GL_MODULATE, GL_ADD,      GL_ADD_SIGNED,
                                    GL_INTERPOLATE, GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA};
constexpr const char *kRgbNames[] = {"CombineReplace",     "CombineModulate", "CombineAdd",     "CombineAddSigned",
                                     "CombineInterpolate", "CombineSubtract", "CombineDot3Rgb", "CombineDot3Rgba"};
constexpr size_t kAlphaFunctions = 6; // of the above: no dot products
constexpr GLenum kSources[] = {GL_TEXTURE, GL_TEXTURE0, GL_TEXTURE1, GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS};
constexpr GLenum kOperands[] = {GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};

// Channels well away from each other, so that no mistake of source or operand gives the same picture.
constexpr Colour kPrimary = {0.6, 0.2, 0.9, 0.7};
constexpr Colour kTexel0 = {0.9, 0.3, 0.2, 0.6};
constexpr Colour kTexel1 = {0.1, 0.8, 0.5, 0.3};
constexpr Colour kConstant = {0.4, 0.7, 0.05, 0.25};

Unit combining(const Colour &texel)
{
    return {.enabled = true, .texel = texel, .environment = {.mode = GL_COMBINE, .constant = kConstant}};
}

// One colour function with every alpha function and the scales in their extremes.
std::vector<Cell> functionCells(GLenum rgb)
{
    constexpr double kScales[][2] = {{1, 1}, {2, 1}, {1, 4}, {4, 2}};
    std::vector<Cell> cells;
    for (size_t alpha = 0; alpha < kAlphaFunctions; ++alpha) {
        for (const auto &scale : kScales) {
            Unit unit = combining(kTexel0);
            unit.environment.rgb = rgb;
            unit.environment.alpha = kRgbFunctions[alpha];
            unit.environment.rgbScale = scale[0];
            unit.environment.alphaScale = scale[1];
            cells.push_back(unitsCell("with every alpha function and scale", unit, {}, kPrimary));
        }
    }
    return cells;
}

// Every source with every operand as that argument of unit 1; the other arguments stay simple.
std::vector<Cell> argumentCells(size_t which)
{
    std::vector<Cell> cells;
    for (const GLenum source : kSources) {
        for (const GLenum operand : kOperands) {
            Unit unit0 = combining(kTexel0);
            unit0.environment.rgb = GL_ADD_SIGNED;
            Unit unit1 = combining(kTexel1);
            Environment &env = unit1.environment;
            env.rgb = env.alpha = which == 2 ? GL_INTERPOLATE : GL_SUBTRACT;
            env.rgbArguments[which] = {source, operand};
            env.alphaArguments[which] = {source, operand == GL_SRC_COLOR             ? GLenum{GL_SRC_ALPHA}
                                                 : operand == GL_ONE_MINUS_SRC_COLOR ? GLenum{GL_ONE_MINUS_SRC_ALPHA}
                                                                                     : operand};
            if (which == 1) env.rgbArguments[0] = env.alphaArguments[0] = {GL_PRIMARY_COLOR, GL_SRC_ALPHA};
            cells.push_back(unitsCell("that argument", unit0, unit1, kPrimary));
        }
    }
    return cells;
}

// Unit 0 reads the texture of unit 1 and the other way round.
std::vector<Cell> crossbarCells()
{
    std::vector<Cell> cells;
    for (const GLenum rgb : {GL_MODULATE, GL_ADD, GL_INTERPOLATE, GL_DOT3_RGB}) {
        Unit unit0 = combining(kTexel0);
        Unit unit1 = combining(kTexel1);
        unit0.environment.rgb = unit1.environment.rgb = rgb;
        unit0.environment.rgbArguments[0] = {GL_TEXTURE1, GL_SRC_COLOR};
        unit0.environment.alphaArguments[0] = {GL_TEXTURE1, GL_SRC_ALPHA};
        unit1.environment.rgbArguments[0] = {GL_TEXTURE0, GL_ONE_MINUS_SRC_COLOR};
        unit1.environment.alphaArguments[1] = {GL_TEXTURE0, GL_ONE_MINUS_SRC_ALPHA};
        cells.push_back(unitsCell("each other's texture", unit0, unit1, kPrimary));
    }
    return cells;
}

// What a format lacks counts as 0 in colours and 1 in alpha.
std::vector<Cell> formatCells()
{
    std::vector<Cell> cells;
    for (const GLenum format : {GL_RGBA, GL_RGB, GL_LUMINANCE_ALPHA, GL_LUMINANCE, GL_ALPHA}) {
        for (const GLenum operand : kOperands) {
            Unit unit = combining(kTexel0);
            unit.format = format;
            unit.environment.rgb = GL_REPLACE;
            unit.environment.rgbArguments[0].operand = operand;
            cells.push_back(unitsCell("base format", unit, {}, kPrimary));
        }
    }
    return cells;
}

// Everything at random on both units; the numbers are the same at every run.
std::vector<Cell> randomCells(uint32_t seed, size_t count)
{
    std::mt19937 random(seed);
    const auto below = [&](size_t n) { return static_cast<size_t>(random() % n); };
    const auto channel = [&] { return static_cast<double>(below(256)) / 255; };
    const auto colour = [&] { return Colour{channel(), channel(), channel(), channel()}; };
    const auto unit = [&] {
        Unit u = combining(colour());
        Environment &env = u.environment;
        u.format = GLenum{GL_ALPHA} + static_cast<GLenum>(below(5));
        if (below(4) == 0) env.mode = GL_MODULATE;
        env.rgb = kRgbFunctions[below(8)];
        env.alpha = kRgbFunctions[below(kAlphaFunctions)];
        env.constant = colour();
        env.rgbScale = static_cast<double>(1 << below(3));
        env.alphaScale = static_cast<double>(1 << below(3));
        for (size_t i = 0; i < 3; ++i) {
            env.rgbArguments[i] = {kSources[below(6)], kOperands[below(4)]};
            env.alphaArguments[i] = {kSources[below(6)], kOperands[2 + below(2)]};
        }
        return u;
    };
    std::vector<Cell> cells;
    for (size_t i = 0; i < count; ++i) {
        const Unit unit0 = unit();
        const Unit unit1 = unit();
        cells.push_back(unitsCell("random " + std::to_string(seed) + "." + std::to_string(i), unit0, unit1, colour()));
    }
    return cells;
}

// Fixed and whole-number calls, and start values of a unit that only had its mode set.
std::vector<Cell> callCells()
{
    const auto cell = [](std::string why, std::function<void()> set, Environment environment) {
        const Unit before[2] = {combining(kTexel0), {}};
        Unit after = combining(kTexel0);
        environment.mode = GL_COMBINE;
        environment.constant = kConstant;
        after.environment = environment;
        const Unit expected[2] = {after, {}};
        return filledCell(
            std::move(why),
            [=] {
                setUnits(before, kPrimary);
                set();
            },
            textured(expected, kPrimary));
    };
    return {
        cell("start values", [] {}, {}),
        cell("fixed scales",
             [] {
                 glTexEnvx(GL_TEXTURE_ENV, GL_RGB_SCALE, 2 << 16);
                 glTexEnvx(GL_TEXTURE_ENV, GL_ALPHA_SCALE, 4 << 16);
             },
             {.rgbScale = 2, .alphaScale = 4}),
        cell("enums through fixed calls",
             [] {
                 glTexEnvx(GL_TEXTURE_ENV, GL_COMBINE_RGB, GL_SUBTRACT);
                 glTexEnvx(GL_TEXTURE_ENV, GL_SRC1_RGB, GL_CONSTANT);
             },
             {.rgb = GL_SUBTRACT,
              .rgbArguments = {{GL_TEXTURE, GL_SRC_COLOR}, {GL_CONSTANT, GL_SRC_COLOR}, {GL_CONSTANT, GL_SRC_ALPHA}}}),
        cell("enums through float calls",
             [] {
                 glTexEnvf(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, GL_ADD);
                 glTexEnvf(GL_TEXTURE_ENV, GL_OPERAND1_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
             },
             {.alpha = GL_ADD,
              .alphaArguments = {{GL_TEXTURE, GL_SRC_ALPHA},
                                 {GL_PREVIOUS, GL_ONE_MINUS_SRC_ALPHA},
                                 {GL_CONSTANT, GL_SRC_ALPHA}}}),
    };
}

std::vector<Cell> ownCells()
{
    Unit odd = combining(kTexel0);
    odd.environment.rgbScale = 3;
    odd.environment.alphaScale = 1.5;
    // The texture of a disabled unit counts as white.
    Unit other = combining(kTexel0);
    other.environment.rgbArguments[1] = {GL_TEXTURE1, GL_SRC_COLOR};
    other.environment.alphaArguments[1] = {GL_TEXTURE1, GL_SRC_ALPHA};
    return {unitsCell("any factor scales", odd, {}, kPrimary),
            unitsCell("a disabled unit's texture is white", other, {.texel = {1, 1, 1, 1}}, kPrimary)};
}

} // namespace

std::vector<Scene> combinerScenes()
{
    std::vector<Scene> scenes;
    for (size_t i = 0; i < std::size(kRgbFunctions); ++i)
        scenes.push_back(boardScene(kRgbNames[i], functionCells(kRgbFunctions[i]), {}, 2));
    scenes.push_back(boardScene("CombineFirstArgument", argumentCells(0)));
    scenes.push_back(boardScene("CombineSecondArgument", argumentCells(1)));
    scenes.push_back(boardScene("CombineThirdArgument", argumentCells(2)));
    scenes.push_back(boardScene("CombineCrossbar", crossbarCells()));
    scenes.push_back(boardScene("CombineFormats", formatCells()));
    scenes.push_back(boardScene("CombineCalls", callCells()));
    // Scales of 4 on both units multiply the rounding of texels to 8 bits.
    scenes.push_back(boardScene("CombineRandom1", randomCells(1, 64), {}, 2));
    scenes.push_back(boardScene("CombineRandom2", randomCells(2, 64), {}, 2));
    scenes.push_back(boardScene("CombineOwn", ownCells(),
                                {.instead = "any scale is taken, and the texture of a disabled unit is white, see "
                                            "docs/behaviour.md"}));
    return scenes;
}
