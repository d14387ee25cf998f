// SPDX-License-Identifier: MIT
// A two-dimensional interface: every panel, icon, letter and picture is a draw-texture call with a crop rectangle of
// one atlas. There is no vertex array, and no matrix is ever set.
#include "frame.h"
#include "interface_draw.h"

#include <math.h>
#include <stdio.h>

static void white(GLfloat alpha)
{
    tint(1.0f, 1.0f, 1.0f, alpha);
}

static void accent(void)
{
    tint(1.0f, 0.52f, 0.46f, 1.0f);
}

static void drawPanel(GLfloat x, GLfloat y, GLfloat width, GLfloat height)
{
    white(0.09f);
    placeStretched(&art.panel, x, y, width, height);
}

// A track, filled up to a knob. part: 0 to 1.
static void drawSlider(GLfloat x, GLfloat y, GLfloat width, GLfloat part)
{
    white(0.18f);
    placeStretched(&art.bar, x, y, width, BAR);
    accent();
    placeStretched(&art.bar, x, y, fmaxf(part * width, BAR), BAR);
    white(1.0f);
    place(&art.knob, x + part * (width - KNOB), y + 0.5f * (BAR - KNOB));
}

static void drawStatus(void)
{
    white(0.95f);
    text(&art.medium, "Good evening", 20.0f, 336.0f);
    textRight(&art.medium, "21:47", 460.0f, 336.0f);
    white(0.75f);
    place(&art.smallIcons[ICON_BATTERY], 405.0f, 334.0f);
    place(&art.smallIcons[ICON_WIFI], 385.0f, 334.0f);
}

static void writeTime(char *time, size_t size, int seconds)
{
    snprintf(time, size, "%d:%02d", seconds / 60, seconds % 60);
}

static void drawPlayer(int milliseconds)
{
    enum { LENGTH = 232, BARS = 30 };
    const int played = (73000 + milliseconds) % (LENGTH * 1000);
    char time[16];
    drawPanel(16.0f, 16.0f, 224.0f, 308.0f);
    white(1.0f);
    place(&art.cover, 54.0f, 164.0f);
    textCentred(&art.medium, "Northern Lights", 128.0f, 146.0f);
    white(0.6f);
    textCentred(&art.small, "The Fixed Functions", 128.0f, 131.0f);
    drawSlider(36.0f, 114.0f, 184.0f, (GLfloat)played / (LENGTH * 1000.0f));
    white(0.6f);
    writeTime(time, sizeof time, played / 1000);
    text(&art.small, time, 36.0f, 101.0f);
    writeTime(time, sizeof time, LENGTH);
    textRight(&art.small, time, 220.0f, 101.0f);

    accent();
    place(&art.disc, 106.0f, 56.0f);
    white(1.0f);
    place(&art.largeIcons[ICON_PAUSE], 117.0f, 67.0f);
    place(&art.largeIcons[ICON_PREVIOUS], 72.0f, 67.0f);
    placeMirrored(&art.largeIcons[ICON_PREVIOUS], 162.0f, 67.0f);
    white(0.6f);
    place(&art.smallIcons[ICON_REPEAT], 204.0f, 71.0f);
    accent();
    place(&art.smallIcons[ICON_HEART], 38.0f, 71.0f);

    // The taller a bar, the more of the meter's colours it shows.
    white(0.9f);
    for (int i = 0; i < BARS; ++i) {
        const GLfloat at = (GLfloat)i, seconds = (GLfloat)milliseconds * 0.001f;
        const GLfloat beat = sinf(5.1f * seconds + 0.9f * at) * sinf(3.3f * seconds - 0.35f * at);
        placeCut(&art.meter, 38.0f + 6.0f * at, 24.0f, 4.0f, 3.0f + 22.0f * fabsf(beat) * expf(-0.02f * at));
    }
}

static void drawWeather(void)
{
    static const struct {
        const char *day, *degrees;
        enum Icon icon;
    } kDays[] = {{"Tue", "17\x7f", ICON_CLOUD},
                 {"Wed", "14\x7f", ICON_RAIN},
                 {"Thu", "19\x7f", ICON_SUN},
                 {"Fri", "22\x7f", ICON_SUN}};
    drawPanel(256.0f, 196.0f, 208.0f, 128.0f);
    white(1.0f);
    place(&art.weather, 396.0f, 264.0f);
    text(&art.large, "18\x7f", 276.0f, 282.0f);
    white(0.7f);
    text(&art.small, "Partly cloudy", 276.0f, 266.0f);
    for (int i = 0; i < 4; ++i) {
        const GLfloat x = 288.0f + 48.0f * (GLfloat)i;
        white(0.6f);
        textCentred(&art.small, kDays[i].day, x, 246.0f);
        white(0.95f);
        place(&art.largeIcons[kDays[i].icon], x - 0.5f * LARGE_ICON, 221.0f);
        textCentred(&art.small, kDays[i].degrees, x + 1.0f, 209.0f);
    }
}

static void drawLights(void)
{
    static const struct {
        const char *room, *level;
        GLfloat part;
    } kLights[] = {{"Living room", "70%", 0.70f}, {"Desk", "35%", 0.35f}};
    drawPanel(256.0f, 100.0f, 208.0f, 84.0f);
    for (int i = 0; i < 2; ++i) {
        const GLfloat y = 148.0f - 36.0f * (GLfloat)i;
        tint(1.0f, 0.85f, 0.45f, 0.35f + 0.65f * kLights[i].part);
        place(&art.largeIcons[ICON_BULB], 268.0f, y + 1.0f);
        white(0.9f);
        text(&art.small, kLights[i].room, 300.0f, y + 15.0f);
        white(0.6f);
        textRight(&art.small, kLights[i].level, 450.0f, y + 15.0f);
        drawSlider(300.0f, y + 2.0f, 150.0f, kLights[i].part);
    }
}

static void drawTiles(void)
{
    static const struct {
        const char *name;
        enum Icon icon;
        int on;
    } kTiles[] = {{"Wi-Fi", ICON_WIFI, 1}, {"Night", ICON_MOON, 0}, {"Alarm", ICON_CLOCK, 1}, {"Door", ICON_LOCK, 0}};
    for (int i = 0; i < 4; ++i) {
        const GLfloat x = 256.0f + 53.0f * (GLfloat)i;
        if (kTiles[i].on)
            tint(0.30f, 0.72f, 0.78f, 0.85f);
        else
            white(0.09f);
        placeStretched(&art.panel, x, 16.0f, 49.0f, 72.0f);
        white(kTiles[i].on ? 1.0f : 0.7f);
        place(&art.largeIcons[kTiles[i].icon], x + 13.5f, 48.0f);
        textCentred(&art.small, kTiles[i].name, x + 24.5f, 28.0f);
    }
}

static void draw(int milliseconds, int width, int height)
{
    fitPage(width, height);
    glClearColor(0.07f, 0.08f, 0.15f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    white(1.0f);
    placeAcross(&art.wallpaper, 0.0f, 0.0f, PAGE_WIDTH, PAGE_HEIGHT);
    drawStatus();
    drawPlayer(milliseconds);
    drawWeather();
    drawLights();
    drawTiles();
}

int main(int argc, char **argv)
{
    static const struct Demo demo = {
        .name = "interface",
        .title = "An interface",
        .about = "Panels, icons, letters and a cover, all from one atlas by draw-texture with crop rectangles: no "
                 "vertex array, no matrix.",
        .start = startDrawing,
        .draw = draw,
        .posterMilliseconds = 700,
    };
    return runDemo(&demo, argc, argv);
}
