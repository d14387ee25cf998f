// SPDX-License-Identifier: MIT
// Loads of the vertex shader's uniforms wait for the next draw and reach the driver in one call. Nothing that looks at
// the values may notice.
#include "backend_fixture.h"

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace {

// Each element tells in the picture.
constexpr const char *kArraysVertex =
    "attribute vec4 gles_Vertex;\nvarying vec4 sum;\n"
    "uniform vec4 a[4];\nuniform vec4 b[4];\nuniform vec4 c[2];\nuniform vec4 d[2];\nuniform vec4 e[2];\n"
    "uniform vec3 f[3];\n"
    "void main()\n{\n    sum = a[0] + a[1] + a[2] + a[3] + b[0] + b[1] + b[2] + b[3] + c[0] + c[1] + d[0] + d[1]\n"
    "        + e[0] + e[1] + vec4(f[0] + f[1] + f[2], 0.0);\n    gl_Position = gles_Vertex;\n}\n";
constexpr const char *kSumFragment = "varying mediump vec4 sum;\nvoid main()\n{\n    gl_FragColor = sum;\n}\n";

struct WaitingLoadsTest : ProgramInUseTest {
    void SetUp() override
    {
        ProgramInUseTest::SetUp();
        use(kArraysVertex, kSumFragment);
    }

    // One element, in all components.
    void load(const std::string &element, GLfloat value)
    {
        const GLfloat values[] = {value, value, value, value};
        if (element[0] == 'f')
            gl.glUniform3fv(location(element), 1, values);
        else
            gl.glUniform4fv(location(element), 1, values);
    }

    GLfloat held(const std::string &element)
    {
        return ProgramInUseTest::held(element, element[0] == 'f' ? 3 : 4)[0];
    }
};

int uniformCalls()
{
    return countedCalls("glUniform4fv") + countedCalls("glUniform3fv");
}

TEST_F(WaitingLoadsTest, LoadsBecomeOneCallAtTheDraw)
{
    const int before = uniformCalls();
    for (const char *element : {"a[1]", "b[0]", "a[2]", "b[1]", "a[3]", "a[1]"})
        load(element, element[0] == 'a' ? 0.1f : 0.15f);
    EXPECT_EQ(uniformCalls(), before);
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 1);
    EXPECT_EQ(pixelAt(4, 4), (Pixel{153, 153, 153, 153})); // 3 * 0.1 + 2 * 0.15 = 0.6
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 1) << "nothing waits any longer";
}

TEST_F(WaitingLoadsTest, ElementDrawsLoadThemToo)
{
    load("f[1]", 1.0f);
    const GLfloat corners[] = {-1, -1, 3, -1, -1, 3};
    const GLubyte indices[] = {0, 1, 2};
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl.glEnableVertexAttribArray(0);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, corners);
    gl.glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(pixelAt(4, 4), (Pixel{255, 255, 255, 0}));
}

TEST_F(WaitingLoadsTest, LoadsFarApartLoseNothing)
{
    for (const char *element : {"a[0]", "b[0]", "c[0]", "d[0]", "e[0]", "f[0]", "a[2]", "b[3]"})
        load(element, 0.1f);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{204, 204, 204, 179})); // 8 * 0.1; f has no alpha: 7 * 0.1
}

TEST_F(WaitingLoadsTest, NeighbouringArraysStayApart)
{
    // Each last element is followed by another array's first.
    for (const char *element : {"a[3]", "b[0]", "b[3]", "c[0]", "c[1]", "d[0]", "d[1]", "e[0]", "e[1]", "a[0]"})
        load(element, 0.05f);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{128, 128, 128, 128})); // 10 * 0.05
    for (const char *element : {"a[1]", "a[2]", "b[1]", "b[2]"})
        EXPECT_EQ(held(element), 0.0f) << element;
}

TEST_F(WaitingLoadsTest, QueriesSeeWaitingValues)
{
    load("a[2]", 0.25f);
    EXPECT_EQ(held("a[2]"), 0.25f);
}

