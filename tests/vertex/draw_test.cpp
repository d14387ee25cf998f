// SPDX-License-Identifier: MIT
#include "vertex/draw.h"

#include "frontend/backend.h"
#include "shadergen/program_cache.h"
#include "state/state_test.h"

namespace {

using Calls = std::vector<std::string>;

constexpr const char *kIdentity4 = "{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}";
constexpr const char *kIdentity3 = "{1, 0, 0, 0, 1, 0, 0, 0, 1}";

Calls operator+(Calls a, const Calls &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::string at(const char *name)
{
    return std::to_string(fakeLocation(name));
}

// Calls by which one attribute takes its values from an array.
Calls bound(const char *name, const std::string &format, GLuint buffer = 0)
{
    return {"glBindBuffer(0x8892, " + std::to_string(buffer) + ")", "glEnableVertexAttribArray(" + at(name) + ")",
            "glVertexAttribPointer(" + at(name) + ", " + format + ")"};
}

// The position's come in another order: it is enabled before its buffer is bound.
Calls boundPosition(const std::string &format, GLuint buffer = 0)
{
    return {"glEnableVertexAttribArray(0)", "glBindBuffer(0x8892, " + std::to_string(buffer) + ")",
            "glVertexAttribPointer(0, " + format + ")"};
}

// Calls by which one attribute takes a current value.
Calls loaded(const char *name, const std::string &load, const std::string &value)
{
    return {load + "(" + at(name) + ", " + value + ")", "glDisableVertexAttribArray(" + at(name) + ")"};
}

Calls transformLoads()
{
    return {"glUniformMatrix4fv(" + at("gles_ModelViewProjectionMatrix") + ", 1, 0, " + kIdentity4 + ")",
            "glUniformMatrix4fv(" + at("gles_ModelViewMatrix") + ", 1, 0, " + kIdentity4 + ")",
            "glUniformMatrix4fv(" + at("gles_ProjectionMatrix") + ", 1, 0, " + kIdentity4 + ")",
            "glUniformMatrix3fv(" + at("gles_NormalMatrix") + ", 1, 0, " + kIdentity3 + ")"};
}

Calls drawLoads()
{
    return {"glUniform1f(" + at("gles_AlphaRef") + ", 0)"};
}

const Calls kPosition = boundPosition("3, 0x1406, 0, 0, +64");

Calls colorUniform(const char *value = "{1, 1, 1, 1}")
{
    return {"glUniform4fv(" + at("gles_FragColor") + ", 1, " + value + ")"};
}

Calls currentNormal()
{
    return loaded("gles_Normal", "glVertexAttrib3fv", "{0, 0, 1}");
}

Calls currentPointSize(const char *value = "1")
{
    return loaded("gles_PointSize", "glVertexAttrib1f", value);
}

Calls arrayBuffer(GLuint name = 0)
{
    return {"glBindBuffer(0x8892, " + std::to_string(name) + ")"};
}

const Calls kTriangles = {"glDrawArrays(0x0004, 0, 3)"};

void drawTriangles()
{
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

// A fresh context with a vertex array. Its first draw builds the program; tests compare the calls of later ones.
class Draws : public testing::Test {
protected:
    Draws()
    {
        resetFakeBackend();
        context = std::make_unique<TestContext>();
        ctx = context->ctx;
        glVertexPointer(3, GL_FLOAT, 0, offsetPointer(64));
    }

    /// The calls of a draw whose program has been built and bound before.
    Calls callsOfDraw(const std::function<void()> &draw = drawTriangles)
    {
        draw();
        takeCalls();
        draw();
        return takeCalls();
    }

    /// Those of binding the attributes alone, of the program that such a draw used.
    Calls callsOfAttributes()
    {
        drawTriangles();
        takeCalls();
        setVariableAttributes(ctx);
        return takeCalls();
    }

    std::unique_ptr<TestContext> context;
    GLIContext *ctx = nullptr;
};

class PaletteDraws : public Draws {
protected:
    PaletteDraws()
    {
        glEnable(GL_MATRIX_PALETTE_OES);
        glWeightPointerOES(2, GL_FLOAT, 8, offsetPointer(256));
        glMatrixIndexPointerOES(2, GL_UNSIGNED_BYTE, 4, offsetPointer(512));
    }
    static void enableArrays()
    {
        glEnableClientState(GL_WEIGHT_ARRAY_OES);
        glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    }
};

ptrdiff_t placeOf(const Calls &calls, const std::string &start)
{
    const auto found = std::find_if(calls.begin(), calls.end(), [&](auto &call) { return call.starts_with(start); });
    EXPECT_NE(found, calls.end()) << start;
    return found - calls.begin();
}

} // namespace

TEST_F(Draws, AnUnlitDrawMakesExactlyTheseCalls)
{
    const Calls expected = drawLoads() + transformLoads() + kPosition + colorUniform() + currentNormal() +
                           currentPointSize() + arrayBuffer() + kTriangles;
    EXPECT_EQ(callsOfDraw(), expected);
    EXPECT_TRUE(fakePlatform().assertions.empty());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Draws, AnIndexedDrawMakesTheSameCallsAndPassesItsArguments)
{
    const Calls expected = drawLoads() + transformLoads() + kPosition + colorUniform() + currentNormal() +
                           currentPointSize() + arrayBuffer() + Calls{"glDrawElements(0x0006, 5, 0x1401, +32)"};
    EXPECT_EQ(callsOfDraw([] { glDrawElements(GL_TRIANGLE_FAN, 5, GL_UNSIGNED_BYTE, offsetPointer(32)); }), expected);
}

TEST_F(Draws, ArgumentsReachTheBackendUnchecked)
{
    glDrawArrays(0x1234, -5, -6);
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{"glDrawArrays(0x1234, -5, -6)"});
    glDrawElements(0xFFFFFFFF, -1, 0x9999, nullptr);
    EXPECT_EQ(callsOf("glDrawElements"), Calls{"glDrawElements(0xffffffff, -1, 0x9999, null)"});
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Draws, AFirstDrawBuildsItsProgramBeforeItLoadsAnything)
{
    takeCalls();
    glDrawArrays(GL_LINES, 0, 2);
    const Calls calls = takeCalls();
    // Derivation (seen by the line width), program, uniforms, attributes, draw.
    EXPECT_LT(placeOf(calls, "glLineWidth"), placeOf(calls, "glCreateShader"));
    EXPECT_LT(placeOf(calls, "glLinkProgram"), placeOf(calls, "glUseProgram"));
    EXPECT_LT(placeOf(calls, "glUseProgram"), placeOf(calls, "glUniform1f"));
    EXPECT_LT(placeOf(calls, "glUniform1f"), placeOf(calls, "glUniformMatrix4fv"));
    EXPECT_LT(placeOf(calls, "glUniformMatrix3fv"), placeOf(calls, "glEnableVertexAttribArray"));
    EXPECT_EQ(calls.back(), "glDrawArrays(0x0001, 0, 2)");
}

TEST_F(Draws, ALitDrawLoadsItsLightsAfterTheAttributes)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    const Calls calls = callsOfDraw();
    const ptrdiff_t normal = placeOf(calls, "glVertexAttrib3fv(" + at("gles_Normal"));
    const ptrdiff_t emission = placeOf(calls, "glUniform4fv(" + at("gles_Material.emission") + ",");
    const ptrdiff_t ambient = placeOf(calls, "glUniform4fv(" + at("gles_LSambient[0]") + ",");
    EXPECT_LT(normal, emission);
    EXPECT_LT(emission, ambient);
    EXPECT_EQ(calls.back(), kTriangles[0]);
    EXPECT_EQ(calls[static_cast<size_t>(emission) - 1], arrayBuffer()[0]) << "the application's buffer is bound again";
}

