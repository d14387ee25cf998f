// SPDX-License-Identifier: MIT
// Interface-only mode, by which the cost of the library is measured: state-keeping entry points and draws return at
// once, everything that goes straight to the backend still does. Each exported entry point is in one of the lists here.
#include "frontend/backend.h"
#include "settings/entry_points.h"
#include "state/state_test.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

const GLfloat kFloats[16] = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1};
const GLfixed kFixed[16] = {0x20000, 0, 0, 0, 0, 0x30000, 0, 0, 0, 0, 0x40000, 0, 0x50000, 0x60000, 0x70000, 0x10000};
const GLint kInts[4] = {1, 2, 3, 4};
const GLshort kShorts[5] = {1, 2, 3, 4, 5};
const GLint kCombine = GL_COMBINE;
const GLfloat kCombineFloat = GL_COMBINE;
const GLint kReflection = GL_REFLECTION_MAP_OES;
const GLfloat kReflectionFloat = GL_REFLECTION_MAP_OES;
const GLfloat kLinear = GL_LINEAR;
GLuint someName = 3;

// Entry points that do nothing in interface-only mode, each with a call that does something otherwise: changes the
// state, calls the backend or records an error.
const std::map<std::string, std::function<void()>> &inertCalls()
{
    // clang-format off
    static const std::map<std::string, std::function<void()>> calls = {
        {"glMatrixMode", [] { glMatrixMode(GL_PROJECTION); }},
        {"glPushMatrix", [] { glPushMatrix(); }},
        {"glPopMatrix", [] { glPopMatrix(); }}, // underflow
        {"glLoadIdentity", [] { glLoadIdentity(); }},
        {"glLoadMatrixf", [] { glLoadMatrixf(kFloats); }},
        {"glLoadMatrixx", [] { glLoadMatrixx(kFixed); }},
        {"glMultMatrixf", [] { glMultMatrixf(kFloats); }},
        {"glMultMatrixx", [] { glMultMatrixx(kFixed); }},
        {"glRotatef", [] { glRotatef(30, 0, 0, 1); }},
        {"glRotatex", [] { glRotatex(0x1E0000, 0, 0, 0x10000); }},
        {"glTranslatef", [] { glTranslatef(1, 2, 3); }},
        {"glTranslatex", [] { glTranslatex(1, 2, 3); }},
        {"glScalef", [] { glScalef(1, 2, 3); }},
        {"glScalex", [] { glScalex(1, 2, 3); }},
        {"glOrthof", [] { glOrthof(0, 1, 0, 1, 0, 1); }},
        {"glOrthox", [] { glOrthox(0, 0x10000, 0, 0x10000, 0, 0x10000); }},
        {"glFrustumf", [] { glFrustumf(0, 1, 0, 1, 1, 2); }},
        {"glFrustumx", [] { glFrustumx(0, 0x10000, 0, 0x10000, 0x10000, 0x20000); }},
        {"glMultMatrixfWithHintZEK", [] { glMultMatrixfWithHintZEK(kFloats, 1); }},
        {"glLoadMatrixfWithHintZEK", [] { glLoadMatrixfWithHintZEK(kFloats, 1); }},

        {"glVertexPointer", [] { glVertexPointer(2, GL_FLOAT, 0, kFloats); }},
        {"glNormalPointer", [] { glNormalPointer(GL_BYTE, 0, kFloats); }},
        {"glColorPointer", [] { glColorPointer(4, GL_FLOAT, 0, kFloats); }},
        {"glTexCoordPointer", [] { glTexCoordPointer(2, GL_FLOAT, 0, kFloats); }},
        {"glPointSizePointerOES", [] { glPointSizePointerOES(GL_FLOAT, 0, kFloats); }},
        {"glWeightPointerOES", [] { glWeightPointerOES(2, GL_FLOAT, 0, kFloats); }},
        {"glMatrixIndexPointerOES", [] { glMatrixIndexPointerOES(2, GL_UNSIGNED_BYTE, 0, kFloats); }},
        {"glEnableClientState", [] { glEnableClientState(GL_COLOR_ARRAY); }},
        {"glDisableClientState", [] { glDisableClientState(GL_LIGHTING); }}, // invalid
        {"glClientActiveTexture", [] { glClientActiveTexture(GL_TEXTURE1); }},
        {"glActiveTexture", [] { glActiveTexture(GL_TEXTURE1); }},
        {"glColor4f", [] { glColor4f(0, 0.25f, 0.5f, 1); }},
        {"glColor4ub", [] { glColor4ub(0, 1, 2, 3); }},
        {"glColor4x", [] { glColor4x(0, 0x4000, 0x8000, 0x10000); }},
        {"glMultiTexCoord4f", [] { glMultiTexCoord4f(GL_TEXTURE0, 1, 2, 3, 4); }},
        {"glMultiTexCoord4x", [] { glMultiTexCoord4x(GL_TEXTURE0, 1, 2, 3, 4); }},
        {"glShadeModel", [] { glShadeModel(GL_FLAT); }},
        {"glHint", [] { glHint(GL_FOG_HINT, GL_NICEST); }},
        {"glAlphaFunc", [] { glAlphaFunc(GL_LESS, 0.5f); }},
        {"glAlphaFuncx", [] { glAlphaFuncx(GL_LESS, 0x8000); }},
        {"glDrawArrays", [] { glDrawArrays(GL_TRIANGLES, 0, 3); }},
        {"glDrawElements", [] { glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, kFloats); }},

        {"glLightfv", [] { glLightfv(GL_LIGHT1, GL_AMBIENT, kFloats); }},
        {"glLightf", [] { glLightf(GL_LIGHT1, GL_SPOT_CUTOFF, 45); }},
        {"glLightxv", [] { glLightxv(GL_LIGHT1, GL_AMBIENT, kFixed); }},
        {"glLightx", [] { glLightx(GL_LIGHT1, GL_SPOT_CUTOFF, 0x2D0000); }},
        {"glMaterialfv", [] { glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kFloats); }},
        {"glMaterialf", [] { glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 12); }},
        {"glMaterialxv", [] { glMaterialxv(GL_FRONT_AND_BACK, GL_SPECULAR, kFixed); }},
        {"glMaterialx", [] { glMaterialx(GL_FRONT_AND_BACK, GL_SHININESS, 0xC0000); }},
        {"glLightModelfv", [] { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kFloats); }},
        {"glLightModelf", [] { glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1); }},
        {"glLightModelxv", [] { glLightModelxv(GL_LIGHT_MODEL_AMBIENT, kFixed); }},
        {"glLightModelx", [] { glLightModelx(GL_LIGHT_MODEL_TWO_SIDE, 0x10000); }},
        {"glEnable", [] { glEnable(GL_BLEND); }},
        {"glDisable", [] { glDisable(GL_BLEND); }},
        {"glFogfv", [] { glFogfv(GL_FOG_COLOR, kFloats); }},
        {"glFogf", [] { glFogf(GL_FOG_DENSITY, 0.25f); }},
        {"glFogxv", [] { glFogxv(GL_FOG_COLOR, kFixed); }},
        {"glFogx", [] { glFogx(GL_FOG_DENSITY, 0x4000); }},
        {"glLineWidth", [] { glLineWidth(3); }},
        {"glLineWidthx", [] { glLineWidthx(0x30000); }},
        {"glPointSize", [] { glPointSize(3); }},
        {"glPointSizex", [] { glPointSizex(0x30000); }},
        {"glPointParameterfv", [] { glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, kFloats); }},
        {"glPointParameterf", [] { glPointParameterf(GL_POINT_SIZE_MAX, 9); }},
        {"glPointParameterxv", [] { glPointParameterxv(GL_POINT_DISTANCE_ATTENUATION, kFixed); }},
        {"glPointParameterx", [] { glPointParameterx(GL_POINT_SIZE_MAX, 0x90000); }},

        {"glBindTexture", [] { glBindTexture(GL_TEXTURE_2D, 5); }},
        {"glTexParameteriv", [] { glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, kInts); }},
        {"glTexParameterfv", [] { glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, kFloats); }},
        {"glTexParameteri", [] { glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR); }},
        {"glTexParameterf", [] { glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, kLinear); }},
        {"glTexParameterx", [] { glTexParameterx(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR); }},
        {"glTexParameterxv", [] { glTexParameterxv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, kInts); }},
        {"glTexEnvfv", [] { glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, kFloats); }},
        {"glTexEnvf", [] { glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, kCombineFloat); }},
        {"glTexEnviv", [] { glTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &kCombine); }},
        {"glTexEnvi", [] { glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, kCombine); }},
        {"glTexEnvxv", [] { glTexEnvxv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &kCombine); }},
        {"glTexEnvx", [] { glTexEnvx(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, kCombine); }},
        {"glTexGenivOES", [] { glTexGenivOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &kReflection); }},
        {"glTexGeniOES", [] { glTexGeniOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, kReflection); }},
        {"glTexGenfvOES", [] { glTexGenfvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &kReflectionFloat); }},
        {"glTexGenfOES", [] { glTexGenfOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, kReflectionFloat); }},
        {"glTexGenxvOES", [] { glTexGenxvOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, &kReflection); }},
        {"glTexGenxOES", [] { glTexGenxOES(GL_TEXTURE_GEN_STR_OES, GL_TEXTURE_GEN_MODE_OES, kReflection); }},
        {"glDrawTexfOES", [] { glDrawTexfOES(0, 0, 0, 8, 8); }},
        {"glDrawTexfvOES", [] { glDrawTexfvOES(std::array<GLfloat, 5>{0, 0, 0, 8, 8}.data()); }},
        {"glDrawTexiOES", [] { glDrawTexiOES(0, 0, 0, 8, 8); }},
        {"glDrawTexivOES", [] { glDrawTexivOES(std::array<GLint, 5>{0, 0, 0, 8, 8}.data()); }},
        {"glDrawTexsOES", [] { glDrawTexsOES(0, 0, 0, 8, 8); }},
        {"glDrawTexsvOES", [] { glDrawTexsvOES(kShorts); }},
        {"glDrawTexxOES", [] { glDrawTexxOES(0, 0, 0, 0x80000, 0x80000); }},
        {"glDrawTexxvOES", [] { glDrawTexxvOES(std::array<GLfixed, 5>{0, 0, 0, 0x80000, 0x80000}.data()); }},

        {"glViewport", [] { glViewport(1, 2, 3, 4); }},
        {"glClipPlanef", [] { glClipPlanef(GL_CLIP_PLANE0, kFloats); }},
        {"glClipPlanex", [] { glClipPlanex(GL_CLIP_PLANE0, kFixed); }},
        {"glCurrentPaletteMatrixOES", [] { glCurrentPaletteMatrixOES(3); }},
        {"glLoadPaletteFromModelViewMatrixOES", [] { glLoadPaletteFromModelViewMatrixOES(); }},
    };
    // clang-format on
    return calls;
}

