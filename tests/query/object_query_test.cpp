// SPDX-License-Identifier: MIT
// Queries of texture coordinate generation, texture parameters, environments, material, lights, clip planes and array
// pointers: what an application sets is read back in every type.
#include "frontend/backend.h"
#include "state/state_test.h"

namespace {

class ObjectQueries : public StateTest {
protected:
    void expectError(GLenum error)
    {
        EXPECT_EQ(glGetError(), error);
    }
};

constexpr size_t kRoom = 8;

// Results of a query into sentinels; equal to the expected ones followed by sentinels.
template <typename T, typename Query>
void expectWritten(Query query, const std::vector<T> &expected)
{
    std::vector<T> out(kRoom, static_cast<T>(77));
    std::vector<T> wanted = expected;
    wanted.resize(kRoom, static_cast<T>(77));
    query(out.data());
    EXPECT_EQ(out, wanted);
}

using Ints = std::vector<GLint>;
using Floats = std::vector<GLfloat>;

void expectTexEnv(GLenum target, GLenum pname, const Ints &integers, const Floats &floats, const Ints &fixed)
{
    SCOPED_TRACE(pname);
    expectWritten<GLint>([=](GLint *out) { glGetTexEnviv(target, pname, out); }, integers);
    expectWritten<GLfloat>([=](GLfloat *out) { glGetTexEnvfv(target, pname, out); }, floats);
    expectWritten<GLfixed>([=](GLfixed *out) { glGetTexEnvxv(target, pname, out); }, fixed);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

void expectTexParameter(GLenum target, GLenum pname, const Ints &integers)
{
    SCOPED_TRACE(pname);
    expectWritten<GLint>([=](GLint *out) { glGetTexParameteriv(target, pname, out); }, integers);
    expectWritten<GLfloat>([=](GLfloat *out) { glGetTexParameterfv(target, pname, out); },
                           Floats(integers.begin(), integers.end()));
    expectWritten<GLfixed>([=](GLfixed *out) { glGetTexParameterxv(target, pname, out); }, integers);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

// Both forms of a float getter.
void expectFloatsAndFixed(const std::function<void(GLfloat *)> &floatQuery,
                          const std::function<void(GLfixed *)> &fixedQuery, const Floats &floats, const Ints &fixed)
{
    expectWritten<GLfloat>(floatQuery, floats);
    expectWritten<GLfixed>(fixedQuery, fixed);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

void expectMaterial(GLenum pname, const Floats &floats, const Ints &fixed)
{
    SCOPED_TRACE(pname);
    for (const GLenum face : {GL_FRONT, GL_BACK, GL_FRONT_AND_BACK, 0x1234}) {
        expectFloatsAndFixed([=](GLfloat *out) { glGetMaterialfv(face, pname, out); },
                             [=](GLfixed *out) { glGetMaterialxv(face, pname, out); }, floats, fixed);
    }
}

void expectLight(GLenum light, GLenum pname, const Floats &floats, const Ints &fixed)
{
    SCOPED_TRACE(pname);
    expectFloatsAndFixed([=](GLfloat *out) { glGetLightfv(light, pname, out); },
                         [=](GLfixed *out) { glGetLightxv(light, pname, out); }, floats, fixed);
}

void expectClipPlane(GLenum plane, const Floats &floats, const Ints &fixed)
{
    SCOPED_TRACE(plane);
    expectFloatsAndFixed([=](GLfloat *out) { glGetClipPlanef(plane, out); },
                         [=](GLfixed *out) { glGetClipPlanex(plane, out); }, floats, fixed);
}

// A query that records an error and writes nothing.
template <typename T>
void expectRefused(const std::function<void(T *)> &query, GLenum error)
{
    expectWritten<T>(query, {});
    EXPECT_EQ(glGetError(), error);
}

} // namespace

TEST_F(ObjectQueries, TexGenModeOfTheActiveUnitIsReadInThreeTypes)
{
    glActiveTexture(GL_TEXTURE1);
    glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, GL_REFLECTION_MAP_OES);
    for (const auto &[unit, mode] : {std::pair{GL_TEXTURE1, GL_REFLECTION_MAP_OES}, {GL_TEXTURE0, GL_NORMAL_MAP_OES}}) {
        glActiveTexture(unit);
        const GLint value = mode;
        const auto str = GL_TEXTURE_GEN_STR_OES;
        const auto name = GL_TEXTURE_GEN_MODE_OES;
        expectWritten<GLint>([=](GLint *out) { glGetTexGenivOES(str, name, out); }, {value});
        expectWritten<GLfloat>([=](GLfloat *out) { glGetTexGenfvOES(str, name, out); }, {GLfloat(value)});
        expectWritten<GLfixed>([=](GLfixed *out) { glGetTexGenxvOES(str, name, out); }, {value});
    }
    expectError(GL_NO_ERROR);
}

TEST_F(ObjectQueries, TexGenOfOtherNamesIsAnInvalidEnum)
{
    const struct {
        GLenum coord, pname;
    } names[] = {{GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_ENV_MODE}, {GL_TEXTURE_2D, GL_TEXTURE_GEN_MODE_OES}, {0, 0}};
    for (const auto &name : names) {
        expectRefused<GLint>([&name](GLint *out) { glGetTexGenivOES(name.coord, name.pname, out); }, GL_INVALID_ENUM);
        expectRefused<GLfloat>([&name](GLfloat *out) { glGetTexGenfvOES(name.coord, name.pname, out); },
                               GL_INVALID_ENUM);
        expectRefused<GLfixed>([&name](GLfixed *out) { glGetTexGenxvOES(name.coord, name.pname, out); },
                               GL_INVALID_ENUM);
    }
}

TEST_F(ObjectQueries, TextureParametersKeptHereAreReadPerTargetAndUnit)
{
    const GLint first[] = {1, -2, 30, -40};
    const GLint second[] = {5, 6, 7, 8};
    for (const GLenum target : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES}) {
        SCOPED_TRACE(target);
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(target, target); // a name of its own
        expectTexParameter(target, GL_TEXTURE_CROP_RECT_OES, {0, 0, 0, 0});
        expectTexParameter(target, GL_GENERATE_MIPMAP, {0});
        glTexParameteriv(target, GL_TEXTURE_CROP_RECT_OES, first);
        const GLint mipmaps = target != GL_TEXTURE_EXTERNAL_OES; // external images have none
        glTexParameteri(target, GL_GENERATE_MIPMAP, mipmaps ? 5 : 0);
        expectTexParameter(target, GL_TEXTURE_CROP_RECT_OES, {1, -2, 30, -40});
        expectTexParameter(target, GL_GENERATE_MIPMAP, {mipmaps});

        glActiveTexture(GL_TEXTURE1);
        glBindTexture(target, target + 100);
        glTexParameterxv(target, GL_TEXTURE_CROP_RECT_OES, second);
        expectTexParameter(target, GL_TEXTURE_CROP_RECT_OES, {5, 6, 7, 8});
        expectTexParameter(target, GL_GENERATE_MIPMAP, {0});
        glActiveTexture(GL_TEXTURE0);
        expectTexParameter(target, GL_TEXTURE_CROP_RECT_OES, {1, -2, 30, -40});
    }
}

TEST_F(ObjectQueries, FiltersAndWrapsAreTheBackends)
{
    static std::vector<std::pair<GLenum, GLenum>> asked;
    asked.clear();
    glGetTexParameteriv_2_0 = [](GLenum target, GLenum pname, GLint *out) {
        asked.emplace_back(target, pname);
        *out = GL_LINEAR_MIPMAP_NEAREST;
    };
    const GLenum names[] = {GL_TEXTURE_MAG_FILTER, GL_TEXTURE_MIN_FILTER, GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T};
    for (const GLenum target : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES}) {
        for (const GLenum pname : names) {
            expectTexParameter(target, pname, {GL_LINEAR_MIPMAP_NEAREST});
            EXPECT_EQ(asked, (std::vector<std::pair<GLenum, GLenum>>(3, {target, pname})));
            asked.clear();
        }
    }
    glGetTexParameteriv_2_0 = nullptr;
    expectTexParameter(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, {});
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>(3, "glGetTexParameteriv_2_0"));
}

