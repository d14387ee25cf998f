// SPDX-License-Identifier: MIT
#include "frontend/backend.h"
#include "shadergen/program_cache.h"
#include "state/state_test.h"

namespace {

// One vertex as the backend read it.
struct Corner {
    Vec3 position;
    std::array<Vec4, 2> texCoord;
};

struct Pointer {
    GLint size;
    GLsizei strideBytes;
    const GLfloat *first;
};

std::map<GLuint, Pointer> pointers; // by location, of the draw under way

void GL_APIENTRY keepPointer(GLuint location, GLint size, GLenum, GLboolean, GLsizei strideBytes, const void *first)
{
    pointers[location] = {size, strideBytes, static_cast<const GLfloat *>(first)};
}

class DrawTexture : public StateTest {
protected:
    DrawTexture()
    {
        pointers.clear();
        glVertexAttribPointer_2_0 = keepPointer;
        // The vertices stand on the library's stack: read them while the backend draws.
        fakeBackend().onCall["glDrawArrays"] = [this] { readCorners(); };
        glViewport(0, 0, 256, 128);
    }

    void readCorners()
    {
        corners.assign(4, {});
        const Pointer &position = pointers.at(0);
        EXPECT_EQ(position.size, 3);
        EXPECT_EQ(position.strideBytes, 44);
        const size_t stride = 44 / sizeof(GLfloat);
        for (size_t i = 0; i < 4; ++i) {
            std::copy_n(position.first + i * stride, 3, corners[i].position.begin());
            std::copy_n(position.first + i * stride + 3, 4, corners[i].texCoord[0].begin());
            std::copy_n(position.first + i * stride + 7, 4, corners[i].texCoord[1].begin());
        }
    }

    std::vector<Vec3> positions() const
    {
        std::vector<Vec3> list;
        for (const Corner &corner : corners)
            list.push_back(corner.position);
        return list;
    }

    std::vector<Vec4> texCoords(uint32_t unit) const
    {
        std::vector<Vec4> list;
        for (const Corner &corner : corners)
            list.push_back(corner.texCoord[unit]);
        return list;
    }

    void useTexture(GLuint name, GLsizei width, GLsizei height, std::array<GLint, 4> crop)
    {
        glBindTexture(GL_TEXTURE_2D, name);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, width, height, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop.data());
    }

    void useCubeMap(GLsizei size, std::array<GLint, 4> crop)
    {
        glBindTexture(GL_TEXTURE_CUBE_MAP_OES, 5);
        glTexImage2D(GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES, 0, GL_RGB, size, size, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
        glTexParameteriv(GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_CROP_RECT_OES, crop.data());
    }

    std::vector<Corner> corners;
};

GLuint coordLocation(int unit)
{
    return static_cast<GLuint>(fakeLocation(unit ? "gles_MultiTexCoord1" : "gles_MultiTexCoord0"));
}

} // namespace

TEST_F(DrawTexture, TheWholeViewportIsTheWholeOfDeviceSpace)
{
    glDrawTexiOES(0, 0, 0, 256, 128);
    EXPECT_EQ(positions(), (std::vector<Vec3>{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}}));
    EXPECT_EQ(callsOf("glDrawArrays"), std::vector<std::string>{"glDrawArrays(0x0006, 0, 4)"});
}

TEST_F(DrawTexture, TheViewportsOriginPlaysNoPart)
{
    glViewport(50, 60, 256, 128);
    glDrawTexfOES(64, 32, 0, 128, 64);
    EXPECT_EQ(positions(), (std::vector<Vec3>{{-0.5f, -0.5f, 0}, {0.5f, -0.5f, 0}, {0.5f, 0.5f, 0}, {-0.5f, 0.5f, 0}}));
}

TEST_F(DrawTexture, AViewportAboveTheLimitCountsWithTheLimit)
{
    glViewport(0, 0, 100000, 100000); // the backend's limit is 4096 x 2048
    glDrawTexfOES(0, 0, 0, 4096, 2048);
    EXPECT_EQ(positions()[2], (Vec3{1, 1, 0}));
}

TEST_F(DrawTexture, WorksBeforeAnyViewportCallOverTheSurfacesSize)
{
    TestContext fresh;
    glVertexAttribPointer_2_0 = keepPointer;
    glDrawTexfOES(0, 0, 0, 64, 48);
    EXPECT_EQ(positions()[2], (Vec3{1, 1, 0}));
    context->makeCurrent();
}

