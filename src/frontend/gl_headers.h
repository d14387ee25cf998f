// SPDX-License-Identifier: MIT
// The OpenGL types, names and prototypes of the Khronos headers: ES 1.1 for what the library exports, ES 2.0 for what
// it calls in the backend. Prototypes seen through this header are exported by the shared library.
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

/// Marks an exported function or variable that no Khronos header declares.
#define TRL20_EXPORT extern "C" __attribute__((visibility("default")))

// Names that neither Khronos header has.
constexpr GLenum GL_FOG_COORDINATE_SOURCE_QRN = 0x8450; // pname of glFog
constexpr GLenum GL_FOG_COORDINATE_QRN = 0x8451;        // fog distance is the current fog coordinate
constexpr GLenum GL_FRAGMENT_DEPTH_QRN = 0x8452;        // fog distance is the eye-space depth
constexpr GLenum GL_ALPHA_FACTOR_ZEK = 0x8C9F;          // capability: final alpha times glAlphaFactorfZEK's value
constexpr GLenum GL_TEXTURE_WIDTH_QRN = 0x8BD2;         // pnames of glGetTexLevelParameterivQRN
constexpr GLenum GL_TEXTURE_HEIGHT_QRN = 0x8BD3;
constexpr GLenum GL_TEXTURE_INTERNAL_FORMAT_QRN = 0x8BD5;
constexpr GLenum GL_ZTC_RGB_QRN = 0x8C92; // compressed formats that the backend decodes
constexpr GLenum GL_ZTC_RGBA_EXPLICIT_ALPHA_QRN = 0x8C93;
constexpr GLenum GL_ZTC_RGBA_INTERPOLATED_ALPHA_QRN = 0x87EE;
