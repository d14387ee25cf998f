// SPDX-License-Identifier: MIT
// Flat shading and wide lines beside the application's own state. Run over the whole driver, and over one with OpenGL
// ES 2.0 alone, where the processor takes such draws apart: what an application sees is the same.
#include "backend_fixture.h"

#include "host/gles2/buffer_copies.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// True where the processor does the work.
bool isLimited()
{
    const char *limit = std::getenv("TRL20_DRIVER_LIMIT");
    return limit && std::string(limit) == "es2";
}

constexpr const char *kFlatVertex = "#pragma GL_QRN_flat_varying\n"
                                    "attribute vec4 gles_Vertex;\nattribute vec4 gles_Color;\n"
                                    "flat varying vec4 c;\nuniform vec4 tint[2];\n"
                                    "void main(void)\n{\n    c = gles_Color * tint[0] + tint[1];\n"
                                    "    gl_Position = gles_Vertex;\n}\n";
constexpr const char *kFlatFragment = "flat varying mediump vec4 c;\nuniform bool inverted;\n"
                                      "void main(void)\n{\n    gl_FragColor = inverted ? vec4(1.0) - c : c;\n}\n";

// A strip over the whole surface: the last vertex of its first triangle is the third, of its second the fourth.
constexpr GLfloat kCorners[] = {-1, -1, 1, -1, -1, 1, 1, 1};
constexpr GLubyte kColors[] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 0, 255};
constexpr Pixel kThird = {0, 0, 255, 255};
constexpr Pixel kFourth = {255, 255, 0, 255};

struct ExpandedDraws : BackendTest {
    void SetUp() override
    {
        BackendTest::SetUp();
        useFlat();
    }

    void useFlat()
    {
        program = makeProgram(kFlatVertex, kFlatFragment);
        color = static_cast<GLuint>(gl.glGetAttribLocation(program, "gles_Color"));
        gl.glUseProgram(program);
        setTint(1.0f, 0.0f);
    }

    void setTint(GLfloat factor, GLfloat added)
    {
        const GLfloat values[] = {factor, factor, factor, factor, added, added, added, added};
        gl.glUniform4fv(gl.glGetUniformLocation(program, "tint"), 2, values);
    }

    void describe()
    {
        gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, kCorners);
        gl.glEnableVertexAttribArray(0);
        gl.glVertexAttribPointer(color, 4, GL_UNSIGNED_BYTE, GL_TRUE, 0, kColors);
        gl.glEnableVertexAttribArray(color);
    }

    void drawStrip()
    {
        gl.glClear(GL_COLOR_BUFFER_BIT);
        describe();
        gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }

    void expectStrip(const Pixel &third, const Pixel &fourth, const char *why)
    {
        EXPECT_EQ(pixelAt(4, 4), third) << why;
        EXPECT_EQ(pixelAt(27, 27), fourth) << why;
    }

    // Everything that the driver tells of its attributes.
    std::vector<GLint> attributeState()
    {
        std::vector<GLint> state;
        for (GLuint location = 0; location < 16; ++location) {
            for (GLenum name : {GL_VERTEX_ATTRIB_ARRAY_ENABLED, GL_VERTEX_ATTRIB_ARRAY_SIZE,
                                GL_VERTEX_ATTRIB_ARRAY_STRIDE, GL_VERTEX_ATTRIB_ARRAY_TYPE,
                                GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING}) {
                GLint value = -1;
                driver.glGetVertexAttribiv(location, name, &value);
                state.push_back(value);
            }
            GLfloat values[4] = {};
            if (location > 0) driver.glGetVertexAttribfv(location, GL_CURRENT_VERTEX_ATTRIB, values);
            for (const GLfloat value : values)
                state.push_back(static_cast<GLint>(value * 1000));
            void *pointer = nullptr;
            driver.glGetVertexAttribPointerv(location, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
            state.push_back(static_cast<GLint>(reinterpret_cast<intptr_t>(pointer)));
        }
        return state;
    }

    GLuint program = 0;
    GLuint color = 0;
};

TEST_F(ExpandedDraws, TakeTheUniformsAsTheyAreNow)
{
    drawStrip();
    expectStrip(kThird, kFourth, "as loaded first");
    setTint(0.0f, 1.0f);
    drawStrip();
    expectStrip({255, 255, 255, 255}, {255, 255, 255, 255}, "an element of an array");
    setTint(1.0f, 0.0f);
    gl.glUniform1f(gl.glGetUniformLocation(program, "inverted"), 1.0f); // a form whose result is the driver's to know
    drawStrip();
    expectStrip({255, 255, 0, 0}, {0, 0, 255, 0}, "a bool loaded as a float");
    gl.glUniform1i(gl.glGetUniformLocation(program, "inverted"), 0);
    drawStrip();
    expectStrip(kThird, kFourth, "and back as an integer");
}

