// SPDX-License-Identifier: MIT
// What the demos share: a context without a window or in one, the options of the command line, the picture file.
#ifndef DEMO_FRAME_H
#define DEMO_FRAME_H

#include <GLES/gl.h>

/// One demo. The picture depends on the time and the size alone, never on the frames drawn before.
struct Demo {
    const char *name;
    void (*start)(void);                                   // called once with the context current
    void (*draw)(int milliseconds, int width, int height); // one frame; the viewport is already set
    int posterMilliseconds;                                // the time shown when none is asked for
};

/// Runs the demo as the command line says (--help lists the options). Returns the exit status: 0, 1 when something
/// failed, 2 for a command line that makes no sense. Every failure is one line on standard error.
int runDemo(const struct Demo *demo, int argc, char **argv);

#endif
