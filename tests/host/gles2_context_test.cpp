// SPDX-License-Identifier: MIT
// Contexts through the client-API table, entry points, queries and capabilities, over this machine's driver.
#include "backend_fixture.h"

#include "host/gles2/create_info.h"

#include <EGL/eglext.h>
#include <algorithm>
#include <dlfcn.h>
#include <thread>
#include <vector>

namespace {

TEST_F(BackendTest, ClearsAndReadsBack)
{
    gl.glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(pixelAt(5, 5), (Pixel{255, 0, 255, 255}));
}

// The lower left half of the surface, in red.
struct Triangle : BackendTest {
    void drawLowerLeft(GLenum type, const void *corners)
    {
        const GLuint program = makeProgram(kPlainVertex, kColorFragment);
        gl.glUseProgram(program);
        gl.glUniform4f(gl.glGetUniformLocation(program, "color"), 1.0f, 0.0f, 0.0f, 1.0f);
        gl.glVertexAttribPointer(0, 2, type, GL_FALSE, 0, corners);
        gl.glEnableVertexAttribArray(0);
        gl.glDrawArrays(GL_TRIANGLES, 0, 3);
        EXPECT_EQ(pixelAt(4, 4), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixelAt(28, 28), (Pixel{0, 0, 0, 0}));
    }
};

TEST_F(Triangle, IsDrawn)
{
    const GLfloat corners[] = {-1, -1, 1, -1, -1, 1};
    drawLowerLeft(GL_FLOAT, corners);
}

// Fixed-point, byte and short arrays go to the driver as they are.
TEST_F(Triangle, TheDriverTakesFixedPointAttributes)
{
    const GLfixed corners[] = {-65536, -65536, 65536, -65536, -65536, 65536};
    drawLowerLeft(GL_FIXED, corners);
}

TEST_F(BackendTest, AttributesOfTheCallerMayAskForVersionOne)
{
    const EGLint attributes[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_CONTEXT_MINOR_VERSION_KHR, 1, EGL_NONE};
    void *other = backend().table.createContext(nullptr, nullptr, attributes, 1, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(backend().table.destroyContext(other), 1);
}

TEST_F(BackendTest, AFailedCreationTellsTheMachinesError)
{
    EGLenum error = EGL_SUCCESS;
    const BackendCreateInfo info = {.size = sizeof info,
                                    .display = EGL_NO_DISPLAY,
                                    .share = EGL_NO_CONTEXT,
                                    .context = nullptr,
                                    .error = &error,
                                    .imagesFound = nullptr};
    EXPECT_EQ(backend().table.createContext(nullptr, nullptr, nullptr, 1, const_cast<BackendCreateInfo *>(&info)),
              nullptr);
    EXPECT_EQ(error, static_cast<EGLenum>(EGL_BAD_DISPLAY));

    BackendCreateInfo small = info;
    small.size = sizeof small - 1;
    EXPECT_EQ(backend().table.createContext(nullptr, nullptr, nullptr, 1, &small), nullptr);
}

TEST_F(BackendTest, ASwapWithoutASurfaceSwapsNothing)
{
    EXPECT_EQ(backend().table.swapBuffer(context, nullptr, nullptr), 1);
}

TEST_F(BackendTest, ADestroyedCurrentContextLivesUntilItIsReleased)
{
    void *other = makeContext();
    EXPECT_EQ(backend().table.destroyContext(other), 1);
    gl.glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    gl.glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(pixelAt(1, 1), (Pixel{0, 0, 255, 255}));
    makeCurrent(context);
    EXPECT_EQ(pixelAt(1, 1), (Pixel{0, 0, 0, 0}));
}

TEST_F(BackendTest, EachThreadHasItsOwnContext)
{
    gl.glLineWidth(3.0f);
    std::thread([&] {
        void *other = makeContext();
        GLfloat width = 0.0f;
        gl.glGetFloatv(GL_LINE_WIDTH, &width);
        EXPECT_EQ(width, 1.0f);
        makeCurrent(nullptr);
        backend().table.destroyContext(other);
    }).join();
    GLfloat width = 0.0f;
    gl.glGetFloatv(GL_LINE_WIDTH, &width);
    EXPECT_EQ(width, 3.0f);
    gl.glLineWidth(1.0f);
}

TEST_F(BackendTest, WithoutAContextCallsDoNothing)
{
    makeCurrent(nullptr);
    gl.glUseProgram(1);
    gl.glUniform1f(0, 1.0f);
    gl.glVertexAttrib1f(0, 1.0f);
    gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, nullptr);
    gl.glEnableVertexAttribArray(0);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 1);
    gl.glEnable(GL_BLEND);
    gl.glLineWidth(2.0f);
    EXPECT_EQ(gl.glCreateShader(GL_VERTEX_SHADER), 0u);
    EXPECT_EQ(gl.glCreateProgram(), 0u);
    EXPECT_EQ(gl.glGetUniformLocation(1, "x"), -1);
    EXPECT_EQ(gl.glIsEnabled(GL_DITHER), GL_FALSE);
}