TEST_F(ObjectQueries, OtherTextureTargetsAndParametersAreInvalidEnums)
{
    const struct {
        GLenum target, pname;
    } names[] = {{GL_TEXTURE_CUBE_MAP_POSITIVE_X_OES, GL_TEXTURE_WRAP_S},
                 {GL_TEXTURE0, GL_GENERATE_MIPMAP},
                 {GL_TEXTURE_2D, GL_TEXTURE_ENV_MODE},
                 {GL_TEXTURE_2D, GL_TEXTURE_WRAP_T + 1},
                 {GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER - 1}};
    for (const auto &name : names) {
        expectRefused<GLint>([&name](GLint *out) { glGetTexParameteriv(name.target, name.pname, out); },
                             GL_INVALID_ENUM);
        expectRefused<GLfloat>([&name](GLfloat *out) { glGetTexParameterfv(name.target, name.pname, out); },
                               GL_INVALID_ENUM);
        expectRefused<GLfixed>([&name](GLfixed *out) { glGetTexParameterxv(name.target, name.pname, out); },
                               GL_INVALID_ENUM);
    }
    EXPECT_EQ(takeCalls(), std::vector<std::string>(15, "glGetError()")) << "only errors are asked of the backend";
}

TEST_F(ObjectQueries, EveryEnvironmentEnumIsReadBackInEveryType)
{
    struct Setting {
        GLenum pname;
        GLint start; // of unit 1
        std::vector<GLint> values;
    };
    const std::vector<GLint> sources = {GL_TEXTURE,  GL_CONSTANT, GL_PRIMARY_COLOR,
                                        GL_PREVIOUS, GL_TEXTURE0, GL_TEXTURE1};
    const std::vector<GLint> colorOperands = {GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA,
                                              GL_ONE_MINUS_SRC_ALPHA};
    const std::vector<GLint> alphaOperands = {GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA};
    const Setting settings[] = {
        {GL_TEXTURE_ENV_MODE, GL_MODULATE, {GL_DECAL, GL_BLEND, GL_REPLACE, GL_ADD, GL_COMBINE, GL_MODULATE}},
        {GL_COMBINE_RGB,
         GL_MODULATE,
         {GL_REPLACE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE, GL_SUBTRACT, GL_DOT3_RGB, GL_DOT3_RGBA, GL_MODULATE}},
        {GL_COMBINE_ALPHA, GL_MODULATE, {GL_REPLACE, GL_ADD, GL_ADD_SIGNED, GL_INTERPOLATE, GL_SUBTRACT}},
        {GL_SRC0_RGB, GL_TEXTURE1, sources},
        {GL_SRC1_RGB, GL_PREVIOUS, sources},
        {GL_SRC2_RGB, GL_CONSTANT, sources},
        {GL_SRC0_ALPHA, GL_TEXTURE1, sources},
        {GL_SRC1_ALPHA, GL_PREVIOUS, sources},
        {GL_SRC2_ALPHA, GL_CONSTANT, sources},
        {GL_OPERAND0_RGB, GL_SRC_COLOR, colorOperands},
        {GL_OPERAND1_RGB, GL_SRC_COLOR, colorOperands},
        {GL_OPERAND2_RGB, GL_SRC_ALPHA, colorOperands},
        {GL_OPERAND0_ALPHA, GL_SRC_ALPHA, alphaOperands},
        {GL_OPERAND1_ALPHA, GL_SRC_ALPHA, alphaOperands},
        {GL_OPERAND2_ALPHA, GL_SRC_ALPHA, alphaOperands},
    };
    for (const Setting &setting : settings) {
        glActiveTexture(GL_TEXTURE1);
        expectTexEnv(GL_TEXTURE_ENV, setting.pname, {setting.start}, {GLfloat(setting.start)}, {setting.start});
        for (const GLint value : setting.values) {
            glTexEnvi(GL_TEXTURE_ENV, setting.pname, value);
            expectTexEnv(GL_TEXTURE_ENV, setting.pname, {value}, {GLfloat(value)}, {value});
        }
        // The units name their own texture as the first source; everything else starts alike.
        const GLint other = setting.start == GL_TEXTURE1 ? GL_TEXTURE0 : setting.start;
        glActiveTexture(GL_TEXTURE0);
        expectTexEnv(GL_TEXTURE_ENV, setting.pname, {other}, {GLfloat(other)}, {other});
    }
}

