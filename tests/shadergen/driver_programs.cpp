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
    PFNGLGETACTIVEUNIFORMPROC getActiveUniform;
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
    find(gl.getActiveUniform, "glGetActiveUniform");
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
    abilities.gatheredVectors = 96;
    return abilities;
}

// Links the texts into the program. Returns "" or the driver's complaint.
static std::string linkTexts(GLuint program, const TranslatedProgram &texts)
{
    std::string complaint;
    addStage(program, GL_VERTEX_SHADER, texts.vertex, complaint);
    if (!texts.geometry.empty()) addStage(program, GL_GEOMETRY_SHADER, texts.geometry, complaint);
    addStage(program, GL_FRAGMENT_SHADER, texts.fragment, complaint);
    if (!complaint.empty()) return complaint;
    gl.bindAttribLocation(program, 0, "gles_Vertex");
    gl.linkProgram(program);
    GLint linked = 0;
    gl.getProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked) return {};
    char log[4096] = "";
    gl.getProgramInfoLog(program, sizeof(log), nullptr, log);
    return std::string(log) + "\n" + texts.vertex + texts.geometry + texts.fragment;
}

std::string buildProgram(const std::string &vertex, const std::string &fragment, const DriverAbilities &abilities,
                         Expansion expansion)
{
    const GLuint program = gl.createProgram();
    const std::string complaint = linkTexts(program, translateProgram(vertex, fragment, abilities, expansion));
    gl.deleteProgram(program);
    return complaint;
}

static const char *typeName(GLenum type)
{
    switch (type) {
    case GL_FLOAT:
        return "float";
    case GL_FLOAT_VEC2:
        return "vec2";
    case GL_FLOAT_VEC3:
        return "vec3";
    case GL_FLOAT_VEC4:
        return "vec4";
    case GL_FLOAT_MAT3:
        return "mat3";
    case GL_FLOAT_MAT4:
        return "mat4";
    default:
        return "another";
    }
}

static std::string describe(const std::string &type, const std::string &name, GLint elements)
{
    return type + " " + name + "[" + std::to_string(elements) + "]";
}

std::set<std::string> uniformsOf(const std::string &vertex, const std::string &fragment,
                                 const DriverAbilities &abilities)
{
    const TranslatedProgram texts = translateProgram(vertex, fragment, abilities);
    const GLuint program = gl.createProgram();
    std::set<std::string> uniforms;
    GLint count = 0;
    if (linkTexts(program, texts).empty()) gl.getProgramiv(program, GL_ACTIVE_UNIFORMS, &count);
    GLint vectors = 0;
    for (GLint i = 0; i < count; ++i) {
        char name[256] = "";
        GLint elements = 0;
        GLenum type = 0;
        gl.getActiveUniform(program, static_cast<GLuint>(i), sizeof name, nullptr, &elements, &type, name);
        std::string base = name;
        if (base.ends_with("[0]")) base.resize(base.size() - 3);
        if (base == kGatheredUniforms)
            vectors = elements;
        else if (base != kViewportSizeUniform && base != kLineWidthUniform)
            uniforms.insert(describe(typeName(type), base, elements));
    }
    for (const GatheredUniform &uniform : texts.gathered)
        if (uniform.vector < vectors) uniforms.insert(describe(uniform.type, uniform.name, uniform.elements));
    gl.deleteProgram(program);
    return uniforms;
}
