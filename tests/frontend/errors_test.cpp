// SPDX-License-Identifier: MIT
#include "frontend/error.h"

#include "frontend/backend.h"
#include "state/state_test.h"

namespace {

class Errors : public StateTest {};

} // namespace

TEST_F(Errors, TheFirstOfTwoErrorsStays)
{
    __glSetError(GL_INVALID_ENUM);
    __glSetError(GL_INVALID_VALUE);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Errors, APendingBackendErrorReplacesTheOwnOne)
{
    fakeBackend().error = GL_OUT_OF_MEMORY;
    __glSetError(GL_INVALID_ENUM);
    EXPECT_EQ(ctx->error, GLenum(GL_OUT_OF_MEMORY));
    EXPECT_EQ(glGetError(), GLenum(GL_OUT_OF_MEMORY));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << "the own error is lost";
}

TEST_F(Errors, ABackendErrorRaisedLaterIsReportedAfterTheOwnOne)
{
    __glSetError(GL_INVALID_ENUM);
    fakeBackend().error = GL_INVALID_OPERATION;
    __glSetError(GL_INVALID_VALUE);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_OPERATION));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Errors, TheBackendIsAskedOnceForAnErrorAndNotForTheNext)
{
    __glSetError(GL_INVALID_ENUM);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glGetError()"});
    __glSetError(GL_INVALID_VALUE);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    glGetError();
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glGetError()"});
}

TEST_F(Errors, WithoutAContextNothingIsRecordedOrAsked)
{
    const auto before = bytesOf(ctx);
    fakeBackend().error = GL_INVALID_VALUE;
    os_tls_write(__gl_tls_index, nullptr);
    __glSetError(GL_INVALID_ENUM);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(fakeBackend().error, GLenum(GL_INVALID_VALUE));
    EXPECT_EQ(bytesOf(ctx), before);
}

TEST_F(Errors, AreReportedInInterfaceOnlyMode)
{
    ctx->settings.interfaceOnly = 1;
    fakeBackend().error = GL_INVALID_OPERATION;
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_OPERATION));
}

TEST_F(Errors, BelongToTheirContext)
{
    __glSetError(GL_STACK_OVERFLOW);
    TestContext other;
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    context->makeCurrent();
    EXPECT_EQ(glGetError(), GLenum(GL_STACK_OVERFLOW));
}

TEST_F(Errors, AreKeptOverABackendWithoutAnErrorQuery)
{
    const auto saved = std::exchange(glGetError_2_0, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    __glSetError(GL_INVALID_ENUM);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    glGetError_2_0 = saved;
}
