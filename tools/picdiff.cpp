// SPDX-License-Identifier: MIT
// Compares two PNG pictures and says in one line how far they are apart.
#include "pictures/image.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

struct Options {
    const char *files[2] = {};
    const char *differenceFile = nullptr; // null: no picture of the difference is written
    int tolerance = 8;                    // of a channel: what one rounding step of a 5-bit channel makes
    double allowedPercent = 100.0;        // of the pixels
};

bool readOptions(Options &options, int argc, char **argv)
{
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        const bool hasValue = i + 1 < argc;
        char *end = nullptr;
        if (strcmp(argv[i], "--out") == 0 && hasValue) {
            options.differenceFile = argv[++i];
        } else if (strcmp(argv[i], "--tolerance") == 0 && hasValue) {
            options.tolerance = static_cast<int>(strtol(argv[++i], &end, 10));
            if (*end || options.tolerance < 0 || options.tolerance > 255) return false;
        } else if (strcmp(argv[i], "--allow") == 0 && hasValue) {
            options.allowedPercent = strtod(argv[++i], &end);
            if (*end || !(options.allowedPercent >= 0.0 && options.allowedPercent <= 100.0)) return false;
        } else if (argv[i][0] != '-' && files < 2) {
            options.files[files++] = argv[i];
        } else {
            return false;
        }
    }
    return files == 2;
}

double meanDifference(const Image &a, const Image &b)
{
    double sum = 0.0;
    for (size_t i = 0; i < a.pixels.size(); ++i)
        sum += abs(a.pixels[i] - b.pixels[i]);
    return sum / static_cast<double>(a.pixels.size());
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    if (!readOptions(options, argc, argv)) {
        fprintf(stderr, "usage: picdiff A.png B.png [--tolerance N] [--allow PERCENT] [--out DIFFERENCE.png]\n"
                        "  --tolerance N    a pixel differs when a channel is further off than N of 255 (8)\n"
                        "  --allow PERCENT  exit status 1 when more of the pixels differ (100)\n");
        return 2;
    }
    const Image a = readPng(options.files[0]), b = readPng(options.files[1]);
    for (int i = 0; i < 2; ++i) {
        if (!(i ? b : a).pixels.empty()) continue;
        fprintf(stderr, "picdiff: cannot read %s\n", options.files[i]);
        return 2;
    }
    if (a.width != b.width || a.height != b.height) {
        printf("sizes differ: %dx%d and %dx%d\n", a.width, a.height, b.width, b.height);
        return 1;
    }
    const Difference difference = compareImages(a, b, options.tolerance);
    const int pixels = a.width * a.height;
    const double percent = 100.0 * difference.pixels / pixels;
    printf("%d of %d pixels differ by more than %d (%.2f %%), largest difference %d, mean %.3f\n", difference.pixels,
           pixels, options.tolerance, percent, difference.most, meanDifference(a, b));
    if (options.differenceFile && !writePng(options.differenceFile, differenceImage(a, b))) {
        fprintf(stderr, "picdiff: cannot write %s\n", options.differenceFile);
        return 2;
    }
    return percent > options.allowedPercent ? 1 : 0;
}
