// SPDX-License-Identifier: MIT
// What the demos share: a context without a window or in one, the options of the command line, the picture file, the
// functions of extensions.
#ifndef DEMO_FRAME_H
#define DEMO_FRAME_H

#include <GLES/gl.h>

/// One demo. The picture depends on the time and the size alone, never on the frames drawn before.
struct Demo {
    const char *name;                   // of the program
    const char *title, *about;          // for the gallery: a few words, and one sentence without markup
    const char *ownOption, *ownMeaning; // an option of this demo alone, and what --help says of it; null: none
    int *ownGiven;                      // set to 1 when it is given
    const char *(*start)(void); // called once with the context current; null, or why the demo cannot be drawn here
    void (*draw)(int milliseconds, int width, int height); // one frame; the viewport is already set
    int posterMilliseconds;                                // the time shown when none is asked for
    int posterWidth, posterHeight;                         // pixels when no size is asked for; 0: 480x360
};

/// Runs the demo as the command line says (--help lists the options). Returns the exit status: 0, 1 when something
/// failed, 2 for a command line that makes no sense. Every failure is one line on standard error.
int runDemo(const struct Demo *demo, int argc, char **argv);

typedef void (*Function)(void);

/// A function of an extension, which no library need export, to be cast to its type. Null when the current context
/// does not list the extension: eglGetProcAddress alone may answer names that the driver does not draw with.
Function findFunction(const char *extension, const char *name);

#endif