// What the calls hold without a context is no context's, and stays as it is.
TEST_F(BackendTest, WithoutACurrentContextNothingIsHeld)
{
    const GLfloat values[16] = {1.0f};
    const auto callAll = [&] {
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 64);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 64);
        gl.glEnableVertexAttribArray(0);
        gl.glDisableVertexAttribArray(0);
        gl.glVertexAttribPointer(0, 4, GL_FLOAT, GL_FALSE, 0, nullptr);
        gl.glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, values);
        gl.glVertexAttrib4fv(0, values);
        gl.glUniform1f(0, 1.0f);
        gl.glUniform4fv(0, 1, values);
        gl.glUniformMatrix4fv(0, 1, GL_FALSE, values);
        gl.glUseProgram(1);
        gl.glEnable(GL_BLEND);
        gl.glDisable(GL_DITHER);
    };
    makeCurrent(nullptr);
    const CallCounter counter;
    callAll();
    callAll();
    EXPECT_EQ(counter.calls(), 0);
    makeCurrent(context);
    GLfloat value[4];
    GLint bound = -1;
    gl.glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &bound);
    driver.glGetVertexAttribfv(0, GL_CURRENT_VERTEX_ATTRIB, value);
    EXPECT_EQ(bound, 0);
    EXPECT_EQ(value[0], 0.0f);
    EXPECT_EQ(gl.glIsEnabled(GL_BLEND), GL_FALSE);
    EXPECT_EQ(gl.glIsEnabled(GL_DITHER), GL_TRUE);
}

TEST_F(BackendTest, AContextTakesWhatItHoldsToAnotherThread)
{
    gl.glEnableVertexAttribArray(3);
    gl.glVertexAttrib1f(3, 2.0f);
    makeCurrent(nullptr);
    std::thread([&] {
        makeCurrent(context);
        const CallCounter held;
        gl.glEnableVertexAttribArray(3);
        gl.glVertexAttrib1f(3, 2.0f);
        EXPECT_EQ(held.calls(), 0);
        gl.glDisableVertexAttribArray(3);
        makeCurrent(nullptr);
    }).join();
    const CallCounter none;
    gl.glEnableVertexAttribArray(3);
    EXPECT_EQ(none.calls(), 0) << "nothing is current here";
    makeCurrent(context);
    const int before = countedCalls("glEnableVertexAttribArray");
    gl.glEnableVertexAttribArray(3);
    EXPECT_EQ(countedCalls("glEnableVertexAttribArray") - before, 1);
    gl.glDisableVertexAttribArray(3);
}

TEST_F(BackendTest, ProcAddressesAreTheExportedFunctions)
{
    EXPECT_EQ(backend().table.getProcAddress("glClear"), reinterpret_cast<void *>(gl.glClear));
    EXPECT_EQ(backend().table.getProcAddress("glUniform4fv"), reinterpret_cast<void *>(gl.glUniform4fv));
    EXPECT_NE(backend().table.getProcAddress("glBlendBarrier"), nullptr);
}

TEST_F(BackendTest, TheTableSetsViewportAndScissor)
{
    backend().table.viewport(1, 2, 3, 4);
    backend().table.scissor(5, 6, 7, 8);
    GLint box[4];
    backend().table.getIntegerv(GL_VIEWPORT, box);
    EXPECT_EQ(std::vector<GLint>(box, box + 4), (std::vector<GLint>{1, 2, 3, 4}));
    gl.glGetIntegerv(GL_SCISSOR_BOX, box);
    EXPECT_EQ(std::vector<GLint>(box, box + 4), (std::vector<GLint>{5, 6, 7, 8}));
}

