// SPDX-License-Identifier: MIT
#include "frontend/backend.h"
#include "state/state_test.h"

#include <type_traits>

namespace {

// Arguments that differ from each other, so that an exchanged or dropped one shows: 1, 2.5, +48, ...
template <typename T>
T argument(uintptr_t place)
{
    if constexpr (std::is_pointer_v<T>) {
        return static_cast<T>(offsetPointer(16 * (place + 1)));
    } else if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(place) + T(1.5);
    } else {
        return static_cast<T>(place + 1);
    }
}

template <typename R, typename... A, size_t... Place>
R callWithArguments(R(GL_APIENTRY *function)(A...), std::index_sequence<Place...>)
{
    return function(argument<A>(Place)...);
}

template <typename R, typename... A>
uint32_t callFunction(R(GL_APIENTRY *function)(A...))
{
    if constexpr (std::is_void_v<R>) {
        callWithArguments(function, std::index_sequence_for<A...>());
        return 0;
    } else {
        return callWithArguments(function, std::index_sequence_for<A...>());
    }
}

// One forwarder with the backend function behind it.
struct Forwarder {
    std::string name;
    std::string pointerName;
    std::function<uint32_t()> call;                             // the forwarder, with the arguments above
    std::function<uint32_t()> callBackend;                      // the backend function, with the same
    std::function<void(const std::function<void()> &)> without; // runs something while the pointer is null
    uint32_t absent;                                            // result without context or backend function
    bool asserting;
};

template <typename Function>
void runWithout(Function *&pointer, const std::function<void()> &run)
{
    Function *const saved = std::exchange(pointer, nullptr);
    run();
    pointer = saved;
}