TEST_F(ObjectQueries, EnvironmentScalesAreReadAsWholeNumbers)
{
    for (const GLenum pname : {GL_RGB_SCALE, GL_ALPHA_SCALE}) {
        expectTexEnv(GL_TEXTURE_ENV, pname, {1}, {1}, {0x10000});
        for (const GLint scale : {2, 4}) {
            glTexEnvf(GL_TEXTURE_ENV, pname, GLfloat(scale));
            expectTexEnv(GL_TEXTURE_ENV, pname, {scale}, {GLfloat(scale)}, {scale << 16});
        }
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, 2.5f);
    glTexEnvx(GL_TEXTURE_ENV, GL_ALPHA_SCALE, -0x18000);
    expectTexEnv(GL_TEXTURE_ENV, GL_RGB_SCALE, {2}, {2}, {0x20000});
    expectTexEnv(GL_TEXTURE_ENV, GL_ALPHA_SCALE, {-1}, {-1}, {-0x10000});
}

TEST_F(ObjectQueries, TheEnvironmentColourIsReadTruncatedAsStoredAndInFixed)
{
    const GLfloat color[] = {0.5f, 1, 0, 0.25f};
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, color);
    expectTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, {0, 1, 0, 0}, {0.5f, 1, 0, 0.25f}, {0x8000, 0x10000, 0, 0x4000});
    const GLfixed fixed[] = {0x4000, 0x8000, 0xC000, 0x10000};
    glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, fixed);
    expectTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, {0, 0, 0, 1}, {0.25f, 0.5f, 0.75f, 1},
                 {0x4000, 0x8000, 0xC000, 0x10000});
    glActiveTexture(GL_TEXTURE1);
    expectTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0});
}

