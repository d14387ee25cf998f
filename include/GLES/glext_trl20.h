#ifndef __gles1_glext_trl20_h_
#define __gles1_glext_trl20_h_ 1

/*
** SPDX-License-Identifier: MIT
**
** Vendor entry points and names of libGLESv1_CM_trl20.so, for applications. The prototypes are declared with
** GL_GLEXT_PROTOTYPES; the library exports every one of them. They are found by linking or by dlsym, not by
** eglGetProcAddress.
**
** Most of these go to the device's OpenGL ES 2.0 library unchanged. Where that library lacks one, the comment of the
** group says what happens. Without a current context all of them do nothing.
*/

/* clang-format off */
#include <GLES/gl.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef GL_APIENTRYP
#define GL_APIENTRYP GL_APIENTRY*
#endif

/*
** Fog coordinate. glFogf(GL_FOG_COORDINATE_SOURCE_QRN, source) chooses where the fog's distance comes from.
*/
#ifndef GL_QRN_fog_coordinate
#define GL_QRN_fog_coordinate 1
#define GL_FOG_COORDINATE_SOURCE_QRN 0x8450 /* parameter of glFog*: one of the next two */
#define GL_FOG_COORDINATE_QRN        0x8451 /* the distance is the current fog coordinate, the same for all vertices */
#define GL_FRAGMENT_DEPTH_QRN        0x8452 /* the distance is the depth in eye space (initial) */
/* Sets the current fog coordinate, initially 0. Any value; no error. */
typedef void (GL_APIENTRYP PFNGLFOGCOORDFPROC) (GLfloat coord);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glFogCoordf (GLfloat coord);
#endif
#endif /* GL_QRN_fog_coordinate */

/*
** Alpha factor: with the capability on, the alpha of the vertex colour is multiplied by the factor, after the colour
** was clamped to 0..1.
*/
#ifndef GL_ZEK_alpha_factor
#define GL_ZEK_alpha_factor 1
#define GL_ALPHA_FACTOR_ZEK 0x8C9F /* capability of glEnable, glDisable, glIsEnabled and glGet*; initially off */
/* Sets the factor, initially 1. Any value, also outside 0..1; no error. */
typedef void (GL_APIENTRYP PFNGLALPHAFACTORFZEKPROC) (GLfloat factor);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glAlphaFactorfZEK (GLfloat factor);
#endif
#endif /* GL_ZEK_alpha_factor */

/*
** Matrix loads with a hint about the matrix. The hint and anything after it is ignored: the library finds out itself.
*/
#ifndef GL_ZEK_matrix_hint
#define GL_ZEK_matrix_hint 1
/* As glMultMatrixf(m) and glLoadMatrixf(m): 16 floats, column-major. */
typedef void (GL_APIENTRYP PFNGLMULTMATRIXFWITHHINTZEKPROC) (const GLfloat *m, ...);
typedef void (GL_APIENTRYP PFNGLLOADMATRIXFWITHHINTZEKPROC) (const GLfloat *m, ...);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glMultMatrixfWithHintZEK (const GLfloat *m, ...);
GL_API void GL_APIENTRY glLoadMatrixfWithHintZEK (const GLfloat *m, ...);
#endif
#endif /* GL_ZEK_matrix_hint */

/*
** Pointer of a mapped buffer. target: GL_ARRAY_BUFFER or GL_ELEMENT_ARRAY_BUFFER. *params becomes null with
** GL_INVALID_ENUM for another target, and with GL_INVALID_OPERATION where the device lacks the function.
*/
#ifndef GL_ZEK_buffer_pointer
#define GL_ZEK_buffer_pointer 1
typedef void (GL_APIENTRYP PFNGLGETBUFFERPOINTERVZEKPROC) (GLenum target, void **params);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glGetBufferPointervZEK (GLenum target, void **params);
#endif
#endif /* GL_ZEK_buffer_pointer */

/*
** Texture read-back: copies texels of the texture bound to target into texels, in the given format and type.
** GL_INVALID_OPERATION where the device lacks it.
*/
#ifndef GL_ZEK_get_tex_sub_image
#define GL_ZEK_get_tex_sub_image 1
typedef void (GL_APIENTRYP PFNGLGETTEXSUBIMAGEZEKPROC) (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset, GLsizei width, GLsizei height, GLsizei depth, GLenum format, GLenum type, void *texels);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glGetTexSubImageZEK (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLint zoffset, GLsizei width, GLsizei height, GLsizei depth, GLenum format, GLenum type, void *texels);
#endif
#endif /* GL_ZEK_get_tex_sub_image */