TEST_F(DrawTexture, DepthRunsThroughTheDepthRange)
{
    glDepthRangef(0.25f, 0.75f);
    const struct {
        GLfloat z, depth;
    } cases[] = {{0.5f, 0.5f}, {-3, 0.25f}, {0, 0.25f}, {7, 0.75f}, {1.5f, 0.75f}, {1, 0.75f}, {0.25f, 0.375f}};
    for (const auto &c : cases) {
        glDrawTexfOES(0, 0, c.z, 1, 1);
        for (const Corner &corner : corners)
            EXPECT_EQ(corner.position[2], c.depth);
    }
}

TEST_F(DrawTexture, CropRectangleOverTheSizeGivesTheCoordinates)
{
    useTexture(3, 128, 64, {0, 0, 64, 32});
    glEnable(GL_TEXTURE_2D);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0), (std::vector<Vec4>{{0, 0, 0, 1}, {0.5f, 0, 0, 1}, {0.5f, 0.5f, 0, 1}, {0, 0.5f, 0, 1}}));
    EXPECT_EQ(texCoords(1), (std::vector<Vec4>(4, Vec4{0, 0, 0, 1})));
    EXPECT_EQ(pointers[coordLocation(0)].size, 2);
    EXPECT_EQ(pointers[coordLocation(0)].first, pointers[0].first + 3);
    EXPECT_EQ(pointers[coordLocation(1)].first, pointers[0].first + 7);
}

TEST_F(DrawTexture, NegativeCropSizesTurnTheImage)
{
    useTexture(3, 128, 64, {128, 64, -64, -64});
    glEnable(GL_TEXTURE_2D);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0), (std::vector<Vec4>{{1, 1, 0, 1}, {0.5f, 1, 0, 1}, {0.5f, 0, 0, 1}, {1, 0, 0, 1}}));
}

TEST_F(DrawTexture, BothUnitsTakeTheActiveUnitsTexture)
{
    useTexture(3, 128, 128, {0, 0, 128, 128});
    glEnable(GL_TEXTURE_2D);
    glActiveTexture(GL_TEXTURE1);
    useTexture(4, 128, 128, {0, 0, 32, 32});
    glEnable(GL_TEXTURE_2D);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0)[2], (Vec4{0.25f, 0.25f, 0, 1}));
    EXPECT_EQ(texCoords(1)[2], (Vec4{0.25f, 0.25f, 0, 1}));
    glActiveTexture(GL_TEXTURE0);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(1)[2], (Vec4{1, 1, 0, 1}));
}

TEST_F(DrawTexture, ACubeMapComesFirstWithThreeComponents)
{
    useTexture(3, 128, 128, {0, 0, 128, 128});
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    useCubeMap(8, {0, 0, 2, 4});
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0)[2], (Vec4{0.25f, 0.5f, 0, 1}));
    EXPECT_EQ(pointers[coordLocation(0)].size, 3);
    EXPECT_EQ(pointers[coordLocation(1)].size, 2);
}

TEST_F(DrawTexture, TheOtherUnitsEnablesDecideItsOwnCoordinates)
{
    useTexture(3, 128, 128, {0, 0, 64, 64});
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_TEXTURE_CUBE_MAP_OES);
    glActiveTexture(GL_TEXTURE0);
    useCubeMap(8, {4, 0, 4, 2});
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0), (std::vector<Vec4>(4, Vec4{0, 0, 0, 1}))); // unit 0 is off
    EXPECT_EQ(texCoords(1), (std::vector<Vec4>{{0.5f, 0, 0, 1}, {1, 0, 0, 1}, {1, 0.25f, 0, 1}, {0.5f, 0.25f, 0, 1}}));
    EXPECT_EQ(pointers[coordLocation(0)].size, 2);
    EXPECT_EQ(pointers[coordLocation(1)].size, 3);
}

