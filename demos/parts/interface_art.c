// SPDX-License-Identifier: MIT
#include "interface_art.h"

#include "basics.h"

#include <math.h>

enum { ICON_UNITS = 24 };

// In the notation of readStrokes, on a square of 24 units.
static const char *const kIcons[ICONS] = {
    [ICON_PAUSE] = "868i g6gi",
    [ICON_PREVIOUS] = "555j j5jj8cj5",
    [ICON_HEART] = "~c42b2kalcg ~c4mbmkelcg",
    [ICON_REPEAT] = "~4b4hkh hkkhhe ~kdk747 7a4774",
    [ICON_WIFI] = "~2ecnme ~6acgia c5c5",
    [ICON_BATTERY] = "272hjhj727 mame 5a5e 8a8e babe",
    [ICON_BULB] = "~989b5d5mjmjdfbf8 95f5 a2e2",
    [ICON_MOON] = "~al3k33k3le ~al8ale",
    [ICON_CLOCK] = "~33l3ll3l33 cicch9",
    [ICON_LOCK] = "535djdj353 ~8d8lglgd cac7",
    [ICON_SUN] = "~88g8gg8g88 cjcm c2c5 2c5c jcmc 5577 hhjj 5j7h h7j5",
    [ICON_CLOUD] = "~45l5mdhdgj7j7c1c1545",
    [ICON_RAIN] = "~49l9mhhhgn7n7g1g1949 8673 d6c3 i6h3",
};

struct Brush {
    struct Strokes strokes;
    GLfloat pixelsPerUnit;
    GLfloat pixels; // width and height of the piece
    GLfloat radius; // of corners, in pixels
};

static void mix(GLfloat *rgba, GLfloat red, GLfloat green, GLfloat blue, GLfloat amount)
{
    const GLfloat colour[] = {red, green, blue};
    for (int i = 0; i < 3; ++i)
        rgba[i] += (colour[i] - rgba[i]) * amount;
}

// 1 inside a square with rounded corners, 0 outside, in between on the pixel of the rim.
static GLfloat roundedSquare(const struct Brush *brush, GLfloat x, GLfloat y)
{
    const GLfloat half = 0.5f * brush->pixels, inner = half - brush->radius;
    const GLfloat u = fmaxf(fabsf(x - half) - inner, 0.0f), v = fmaxf(fabsf(y - half) - inner, 0.0f);
    return fminf(fmaxf(brush->radius - hypotf(u, v) + 0.5f, 0.0f), 1.0f);
}

static void paintIcon(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    const struct Brush *brush = what;
    rgba[3] =
        strokeCoverage(&brush->strokes, x / brush->pixelsPerUnit, y / brush->pixelsPerUnit, 2.2f, brush->pixelsPerUnit);
}

static void paintShape(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    rgba[3] = roundedSquare(what, x, y);
}

static void paintMeter(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    const struct Brush *brush = what;
    (void)x;
    mix(rgba, 0.36f, 0.80f, 0.86f, 1.0f);
    mix(rgba, 1.0f, 0.50f, 0.46f, y / brush->pixels);
}

// Soft lights on dark blue; the piece is small and stretched over the whole window.
static void paintWallpaper(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    const struct Brush *brush = what;
    const GLfloat u = x / brush->pixels, v = y / brush->pixels;
    mix(rgba, 0.07f, 0.08f, 0.15f, 1.0f);
    mix(rgba, 0.36f, 0.16f, 0.42f, 0.9f * smoothStep(0.75f, 0.0f, hypotf(u - 0.05f, v - 0.95f)));
    mix(rgba, 0.08f, 0.34f, 0.46f, 0.9f * smoothStep(0.85f, 0.0f, hypotf(u - 1.0f, v - 0.15f)));
    mix(rgba, 0.52f, 0.24f, 0.28f, 0.6f * smoothStep(0.60f, 0.0f, hypotf(u - 0.15f, v - 0.0f)));
}

static GLfloat ridge(GLfloat u, GLfloat seed, GLfloat height)
{
    return 0.30f + height * (0.6f * noise(4.0f * u + seed, seed, 64) + 0.4f * noise(13.0f * u, seed + 9.0f, 64));
}

