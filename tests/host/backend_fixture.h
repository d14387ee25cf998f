// SPDX-License-Identifier: MIT
// The built ES 2.0 backend over the counting driver, with a context made through its client-API table and a framebuffer
// to draw into. Whatever needs no backend asks the driver itself.
#pragma once

#include "counting_driver.h"
#include "host/gles2/gl_api.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// The backend's exported functions under their own names.
struct BackendFunctions {
#define FORWARDED(name, result, parameters, arguments, need) result(GL_APIENTRY *name) parameters;
#define WRAPPED(name, result, parameters, need) result(GL_APIENTRY *name) parameters;
#include "host/gles2/driver_functions.def"
#define VENDOR(name) decltype(&::name) name;
#include "host/gles2/vendor_functions.def"
};

/// The client-API table, as far as tests use it.
struct BackendTable {
    void *(*createContext)(void *shareContext, void *config, const void *attributes, uint32_t tlsIndex, void *extra);
    int (*destroyContext)(void *context);
    int (*setBuffers)(void *context, void *drawSurface, void *readSurface);
    void *slots3to6[4];
    void (*getIntegerv)(GLenum pname, GLint *params);
    void (*scissor)(GLint x, GLint y, GLsizei width, GLsizei height);
    void (*viewport)(GLint x, GLint y, GLsizei width, GLsizei height);
    void *slots10to13[4];
    void *(*getProcAddress)(const char *name);
    int (*swapBuffer)(void *context, void *display, void *surface);
    void *slots16to18[3];
};
static_assert(sizeof(BackendTable) == 19 * sizeof(void *));

struct Backend {
    void *module;
    BackendTable table;
    BackendFunctions gl;
    BackendFunctions driver; // the machine's own functions; null where the backend brings its own
};

/// The loaded backend; fails the test program when it cannot be loaded.
Backend &backend();

using Pixel = std::array<uint8_t, 4>;

inline constexpr int kSurfaceSize = 32; // pixels

class BackendTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// A context sharing with another, current afterwards with a framebuffer of its own.
    void *makeContext(void *share = nullptr);
    void makeCurrent(void *context);
    /// A program that is linked, with the position at attribute 0.
    GLuint makeProgram(const std::string &vertex, const std::string &fragment);
    /// The same of texts that may be faulty, with the position at this attribute.
    GLuint link(const std::string &vertex, const std::string &fragment, GLuint position = 0);
    void deleteProgram(GLuint program);
    Pixel pixelAt(int x, int y);
    /// Draws two triangles over the whole surface with the position at attribute 0.
    void drawSquare();

    BackendFunctions &gl = backend().gl;
    BackendFunctions &driver = backend().driver;
    void *context = nullptr;
};

/// A program in use, with its uniforms by name.
class ProgramInUseTest : public BackendTest {
protected:
    void use(const std::string &vertex, const std::string &fragment)
    {
        program = makeProgram(vertex, fragment);
        gl.glUseProgram(program);
    }

    GLint location(const std::string &name)
    {
        return gl.glGetUniformLocation(program, name.c_str());
    }

    /// The value of a uniform, which has so many components.
    std::vector<GLfloat> held(const std::string &name, size_t count)
    {
        std::vector<GLfloat> values(count + 1, -1.0f);
        gl.glGetUniformfv(program, location(name), values.data());
        EXPECT_EQ(values[count], -1.0f) << "no more than the value is written";
        values.resize(count);
        return values;
    }

    GLuint program = 0;
};

/// Driver calls between its making and the asking.
struct CallCounter {
    int start = countedCalls(nullptr);
    int calls() const
    {
        return countedCalls(nullptr) - start;
    }
};

inline constexpr const char *kPlainVertex =
    "attribute vec4 gles_Vertex;\nvoid main(void)\n{\n    gl_Position = gles_Vertex;\n}\n";
inline constexpr const char *kColorFragment =
    "uniform mediump vec4 color;\nvoid main(void)\n{\n    gl_FragColor = color;\n}\n";
