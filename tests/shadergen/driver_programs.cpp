// SPDX-License-Identifier: MIT
#include "shadergen/driver_programs.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GLES3/gl32.h>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

EGLDisplay display = EGL_NO_DISPLAY;
EGLContext context = EGL_NO_CONTEXT;

// The driver's functions by name: the test program itself may define functions of the same names.
struct Gl {
    PFNGLGETSTRINGPROC getString;
    PFNGLGETSHADERPRECISIONFORMATPROC getShaderPrecisionFormat;
    PFNGLCREATESHADERPROC createShader;
    PFNGLSHADERSOURCEPROC shaderSource;
    PFNGLCOMPILESHADERPROC compileShader;
    PFNGLGETSHADERIVPROC getShaderiv;
    PFNGLGETSHADERINFOLOGPROC getShaderInfoLog;
    PFNGLDELETESHADERPROC deleteShader;
    PFNGLCREATEPROGRAMPROC createProgram;
    PFNGLATTACHSHADERPROC attachShader;
    PFNGLBINDATTRIBLOCATIONPROC bindAttribLocation;
    PFNGLLINKPROGRAMPROC linkProgram;
    PFNGLGETPROGRAMIVPROC getProgramiv;
    PFNGLGETPROGRAMINFOLOGPROC getProgramInfoLog;
    PFNGLDELETEPROGRAMPROC deleteProgram;
} gl;

template <typename Function>
void find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(eglGetProcAddress(name));
}

void findFunctions()
{
    find(gl.getString, "glGetString");
    find(gl.getShaderPrecisionFormat, "glGetShaderPrecisionFormat");
    find(gl.createShader, "glCreateShader");
    find(gl.shaderSource, "glShaderSource");
    find(gl.compileShader, "glCompileShader");
    find(gl.getShaderiv, "glGetShaderiv");
    find(gl.getShaderInfoLog, "glGetShaderInfoLog");
    find(gl.deleteShader, "glDeleteShader");
    find(gl.createProgram, "glCreateProgram");
    find(gl.attachShader, "glAttachShader");
    find(gl.bindAttribLocation, "glBindAttribLocation");
    find(gl.linkProgram, "glLinkProgram");
    find(gl.getProgramiv, "glGetProgramiv");
    find(gl.getProgramInfoLog, "glGetProgramInfoLog");
    find(gl.deleteProgram, "glDeleteProgram");
}

// Compiles and attaches one stage; appends the complaint with the text it is about.
void addStage(GLuint program, GLenum type, const std::string &text, std::string &complaint)
{
    const GLuint shader = gl.createShader(type);
    const char *source = text.c_str();
    gl.shaderSource(shader, 1, &source, nullptr);
    gl.compileShader(shader);
    GLint compiled = 0;
    gl.getShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (!compiled) {
        char log[4096] = "";
        gl.getShaderInfoLog(shader, sizeof(log), nullptr, log);
        complaint += std::string(log) + "\n" + text;
    }
    gl.attachShader(program, shader);
    gl.deleteShader(shader); // goes with the program
}

} // namespace

bool openDriver()
{
    display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return false;

    eglBindAPI(EGL_OPENGL_ES_API);
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
    context = eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, attributes);
    if (context == EGL_NO_CONTEXT || !eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context)) return false;
    findFunctions();
    return true;
}

void closeDriver()
{
    if (context == EGL_NO_CONTEXT) return;
    eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display, context);
    // The display stays: what its driver never frees would count as leaked once the driver is unloaded.
    context = EGL_NO_CONTEXT;
}

DriverAbilities driverAbilities()
{
    const char *extensions = reinterpret_cast<const char *>(gl.getString(GL_EXTENSIONS));
    const char *language = reinterpret_cast<const char *>(gl.getString(GL_SHADING_LANGUAGE_VERSION));
    const char *prefix = "OpenGL ES GLSL ES ";
    const double version = language ? std::strtod(language + std::strlen(prefix), nullptr) : 1.0;
    GLint range[2] = {};
    GLint precision = 0;
    gl.getShaderPrecisionFormat(GL_FRAGMENT_SHADER, GL_HIGH_FLOAT, range, &precision);
    DriverAbilities abilities;
    abilities.fragmentHighp = range[1] > 0;
    abilities.essl300 = version > 2.99;
    abilities.externalImageEssl300 = extensions && std::strstr(extensions, "GL_OES_EGL_image_external_essl3");
    abilities.geometryEssl320 = version > 3.19;
    return abilities;
}

std::string buildProgram(const std::string &vertex, const std::string &fragment, const DriverAbilities &abilities,
                         Expansion expansion)
{
    const TranslatedProgram texts = translateProgram(vertex, fragment, abilities, expansion);
    std::string complaint;
    const GLuint program = gl.createProgram();
    addStage(program, GL_VERTEX_SHADER, texts.vertex, complaint);
    if (!texts.geometry.empty()) addStage(program, GL_GEOMETRY_SHADER, texts.geometry, complaint);
    addStage(program, GL_FRAGMENT_SHADER, texts.fragment, complaint);
    if (complaint.empty()) {
        gl.bindAttribLocation(program, 0, "gles_Vertex");
        gl.linkProgram(program);
        GLint linked = 0;
        gl.getProgramiv(program, GL_LINK_STATUS, &linked);
        if (!linked) {
            char log[4096] = "";
            gl.getProgramInfoLog(program, sizeof(log), nullptr, log);
            complaint = std::string(log) + "\n" + texts.vertex + texts.geometry + texts.fragment;
        }
    }
    gl.deleteProgram(program);
    return complaint;
}
