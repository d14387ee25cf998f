// SPDX-License-Identifier: MIT
// Loads that change nothing stop in the backend, and nothing else does. "Exact" means: what the driver holds is what
// always calling it would have left there.
#include "backend_fixture.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr const char *kUniformVertex =
    "attribute vec4 gles_Vertex;\nuniform mat4 matrix4;\nuniform mat3 matrix3;\nuniform mat2 matrix2;\n"
    "uniform vec4 vectors[3];\nuniform float scalar;\nvarying vec4 v;\n"
    "void main()\n{\n    v = vectors[0] + vectors[1] + vectors[2] + vec4(matrix3[1] * scalar, matrix2[1].x);\n"
    "    gl_Position = matrix4 * gles_Vertex;\n}\n";
constexpr const char *kUniformFragment =
    "uniform mediump vec3 three;\nuniform mediump vec2 two;\nuniform lowp bool flag;\nuniform sampler2D image;\n"
    "uniform mediump float amount;\nuniform mediump vec4 parts[3];\n"
    "varying mediump vec4 v;\n"
    "void main()\n{\n    gl_FragColor = v + vec4(three, two.x) + texture2D(image, two) + parts[0] + parts[1] * amount "
    "+ parts[2];\n"
    "    if (flag) gl_FragColor *= 0.5;\n}\n";

struct UniformTest : ProgramInUseTest {
    void SetUp() override
    {
        ProgramInUseTest::SetUp();
        use(kUniformVertex, kUniformFragment);
    }
};

TEST_F(UniformTest, AnEqualLoadReachesTheDriverOnce)
{
    const GLint three = location("three");
    const CallCounter counter;
    gl.glUniform3f(three, 1.0f, 2.0f, 3.0f);
    EXPECT_EQ(counter.calls(), 1);
    gl.glUniform3f(three, 1.0f, 2.0f, 3.0f);
    const GLfloat same[] = {1.0f, 2.0f, 3.0f};
    gl.glUniform3fv(three, 1, same);
    EXPECT_EQ(counter.calls(), 1);
    gl.glUniform3f(three, 1.0f, 2.0f, 4.0f);
    EXPECT_EQ(counter.calls(), 2);
    EXPECT_EQ(held("three", 3), (std::vector<GLfloat>{1.0f, 2.0f, 4.0f}));
}

TEST_F(UniformTest, ZeroIsKnownFromTheStart)
{
    const GLint amount = location("amount");
    const CallCounter counter;
    gl.glUniform1f(amount, 0.0f);
    EXPECT_EQ(counter.calls(), 0);
    gl.glUniform1f(amount, -0.0f);
    EXPECT_EQ(counter.calls(), 1) << "another value, if an equal one";
}