TEST_F(ObjectQueries, CoordinateReplacementIsReadPerUnit)
{
    expectTexEnv(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, {0}, {0}, {0});
    glTexEnvi(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, GL_TRUE);
    expectTexEnv(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, {1}, {1}, {1});
    glTexEnvf(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, 5.5f);
    expectTexEnv(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, {5}, {5}, {5});
    glActiveTexture(GL_TEXTURE1);
    expectTexEnv(GL_POINT_SPRITE_OES, GL_COORD_REPLACE_OES, {0}, {0}, {0});
}

TEST_F(ObjectQueries, UnknownEnvironmentParametersAreErrorsUnderTheirTargetOnly)
{
    for (const GLenum pname :
         {GLenum(GL_COORD_REPLACE_OES), GLenum(GL_TEXTURE_ENV), GLenum(GL_SRC0_RGB + 3), GLenum(GL_OPERAND2_ALPHA + 1),
          GLenum(GL_OPERAND0_RGB + 3), GLenum(GL_SRC0_ALPHA - 1), GLenum(0)}) {
        SCOPED_TRACE(pname);
        expectRefused<GLint>([=](GLint *out) { glGetTexEnviv(GL_TEXTURE_ENV, pname, out); }, GL_INVALID_ENUM);
        expectRefused<GLfloat>([=](GLfloat *out) { glGetTexEnvfv(GL_TEXTURE_ENV, pname, out); }, GL_INVALID_ENUM);
        expectRefused<GLfixed>([=](GLfixed *out) { glGetTexEnvxv(GL_TEXTURE_ENV, pname, out); }, GL_INVALID_ENUM);
    }
    // Other combinations write nothing and are no error.
    for (const auto &[target, pname] : {std::pair{GL_POINT_SPRITE_OES, GL_TEXTURE_ENV_MODE},
                                        {GL_POINT_SPRITE_OES, GL_TEXTURE_ENV_COLOR},
                                        {GL_TEXTURE_2D, GL_TEXTURE_ENV_MODE},
                                        {0, 0}})
        expectTexEnv(static_cast<GLenum>(target), static_cast<GLenum>(pname), {}, {}, {});
}