// Entry points that call the backend as in normal mode.
const std::set<std::string> &reachingNames()
{
    static const std::set<std::string> names = {
#define FORWARD_ASSERTING(name, result, arguments, call, pointer, absent) #name,
#define FORWARD_EXTENSION(name, result, arguments, call, pointer, absent) #name,
#include "frontend/passthrough.def"
#define VENDOR_SILENT(name, result, arguments, call, pointer) #name,
#define VENDOR_LOUD(name, arguments, call, pointer) #name,
#include "ext/vendor_forward.def"
        "glBindBuffer",     "glDeleteBuffers",   "glClearColorx", "glClearDepthx",
        "glPolygonOffsetx", "glSampleCoveragex", "glGetError",    "glGetBufferPointervZEK",
        "glDepthRangef",    "glDepthRangex",     "glLogicOp",     "glEGLImageTargetRenderbufferStorageOES",
    };
    return names;
}

// Entry points that answer as in normal mode.
const std::set<std::string> &queryNames()
{
    static const std::set<std::string> names = {
#define EXPORT(name) #name,
#include "query/query_exports.def"
#undef EXPORT
    };
    return names;
}

// Entry points with rules of their own; each has its test below.
const std::set<std::string> kOwnRules = {
    "glNormal3f",
    "glNormal3x",
    "glFogCoordf",
    "glAlphaFactorfZEK",
    "glDeleteTextures",
    "glTexImage2D",
    "glCopyTexImage2D",
    "glTexSubImage2D",
    "glCopyTexSubImage2D",
    "glCompressedTexImage2D",
    "glEGLImageTargetTexture2DOES",
};

