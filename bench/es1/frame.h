// SPDX-License-Identifier: MIT
// What es1bench and es2bench share: a context off the screen, the command line, the loop that is measured.
#pragma once

#include <EGL/egl.h>

#include <span>

/// One scene through one API. A draw depends on its number and on what setUp left, not on the draws before.
struct Scene {
    const char *name;
    void (*setUp)();          // called once, with a cleared 256x256 surface and a fresh context current
    void (*draw)(int number); // the measured unit: state changes and one draw call
    const char *extension;    // null, or the GL extension without which the scene cannot be drawn
};

/// A program of scenes.
struct SceneProgram {
    const char *name;
    EGLint version; // of the context: 1 or 2
    std::span<const Scene> scenes;
};

/// Width and height of the surface.
constexpr int kSceneSize = 256;

/// Exit status of a scene that this driver cannot draw; a line on standard output says why.
constexpr int kSceneUnavailable = 3;

/// Draws as the command line says (--help lists the options) and prints one line of key=value pairs. Returns the exit
/// status: 0, kSceneUnavailable, 1 when something failed, 2 for a command line that makes no sense.
int runSceneProgram(const SceneProgram &program, int argc, char **argv);
