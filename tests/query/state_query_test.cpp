// SPDX-License-Identifier: MIT
// The global queries: every name that the library answers, through all four functions and glIsEnabled, at its start
// value and after a change; and every other name, which goes to the backend.
#include "frontend/backend.h"
#include "state/state_test.h"

#include <map>
#include <set>

namespace {

enum class Kind {
    INTEGER,
    FLOAT,
    COLOR,   // as FLOAT, but integers span the whole range
    BACKEND, // integers of the backend
    NOTHING, // answered without a value
};

using Numbers = std::vector<double>;

// One name. All values are dyadic, so that each type holds them exactly or truncates them plainly.
struct StateName {
    const char *text;
    GLenum name;
    Kind kind;
    Numbers start;
    std::function<void()> change; // null when nothing changes the answer
    Numbers changed;
};

constexpr GLfloat kMatrix[16] = {2, 0.5, 0, 0, 0, -3, 0, 0, 0, 0, 4, 0.25, 5, 6, -7.75, 1};
const Numbers kMatrixNumbers(std::begin(kMatrix), std::end(kMatrix));
const Numbers kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// A row for a capability: off, then on.
#define CAPABILITY(name)                                                                                               \
    {                                                                                                                  \
#name, name, Kind::INTEGER, {0 }, [] { glEnable(name); },                                                      \
        {                                                                                                              \
            1                                                                                                          \
        }                                                                                                              \
    }
// A row for a client array's enable.
#define CLIENT_STATE(name)                                                                                             \
    {                                                                                                                  \
#name, name, Kind::INTEGER, {0 }, [] { glEnableClientState(name); },                                           \
        {                                                                                                              \
            1                                                                                                          \
        }                                                                                                              \
    }
#define HINT(name)                                                                                                     \
    {                                                                                                                  \
#name, name, Kind::INTEGER, {GL_DONT_CARE }, [] { glHint(name, GL_NICEST); },                                  \
        {                                                                                                              \
            GL_NICEST                                                                                                  \
        }                                                                                                              \
    }
#define CONSTANT(name, ...)                                                                                            \
    {                                                                                                                  \
#name, name, Kind::INTEGER, {__VA_ARGS__ }, nullptr, {}                                                        \
    }
#define FROM_BACKEND(name, ...)                                                                                        \
    {                                                                                                                  \
#name, name, Kind::BACKEND, {__VA_ARGS__ }, nullptr, {}                                                        \
    }
#define NOTHING(name)                                                                                                  \
    {                                                                                                                  \
#name, name, Kind::NOTHING, {}, nullptr, {}                                                                    \
    }
#define NAMED(name) #name, name

void describeArrays()
{
    glBindBuffer(GL_ARRAY_BUFFER, 21);
    glVertexPointer(3, GL_SHORT, 12, offsetPointer(4));
    glNormalPointer(GL_BYTE, 8, offsetPointer(4));
    glColorPointer(4, GL_UNSIGNED_BYTE, 20, offsetPointer(4));
    glClientActiveTexture(GL_TEXTURE1);
    glTexCoordPointer(2, GL_FIXED, 16, offsetPointer(4));
    glWeightPointerOES(3, GL_FIXED, 24, offsetPointer(4));
    glMatrixIndexPointerOES(3, GL_UNSIGNED_BYTE, 28, offsetPointer(4));
    glPointSizePointerOES(GL_FIXED, 32, offsetPointer(4));
}

void pushTwice(GLenum mode)
{
    glMatrixMode(mode);
    glPushMatrix();
    if (mode != GL_TEXTURE) glPushMatrix();
}

void loadMatrix(GLenum mode)
{
    glMatrixMode(mode);
    glLoadMatrixf(kMatrix);
}

const std::vector<StateName> &stateNames()
{
    using enum Kind;
    // clang-format off
    static const std::vector<StateName> names = {
        {NAMED(GL_CURRENT_COLOR), COLOR, {1, 1, 1, 1}, [] { glColor4f(1, 0, 0.5f, 0.25f); }, {1, 0, 0.5, 0.25}},
        {NAMED(GL_CURRENT_NORMAL), FLOAT, {0, 0, 1, 0}, [] { glNormal3f(-1.5f, 2.75f, 0.5f); }, {-1.5, 2.75, 0.5, 0}},
        {NAMED(GL_CURRENT_TEXTURE_COORDS), FLOAT, {0, 0, 0, 1}, [] { glMultiTexCoord4f(GL_TEXTURE0, -1.5f, 2, 3.25f, 4); }, {-1.5, 2, 3.25, 4}},
        CAPABILITY(GL_POINT_SMOOTH),
        {NAMED(GL_POINT_SIZE), FLOAT, {1}, [] { glPointSize(1.5f); }, {1.5}},
        CONSTANT(GL_SMOOTH_POINT_SIZE_RANGE, 1, 128),
        CAPABILITY(GL_LINE_SMOOTH),
        CONSTANT(GL_SMOOTH_LINE_WIDTH_RANGE, 1, 1),
        CAPABILITY(GL_LIGHTING),
        {NAMED(GL_LIGHT_MODEL_TWO_SIDE), INTEGER, {0}, [] { glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1); }, {1}},
        {NAMED(GL_LIGHT_MODEL_AMBIENT), FLOAT, {0.2f, 0.2f, 0.2f, 1}, [] { const GLfloat v[] = {0.25f, 1, 2.5f, -1}; glLightModelfv(GL_LIGHT_MODEL_AMBIENT, v); }, {0.25, 1, 2.5, -1}},
        {NAMED(GL_SHADE_MODEL), INTEGER, {0x1D01}, [] { glShadeModel(GL_FLAT); }, {0x1D00}},
        CAPABILITY(GL_COLOR_MATERIAL),
        CAPABILITY(GL_FOG),
        {NAMED(GL_FOG_DENSITY), FLOAT, {1}, [] { glFogf(GL_FOG_DENSITY, 0.75f); }, {0.75}},
        {NAMED(GL_FOG_START), FLOAT, {0}, [] { glFogf(GL_FOG_START, -2.5f); }, {-2.5}},
        {NAMED(GL_FOG_END), FLOAT, {1}, [] { glFogf(GL_FOG_END, 100.5f); }, {100.5}},
        {NAMED(GL_FOG_MODE), INTEGER, {0x0800}, [] { glFogf(GL_FOG_MODE, GL_LINEAR); }, {0x2601}},
        {NAMED(GL_FOG_COLOR), COLOR, {0, 0, 0, 0}, [] { const GLfloat v[] = {0.75f, 0.125f, 1, 0}; glFogfv(GL_FOG_COLOR, v); }, {0.75, 0.125, 1, 0}},
        {NAMED(GL_DEPTH_RANGE), FLOAT, {0, 1}, [] { glDepthRangef(0.25f, 0.75f); }, {0.25, 0.75}},
        {NAMED(GL_MATRIX_MODE), INTEGER, {0x1700}, [] { glMatrixMode(GL_TEXTURE); }, {0x1702}},
        CAPABILITY(GL_NORMALIZE),
        {NAMED(GL_VIEWPORT), INTEGER, {0, 0, 64, 48}, [] { glViewport(-1, 2, 30, 40); }, {-1, 2, 30, 40}},
        {NAMED(GL_MODELVIEW_STACK_DEPTH), INTEGER, {1}, [] { pushTwice(GL_MODELVIEW); }, {3}},
        {NAMED(GL_PROJECTION_STACK_DEPTH), INTEGER, {1}, [] { pushTwice(GL_PROJECTION); }, {3}},
        {NAMED(GL_TEXTURE_STACK_DEPTH), INTEGER, {1}, [] { pushTwice(GL_TEXTURE); }, {2}},
        {NAMED(GL_MODELVIEW_MATRIX), FLOAT, kIdentity, [] { loadMatrix(GL_MODELVIEW); }, kMatrixNumbers},
        {NAMED(GL_PROJECTION_MATRIX), FLOAT, kIdentity, [] { loadMatrix(GL_PROJECTION); }, kMatrixNumbers},
        {NAMED(GL_TEXTURE_MATRIX), FLOAT, kIdentity, [] { loadMatrix(GL_TEXTURE); }, kMatrixNumbers},
        CAPABILITY(GL_ALPHA_TEST),
        {NAMED(GL_ALPHA_TEST_FUNC), INTEGER, {0x0207}, [] { glAlphaFunc(GL_LESS, 0); }, {0x0201}},
        {NAMED(GL_ALPHA_TEST_REF), COLOR, {0}, [] { glAlphaFunc(GL_LESS, 0.5f); }, {0.5}},
        FROM_BACKEND(GL_BLEND_DST, 0x80C8), // asked as GL_BLEND_DST_RGB
        FROM_BACKEND(GL_BLEND_SRC, 0x80C9), // asked as GL_BLEND_SRC_RGB
        FROM_BACKEND(GL_LOGIC_OP_MODE, GL_LOGIC_OP_MODE),
        FROM_BACKEND(GL_COLOR_LOGIC_OP, GL_COLOR_LOGIC_OP),
        HINT(GL_PERSPECTIVE_CORRECTION_HINT),
        HINT(GL_POINT_SMOOTH_HINT),
        HINT(GL_LINE_SMOOTH_HINT),
        HINT(GL_FOG_HINT),
        CONSTANT(GL_MAX_LIGHTS, 8),
        CONSTANT(GL_MAX_CLIP_PLANES, 1),
        FROM_BACKEND(GL_MAX_TEXTURE_SIZE, GL_MAX_TEXTURE_SIZE),
        CONSTANT(GL_MAX_MODELVIEW_STACK_DEPTH, 16),
        CONSTANT(GL_MAX_PROJECTION_STACK_DEPTH, 4),
        CONSTANT(GL_MAX_TEXTURE_STACK_DEPTH, 2),
        FROM_BACKEND(GL_MAX_VIEWPORT_DIMS, GL_MAX_VIEWPORT_DIMS, GL_MAX_VIEWPORT_DIMS + 1),
        CONSTANT(GL_SUBPIXEL_BITS, 2),
        CAPABILITY(GL_TEXTURE_2D),
        CAPABILITY(GL_CLIP_PLANE0),
        NOTHING(GL_CLIP_PLANE1), NOTHING(GL_CLIP_PLANE2), NOTHING(GL_CLIP_PLANE3), NOTHING(GL_CLIP_PLANE4), NOTHING(GL_CLIP_PLANE5),
        CAPABILITY(GL_LIGHT0), CAPABILITY(GL_LIGHT1), CAPABILITY(GL_LIGHT2), CAPABILITY(GL_LIGHT3),
        CAPABILITY(GL_LIGHT4), CAPABILITY(GL_LIGHT5), CAPABILITY(GL_LIGHT6), CAPABILITY(GL_LIGHT7),
        CAPABILITY(GL_RESCALE_NORMAL),
        CLIENT_STATE(GL_VERTEX_ARRAY), CLIENT_STATE(GL_NORMAL_ARRAY), CLIENT_STATE(GL_COLOR_ARRAY), CLIENT_STATE(GL_TEXTURE_COORD_ARRAY),
        {NAMED(GL_VERTEX_ARRAY_SIZE), INTEGER, {4}, describeArrays, {3}},
        {NAMED(GL_VERTEX_ARRAY_TYPE), INTEGER, {GL_FLOAT}, describeArrays, {GL_SHORT}},
        {NAMED(GL_VERTEX_ARRAY_STRIDE), INTEGER, {0}, describeArrays, {12}},
        {NAMED(GL_NORMAL_ARRAY_TYPE), INTEGER, {GL_FLOAT}, describeArrays, {GL_BYTE}},
        {NAMED(GL_NORMAL_ARRAY_STRIDE), INTEGER, {0}, describeArrays, {8}},
        {NAMED(GL_COLOR_ARRAY_SIZE), INTEGER, {4}, [] { glColorPointer(4, GL_FIXED, 0, nullptr); }, {4}}, // ES knows no other
        {NAMED(GL_COLOR_ARRAY_TYPE), INTEGER, {GL_FLOAT}, describeArrays, {GL_UNSIGNED_BYTE}},
        {NAMED(GL_COLOR_ARRAY_STRIDE), INTEGER, {0}, describeArrays, {20}},
        {NAMED(GL_TEXTURE_COORD_ARRAY_SIZE), INTEGER, {4}, describeArrays, {2}},
        {NAMED(GL_TEXTURE_COORD_ARRAY_TYPE), INTEGER, {GL_FLOAT}, describeArrays, {GL_FIXED}},
        {NAMED(GL_TEXTURE_COORD_ARRAY_STRIDE), INTEGER, {0}, describeArrays, {16}},
        CAPABILITY(GL_SAMPLE_ALPHA_TO_ONE),
        {NAMED(GL_POINT_SIZE_MIN), FLOAT, {0}, [] { glPointParameterf(GL_POINT_SIZE_MIN, 2.5f); }, {2.5}},
        {NAMED(GL_POINT_SIZE_MAX), FLOAT, {128}, [] { glPointParameterf(GL_POINT_SIZE_MAX, 64.25f); }, {64.25}},
        {NAMED(GL_POINT_FADE_THRESHOLD_SIZE), FLOAT, {1}, [] { glPointParameterf(GL_POINT_FADE_THRESHOLD_SIZE, 0.5f); }, {0.5}},
        {NAMED(GL_POINT_DISTANCE_ATTENUATION), FLOAT, {1, 0, 0}, [] { const GLfloat v[] = {0.5f, 2, 3.75f}; glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, v); }, {0.5, 2, 3.75}},
        HINT(GL_GENERATE_MIPMAP_HINT),
        CONSTANT(GL_ALIASED_POINT_SIZE_RANGE, 1, 128),
        CONSTANT(GL_ALIASED_LINE_WIDTH_RANGE, 1, 1),
        {NAMED(GL_ACTIVE_TEXTURE), INTEGER, {0x84C0}, [] { glActiveTexture(GL_TEXTURE1); }, {0x84C1}},
        {NAMED(GL_CLIENT_ACTIVE_TEXTURE), INTEGER, {0x84C0}, [] { glClientActiveTexture(GL_TEXTURE1); }, {0x84C1}},
        CONSTANT(GL_MAX_TEXTURE_UNITS, 2),
        CAPABILITY(GL_TEXTURE_CUBE_MAP_OES),
        CONSTANT(GL_MAX_CUBE_MAP_TEXTURE_SIZE_OES, 1024),
        CONSTANT(GL_NUM_COMPRESSED_TEXTURE_FORMATS, 10),
        CONSTANT(GL_COMPRESSED_TEXTURE_FORMATS, 0x8B90, 0x8B91, 0x8B92, 0x8B93, 0x8B94, 0x8B95, 0x8B96, 0x8B97, 0x8B98, 0x8B99),
        CONSTANT(GL_MAX_VERTEX_UNITS_OES, 4),
        {NAMED(GL_WEIGHT_ARRAY_TYPE_OES), INTEGER, {GL_FLOAT}, describeArrays, {GL_FIXED}},
        {NAMED(GL_WEIGHT_ARRAY_STRIDE_OES), INTEGER, {0}, describeArrays, {24}},
        {NAMED(GL_WEIGHT_ARRAY_SIZE_OES), INTEGER, {4}, describeArrays, {3}},
        CLIENT_STATE(GL_WEIGHT_ARRAY_OES),
        CAPABILITY(GL_MATRIX_PALETTE_OES),
        CONSTANT(GL_MAX_PALETTE_MATRICES_OES, 20),
        {NAMED(GL_CURRENT_PALETTE_MATRIX_OES), INTEGER, {0}, [] { glCurrentPaletteMatrixOES(19); }, {19}},
        CLIENT_STATE(GL_MATRIX_INDEX_ARRAY_OES),
        {NAMED(GL_MATRIX_INDEX_ARRAY_SIZE_OES), INTEGER, {4}, describeArrays, {3}},
        {NAMED(GL_MATRIX_INDEX_ARRAY_TYPE_OES), INTEGER, {GL_FLOAT}, describeArrays, {GL_UNSIGNED_BYTE}},
        {NAMED(GL_MATRIX_INDEX_ARRAY_STRIDE_OES), INTEGER, {0}, describeArrays, {28}},
        CAPABILITY(GL_POINT_SPRITE_OES),
        {NAMED(GL_ARRAY_BUFFER_BINDING), INTEGER, {0}, [] { glBindBuffer(GL_ARRAY_BUFFER, 300); }, {300}},
        {NAMED(GL_ELEMENT_ARRAY_BUFFER_BINDING), INTEGER, {0}, [] { glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 2); }, {2}},
        {NAMED(GL_VERTEX_ARRAY_BUFFER_BINDING), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_NORMAL_ARRAY_BUFFER_BINDING), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_COLOR_ARRAY_BUFFER_BINDING), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_WEIGHT_ARRAY_BUFFER_BINDING_OES), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_POINT_SIZE_ARRAY_TYPE_OES), INTEGER, {GL_FLOAT}, describeArrays, {GL_FIXED}},
        {NAMED(GL_POINT_SIZE_ARRAY_STRIDE_OES), INTEGER, {0}, describeArrays, {32}},
        CLIENT_STATE(GL_POINT_SIZE_ARRAY_OES),
        {NAMED(GL_MATRIX_INDEX_ARRAY_BUFFER_BINDING_OES), INTEGER, {0}, describeArrays, {21}},
        {NAMED(GL_POINT_SIZE_ARRAY_BUFFER_BINDING_OES), INTEGER, {0}, describeArrays, {21}},
        {"alpha factor", 0x8C9F, INTEGER, {0}, [] { glEnable(0x8C9F); }, {1}},
        CAPABILITY(GL_TEXTURE_GEN_STR_OES),
        CAPABILITY(GL_TEXTURE_EXTERNAL_OES),
    };
    // clang-format on
    return names;
}