TEST_F(UniformTest, LoadsToNowhereStopWithoutAnError)
{
    const CallCounter counter;
    const GLfloat values[16] = {};
    gl.glUniform1f(-1, 1.0f);
    gl.glUniform4fv(-1, 1, values);
    gl.glUniform1i(-1, 1);
    gl.glUniformMatrix4fv(-1, 1, GL_FALSE, values);
    EXPECT_EQ(counter.calls(), 0);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformTest, ArraysAreComparedOverTheirLoadedPart)
{
    const GLint parts = location("parts");
    const GLint second = location("parts[1]");
    GLfloat values[16] = {};
    values[7] = 5.0f;
    const CallCounter counter;
    gl.glUniform4fv(parts, 1, values);
    EXPECT_EQ(counter.calls(), 0);
    gl.glUniform4fv(parts, 3, values);
    EXPECT_EQ(counter.calls(), 1);
    gl.glUniform4fv(second, 1, values + 4);
    EXPECT_EQ(counter.calls(), 1);
    gl.glUniform4f(second, 1.0f, 1.0f, 1.0f, 1.0f);
    EXPECT_EQ(counter.calls(), 2);
    gl.glUniform4fv(parts, 3, values);
    EXPECT_EQ(counter.calls(), 3);
    gl.glUniform4fv(parts, 4, values); // one more than there are; the last is ignored
    EXPECT_EQ(counter.calls(), 3);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(UniformTest, AnotherKindOfLoadIsTheDriversToJudge)
{
    const GLint flag = location("flag");
    gl.glUniform1i(flag, 1);
    gl.glUniform1f(flag, 0.0f); // legal for a bool
    GLint value = -1;
    gl.glGetUniformiv(program, flag, &value);
    EXPECT_EQ(value, 0);
    gl.glUniform1i(flag, 1); // the last remembered value, but no longer the driver's
    gl.glGetUniformiv(program, flag, &value);
    EXPECT_EQ(value, 1);

    gl.glUniform1i(location("scalar"), 3);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    gl.glUniform3fv(location("three"), 2, std::vector<GLfloat>(6).data());
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    gl.glUniform1f(10000, 1.0f);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    gl.glUniform1fv(location("scalar"), -1, nullptr);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(UniformTest, ARefusedTextureUnitIsNotRemembered)
{
    const GLint image = location("image");
    gl.glUniform1i(image, -1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    gl.glUniform1i(image, -1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    const CallCounter counter;
    gl.glUniform1i(image, 0);
    EXPECT_EQ(counter.calls(), 0);
    gl.glUniform1i(image, 1);
    gl.glUniform1i(image, 1);
    EXPECT_EQ(counter.calls(), 1);
}

TEST_F(UniformTest, WithoutAProgramALoadIsAnError)
{
    gl.glUseProgram(0);
    gl.glUniform1f(0, 1.0f);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(UniformTest, ValuesBelongToTheProgram)
{
    const GLuint other = makeProgram(kUniformVertex, kUniformFragment);
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    gl.glUseProgram(other);
    EXPECT_EQ(gl.glGetUniformLocation(other, "two"), location("two")) << "made from the same texts";
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    GLfloat values[2] = {};
    gl.glGetUniformfv(other, location("two"), values);
    EXPECT_EQ(values[1], 2.0f);
    gl.glUseProgram(program);
    const GLint two = location("two");
    const CallCounter counter;
    gl.glUniform2f(two, 1.0f, 2.0f);
    EXPECT_EQ(counter.calls(), 0);
}

TEST_F(UniformTest, LinkingAgainSetsEverythingToZero)
{
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    gl.glLinkProgram(program);
    EXPECT_EQ(held("two", 2), (std::vector<GLfloat>{0.0f, 0.0f}));
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    EXPECT_EQ(held("two", 2), (std::vector<GLfloat>{1.0f, 2.0f}));
}

TEST_F(UniformTest, ASharedProgramHasOneSetOfValues)
{
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    void *other = makeContext(context);
    gl.glUseProgram(program);
    gl.glUniform2f(location("two"), 3.0f, 4.0f);
    makeCurrent(context);
    gl.glUniform2f(location("two"), 1.0f, 2.0f);
    EXPECT_EQ(held("two", 2), (std::vector<GLfloat>{1.0f, 2.0f}));
    makeCurrent(other);
    EXPECT_EQ(held("two", 2), (std::vector<GLfloat>{1.0f, 2.0f}));
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// Elements lie behind one another, so that most of them begin anywhere.
TEST_F(UniformTest, EveryWordOfEveryElementCounts)
{
    const GLuint arrays = makeProgram(
        "attribute vec4 gles_Vertex;\nuniform float ones[3];\nuniform vec2 twos[3];\nuniform vec3 threes[3];\n"
        "uniform vec4 fours[3];\nuniform mat2 squares2[3];\nuniform mat3 squares3[3];\nuniform mat4 squares4[3];\n"
        "void main()\n{\n    gl_Position = gles_Vertex;\n    for (int i = 0; i < 3; ++i) {\n"
        "        gl_Position += squares4[i] * fours[i] + ones[i];\n"
        "        gl_Position.xyz += squares3[i] * threes[i];\n"
        "        gl_Position.xy += squares2[i] * twos[i];\n    }\n}\n",
        "void main()\n{\n    gl_FragColor = vec4(1.0);\n}\n");
    gl.glUseProgram(arrays);
    const auto loadsOf = [](void(GL_APIENTRY * load)(GLint, GLsizei, const GLfloat *)) {
        return [load](GLint at, GLsizei count, const GLfloat *values) { load(at, count, values); };
    };
    const auto matricesOf = [](void(GL_APIENTRY * load)(GLint, GLsizei, GLboolean, const GLfloat *)) {
        return [load](GLint at, GLsizei count, const GLfloat *values) { load(at, count, GL_FALSE, values); };
    };
    const struct {
        std::string name;
        size_t words;
        std::function<void(GLint, GLsizei, const GLfloat *)> load;
    } kinds[] = {
        {"ones", 1, loadsOf(gl.glUniform1fv)},
        {"twos", 2, loadsOf(gl.glUniform2fv)},
        {"threes", 3, loadsOf(gl.glUniform3fv)},
        {"fours", 4, loadsOf(gl.glUniform4fv)},
        {"squares2", 4, matricesOf(gl.glUniformMatrix2fv)},
        {"squares3", 9, matricesOf(gl.glUniformMatrix3fv)},
        {"squares4", 16, matricesOf(gl.glUniformMatrix4fv)},
    };
    for (const auto &kind : kinds) {
        for (size_t element = 0; element < 3; ++element) {
            const GLint at = gl.glGetUniformLocation(arrays, (kind.name + "[" + std::to_string(element) + "]").c_str());
            ASSERT_NE(at, -1) << kind.name;
            for (const size_t count : {1, 2}) {
                if (element + count > 3) continue;
                std::vector<GLfloat> values(kind.words * count);
                for (GLfloat &value : values) {
                    value = static_cast<GLfloat>(element + 1);
                    kind.load(at, static_cast<GLsizei>(count), values.data());
                    std::vector<GLfloat> got(kind.words);
                    gl.glGetUniformfv(arrays, at, got.data());
                    ASSERT_TRUE(std::equal(got.begin(), got.end(), values.begin())) << kind.name << element;
                    if (count == 2) {
                        gl.glGetUniformfv(arrays, at + 1, got.data());
                        ASSERT_TRUE(std::equal(got.begin(), got.end(), values.begin() + kind.words)) << kind.name;
                    }
                    const CallCounter counter;
                    kind.load(at, static_cast<GLsizei>(count), values.data());
                    ASSERT_EQ(counter.calls(), 0) << kind.name << element;
                }
            }
        }
    }
}

// Random loads of every form. After each batch the driver's values are those of always having loaded.
TEST_F(UniformTest, RandomLoadsLeaveWhatAlwaysLoadingLeaves)
{
    const struct {
        const char *name;
        int words;
    } uniforms[] = {{"matrix4", 16},   {"matrix3", 9}, {"matrix2", 4}, {"vectors[0]", 4}, {"vectors[1]", 4},
                    {"vectors[2]", 4}, {"scalar", 1},  {"three", 3},   {"two", 2}};
    std::map<std::string, std::vector<GLfloat>> expected;
    for (const auto &uniform : uniforms)
        expected[uniform.name].resize(static_cast<size_t>(uniform.words));
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        const auto &uniform = uniforms[random() % std::size(uniforms)];
        std::vector<GLfloat> &values = expected[uniform.name];
        values[random() % values.size()] = static_cast<GLfloat>(random() % 3);
        const GLint at = location(uniform.name);
        switch (uniform.words) {
        case 16:
            gl.glUniformMatrix4fv(at, 1, GL_FALSE, values.data());
            break;
        case 9:
            gl.glUniformMatrix3fv(at, 1, GL_FALSE, values.data());
            break;
        case 4:
            if (std::strncmp(uniform.name, "matrix", 6) == 0)
                gl.glUniformMatrix2fv(at, 1, GL_FALSE, values.data());
            else
                gl.glUniform4f(at, values[0], values[1], values[2], values[3]);
            break;
        case 3:
            gl.glUniform3fv(at, 1, values.data());
            break;
        case 2:
            gl.glUniform2f(at, values[0], values[1]);
            break;
        case 1:
            gl.glUniform1fv(at, 1, values.data());
            break;
        }
        const auto &checked = uniforms[random() % std::size(uniforms)];
        ASSERT_EQ(held(checked.name, static_cast<size_t>(checked.words)), expected[checked.name]) << round;
    }
}

using VertexInput = BackendTest;

TEST_F(VertexInput, AnUnchangedBindingReachesTheDriverOnce)
{
    GLuint buffer;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, 64, nullptr, GL_STATIC_DRAW);
    const auto bindAll = [&] {
        gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
        gl.glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
        gl.glEnableVertexAttribArray(0);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl.glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, 4, &buffer);
        gl.glVertexAttrib4f(2, 1.0f, 2.0f, 3.0f, 4.0f);
        gl.glDisableVertexAttribArray(2);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    };
    bindAll();
    const CallCounter counter;
    bindAll();
    EXPECT_EQ(counter.calls(), 0);
}

TEST_F(VertexInput, EveryPartOfAnArrayCounts)
{
    GLuint buffer;
    gl.glGenBuffers(1, &buffer);
    const auto callsOf = [&](GLuint from, GLint size, GLenum type, GLboolean normalized, GLsizei stride,
                             const void *pointer) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, from);
        const int before = countedCalls("glVertexAttribPointer");
        gl.glVertexAttribPointer(3, size, type, normalized, stride, pointer);
        return countedCalls("glVertexAttribPointer") - before;
    };
    EXPECT_EQ(callsOf(0, 4, GL_FLOAT, GL_FALSE, 0, nullptr), 0) << "the initial state";
    EXPECT_EQ(callsOf(0, 4, GL_FLOAT, GL_FALSE, 0, &buffer), 1);
    EXPECT_EQ(callsOf(0, 3, GL_FLOAT, GL_FALSE, 0, &buffer), 1);
    EXPECT_EQ(callsOf(0, 3, GL_SHORT, GL_FALSE, 0, &buffer), 1);
    EXPECT_EQ(callsOf(0, 3, GL_SHORT, GL_TRUE, 0, &buffer), 1);
    EXPECT_EQ(callsOf(0, 3, GL_SHORT, GL_TRUE, 8, &buffer), 1);
    EXPECT_EQ(callsOf(0, 3, GL_SHORT, GL_TRUE, 8, &buffer), 0);
    EXPECT_EQ(callsOf(buffer, 3, GL_SHORT, GL_TRUE, 8, nullptr), 1);
    EXPECT_EQ(callsOf(buffer, 3, GL_SHORT, GL_TRUE, 8, nullptr), 0);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

TEST_F(VertexInput, RefusedArraysAreRefusedEveryTime)
{
    for (int i = 0; i < 2; ++i) {
        gl.glVertexAttribPointer(0, 5, GL_FLOAT, GL_FALSE, 0, nullptr);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
        gl.glVertexAttribPointer(0, 2, GL_ONE, GL_FALSE, 0, nullptr);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
        gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, -1, nullptr);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
        gl.glEnableVertexAttribArray(1000);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    }
}

TEST_F(VertexInput, BufferCallsSeeTheApplicationsBinding)
{
    GLuint buffers[2];
    gl.glGenBuffers(2, buffers);
    for (int i = 0; i < 2; ++i) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[i]);
        gl.glBufferData(GL_ARRAY_BUFFER, 16 << i, nullptr, GL_STATIC_DRAW);
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[0]); // bound before: left to the next call that reads it
    GLint size = 0;
    gl.glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, 16);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[1]);
    GLint bound = 0;
    gl.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(buffers[1]));
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    gl.glBufferSubData(GL_ARRAY_BUFFER, 12, 8, buffers); // beyond the end of the smaller one
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(VertexInput, BindingANameMakesItsBuffer)
{
    gl.glBindBuffer(GL_ARRAY_BUFFER, 77);
    EXPECT_EQ(gl.glIsBuffer(77), GL_TRUE);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
}

