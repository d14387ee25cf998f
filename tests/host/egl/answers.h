// SPDX-License-Identifier: MIT
// What the questions of the answers program share: the stage they are asked on, and the line that an answer becomes.
#pragma once

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <string>
#include <type_traits>
#include <vector>

// Everything a question can be about. On a stage without windows the native handles are 0.
struct Stage {
    EGLDisplay display;         // initialised
    EGLDisplay other;           // a second display, initialised
    EGLConfig config;           // 8 bits a channel, for every kind of surface the platform has, and for ES 1.x
    EGLSurface pbuffer;         // 16 by 16
    EGLNativeWindowType window; // a mapped window; 0: the platform has none
    EGLNativePixmapType pixmap; // 16 by 16; 0: the platform has none
    EGLSurface windowSurface;   // of the window
};

// Questions on one subject. Each leaves the stage as it was.
void askDisplays(const Stage &stage);
void askConfigs(const Stage &stage);
void askCreation(const Stage &stage);
void askSharing(const Stage &stage);
void askQueries(const Stage &stage);
void askMakeCurrent(const Stage &stage);
void askThreads(const Stage &stage);
void askApis(const Stage &stage);
void askTermination(const Stage &stage);
void askSurfaces(const Stage &stage);
void askSwapping(const Stage &stage);
void askTextureSurfaces(const Stage &stage);
void askSyncs(const Stage &stage);
void askImages(const Stage &stage);
void askLabels(const Stage &stage);

/// Prints one answer: the label, the value and the error the call left.
void sayNumber(const std::string &label, long value);
void sayText(const std::string &label, const char *value);

// A handle only tells whether there is one: its value differs from run to run.
template <typename Value>
void say(const std::string &label, Value value)
{
    if constexpr (std::is_convertible_v<Value, const char *>)
        sayText(label, value);
    else if constexpr (std::is_pointer_v<Value>)
        sayText(label, value ? "something" : "nothing");
    else
        sayNumber(label, long(value));
}

/// Adds a blank and the number.
inline void append(std::string &text, long number)
{
    text += ' ';
    text += std::to_string(number);
}

/// Prints what a call answers.
#define ASK(call) say(#call, call)

/// A context of the stage's configuration. The list is without its end.
inline EGLContext createContext(const Stage &stage, std::vector<EGLint> attributes, EGLContext share = EGL_NO_CONTEXT)
{
    attributes.push_back(EGL_NONE);
    return eglCreateContext(stage.display, stage.config, share, attributes.data());
}
inline EGLContext createEs1(const Stage &stage, EGLContext share = EGL_NO_CONTEXT)
{
    return createContext(stage, {EGL_CONTEXT_CLIENT_VERSION, 1}, share);
}
inline EGLContext createEs2(const Stage &stage, EGLContext share = EGL_NO_CONTEXT)
{
    return createContext(stage, {EGL_CONTEXT_CLIENT_VERSION, 2}, share);
}

inline bool useContext(const Stage &stage, EGLContext context)
{
    const EGLSurface surface = context ? stage.pbuffer : EGL_NO_SURFACE;
    return eglMakeCurrent(stage.display, surface, surface, context);
}

/// An extension's function; null where the EGL has none.
template <typename Function>
Function extension(const char *name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

/// A pointer that is no handle of anything.
EGLContext strangeHandle();