// The backend as these tests see it: integer queries are answered with the name and its successor, the other queries
// are recorded.
struct Asked {
    std::string function;
    GLenum name;
    const void *out;
    bool operator==(const Asked &) const = default;
};
std::vector<Asked> asked;

void backendIntegers(GLenum name, GLint *out)
{
    asked.push_back({"integer", name, out});
    out[0] = static_cast<GLint>(name);
    if (name == GL_MAX_VIEWPORT_DIMS) out[1] = static_cast<GLint>(name) + 1;
}

class StateQueries : public StateTest {
protected:
    StateQueries()
    {
        watchBackend();
    }

    void watchBackend()
    {
        asked.clear();
        glGetIntegerv_2_0 = backendIntegers;
        glGetBooleanv_2_0 = [](GLenum name, GLboolean *out) { asked.push_back({"boolean", name, out}); };
        glGetFloatv_2_0 = [](GLenum name, GLfloat *out) { asked.push_back({"float", name, out}); };
        glGetFixedvQRN_2_0 = [](GLenum name, GLfixed *out) { asked.push_back({"fixed", name, out}); };
        glIsEnabled_2_0 = [](GLenum name) {
            asked.push_back({"enabled", name, nullptr});
            return GLboolean(GL_TRUE);
        };
    }

    void freshContext()
    {
        startOver();
        watchBackend();
    }
};