// The cover: a sun over mountains and their lake.
static void paintCover(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    const struct Brush *brush = what;
    const GLfloat edge = 1.0f / brush->pixels, u = x / brush->pixels, lake = 0.30f, height = y / brush->pixels;
    const GLfloat wave = height < lake ? 0.05f * (lake - height) * sinf(90.0f * sqrtf(lake - height)) : 0.0f;
    const GLfloat v = height < lake ? 2.0f * lake - height : height, across = u + wave; // the lake mirrors
    mix(rgba, 0.99f, 0.72f, 0.42f, 1.0f);
    mix(rgba, 0.86f, 0.34f, 0.42f, smoothStep(0.35f, 0.68f, v));
    mix(rgba, 0.26f, 0.18f, 0.42f, smoothStep(0.60f, 1.0f, v));
    const GLfloat sun = hypotf(across - 0.60f, v - 0.60f);
    mix(rgba, 1.0f, 0.80f, 0.55f, 0.5f * smoothStep(0.42f, 0.10f, sun));
    mix(rgba, 1.0f, 0.95f, 0.80f, smoothStep(edge, -edge, sun - 0.13f));
    mix(rgba, 0.56f, 0.25f, 0.42f, smoothStep(edge, -edge, v - ridge(across, 3.0f, 0.38f)));
    mix(rgba, 0.32f, 0.15f, 0.36f, smoothStep(edge, -edge, v - ridge(across, 17.0f, 0.26f)));
    mix(rgba, 0.13f, 0.08f, 0.24f, smoothStep(edge, -edge, v - ridge(across, 31.0f, 0.13f)));
    if (height < lake) mix(rgba, 0.12f, 0.10f, 0.28f, 0.25f + 0.8f * (lake - height));
    rgba[3] = roundedSquare(brush, x, y);
}

// A sun behind a cloud, in colour.
static void paintWeather(const void *what, GLfloat x, GLfloat y, GLfloat *rgba)
{
    static const GLfloat kPuffs[][3] = {{0.28f, 0.30f, 0.15f}, {0.50f, 0.38f, 0.21f}, {0.74f, 0.30f, 0.16f}};
    const struct Brush *brush = what;
    const GLfloat u = x / brush->pixels, v = y / brush->pixels, edge = 0.7f / brush->pixels;
    GLfloat cloud = hypotf(fmaxf(fabsf(u - 0.51f) - 0.23f, 0.0f), v - 0.25f) - 0.11f;
    for (int i = 0; i < 3; ++i)
        cloud = fminf(cloud, hypotf(u - kPuffs[i][0], v - kPuffs[i][1]) - kPuffs[i][2]);
    const GLfloat sun = hypotf(u - 0.64f, v - 0.64f), isCloud = smoothStep(edge, -edge, cloud);
    mix(rgba, 1.0f, 0.74f, 0.28f, 1.0f);
    mix(rgba, 1.0f, 0.90f, 0.50f, smoothStep(0.45f, 0.9f, v));
    mix(rgba, 0.80f, 0.86f, 0.96f, isCloud);
    mix(rgba, 1.0f, 1.0f, 1.0f, isCloud * smoothStep(0.2f, 0.55f, v));
    const GLfloat glow = 0.5f * smoothStep(0.36f, 0.18f, sun), disc = smoothStep(edge, -edge, sun - 0.22f);
    rgba[3] = fmaxf(isCloud, fmaxf(disc, glow * glow));
}

static struct Piece addSquare(struct Atlas *atlas, PaintTexel *paint, GLfloat pixels, GLfloat radius)
{
    const struct Brush brush = {.pixels = roundf(pixels), .radius = radius};
    return addPiece(atlas, (int)brush.pixels, (int)brush.pixels, paint, &brush);
}

static struct Piece addIcon(struct Atlas *atlas, int icon, GLfloat pixels)
{
    const struct Brush brush = {.strokes = readStrokes(kIcons[icon]), .pixelsPerUnit = pixels / ICON_UNITS};
    return addPiece(atlas, (int)roundf(pixels), (int)roundf(pixels), paintIcon, &brush);
}

struct Art paintArt(struct Atlas *atlas, GLfloat pixels)
{
    struct Art art = {.wallpaper = addSquare(atlas, paintWallpaper, 128.0f, 0.0f)};
    art.cover = addSquare(atlas, paintCover, COVER * pixels, 10.0f * pixels);
    art.weather = addSquare(atlas, paintWeather, WEATHER * pixels, 0.0f);
    art.panel = addSquare(atlas, paintShape, PANEL * pixels, 0.5f * PANEL * pixels);
    art.disc = addSquare(atlas, paintShape, DISC * pixels, 0.5f * DISC * pixels);
    art.knob = addSquare(atlas, paintShape, KNOB * pixels, 0.5f * KNOB * pixels);
    art.bar = addSquare(atlas, paintShape, BAR * pixels, 0.5f * BAR * pixels);
    art.meter = addSquare(atlas, paintMeter, METER * pixels, 0.0f);
    for (int i = 0; i < ICONS; ++i) {
        art.smallIcons[i] = addIcon(atlas, i, SMALL_ICON * pixels);
        art.largeIcons[i] = addIcon(atlas, i, LARGE_ICON * pixels);
    }
    art.small = addLettering(atlas, 7.0f * pixels, 1.7f);
    art.medium = addLettering(atlas, 9.0f * pixels, 2.1f);
    art.large = addLettering(atlas, 26.0f * pixels, 1.5f);
    return art;
}
