// SPDX-License-Identifier: MIT
// A board of every texture environment mode with every base format, and of every combiner function: plain, with
// operands, with a scale, over two units. Each cell lies over a checkerboard, which shows where alpha is below 1.
#include "combiners_cell.h"
#include "combiners_tables.h"
#include "combiners_text.h"
#include "combiners_textures.h"
#include "frame.h"

#include <math.h>
#include <stddef.h>
#include <stdio.h>

enum { WIDTH = 960, HEIGHT = 720, UPPER_ROW = 62, LOWER_ROW = 70 };

static const GLfloat kLeft = 112.0f, kColumn = 105.0f, kUpper = 602.0f, kLower = 262.0f; // bottoms of the first rows

static struct BoardTextures textures;

static const char *start(void)
{
    makeBoardTextures(&textures);
    return NULL;
}

static void drawChecks(GLfloat x, GLfloat y, const char *caption)
{
    setInk(176, 186, 204);
    writeCentred(TEXT_CAPTION, caption, x + 0.5f * CELL_WIDTH, y - 10.5f);
    useUnit(0, textures.checks, GL_REPLACE);
    turnOffUnit(1);
    drawRectangle(x, y, 6.0f);
}

static void drawEnvironments(void)
{
    for (int i = 0; i < MODES * FORMATS; ++i) {
        const int mode = i / FORMATS, format = i % FORMATS;
        const GLfloat x = kLeft + kColumn * (GLfloat)format, y = kUpper - UPPER_ROW * (GLfloat)mode;
        const char *caption = kModes[mode].captions[format];
        drawChecks(x, y, caption ? caption : "undefined");
        if (!caption) continue;
        useUnit(0, textures.paintings[format], kModes[mode].mode);
        drawRectangle(x, y, 2.0f);
    }
    setInk(255, 205, 120);
    for (int i = 0; i < FORMATS; ++i)
        writeCentred(TEXT_HEADING, kFormats[i].name, kLeft + kColumn * (GLfloat)i + 0.5f * CELL_WIDTH, kUpper + 53.0f);
    for (int i = 0; i < MODES; ++i)
        writeLine(TEXT_HEADING, kModes[i].name, 18.0f, kUpper - UPPER_ROW * (GLfloat)i + 18.0f);
}

static GLenum alphaOperand(GLenum operand)
{
    return operand == GL_SRC_COLOR || operand == GL_SRC_ALPHA ? GL_SRC_ALPHA : GL_ONE_MINUS_SRC_ALPHA;
}

static void setCombiner(int function, int variant)
{
    const GLenum name = kFunctions[function].function;
    const int alphaToo = kVariants[variant].alphaToo && name != GL_DOT3_RGB && name != GL_DOT3_RGBA;
    const GLfloat scale = kVariants[variant].scale;
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, (GLint)name);
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, alphaToo ? (GLint)name : GL_REPLACE);
    for (int i = 0; i < 3; ++i) {
        const GLenum source = kVariants[variant].sources[i], operand = kVariants[variant].operands[i];
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_RGB + (GLenum)i, (GLint)source);
        glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB + (GLenum)i, (GLint)operand);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_ALPHA + (GLenum)i, alphaToo ? (GLint)source : GL_PRIMARY_COLOR);
        glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_ALPHA + (GLenum)i,
                  alphaToo ? (GLint)alphaOperand(operand) : GL_SRC_ALPHA);
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, scale);
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, alphaToo ? scale : 1.0f);
}

