// SPDX-License-Identifier: MIT
// Pictures as the tests compare them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// RGBA, 8 bits each, rows from the bottom up as glReadPixels gives them.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> pixels; // 4 * width * height

    const uint8_t *at(int x, int y) const
    {
        return &pixels[4 * (static_cast<size_t>(y) * width + x)];
    }
};

/// Writes a PNG with the bottom row last. Returns false when the file cannot be written.
bool writePng(const std::string &path, const Image &image);

/// Reads a PNG written by writePng. An empty image when it cannot be read.
Image readPng(const std::string &path);

struct Difference {
    int pixels = 0; // with a channel further off than the tolerance
    int most = 0;   // largest difference of a channel
};

/// Compares two pictures of the same size channel by channel; different sizes differ in every pixel.
Difference compareImages(const Image &a, const Image &b, int tolerance);

/// Absolute differences, eight times brighter, opaque.
Image differenceImage(const Image &a, const Image &b);

/// Where a test's pictures go below that folder. Runs over a limited driver keep theirs apart: they may go on beside
/// each other.
std::string pictureFolder(const std::string &base);