TEST_F(DrawTexture, AnExternalTextureHasNoCoordinates)
{
    glBindTexture(GL_TEXTURE_EXTERNAL_OES, 6);
    ctx->bindings.textureExternal[0]->width[0] = 8;
    ctx->bindings.textureExternal[0]->height[0] = 8;
    const GLint crop[4] = {0, 0, 8, 8};
    glTexParameteriv(GL_TEXTURE_EXTERNAL_OES, GL_TEXTURE_CROP_RECT_OES, crop);
    glEnable(GL_TEXTURE_EXTERNAL_OES);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0), (std::vector<Vec4>(4, Vec4{0, 0, 0, 1})));
    EXPECT_EQ(pointers[coordLocation(0)].size, 2);
}

TEST_F(DrawTexture, AnEmptyTextureGivesWhatTheDivisionGives)
{
    glBindTexture(GL_TEXTURE_2D, 9);
    const GLint crop[4] = {0, 1, 1, -2};
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, crop);
    glEnable(GL_TEXTURE_2D);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_TRUE(std::isnan(texCoords(0)[0][0]));
    EXPECT_EQ(texCoords(0)[0][1], std::numeric_limits<GLfloat>::infinity());
    EXPECT_EQ(texCoords(0)[2][0], std::numeric_limits<GLfloat>::infinity());
    EXPECT_EQ(texCoords(0)[2][1], -std::numeric_limits<GLfloat>::infinity());
}

TEST_F(DrawTexture, CropSumsWrapLikeIntegers)
{
    useTexture(3, 1, 1, {INT32_MAX, 0, 1, 0});
    glEnable(GL_TEXTURE_2D);
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(texCoords(0)[1][0], -2147483648.0f);
}

TEST_F(DrawTexture, SizesThatAreNotAboveZeroAreInvalidValue)
{
    const struct {
        GLfloat width, height;
    } cases[] = {{0, 1}, {1, 0}, {-1, 1}, {1, -1}, {kNaN, 1}, {1, kNaN}};
    for (const auto &c : cases)
        expectOnlyError(ctx, GL_INVALID_VALUE, [&] { glDrawTexfOES(0, 0, 0, c.width, c.height); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glDrawTexxOES(0, 0, 0, 0, 0x10000); });
    EXPECT_EQ(callsOf("glDrawArrays").size(), 0u);
}

TEST_F(DrawTexture, SizesAreCheckedInInterfaceOnlyModeToo)
{
    ctx->settings.interfaceOnly = 1;
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glDrawTexfOES(0, 0, 0, 0, 1); });
    expectAccepted([] { glDrawTexfOES(0, 0, 0, 1, 1); });
    EXPECT_EQ(callsOf("glDrawArrays").size(), 0u);
}

TEST_F(DrawTexture, EveryFormDrawsTheSameRectangle)
{
    // The sixth values belong to nobody.
    const GLfloat f[6] = {64, 32, 0, 128, 64, 7};
    const GLint i[6] = {64, 32, 0, 128, 64, 7};
    const GLshort s[6] = {64, 32, 0, 128, 64, 7};
    const GLfixed x[6] = {64 << 16, 32 << 16, 0, 128 << 16, 64 << 16, 7 << 16};
    const std::vector<std::function<void()>> forms = {
        [&] { glDrawTexfOES(f[0], f[1], f[2], f[3], f[4]); }, [&] { glDrawTexfvOES(f); },
        [&] { glDrawTexiOES(i[0], i[1], i[2], i[3], i[4]); }, [&] { glDrawTexivOES(i); },
        [&] { glDrawTexsOES(s[0], s[1], s[2], s[3], s[4]); }, [&] { glDrawTexsvOES(s); },
        [&] { glDrawTexxOES(x[0], x[1], x[2], x[3], x[4]); }, [&] { glDrawTexxvOES(x); },
    };
    for (const auto &form : forms) {
        corners.clear();
        form();
        ASSERT_EQ(corners.size(), 4u);
        EXPECT_EQ(corners[0].position, (Vec3{-0.5f, -0.5f, 0}));
        EXPECT_EQ(corners[2].position, (Vec3{0.5f, 0.5f, 0}));
    }
}

TEST_F(DrawTexture, OneInFixedPointIsOnePixel)
{
    glDrawTexxOES(0, 0, 0, 0x10000, 0x10000);
    EXPECT_EQ(corners[2].position, (Vec3{2.0f / 256 - 1, 2.0f / 128 - 1, 0}));
}

TEST_F(DrawTexture, LeavesExactlyTheArrayMarkAndNoPrimitive)
{
    ctx->dirty = 0xFFFFFFFF;
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(ctx->dirty, 0x8u);
    EXPECT_EQ(ctx->primitiveFlags, 0u);
}