TEST_F(Draws, CurrentColourIsAUniformWithoutLighting)
{
    glColor4f(0.5f, 2, -1, 0.25f);
    EXPECT_EQ(callsOfAttributes(),
              kPosition + colorUniform("{0.5, 2, -1, 0.25}") + currentNormal() + currentPointSize() + arrayBuffer());
}

TEST_F(Draws, CurrentColourIsAnAttributeWithLighting)
{
    glEnable(GL_LIGHTING);
    glColor4f(0.5f, 2, -1, 0.25f);
    EXPECT_EQ(callsOfAttributes(), kPosition + loaded("gles_Color", "glVertexAttrib4fv", "{0.5, 2, -1, 0.25}") +
                                       currentNormal() + currentPointSize() + arrayBuffer());
}

TEST_F(Draws, ColourArraysAreNormalised)
{
    for (const GLenum type : {GL_UNSIGNED_BYTE, GL_FIXED, GL_FLOAT}) {
        glColorPointer(4, type, 16, offsetPointer(128));
        glEnableClientState(GL_COLOR_ARRAY);
        char format[64];
        std::snprintf(format, sizeof(format), "4, 0x%04x, 1, 16, +128", type);
        EXPECT_EQ(callsOfAttributes(),
                  kPosition + bound("gles_Color", format) + currentNormal() + currentPointSize() + arrayBuffer());
    }
}

