// SPDX-License-Identifier: MIT
#include "frontend/backend.h"
#include "state/state_test.h"

namespace {

// A call that goes on to the backend's entry point of the same name.
struct Forward {
    const char *name;
    std::function<void()> call;
    const char *recorded; // what reaches the backend: numbers differ per argument, pointers are small numbers
};

template <typename T>
T *at(uintptr_t number)
{
    return reinterpret_cast<T *>(number);
}

// Nothing happens where the backend has no such entry point.
const std::vector<Forward> kSilent = {
    {"glTexObjectStateOverrideiQRN", [] { glTexObjectStateOverrideiQRN(GL_TEXTURE_2D, 2, -3); },
     "(0x0de1, 0x0002, -3)"},
    {"glGetTexLevelParameterivQRN", [] { glGetTexLevelParameterivQRN(1, 2, 3, GL_RENDERER, at<GLint>(5)); },
     "(1, 2, 3, 0x1f01, +5)"},
    {"glIsProgramBinaryQRN", [] { glIsProgramBinaryQRN(6); }, "(6)"},
    {"glGetProgramsQRN", [] { glGetProgramsQRN(at<GLuint>(1), 2, at<GLint>(3)); }, "(+1, 2, +3)"},
    {"glGetShadersQRN", [] { glGetShadersQRN(at<GLuint>(4), 5, at<GLint>(6)); }, "(+4, 5, +6)"},
    {"glGetFramebuffersQRN", [] { glGetFramebuffersQRN(at<GLuint>(7), 8, at<GLint>(9)); }, "(+7, 8, +9)"},
    {"glGetRenderbuffersQRN", [] { glGetRenderbuffersQRN(at<GLuint>(10), 11, at<GLint>(12)); }, "(+10, 11, +12)"},
    {"glGetBuffersQRN", [] { glGetBuffersQRN(at<GLuint>(13), 14, at<GLint>(15)); }, "(+13, 14, +15)"},
    {"glGetTexturesQRN", [] { glGetTexturesQRN(nullptr, 17, at<GLint>(18)); }, "(null, 17, +18)"},
};

// An error and an assertion where the backend has no such entry point.
const std::vector<Forward> kLoud = {
    {"glGetPerfMonitorGroupsQRN", [] { glGetPerfMonitorGroupsQRN(at<GLint>(1), 2, at<GLuint>(3)); }, "(+1, 2, +3)"},
    {"glGetPerfMonitorCountersQRN",
     [] { glGetPerfMonitorCountersQRN(1, at<GLint>(2), at<GLint>(3), 4, at<GLuint>(5)); }, "(1, +2, +3, 4, +5)"},
    {"glGetPerfMonitorGroupStringQRN", [] { glGetPerfMonitorGroupStringQRN(1, 2, at<GLsizei>(3), at<char>(4)); },
     "(1, 2, +3, +4)"},
    {"glGetPerfMonitorCounterStringQRN", [] { glGetPerfMonitorCounterStringQRN(1, 2, 3, at<GLsizei>(4), at<char>(5)); },
     "(1, 2, 3, +4, +5)"},
    {"glGetPerfMonitorCounterInfoQRN", [] { glGetPerfMonitorCounterInfoQRN(1, 2, 3, at<void>(4)); },
     "(1, 2, 0x0003, +4)"},
    {"glGenPerfMonitorsQRN", [] { glGenPerfMonitorsQRN(1, at<GLuint>(2)); }, "(1, +2)"},
    {"glDeletePerfMonitorsQRN", [] { glDeletePerfMonitorsQRN(-3, at<GLuint>(4)); }, "(-3, +4)"},
    {"glSelectPerfMonitorCountersQRN", [] { glSelectPerfMonitorCountersQRN(1, GL_TRUE, 2, 3, at<GLuint>(4)); },
     "(1, 1, 2, 3, +4)"},
    {"glBeginPerfMonitorQRN", [] { glBeginPerfMonitorQRN(1); }, "(1)"},
    {"glEndPerfMonitorQRN", [] { glEndPerfMonitorQRN(2); }, "(2)"},
    {"glGetPerfMonitorCounterDataQRN", [] { glGetPerfMonitorCounterDataQRN(1, 2, 3, at<GLuint>(4), at<GLint>(5)); },
     "(1, 0x0002, 3, +4, +5)"},
    {"glGetTexSubImageZEK", [] { glGetTexSubImageZEK(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, at<void>(11)); },
     "(0x0001, 2, 3, 4, 5, 6, 7, 8, 0x0009, 0x000a, +11)"},
};

using VendorEntryPoints = StateTest;

} // namespace

