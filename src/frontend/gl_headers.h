// SPDX-License-Identifier: MIT
// The OpenGL types, names and prototypes: those of the Khronos headers, ES 1.1 for what the library exports and ES 2.0
// for what it calls in the backend, and the vendor ones of our own public header. Prototypes seen through this header
// are exported by the shared library.
#pragma once

#define GL_API __attribute__((visibility("default")))
#define GL_APICALL __attribute__((visibility("default")))
#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif

#include <GLES/gl.h>
#include <GLES/glext.h>
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>

#include <GLES/glext_trl20.h>

/// Marks an exported function or variable that no Khronos header declares.
#define TRL20_EXPORT extern "C" __attribute__((visibility("default")))