// docs/architecture.md tells why these three are left out. The library decides by the absence of the first two that its
// shaders do alpha test and fog.
TEST(BackendExports, AllEntryPointsArePresentButThree)
{
    std::vector<std::string> absent;
#define BACKEND(name, result, arguments, visibility, group, need)                                                      \
    if (!dlsym(backend().module, #name)) absent.push_back(#name);
#include "frontend/backend.def"
    std::sort(absent.begin(), absent.end());
    EXPECT_EQ(absent, (std::vector<std::string>{"glAlphaFuncQRN", "glFogfvQRN", "glTexObjectStateOverrideiQRN"}));
}

TEST_F(BackendTest, CapabilitiesTheDriverLacksAreTrackedWithoutErrors)
{
    const struct {
        GLenum name;
        GLboolean initial;
    } cases[] = {{GL_MULTISAMPLE, GL_TRUE},   {GL_SAMPLE_ALPHA_TO_ONE, GL_FALSE}, {GL_COLOR_LOGIC_OP, GL_FALSE},
                 {GL_POINT_SMOOTH, GL_FALSE}, {GL_LINE_SMOOTH, GL_FALSE},         {GL_DITHER, GL_TRUE},
                 {GL_BLEND, GL_FALSE}};
    for (const auto &c : cases) {
        EXPECT_EQ(gl.glIsEnabled(c.name), c.initial) << c.name;
        gl.glDisable(c.name);
        EXPECT_EQ(gl.glIsEnabled(c.name), GL_FALSE) << c.name;
        gl.glEnable(c.name);
        EXPECT_EQ(gl.glIsEnabled(c.name), GL_TRUE) << c.name;
        GLboolean boolean = GL_FALSE;
        GLint integer = 0;
        GLfloat real = 0.0f;
        gl.glGetBooleanv(c.name, &boolean);
        gl.glGetIntegerv(c.name, &integer);
        gl.glGetFloatv(c.name, &real);
        EXPECT_TRUE(boolean == GL_TRUE && integer == 1 && real == 1.0f) << c.name;
    }
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    gl.glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(BackendTest, LogicOperationsAreKept)
{
    GLint mode = 0;
    gl.glGetIntegerv(GL_LOGIC_OP_MODE, &mode);
    EXPECT_EQ(mode, static_cast<GLint>(GL_COPY));
    gl.glLogicOpQRN(GL_SET);
    gl.glGetIntegerv(GL_LOGIC_OP_MODE, &mode);
    EXPECT_EQ(mode, static_cast<GLint>(GL_SET));
    gl.glLogicOpQRN(GL_SET + 1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    gl.glLogicOpQRN(GL_CLEAR - 1);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(BackendTest, HintsOfTheOldVersionAreTaken)
{
    gl.glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);
    gl.glHint(GL_FOG_HINT, GL_DONT_CARE);
    gl.glHint(GL_GENERATE_MIPMAP_HINT, GL_FASTEST);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    gl.glHint(GL_FOG_HINT, GL_ONE);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    gl.glHint(GL_ONE, GL_FASTEST);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(BackendTest, FixedPointQueries)
{
    GLfixed values[5] = {7, 7, 7, 7, 7};
    gl.glClearColor(0.25f, 0.5f, 1.0f, 0.0f);
    gl.glGetFixedvQRN(GL_COLOR_CLEAR_VALUE, values);
    EXPECT_EQ(std::vector<GLfixed>(values, values + 5), (std::vector<GLfixed>{16384, 32768, 65536, 0, 7}));
    gl.glGetFixedvQRN(GL_BLEND, values);
    EXPECT_EQ(values[0], 0);
    gl.glGetFixedvQRN(GL_MULTISAMPLE, values);
    EXPECT_EQ(values[0], 65536);
    gl.glGetFixedvQRN(GL_BLEND_SRC_RGB, values); // 1
    EXPECT_EQ(values[0], 65536);
    gl.glGetFixedvQRN(GL_DEPTH_FUNC, values); // GL_LESS, 0x201
    EXPECT_EQ(values[0], 0x201 * 65536);
    gl.glGetFixedvQRN(GL_BLEND_EQUATION, values); // GL_FUNC_ADD is beyond the range and stops at its end
    EXPECT_EQ(values[0], INT32_MAX);
    constexpr GLenum primitiveBoundingBox = 0x92BE; // eight values, where the driver has OpenGL ES 3.2
    values[1] = 7;
    gl.glGetFixedvQRN(primitiveBoundingBox, values);
    EXPECT_EQ(values[1], 7) << "only the first is told";
    gl.glGetError();

    values[0] = 7;
    gl.glGetFixedvQRN(GL_FOG_HINT, values);
    EXPECT_EQ(values[0], 7);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
}

TEST_F(BackendTest, TheCurrentProgramIsTheCallersName)
{
    const GLuint program = makeProgram(kPlainVertex, kColorFragment);
    GLint current = -1;
    gl.glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    EXPECT_EQ(current, 0);
    gl.glUseProgram(program);
    gl.glGetIntegerv(GL_CURRENT_PROGRAM, &current);
    EXPECT_EQ(current, static_cast<GLint>(program));
}

TEST_F(BackendTest, TextureLevelsAreKnownByTheTexturesName)
{
    GLuint names[2];
    gl.glGenTextures(2, names);
    gl.glBindTexture(GL_TEXTURE_2D, names[0]);
    gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 8, 4, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    gl.glBindTexture(GL_TEXTURE_2D, 0);
    gl.glBindTexture(GL_TEXTURE_CUBE_MAP, names[1]);
    gl.glTexImage2D(GL_TEXTURE_CUBE_MAP_NEGATIVE_Y, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);

    GLint width = 0, height = 0, format = 0;
    gl.glGetTexLevelParameterivQRN(names[0], 0, 0, GL_TEXTURE_WIDTH_QRN, &width);
    gl.glGetTexLevelParameterivQRN(names[0], 0, 0, GL_TEXTURE_HEIGHT_QRN, &height);
    gl.glGetTexLevelParameterivQRN(names[0], 0, 0, GL_TEXTURE_INTERNAL_FORMAT_QRN, &format);
    EXPECT_EQ(width, 8);
    EXPECT_EQ(height, 4);
    EXPECT_EQ(format, GL_RGB);
    gl.glGetTexLevelParameterivQRN(names[1], 3, 0, GL_TEXTURE_WIDTH_QRN, &width);
    gl.glGetTexLevelParameterivQRN(names[1], 3, 0, GL_TEXTURE_INTERNAL_FORMAT_QRN, &format);
    EXPECT_EQ(width, 2);
    EXPECT_EQ(format, GL_RGBA);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));

    GLint bound = -1;
    gl.glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);
    gl.glGetIntegerv(GL_TEXTURE_BINDING_CUBE_MAP, &bound);
    EXPECT_EQ(bound, static_cast<GLint>(names[1]));

    gl.glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 16, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    gl.glGetTexLevelParameterivQRN(0, 0, 0, GL_TEXTURE_WIDTH_QRN, &width);
    EXPECT_EQ(width, 16);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));

    gl.glGetTexLevelParameterivQRN(names[0], 0, 0, GL_TEXTURE_2D, &width);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    gl.glGetTexLevelParameterivQRN(9999, 0, 0, GL_TEXTURE_WIDTH_QRN, &width);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
}