TEST_F(Draws, ACurrentColourChangeBuildsNoProgram)
{
    drawTriangles();
    takeCalls();
    glColor4f(1, 0, 0, 1);
    drawTriangles();
    EXPECT_TRUE(callsOf("glUseProgram").empty());
    EXPECT_EQ(callsOf("glUniform4fv"), colorUniform("{1, 0, 0, 1}"));
}

TEST_F(Draws, AColourArraySwitchedOnAndOffChangesTheProgram)
{
    drawTriangles();
    glColorPointer(4, GL_FLOAT, 0, offsetPointer(128));
    glEnableClientState(GL_COLOR_ARRAY);
    takeCalls();
    drawTriangles();
    EXPECT_EQ(callsOf("glUseProgram").size(), 1u);
    EXPECT_TRUE(callsOf("glUniform4fv").empty());
    glDisableClientState(GL_COLOR_ARRAY);
    takeCalls();
    drawTriangles();
    EXPECT_EQ(callsOf("glUseProgram").size(), 1u);
    EXPECT_EQ(callsOf("glUniform4fv"), colorUniform());
}

TEST_F(Draws, ArraysKeepTheirTypeSizeStrideAndPointer)
{
    for (const GLenum type : {GL_BYTE, GL_SHORT, GL_FIXED, GL_FLOAT}) {
        glVertexPointer(2, type, 20, offsetPointer(4));
        glNormalPointer(type, 24, offsetPointer(8));
        glEnableClientState(GL_NORMAL_ARRAY);
        char position[64], normal[64];
        std::snprintf(position, sizeof(position), "2, 0x%04x, 0, 20, +4", type);
        std::snprintf(normal, sizeof(normal), "3, 0x%04x, 0, 24, +8", type);
        EXPECT_EQ(callsOfAttributes(), boundPosition(position) + colorUniform() + bound("gles_Normal", normal) +
                                           currentPointSize() + arrayBuffer());
    }
}

TEST_F(Draws, ADescribedPositionIsUsedWhateverItsEnable)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    const Calls enabled = callsOfAttributes();
    glDisableClientState(GL_VERTEX_ARRAY);
    EXPECT_EQ(callsOfAttributes(), enabled);
    EXPECT_EQ(enabled[0], "glEnableVertexAttribArray(0)");
}

TEST_F(Draws, AnUndescribedPositionIsDisabledButGivenAllTheSame)
{
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glEnableClientState(GL_VERTEX_ARRAY);
    Calls calls = callsOfAttributes();
    calls.resize(3);
    EXPECT_EQ(calls, (Calls{"glDisableVertexAttribArray(0)", "glBindBuffer(0x8892, 0)",
                            "glVertexAttribPointer(0, 3, 0x1406, 0, 0, null)"}));
}

TEST_F(Draws, OffsetZeroOfABufferIsAPosition)
{
    glBindBuffer(GL_ARRAY_BUFFER, 5);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    Calls calls = callsOfAttributes();
    calls.resize(3);
    EXPECT_EQ(calls, boundPosition("3, 0x1406, 0, 0, null", 5));
}

TEST_F(Draws, EachArrayComesFromItsBufferAndTheApplicationsIsBoundAgain)
{
    glBindBuffer(GL_ARRAY_BUFFER, 5);
    glVertexPointer(3, GL_FLOAT, 0, offsetPointer(16));
    glBindBuffer(GL_ARRAY_BUFFER, 6);
    glNormalPointer(GL_FLOAT, 0, offsetPointer(32));
    glEnableClientState(GL_NORMAL_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glColorPointer(4, GL_FLOAT, 0, offsetPointer(48));
    glEnableClientState(GL_COLOR_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, 9);
    EXPECT_EQ(callsOfAttributes(),
              boundPosition("3, 0x1406, 0, 0, +16", 5) + bound("gles_Color", "4, 0x1406, 1, 0, +48", 0) +
                  bound("gles_Normal", "3, 0x1406, 0, 0, +32", 6) + currentPointSize() + arrayBuffer(9));
    drawTriangles();
    EXPECT_EQ(callsOf("glBindBuffer").back(), arrayBuffer(9)[0]);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 9u);
}

