// SPDX-License-Identifier: MIT
#include "pictures/image.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <png.h>

bool writePng(const std::string &path, const Image &image)
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGBA;
    // A negative stride means that the first row in memory is the bottom of the picture.
    return png_image_write_to_file(&png, path.c_str(), 0, image.pixels.data(), -4 * image.width, nullptr) != 0;
}

Image readPng(const std::string &path)
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str())) return {};
    png.format = PNG_FORMAT_RGBA;
    Image image;
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    image.pixels.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, image.pixels.data(), -4 * image.width, nullptr)) return {};
    return image;
}

Difference compareImages(const Image &a, const Image &b, int tolerance)
{
    Difference difference;
    if (a.width != b.width || a.height != b.height) return {a.width * a.height + b.width * b.height, 255};
    for (size_t pixel = 0; pixel < a.pixels.size(); pixel += 4) {
        int most = 0;
        for (size_t channel = 0; channel < 4; ++channel)
            most = std::max(most, std::abs(a.pixels[pixel + channel] - b.pixels[pixel + channel]));
        difference.most = std::max(difference.most, most);
        if (most > tolerance) ++difference.pixels;
    }
    return difference;
}

Image differenceImage(const Image &a, const Image &b)
{
    Image image = a;
    for (size_t i = 0; i < image.pixels.size(); ++i) {
        const bool isAlpha = i % 4 == 3;
        const int off = i < b.pixels.size() ? std::abs(a.pixels[i] - b.pixels[i]) : 255;
        image.pixels[i] = static_cast<uint8_t>(isAlpha ? 255 : std::min(255, 8 * off));
    }
    return image;
}

std::string pictureFolder(const std::string &base)
{
    const char *limit = std::getenv("TRL20_DRIVER_LIMIT");
    return limit && *limit ? base + "/" + limit : base;
}