TEST_F(ExpandedDraws, AProgramMadeAgainStartsFromZero)
{
    drawStrip();
    gl.glUseProgram(0);
    gl.glDeleteProgram(program);
    program = makeProgram(kFlatVertex, kFlatFragment); // the same texts: the backend has kept the program
    gl.glUseProgram(program);
    drawStrip();
    expectStrip({0, 0, 0, 0}, {0, 0, 0, 0}, "no tint");
    setTint(1.0f, 0.0f);
    drawStrip();
    expectStrip(kThird, kFourth, "tinted");
}

TEST_F(ExpandedDraws, LeaveTheAttributesAsTheyWere)
{
    GLuint buffer = 0;
    gl.glGenBuffers(1, &buffer);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof kCorners, kCorners, GL_STATIC_DRAW);
    for (GLuint location = 0; location < 16; ++location) {
        gl.glVertexAttrib4f(location, 0.25f, static_cast<GLfloat>(location), 0.5f, 0.75f);
        if (location == color || location == 0) continue;
        gl.glVertexAttribPointer(location, 1 + static_cast<GLint>(location % 4), GL_SHORT, location % 2, 8,
                                 reinterpret_cast<const void *>(static_cast<uintptr_t>(location % 3)));
        if (location % 2) gl.glEnableVertexAttribArray(location);
    }
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    describe();
    const std::vector<GLint> before = attributeState();
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    expectStrip(kThird, kFourth, "drawn");
    EXPECT_EQ(attributeState(), before);

    // Constants of disabled arrays count as any other value.
    gl.glDisableVertexAttribArray(color);
    gl.glVertexAttrib4f(color, 0, 1, 0, 1);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    expectStrip({0, 255, 0, 255}, {0, 255, 0, 255}, "a constant");
    for (GLuint location = 0; location < 16; ++location)
        gl.glDisableVertexAttribArray(location);
    gl.glDeleteBuffers(1, &buffer);
}

TEST_F(ExpandedDraws, LeaveProgramAndSwitchesAsTheyWere)
{
    gl.glEnable(GL_CULL_FACE);
    gl.glEnable(GL_POLYGON_OFFSET_FILL);
    drawStrip();
    GLint used = 0;
    driver.glGetIntegerv(GL_CURRENT_PROGRAM, &used);
    gl.glLineWidth(5);
    gl.glDrawArrays(GL_LINE_STRIP, 0, 4);
    GLint usedAfterwards = -1;
    driver.glGetIntegerv(GL_CURRENT_PROGRAM, &usedAfterwards);
    EXPECT_EQ(usedAfterwards, used);
    EXPECT_EQ(driver.glIsEnabled(GL_CULL_FACE), GL_TRUE);
    EXPECT_EQ(driver.glIsEnabled(GL_POLYGON_OFFSET_FILL), GL_TRUE);
}

TEST_F(ExpandedDraws, ErrorsAreThoseOfThePlainDraw)
{
    describe();
    gl.glClear(GL_COLOR_BUFFER_BIT);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, -1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    gl.glDrawArrays(0x20, 0, 4);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    const GLubyte indices[] = {0, 1, 2, 3};
    gl.glDrawElements(GL_TRIANGLE_STRIP, 4, GL_FLOAT, indices);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    gl.glDrawElements(GL_TRIANGLE_STRIP, -4, GL_UNSIGNED_BYTE, indices);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 2); // too few for a triangle
    expectStrip({0, 0, 0, 0}, {0, 0, 0, 0}, "nothing drawn");
}

TEST_F(ExpandedDraws, ABufferFilledInAnotherContextOfTheGroupIsRead)
{
    GLuint buffer = 0;
    gl.glGenBuffers(1, &buffer);
    void *other = makeContext(context);
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glBufferData(GL_ARRAY_BUFFER, sizeof kColors, kColors, GL_STATIC_DRAW);
    gl.glFinish();
    makeCurrent(context);
    describe();
    gl.glBindBuffer(GL_ARRAY_BUFFER, buffer);
    gl.glVertexAttribPointer(color, 4, GL_UNSIGNED_BYTE, GL_TRUE, 0, nullptr);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    gl.glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    expectStrip(kThird, kFourth, "the other context's bytes");
    gl.glDisableVertexAttribArray(color);
    backend().table.destroyContext(other);
}

// Nine attributes that the colour is made of, and the position: more than every driver has for both sets.
TEST_F(ExpandedDraws, TooManyAttributesAreDrawnSmooth)
{
    std::string vertex = "#pragma GL_QRN_flat_varying\nattribute vec4 gles_Vertex;\nattribute vec4 gles_Color;\n";
    std::string sum;
    for (int i = 0; i < 9; ++i) {
        vertex += "attribute vec4 a" + std::to_string(i) + ";\n";
        sum += " + a" + std::to_string(i);
    }
    vertex +=
        "flat varying vec4 c;\nvoid main(void)\n{\n    c = gles_Color" + sum + ";\n    gl_Position = gles_Vertex;\n}\n";
    program = makeProgram(vertex, "flat varying mediump vec4 c;\nvoid main(void)\n{\n    gl_FragColor = c;\n}\n");
    color = static_cast<GLuint>(gl.glGetAttribLocation(program, "gles_Color"));
    gl.glUseProgram(program);
    for (GLuint location = 1; location < 16; ++location)
        gl.glVertexAttrib4f(location, 0, 0, 0, 0);
    testing::internal::CaptureStderr();
    drawStrip();
    drawStrip();
    const std::string told = testing::internal::GetCapturedStderr();
    if (isLimited()) {
        EXPECT_EQ(told,
                  "trl20: this driver has no flat shading, and too few vertex attributes to make up for it; it is "
                  "drawn smooth\n");
        EXPECT_GT(pixelAt(4, 4)[0], 100) << "red from the first vertex";
    } else {
        EXPECT_EQ(told, "");
        expectStrip(kThird, kFourth, "flat");
    }
}