TEST_F(BackendTest, TheFirstErrorIsKeptUntilItIsAskedFor)
{
    gl.glUseProgram(12345);
    gl.glCreateShader(GL_ONE);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// A process of its own, since a process looks for the driver once.
void fillTableWithout(const char *variable)
{
    setenv(variable, "/nowhere/libnothing.so", 1);
    void *module = dlopen(TRL20_BACKEND, RTLD_NOW | RTLD_LOCAL);
    const auto fill =
        reinterpret_cast<decltype(&ogl2GetClientAPIFunctions)>(dlsym(module, "ogl2GetClientAPIFunctions"));
    void *table[19];
    for (void *&slot : table)
        slot = &table;
    fill(table);
    fill(nullptr);
    _exit(table[0] == nullptr && table[1] == &table ? 3 : 4);
}

TEST(BackendDeathTest, WithoutADriverSlotZeroStaysEmptyAndOneLineTellsWhatWasTried)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // another process, in which no driver has been found yet
    EXPECT_EXIT(fillTableWithout("TRL20_DRIVER_EGL"), testing::ExitedWithCode(3),
                "^trl20: no usable EGL on this machine \\(tried /nowhere/libnothing.so\\); TRL20_DRIVER_EGL can name "
                "one\n$");
    EXPECT_EXIT(fillTableWithout("TRL20_DRIVER_GLES2"), testing::ExitedWithCode(3),
                "^trl20: no OpenGL ES 2.0 driver on this machine \\(tried /nowhere/libnothing.so\\); "
                "TRL20_DRIVER_GLES2 can name one\n$");
}

} // namespace
