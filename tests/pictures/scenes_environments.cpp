// SPDX-License-Identifier: MIT
// The simple environment modes: every mode with every base format, on either unit and on both.
#include "pictures/environment_reference.h"

namespace {

constexpr GLenum kModes[] = {GL_MODULATE, GL_REPLACE, GL_DECAL, GL_BLEND, GL_ADD};
constexpr GLenum kFormats[] = {GL_RGBA, GL_RGB, GL_LUMINANCE_ALPHA, GL_LUMINANCE, GL_ALPHA};
constexpr Colour kPrimary = {0.5, 0.25, 1, 0.5};
constexpr Colour kTexel = {0.8, 0.4, 0.2, 0.6};
constexpr Colour kConstant = {0.25, 0.5, 0.75, 1};

Unit unitOf(GLenum mode, GLenum format, const Colour &texel = kTexel)
{
    return {.enabled = true, .format = format, .texel = texel, .environment = {.mode = mode, .constant = kConstant}};
}

bool defined(GLenum mode, GLenum format)
{
    return mode != GL_DECAL || format == GL_RGB || format == GL_RGBA;
}

std::vector<Cell> oneUnitCells(size_t unit)
{
    std::vector<Cell> cells;
    for (const GLenum mode : kModes) {
        for (const GLenum format : kFormats) {
            if (!defined(mode, format)) continue;
            const Unit used = unitOf(mode, format);
            cells.push_back(unit ? unitsCell("unit 1 alone", {}, used, kPrimary)
                                 : unitsCell("unit 0 alone", used, {}, kPrimary));
        }
    }
    return cells;
}

std::vector<Cell> twoUnitCells()
{
    std::vector<Cell> cells;
    size_t n = 0;
    for (const GLenum first : kModes) {
        for (const GLenum second : kModes) {
            // Another pair of formats for every pair of modes, as far as the modes allow.
            const GLenum format0 = first == GL_DECAL ? kFormats[n % 2] : kFormats[n % 5];
            const GLenum format1 = second == GL_DECAL ? kFormats[n / 2 % 2] : kFormats[(n * 2 + 1) % 5];
            cells.push_back(unitsCell("one after the other", unitOf(first, format0),
                                      unitOf(second, format1, {0.3, 0.7, 0.9, 0.25}), kPrimary));
            ++n;
        }
    }
    return cells;
}

// Changes of one thing at a time in one context: format, mode, constant, enable, binding.
std::vector<Cell> changeCells()
{
    std::vector<Cell> cells;
    const auto step = [&](std::string why, const Unit &unit0, const Unit &unit1) {
        cells.push_back(unitsCell(std::move(why), unit0, unit1, kPrimary));
    };
    Unit a = unitOf(GL_MODULATE, GL_RGBA);
    Unit b = unitOf(GL_REPLACE, GL_ALPHA);
    step("one unit", a, {});
    step("a second", a, b);
    b.environment.mode = GL_ADD;
    step("another mode", a, b);
    b.format = GL_LUMINANCE;
    step("another format", a, b);
    a.enabled = false;
    step("the first disabled", a, b);
    a.format = GL_LUMINANCE_ALPHA;
    step("changed while disabled", a, b);
    a.enabled = true;
    step("enabled again", a, b);
    b.environment.mode = GL_BLEND;
    b.environment.constant = {1, 0, 0.5, 0};
    step("another constant", a, b);
    step("the second disabled", a, {});
    return cells;
}

// A texture of a format without colour does not touch the colour; here the library differs.
Cell decalCell(GLenum format, const Colour &expected)
{
    const Unit units[2] = {unitOf(GL_DECAL, format), {}};
    return filledCell(
        "decal", [=] { setUnits(units, kPrimary); }, expected);
}

std::vector<Cell> undefinedDecalCells()
{
    const double l = 0.8;
    const double a = 0.6;
    return {decalCell(GL_ALPHA, {0, 0, 0, kPrimary.a}), decalCell(GL_LUMINANCE, {l, l, l, kPrimary.a}),
            decalCell(GL_LUMINANCE_ALPHA, {kPrimary.r * (1 - a) + l * a, kPrimary.g * (1 - a) + l * a,
                                           kPrimary.b * (1 - a) + l * a, kPrimary.a})};
}

// The environment's colour set by another call than setUnits does.
Cell constantCell(std::string why, std::function<void()> set, const Colour &constant)
{
    const Unit unit = unitOf(GL_BLEND, GL_RGB);
    Unit expected = unit;
    expected.environment.constant = constant;
    const Unit units[2] = {expected, {}};
    return filledCell(
        std::move(why),
        [=] {
            const Unit before[2] = {unit, {}};
            setUnits(before, kPrimary);
            set();
        },
        textured(units, kPrimary));
}

std::vector<Cell> clampedConstantCells()
{
    return {constantCell("floats out of range",
                         [] {
                             const GLfloat values[] = {2, -1, 0.5f, 1};
                             glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, values);
                         },
                         {1, 0, 0.5, 1})};
}

std::vector<Cell> constantCells()
{
    return {constantCell("fixed numbers",
                         [] {
                             const GLfixed values[] = {0x10000, 0x4000, 0, 0x8000};
                             glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, values);
                         },
                         {1, 0.25, 0, 0.5})};
}

// Whole numbers are taken by value: 1 is full intensity already.
void wholeConstant()
{
    const GLint values[] = {128, 0, -5, 1};
    const Unit units[2] = {unitOf(GL_BLEND, GL_RGB), {}};
    setUnits(units, kPrimary);
    glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, values);
    drawRectangle(-1, -1, 1, 1);
}

} // namespace

std::vector<Scene> environmentScenes()
{
    Unit whole = unitOf(GL_BLEND, GL_RGB);
    whole.environment.constant = {1, 0, 0, 1};
    const Unit wholeUnits[2] = {whole, {}};
    return {
        boardScene("EnvironmentsOfUnit0", oneUnitCells(0)),
        boardScene("EnvironmentsOfUnit1", oneUnitCells(1)),
        boardScene("EnvironmentsOfTwoUnits", twoUnitCells()),
        boardScene("EnvironmentChanges", changeCells()),
        boardScene("DecalWithoutColour", undefinedDecalCells(),
                   {.instead = "decal of these formats is not defined by the standard, see docs/behaviour.md"}),
        boardScene("EnvironmentColours", constantCells()),
        boardScene("ClampedEnvironmentColour", clampedConstantCells(),
                   {.instead = "the machine's own ES 1.1 does not clamp the environment's colour"}),
        {"WholeEnvironmentColour",
         wholeConstant,
         {probeOf(64, 64, textured(wholeUnits, kPrimary), "1 is full intensity")},
         {.instead = "integer environment colours are taken by value, see docs/behaviour.md"}},
    };
}
