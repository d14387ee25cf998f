// SPDX-License-Identifier: MIT
// What happens to images after their first upload: mipmaps, parts replaced, copies from the picture, other sizes.
#include "pictures/textures.h"

namespace {

std::vector<GLubyte> texelsOf(int count, const Colour &a, const Colour &b)
{
    std::vector<GLubyte> texels;
    for (int i = 0; i < count; ++i) {
        const Colour &colour = i % 2 ? b : a;
        for (const double channel : {colour.r, colour.g, colour.b, colour.a})
            texels.push_back(static_cast<GLubyte>(byteOf(channel)));
    }
    return texels;
}

void image(int level, int size, const Colour &a, const Colour &b)
{
    glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA, size, size, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 texelsOf(size * size, a, b).data());
}

const Colour kRed = {1, 0, 0, 1};
const Colour kGreen = {0, 1, 0, 1};
const Colour kBlue = {0, 0, 1, 1};
const Colour kBlack = {0, 0, 0, 1};

constexpr int kSize = 8;

// Stripes of two colours: every smaller level is their mean.
void generated(const Colour &a, const Colour &b)
{
    bindNew(GL_NEAREST_MIPMAP_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    image(0, kSize, a, b);
}

std::vector<Cell> generatedCells()
{
    std::vector<Cell> cells;
    const Colour mean = {0.5, 0, 0.5, 1};
    for (int level = 0; level < 4; ++level)
        cells.push_back({"level " + std::to_string(level),
                         [=](const Place &place) {
                             generated(kRed, kBlue);
                             drawLevelTexel(place, kSize, level, 0, 0);
                         },
                         [=](const Place &) { return level ? mean : kRed; }});
    // A part replaced: the mipmaps follow. The left half becomes green.
    for (int level = 0; level < 4; ++level)
        cells.push_back({"after a sub-image, level " + std::to_string(level),
                         [=](const Place &place) {
                             generated(kRed, kBlue);
                             glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 4, 8, GL_RGBA, GL_UNSIGNED_BYTE,
                                             texelsOf(32, kGreen, kGreen).data());
                             drawLevelTexel(place, kSize, level, 0, 0);
                         },
                         [=](const Place &) {
                             return level < 3 ? kGreen : Colour{0.25, 0.5, 0.25, 1};
                         }});
    // Not asked for any more: the old mipmaps stay.
    for (int level = 0; level < 2; ++level)
        cells.push_back({"no longer generated",
                         [=](const Place &place) {
                             generated(kRed, kBlue);
                             glTexParameterf(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 0);
                             image(0, kSize, kWhite, kWhite);
                             drawLevelTexel(place, kSize, level, 0, 0);
                         },
                         [=](const Place &) { return level ? mean : kWhite; }});
    return cells;
}

// Levels given one by one, each in a colour, under every minifying filter. At a scale between levels the linear ones
// mix.
void ownLevels(GLenum minFilter)
{
    bindNew(minFilter);
    image(0, 8, kRed, kRed);
    image(1, 4, kGreen, kGreen);
    image(2, 2, kBlue, kBlue);
    image(3, 1, kWhite, kWhite);
}

std::vector<Cell> filterCells()
{
    const Colour levels[] = {kRed, kGreen, kBlue, kWhite};
    std::vector<Cell> cells;
    for (const GLenum filter : {GL_NEAREST, GL_LINEAR, GL_NEAREST_MIPMAP_NEAREST, GL_LINEAR_MIPMAP_NEAREST,
                                GL_NEAREST_MIPMAP_LINEAR, GL_LINEAR_MIPMAP_LINEAR}) {
        const bool mipmapped = filter != GL_NEAREST && filter != GL_LINEAR;
        for (int level = 0; level < 4; ++level)
            cells.push_back({"minifying filter",
                             [=](const Place &place) {
                                 ownLevels(filter);
                                 drawLevelTexel(place, 8, level, 0, 0);
                             },
                             [=, colour = levels[mipmapped ? level : 0]](const Place &) { return colour; }});
    }
    return cells;
}

void subImages()
{
    bindNew();
    image(0, 8, kRed, kRed);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 4, 0, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, texelsOf(16, kGreen, kGreen).data());
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 6, 8, 2, GL_RGBA, GL_UNSIGNED_BYTE, texelsOf(16, kBlue, kBlue).data());
    drawRectangle(-1, -1, 1, 1);
}

// The picture so far: red left, blue right below the middle, black above.
void drawOriginal()
{
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_TEXTURE_2D);
    glColor4f(1, 0, 0, 1);
    drawRectangle(-1, -1, 0, 0);
    glColor4f(0, 0, 1, 1);
    drawRectangle(0, -1, 1, 0);
    glColor4f(1, 1, 1, 1);
}

void copiedImage()
{
    drawOriginal();
    bindNew();
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 32, 32, 64, 64, 0);
    drawRectangle(-1, -1, 1, 1);
}

void copiedPart()
{
    drawOriginal();
    bindNew();
    image(0, 64, kGreen, kGreen);
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 32, 0, 48, 0, 32, 32);
    drawRectangle(-1, -1, 1, 1);
}