TEST_F(WaitingLoadsTest, AProgramTakenOutOfUseKeepsWhatWaited)
{
    load("a[0]", 0.2f);
    const GLuint other = makeProgram(kPlainVertex, kColorFragment);
    gl.glUseProgram(other);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(held("a[0]"), 0.2f);
    gl.glUseProgram(program);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 51, 51, 51}));
    deleteProgram(other);
}

TEST_F(WaitingLoadsTest, LinkingAgainDropsWhatWaited)
{
    load("a[0]", 0.2f);
    gl.glLinkProgram(program);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 0, 0, 0}));
}

TEST_F(WaitingLoadsTest, AnotherContextOfTheGroupSeesThem)
{
    load("a[0]", 0.2f);
    void *other = makeContext(context);
    EXPECT_EQ(held("a[0]"), 0.2f);
    const int before = uniformCalls();
    gl.glUseProgram(program);
    load("a[1]", 0.2f);
    EXPECT_EQ(uniformCalls(), before + 1) << "does not wait";
    makeCurrent(context);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{102, 102, 102, 102}));
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// The context stays current here, so that nothing but the other thread can give what waits to the driver.
TEST_F(WaitingLoadsTest, AContextMadeOnAnotherThreadDrawsWithThem)
{
    load("a[0]", 0.2f);
    void *other = nullptr;
    std::thread([&] {
        other = makeContext(context);
        gl.glUseProgram(program);
        drawSquare();
        EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 51, 51, 51}));
        makeCurrent(nullptr);
    }).join();
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 51, 51, 51}));
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

// A query needs no program in use.
TEST_F(WaitingLoadsTest, AContextMadeOnAnotherThreadCanAskForThem)
{
    load("a[0]", 0.2f);
    void *other = nullptr;
    std::thread([&] {
        other = makeContext(context);
        EXPECT_EQ(held("a[0]"), 0.2f);
        makeCurrent(nullptr);
    }).join();
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

TEST_F(WaitingLoadsTest, AContextThatIsLeftKeepsThem)
{
    load("a[0]", 0.2f);
    makeCurrent(nullptr);
    makeCurrent(context);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 51, 51, 51}));
}

TEST_F(WaitingLoadsTest, RandomLoadsLeaveWhatAlwaysLoadingLeaves)
{
    const std::vector<std::string> elements = {"a[0]", "a[1]", "a[2]", "a[3]", "b[0]", "b[1]", "b[2]", "b[3]", "c[0]",
                                               "c[1]", "d[0]", "d[1]", "e[0]", "e[1]", "f[0]", "f[1]", "f[2]"};
    std::vector<GLfloat> expected(elements.size());
    std::mt19937 random(11);
    for (int round = 0; round < 300; ++round) {
        for (unsigned loads = random() % 20; loads > 0; --loads) {
            const size_t i = random() % elements.size();
            expected[i] = static_cast<GLfloat>(random() % 4);
            load(elements[i], expected[i]);
        }
        if (random() % 2) drawSquare();
        for (size_t i = 0; i < elements.size(); ++i)
            ASSERT_EQ(held(elements[i]), expected[i]) << elements[i] << " in round " << round;
    }
}

// As above, but nothing asks for the values: only the draw can give them to the driver.
TEST_F(WaitingLoadsTest, RandomLoadsShowInThePicture)
{
    const char *const arrays[] = {"a", "b", "c", "d", "e"};
    const int sizes[] = {4, 4, 2, 2, 2};
    int steps[5][4] = {}; // in 1/255
    std::mt19937 random(12);
    for (int round = 0; round < 300; ++round) {
        for (unsigned loads = random() % 12; loads > 0; --loads) {
            const unsigned array = random() % 5;
            const int size = sizes[array];
            const int first = static_cast<int>(random() % static_cast<unsigned>(size));
            const int count = first + 1 < size && random() % 2 ? 2 : 1; // two at once beside the waiting ones
            GLfloat values[8];
            for (int i = 0; i < count; ++i) {
                steps[array][first + i] = static_cast<int>(random() % 18);
                std::fill_n(values + 4 * i, 4, static_cast<GLfloat>(steps[array][first + i]) / 255.0f);
            }
            const std::string name = std::string(arrays[array]) + "[" + std::to_string(first) + "]";
            gl.glUniform4fv(gl.glGetUniformLocation(program, name.c_str()), count, values);
        }
        if (random() % 3 == 0) continue; // what waits, waits on
        int sum = 0;
        for (const auto &array : steps)
            for (const int step : array)
                sum += step;
        drawSquare();
        ASSERT_NEAR(pixelAt(4, 4)[0], sum, 1) << round; // at most 14 * 17 = 238
    }
}