TEST_F(Draws, CoordinatesOfEnabledUnitsComeFromArrayOrCurrentValue)
{
    glEnable(GL_TEXTURE_2D);
    glTexCoordPointer(2, GL_SHORT, 8, offsetPointer(160));
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glActiveTexture(GL_TEXTURE1);
    glEnable(GL_TEXTURE_2D);
    glMultiTexCoord4f(GL_TEXTURE1, 0.5f, 0.25f, 0, 1);
    EXPECT_EQ(callsOfAttributes(), kPosition + colorUniform() + bound("gles_MultiTexCoord0", "2, 0x1402, 0, 8, +160") +
                                       loaded("gles_MultiTexCoord1", "glVertexAttrib4fv", "{0.5, 0.25, 0, 1}") +
                                       currentNormal() + currentPointSize() + arrayBuffer());
    glClientActiveTexture(GL_TEXTURE1);
    glTexCoordPointer(3, GL_FLOAT, 0, offsetPointer(176));
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glClientActiveTexture(GL_TEXTURE0);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    EXPECT_EQ(callsOfAttributes(), kPosition + colorUniform() +
                                       loaded("gles_MultiTexCoord0", "glVertexAttrib4fv", "{0, 0, 0, 1}") +
                                       bound("gles_MultiTexCoord1", "3, 0x1406, 0, 0, +176") + currentNormal() +
                                       currentPointSize() + arrayBuffer());
}

TEST_F(Draws, CoordinatesOfADisabledUnitAreNotBound)
{
    glTexCoordPointer(2, GL_FLOAT, 0, offsetPointer(160));
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    EXPECT_EQ(callsOfAttributes(), kPosition + colorUniform() + currentNormal() + currentPointSize() + arrayBuffer());
}

TEST_F(Draws, PointSizesComeFromArrayOrCurrentValue)
{
    const auto drawPoints = [] { glDrawArrays(GL_POINTS, 0, 1); };
    glPointSize(7);
    Calls calls = callsOfDraw(drawPoints);
    EXPECT_EQ(Calls(calls.end() - 4, calls.end()),
              currentPointSize("7") + arrayBuffer() + Calls{"glDrawArrays(0x0000, 0, 1)"});
    glPointSizePointerOES(GL_FIXED, 12, offsetPointer(80));
    glEnableClientState(GL_POINT_SIZE_ARRAY_OES);
    calls = callsOfDraw(drawPoints);
    EXPECT_EQ(Calls(calls.end() - 5, calls.end()),
              bound("gles_PointSize", "1, 0x140c, 0, 12, +80") + arrayBuffer() + Calls{"glDrawArrays(0x0000, 0, 1)"});
}

TEST_F(Draws, InputsThatTheProgramLacksAreLeftOut)
{
    for (const char *name : {"gles_Normal", "gles_PointSize", "gles_FragColor", "gles_Color", "gles_MultiTexCoord0"})
        fakeBackend().unknownLocations[name] = -1;
    glEnable(GL_TEXTURE_2D);
    EXPECT_EQ(callsOfAttributes(), kPosition + arrayBuffer());

    glColorPointer(4, GL_FLOAT, 0, offsetPointer(128));
    glNormalPointer(GL_FLOAT, 0, offsetPointer(128));
    glPointSizePointerOES(GL_FLOAT, 0, offsetPointer(128));
    glTexCoordPointer(2, GL_FLOAT, 0, offsetPointer(128));
    for (const GLenum array : {GL_COLOR_ARRAY, GL_NORMAL_ARRAY, GL_POINT_SIZE_ARRAY_OES, GL_TEXTURE_COORD_ARRAY})
        glEnableClientState(array);
    EXPECT_EQ(callsOfAttributes(), kPosition + arrayBuffer());
}

TEST_F(Draws, ThePrimitiveClassHoldsForOneDraw)
{
    uint32_t flags = 0;
    uint32_t dirty = 0;
    fakeBackend().onCall["glDrawArrays"] = [&] {
        flags = ctx->primitiveFlags;
        dirty = ctx->dirty;
    };
    fakeBackend().onCall["glDrawElements"] = fakeBackend().onCall["glDrawArrays"];
    const uint32_t expected[] = {2, 4, 4, 4, 0, 0, 0, 0};
    for (GLenum mode = 0; mode < 8; ++mode) {
        for (const bool indexed : {false, true}) {
            SCOPED_TRACE(mode);
            glColor4f(1, 1, 1, 1);
            flags = 99;
            indexed ? glDrawElements(mode, 3, GL_UNSIGNED_BYTE, offsetPointer(1)) : glDrawArrays(mode, 0, 3);
            EXPECT_EQ(flags, expected[mode]);
            EXPECT_NE(dirty, 0u) << "cleared only after the backend's draw";
            EXPECT_EQ(ctx->primitiveFlags, 0u);
            EXPECT_EQ(ctx->dirty, 0u);
        }
    }
}