std::vector<Forwarder> forwarders()
{
    const auto number = [](auto... value) { return (uint32_t(value) + ... + 0u); };
    // A row becomes one Forwarder of glStencilMask and glStencilMask_2_0; void() stands for no result.
#define FORWARDER(name, pointer, absentResult, asserts)                                                                \
    {#name,                                                                                                            \
     #pointer,                                                                                                         \
     [] { return callFunction(name); },                                                                                \
     [] { return callFunction(pointer); },                                                                             \
     [](const std::function<void()> &run) { runWithout(pointer, run); },                                               \
     absentResult,                                                                                                     \
     asserts},
#define FORWARD_ASSERTING(name, result, arguments, call, pointer, absent)                                              \
    FORWARDER(name, pointer, (std::is_void_v<result> ? 0u : number(RESULT_##result)), true)
#define FORWARD_EXTENSION(name, result, arguments, call, pointer, absent)                                              \
    FORWARDER(name, pointer, (std::is_void_v<result> ? 0u : number(RESULT_##result)), false)
#define RESULT_void
#define RESULT_GLboolean 0
#define RESULT_GLenum 0x8CDD
    return {
#include "frontend/passthrough.def"
    };
#undef FORWARDER
#undef RESULT_void
#undef RESULT_GLboolean
#undef RESULT_GLenum
}

// The backend function of an entry point: the same name without the extension's suffix, except for the one whose
// backend function has the suffix too.
std::string expectedPointer(std::string name)
{
    if (name != "glFramebufferTexture3DOES" && name.ends_with("OES")) name.resize(name.size() - 3);
    return name + "_2_0";
}

class PassThrough : public StateTest {};

const std::vector<std::string> kNothing;

} // namespace

TEST_F(PassThrough, ThereAre31AssertingAnd16ExtensionForwarders)
{
    const auto all = forwarders();
    const auto asserting = std::count_if(all.begin(), all.end(), [](auto &one) { return one.asserting; });
    EXPECT_EQ(asserting, 31) << "the buffer bind and delete calls stand apart";
    EXPECT_EQ(all.size() - asserting, 16u);
}

TEST_F(PassThrough, EachCallsItsBackendFunctionOnceWithItsOwnArguments)
{
    for (const Forwarder &forwarder : forwarders()) {
        EXPECT_EQ(forwarder.pointerName, expectedPointer(forwarder.name));
        forwarder.callBackend();
        const std::vector<std::string> expected = takeCalls();
        ASSERT_EQ(expected.size(), 1u);
        EXPECT_TRUE((expected[0].substr(0, expected[0].find('(')) + "_2_0") == forwarder.pointerName) << expected[0];
        forwarder.call();
        EXPECT_EQ(takeCalls(), expected) << forwarder.name;
    }
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(PassThrough, EachReturnsTheBackendsResult)
{
    for (const char *name : {"glIsTexture", "glIsBuffer", "glIsFramebuffer", "glIsRenderbuffer"})
        fakeBackend().results[name] = 1;
    fakeBackend().results["glCheckFramebufferStatus"] = GL_FRAMEBUFFER_COMPLETE;
    EXPECT_EQ(glIsTexture(3), GL_TRUE);
    EXPECT_EQ(glIsBuffer(3), GL_TRUE);
    EXPECT_EQ(glIsFramebufferOES(3), GL_TRUE);
    EXPECT_EQ(glIsRenderbufferOES(3), GL_TRUE);
    EXPECT_EQ(glCheckFramebufferStatusOES(GL_FRAMEBUFFER_OES), GLenum(GL_FRAMEBUFFER_COMPLETE_OES));
}

TEST_F(PassThrough, WithoutAContextEachReturnsItsFixedResultAndCallsNothing)
{
    for (const char *name : {"glIsTexture", "glIsBuffer", "glIsFramebuffer", "glIsRenderbuffer"})
        fakeBackend().results[name] = 1;
    const auto before = bytesOf(ctx);
    os_tls_write(__gl_tls_index, nullptr);
    for (const Forwarder &forwarder : forwarders()) {
        EXPECT_EQ(forwarder.call(), forwarder.absent) << forwarder.name;
        forwarder.without([&] { EXPECT_EQ(forwarder.call(), forwarder.absent) << forwarder.name; });
    }
    EXPECT_EQ(glCheckFramebufferStatusOES(GL_FRAMEBUFFER_OES), 0x8CDDu);
    EXPECT_EQ(takeCalls(), kNothing);
    EXPECT_TRUE(fakePlatform().assertions.empty());
    EXPECT_EQ(bytesOf(ctx), before);
}

TEST_F(PassThrough, AMissingBackendFunctionIsAnAssertionOrSilent)
{
    for (const Forwarder &forwarder : forwarders()) {
        fakePlatform().assertions.clear();
        forwarder.without([&] { EXPECT_EQ(forwarder.call(), forwarder.absent) << forwarder.name; });
        EXPECT_EQ(fakePlatform().assertions.size(), forwarder.asserting ? 1u : 0u) << forwarder.name;
    }
    EXPECT_EQ(takeCalls(), kNothing);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(PassThrough, InterfaceOnlyModeStillReachesTheBackend)
{
    ctx->settings.interfaceOnly = 1;
    for (const Forwarder &forwarder : forwarders()) {
        forwarder.call();
        EXPECT_EQ(takeCalls().size(), 1u) << forwarder.name;
    }
    const GLuint name = 4;
    glBindBuffer(GL_ARRAY_BUFFER, 4);
    glDeleteBuffers(1, &name);
    glClearColorx(0, 0, 0, 0);
    glClearDepthx(0);
    glPolygonOffsetx(0, 0);
    glSampleCoveragex(0, GL_FALSE);
    EXPECT_EQ(takeCalls().size(), 6u);
}

TEST_F(PassThrough, NoneRecordsAnErrorOrMarksAChange)
{
    const auto before = bytesOf(ctx);
    for (const Forwarder &forwarder : forwarders())
        forwarder.call();
    EXPECT_EQ(bytesOf(ctx), before);
}

TEST_F(PassThrough, BindBufferKeepsTheNamesOfTwoTargets)
{
    glBindBuffer(GL_ARRAY_BUFFER, 7);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 8);
    glBindBuffer(GL_TEXTURE_2D, 9);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 7u);
    EXPECT_EQ(ctx->arrays.elementArrayBuffer, 8u);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glBindBuffer(0x8892, 7)", "glBindBuffer(0x8893, 8)",
                                                     "glBindBuffer(0x0de1, 9)"}));
    EXPECT_EQ(ctx->dirty, 0u);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    EXPECT_EQ(ctx->arrays.vertex.buffer, 7u);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 0u);
    EXPECT_EQ(ctx->arrays.vertex.buffer, 7u);
}

TEST_F(PassThrough, BindBufferWithoutAContextOrBackendFunctionIsSilent)
{
    runWithout(glBindBuffer_2_0, [] { glBindBuffer(GL_ARRAY_BUFFER, 7); });
    EXPECT_EQ(ctx->arrays.arrayBuffer, 7u);
    os_tls_write(__gl_tls_index, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 3);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 7u);
    EXPECT_EQ(takeCalls(), kNothing);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(PassThrough, DeletingABufferDropsEveryBindingToIt)
{
    glBindBuffer(GL_ARRAY_BUFFER, 7);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 7);
    glVertexPointer(3, GL_FLOAT, 0, offsetPointer(16));
    glWeightPointerOES(3, GL_FLOAT, 0, offsetPointer(16));
    glBindBuffer(GL_ARRAY_BUFFER, 8);
    glNormalPointer(GL_FLOAT, 0, offsetPointer(32));
    takeCalls();

    const GLuint names[3] = {0, 7, 99};
    glDeleteBuffers(3, names);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glDeleteBuffers(3, ptr)"});
    EXPECT_EQ(ctx->arrays.elementArrayBuffer, 0u);
    EXPECT_EQ(ctx->arrays.vertex.buffer, 0u);
    EXPECT_EQ(ctx->arrays.vertex.pointer, nullptr) << "an offset without its buffer is no address";
    EXPECT_EQ(ctx->arrays.weight.buffer, 0u);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 8u);
    EXPECT_EQ(ctx->arrays.normal.buffer, 8u);
    EXPECT_EQ(ctx->arrays.normal.pointer, offsetPointer(32));
}

