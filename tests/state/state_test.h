// SPDX-License-Identifier: MIT
// What tests of state-keeping entry points share: a context over the recording backend, and checks of what a call left
// alone.
#pragma once

#include "frontend/current.h"
#include "support/fake_backend.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

constexpr GLfloat kNaN = std::numeric_limits<GLfloat>::quiet_NaN();

using Vec3 = std::array<GLfloat, 3>;
using Vec4 = std::array<GLfloat, 4>;

template <size_t N>
std::array<GLfloat, N> values(const GLfloat (&from)[N])
{
    std::array<GLfloat, N> to;
    std::copy_n(from, N, to.begin());
    return to;
}

inline void expectNear(const GLfloat *actual, const std::vector<GLfloat> &expected, GLfloat tolerance)
{
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

/// Bytes of the whole context: two equal copies mean that nothing was stored between them.
inline std::vector<unsigned char> bytesOf(const GLIContext *ctx)
{
    std::vector<unsigned char> bytes(sizeof(GLIContext));
    std::memcpy(bytes.data(), static_cast<const void *>(ctx), sizeof(GLIContext));
    return bytes;
}

/// The call records exactly this error and stores nothing.
inline void expectOnlyError(const GLIContext *ctx, GLenum error, const std::function<void()> &call)
{
    const std::vector<unsigned char> before = bytesOf(ctx);
    call();
    EXPECT_EQ(glGetError(), error);
    EXPECT_EQ(bytesOf(ctx), before) << "the failing call changed the state";
}

/// The call records no error.
inline void expectAccepted(const std::function<void()> &call)
{
    call();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

/// Calls `visit` with each word of change marks.
template <typename Context, typename Visit>
void visitMarks(Context *ctx, Visit visit)
{
    visit(ctx->dirty);
    visit(ctx->keyDirty);
    visit(ctx->transform.uniformDirty);
    visit(ctx->palette.dirty);
    visit(ctx->lighting.change);
    visit(ctx->lighting.geometryDirty);
    visit(ctx->lighting.colorDirty[0]);
    visit(ctx->lighting.colorDirty[1]);
    visit(ctx->lighting.sceneColorDirty);
}

/// Forgets every change mark.
inline void clearMarks(GLIContext *ctx)
{
    visitMarks(ctx, [](auto &word) { word = 0; });
}

/// A fresh context without marks, recorded calls and assertions.
class StateTest : public testing::Test {
protected:
    StateTest()
    {
        startOver();
    }

    /// Starts again over a backend of another shape.
    void startOver(const std::function<void(FakeBackend &)> &shape = [](FakeBackend &) {})
    {
        context.reset();
        resetFakeBackend();
        shape(fakeBackend());
        context = std::make_unique<TestContext>();
        ctx = context->ctx;
        clearMarks(ctx);
        takeCalls();
        fakePlatform().assertions.clear();
    }

    /// Starts again over a backend that tests alpha and blends fog itself.
    void useVendorBackend()
    {
        startOver([](FakeBackend &backend) { backend.vendorEntries = true; });
    }

    /// Starts again over a backend without these entry points.
    void startWithout(const decltype(FakeBackend::absent) &names)
    {
        startOver([&](FakeBackend &backend) { backend.absent = names; });
    }

    std::unique_ptr<TestContext> context;
    GLIContext *ctx = nullptr;
};

/// Runs each call without a context, and then in interface-only mode: neither touches the state or the backend, nor
/// reads its arguments.
inline void expectInert(const TestContext &context, const std::vector<std::function<void()>> &calls)
{
    GLIContext *ctx = context.ctx;
    const std::vector<unsigned char> before = bytesOf(ctx);
    os_tls_write(__gl_tls_index, nullptr);
    for (const auto &call : calls)
        call();
    context.makeCurrent();
    EXPECT_EQ(bytesOf(ctx), before);

    takeCalls();
    ctx->settings.interfaceOnly = 1;
    const std::vector<unsigned char> quiet = bytesOf(ctx);
    for (const auto &call : calls)
        call();
    EXPECT_EQ(bytesOf(ctx), quiet);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    ctx->settings.interfaceOnly = 0;
}
