// SPDX-License-Identifier: MIT
// Runs of the built backend in processes of their own: under an environment of their own, with files that are complete
// when the test looks at them.
#pragma once

#include "backend_fixture.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// The backend's functions outside a test of the fixture, with a context current.
struct Application : BackendTest {
    void TestBody() override {}
    using BackendTest::gl;
    using BackendTest::link;
    using BackendTest::makeContext;
    using BackendTest::makeCurrent;
    using BackendTest::pixelAt;

    /// Draws over the whole surface, or along its edge with lines.
    void draw(GLuint program, GLenum mode = GL_TRIANGLE_STRIP)
    {
        static const GLfloat corners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
        gl.glUseProgram(program);
        gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
        gl.glEnableVertexAttribArray(0);
        gl.glDrawArrays(mode, 0, 4);
    }
};

using Environment = std::vector<std::pair<const char *, std::string>>;

/// Does the work in a new process under these environment variables, with a context current, to the process's end.
/// `told` is an extended regular expression that all of standard error has to match. Failed expectations in `work` fail
/// the test.
inline void runApplication(const Environment &environment, const std::function<void(Application &)> &work,
                           const char *told = "^$")
{
    const auto child = [&] {
        for (const auto &[name, value] : environment)
            setenv(name, value.c_str(), 1);
        Application application;
        if (application.makeContext()) work(application);
        exit(testing::Test::HasFailure());
    };
    EXPECT_EXIT(child(), testing::ExitedWithCode(0), told);
}

/// A fragment shader of one grey.
inline std::string fragmentOf(int number)
{
    return "void main()\n{\n    gl_FragColor = vec4(" + std::to_string(number) + ".0);\n}\n";
}
