// SPDX-License-Identifier: MIT
// What the tests of key derivation, program cache, locations and uniform loads share.
#pragma once

#include "frontend/current.h"
#include "shadergen/derive.h"
#include "shadergen/program_cache.h"
#include "support/fake_backend.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

using Calls = std::vector<std::string>;

/// A matrix as the load command takes it: 16 floats, column-major.
struct Matrix16 {
    GLfloat m[16];
};
constexpr Matrix16 kIdentity = {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};

/// The identity with one element replaced.
inline Matrix16 identityWith(uint32_t element, GLfloat value)
{
    Matrix16 matrix = kIdentity;
    matrix.m[element] = value;
    return matrix;
}

/// How the arguments of a load of the named uniform or attribute begin: "(7, ".
inline std::string locationArgument(const std::string &name)
{
    std::string text = "(";
    text += std::to_string(fakeLocation(name));
    return text += ", ";
}

/// A call that loads the uniform or attribute of a name: load("glUniform1f", "gles_FogEnd", "1").
inline std::string load(const std::string &function, const std::string &name, const std::string &arguments)
{
    return function + locationArgument(name) + arguments + ")";
}

/// A fresh context over the recording backend. An assertion that a test does not take fails it.
class PipelineTest : public testing::Test {
protected:
    PipelineTest()
    {
        start(false);
    }
    ~PipelineTest() override
    {
        EXPECT_EQ(fakePlatform().assertions, Calls{});
    }

    /// vendorEntries: the backend tests alpha and blends fog itself.
    void start(bool vendorEntries)
    {
        context.reset();
        resetFakeBackend();
        fakeBackend().vendorEntries = vendorEntries;
        context = std::make_unique<TestContext>();
        ctx = context->ctx;
        takeCalls();
    }

    /// Texts of the assertions since the last call.
    static Calls takeAssertions()
    {
        return std::exchange(fakePlatform().assertions, {});
    }

    void draw(GLenum mode = GL_TRIANGLES)
    {
        ctx->derivedFor = 0; // tests also write the records of the state
        glDrawArrays(mode, 0, 3);
    }

    /// Calls of one function in the next draw.
    Calls drawCalls(const std::string &function, GLenum mode = GL_TRIANGLES)
    {
        takeCalls();
        draw(mode);
        return callsOf(function);
    }

    /// Lights 0 to count - 1 on, lighting on; all directional as they start.
    void enableLights(uint32_t count)
    {
        glEnable(GL_LIGHTING);
        for (uint32_t light = 0; light < count; ++light)
            glEnable(GL_LIGHT0 + light);
    }

    /// Both arrays of the palette, so that palette draws go ahead.
    void enablePalette(GLint units = 2)
    {
        static const GLubyte bytes[16] = {};
        glEnable(GL_MATRIX_PALETTE_OES);
        glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
        glEnableClientState(GL_WEIGHT_ARRAY_OES);
        glMatrixIndexPointerOES(units, GL_UNSIGNED_BYTE, 0, bytes);
        glWeightPointerOES(units, GL_BYTE, 0, bytes);
    }

    std::unique_ptr<TestContext> context;
    GLIContext *ctx = nullptr;
};