/*
** Compressed formats that the device decodes; internalformat of glCompressedTexImage2D.
*/
#ifndef GL_QRN_compressed_ZTC_texture
#define GL_QRN_compressed_ZTC_texture 1
#define GL_ZTC_RGB_QRN                     0x8C92
#define GL_ZTC_RGBA_EXPLICIT_ALPHA_QRN     0x8C93
#define GL_ZTC_RGBA_INTERPOLATED_ALPHA_QRN 0x87EE
#endif /* GL_QRN_compressed_ZTC_texture */

/*
** Texture level queries and overrides, for debuggers. Where the device lacks one, nothing happens and no error is
** recorded. The parameter names that are not listed here are the device's own.
*/
#ifndef GL_QRN_texture_level_query
#define GL_QRN_texture_level_query 1
#define GL_TEXTURE_WIDTH_QRN           0x8BD2 /* texels */
#define GL_TEXTURE_HEIGHT_QRN          0x8BD3 /* texels */
#define GL_TEXTURE_INTERNAL_FORMAT_QRN 0x8BD5
/* One parameter of a level of a texture name; face 0 to 5 of a cube map, else 0. */
typedef void (GL_APIENTRYP PFNGLGETTEXLEVELPARAMETERIVQRNPROC) (GLuint texture, GLint face, GLint level, GLenum pname, GLint *params);
/* Overrides a parameter of the texture bound to target. */
typedef void (GL_APIENTRYP PFNGLTEXOBJECTSTATEOVERRIDEIQRNPROC) (GLenum target, GLenum pname, GLint param);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glGetTexLevelParameterivQRN (GLuint texture, GLint face, GLint level, GLenum pname, GLint *params);
GL_API void GL_APIENTRY glTexObjectStateOverrideiQRN (GLenum target, GLenum pname, GLint param);
#endif
#endif /* GL_QRN_texture_level_query */

/*
** Listings of the context's objects, for debuggers. At most the given number of names is written, and how many there
** are goes to the last argument. Where the device lacks one, nothing is written and no error is recorded.
*/
#ifndef GL_QRN_object_listing
#define GL_QRN_object_listing 1
typedef void (GL_APIENTRYP PFNGLGETTEXTURESQRNPROC) (GLuint *textures, GLint maxTextures, GLint *numTextures);
typedef void (GL_APIENTRYP PFNGLGETBUFFERSQRNPROC) (GLuint *buffers, GLint maxBuffers, GLint *numBuffers);
typedef void (GL_APIENTRYP PFNGLGETRENDERBUFFERSQRNPROC) (GLuint *renderbuffers, GLint maxRenderbuffers, GLint *numRenderbuffers);
typedef void (GL_APIENTRYP PFNGLGETFRAMEBUFFERSQRNPROC) (GLuint *framebuffers, GLint maxFramebuffers, GLint *numFramebuffers);
/* The shaders and programs are those that the library made for the application's states. */
typedef void (GL_APIENTRYP PFNGLGETSHADERSQRNPROC) (GLuint *shaders, GLint maxShaders, GLint *numShaders);
typedef void (GL_APIENTRYP PFNGLGETPROGRAMSQRNPROC) (GLuint *programs, GLint maxPrograms, GLint *numPrograms);
/* GL_TRUE for a program that was loaded as a binary; GL_FALSE where the device lacks the function. */
typedef GLboolean (GL_APIENTRYP PFNGLISPROGRAMBINARYQRNPROC) (GLuint program);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glGetTexturesQRN (GLuint *textures, GLint maxTextures, GLint *numTextures);
GL_API void GL_APIENTRY glGetBuffersQRN (GLuint *buffers, GLint maxBuffers, GLint *numBuffers);
GL_API void GL_APIENTRY glGetRenderbuffersQRN (GLuint *renderbuffers, GLint maxRenderbuffers, GLint *numRenderbuffers);
GL_API void GL_APIENTRY glGetFramebuffersQRN (GLuint *framebuffers, GLint maxFramebuffers, GLint *numFramebuffers);
GL_API void GL_APIENTRY glGetShadersQRN (GLuint *shaders, GLint maxShaders, GLint *numShaders);
GL_API void GL_APIENTRY glGetProgramsQRN (GLuint *programs, GLint maxPrograms, GLint *numPrograms);
GL_API GLboolean GL_APIENTRY glIsProgramBinaryQRN (GLuint program);
#endif
#endif /* GL_QRN_object_listing */