TEST_F(WaitingLoadsTest, TwoElementsAtOnceWaitTogether)
{
    const GLint location = gl.glGetUniformLocation(program, "c");
    const GLfloat values[] = {0.2f, 0.2f, 0.2f, 0.2f, 0.4f, 0.4f, 0.4f, 0.4f};
    const int before = uniformCalls();
    gl.glUniform4fv(location, 2, values);
    EXPECT_EQ(held("c[0]"), 0.2f);
    EXPECT_EQ(held("c[1]"), 0.4f);
    gl.glUniform4fv(location + 1, 2, values + 4); // the second of these lies behind the end
    EXPECT_EQ(held("d[0]"), 0.0f);
    EXPECT_EQ(uniformCalls(), before);
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 1);
    EXPECT_EQ(pixelAt(4, 4), (Pixel{153, 153, 153, 153}));
    gl.glUniform4fv(location, 2, values);
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 1);
}

TEST_F(WaitingLoadsTest, AProgramThatWasKeptBeginsWithZeros)
{
    load("a[0]", 0.2f);
    drawSquare();
    load("b[3]", 0.2f); // waits when the program goes
    gl.glUseProgram(0);
    gl.glDeleteProgram(program);
    const int links = countedCalls("glLinkProgram");
    program = makeProgram(kArraysVertex, kSumFragment);
    ASSERT_EQ(countedCalls("glLinkProgram"), links) << "kept";
    gl.glUseProgram(program);
    EXPECT_EQ(held("a[0]"), 0.0f);
    EXPECT_EQ(held("b[3]"), 0.0f);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 0, 0, 0}));
}

// Every kind of value that can be gathered; each word of each tells in one channel or another.
constexpr const char *kKindsVertex =
    "attribute vec4 gles_Vertex;\nvarying vec4 sum;\n"
    "struct Parts { vec4 four; float one; };\nuniform Parts parts;\n"
    "uniform mat4 m4;\nuniform mat3 m3;\nuniform mat2 m2;\nuniform vec2 two;\nuniform float ones[3];\n"
    "uniform vec3 threes[2];\nuniform mat4 unused;\n"
    "void main()\n{\n"
    "    sum = parts.four + vec4(parts.one) + m4 * vec4(1.0) + vec4(m3 * vec3(1.0), 0.0) + vec4(m2 * vec2(1.0), two)\n"
    "        + vec4(ones[0], ones[1], ones[2], 0.0) + vec4(threes[0] + threes[1], 0.0);\n"
    "    gl_Position = gles_Vertex;\n}\n";

struct GatheredKinds : ProgramInUseTest {
    void SetUp() override
    {
        ProgramInUseTest::SetUp();
        use(kKindsVertex, kSumFragment);
    }

    GLenum error()
    {
        return gl.glGetError();
    }
};