// Integer and fixed-point results of a float state value of the tests.
GLint truncated(double value)
{
    return static_cast<GLint>(value);
}

GLfixed inFixed(double value)
{
    return static_cast<GLfixed>(value * 65536);
}

GLint integerResult(Kind kind, double value)
{
    if (kind != Kind::COLOR) return truncated(value);
    return value == 1 ? 2147483647 : truncated(value * 2147483648.0);
}

GLfixed fixedResult(Kind kind, double value)
{
    // Integers lose their upper half.
    if (kind == Kind::INTEGER || kind == Kind::BACKEND)
        return static_cast<GLfixed>(static_cast<uint32_t>(static_cast<int64_t>(value)) << 16);
    return inFixed(value);
}

GLboolean booleanResult(Kind kind, double value)
{
    return kind == Kind::INTEGER || kind == Kind::BACKEND ? value != 0 : value > 0;
}

// Values of one query: exactly those expected, nothing behind them.
template <typename T, typename Query, typename Convert>
void expectQuery(Query query, GLenum name, const Numbers &expected, Convert convert)
{
    constexpr size_t kRoom = 24;
    std::vector<T> out(kRoom, static_cast<T>(0x5A));
    std::vector<T> wanted = out;
    for (size_t i = 0; i < expected.size(); ++i)
        wanted[i] = convert(expected[i]);
    query(name, out.data());
    EXPECT_EQ(out, wanted);
}