void copiedWithMipmaps()
{
    drawOriginal();
    bindNew(GL_NEAREST_MIPMAP_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, GL_TRUE);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 32, 0, 64, 64, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    drawLevelTexel({-1, -1, 1, 1}, 64, 6, 0, 0);
}

// The base format follows the copy: luminance and alpha of what was drawn.
void copiedAsAlpha()
{
    glClearColor(0, 0, 0, 0.4f);
    glClear(GL_COLOR_BUFFER_BIT);
    bindNew();
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 0, 0, 64, 64, 0);
    glColor4f(0.2f, 0.4f, 0.6f, 1);
    drawRectangle(-1, -1, 0, 1);
    glClearColor(0.6f, 0.3f, 0.1f, 1);
    glEnable(GL_SCISSOR_TEST);
    glScissor(64, 0, 64, 128);
    glClear(GL_COLOR_BUFFER_BIT);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_LUMINANCE, 64, 0, 64, 64, 0);
    drawRectangle(0, -1, 1, 1);
}

// Respecified in another size and format: the environment follows the format.
void respecified()
{
    static const GLubyte alphas[] = {51, 51, 51, 51};
    bindNew();
    image(0, 8, kRed, kRed);
    glColor4f(0, 0.5f, 1, 1);
    drawRectangle(-1, -1, 0, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, 2, 2, 0, GL_ALPHA, GL_UNSIGNED_BYTE, alphas);
    drawRectangle(0, -1, 1, 1);
}

// The library tells the error, and still gives the image to a driver that takes any size.
void notPowerOfTwo()
{
    bindNew();
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    image(0, 6, kGreen, kGreen);
    if (glGetError() == GL_INVALID_VALUE) drawRectangle(-1, -1, 1, 1);
}

// An enabled unit with nothing but the default texture leaves the colour alone.
void noTexture()
{
    glEnable(GL_TEXTURE_2D);
    glColor4f(0.2f, 0.4f, 0.6f, 0.8f);
    drawRectangle(-1, -1, 1, 1);
}

// A texture without the levels that its filter wants is black; the standard disables its unit.
void withoutLevels()
{
    bindNew(GL_NEAREST_MIPMAP_NEAREST);
    setEnv(GL_TEXTURE_ENV_MODE, GL_MODULATE);
    image(0, 2, kRed, kRed);
    glColor4f(0.2f, 0.4f, 0.6f, 0.8f);
    drawRectangle(-1, -1, 1, 1);
}

// Once the levels are there it is used.
void completedLater()
{
    bindNew(GL_NEAREST_MIPMAP_NEAREST);
    image(0, 2, kRed, kRed);
    drawRectangle(-1, -1, 1, 1);
    image(1, 1, kGreen, kGreen);
    drawLevelTexel({-1, -1, 1, 1}, 2, 1, 0, 0);
}

} // namespace

std::vector<Scene> imageScenes()
{
    return {
        boardScene("GeneratedMipmaps", generatedCells(), {}, 2),
        boardScene("MinifyingFilters", filterCells(), {}, 2),
        {"SubImages",
         subImages,
         {probeOf(32, 32, kRed, "as uploaded"), probeOf(96, 32, kGreen, "first part"),
          probeOf(32, 112, kBlue, "second part"), probeOf(96, 80, kRed, "as uploaded")}},
        {"CopiedImage",
         copiedImage,
         {probeOf(16, 16, kRed, "red quarter"), probeOf(112, 16, kBlue, "blue quarter"),
          probeOf(64, 96, kBlack, "nothing drawn there")}},
        {"CopiedPart",
         copiedPart,
         {probeOf(32, 32, kGreen, "as uploaded"), probeOf(80, 16, kRed, "red part"),
          probeOf(112, 16, kBlue, "blue part"), probeOf(96, 96, kGreen, "as uploaded")}},
        {"CopiedWithMipmaps", copiedWithMipmaps, {probeOf(64, 64, {0.5, 0, 0.5, 1}, "half red, half blue")}, {}, 2},
        {"CopiedAsAlpha",
         copiedAsAlpha,
         {probeOf(32, 64, {0.2, 0.4, 0.6, 0.4}, "alpha alone"),
          probeOf(96, 64, {0.6, 0.6, 0.6, 1}, "red as luminance")}},
        {"Respecified", respecified, {probeOf(32, 64, kRed, "RGBA"), probeOf(96, 64, {0, 0.5, 1, 0.2}, "alpha")}},
        {"NotPowerOfTwo",
         notPowerOfTwo,
         {probeOf(64, 64, kGreen, "an error, and the image all the same")},
         {.instead = "sizes that are no powers of two give an error and the image, see docs/behaviour.md"}},
        {"NoTexture", noTexture, {probeOf(64, 64, {0.2, 0.4, 0.6, 0.8}, "the current colour")}},
        {"TextureWithoutLevels",
         withoutLevels,
         {probeOf(64, 64, {0, 0, 0, 0.8}, "black, opaque texels")},
         {.instead = "incomplete textures are black, see docs/behaviour.md"}},
        {"CompletedLater", completedLater, {probeOf(64, 64, kGreen, "level 1")}},
    };
}