TEST_F(VertexInput, DeletingABufferUnbindsIt)
{
    GLuint buffer;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, 64, nullptr, GL_STATIC_DRAW);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    gl.glDeleteBuffers(1, &buffer);

    GLint bound = -1;
    for (GLenum binding : {GL_ARRAY_BUFFER_BINDING, GL_ELEMENT_ARRAY_BUFFER_BINDING}) {
        gl.glGetIntegerv(binding, &bound);
        EXPECT_EQ(bound, 0);
    }
    driver.glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);

    // The same name again: a new buffer, which has to be bound and pointed at anew.
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    EXPECT_EQ(gl.glIsBuffer(buffer), GL_TRUE);
    driver.glGetVertexAttribiv(0, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(buffer));
    driver.glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(buffer));
    gl.glDeleteBuffers(1, &buffer);
}

TEST_F(VertexInput, ABufferDeletedInAnotherContextIsPointedAtAnew)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(program);
    gl.glUniform4f(gl.glGetUniformLocation(program, "color"), 1.0f, 1.0f, 1.0f, 1.0f);
    const GLfloat nowhere[8] = {};
    const GLfloat corners[8] = {-1, -1, 1, -1, -1, 1, 1, 1};
    GLuint buffer;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof nowhere, nowhere, GL_STATIC_DRAW);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    gl.glEnableVertexAttribArray(0);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);

    void *other = makeContext(context);
    gl.glDeleteBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    gl.glFinish();

    makeCurrent(context);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    EXPECT_EQ(pixelAt(16, 16), (Pixel{255, 255, 255, 255}));
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    makeCurrent(other);
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// What another thread deletes reaches a context that stays current here.
TEST_F(VertexInput, ABufferDeletedOnAnotherThreadIsPointedAtAnew)
{
    GLuint buffer;
    const GLfloat corners[8] = {};
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof corners, corners, GL_STATIC_DRAW);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    const auto pointAll = [&] {
        gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
        gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl.glVertexAttribPointer(1, 2, GL_FLOAT, GL_FALSE, 0, corners);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    };
    pointAll();
    const CallCounter unchanged;
    pointAll();
    EXPECT_EQ(unchanged.calls(), 0);

    std::thread([&] {
        void *other = makeContext(context);
        gl.glDeleteBuffers(1, &buffer);
        gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
        gl.glBufferData(GL_ARRAY_BUFFER, 4 * sizeof corners, nullptr, GL_STATIC_DRAW);
        gl.glFinish();
        makeCurrent(nullptr);
        backend().table.destroyContext(other);
    }).join();

    const int pointersBefore = countedCalls("glVertexAttribPointer");
    pointAll();
    EXPECT_EQ(countedCalls("glVertexAttribPointer") - pointersBefore, 1) << "client memory is no buffer's";
    GLint size = 0;
    driver.glGetBufferParameteriv(GL_ELEMENT_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, static_cast<GLint>(4 * sizeof corners)) << "the new buffer";
    pointAll();
    const CallCounter again;
    pointAll();
    EXPECT_EQ(again.calls(), 0);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    gl.glDeleteBuffers(1, &buffer);
}