class InterfaceOnly : public StateTest {
protected:
    void start(bool interfaceOnly)
    {
        startOver();
        ctx->settings.interfaceOnly = interfaceOnly;
    }

    // Calls recorded in the backend by one call of an entry point in a fresh context.
    std::vector<std::string> callsIn(bool interfaceOnly, const EntryPoint &entryPoint, uint32_t number)
    {
        start(interfaceOnly);
        entryPoint.call(number);
        return takeCalls();
    }
};

} // namespace

TEST_F(InterfaceOnly, EveryExportedEntryPointIsInOneList)
{
    size_t listed = 0;
    for (const EntryPoint &entryPoint : exportedEntryPoints()) {
        const std::string &name = entryPoint.name;
        EXPECT_EQ(inertCalls().count(name) + reachingNames().count(name) + queryNames().count(name) +
                      kOwnRules.count(name),
                  1u)
            << name;
        ++listed;
    }
    EXPECT_EQ(listed, inertCalls().size() + reachingNames().size() + queryNames().size() + kOwnRules.size());
    EXPECT_GT(listed, 200u);
}

TEST_F(InterfaceOnly, StateKeepingCallsDoNothing)
{
    for (const auto &[name, call] : inertCalls()) {
        SCOPED_TRACE(name);
        start(false);
        const std::vector<unsigned char> normal = bytesOf(ctx);
        call();
        EXPECT_TRUE(bytesOf(ctx) != normal || !takeCalls().empty()) << "the call does nothing in normal mode either";

        start(true);
        const std::vector<unsigned char> before = bytesOf(ctx);
        call();
        EXPECT_EQ(bytesOf(ctx), before);
        EXPECT_EQ(takeCalls(), std::vector<std::string>{});
        EXPECT_TRUE(fakePlatform().assertions.empty());
    }
}

