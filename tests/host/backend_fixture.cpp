// SPDX-License-Identifier: MIT
#include "backend_fixture.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

static void loadBackend(Backend &loaded)
{
    setenv("TRL20_DRIVER_EGL", TRL20_COUNTING_DRIVER, 1);
    setenv("TRL20_DRIVER_GLES2", TRL20_COUNTING_DRIVER, 1);
    loaded.module = dlopen(TRL20_BACKEND, RTLD_NOW | RTLD_LOCAL);
    void *gles2 = dlopen("libGLESv2.so.2", RTLD_NOW | RTLD_LOCAL);
    if (!loaded.module || !gles2) {
        fprintf(stderr, "cannot load: %s\n", dlerror());
        exit(1);
    }
#define WRAPPED(name, result, parameters, need)                                                                        \
    loaded.gl.name = reinterpret_cast<decltype(loaded.gl.name)>(dlsym(loaded.module, #name));                          \
    loaded.driver.name = reinterpret_cast<decltype(loaded.gl.name)>(dlsym(gles2, #name));
#define FORWARDED(name, result, parameters, arguments, need) WRAPPED(name, result, parameters, need)
#include "host/gles2/driver_functions.def"
#define VENDOR(name) loaded.gl.name = reinterpret_cast<decltype(loaded.gl.name)>(dlsym(loaded.module, #name));
#include "host/gles2/vendor_functions.def"
    const auto fill =
        reinterpret_cast<decltype(&ogl2GetClientAPIFunctions)>(dlsym(loaded.module, "ogl2GetClientAPIFunctions"));
    fill(&loaded.table);
    if (!loaded.table.createContext) exit(1); // the backend has said why
}

Backend &backend()
{
    static Backend loaded = [] {
        Backend fresh{};
        loadBackend(fresh);
        return fresh;
    }();
    return loaded;
}

void BackendTest::SetUp()
{
    context = makeContext();
    ASSERT_NE(context, nullptr);
}

void BackendTest::TearDown()
{
    if (!context) return;
    makeCurrent(context);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "left by the test";
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(context), 1);
}

void BackendTest::makeCurrent(void *given)
{
    ASSERT_EQ(backend().table.setBuffers(given, nullptr, nullptr), 1);
}

void *BackendTest::makeContext(void *share)
{
    void *made = backend().table.createContext(share, nullptr, nullptr, 1, nullptr);
    if (!made) return nullptr;
    makeCurrent(made);
    GLuint texture = 0;
    GLuint framebuffer = 0;
    gl.glGenTextures(1, &texture);
    gl.glBindTexture(GL_TEXTURE_2D, texture);
    gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, kSurfaceSize, kSurfaceSize, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    gl.glBindTexture(GL_TEXTURE_2D, 0);
    gl.glGenFramebuffers(1, &framebuffer);
    gl.glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    gl.glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    gl.glViewport(0, 0, kSurfaceSize, kSurfaceSize);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    return made;
}

GLuint BackendTest::link(const std::string &vertex, const std::string &fragment, GLuint position)
{
    const GLuint program = gl.glCreateProgram();
    gl.glBindAttribLocation(program, position, "gles_Vertex");
    for (const auto &[type, text] : {std::pair{GL_FRAGMENT_SHADER, &fragment}, std::pair{GL_VERTEX_SHADER, &vertex}}) {
        const GLuint shader = gl.glCreateShader(static_cast<GLenum>(type));
        const GLchar *source = text->c_str();
        gl.glShaderSource(shader, 1, &source, nullptr);
        gl.glCompileShader(shader);
        gl.glAttachShader(program, shader);
        gl.glDeleteShader(shader);
    }
    gl.glLinkProgram(program);
    return program;
}

GLuint BackendTest::makeProgram(const std::string &vertex, const std::string &fragment)
{
    const GLuint program = link(vertex, fragment);
    GLint status = GL_FALSE;
    gl.glGetProgramiv(program, GL_LINK_STATUS, &status);
    if (status == GL_TRUE) return program;
    char log[2000] = "";
    gl.glGetProgramInfoLog(program, sizeof log, nullptr, log);
    ADD_FAILURE() << log;
    return program;
}

void BackendTest::deleteProgram(GLuint program)
{
    gl.glDeleteProgram(program);
}

Pixel BackendTest::pixelAt(int x, int y)
{
    Pixel pixel{};
    gl.glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

void BackendTest::drawSquare()
{
    static const GLfloat corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    gl.glEnableVertexAttribArray(0);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