TEST_F(ObjectQueries, TheMaterialIsReadBackForEveryFace)
{
    expectMaterial(GL_AMBIENT, {0.2f, 0.2f, 0.2f, 1}, {13107, 13107, 13107, 0x10000});
    expectMaterial(GL_DIFFUSE, {0.8f, 0.8f, 0.8f, 1}, {52428, 52428, 52428, 0x10000});
    expectMaterial(GL_SPECULAR, {0, 0, 0, 1}, {0, 0, 0, 0x10000});
    expectMaterial(GL_EMISSION, {0, 0, 0, 1}, {0, 0, 0, 0x10000});
    expectMaterial(GL_SHININESS, {0}, {0});

    GLfloat value = 0.25f;
    for (const GLenum pname : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION}) {
        const GLfloat color[] = {value, -value, 2 * value, 4};
        const GLint fixed = static_cast<GLint>(value * 65536);
        glMaterialfv(GL_FRONT_AND_BACK, pname, color);
        expectMaterial(pname, Floats(color, color + 4), {fixed, -fixed, 2 * fixed, 0x40000});
        value += 1;
    }
    glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, 0x124000);
    expectMaterial(GL_SHININESS, {18.25f}, {0x124000});
    const GLfloat both[] = {0.5f, 0.5f, 0.5f, 0.5f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, both);
    expectMaterial(GL_AMBIENT, Floats(both, both + 4), {0x8000, 0x8000, 0x8000, 0x8000});
    expectMaterial(GL_DIFFUSE, Floats(both, both + 4), {0x8000, 0x8000, 0x8000, 0x8000});
}

TEST_F(ObjectQueries, ColourMaterialAnswersTheCurrentColourForAmbientAndDiffuse)
{
    glColor4f(0.25f, 0.5f, 0.75f, 1);
    glEnable(GL_COLOR_MATERIAL);
    expectMaterial(GL_AMBIENT, {0.25f, 0.5f, 0.75f, 1}, {0x4000, 0x8000, 0xC000, 0x10000});
    expectMaterial(GL_DIFFUSE, {0.25f, 0.5f, 0.75f, 1}, {0x4000, 0x8000, 0xC000, 0x10000});
    expectMaterial(GL_SPECULAR, {0, 0, 0, 1}, {0, 0, 0, 0x10000});
    glDisable(GL_COLOR_MATERIAL);
    expectMaterial(GL_DIFFUSE, {0.8f, 0.8f, 0.8f, 1}, {52428, 52428, 52428, 0x10000});
}

TEST_F(ObjectQueries, OtherMaterialParametersAreInvalidEnums)
{
    for (const GLenum pname : {GLenum(GL_AMBIENT_AND_DIFFUSE), GLenum(GL_POSITION), GLenum(GL_AMBIENT - 1),
                               GLenum(GL_EMISSION - 1), GLenum(GL_SHININESS + 2)}) {
        expectRefused<GLfloat>([=](GLfloat *out) { glGetMaterialfv(GL_FRONT, pname, out); }, GL_INVALID_ENUM);
        expectRefused<GLfixed>([=](GLfixed *out) { glGetMaterialxv(GL_FRONT, pname, out); }, GL_INVALID_ENUM);
    }
}