TEST_F(VendorEntryPoints, GoToTheBackendWithTheirArguments)
{
    for (const auto *list : {&kSilent, &kLoud}) {
        for (const Forward &forward : *list) {
            const std::vector<unsigned char> before = bytesOf(ctx);
            forward.call();
            EXPECT_EQ(takeCalls(), std::vector<std::string>{std::string(forward.name) + forward.recorded});
            EXPECT_EQ(bytesOf(ctx), before) << forward.name;
        }
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(VendorEntryPoints, TheQuietOnesAreSilentWithoutTheirBackend)
{
    for (const Forward &forward : kSilent) {
        SCOPED_TRACE(forward.name);
        startWithout({forward.name});
        forward.call();
        EXPECT_EQ(takeCalls(), std::vector<std::string>{});
        EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{});
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
}

TEST_F(VendorEntryPoints, TheOthersAreAnErrorAndAnAssertionWithoutTheirBackend)
{
    for (const Forward &forward : kLoud) {
        SCOPED_TRACE(forward.name);
        startWithout({forward.name});
        forward.call();
        EXPECT_EQ(callsOf(forward.name), std::vector<std::string>{});
        EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{std::string(forward.name) + "_2_0"});
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_OPERATION));
    }
}

TEST_F(VendorEntryPoints, AnEarlierErrorStays)
{
    startWithout({"glBeginPerfMonitorQRN"});
    glMatrixMode(0);
    glBeginPerfMonitorQRN(1);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(VendorEntryPoints, ResultsAreTheBackends)
{
    glIsProgramBinaryQRN_2_0 = [](GLuint program) { return static_cast<GLboolean>(program == 5); };
    EXPECT_EQ(glIsProgramBinaryQRN(5), GL_TRUE);
    EXPECT_EQ(glIsProgramBinaryQRN(4), GL_FALSE);
    glIsProgramBinaryQRN_2_0 = nullptr;
    EXPECT_EQ(glIsProgramBinaryQRN(5), GL_FALSE);
}

TEST_F(VendorEntryPoints, ErrorsOfTheBackendReachTheApplication)
{
    fakeBackend().error = GL_INVALID_VALUE;
    glGetTexturesQRN(nullptr, -1, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_VALUE));
}

TEST_F(VendorEntryPoints, DoNothingWithoutAContext)
{
    const std::vector<unsigned char> before = bytesOf(ctx);
    os_tls_write(__gl_tls_index, nullptr);
    for (const auto *list : {&kSilent, &kLoud}) {
        for (const Forward &forward : *list)
            forward.call();
    }
    glFogCoordf(9);
    glAlphaFactorfZEK(9);
    void *pointer = at<void>(7);
    glGetBufferPointervZEK(GL_TEXTURE_2D, &pointer);
    glMultMatrixfWithHintZEK(nullptr);
    glLoadMatrixfWithHintZEK(nullptr);
    EXPECT_EQ(glIsProgramBinaryQRN(5), GL_FALSE);
    EXPECT_EQ(pointer, at<void>(7));
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{});
    context->makeCurrent();
    EXPECT_EQ(bytesOf(ctx), before);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(VendorEntryPoints, BufferPointersAreAskedForTheTwoTargetsOnly)
{
    void *pointer = at<void>(7);
    glGetBufferPointervZEK(GL_ARRAY_BUFFER, &pointer);
    glGetBufferPointervZEK(GL_ELEMENT_ARRAY_BUFFER, &pointer);
    EXPECT_EQ(takeCalls(),
              (std::vector<std::string>{"glGetBufferPointervZEK(0x8892, ptr)", "glGetBufferPointervZEK(0x8893, ptr)"}));
    EXPECT_EQ(pointer, at<void>(7)) << "the backend's to write";

    for (const GLenum target :
         {GLenum(GL_TEXTURE_2D), GLenum(GL_ARRAY_BUFFER - 1), GLenum(GL_ELEMENT_ARRAY_BUFFER + 1), GLenum(0)}) {
        pointer = at<void>(7);
        glGetBufferPointervZEK(target, &pointer);
        EXPECT_EQ(pointer, nullptr);
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    }
    EXPECT_EQ(callsOf("glGetBufferPointervZEK"), std::vector<std::string>{});
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{});
}