TEST_F(InterfaceOnly, StateKeepingCallsDoNotLookAtTheirArguments)
{
    for (const EntryPoint &entryPoint : exportedEntryPoints()) {
        if (!inertCalls().count(entryPoint.name)) continue;
        // Draw-texture's size check stands before the flag.
        const bool checksSize = entryPoint.name.rfind("glDrawTex", 0) == 0;
        SCOPED_TRACE(entryPoint.name);
        start(true);
        const std::vector<unsigned char> before = bytesOf(ctx);
        for (const uint32_t number : {0u, 1u, 0xDE1u, 0x84C1u, 0x7FFFFFFFu, 0xFFFFFFFFu})
            entryPoint.call(number);
        if (checksSize) {
            EXPECT_EQ(glGetError(), GLenum(GL_INVALID_VALUE));
            takeCalls();
        }
        EXPECT_EQ(bytesOf(ctx), before);
        EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    }
}

// Here because the lists are: a draw derives its program again after every call but these.
TEST_F(InterfaceOnly, InNormalModeEveryCallThatMayDecideAProgramIsNoticed)
{
    // As the lists call them: glEnable and glDisable of GL_BLEND, glDisableClientState of an unknown array.
    const std::set<std::string> decideNone = {
        "glColor4f",
        "glColor4ub",
        "glColor4x",
        "glMultiTexCoord4f",
        "glMultiTexCoord4x",
        "glMatrixMode",
        "glPushMatrix",
        "glPopMatrix",
        "glLoadIdentity",
        "glLoadMatrixf",
        "glLoadMatrixx",
        "glMultMatrixf",
        "glMultMatrixx",
        "glRotatef",
        "glRotatex",
        "glTranslatef",
        "glTranslatex",
        "glScalef",
        "glScalex",
        "glOrthof",
        "glOrthox",
        "glFrustumf",
        "glFrustumx",
        "glMultMatrixfWithHintZEK",
        "glLoadMatrixfWithHintZEK",
        "glHint",
        "glActiveTexture",
        "glClientActiveTexture",
        "glColorPointer",
        "glNormalPointer",
        "glBindTexture",
        "glEnable",
        "glDisable",
        "glDisableClientState",
        // What lit draws derive of the material is marked by itself.
        "glMaterialf",
        "glMaterialfv",
        "glMaterialx",
        "glMaterialxv",
    };
    constexpr uint8_t kDerived = 77;    // no draw leaves this mark
    constexpr uint8_t kDrawTexture = 2; // what a draw-texture leaves; the next one must not go on from it
    const auto check = [&](const std::string &name, const std::function<void()> &call) {
        SCOPED_TRACE(name);
        start(false);
        const bool rectangle = name.starts_with("glDrawTex");
        ctx->derivedFor = rectangle ? kDrawTexture : kDerived;
        call();
        if (rectangle)
            EXPECT_EQ(ctx->key.passThrough, 1u) << "not derived";
        else
            EXPECT_EQ(ctx->derivedFor, decideNone.count(name) ? kDerived : 0);
    };
    for (const auto &[name, call] : inertCalls())
        if (name != "glDrawArrays" && name != "glDrawElements") check(name, call); // they leave their own mark
    for (const EntryPoint &entryPoint : exportedEntryPoints())
        if (kOwnRules.count(entryPoint.name) && entryPoint.name.find("Tex") != std::string::npos)
            check(entryPoint.name, [&] { entryPoint.call(1); });
}