/*
** Performance monitors: counters in groups, collected between Begin and End of a monitor. The numbers of groups and
** counters and the names of their parameters are the device's. GL_INVALID_OPERATION where the device lacks them.
*/
#ifndef GL_QRN_performance_monitor
#define GL_QRN_performance_monitor 1
/* Number of groups, and up to groupsSize of their numbers. */
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORGROUPSQRNPROC) (GLint *numGroups, GLsizei groupsSize, GLuint *groups);
/* Number of a group's counters, how many can be active at once, and up to countersSize of their numbers. */
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORCOUNTERSQRNPROC) (GLuint group, GLint *numCounters, GLint *maxActiveCounters, GLsizei countersSize, GLuint *counters);
/* Name of a group and of a counter, cut to bufSize with its final zero; length may be null. */
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORGROUPSTRINGQRNPROC) (GLuint group, GLsizei bufSize, GLsizei *length, char *groupString);
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORCOUNTERSTRINGQRNPROC) (GLuint group, GLuint counter, GLsizei bufSize, GLsizei *length, char *counterString);
/* A counter's parameter; the type of data depends on pname. */
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORCOUNTERINFOQRNPROC) (GLuint group, GLuint counter, GLenum pname, void *data);
/* Makes and deletes n monitors. */
typedef void (GL_APIENTRYP PFNGLGENPERFMONITORSQRNPROC) (GLsizei n, GLuint *monitors);
typedef void (GL_APIENTRYP PFNGLDELETEPERFMONITORSQRNPROC) (GLsizei n, GLuint *monitors);
/* Turns counters of a group on or off for a monitor. */
typedef void (GL_APIENTRYP PFNGLSELECTPERFMONITORCOUNTERSQRNPROC) (GLuint monitor, GLboolean enable, GLuint group, GLint numCounters, GLuint *counterList);
/* Starts and stops collecting. */
typedef void (GL_APIENTRYP PFNGLBEGINPERFMONITORQRNPROC) (GLuint monitor);
typedef void (GL_APIENTRYP PFNGLENDPERFMONITORQRNPROC) (GLuint monitor);
/* What a monitor collected, or its size or availability, by pname; at most dataSize bytes are written. */
typedef void (GL_APIENTRYP PFNGLGETPERFMONITORCOUNTERDATAQRNPROC) (GLuint monitor, GLenum pname, GLsizei dataSize, GLuint *data, GLint *bytesWritten);
#ifdef GL_GLEXT_PROTOTYPES
GL_API void GL_APIENTRY glGetPerfMonitorGroupsQRN (GLint *numGroups, GLsizei groupsSize, GLuint *groups);
GL_API void GL_APIENTRY glGetPerfMonitorCountersQRN (GLuint group, GLint *numCounters, GLint *maxActiveCounters, GLsizei countersSize, GLuint *counters);
GL_API void GL_APIENTRY glGetPerfMonitorGroupStringQRN (GLuint group, GLsizei bufSize, GLsizei *length, char *groupString);
GL_API void GL_APIENTRY glGetPerfMonitorCounterStringQRN (GLuint group, GLuint counter, GLsizei bufSize, GLsizei *length, char *counterString);
GL_API void GL_APIENTRY glGetPerfMonitorCounterInfoQRN (GLuint group, GLuint counter, GLenum pname, void *data);
GL_API void GL_APIENTRY glGenPerfMonitorsQRN (GLsizei n, GLuint *monitors);
GL_API void GL_APIENTRY glDeletePerfMonitorsQRN (GLsizei n, GLuint *monitors);
GL_API void GL_APIENTRY glSelectPerfMonitorCountersQRN (GLuint monitor, GLboolean enable, GLuint group, GLint numCounters, GLuint *counterList);
GL_API void GL_APIENTRY glBeginPerfMonitorQRN (GLuint monitor);
GL_API void GL_APIENTRY glEndPerfMonitorQRN (GLuint monitor);
GL_API void GL_APIENTRY glGetPerfMonitorCounterDataQRN (GLuint monitor, GLenum pname, GLsizei dataSize, GLuint *data, GLint *bytesWritten);
#endif
#endif /* GL_QRN_performance_monitor */

#ifdef __cplusplus
}
#endif

#endif /* __gles1_glext_trl20_h_ */