void expectAnswers(const StateName &state, const Numbers &expected)
{
    asked.clear();
    const Kind kind = state.kind;
    {
        SCOPED_TRACE("boolean");
        expectQuery<GLboolean>(glGetBooleanv, state.name, expected, [&](double v) { return booleanResult(kind, v); });
    }
    {
        SCOPED_TRACE("integer");
        expectQuery<GLint>(glGetIntegerv, state.name, expected, [&](double v) { return integerResult(kind, v); });
    }
    {
        SCOPED_TRACE("float");
        expectQuery<GLfloat>(glGetFloatv, state.name, expected, [](double v) { return static_cast<GLfloat>(v); });
    }
    {
        SCOPED_TRACE("fixed");
        expectQuery<GLfixed>(glGetFixedv, state.name, expected, [&](double v) { return fixedResult(kind, v); });
    }
    const GLboolean enabled = !expected.empty() && booleanResult(kind, expected[0]);
    EXPECT_EQ(glIsEnabled(state.name), enabled);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));

    // Only these ask the backend: for integers, once per query.
    for (const Asked &question : asked)
        EXPECT_EQ(question.function, "integer");
    EXPECT_EQ(asked.size(), kind == Kind::BACKEND ? 5u : 0u);
}

std::set<GLenum> ownNames()
{
    std::set<GLenum> names;
    for (const StateName &state : stateNames())
        names.insert(state.name);
    return names;
}

} // namespace