TEST_F(InterfaceOnly, InNormalModeChangedSwitchesSizesAndFormatsAreNoticed)
{
    start(false);
    const auto notices = [&](const std::function<void()> &call) {
        ctx->derivedFor = 1;
        call();
        return ctx->derivedFor == 0;
    };
#define CAPABILITY(name, place, mark)                                                                                  \
    EXPECT_TRUE(notices([] { glEnable(name); })) << #name;                                                             \
    EXPECT_FALSE(notices([] { glEnable(name); })) << #name;                                                            \
    EXPECT_TRUE(notices([] { glDisable(name); })) << #name;
#include "state/capabilities.def"
#undef CAPABILITY
    for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY, GL_TEXTURE_COORD_ARRAY}) {
        EXPECT_TRUE(notices([=] { glEnableClientState(array); }));
        EXPECT_FALSE(notices([=] { glEnableClientState(array); }));
        EXPECT_TRUE(notices([=] { glDisableClientState(array); }));
    }
    EXPECT_TRUE(notices([] { glVertexPointer(3, GL_FLOAT, 0, kFloats); }));
    EXPECT_FALSE(notices([] { glVertexPointer(3, GL_SHORT, 8, kShorts); }));
    EXPECT_TRUE(notices([] { glTexCoordPointer(2, GL_FLOAT, 0, kFloats); }));
    EXPECT_FALSE(notices([] { glTexCoordPointer(2, GL_FLOAT, 0, kFloats + 1); }));

    const auto makeTexture = [](GLuint name, GLenum format) {
        glBindTexture(GL_TEXTURE_2D, name);
        glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), 1, 1, 0, format, GL_UNSIGNED_BYTE, nullptr);
    };
    glEnable(GL_TEXTURE_2D);
    makeTexture(1, GL_RGB);
    makeTexture(2, GL_RGBA);
    makeTexture(3, GL_RGBA);
    EXPECT_FALSE(notices([] { glBindTexture(GL_TEXTURE_2D, 2); }));
    EXPECT_TRUE(notices([] { glBindTexture(GL_TEXTURE_2D, 1); }));
}

TEST_F(InterfaceOnly, InNormalModeMatricesOtherThanTheModelviewMayDecideAProgram)
{
    for (const GLenum mode : {GL_PROJECTION, GL_TEXTURE, GL_MATRIX_PALETTE_OES}) {
        for (const auto &change : std::vector<std::function<void()>>{
                 [] { glLoadIdentity(); }, [] { glLoadMatrixf(kFloats); }, [] { glMultMatrixx(kFixed); },
                 [] { glRotatef(30, 0, 0, 1); }, [] { glTranslatef(1, 2, 3); }, [] { glScalef(1, 2, 3); },
                 [] { glFrustumf(0, 1, 0, 1, 1, 2); }, [] { glLoadPaletteFromModelViewMatrixOES(); }}) {
            start(false);
            glMatrixMode(mode);
            ctx->derivedFor = 1;
            change();
            EXPECT_EQ(ctx->derivedFor, 0u) << std::hex << mode;
        }
    }
}

TEST_F(InterfaceOnly, PassThroughCallsReachTheBackendAsInNormalMode)
{
    for (const EntryPoint &entryPoint : exportedEntryPoints()) {
        if (!reachingNames().count(entryPoint.name)) continue;
        SCOPED_TRACE(entryPoint.name);
        const uint32_t number = entryPoint.name == "glGetBufferPointervZEK" ? GL_ARRAY_BUFFER : 1;
        const std::vector<std::string> normal = callsIn(false, entryPoint, number);
        const std::vector<std::string> quiet = callsIn(true, entryPoint, number);
        EXPECT_EQ(quiet, normal);
        EXPECT_EQ(quiet.size(), 1u);
    }
}