// Without a program nothing is drawn and nothing goes wrong.
TEST_F(ExpandedDraws, WideLinesWithoutAProgram)
{
    gl.glUseProgram(0);
    gl.glLineWidth(9);
    describe();
    gl.glDrawArrays(GL_LINES, 0, 2);
    gl.glGetError(); // some drivers mind
    gl.glUseProgram(program);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    const GLfloat middle[] = {-1, 0.03125f, 1, 0.03125f};
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, middle);
    gl.glDrawArrays(GL_LINES, 0, 2);
    for (int row = 0; row < kSurfaceSize; ++row)
        EXPECT_EQ(pixelAt(15, row)[3], row >= 12 && row <= 20 ? 255 : 0) << row;
}

} // namespace

TEST(BufferCopies, FollowWhatTheDriverTakes)
{
    const uint8_t bytes[] = {1, 2, 3, 4};
    const uint8_t others[] = {8, 9};
    BufferCopies copies{.kept = true, .bytes = {}};
    const auto contents = [&](GLuint buffer) {
        const std::vector<uint8_t> *copy = findCopy(copies, buffer);
        return copy ? *copy : std::vector<uint8_t>{255};
    };
    copyBuffer(copies, 0, 4, bytes, GL_STATIC_DRAW);
    EXPECT_EQ(findCopy(copies, 0), nullptr) << "no buffer is bound";
    copyBuffer(copies, 7, 4, bytes, GL_STATIC_DRAW);
    EXPECT_EQ(contents(7), (std::vector<uint8_t>{1, 2, 3, 4}));
    copyBuffer(copies, 7, -1, bytes, GL_STATIC_DRAW);
    copyBuffer(copies, 7, 2, others, GL_FLOAT);
    EXPECT_EQ(contents(7), (std::vector<uint8_t>{1, 2, 3, 4})) << "refused";
    copyIntoBuffer(copies, 7, 2, 2, others);
    EXPECT_EQ(contents(7), (std::vector<uint8_t>{1, 2, 8, 9})) << "up to the end";
    copyIntoBuffer(copies, 7, 3, 2, others);
    copyIntoBuffer(copies, 7, -1, 2, others);
    copyIntoBuffer(copies, 7, 0, 0, nullptr);
    copyIntoBuffer(copies, 8, 0, 2, others);
    EXPECT_EQ(contents(7), (std::vector<uint8_t>{1, 2, 8, 9})) << "beyond it, before it, nothing, another";
    EXPECT_EQ(findCopy(copies, 8), nullptr);
    copyBuffer(copies, 7, 3, nullptr, GL_DYNAMIC_DRAW);
    EXPECT_EQ(contents(7), (std::vector<uint8_t>{0, 0, 0})) << "made without contents";
    copyBuffer(copies, 7, 0, nullptr, GL_STREAM_DRAW);
    EXPECT_TRUE(contents(7).empty());
}

#ifndef __SANITIZE_ADDRESS__ // which ends the process instead of throwing
TEST(BufferCopies, ABufferLargerThanMemoryHasNone)
{
    const uint8_t bytes[] = {1, 2};
    BufferCopies copies{.kept = true, .bytes = {}};
    copyBuffer(copies, 7, 2, bytes, GL_STATIC_DRAW);
    copyBuffer(copies, 7, PTRDIFF_MAX, nullptr, GL_STATIC_DRAW);
    EXPECT_EQ(findCopy(copies, 7), nullptr);
    copyIntoBuffer(copies, 7, 0, 2, bytes);
    EXPECT_EQ(findCopy(copies, 7), nullptr);
}
#endif

// In another process, which reads the limit anew.
static void drawUnderLimit(const char *limit)
{
    setenv("TRL20_DRIVER_LIMIT", limit, 1);
    void *context = backend().table.createContext(nullptr, nullptr, nullptr, 1, nullptr);
    const bool current = context && backend().table.setBuffers(context, nullptr, nullptr) == 1;
    exit(current ? 3 : 4);
}

TEST(DriverLimitDeathTest, AnUnknownLimitIsToldAndLimitsNothing)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(drawUnderLimit("es3"), testing::ExitedWithCode(3),
                "^trl20: TRL20_DRIVER_LIMIT is es2 or thin-lines, not 'es3'; the driver is used as it is\n$");
    for (const char *known : {"es2", "thin-lines", ""})
        EXPECT_EXIT(drawUnderLimit(known), testing::ExitedWithCode(3), "^$") << known;
}
