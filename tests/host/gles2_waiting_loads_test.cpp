// SPDX-License-Identifier: MIT
// Loads of array elements wait for the next draw and reach the driver as one call per run of neighbours. Nothing that
// looks at the values may notice.
#include "backend_fixture.h"

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

namespace {

// Six arrays, which is more than can wait at a time; each element tells in the picture.
constexpr const char *kArraysFragment =
    "uniform mediump vec4 a[4];\nuniform mediump vec4 b[4];\nuniform mediump vec4 c[2];\nuniform mediump vec4 d[2];\n"
    "uniform mediump vec4 e[2];\nuniform mediump vec3 f[3];\n"
    "void main()\n{\n    gl_FragColor = a[0] + a[1] + a[2] + a[3] + b[0] + b[1] + b[2] + b[3] + c[0] + c[1] + d[0] + "
    "d[1]\n"
    "        + e[0] + e[1] + vec4(f[0] + f[1] + f[2], 0.0);\n}\n";

struct WaitingLoadsTest : BackendTest {
    void SetUp() override
    {
        BackendTest::SetUp();
        program = makeProgram(kPlainVertex, kArraysFragment);
        gl.glUseProgram(program);
    }

    // One element, in all components.
    void load(const std::string &element, GLfloat value)
    {
        const GLfloat values[] = {value, value, value, value};
        const GLint location = gl.glGetUniformLocation(program, element.c_str());
        if (element[0] == 'f')
            gl.glUniform3fv(location, 1, values);
        else
            gl.glUniform4fv(location, 1, values);
    }

    GLfloat held(const std::string &element)
    {
        GLfloat values[4] = {};
        gl.glGetUniformfv(program, gl.glGetUniformLocation(program, element.c_str()), values);
        return values[0];
    }

    GLuint program = 0;
};

int uniformCalls()
{
    return countedCalls("glUniform4fv") + countedCalls("glUniform3fv");
}

TEST_F(WaitingLoadsTest, NeighboursBecomeOneCallAtTheDraw)
{
    const int before = uniformCalls();
    for (const char *element : {"a[1]", "b[0]", "a[2]", "b[1]", "a[3]", "a[1]"})
        load(element, element[0] == 'a' ? 0.1f : 0.15f);
    EXPECT_EQ(uniformCalls(), before);
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 2);
    EXPECT_EQ(pixelAt(4, 4), (Pixel{153, 153, 153, 153})); // 3 * 0.1 + 2 * 0.15 = 0.6
    drawSquare();
    EXPECT_EQ(uniformCalls(), before + 2) << "nothing waits any longer";
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

TEST_F(WaitingLoadsTest, MoreRunsThanThereIsRoomForLoseNothing)
{
    for (const char *element : {"a[0]", "b[0]", "c[0]", "d[0]", "e[0]", "f[0]", "a[2]", "b[3]"})
        load(element, 0.1f);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{204, 204, 204, 179})); // 8 * 0.1; f has no alpha: 7 * 0.1
}

TEST_F(WaitingLoadsTest, NeighbouringArraysStayApart)
{
    // Whatever order the driver gave the arrays: each last element is followed by another array's first.
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

TEST_F(WaitingLoadsTest, TwoElementsAtOnceReachTheDriverOnceAndAtOnce)
{
    const GLint location = gl.glGetUniformLocation(program, "c");
    const GLfloat values[] = {0.2f, 0.2f, 0.2f, 0.2f, 0.4f, 0.4f, 0.4f, 0.4f};
    const int before = uniformCalls();
    gl.glUniform4fv(location, 2, values);
    EXPECT_EQ(uniformCalls(), before + 1);
    gl.glUniform4fv(location, 2, values);
    EXPECT_EQ(uniformCalls(), before + 1);
    EXPECT_EQ(held("c[0]"), 0.2f);
    EXPECT_EQ(held("c[1]"), 0.4f);
    gl.glUniform4fv(location + 1, 2, values + 4); // the second of these lies behind the end
    EXPECT_EQ(uniformCalls(), before + 1);
    drawSquare();
    EXPECT_EQ(pixelAt(4, 4), (Pixel{153, 153, 153, 153}));
}

} // namespace