TEST_F(InterfaceOnly, QueriesAnswerTheInitialState)
{
    start(true);
    GLint integer = 0;
    glGetIntegerv(GL_MAX_LIGHTS, &integer);
    EXPECT_EQ(integer, 8);
    glShadeModel(GL_FLAT);
    glGetIntegerv(GL_SHADE_MODEL, &integer);
    EXPECT_EQ(integer, GL_SMOOTH);
    glEnable(GL_LIGHTING);
    EXPECT_EQ(glIsEnabled(GL_LIGHTING), GL_FALSE);
    EXPECT_STREQ(reinterpret_cast<const char *>(glGetString(GL_VERSION)), "OpenGL ES-CM 1.1");
    GLfloat emission[4] = {9, 9, 9, 9};
    glGetMaterialfv(GL_FRONT, GL_EMISSION, emission);
    EXPECT_EQ(values(emission), (Vec4{0, 0, 0, 1}));
    GLfloat shininess = 9;
    glGetMaterialfv(GL_FRONT, GL_SHININESS, &shininess);
    EXPECT_EQ(shininess, 0.0f);
    glGetMaterialfv(GL_FRONT, GL_POSITION, &shininess);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
}

TEST_F(InterfaceOnly, NormalsAndVendorValuesAreStored)
{
    start(true);
    glNormal3f(1, 2, 3);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{1, 2, 3, 0}));
    glNormal3x(0x10000, 0x8000, 0);
    EXPECT_EQ(values(ctx->current.normal), (Vec4{1, 0.5f, 0, 0}));
    glFogCoordf(4);
    EXPECT_EQ(ctx->vendor.fogCoord, 4.0f);
    glAlphaFactorfZEK(2);
    EXPECT_EQ(ctx->vendor.alphaFactor, 2.0f);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(InterfaceOnly, ImagesReachTheBackendAndAreNotRecorded)
{
    start(true);
    const std::vector<unsigned char> before = bytesOf(ctx);
    const TextureObject texture = *ctx->bindings.texture2D[0];
    const auto hasCall = [](const char *name) { return callsOf(name).size() == 1; };

    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 4, 4, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_TRUE(hasCall("glTexImage2D"));
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 4, 4, 0);
    EXPECT_TRUE(hasCall("glCopyTexImage2D"));
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 4, 4, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_TRUE(hasCall("glTexSubImage2D"));
    glCopyTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 0, 0, 4, 4);
    EXPECT_TRUE(hasCall("glCopyTexSubImage2D"));
    glEGLImageTargetTexture2DOES(GL_TEXTURE_2D, nullptr);
    EXPECT_TRUE(hasCall("glEGLImageTargetTexture2DOES"));
    // A compressed image of level 0 stays here, one of another level goes on.
    glCompressedTexImage2D(GL_TEXTURE_2D, 0, GL_ETC1_RGB8_OES, 4, 4, 0, 8, nullptr);
    EXPECT_FALSE(hasCall("glCompressedTexImage2D"));
    glCompressedTexImage2D(GL_TEXTURE_2D, 1, GL_ETC1_RGB8_OES, 4, 4, 0, 8, nullptr);
    EXPECT_TRUE(hasCall("glCompressedTexImage2D"));

    EXPECT_EQ(bytesOf(ctx), before);
    EXPECT_EQ(std::memcmp(&texture, ctx->bindings.texture2D[0], sizeof(texture)), 0);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(InterfaceOnly, TexturesAreDeletedInTheBackendOnly)
{
    start(false);
    glBindTexture(GL_TEXTURE_2D, someName);
    TextureObject *const bound = ctx->bindings.texture2D[0];
    ctx->settings.interfaceOnly = 1;
    glDeleteTextures(1, &someName);
    EXPECT_EQ(callsOf("glDeleteTextures"), std::vector<std::string>{"glDeleteTextures(1, ptr)"});
    EXPECT_EQ(ctx->bindings.texture2D[0], bound);
    EXPECT_EQ(bound->unnamed, 0);
}