TEST_F(GatheredKinds, AreListedAsTheTextDeclaresThem)
{
    std::set<std::string> listed;
    GLint count = 0;
    GLint longest = 0;
    gl.glGetProgramiv(program, GL_ACTIVE_UNIFORMS, &count);
    gl.glGetProgramiv(program, GL_ACTIVE_UNIFORM_MAX_LENGTH, &longest);
    for (GLint i = 0; i < count; ++i) {
        char name[100];
        GLsizei length = 0;
        GLint elements = 0;
        GLenum type = 0;
        gl.glGetActiveUniform(program, static_cast<GLuint>(i), sizeof name, &length, &elements, &type, name);
        EXPECT_EQ(static_cast<size_t>(length), std::string(name).size());
        listed.insert(std::string(name) + " " + std::to_string(type - GL_FLOAT_VEC2) + " " + std::to_string(elements));
    }
    const auto row = [](const char *name, GLenum type, int elements) {
        return std::string(name) + " " + std::to_string(type - GL_FLOAT_VEC2) + " " + std::to_string(elements);
    };
    EXPECT_EQ(listed, (std::set<std::string>{row("parts.four", GL_FLOAT_VEC4, 1), row("parts.one", GL_FLOAT, 1),
                                             row("m4", GL_FLOAT_MAT4, 1), row("m3", GL_FLOAT_MAT3, 1),
                                             row("m2", GL_FLOAT_MAT2, 1), row("two", GL_FLOAT_VEC2, 1),
                                             row("ones[0]", GL_FLOAT, 3), row("threes[0]", GL_FLOAT_VEC3, 2)}));
    EXPECT_EQ(longest, 11); // "parts.four", "threes[0]"
    char name[4];
    GLsizei length = 0;
    GLint elements = 0;
    GLenum type = 0;
    gl.glGetActiveUniform(program, 0, sizeof name, &length, &elements, &type, name);
    EXPECT_LT(length, 4);
    EXPECT_EQ(error(), static_cast<GLenum>(GL_NO_ERROR));
    gl.glGetActiveUniform(program, static_cast<GLuint>(count), sizeof name, &length, &elements, &type, name);
    EXPECT_EQ(error(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(GatheredKinds, HaveLocationsOfTheirOwn)
{
    std::set<GLint> locations;
    const char *const names[] = {"parts.four", "parts.one", "m4",      "m3",        "m2",       "two",
                                 "ones[0]",    "ones[1]",   "ones[2]", "threes[0]", "threes[1]"};
    for (const char *name : names) {
        EXPECT_GE(location(name), 0) << name;
        locations.insert(location(name));
    }
    EXPECT_EQ(locations.size(), std::size(names));
    EXPECT_EQ(location("ones"), location("ones[0]"));
    for (const char *name : {"unused", "parts", "ones[3]", "ones[", "ones[01]", "ones[1", "m4[0]", "two[0]", "four", "",
                             "trl20_Uniforms", "trl20_Uniforms[0]"})
        EXPECT_EQ(location(name), -1) << name;
    EXPECT_EQ(error(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(GatheredKinds, AreHeldAndDrawnWordByWord)
{
    std::vector<GLfloat> numbers(16);
    for (size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<GLfloat>(i + 1) / 255.0f;
    const auto first = [&](size_t count) {
        return std::vector<GLfloat>(numbers.begin(), numbers.begin() + static_cast<long>(count));
    };
    const int before = countedCalls("glUniform4fv");
    const CallCounter counter;
    gl.glUniformMatrix4fv(location("m4"), 1, GL_FALSE, numbers.data());
    gl.glUniformMatrix3fv(location("m3"), 1, GL_FALSE, numbers.data());
    gl.glUniformMatrix2fv(location("m2"), 1, GL_FALSE, numbers.data());
    gl.glUniform4fv(location("parts.four"), 1, numbers.data());
    gl.glUniform1f(location("parts.one"), numbers[1]);
    gl.glUniform2f(location("two"), numbers[0], numbers[1]);
    gl.glUniform1fv(location("ones"), 3, numbers.data());
    gl.glUniform3fv(location("threes"), 2, numbers.data());
    EXPECT_EQ(countedCalls("glUniform4fv"), before);
    EXPECT_EQ(held("m4", 16), first(16));
    EXPECT_EQ(held("m3", 9), first(9));
    EXPECT_EQ(held("m2", 4), first(4));
    EXPECT_EQ(held("parts.four", 4), first(4));
    EXPECT_EQ(held("parts.one", 1), (std::vector<GLfloat>{numbers[1]}));
    EXPECT_EQ(held("two", 2), first(2));
    EXPECT_EQ(held("ones[2]", 1), (std::vector<GLfloat>{numbers[2]}));
    EXPECT_EQ(held("threes[1]", 3), (std::vector<GLfloat>{numbers[3], numbers[4], numbers[5]}));
    drawSquare();
    EXPECT_EQ(countedCalls("glUniform4fv"), before + 1);
    // Red: 1 + 2 + (1+5+9+13) + (1+4+7) + (1+3) + 1 + (1+4); the others alike.
    const Pixel pixel = pixelAt(4, 4);
    EXPECT_NEAR(pixel[0], 1 + 2 + 28 + 12 + 4 + 1 + 5, 1);
    EXPECT_NEAR(pixel[1], 2 + 2 + 32 + 15 + 6 + 2 + 7, 1);
    EXPECT_NEAR(pixel[2], 3 + 2 + 36 + 18 + 1 + 3 + 9, 1);
    EXPECT_NEAR(pixel[3], 4 + 2 + 40 + 2, 1);
}

// Nothing else waits that could take the last column along.
TEST_F(GatheredKinds, AMatrixAloneReachesTheDriverWhole)
{
    GLfloat last4[16] = {};
    last4[12] = 0.2f;
    gl.glUniformMatrix4fv(location("m4"), 1, GL_FALSE, last4);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 0, 0, 0}));
    GLfloat last3[9] = {};
    last3[7] = 0.2f;
    gl.glUniformMatrix3fv(location("m3"), 1, GL_FALSE, last3);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{51, 51, 0, 0}));
    GLfloat last2[4] = {};
    last2[2] = 0.2f;
    gl.glUniformMatrix2fv(location("m2"), 1, GL_FALSE, last2);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{102, 51, 0, 0}));
    const GLfloat ones[] = {0.0f, 0.0f, 0.2f};
    gl.glUniform1fv(location("ones"), 3, ones);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{102, 51, 51, 0}));
}