TEST_F(Draws, PointsThenTrianglesUsePointSizeOnlyForTheFirst)
{
    glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_EQ(ctx->key.pointSize, 1u);
    drawTriangles();
    EXPECT_EQ(ctx->key.pointSize, 0u);
    glDrawArrays(GL_LINE_STRIP, 0, 2);
    EXPECT_EQ(ctx->key.pointSize, 0u);
}

TEST_F(Draws, AFlagLeftBehindDoesNotReachTheNextDraw)
{
    ctx->primitiveFlags = PRIMITIVE_DRAW_TEXTURE;
    drawTriangles();
    EXPECT_EQ(ctx->key.passThrough, 0u);
    EXPECT_EQ(ctx->primitiveFlags, 0u);
}

TEST_F(Draws, WithoutAShaderTheDrawIsSkippedSilently)
{
    fakeBackend().createShaderFails = true;
    takeCalls();
    glColor4f(1, 0, 0, 1);
    glDrawArrays(GL_POINTS, 0, 1);
    EXPECT_TRUE(callsOf("glDrawArrays").empty());
    EXPECT_TRUE(callsOf("glVertexAttribPointer").empty());
    EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(0)"});
    EXPECT_EQ(ctx->dirty, 0u);
    EXPECT_EQ(ctx->primitiveFlags, 0u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    drawTriangles();
    EXPECT_TRUE(callsOf("glDrawArrays").empty());
    fakeBackend().createShaderFails = false;
}

// What was derived for the failed draw is not the next one's, although nothing is called between them.
TEST_F(Draws, ADrawAfterAFailedOneIsDerivedAnew)
{
    struct Failure {
        std::function<void()> draw;
        size_t drawnNext; // triangles straight after it: their own program is there, or is the one that failed
    };
    const Failure failures[] = {
        {[] { glDrawArrays(GL_POINTS, 0, 1); }, 1},
        {[] { glDrawArrays(GL_LINES, 0, 2); }, 1},
        {[] {
             glRotatef(30, 1, 1, 0); // another form of matrix, and so another program
             drawTriangles();
         },
         0},
    };
    glEnable(GL_LINE_SMOOTH); // lines need a program of their own
    for (const Failure &failure : failures) {
        drawTriangles();
        ASSERT_NE(ctx->derivedFor, 0);
        fakeBackend().createShaderFails = true;
        takeCalls();
        failure.draw();
        ASSERT_TRUE(callsOf("glDrawArrays").empty());
        ASSERT_EQ(ctx->currentEntry, nullptr);
        drawTriangles();
        EXPECT_EQ(callsOf("glDrawArrays").size(), failure.drawnNext);
        EXPECT_EQ(ctx->key.pointSize, 0u);
        fakeBackend().createShaderFails = false;
        glLoadIdentity();
        takeCalls();
        drawTriangles();
        EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
    }
}

TEST_F(Draws, ADrawAfterOneWhoseProgramHasNoNameIsDerivedAnew)
{
    glDrawArrays(GL_POINTS, 0, 1);
    ctx->currentEntry->program = 0;
    drawTriangles();
    ASSERT_NE(ctx->currentEntry->program, 0u);
    glDrawArrays(GL_POINTS, 0, 1); // dropped
    takeCalls();
    drawTriangles();
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
    EXPECT_EQ(ctx->key.pointSize, 0u);
    EXPECT_NE(ctx->currentEntry->program, 0u);
}

TEST_F(Draws, AProgramWithoutANameSkipsTheDraw)
{
    drawTriangles();
    ctx->currentEntry->program = 0;
    ctx->derivedFor = 0;
    takeCalls();
    EXPECT_EQ(validateShadowState(ctx), 0u);
    drawTriangles();
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(Draws, DrawsThatShareTheirStateDeriveItOnce)
{
    drawTriangles();
    const uint64_t hits = ctx->shaderCache->hitCount;
    // Nobody but this test changes the key between draws: that it is not noticed shows that nothing was derived.
    const ShaderStateBitfield drawn = ctx->key;
    ctx->key.eyeCoordinates = 1;
    glColor4f(1, 0, 0, 1);
    drawTriangles();
    EXPECT_EQ(ctx->key.eyeCoordinates, 1u);
    EXPECT_EQ(ctx->shaderCache->hitCount, hits + 1);
    glRotatef(30, 0, 0, 1); // another form of matrix: derived as a whole
    drawTriangles();
    EXPECT_NE(ctx->key.mvpForm, drawn.mvpForm);
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);
    ctx->key.eyeCoordinates = 1;
    glRotatef(30, 0, 0, 1); // the same form
    drawTriangles();
    EXPECT_EQ(ctx->key.eyeCoordinates, 1u);
    glDrawArrays(GL_POINTS, 0, 3);
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);
    EXPECT_EQ(ctx->key.pointSize, 1u);
    drawTriangles();
    EXPECT_EQ(ctx->key.pointSize, 0u);
}