TEST_F(ObjectQueries, EveryLightParameterIsReadBack)
{
    for (GLenum light = GL_LIGHT0; light <= GL_LIGHT7; ++light) {
        SCOPED_TRACE(light);
        const GLfloat white = light == GL_LIGHT0 ? 1 : 0;
        const GLint whiteFixed = static_cast<GLint>(white) << 16;
        expectLight(light, GL_AMBIENT, {0, 0, 0, 1}, {0, 0, 0, 0x10000});
        expectLight(light, GL_DIFFUSE, {white, white, white, 1}, {whiteFixed, whiteFixed, whiteFixed, 0x10000});
        expectLight(light, GL_SPECULAR, {white, white, white, 1}, {whiteFixed, whiteFixed, whiteFixed, 0x10000});
        expectLight(light, GL_POSITION, {0, 0, 1, 0}, {0, 0, 0x10000, 0});
        expectLight(light, GL_SPOT_DIRECTION, {0, 0, -1}, {0, 0, -0x10000});
        expectLight(light, GL_SPOT_EXPONENT, {0}, {0});
        expectLight(light, GL_SPOT_CUTOFF, {180}, {180 << 16});
        expectLight(light, GL_CONSTANT_ATTENUATION, {1}, {0x10000});
        expectLight(light, GL_LINEAR_ATTENUATION, {0}, {0});
        expectLight(light, GL_QUADRATIC_ATTENUATION, {0}, {0});

        const GLfloat id = static_cast<GLfloat>(light - GL_LIGHT0);
        const GLint fixedId = static_cast<GLint>(light - GL_LIGHT0) << 16;
        for (const GLenum pname : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_POSITION}) {
            const GLfloat vector[] = {id, 0.5f, -2, 1};
            glLightfv(light, pname, vector);
            expectLight(light, pname, Floats(vector, vector + 4), {fixedId, 0x8000, -0x20000, 0x10000});
        }
        const GLfloat direction[] = {id, 3, -0.25f, 99};
        glLightfv(light, GL_SPOT_DIRECTION, direction);
        expectLight(light, GL_SPOT_DIRECTION, {id, 3, -0.25f}, {fixedId, 0x30000, -0x4000});
        glLightf(light, GL_SPOT_EXPONENT, id + 0.5f);
        expectLight(light, GL_SPOT_EXPONENT, {id + 0.5f}, {fixedId + 0x8000});
        glLightx(light, GL_SPOT_CUTOFF, 0x1E8000);
        expectLight(light, GL_SPOT_CUTOFF, {30.5f}, {0x1E8000});
        for (const GLenum pname : {GL_CONSTANT_ATTENUATION, GL_LINEAR_ATTENUATION, GL_QUADRATIC_ATTENUATION}) {
            glLightf(light, pname, id + 0.75f);
            expectLight(light, pname, {id + 0.75f}, {fixedId + 0xC000});
        }
    }
}

TEST_F(ObjectQueries, LightPositionsAndDirectionsAreReadAsTransformed)
{
    glTranslatef(10, 20, 30);
    glScalef(2, 2, 2);
    const GLfloat position[] = {1, 2, 3, 1};
    const GLfloat direction[] = {0, 0, -1};
    glLightfv(GL_LIGHT2, GL_POSITION, position);
    glLightfv(GL_LIGHT2, GL_SPOT_DIRECTION, direction);
    glLoadIdentity();
    expectLight(GL_LIGHT2, GL_POSITION, {12, 24, 36, 1}, {12 << 16, 24 << 16, 36 << 16, 0x10000});
    GLfloat out[3];
    glGetLightfv(GL_LIGHT2, GL_SPOT_DIRECTION, out);
    EXPECT_EQ(out[0], 0.0f);
    EXPECT_EQ(out[1], 0.0f);
    EXPECT_EQ(out[2], ctx->lighting.lights[2].spotDirection[2]);
    EXPECT_LT(out[2], 0.0f);
}

