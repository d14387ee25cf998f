// SPDX-License-Identifier: MIT
// A board is a picture of cells: each is drawn in a state of its own and has a colour worked out for it.
#pragma once

#include "pictures/scene.h"

/// Not clamped: 0..1 is what a picture can show.
struct Colour {
    double r, g, b, a;
};

inline constexpr Colour kEmpty = {0, 0, 0, 0}; // where nothing is drawn
inline constexpr Colour kWhite = {1, 1, 1, 1};

/// Where a cell lies, in normalised device coordinates.
struct Place {
    float left, bottom, right, top;
};

/// Middle of a place.
inline float middleX(const Place &place)
{
    return (place.left + place.right) / 2;
}
inline float middleY(const Place &place)
{
    return (place.bottom + place.top) / 2;
}

struct Cell {
    std::string why;                              // what is special about it
    std::function<void(const Place &)> draw;      // after the cells before it, in the same context
    std::function<Colour(const Place &)> expects; // colour of the pixel in its middle
};

/// A cell that sets state and fills its place with a rectangle, whose colour does not depend on the place.
Cell filledCell(std::string why, std::function<void()> set, Colour expected);

/// The cells from the lower left to the right and up, as many columns as rows: a power of two.
Scene boardScene(std::string name, std::vector<Cell> cells, NativeMatch native = {}, int probeTolerance = 1);

/// 0..255 of a clamped channel.
double byteOf(double channel);

/// A probe of a colour.
Probe probeOf(int x, int y, const Colour &colour, std::string why);