TEST_F(DrawTexture, AskedLocationsAreBoundFromClientMemory)
{
    glBindBuffer(GL_ARRAY_BUFFER, 77);
    glColor4f(0.5f, 0.25f, 1, 0);
    glEnable(GL_LIGHTING); // the colour is an attribute
    glDrawTexiOES(0, 0, 0, 10, 10);
    takeCalls();
    glDrawTexiOES(0, 0, 0, 10, 10);

    const std::vector<std::string> calls = takeCalls();
    const auto asked =
        std::find(calls.begin(), calls.end(),
                  "glGetAttribLocation(" + std::to_string(ctx->currentEntry->program) + ", \"gles_Vertex\")");
    const auto text = [](const char *pattern, const char *name) {
        char buffer[80];
        std::snprintf(buffer, sizeof(buffer), pattern, fakeLocation(name));
        return std::string(buffer);
    };
    const std::string program = std::to_string(ctx->currentEntry->program);
    const std::vector<std::string> expected = {
        "glGetAttribLocation(" + program + ", \"gles_Vertex\")",
        "glGetAttribLocation(" + program + ", \"gles_Color\")",
        "glGetAttribLocation(" + program + ", \"gles_MultiTexCoord0\")",
        "glGetAttribLocation(" + program + ", \"gles_MultiTexCoord1\")",
        "glBindBuffer(0x8892, 0)",
        "glEnableVertexAttribArray(0)",
        text("glVertexAttrib4fv(%d, {0.5, 0.25, 1, 0})", "gles_Color"),
        text("glDisableVertexAttribArray(%d)", "gles_Color"),
        text("glEnableVertexAttribArray(%d)", "gles_MultiTexCoord0"),
        text("glEnableVertexAttribArray(%d)", "gles_MultiTexCoord1"),
        "glDrawArrays(0x0006, 0, 4)",
        "glBindBuffer(0x8892, 77)", // the application's own again
    };
    EXPECT_EQ(std::vector<std::string>(asked, calls.end()), expected);
}

TEST_F(DrawTexture, AttributesThatTheProgramLacksAreLeftAlone)
{
    glDrawTexiOES(0, 0, 0, 10, 10);
    fakeBackend().unknownLocations = {{"gles_Color", -1}, {"gles_MultiTexCoord0", -1}, {"gles_MultiTexCoord1", -1}};
    takeCalls();
    pointers.clear();
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(pointers.size(), 1u);
    EXPECT_EQ(callsOf("glEnableVertexAttribArray").back(), "glEnableVertexAttribArray(0)");
    const std::vector<std::string> calls = takeCalls();
    const auto asked = std::find_if(calls.begin(), calls.end(),
                                    [](const std::string &call) { return call.rfind("glGetAttribLocation", 0) == 0; });
    EXPECT_EQ(std::vector<std::string>(asked + 4, calls.end()),
              (std::vector<std::string>{"glBindBuffer(0x8892, 0)", "glEnableVertexAttribArray(0)",
                                        "glDrawArrays(0x0006, 0, 4)", "glBindBuffer(0x8892, 0)"}));
}

TEST_F(DrawTexture, WithoutAProgramNothingIsDrawnAndTheMarksStay)
{
    fakeBackend().createShaderFails = true;
    ctx->dirty = 0x1000;
    glDrawTexiOES(0, 0, 0, 10, 10);
    EXPECT_EQ(callsOf("glDrawArrays").size(), 0u);
    EXPECT_EQ(ctx->primitiveFlags, uint32_t(PRIMITIVE_DRAW_TEXTURE));
    EXPECT_EQ(ctx->dirty, 0x1010u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(DrawTexture, WithoutContextNothingHappens)
{
    os_tls_write(__gl_tls_index, nullptr);
    takeCalls();
    glDrawTexfOES(0, 0, 0, -1, -1);
    glDrawTexiOES(0, 0, 0, 1, 1);
    glDrawTexsOES(0, 0, 0, 1, 1);
    glDrawTexxOES(0, 0, 0, 1, 1);
    glDrawTexfvOES(nullptr);
    glDrawTexivOES(nullptr);
    glDrawTexsvOES(nullptr);
    glDrawTexxvOES(nullptr);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    context->makeCurrent();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}