TEST_F(ObjectQueries, APositionIsReadDividedByItsW)
{
    const GLfloat position[] = {2, 4, -6, 2};
    glLightfv(GL_LIGHT5, GL_POSITION, position);
    expectLight(GL_LIGHT5, GL_POSITION, {1, 2, -3, 2}, {0x10000, 0x20000, -0x30000, 0x20000});
}

TEST_F(ObjectQueries, OtherLightsAndParametersAreInvalidEnums)
{
    const struct {
        GLenum light, pname;
    } names[] = {{GL_LIGHT0 - 1, GL_AMBIENT},
                 {GL_LIGHT7 + 1, GL_AMBIENT},
                 {GL_LIGHT0, GL_AMBIENT - 1},
                 {GL_LIGHT0, GL_QUADRATIC_ATTENUATION + 1},
                 {GL_LIGHT0, GL_SHININESS}};
    for (const auto &name : names) {
        expectRefused<GLfloat>([&name](GLfloat *out) { glGetLightfv(name.light, name.pname, out); }, GL_INVALID_ENUM);
        expectRefused<GLfixed>([&name](GLfixed *out) { glGetLightxv(name.light, name.pname, out); }, GL_INVALID_ENUM);
    }
}

TEST_F(ObjectQueries, ClipPlaneZeroIsInEyeSpaceAndOneAsGiven)
{
    expectClipPlane(GL_CLIP_PLANE0, {0, 0, 0, 0}, {0, 0, 0, 0});
    glTranslatef(0, 0, 4); // the plane z = -0.5 in front of the translation is z = 3.5 in eye space
    const GLfloat plane[] = {0, 0, 1, 0.5f};
    glClipPlanef(GL_CLIP_PLANE0, plane);
    expectClipPlane(GL_CLIP_PLANE0, {0, 0, 1, -3.5f}, {0, 0, 0x10000, -0x38000});
    expectClipPlane(GL_CLIP_PLANE1, {0, 0, 1, 0.5f}, {0, 0, 0x10000, 0x8000});
    for (const GLenum name : {GLenum(GL_CLIP_PLANE2), GLenum(GL_CLIP_PLANE5), GLenum(GL_CLIP_PLANE0 - 1), GLenum(0)}) {
        expectRefused<GLfloat>([=](GLfloat *out) { glGetClipPlanef(name, out); }, GL_INVALID_ENUM);
        expectRefused<GLfixed>([=](GLfixed *out) { glGetClipPlanex(name, out); }, GL_INVALID_ENUM);
    }
}

TEST_F(ObjectQueries, FixedResultsSaturate)
{
    const GLfloat color[] = {32768, -32769, 40000.5f, -1e10f};
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, color);
    expectMaterial(GL_SPECULAR, Floats(color, color + 4), {INT32_MAX, INT32_MIN, INT32_MAX, INT32_MIN});
}