TEST_F(Draws, AnotherModelviewMatrixIsFollowedUnlessItDecidesAnotherProgram)
{
    glMatrixMode(GL_PROJECTION);
    glFrustumf(-1, 1, -1, 1, 1, 10);
    glMatrixMode(GL_MODELVIEW);
    glEnable(GL_LIGHTING);
    for (GLenum light = GL_LIGHT0; light <= GL_LIGHT7; ++light) // all directional
        glEnable(light);
    drawTriangles();
    const ShaderProgramEntry *rigid = ctx->currentEntry;
    ASSERT_EQ(ctx->key.orthogonalTransform, 1u);

    ctx->key.packedTexCoords = 1; // noticed only by a derivation as a whole
    glRotatef(90, 0, 0, 1);
    takeCalls();
    drawTriangles();
    EXPECT_EQ(ctx->key.packedTexCoords, 1u);
    EXPECT_EQ(ctx->currentEntry, rigid);
    EXPECT_EQ(callsOf("glUniformMatrix3fv").size(), 1u);
    EXPECT_NEAR(ctx->transform.normalMatrix[1], 1.0f, 1e-5f);

    glScalef(1, 2, 1); // lights no longer fit into object space
    drawTriangles();
    EXPECT_EQ(ctx->key.packedTexCoords, 0u);
    EXPECT_EQ(ctx->key.orthogonalTransform, 0u);
    EXPECT_NE(ctx->currentEntry, rigid);
    EXPECT_NEAR(ctx->transform.normalMatrix[3], -0.5f, 1e-5f);

    glLoadIdentity();
    drawTriangles();
    EXPECT_EQ(ctx->key.orthogonalTransform, 1u);
    EXPECT_EQ(ctx->currentEntry, rigid);
}

TEST_F(Draws, TheFormOfTheMatrixFollowsTheSizeOfTheVertices)
{
    static const GLfloat vertices[12] = {};
    glTranslatef(1, 2, 3);
    glVertexPointer(3, GL_FLOAT, 0, vertices);
    drawTriangles();
    EXPECT_EQ(ctx->key.mvpForm, uint32_t(MVP_SCALE_TRANSLATE));
    glVertexPointer(4, GL_FLOAT, 0, vertices);
    drawTriangles();
    EXPECT_EQ(ctx->key.mvpForm, 3u);
    glTranslatef(1, 2, 3);
    drawTriangles();
    EXPECT_EQ(ctx->key.mvpForm, 3u);
    glVertexPointer(3, GL_FLOAT, 0, vertices);
    drawTriangles();
    EXPECT_EQ(ctx->key.mvpForm, uint32_t(MVP_SCALE_TRANSLATE));
}

