// SPDX-License-Identifier: MIT
// Random legal calls and draws through the whole library over the recording backend: every text it asks the backend to
// compile builds on this machine's driver. What shader_sweep_test.cpp assumes about legal keys is not assumed here.
#include "shadergen/driver_programs.h"
#include "support/fake_backend.h"
#include "support/fake_platform.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

std::mt19937 randomNumbers;

uint32_t upTo(uint32_t count)
{
    return randomNumbers() % count;
}

template <typename T, size_t N>
T oneOf(const T (&values)[N])
{
    return values[upTo(N)];
}

void switchCapability(GLenum capability)
{
    if (upTo(2)) {
        glEnable(capability);
    } else {
        glDisable(capability);
    }
}

void switchArray(GLenum array)
{
    if (upTo(2)) {
        glEnableClientState(array);
    } else {
        glDisableClientState(array);
    }
}

void switchLight()
{
    const GLenum light = GL_LIGHT0 + upTo(8);
    switchCapability(light);
    const GLfloat position[] = {0, 1, 2, static_cast<GLfloat>(upTo(2))};
    glLightfv(light, GL_POSITION, position);
    glLightf(light, GL_SPOT_CUTOFF, upTo(2) ? 180.0f : 30.0f);
    const GLfloat color[] = {static_cast<GLfloat>(upTo(2)), 0, 0, 1};
    glLightfv(light, oneOf<GLenum>({GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR}), color);
}

void changeMaterial()
{
    const GLfloat color[] = {static_cast<GLfloat>(upTo(2)), 0, 0, 1};
    glMaterialfv(GL_FRONT_AND_BACK, oneOf<GLenum>({GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION}), color);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, static_cast<GLfloat>(upTo(2)));
}

void changeFog()
{
    switchCapability(GL_FOG);
    glFogf(GL_FOG_MODE, static_cast<GLfloat>(oneOf<GLenum>({GL_LINEAR, GL_EXP, GL_EXP2})));
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN,
           static_cast<GLfloat>(oneOf<GLenum>({GL_FOG_COORDINATE_QRN, GL_FRAGMENT_DEPTH_QRN})));
}

void changeMatrix()
{
    const GLenum mode = oneOf<GLenum>({GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE, GL_MATRIX_PALETTE_OES});
    glMatrixMode(mode);
    switch (upTo(7)) {
    case 0:
    case 1:
        glLoadIdentity();
        break;
    case 2:
        glTranslatef(1, 2, 0);
        break;
    case 3:
        glScalef(2, 3, 1);
        break;
    case 4:
        glRotatef(30, 0, 0, 1);
        break;
    case 5:
        glFrustumf(-1, 1, -1, 1, 1, 10);
        break;
    case 6:
        glRotatef(30, 1, 2, 3);
        break;
    }
}

void changeTexture()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    const GLenum target = oneOf<GLenum>({GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES});
    switchCapability(target);
    const GLenum format = oneOf<GLenum>({GL_ALPHA, GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA});
    if (target == GL_TEXTURE_2D) {
        glBindTexture(target, upTo(4));
        glTexImage2D(target, 0, static_cast<GLint>(format), 4, 4, 0, format, GL_UNSIGNED_BYTE, nullptr);
    } else if (target == GL_TEXTURE_CUBE_MAP_OES) {
        glBindTexture(target, upTo(2) * 10);
    }
}

void changeTexGen()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    switchCapability(GL_TEXTURE_GEN_STR_OES);
    glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES,
                 static_cast<GLint>(oneOf<GLenum>({GL_NORMAL_MAP_OES, GL_REFLECTION_MAP_OES})));
}

void setEnvironment(GLenum name, GLenum value)
{
    glTexEnvi(GL_TEXTURE_ENV, name, static_cast<GLint>(value));
}

