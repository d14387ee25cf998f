// SPDX-License-Identifier: MIT
// Keys as legal calls lead to them. A state is a choice of one value for each of its aspects; whatever choices are
// made, the key made of them is one that the library can ask the generators for.
#pragma once

#include "shadergen/key.h"

#include <array>
#include <cstdint>
#include <vector>

/// The aspects of one combiner argument of one unit.
enum ArgumentAspect : uint32_t { RGB_SOURCE, RGB_OPERAND, ALPHA_SOURCE, ALPHA_OPERAND, ARGUMENT_ASPECTS };

/// The aspects of one texture unit.
enum UnitAspect : uint32_t {
    TARGET, // off, 2D, cube map, external
    TEXGEN,
    TEX_MATRIX,
    PROJECTIVE,
    FORMAT,
    ENVIRONMENT, // the classic modes, then the functions
    ALPHA_FUNCTION,
    SCALED,
    ARGUMENTS, // three arguments follow
    UNIT_ASPECTS = ARGUMENTS + 3 * ARGUMENT_ASPECTS,
};

/// The aspects of a state.
enum Aspect : uint32_t {
    LIGHTING, // off, on without lights, then sets of lights
    NORMALIZE,
    NO_SPECULAR,
    NO_DIFFUSE,
    TWO_SIDE,
    COLOR_MATERIAL,
    COLOR_ARRAY,
    ALPHA_FACTOR,
    FLAT,
    USER_CLIP,
    FOG,
    FOG_COORDINATE,
    FOG_IN_SHADER,
    PALETTE, // off, then one to four units
    ORTHOGONAL,
    MVP_FORM,
    ALPHA_TEST,
    PRIMITIVE, // see legal_keys.cpp
    ATTENUATION,
    SHORT_COORDINATES, // both units' arrays have at most two components
    UNIT0,
    UNIT1 = UNIT0 + UNIT_ASPECTS,
    ASPECTS = UNIT1 + UNIT_ASPECTS,
};

/// One value per aspect; 0 is the plain one.
using Choices = std::array<uint8_t, ASPECTS>;

/// Number of values of an aspect.
uint32_t aspectValues(uint32_t aspect);

/// Makes the choices that an aspect needs to have an effect: lights for the two-sided colour, a combiner for its
/// arguments. Aspects that are not plain already stay.
void choosePrerequisites(uint32_t aspect, Choices &choices);

/// The program key of the state.
ProgramKey legalKey(const Choices &choices);