TEST_F(Draws, AnotherMaterialIsDerivedByItselfUnlessItDecidesAnotherProgram)
{
    const GLfloat grey[] = {0.5f, 0.5f, 0.5f, 1};
    const GLfloat black[] = {0, 0, 0, 0};
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    drawTriangles();
    const ShaderProgramEntry *lit = ctx->currentEntry;
    ASSERT_EQ(ctx->key.noDiffuse, 0u);
    ctx->key.eyeCoordinates = 0; // noticed only by a derivation as a whole

    takeCalls();
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, grey);
    drawTriangles();
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);
    EXPECT_EQ(ctx->currentEntry, lit);
    EXPECT_EQ(callsOf("glUseProgram").size(), 0u);
    const Calls loads = callsOf("glUniform4fv");
    const auto isLoaded = [&loads](const char *name, const std::string &value) {
        return std::count(loads.begin(), loads.end(), "glUniform4fv(" + at(name) + ", 1, " + value + ")") == 1;
    };
    EXPECT_TRUE(isLoaded("gles_LSdiffuse[0]", "{0.5, 0.5, 0.5, 1}"));

    // Emission changes the scene colour alone, shininess only its mark in the lighting change word.
    takeCalls();
    glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, grey);
    drawTriangles();
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);
    const Calls emitted = callsOf("glUniform4fv");
    const std::string sceneColor = "glUniform4fv(" + at("gles_LightModelProduct.sceneColor") + ", 1, {0.54";
    EXPECT_TRUE(std::any_of(emitted.begin(), emitted.end(), [&](const std::string &call) {
        return call.starts_with(sceneColor);
    })) << "0.5 and 0.2 x 0.2";
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 7);
    ASSERT_NE(ctx->lighting.change, 0u);
    drawTriangles();
    EXPECT_EQ(ctx->lighting.change, 0u);
    EXPECT_EQ(ctx->key.eyeCoordinates, 0u);

    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, black); // GL_LIGHT1 to 7 are off, and so black
    drawTriangles();
    EXPECT_EQ(ctx->key.noDiffuse, 1u);
    EXPECT_EQ(ctx->key.eyeCoordinates, 1u);
    EXPECT_NE(ctx->currentEntry, lit);

    // With lighting off it waits for the first lit draw.
    glDisable(GL_LIGHTING);
    drawTriangles();
    glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, grey);
    drawTriangles();
    EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFFu);
    glEnable(GL_LIGHTING);
    drawTriangles();
    EXPECT_EQ(ctx->lighting.zeroDiffuseMask, 0xFEu);
    EXPECT_EQ(ctx->currentEntry, lit);
}

TEST_F(Draws, LinesLoadTheirWidthEveryTime)
{
    takeCalls();
    for (int i = 0; i < 3; ++i)
        glDrawArrays(GL_LINES, 0, 2);
    EXPECT_EQ(callsOf("glLineWidth").size(), 3u);
}

TEST_F(Draws, ValidationAloneLeavesMarksAndFlags)
{
    glColor4f(1, 0, 0, 1);
    ctx->primitiveFlags = PRIMITIVE_POINTS;
    const uint32_t dirty = ctx->dirty;
    takeCalls();
    EXPECT_EQ(validateShadowState(ctx), 1u);
    EXPECT_EQ(ctx->dirty, dirty);
    EXPECT_EQ(ctx->primitiveFlags, 2u);
    EXPECT_TRUE(callsOf("glDrawArrays").empty());
}

TEST_F(Draws, AMissingBackendDrawIsAnAssertion)
{
    const auto arrays = std::exchange(glDrawArrays_2_0, nullptr);
    const auto elements = std::exchange(glDrawElements_2_0, nullptr);
    drawTriangles();
    glDrawElements(GL_TRIANGLES, 3, GL_UNSIGNED_BYTE, nullptr);
    EXPECT_EQ(fakePlatform().assertions.size(), 2u);
    EXPECT_EQ(ctx->dirty, 0u);
    glDrawArrays_2_0 = arrays;
    glDrawElements_2_0 = elements;
}

TEST_F(Draws, BackendErrorsOfADrawAreReportedByGetError)
{
    fakeBackend().onCall["glDrawArrays"] = [] { fakeBackend().error = GL_INVALID_ENUM; };
    glDrawArrays(99, 0, 3);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
}

TEST_F(Draws, NothingHappensWithoutAContextOrInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glDrawArrays(GL_POINTS, 0, 1); },
                              [] { glDrawElements(GL_LINES, 2, GL_UNSIGNED_SHORT, nullptr); },
                          });
}

TEST_F(Draws, AnUnchangedDrawAllocatesNothingAndAsksTheBackendNothing)
{
    drawTriangles();
    const size_t allocations = fakePlatform().allocations;
    const size_t programs = ctx->shaderCache->nodeCount;
    takeCalls();
    for (int i = 0; i < 5; ++i)
        drawTriangles();
    EXPECT_EQ(fakePlatform().allocations, allocations);
    EXPECT_EQ(ctx->shaderCache->nodeCount, programs);
    for (const char *query : {"glGetError", "glGetIntegerv", "glGetUniformLocation", "glUseProgram", "glCreateShader"})
        EXPECT_TRUE(callsOf(query).empty()) << query;
}