TEST_F(VertexInput, ABufferOfBothTargetsIsMadeOnce)
{
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 78);
    const CallCounter counter;
    gl.glBindBuffer(GL_ARRAY_BUFFER, 78);
    EXPECT_EQ(counter.calls(), 0) << "left to the next call that reads it";
    EXPECT_EQ(gl.glIsBuffer(78), GL_TRUE);
    const GLuint buffer = 78;
    gl.glDeleteBuffers(1, &buffer);
    EXPECT_EQ(gl.glIsBuffer(78), GL_FALSE);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 78);
    EXPECT_EQ(gl.glIsBuffer(78), GL_TRUE) << "a new one of the name";
    gl.glDeleteBuffers(1, &buffer);
}

TEST_F(VertexInput, ARefusedBindMakesNoBuffer)
{
    gl.glBindBuffer(GL_TEXTURE_2D, 79);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    const CallCounter counter;
    gl.glBindBuffer(GL_ARRAY_BUFFER, 79);
    EXPECT_EQ(counter.calls(), 1) << "other contexts see it from now on";
    const GLuint buffer = 79;
    gl.glDeleteBuffers(1, &buffer);
}

// 0 and 64 have the same low bits.
TEST_F(VertexInput, NamesOfTheSameLowBitsAreBoundInTurn)
{
    const GLuint buffer = 64;
    for (int i = 0; i < 3; ++i) {
        for (const GLuint name : {buffer, 0u}) {
            for (const GLenum target : {GL_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER}) {
                GLint bound = -1;
                gl.glBindBuffer(target, name);
                gl.glGetIntegerv(target == GL_ARRAY_BUFFER ? GL_ARRAY_BUFFER_BINDING : GL_ELEMENT_ARRAY_BUFFER_BINDING,
                                 &bound);
                EXPECT_EQ(bound, static_cast<GLint>(name));
            }
        }
    }
    gl.glDeleteBuffers(1, &buffer);
}