TEST_F(GatheredKinds, EqualLoadsDoNotWait)
{
    GLfloat numbers[16] = {};
    const auto loadAll = [&] {
        gl.glUniformMatrix4fv(location("m4"), 1, GL_FALSE, numbers);
        gl.glUniformMatrix3fv(location("m3"), 1, GL_FALSE, numbers);
        gl.glUniformMatrix2fv(location("m2"), 1, GL_FALSE, numbers);
        gl.glUniform2fv(location("two"), 1, numbers);
        gl.glUniform1fv(location("ones"), 2, numbers);
        gl.glUniform3fv(location("threes"), 1, numbers);
    };
    const int before = countedCalls("glUniform4fv");
    loadAll();
    drawSquare();
    EXPECT_EQ(countedCalls("glUniform4fv"), before) << "zeros from the start";
    for (size_t word = 0; word < 16; ++word) {
        numbers[word] = 1.0f;
        loadAll();
        drawSquare();
        EXPECT_EQ(countedCalls("glUniform4fv"), before + 1 + static_cast<int>(word)) << "word " << word;
        loadAll();
        drawSquare();
        EXPECT_EQ(countedCalls("glUniform4fv"), before + 1 + static_cast<int>(word)) << "word " << word;
    }
    for (size_t word = 0; word < 9; ++word) { // of the smaller matrix alone
        numbers[word] = 2.0f;
        gl.glUniformMatrix3fv(location("m3"), 1, GL_FALSE, numbers);
        drawSquare();
        EXPECT_EQ(countedCalls("glUniform4fv"), before + 17 + static_cast<int>(word)) << "word " << word;
    }
}

TEST_F(GatheredKinds, IntegersAreAskedForToTheNearest)
{
    gl.glUniform2f(location("two"), 2.75f, -1e20f);
    GLint values[2] = {};
    gl.glGetUniformiv(program, location("two"), values);
    EXPECT_EQ(values[0], 3);
    EXPECT_EQ(values[1], INT32_MIN);
}