TEST_F(PaletteDraws, BothArraysMustBeEnabled)
{
    const GLenum arrays[] = {GL_WEIGHT_ARRAY_OES, GL_MATRIX_INDEX_ARRAY_OES};
    for (int enabled = 0; enabled < 3; ++enabled) {
        for (int i = 0; i < 2; ++i)
            (enabled >> i) & 1 ? glEnableClientState(arrays[i]) : glDisableClientState(arrays[i]);
        glColor4f(1, 1, 1, 1);
        takeCalls();
        glDrawArrays(GL_LINES, 0, 2);
        glDrawElements(GL_LINES, 2, GL_UNSIGNED_BYTE, nullptr);
        EXPECT_EQ(takeCalls(), Calls{}) << "nothing is derived or loaded, nor drawn";
        EXPECT_EQ(ctx->dirty, 0u);
        EXPECT_EQ(ctx->primitiveFlags, 0u);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
    enableArrays();
    drawTriangles();
    EXPECT_EQ(callsOf("glDrawArrays"), kTriangles);
}

TEST_F(PaletteDraws, ADrawThatBlendsNoMatrixIsSkipped)
{
    enableArrays();
    for (const GLint size : {0, -1}) {
        glWeightPointerOES(size, GL_FLOAT, 0, offsetPointer(256));
        takeCalls();
        drawTriangles();
        EXPECT_EQ(takeCalls(), Calls{});
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    }
}

TEST_F(PaletteDraws, InputsAreBoundAfterTheAttributesAndAllMatricesLoaded)
{
    enableArrays();
    glBindBuffer(GL_ARRAY_BUFFER, 4);
    glWeightPointerOES(2, GL_FLOAT, 8, offsetPointer(256));
    glBindBuffer(GL_ARRAY_BUFFER, 9);
    const Calls calls = callsOfDraw();
    std::string matrices = "{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1";
    for (int i = 1; i < 20; ++i)
        matrices += ", 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1";
    const std::string weight = at("mpalette_weight"), index = at("mpalette_index");
    const Calls expected = {
        "glBindBuffer(0x8892, 4)",
        "glVertexAttribPointer(" + weight + ", 2, 0x1406, 0, 8, +256)",
        "glEnableVertexAttribArray(" + weight + ")",
        "glBindBuffer(0x8892, 0)",
        "glVertexAttribPointer(" + index + ", 2, 0x1401, 0, 4, +512)",
        "glEnableVertexAttribArray(" + index + ")",
        "glBindBuffer(0x8892, 9)",
        "glUniformMatrix4fv(" + at("MV_palette") + ", 20, 0, " + matrices + "})",
    };
    ASSERT_GE(calls.size(), expected.size() + 2);
    EXPECT_EQ(Calls(calls.end() - 10, calls.end() - 2), expected);
    EXPECT_TRUE(calls[calls.size() - 2].starts_with("glUniformMatrix3fv(" + at("MVI_palette") + ", 20, 0, {"));
    EXPECT_EQ(calls[calls.size() - 11], "glBindBuffer(0x8892, 9)") << "the end of the ordinary attributes";
    EXPECT_EQ(calls.back(), kTriangles[0]);
}

TEST_F(PaletteDraws, ALitPaletteDrawLoadsItsLightsAfterThePalette)
{
    enableArrays();
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    const Calls calls = callsOfDraw();
    EXPECT_LT(placeOf(calls, "glUniformMatrix3fv(" + at("MVI_palette")),
              placeOf(calls, "glUniform4fv(" + at("gles_Material.emission") + ","));
}

TEST_F(PaletteDraws, InputsThatTheProgramLacksAreLeftOut)
{
    fakeBackend().unknownLocations["mpalette_weight"] = -1;
    enableArrays();
    drawTriangles();
    takeCalls();
    bindPaletteInputs(ctx);
    EXPECT_TRUE(callsOf("glVertexAttribPointer").size() == 1);
    fakeBackend().unknownLocations["mpalette_index"] = -1;
    glEnable(GL_LIGHTING);
    drawTriangles();
    takeCalls();
    bindPaletteInputs(ctx);
    EXPECT_EQ(callsOf("glVertexAttribPointer"), Calls{});
    EXPECT_EQ(callsOf("glBindBuffer"), arrayBuffer());
    EXPECT_EQ(callsOf("glUniformMatrix4fv").size(), 1u);
    EXPECT_EQ(callsOf("glUniformMatrix3fv").size(), 1u);
}

TEST_F(PaletteDraws, ADisabledArrayDisablesItsInput)
{
    enableArrays();
    drawTriangles();
    glDisableClientState(GL_WEIGHT_ARRAY_OES);
    glDisableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    takeCalls();
    bindPaletteInputs(ctx);
    Calls calls = takeCalls();
    calls.resize(3);
    EXPECT_EQ(calls, (Calls{"glDisableVertexAttribArray(" + at("mpalette_weight") + ")",
                            "glDisableVertexAttribArray(" + at("mpalette_index") + ")", "glBindBuffer(0x8892, 0)"}));
}