TEST_F(ObjectQueries, EveryArrayPointerIsReadBack)
{
    GLfloat data[8];
    const auto pointer = [](GLenum name) {
        void *value = offsetPointer(0x77);
        glGetPointerv(name, &value);
        return value;
    };
    const GLenum names[] = {GL_VERTEX_ARRAY_POINTER,        GL_NORMAL_ARRAY_POINTER,
                            GL_COLOR_ARRAY_POINTER,         GL_TEXTURE_COORD_ARRAY_POINTER,
                            GL_WEIGHT_ARRAY_POINTER_OES,    GL_MATRIX_INDEX_ARRAY_POINTER_OES,
                            GL_POINT_SIZE_ARRAY_POINTER_OES};
    for (const GLenum name : names)
        EXPECT_EQ(pointer(name), nullptr) << name;
    glVertexPointer(2, GL_FLOAT, 0, data);
    glNormalPointer(GL_FLOAT, 0, data + 1);
    glColorPointer(4, GL_FLOAT, 0, data + 2);
    glTexCoordPointer(2, GL_FLOAT, 0, data + 3);
    glWeightPointerOES(2, GL_FLOAT, 0, data + 4);
    glMatrixIndexPointerOES(2, GL_UNSIGNED_BYTE, 0, data + 5);
    glPointSizePointerOES(GL_FLOAT, 0, data + 6);
    for (size_t i = 0; i < std::size(names); ++i)
        EXPECT_EQ(pointer(names[i]), data + i) << i;

    glClientActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(pointer(GL_TEXTURE_COORD_ARRAY_POINTER), nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 4);
    glTexCoordPointer(2, GL_FLOAT, 0, offsetPointer(48));
    EXPECT_EQ(pointer(GL_TEXTURE_COORD_ARRAY_POINTER), offsetPointer(48)) << "an offset into the buffer";
    glClientActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(pointer(GL_TEXTURE_COORD_ARRAY_POINTER), data + 3);
    expectError(GL_NO_ERROR);

    for (const GLenum name : {GLenum(GL_VERTEX_ARRAY_POINTER - 1), GLenum(GL_COLOR_ARRAY_POINTER + 1),
                              GLenum(GL_TEXTURE_COORD_ARRAY_POINTER + 1), GLenum(0)}) {
        EXPECT_EQ(pointer(name), offsetPointer(0x77));
        expectError(GL_INVALID_ENUM);
    }
}

TEST_F(ObjectQueries, WithoutAContextNothingIsWritten)
{
    os_tls_write(__gl_tls_index, nullptr);
    const auto str = GL_TEXTURE_GEN_STR_OES;
    const auto mode = GL_TEXTURE_GEN_MODE_OES;
    expectWritten<GLint>([=](GLint *out) { glGetTexGenivOES(str, mode, out); }, {});
    expectWritten<GLfloat>([=](GLfloat *out) { glGetTexGenfvOES(str, mode, out); }, {});
    expectWritten<GLfixed>([=](GLfixed *out) { glGetTexGenxvOES(str, mode, out); }, {});
    expectTexParameter(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, {});
    expectTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, {}, {}, {});
    expectMaterial(GL_AMBIENT, {}, {});
    expectLight(GL_LIGHT0, GL_AMBIENT, {}, {});
    expectClipPlane(GL_CLIP_PLANE0, {}, {});
    void *pointer = offsetPointer(0x77);
    glGetPointerv(GL_VERTEX_ARRAY_POINTER, &pointer);
    EXPECT_EQ(pointer, offsetPointer(0x77));
    context->makeCurrent();
    expectError(GL_NO_ERROR);
}

TEST_F(ObjectQueries, QueriesAnswerInInterfaceOnlyMode)
{
    ctx->settings.interfaceOnly = 1;
    expectTexParameter(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, {0});
    expectTexEnv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, {GL_MODULATE}, {GL_MODULATE}, {GL_MODULATE});
    expectMaterial(GL_SHININESS, {0}, {0});
    expectLight(GL_LIGHT0, GL_SPOT_CUTOFF, {180}, {180 << 16});
    expectClipPlane(GL_CLIP_PLANE1, {0, 0, 0, 0}, {0, 0, 0, 0});
    GLint mode = 0;
    GLfloat modeFloat = 0;
    GLfixed modeFixed = 0;
    glGetTexGenivOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &mode);
    glGetTexGenfvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &modeFloat);
    glGetTexGenxvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &modeFixed);
    EXPECT_EQ(mode, ctx->texGen[0].mode);
    EXPECT_EQ(modeFloat, static_cast<GLfloat>(ctx->texGen[0].mode));
    EXPECT_EQ(modeFixed, ctx->texGen[0].mode);
    void *pointer = &mode;
    glGetPointerv(GL_VERTEX_ARRAY_POINTER, &pointer);
    EXPECT_EQ(pointer, nullptr);
    expectRefused<GLfloat>([](GLfloat *out) { glGetLightfv(GL_LIGHT0, 0, out); }, GL_INVALID_ENUM);
}