TEST_F(GatheredKinds, WrongLoadsAreErrorsAndChangeNothing)
{
    const GLfloat numbers[32] = {9, 9, 9, 9};
    const GLint whole[4] = {9, 9, 9, 9};
    const struct {
        const char *what;
        GLenum error;
        std::function<void()> call;
    } cases[] = {
        {"a matrix as vector", GL_INVALID_OPERATION, [&] { gl.glUniform4fv(location("m4"), 1, numbers); }},
        {"a vector as matrix", GL_INVALID_OPERATION,
         [&] { gl.glUniformMatrix4fv(location("parts.four"), 1, GL_FALSE, numbers); }},
        {"a smaller vector", GL_INVALID_OPERATION, [&] { gl.glUniform3fv(location("parts.four"), 1, numbers); }},
        {"integers", GL_INVALID_OPERATION, [&] { gl.glUniform4iv(location("parts.four"), 1, whole); }},
        {"one integer", GL_INVALID_OPERATION, [&] { gl.glUniform1i(location("parts.one"), 9); }},
        {"two of one", GL_INVALID_OPERATION, [&] { gl.glUniform4fv(location("parts.four"), 2, numbers); }},
        {"two matrices of one", GL_INVALID_OPERATION,
         [&] { gl.glUniformMatrix4fv(location("m4"), 2, GL_FALSE, numbers); }},
        {"fewer than none", GL_INVALID_VALUE, [&] { gl.glUniform1fv(location("ones"), -1, numbers); }},
        {"a transposed one", GL_INVALID_VALUE, [&] { gl.glUniformMatrix4fv(location("m4"), 1, GL_TRUE, numbers); }},
        {"a column", GL_INVALID_OPERATION, [&] { gl.glUniform4fv(location("m4") + 1, 1, numbers); }},
        {"a location behind all", GL_INVALID_OPERATION, [&] { gl.glUniform4fv(10000, 1, numbers); }},
        {"none", GL_NO_ERROR, [&] { gl.glUniform1fv(location("ones"), 0, numbers); }},
    };
    for (const auto &c : cases) {
        c.call();
        EXPECT_EQ(error(), c.error) << c.what;
    }
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(held("m4", 16), std::vector<GLfloat>(16));
}

TEST_F(GatheredKinds, ReachTheProgramsForWideLines)
{
    gl.glLineWidth(4096.0f); // wider than any driver's, so that the lines cover the surface
    GLfloat numbers[9];
    std::fill_n(numbers, 9, 10.0f / 255.0f);
    gl.glUniformMatrix3fv(location("m3"), 1, GL_FALSE, numbers);
    gl.glUniform1fv(location("ones"), 3, numbers);
    const GLfloat ends[] = {-1.0f, 0.0f, 1.0f, 0.0f};
    gl.glEnableVertexAttribArray(0);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, ends);
    gl.glDrawArrays(GL_LINES, 0, 2);
    EXPECT_EQ(pixelAt(kSurfaceSize / 2, kSurfaceSize / 2), (Pixel{40, 40, 40, 0}));
}

// A fragment shader with the array's name for something else: only the texts as they are go together.
TEST_F(GatheredKinds, AreLoadedOneByOneWhereTheDriverRefusesTheArray)
{
    void *other = makeContext(); // of a group of its own: no further program is gathered there
    const GLuint refused =
        makeProgram(kKindsVertex, "varying mediump vec4 sum;\nuniform mediump float trl20_Uniforms;\nvoid main()\n{\n"
                                  "    gl_FragColor = sum + vec4(trl20_Uniforms);\n}\n");
    gl.glUseProgram(refused);
    gl.glUniform1f(gl.glGetUniformLocation(refused, "trl20_Uniforms"), 51.0f / 255.0f);
    const int before = countedCalls("glUniform1fv");
    gl.glUniform1f(gl.glGetUniformLocation(refused, "parts.one"), 51.0f / 255.0f);
    EXPECT_EQ(countedCalls("glUniform1fv"), before + 1);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{102, 102, 102, 102}));
    EXPECT_EQ(error(), static_cast<GLenum>(GL_NO_ERROR));
    makeCurrent(nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

} // namespace