TEST_F(VertexInput, AnArrayMovedInClientMemoryReachesTheDriver)
{
    const GLfloat corners[8] = {};
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners + 2);
    void *pointer = nullptr;
    driver.glGetVertexAttribPointerv(0, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    EXPECT_EQ(pointer, corners + 2);
    const CallCounter counter;
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners + 2);
    EXPECT_EQ(counter.calls(), 0);
}

TEST_F(VertexInput, AnElementBufferDeletedInAnotherContextServesUntilTheNextBind)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(program);
    gl.glUniform4f(gl.glGetUniformLocation(program, "color"), 1.0f, 1.0f, 1.0f, 1.0f);
    const GLfloat corners[8] = {-1, -1, 1, -1, -1, 1, 1, 1};
    const GLubyte all[4] = {0, 1, 2, 3};
    const GLubyte none[4] = {};
    GLuint buffer;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof all, all, GL_STATIC_DRAW);
    gl.glEnableVertexAttribArray(0);

    void *other = makeContext(context);
    gl.glDeleteBuffers(1, &buffer);
    makeCurrent(context);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners); // notices the deletion
    gl.glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(pixelAt(16, 16), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(gl.glIsBuffer(buffer), GL_FALSE) << "not made again";

    makeCurrent(other);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof none, none, GL_STATIC_DRAW);
    gl.glFinish();
    makeCurrent(context);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffer);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    gl.glDrawElements(GL_TRIANGLE_STRIP, 4, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(pixelAt(16, 16), (Pixel{0, 0, 0, 0})) << "the new buffer of the name";
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

TEST_F(VertexInput, CurrentValuesAreFilledUpAndKept)
{
    GLfloat value[4];
    const auto valueOf = [&](GLuint index) {
        driver.glGetVertexAttribfv(index, GL_CURRENT_VERTEX_ATTRIB, value);
        return std::vector<GLfloat>(value, value + 4);
    };
    gl.glVertexAttrib4f(1, 1.0f, 2.0f, 3.0f, 4.0f);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{1, 2, 3, 4}));
    gl.glVertexAttrib3f(1, 5.0f, 6.0f, 7.0f);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{5, 6, 7, 1}));
    gl.glVertexAttrib2f(1, 8.0f, 9.0f);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{8, 9, 0, 1}));
    gl.glVertexAttrib1f(1, 3.0f);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{3, 0, 0, 1}));
    const GLfloat vector[4] = {4.0f, 3.0f, 2.0f, 1.0f};
    gl.glVertexAttrib4fv(1, vector);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{4, 3, 2, 1}));
    gl.glVertexAttrib3fv(1, vector);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{4, 3, 2, 1}));
    gl.glVertexAttrib2fv(1, vector);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{4, 3, 0, 1}));
    gl.glVertexAttrib1fv(1, vector);
    EXPECT_EQ(valueOf(1), (std::vector<GLfloat>{4, 0, 0, 1}));
}