TEST_F(VendorEntryPoints, BufferPointersWithoutTheirBackendAreNullAndAnError)
{
    startWithout({"glGetBufferPointervZEK"});
    void *pointer = at<void>(7);
    glGetBufferPointervZEK(GL_ARRAY_BUFFER, &pointer);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_OPERATION));
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{"glGetBufferPointervZEK_2_0"});

    // A wrong target is found first.
    fakePlatform().assertions.clear();
    glGetBufferPointervZEK(GL_TEXTURE_2D, &pointer);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{});
}

TEST_F(VendorEntryPoints, FogCoordinateAndAlphaFactorAreStoredAsGivenWithoutMarks)
{
    startWithout({});
    EXPECT_EQ(ctx->vendor.fogCoord, 0.0f);
    EXPECT_EQ(ctx->vendor.alphaFactor, 1.0f);
    for (const GLfloat value : {2.0f, -3.5f, 0.0f, 1e30f}) {
        glFogCoordf(value);
        glAlphaFactorfZEK(-value);
        EXPECT_EQ(ctx->vendor.fogCoord, value);
        EXPECT_EQ(ctx->vendor.alphaFactor, -value);
    }
    glAlphaFactorfZEK(kNaN);
    EXPECT_TRUE(std::isnan(ctx->vendor.alphaFactor));
    EXPECT_EQ(ctx->dirty, 0u);
    EXPECT_EQ(ctx->keyDirty, 0u);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(VendorEntryPoints, TheAlphaFactorReachesTheShadersWhileItsCapabilityIsOn)
{
    const GLfloat triangle[] = {0, 0, 1, 0, 0, 1};
    glVertexPointer(2, GL_FLOAT, 0, triangle);
    // The factors that a draw loads.
    const auto loads = [] {
        takeCalls();
        glDrawArrays(GL_TRIANGLES, 0, 3);
        const std::string head = "glUniform1f(" + std::to_string(fakeLocation("gles_alphaFactor")) + ", ";
        std::vector<std::string> values;
        for (const std::string &call : takeCalls())
            if (call.starts_with(head)) values.push_back(call.substr(head.size(), call.size() - head.size() - 1));
        return values;
    };
    using Values = std::vector<std::string>;
    EXPECT_EQ(loads(), Values{});
    glEnable(GL_ALPHA_FACTOR_ZEK);
    EXPECT_EQ(loads(), Values{"1"}) << "a new context's";
    glAlphaFactorfZEK(0.25f);
    EXPECT_EQ(loads(), Values{"0.25"});
    glAlphaFactorfZEK(2);
    EXPECT_EQ(loads(), Values{"2"}) << "taken by the next draw, without a mark";
    glDisable(GL_ALPHA_FACTOR_ZEK);
    EXPECT_EQ(loads(), Values{});
}

TEST_F(VendorEntryPoints, MatrixHintsAreIgnored)
{
    // A uniform scale, a mirror and a matrix of no kind, each with the hint of something else.
    const GLfloat matrices[][16] = {
        {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 2, 3, 1},
        {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
        {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16},
        {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
    };
    const TestContext other;
    for (const auto &matrix : matrices) {
        for (const uint32_t hint : {0u, 8u, 0xFFFFFFFFu}) {
            const auto run = [&](const TestContext &target, bool hinted) {
                target.makeCurrent();
                hinted ? glLoadMatrixfWithHintZEK(matrix, hint, 1.0) : glLoadMatrixf(matrix);
                const MatrixRecord loaded = *target->transform.top[STACK_MODELVIEW];
                hinted ? glMultMatrixfWithHintZEK(matrix, hint) : glMultMatrixf(matrix);
                return std::pair(loaded, *target->transform.top[STACK_MODELVIEW]);
            };
            const auto [loaded, product] = run(*context, true);
            const auto [expectedLoaded, expectedProduct] = run(other, false);
            EXPECT_EQ(std::memcmp(&loaded, &expectedLoaded, sizeof(MatrixRecord)), 0);
            EXPECT_EQ(std::memcmp(&product, &expectedProduct, sizeof(MatrixRecord)), 0);
        }
    }
    context->makeCurrent();
}