TEST_F(StateQueries, EveryAnsweredNameIsInThisTable)
{
    std::set<GLenum> listed;
#define QUERY_INTEGER(name, value) listed.insert(name);
#define QUERY_INTEGERS(name, number, ...) listed.insert(name);
#define QUERY_FLOATS(name, number, pointer) listed.insert(name);
#define QUERY_COLORS(name, number, pointer) listed.insert(name);
#define QUERY_BACKEND(name, number, asked) listed.insert(name);
#define QUERY_NOTHING(name) listed.insert(name);
#include "query/state_names.def"
    EXPECT_EQ(ownNames(), listed);
    EXPECT_EQ(ownNames().size(), stateNames().size()) << "a name stands twice";
}

TEST_F(StateQueries, EveryNameAnswersItsStartValueInEveryType)
{
    for (const StateName &state : stateNames()) {
        SCOPED_TRACE(state.text);
        freshContext();
        expectAnswers(state, state.start);
    }
}

TEST_F(StateQueries, EveryNameAnswersItsNewValueInEveryType)
{
    size_t changes = 0;
    for (const StateName &state : stateNames()) {
        if (!state.change) continue;
        SCOPED_TRACE(state.text);
        freshContext();
        state.change();
        expectAnswers(state, state.changed);
        ++changes;
    }
    EXPECT_GT(changes, 80u);
}

