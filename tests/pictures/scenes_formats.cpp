// SPDX-License-Identifier: MIT
// Uncompressed images: every base format and packing, every unpack alignment, wrapping and filtering.
#include "pictures/textures.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

void newTexture()
{
    GLuint name;
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    nearestFilter();
    glEnable(GL_TEXTURE_2D);
    setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
}

// Texel x, y of a 2 x 2 image, over a current colour of which a format without colours or alpha leaves a part.
const Colour kBelow = {0.2, 0.4, 0.6, 0.8};

void drawTexelOf2(const Place &place, int x, int y)
{
    glColor4f(0.2f, 0.4f, 0.6f, 0.8f);
    drawTexel(place, (x + 0.5) / 2, (y + 0.5) / 2);
}

// The four texels of a 2 x 2 image whose rows are padded to the alignment.
void addImage(std::vector<Cell> &cells, std::string why, GLenum format, GLenum type, int alignment,
              const std::vector<GLubyte> &bytes, const Colour (&expected)[4])
{
    for (int i = 0; i < 4; ++i) {
        cells.push_back({why,
                         [=](const Place &place) {
                             newTexture();
                             glPixelStorei(GL_UNPACK_ALIGNMENT, alignment);
                             glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 2, 2, 0, format, type,
                                          bytes.data());
                             drawTexelOf2(place, i % 2, i / 2);
                         },
                         [colour = expected[i]](const Place &) { return colour; }});
    }
}

// Bytes of a row-padded image from four texels.
std::vector<GLubyte> padded(const std::vector<GLubyte> &texels, size_t texelBytes, size_t alignment)
{
    std::vector<GLubyte> bytes;
    for (size_t row = 0; row < 2; ++row) {
        for (size_t i = 0; i < 2 * texelBytes; ++i)
            bytes.push_back(texels[row * 2 * texelBytes + i]);
        while (bytes.size() % alignment)
            bytes.push_back(0xEE);
    }
    return bytes;
}

std::vector<Cell> byteFormatCells()
{
    std::vector<Cell> cells;
    addImage(cells, "RGBA", GL_RGBA, GL_UNSIGNED_BYTE, 4,
             {255, 0, 51, 102, 0, 255, 0, 0, 1, 2, 3, 255, 128, 64, 32, 16},
             {{1, 0, 0.2, 0.4},
              {0, 1, 0, 0},
              {1 / 255.0, 2 / 255.0, 3 / 255.0, 1},
              {128 / 255.0, 64 / 255.0, 32 / 255.0, 16 / 255.0}});
    addImage(cells, "RGB", GL_RGB, GL_UNSIGNED_BYTE, 1, {255, 0, 51, 0, 255, 0, 102, 153, 204, 255, 255, 255},
             {{1, 0, 0.2, 0.8}, {0, 1, 0, 0.8}, {0.4, 0.6, 0.8, 0.8}, {1, 1, 1, 0.8}});
    addImage(cells, "luminance", GL_LUMINANCE, GL_UNSIGNED_BYTE, 1, {0, 51, 102, 255},
             {{0, 0, 0, 0.8}, {0.2, 0.2, 0.2, 0.8}, {0.4, 0.4, 0.4, 0.8}, {1, 1, 1, 0.8}});
    addImage(cells, "luminance and alpha", GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, 4, {0, 255, 51, 102, 102, 51, 255, 0},
             {{0, 0, 0, 1}, {0.2, 0.2, 0.2, 0.4}, {0.4, 0.4, 0.4, 0.2}, {1, 1, 1, 0}});
    addImage(cells, "alpha", GL_ALPHA, GL_UNSIGNED_BYTE, 1, {0, 51, 102, 255},
             {{kBelow.r, kBelow.g, kBelow.b, 0},
              {kBelow.r, kBelow.g, kBelow.b, 0.2},
              {kBelow.r, kBelow.g, kBelow.b, 0.4},
              {kBelow.r, kBelow.g, kBelow.b, 1}});
    return cells;
}

std::vector<GLubyte> bytesOf(std::initializer_list<uint16_t> words)
{
    std::vector<GLubyte> bytes;
    for (const uint16_t word : words) {
        GLubyte two[sizeof(word)];
        std::memcpy(two, &word, sizeof(word));
        bytes.push_back(two[0]);
        bytes.push_back(two[1]);
    }
    return bytes;
}