void changeEnvironment()
{
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    setEnvironment(GL_TEXTURE_ENV_MODE, oneOf<GLenum>({GL_MODULATE, GL_DECAL, GL_ADD, GL_BLEND, GL_REPLACE, GL_COMBINE,
                                                       GL_COMBINE, GL_COMBINE}));
    setEnvironment(GL_COMBINE_RGB, oneOf<GLenum>({GL_REPLACE, GL_MODULATE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE,
                                                  GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA}));
    setEnvironment(GL_COMBINE_ALPHA,
                   oneOf<GLenum>({GL_REPLACE, GL_MODULATE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE, GL_SUBTRACT}));
    const GLenum sources[] = {GL_TEXTURE, GL_TEXTURE0, GL_TEXTURE1, GL_CONSTANT, GL_PRIMARY_COLOR, GL_PREVIOUS};
    const uint32_t argument = upTo(3);
    setEnvironment(GL_SRC0_RGB + argument, oneOf(sources));
    setEnvironment(GL_SRC0_ALPHA + argument, oneOf(sources));
    setEnvironment(GL_OPERAND0_RGB + argument,
                   oneOf<GLenum>({GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
    setEnvironment(GL_OPERAND0_ALPHA + argument, oneOf<GLenum>({GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}));
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, upTo(2) ? 1.0f : 2.0f);
}

void changePoints()
{
    switchCapability(oneOf<GLenum>({GL_POINT_SMOOTH, GL_POINT_SPRITE_OES, GL_LINE_SMOOTH}));
    glActiveTexture(GL_TEXTURE0 + upTo(2));
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, static_cast<GLint>(upTo(2)));
    const GLfloat attenuation[] = {1, upTo(3) ? 0.0f : 1.0f, 0};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
}

void changeArrays()
{
    static const GLfloat coordinates[64] = {};
    switchArray(oneOf<GLenum>({GL_COLOR_ARRAY, GL_NORMAL_ARRAY}));
    glVertexPointer(static_cast<GLint>(2 + upTo(3)), GL_FLOAT, 0, coordinates);
    glColorPointer(4, GL_FLOAT, 0, coordinates);
    glNormalPointer(GL_FLOAT, 0, coordinates);
    for (uint32_t unit = 0; unit < 2; ++unit) {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        switchArray(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(static_cast<GLint>(2 + upTo(3)), GL_FLOAT, 0, coordinates);
    }
}

void changePalette()
{
    static const GLfloat weights[64] = {};
    static const GLubyte indices[64] = {};
    switchCapability(GL_MATRIX_PALETTE_OES);
    if (upTo(2)) glDisable(GL_MATRIX_PALETTE_OES); // palettes are rare
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    const GLint units = static_cast<GLint>(upTo(5));
    glMatrixIndexPointerOES(units, GL_UNSIGNED_BYTE, 0, indices);
    glWeightPointerOES(units, GL_FLOAT, 0, weights);
}

void changeSwitches()
{
    switchCapability(oneOf<GLenum>({GL_LIGHTING, GL_COLOR_MATERIAL, GL_NORMALIZE, GL_RESCALE_NORMAL, GL_CLIP_PLANE0,
                                    GL_ALPHA_TEST, GL_ALPHA_FACTOR_ZEK}));
    glShadeModel(oneOf<GLenum>({GL_FLAT, GL_SMOOTH}));
    glAlphaFunc(GL_NEVER + upTo(8), 0.5f);
}

void draw()
{
    if (upTo(6) == 0) return glDrawTexfOES(0, 0, 0, 1, 1);
    glDrawArrays(oneOf<GLenum>({GL_POINTS, GL_LINES, GL_TRIANGLES, GL_TRIANGLES}), 0, 3);
}

class CallSweep : public testing::TestWithParam<bool> {
protected:
    static void SetUpTestSuite()
    {
        setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
        ASSERT_TRUE(openDriver());
    }
    static void TearDownTestSuite()
    {
        closeDriver();
    }

    // Builds what the draws since the last call asked for, each pair of texts once.
    void buildNewTexts()
    {
        std::vector<std::string> &texts = fakeBackend().shaderTexts;
        ASSERT_EQ(texts.size() % 2, 0u);
        for (size_t i = 0; i < texts.size(); i += 2)
            if (built.insert(std::hash<std::string>()(texts[i] + '\0' + texts[i + 1])).second) {
                ASSERT_EQ(buildProgram(texts[i], texts[i + 1], driverAbilities()), "");
            }
        texts.clear();
    }

    std::set<size_t> built;
};

} // namespace

TEST_P(CallSweep, EveryProgramThatDrawsAskForBuilds)
{
    resetFakeBackend();
    fakeBackend().vendorEntries = GetParam();
    const TestContext context;
    glEnableClientState(GL_VERTEX_ARRAY);
    randomNumbers.seed(20);
    void (*const changes[])() = {switchLight,   changeMaterial, changeFog,         changeMatrix,
                                 changeTexture, changeTexGen,   changeEnvironment, changePoints,
                                 changeArrays,  changePalette,  changeSwitches,    changeSwitches};
    for (int i = 0; i < 6000; ++i) {
        oneOf(changes)();
        draw();
        ASSERT_NO_FATAL_FAILURE(buildNewTexts()) << "after " << i << " changes";
        takeCalls();
    }
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>());
    EXPECT_GT(built.size(), 1000u);
    std::printf("%zu pairs of texts built\n", built.size());
}

INSTANTIATE_TEST_SUITE_P(Backends, CallSweep, testing::Bool(),
                         [](const auto &with) { return with.param ? "WithVendorEntries" : "WithoutVendorEntries"; });