TEST_F(VertexInput, StateBelongsToTheContext)
{
    gl.glEnableVertexAttribArray(1);
    gl.glVertexAttrib1f(1, 2.0f);
    void *other = makeContext();
    gl.glEnableVertexAttribArray(1);
    gl.glVertexAttrib1f(1, 2.0f);
    GLint enabled = 0;
    GLfloat value[4];
    driver.glGetVertexAttribiv(1, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
    driver.glGetVertexAttribfv(1, GL_CURRENT_VERTEX_ATTRIB, value);
    EXPECT_EQ(enabled, 1);
    EXPECT_EQ(value[0], 2.0f);
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// What a driver holds of one attribute.
std::vector<intptr_t> heldAttribute(BackendFunctions &driver, GLuint index)
{
    std::vector<intptr_t> state;
    for (GLenum name :
         {GL_VERTEX_ATTRIB_ARRAY_ENABLED, GL_VERTEX_ATTRIB_ARRAY_SIZE, GL_VERTEX_ATTRIB_ARRAY_TYPE,
          GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, GL_VERTEX_ATTRIB_ARRAY_STRIDE, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING}) {
        GLint value = 0;
        driver.glGetVertexAttribiv(index, name, &value);
        state.push_back(value);
    }
    void *pointer = nullptr;
    driver.glGetVertexAttribPointerv(index, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    state.push_back(reinterpret_cast<intptr_t>(pointer));
    return state;
}

// Two contexts receive the same random calls, one through the backend, one straight to the driver.
TEST_F(VertexInput, RandomCallsLeaveWhatAlwaysCallingLeaves)
{
    void *direct = makeContext();
    std::mt19937 random(11);
    const auto step = [](BackendFunctions &functions, uint32_t choice, uint32_t a, uint32_t b) {
        const GLuint index = a % 4;
        switch (choice % 6) {
        case 0:
            functions.glEnableVertexAttribArray(index);
            break;
        case 1:
            functions.glDisableVertexAttribArray(index);
            break;
        case 2: {
            // Names from a small pool, so that deleted ones come back.
            functions.glBindBuffer(b % 2 ? GL_ARRAY_BUFFER : GL_ELEMENT_ARRAY_BUFFER, a % 4 ? 100 + a % 4 : 0);
            break;
        }
        case 3:
            functions.glVertexAttribPointer(index, static_cast<GLint>(1 + b % 4), b % 3 ? GL_FLOAT : GL_SHORT,
                                            b % 5 == 0, static_cast<GLsizei>(b % 2 * 16),
                                            reinterpret_cast<void *>(static_cast<uintptr_t>(b % 3 * 8)));
            break;
        case 4:
            functions.glVertexAttrib2f(index, static_cast<GLfloat>(b % 3), 1.0f);
            break;
        case 5: {
            const GLuint name = 101 + a % 3;
            if (b % 4 == 0) functions.glDeleteBuffers(1, &name);
            break;
        }
        }
    };
    for (int round = 0; round < 300; ++round) {
        const std::vector<uint32_t> calls = [&] {
            std::vector<uint32_t> made(90);
            for (uint32_t &number : made)
                number = random();
            return made;
        }();
        makeCurrent(context);
        for (size_t i = 0; i < calls.size(); i += 3)
            step(gl, calls[i], calls[i + 1], calls[i + 2]);
        std::vector<std::vector<intptr_t>> through;
        for (GLuint index = 0; index < 4; ++index)
            through.push_back(heldAttribute(driver, index));
        GLint bindings[4];
        gl.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bindings[0]);
        gl.glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &bindings[1]);

        makeCurrent(direct);
        for (size_t i = 0; i < calls.size(); i += 3)
            step(driver, calls[i], calls[i + 1], calls[i + 2]);
        for (GLuint index = 0; index < 4; ++index)
            ASSERT_EQ(through[index], heldAttribute(driver, index)) << "attribute " << index << ", round " << round;
        driver.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bindings[2]);
        driver.glGetIntegerv(GL_ELEMENT_ARRAY_BUFFER_BINDING, &bindings[3]);
        ASSERT_EQ(bindings[0], bindings[2]) << round;
        ASSERT_EQ(bindings[1], bindings[3]) << round;
    }
    driver.glGetError(); // some of the calls were refused
    makeCurrent(context);
    while (gl.glGetError() != GL_NO_ERROR) {
    }
    EXPECT_EQ(backend().table.destroyContext(direct), 1);
}

TEST_F(BackendTest, SwitchesAndWidthsReachTheDriverOnce)
{
    gl.glEnable(GL_BLEND);
    gl.glLineWidth(2.0f);
    const CallCounter counter;
    gl.glEnable(GL_BLEND);
    gl.glDisable(GL_DEPTH_TEST);
    gl.glEnable(GL_DITHER);
    gl.glLineWidth(2.0f);
    EXPECT_EQ(counter.calls(), 0);
    gl.glDisable(GL_BLEND);
    gl.glLineWidth(1.0f);
    EXPECT_EQ(counter.calls(), 2);
    EXPECT_EQ(driver.glIsEnabled(GL_BLEND), GL_FALSE);
    for (int i = 0; i < 2; ++i) {
        gl.glLineWidth(-1.0f);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    }
}

} // namespace