TEST_F(PassThrough, DeletingNameZeroKeepsClientMemoryArrays)
{
    glVertexPointer(3, GL_FLOAT, 0, offsetPointer(16));
    const GLuint zero = 0;
    glDeleteBuffers(1, &zero);
    EXPECT_EQ(ctx->arrays.vertex.pointer, offsetPointer(16));
}

TEST_F(PassThrough, DeleteBuffersFollowsTheAssertingFamily)
{
    const GLuint name = 7;
    glDeleteBuffers(-1, &name);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{"glDeleteBuffers(-1, ptr)"}) << "the backend reports the count";
    runWithout(glDeleteBuffers_2_0, [&] { glDeleteBuffers(1, &name); });
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    os_tls_write(__gl_tls_index, nullptr);
    glDeleteBuffers(1, &name);
    EXPECT_EQ(takeCalls(), kNothing);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
}

TEST_F(PassThrough, FixedPointFormsConvertAndForward)
{
    glClearColorx(0x10000, 0x8000, 0, 0x10000);
    glClearDepthx(0x4000);
    glPolygonOffsetx(-0x10000, 0x18000);
    glSampleCoveragex(0xC000, GL_TRUE);
    EXPECT_EQ(takeCalls(), (std::vector<std::string>{"glClearColor(1, 0.5, 0, 1)", "glClearDepthf(0.25)",
                                                     "glPolygonOffset(-1, 1.5)", "glSampleCoverage(0.75, 1)"}));
    glLineWidthx(0x28000);
    EXPECT_EQ(ctx->pointLine.lineWidth, 2.5f);
}

TEST_F(PassThrough, FixedPointFormsWithoutAContextCallNothing)
{
    os_tls_write(__gl_tls_index, nullptr);
    glClearColorx(0x10000, 0, 0, 0);
    glClearDepthx(0x10000);
    glPolygonOffsetx(1, 1);
    glSampleCoveragex(1, GL_FALSE);
    glLineWidthx(0x20000);
    EXPECT_EQ(takeCalls(), kNothing);
    EXPECT_EQ(ctx->pointLine.lineWidth, 1.0f);
}

TEST_F(PassThrough, FixedPointFormsFollowTheFamilyOfTheirFloatForm)
{
    runWithout(glClearColor_2_0, [] { glClearColorx(0, 0, 0, 0); });
    EXPECT_TRUE(fakePlatform().assertions.empty()) << "called without an assertion of its own";
    runWithout(glClearDepthf_2_0, [] { glClearDepthx(0); });
    runWithout(glPolygonOffset_2_0, [] { glPolygonOffsetx(0, 0); });
    runWithout(glSampleCoverage_2_0, [] { glSampleCoveragex(0, GL_FALSE); });
    EXPECT_EQ(fakePlatform().assertions.size(), 3u);
    EXPECT_EQ(takeCalls(), kNothing);
}

TEST_F(PassThrough, FixedPointRoundsTheIntegerOnceAndGivesPositiveZero)
{
    static GLfloat seen[4];
    const auto saved = std::exchange(glClearColor_2_0, [](GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
        seen[0] = r, seen[1] = g, seen[2] = b, seen[3] = a;
    });
    glClearColorx(0, 1, INT32_MAX, INT32_MIN);
    EXPECT_FALSE(std::signbit(seen[0]));
    EXPECT_EQ(seen[0], 0.0f);
    EXPECT_EQ(seen[1], 0x1p-16f);
    EXPECT_EQ(seen[2], 32768.0f) << "0x7fffffff rounds up to 2^31";
    EXPECT_EQ(seen[3], -32768.0f);
    // Between two floats: halfway cases go to the even one.
    glClearColorx(0x1000001, 0x1000003, -0x1000001, 0xFFFFFF);
    EXPECT_EQ(seen[0], 256.0f);
    EXPECT_EQ(seen[1], 256.0f + 0x1p-14f);
    EXPECT_EQ(seen[2], -256.0f);
    EXPECT_EQ(seen[3], 0xFFFFFFp-16f);
    glClearColor_2_0 = saved;
}