TEST_F(StateQueries, AnswersStayAfterDraws)
{
    const GLfloat triangle[] = {0, 0, 1, 0, 0, 1};
    for (const StateName &state : stateNames()) {
        SCOPED_TRACE(state.text);
        freshContext();
        if (state.change) state.change();
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        if (!ctx->arrays.vertex.buffer) glVertexPointer(2, GL_FLOAT, 0, triangle);
        glDrawArrays(GL_TRIANGLES, 0, 3);
        glDrawTexfOES(0, 0, 0, 4, 4);
        if (state.name == GL_ARRAY_BUFFER_BINDING || state.name == GL_VERTEX_ARRAY_SIZE) continue; // set above
        expectAnswers(state, state.change ? state.changed : state.start);
    }
}

TEST_F(StateQueries, EveryOtherNameGoesToTheBackendUnchanged)
{
    const std::set<GLenum> own = ownNames();
    GLint integers[16];
    GLboolean booleans[16];
    GLfloat floats[16];
    GLfixed fixed[16];
    for (GLenum name = 0; name <= 0x10000; ++name) {
        if (own.count(name)) continue;
        asked.clear();
        glGetBooleanv(name, booleans);
        glGetIntegerv(name, integers);
        glGetFloatv(name, floats);
        glGetFixedv(name, fixed);
        const GLboolean enabled = glIsEnabled(name);
        const std::vector<Asked> expected = {{"boolean", name, booleans},
                                             {"integer", name, integers},
                                             {"float", name, floats},
                                             {"fixed", name, fixed},
                                             {"enabled", name, nullptr}};
        ASSERT_EQ(asked == expected, true) << "name " << name;
        ASSERT_EQ(enabled, GL_TRUE);
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(StateQueries, TheDevicesAlphaTestAnswersItsOwnNames)
{
    useVendorBackend();
    watchBackend();
    GLint integers[1];
    GLboolean booleans[1];
    GLfloat floats[1];
    GLfixed fixed[1];
    for (const GLenum name : {GL_ALPHA_TEST, GL_ALPHA_TEST_FUNC, GL_ALPHA_TEST_REF}) {
        asked.clear();
        glGetBooleanv(name, booleans);
        glGetIntegerv(name, integers);
        glGetFloatv(name, floats);
        glGetFixedv(name, fixed);
        EXPECT_EQ(asked, (std::vector<Asked>{{"boolean", name, booleans},
                                             {"integer", name, integers},
                                             {"float", name, floats},
                                             {"fixed", name, fixed}}));
    }
    // Of the three only the capability is asked by glIsEnabled.
    asked.clear();
    EXPECT_EQ(glIsEnabled(GL_ALPHA_TEST), GL_TRUE);
    EXPECT_EQ(glIsEnabled(GL_ALPHA_TEST_FUNC), GL_TRUE); // GL_ALWAYS is not 0
    EXPECT_EQ(glIsEnabled(GL_ALPHA_TEST_REF), GL_FALSE);
    EXPECT_EQ(asked, (std::vector<Asked>{{"enabled", GL_ALPHA_TEST, nullptr}}));
    // The names beside them are ours all the same.
    asked.clear();
    glGetIntegerv(GL_TEXTURE_STACK_DEPTH, integers);
    EXPECT_EQ(integers[0], 1);
    EXPECT_EQ(asked, std::vector<Asked>{});
}

TEST_F(StateQueries, PerUnitNamesFollowTheActiveUnits)
{
    const auto integer = [](GLenum name) {
        GLint value = -1;
        glGetIntegerv(name, &value);
        return value;
    };
    const auto firstFloat = [](GLenum name) {
        GLfloat values[16];
        glGetFloatv(name, values);
        return values[0];
    };
    glActiveTexture(GL_TEXTURE1);
    for (const GLenum name : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES, GL_TEXTURE_GEN_STR_OES})
        glEnable(name);
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glScalef(3, 3, 3);
    glMultiTexCoord4f(GL_TEXTURE1, 7, 0, 0, 1);
    for (const GLenum name :
         {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP_OES, GL_TEXTURE_EXTERNAL_OES, GL_TEXTURE_GEN_STR_OES}) {
        glActiveTexture(GL_TEXTURE1);
        EXPECT_EQ(integer(name), 1) << name;
        EXPECT_EQ(glIsEnabled(name), GL_TRUE) << name;
        glActiveTexture(GL_TEXTURE0);
        EXPECT_EQ(integer(name), 0) << name;
        EXPECT_EQ(glIsEnabled(name), GL_FALSE) << name;
    }
    EXPECT_EQ(integer(GL_TEXTURE_STACK_DEPTH), 1);
    EXPECT_EQ(firstFloat(GL_TEXTURE_MATRIX), 1.0f);
    EXPECT_EQ(firstFloat(GL_CURRENT_TEXTURE_COORDS), 0.0f);
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(integer(GL_TEXTURE_STACK_DEPTH), 2);
    EXPECT_EQ(firstFloat(GL_TEXTURE_MATRIX), 3.0f);
    EXPECT_EQ(firstFloat(GL_CURRENT_TEXTURE_COORDS), 7.0f);

    // Array names follow the client unit.
    glBindBuffer(GL_ARRAY_BUFFER, 9);
    glClientActiveTexture(GL_TEXTURE1);
    glTexCoordPointer(3, GL_BYTE, 5, nullptr);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(integer(GL_TEXTURE_COORD_ARRAY_SIZE), 3);
    EXPECT_EQ(integer(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING), 9);
    glClientActiveTexture(GL_TEXTURE0);
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(integer(GL_TEXTURE_COORD_ARRAY_SIZE), 4);
    EXPECT_EQ(integer(GL_TEXTURE_COORD_ARRAY), 0);
    EXPECT_EQ(integer(GL_TEXTURE_COORD_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(StateQueries, AnUnansweredCapabilityLeavesTheOutputAlone)
{
    GLint value = 77;
    glGetIntegerv(GL_CLIP_PLANE3, &value);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(glIsEnabled(GL_CLIP_PLANE3), GL_FALSE);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(asked, std::vector<Asked>{});
}

TEST_F(StateQueries, IsEnabledOfAMatrixIsItsFirstElement)
{
    glLoadMatrixf(kMatrix);
    EXPECT_EQ(glIsEnabled(GL_MODELVIEW_MATRIX), GL_TRUE);
    glScalef(-1, 1, 1);
    EXPECT_EQ(glIsEnabled(GL_MODELVIEW_MATRIX), GL_FALSE) << "-2 is not above zero";
}

TEST_F(StateQueries, ListedExamples)
{
    GLint integers[4];
    glColor4f(1, 0, 0.5f, 1);
    glGetIntegerv(GL_CURRENT_COLOR, integers);
    EXPECT_EQ((std::vector<GLint>(integers, integers + 4)),
              (std::vector<GLint>{2147483647, 0, 1073741824, 2147483647}));
    glColor4f(-1, 2, -0.5f, 0.1f);
    glGetIntegerv(GL_CURRENT_COLOR, integers);
    // 0.1f x 2^32 is 429496736 and nothing is left of the 1 in single precision.
    EXPECT_EQ((std::vector<GLint>(integers, integers + 4)),
              (std::vector<GLint>{INT32_MIN, INT32_MAX, -1073741824, 214748368}));

    glFogf(GL_FOG_DENSITY, 0.7f);
    glGetIntegerv(GL_FOG_DENSITY, integers);
    EXPECT_EQ(integers[0], 0);
    GLboolean range[2];
    glGetBooleanv(GL_DEPTH_RANGE, range);
    EXPECT_EQ(range[0], GL_FALSE);
    EXPECT_EQ(range[1], GL_TRUE);
    glPointSize(1.5f);
    GLfixed size;
    glGetFixedv(GL_POINT_SIZE, &size);
    EXPECT_EQ(size, 0x18000);
    const GLfloat ambient[] = {0.2f, 0.2f, 0.2f, 1};
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, ambient);
    glGetIntegerv(GL_LIGHT_MODEL_AMBIENT, integers);
    EXPECT_EQ(integers[0], 0);
    EXPECT_EQ(integers[3], 1);
}

TEST_F(StateQueries, StackDepthsAnswerUpToTheirLimits)
{
    const std::pair<GLenum, GLenum> stacks[] = {{GL_MODELVIEW, GL_MODELVIEW_STACK_DEPTH},
                                                {GL_PROJECTION, GL_PROJECTION_STACK_DEPTH},
                                                {GL_TEXTURE, GL_TEXTURE_STACK_DEPTH}};
    const GLint limits[] = {16, 4, 2};
    for (size_t i = 0; i < 3; ++i) {
        glMatrixMode(stacks[i].first);
        for (GLint depth = 1; depth < limits[i]; ++depth)
            glPushMatrix();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        GLint depth;
        glGetIntegerv(stacks[i].second, &depth);
        EXPECT_EQ(depth, limits[i]);
        glPushMatrix();
        EXPECT_EQ(glGetError(), GLenum(GL_STACK_OVERFLOW));
        glGetIntegerv(stacks[i].second, &depth);
        EXPECT_EQ(depth, limits[i]);
    }
}

TEST_F(StateQueries, AMatrixWithoutItsFloatFormIsAnAssertion)
{
    const std::pair<GLenum, uint32_t> matrices[] = {{GL_MODELVIEW_MATRIX, STACK_MODELVIEW},
                                                    {GL_PROJECTION_MATRIX, STACK_PROJECTION},
                                                    {GL_TEXTURE_MATRIX, STACK_TEXTURE0}};
    for (const auto &[name, stack] : matrices) {
        GLfloat values[16];
        glGetFloatv(name, values);
        EXPECT_TRUE(fakePlatform().assertions.empty()) << stack;
        ctx->transform.top[stack]->flags &= ~static_cast<uint32_t>(MATRIX_FLOAT);
        glGetFloatv(name, values);
        EXPECT_EQ(fakePlatform().assertions.size(), 1u) << stack;
        fakePlatform().assertions.clear();
        ctx->transform.top[stack]->flags |= MATRIX_FLOAT;
    }
}

TEST_F(StateQueries, WithoutTheBackendsFunctionAQueryIsAnAssertionAndWritesNothing)
{
    GLint integer = 5;
    GLboolean boolean = 5;
    GLfloat number = 5;
    glGetBooleanv_2_0 = nullptr;
    glGetIntegerv_2_0 = nullptr;
    glGetFloatv_2_0 = nullptr;
    glIsEnabled_2_0 = nullptr;
    glGetBooleanv(GL_FOG, &boolean);
    glGetIntegerv(GL_FOG, &integer);
    glGetFloatv(GL_FOG, &number);
    EXPECT_EQ(glIsEnabled(GL_FOG), GL_FALSE);
    EXPECT_EQ(fakePlatform().assertions, (std::vector<std::string>{"glGetBooleanv_2_0", "glGetIntegerv_2_0",
                                                                   "glGetFloatv_2_0", "glIsEnabled_2_0"}));
    EXPECT_EQ(boolean, 5);
    EXPECT_EQ(integer, 5);
    EXPECT_EQ(number, 5.0f);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(StateQueries, FixedQueriesOfTheBackendNeedItsVendorFunction)
{
    glGetFixedvQRN_2_0 = nullptr;
    GLfixed value = 5;
    glGetFixedv(GL_DEPTH_BITS, &value);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    glGetFixedv(GL_FOG_DENSITY, &value); // one of ours
    EXPECT_EQ(value, 0x10000);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>{});
}

TEST_F(StateQueries, WithoutAContextNothingIsAnswered)
{
    os_tls_write(__gl_tls_index, nullptr);
    GLint integer = 5;
    GLboolean boolean = 5;
    GLfloat number = 5;
    GLfixed fixed = 5;
    for (const GLenum name : {GL_FOG, GL_DEPTH_TEST}) {
        glGetBooleanv(name, &boolean);
        glGetIntegerv(name, &integer);
        glGetFloatv(name, &number);
        glGetFixedv(name, &fixed);
        EXPECT_EQ(glIsEnabled(name), GL_FALSE);
    }
    EXPECT_EQ(boolean, 5);
    EXPECT_EQ(integer, 5);
    EXPECT_EQ(number, 5.0f);
    EXPECT_EQ(fixed, 5);
    EXPECT_EQ(glGetString(GL_VENDOR), nullptr);
    EXPECT_EQ(asked, std::vector<Asked>{});
    context->makeCurrent();
}

TEST_F(StateQueries, StringsAreFixed)
{
    const auto text = [](GLenum name) { return std::string(reinterpret_cast<const char *>(glGetString(name))); };
    EXPECT_EQ(text(GL_VENDOR), "Quorvane, Inc.");
    EXPECT_EQ(text(GL_RENDERER), "QRN N614");
    EXPECT_EQ(text(GL_VERSION), "OpenGL ES-CM 1.1");
    EXPECT_EQ(text(GL_EXTENSIONS),
              "GL_QRN_compressed_R2X_texture GL_QRN_compressed_ZTC_texture GL_QRN_performance_monitor "
              "GL_ZEK_compressed_texture_zektc GL_ZEK_texture_compression_zektc GL_OES_blend_equation_separate "
              "GL_OES_blend_func_separate GL_OES_blend_subtract GL_OES_compressed_ETC1_RGB8_texture "
              "GL_OES_compressed_paletted_texture GL_OES_draw_texture GL_OES_extended_matrix_palette "
              "GL_OES_EGL_image GL_OES_EGL_image_external GL_OES_framebuffer_object GL_OES_matrix_palette "
              "GL_OES_point_size_array GL_OES_point_sprite GL_OES_read_format GL_OES_stencil_wrap "
              "GL_OES_texture_cube_map GL_OES_texture_env_crossbar GL_OES_texture_mirrored_repeat ");
    EXPECT_EQ(glGetString(GL_VENDOR), glGetString(GL_VENDOR)) << "static";
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    for (const GLenum name : {GLenum(GL_VENDOR - 1), GLenum(GL_EXTENSIONS + 1), GLenum(GL_SHADING_LANGUAGE_VERSION)}) {
        EXPECT_EQ(glGetString(name), nullptr);
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    }
}
