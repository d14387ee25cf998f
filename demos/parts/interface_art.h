// SPDX-License-Identifier: MIT
// Everything that the interface shows, painted into one atlas.
#ifndef DEMO_INTERFACE_ART_H
#define DEMO_INTERFACE_ART_H

#include "atlas.h"

/// Line drawings, 24 units wide and high, white.
enum Icon {
    ICON_PAUSE,
    ICON_PREVIOUS,
    ICON_HEART,
    ICON_REPEAT,
    ICON_WIFI,
    ICON_BATTERY,
    ICON_BULB,
    ICON_MOON,
    ICON_CLOCK,
    ICON_LOCK,
    ICON_SUN,
    ICON_CLOUD,
    ICON_RAIN,
    ICONS
};

/// Sizes in units of the page.
enum {
    SMALL_ICON = 14,
    LARGE_ICON = 22,
    COVER = 148,
    WEATHER = 52,
    PANEL = 28,
    DISC = 44,
    KNOB = 12,
    BAR = 4,
    METER = 32
};

struct Art {
    struct Lettering small, medium, large;
    struct Piece smallIcons[ICONS], largeIcons[ICONS];
    struct Piece wallpaper, cover, weather;
    struct Piece panel;           // a rounded square, to be stretched in its middle
    struct Piece disc, knob, bar; // discs; the bar's is stretched in its middle
    struct Piece meter;           // a column whose colour changes upwards
};

/// Paints all of it into the atlas. pixels: of one unit.
struct Art paintArt(struct Atlas *atlas, GLfloat pixels);

#endif