static void drawCombiners(void)
{
    for (int i = 0; i < VARIANTS * FUNCTIONS; ++i) {
        const int variant = i / FUNCTIONS, function = i % FUNCTIONS, units = kVariants[variant].units;
        const GLfloat x = kLeft + kColumn * (GLfloat)function, y = kLower - LOWER_ROW * (GLfloat)variant;
        const GLuint texture = function < FUNCTIONS - 2 ? textures.paintings[FORMATS - 1] : textures.bumps;
        const char *const *letter = kVariants[variant].letters;
        char formula[40], caption[48];
        snprintf(formula, sizeof formula, kFunctions[function].formula, letter[0], letter[1], letter[2]);
        snprintf(caption, sizeof caption, kVariants[variant].scale == 1.0f ? "%s" : "2 (%s)", formula);
        drawChecks(x, y, caption);
        useUnit(0, texture, GL_REPLACE);
        if (units == 2) useUnit(1, textures.stripes, GL_COMBINE);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_COMBINE);
        setCombiner(function, variant);
        drawRectangle(x, y, 2.0f);
    }
    setInk(255, 205, 120);
    for (int i = 0; i < FUNCTIONS; ++i)
        writeCentred(TEXT_HEADING, kFunctions[i].name, kLeft + kColumn * (GLfloat)i + 0.5f * CELL_WIDTH,
                     kLower + 53.0f);
    for (int i = 0; i < VARIANTS; ++i) {
        writeLine(TEXT_HEADING, kVariants[i].name, 18.0f, kLower - LOWER_ROW * (GLfloat)i + 25.0f);
        writeLine(TEXT_CAPTION, kVariants[i].detail, 18.0f, kLower - LOWER_ROW * (GLfloat)i + 11.0f);
    }
}

// The ingredients, each as a combiner that replaces everything by it.
static void drawLegend(void)
{
    const struct {
        const char *caption;
        GLuint texture;
        GLenum source, operand;
    } kCells[] = {{"P: primary", textures.paintings[FORMATS - 1], GL_PRIMARY_COLOR, GL_SRC_COLOR},
                  {"T: texture", textures.paintings[FORMATS - 1], GL_TEXTURE, GL_SRC_COLOR},
                  {"Ta: its alpha", textures.paintings[FORMATS - 1], GL_TEXTURE, GL_SRC_ALPHA},
                  {"C: constant", textures.paintings[FORMATS - 1], GL_CONSTANT, GL_SRC_COLOR},
                  {"U: on unit 1", textures.stripes, GL_TEXTURE, GL_SRC_COLOR},
                  {"T under DOT3", textures.bumps, GL_TEXTURE, GL_SRC_COLOR}};
    for (int i = 0; i < 6; ++i) {
        const GLfloat x = kLeft + kColumn * (GLfloat)(FORMATS + i % 3), y = kUpper - UPPER_ROW * (GLfloat)(i / 3);
        drawChecks(x, y, kCells[i].caption);
        useUnit(0, kCells[i].texture, GL_COMBINE);
        setCombiner(0, 0);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_RGB, (GLint)kCells[i].source);
        glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB, (GLint)kCells[i].operand);
        glTexEnvi(GL_TEXTURE_ENV, GL_SRC0_ALPHA, (GLint)kCells[i].source);
        drawRectangle(x, y, 2.0f);
    }
    for (int i = 0; i < LEGEND_LINES; ++i)
        writeLine(TEXT_CAPTION, kLegend[i], kLeft + kColumn * FORMATS,
                  kUpper - UPPER_ROW * 2.0f + 22.0f - 17.0f * (GLfloat)i);
}

static void draw(int milliseconds, int width, int height)
{
    const GLfloat pixels = fminf((GLfloat)width / WIDTH, (GLfloat)height / HEIGHT);
    (void)milliseconds; // nothing moves
    glClearColor(0.11f, 0.13f, 0.17f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(0.0f, (GLfloat)width / pixels, 0.0f, (GLfloat)height / pixels, -1.0f, 1.0f);
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    for (int unit = 0; unit < 2; ++unit) {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    startText(pixels);
    setInk(240, 243, 250);
    writeLine(TEXT_TITLE, "texture environments and combiners", 18.0f, 685.0f);
    drawEnvironments();
    drawLegend();
    drawCombiners();

    turnOffUnit(1);
    glActiveTexture(GL_TEXTURE0);
    glClientActiveTexture(GL_TEXTURE0);
    glScalef(1.0f / pixels, 1.0f / pixels, 1.0f);
    drawWriting();
    glLoadIdentity();
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "combiners",
        .title = "Texture environments and combiners",
        .about = "Every environment mode with every base format, and every combiner function plain, with operands, "
                 "with a scale and over two units.",
        .start = start,
        .draw = draw,
        .posterWidth = WIDTH,
        .posterHeight = HEIGHT,
    };
    return runDemo(&demo, argc, argv);
}
