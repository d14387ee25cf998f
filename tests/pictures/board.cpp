// SPDX-License-Identifier: MIT
#include "pictures/board.h"

#include <algorithm>

namespace {

// A power of two, so that every cell begins and ends between pixels.
int columnsFor(size_t cells)
{
    int columns = 1;
    while (static_cast<size_t>(columns) * static_cast<size_t>(columns) < cells)
        columns *= 2;
    return columns;
}

Place placeOf(size_t cell, int columns)
{
    const int column = static_cast<int>(cell) % columns;
    const int row = static_cast<int>(cell) / columns;
    const auto edge = [columns](int i) { return 2.0f * static_cast<float>(i) / static_cast<float>(columns) - 1; };
    return {edge(column), edge(row), edge(column + 1), edge(row + 1)};
}

int pixelOf(float coordinate)
{
    return static_cast<int>((coordinate + 1) / 2 * kPictureSize);
}

} // namespace

Cell filledCell(std::string why, std::function<void()> set, Colour expected)
{
    return {std::move(why),
            [set = std::move(set)](const Place &place) {
                set();
                drawRectangle(place.left, place.bottom, place.right, place.top);
            },
            [expected](const Place &) { return expected; }};
}

Scene boardScene(std::string name, std::vector<Cell> cells, NativeMatch native, int probeTolerance)
{
    const int columns = columnsFor(cells.size());
    std::vector<Probe> probes;
    for (size_t i = 0; i < cells.size(); ++i) {
        const Place place = placeOf(i, columns);
        probes.push_back(
            probeOf(pixelOf(middleX(place)), pixelOf(middleY(place)), cells[i].expects(place), cells[i].why));
    }
    const auto draw = [cells = std::move(cells), columns] {
        for (size_t i = 0; i < cells.size(); ++i)
            cells[i].draw(placeOf(i, columns));
    };
    return {std::move(name), draw, std::move(probes), native, probeTolerance};
}

double byteOf(double channel)
{
    return 255 * std::clamp(channel, 0.0, 1.0);
}

Probe probeOf(int x, int y, const Colour &colour, std::string why)
{
    return {x, y, byteOf(colour.r), byteOf(colour.g), byteOf(colour.b), byteOf(colour.a), std::move(why)};
}