std::vector<Cell> packedFormatCells()
{
    std::vector<Cell> cells;
    addImage(cells, "5 6 5", GL_RGB, GL_UNSIGNED_SHORT_5_6_5, 4, bytesOf({0xF800, 0x07E0, 0x001F, 0x8410}),
             {{1, 0, 0, 0.8}, {0, 1, 0, 0.8}, {0, 0, 1, 0.8}, {16 / 31.0, 32 / 63.0, 16 / 31.0, 0.8}});
    addImage(cells, "4 4 4 4", GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, 4, bytesOf({0xF00F, 0x0F08, 0x00F4, 0x1234}),
             {{1, 0, 0, 1}, {0, 1, 0, 8 / 15.0}, {0, 0, 1, 4 / 15.0}, {1 / 15.0, 2 / 15.0, 3 / 15.0, 4 / 15.0}});
    addImage(cells, "5 5 5 1", GL_RGBA, GL_UNSIGNED_SHORT_5_5_5_1, 4, bytesOf({0xF801, 0x07C0, 0x003F, 0x8421}),
             {{1, 0, 0, 1}, {0, 1, 0, 0}, {0, 0, 1, 1}, {16 / 31.0, 16 / 31.0, 16 / 31.0, 1}});
    return cells;
}

std::vector<Cell> alignmentCells()
{
    std::vector<Cell> cells;
    for (const int alignment : {1, 2, 4, 8}) {
        addImage(cells, "RGB rows padded", GL_RGB, GL_UNSIGNED_BYTE, alignment,
                 padded({255, 0, 0, 0, 255, 0, 0, 0, 255, 51, 102, 153}, 3, static_cast<size_t>(alignment)),
                 {{1, 0, 0, 0.8}, {0, 1, 0, 0.8}, {0, 0, 1, 0.8}, {0.2, 0.4, 0.6, 0.8}});
        addImage(cells, "luminance rows padded", GL_LUMINANCE, GL_UNSIGNED_BYTE, alignment,
                 padded({0, 51, 102, 255}, 1, static_cast<size_t>(alignment)),
                 {{0, 0, 0, 0.8}, {0.2, 0.2, 0.2, 0.8}, {0.4, 0.4, 0.4, 0.8}, {1, 1, 1, 0.8}});
    }
    return cells;
}

// The quarters looked up outside 0..1. s and t wrap each in its own way.
std::vector<Cell> wrapCells()
{
    std::vector<Cell> cells;
    const auto wrapped = [](GLenum mode, double at) {
        if (mode == GL_CLAMP_TO_EDGE) return at < 0.5 ? 0 : 1;
        const double fraction = at - std::floor(at);
        const bool turned = mode == GL_MIRRORED_REPEAT_OES && static_cast<int>(std::floor(at)) % 2 != 0;
        return (turned ? 1 - fraction : fraction) < 0.5 ? 0 : 1;
    };
    for (const GLenum inS : {GL_REPEAT, GL_CLAMP_TO_EDGE, GL_MIRRORED_REPEAT_OES}) {
        for (const GLenum inT : {GL_REPEAT, GL_CLAMP_TO_EDGE, GL_MIRRORED_REPEAT_OES}) {
            for (const double s : {-0.25, 1.25}) {
                for (const double t : {-0.75, 2.75}) {
                    cells.push_back(
                        {"outside 0..1",
                         [=](const Place &place) {
                             quartersTexture();
                             glEnable(GL_TEXTURE_2D);
                             setEnv(GL_TEXTURE_ENV_MODE, GL_REPLACE);
                             glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, static_cast<GLint>(inS));
                             glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, static_cast<GLfloat>(inT));
                             drawTexel(place, s, t);
                         },
                         [=](const Place &) { return kQuarterColours[2 * wrapped(inT, t) + wrapped(inS, s)]; }});
                }
            }
        }
    }
    return cells;
}

// Between two texels a linear filter weighs them; at a quarter of the picture it is three to one.
void linearFilter()
{
    static const GLubyte texels[] = {255, 0, 0, 255, 0, 0, 255, 255};
    newTexture();
    glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    drawRectangle(-1, -1, 1, 1);
}

// Red at s = 0.25 and below, blue at 0.75 and above, in between by the distance.
Probe linearProbe(int x)
{
    const double blue = ((x + 0.5) / kPictureSize - 0.25) * 2;
    return probeOf(x, 64, {1 - blue, 0, blue, 1}, "weighed by the distance");
}

} // namespace

std::vector<Scene> formatScenes()
{
    return {
        boardScene("ByteFormats", byteFormatCells()),
        boardScene("PackedFormats", packedFormatCells()),
        boardScene("UnpackAlignments", alignmentCells()),
        boardScene("Wrapping", wrapCells()),
        {"LinearFilter",
         linearFilter,
         {probeOf(16, 64, {1, 0, 0, 1}, "edge"), linearProbe(40), linearProbe(64), linearProbe(90),
          probeOf(112, 64, {0, 0, 1, 1}, "edge")},
         {},
         3}, // filters may weigh in 8 bits
    };
}
