// SPDX-License-Identifier: MIT
#include "shadergen/locations.h"

#include "shadergen/pipeline/pipeline_test.h"

#include <cstring>

namespace {

constexpr GLuint kProgram = 77;

class Locations : public PipelineTest {
protected:
    /// Queries for the context's state; returns the names, attributes with a leading '@', in order.
    Calls query()
    {
        deriveShaderState(ctx);
        takeCalls();
        entry.program = kProgram;
        std::memset(&entry.locations, 0x5A, sizeof(entry.locations)); // what a recycled node held
        setVariableLocation(ctx, &entry);
        Calls names;
        for (const std::string &call : takeCalls()) {
            const size_t quote = call.find('"');
            const std::string name = call.substr(quote + 1, call.rfind('"') - quote - 1);
            const std::string head = call.substr(0, quote);
            if (head == "glGetUniformLocation(77, ") {
                names.push_back(name);
            } else if (head == "glGetAttribLocation(77, ") {
                names.push_back("@" + name);
            } else {
                ADD_FAILURE() << "unexpected call " << call;
            }
        }
        return names;
    }
    static bool contains(const Calls &names, const std::string &name)
    {
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    ShaderProgramEntry entry = {};
};

void append(Calls &to, const Calls &from)
{
    to.insert(to.end(), from.begin(), from.end());
}

Calls lightNames(int slot)
{
    Calls names;
    for (const char *name :
         {"gles_LSposition", "gles_LSambient", "gles_LSdiffuse", "gles_LSspecular", "gles_LSspotDirection",
          "gles_LSpacked0", "gles_LSpacked1", "gles_LSposition0", "gles_LSposition1"})
        names.push_back(std::string(name) + "[" + std::to_string(slot) + "]");
    return names;
}

const Calls kMatrixNames = {"gles_ModelViewProjectionMatrix", "gles_ModelViewMatrix", "gles_ProjectionMatrix",
                            "gles_NormalMatrix"};
const Calls kAttributeNames = {"@gles_Vertex", "@gles_Normal", "@gles_PointSize", "@gles_MultiTexCoord0",
                               "@gles_MultiTexCoord1"};

Calls join(std::initializer_list<Calls> parts)
{
    Calls all;
    for (const Calls &part : parts)
        append(all, part);
    return all;
}

} // namespace

TEST_F(Locations, PlainStateQueriesOnlyWhatEveryProgramHas)
{
    EXPECT_EQ(query(), join({kMatrixNames, {"gles_AlphaRef"}, kAttributeNames, {"gles_FragColor"}}));
}

TEST_F(Locations, EverythingOnIsQueriedInItsOrder)
{
    enablePalette();
    enableLights(2);
    glEnable(GL_CLIP_PLANE0);
    glEnable(GL_FOG);
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN, GL_FOG_COORDINATE_QRN);
    ctx->key.alphaFactor = 1;
    const GLfloat attenuation[] = {0, 1, 0};
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
    glEnable(GL_LINE_SMOOTH);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
        glMatrixMode(GL_TEXTURE);
        glTranslatef(1, 0, 0);
    }
    ctx->primitiveFlags = PRIMITIVE_LINES;
    EXPECT_EQ(query(), join({{"@mpalette_weight", "@mpalette_index", "MV_palette", "MVI_palette"},
                             {"gles_Material.emission", "gles_Material.shininess", "gles_LightModelProduct.sceneColor"},
                             lightNames(0),
                             lightNames(1),
                             kMatrixNames,
                             {"userClipPlaneEye", "userClipNeg", "gles_AlphaRef"},
                             {"gles_sampler0", "gles_Texture0Matrix", "gles_sampler1", "gles_Texture1Matrix"},
                             {"gles_TexEnvColor", "gles_TexEnvColorScale", "gles_alphaFactor"},
                             {"gles_FogEnd", "gles_FogInvRange", "gles_FogDensity", "gles_FogCoord", "gles_FogColor"},
                             {"gles_PointDistanceAttenuation", "gles_PointMinSize", "gles_PointMaxSize"},
                             {"gles_LineWidth"},
                             kAttributeNames,
                             {"@gles_Color"}}));
}

TEST_F(Locations, EveryNameIsStoredInItsOwnField)
{
    enablePalette();
    enableLights(8);
    glEnable(GL_CLIP_PLANE0);
    glEnable(GL_FOG);
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN, GL_FOG_COORDINATE_QRN);
    ctx->key.alphaFactor = 1;
    ctx->pointLine.attenuationActive = 1;
    glEnable(GL_LINE_SMOOTH);
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
        glMatrixMode(GL_TEXTURE);
        glTranslatef(1, 0, 0);
    }
    ctx->primitiveFlags = PRIMITIVE_LINES;
    query();
    const ProgramLocations &l = entry.locations;
    const std::pair<GLint, const char *> fields[] = {
        {l.paletteWeightAttrib, "mpalette_weight"},
        {l.paletteIndexAttrib, "mpalette_index"},
        {l.paletteMatrices, "MV_palette"},
        {l.paletteInverseMatrices, "MVI_palette"},
        {l.sceneColor, "gles_LightModelProduct.sceneColor"},
        {l.materialEmission, "gles_Material.emission"},
        {l.materialShininess, "gles_Material.shininess"},
        {l.modelViewProjectionMatrix, "gles_ModelViewProjectionMatrix"},
        {l.modelViewMatrix, "gles_ModelViewMatrix"},
        {l.projectionMatrix, "gles_ProjectionMatrix"},
        {l.normalMatrix, "gles_NormalMatrix"},
        {l.textureMatrix[0], "gles_Texture0Matrix"},
        {l.textureMatrix[1], "gles_Texture1Matrix"},
        {l.userClipPlaneEye, "userClipPlaneEye"},
        {l.userClipNeg, "userClipNeg"},
        {l.alphaRef, "gles_AlphaRef"},
        {l.sampler[0], "gles_sampler0"},
        {l.sampler[1], "gles_sampler1"},
        {l.alphaFactor, "gles_alphaFactor"},
        {l.fogEnd, "gles_FogEnd"},
        {l.fogInvRange, "gles_FogInvRange"},
        {l.fogDensity, "gles_FogDensity"},
        {l.fogCoord, "gles_FogCoord"},
        {l.fogColor, "gles_FogColor"},
        {l.texEnvColor, "gles_TexEnvColor"},
        {l.texEnvColorScale, "gles_TexEnvColorScale"},
        {l.pointDistanceAttenuation, "gles_PointDistanceAttenuation"},
        {l.pointMinSize, "gles_PointMinSize"},
        {l.pointMaxSize, "gles_PointMaxSize"},
        {l.lineWidth, "gles_LineWidth"},
        {l.vertexAttrib, "gles_Vertex"},
        {l.normalAttrib, "gles_Normal"},
        {l.pointSizeAttrib, "gles_PointSize"},
        {l.texCoordAttrib[0], "gles_MultiTexCoord0"},
        {l.texCoordAttrib[1], "gles_MultiTexCoord1"},
        {l.colorAttrib, "gles_Color"},
    };
    for (const auto &[location, name] : fields)
        EXPECT_EQ(location, fakeLocation(name)) << name;
    for (int slot = 0; slot < 8; ++slot) {
        const LightLocations &light = l.light[slot];
        const GLint inOrder[] = {light.position, light.ambient, light.diffuse,   light.specular, light.spotDirection,
                                 light.packed0,  light.packed1, light.position0, light.position1};
        const Calls names = lightNames(slot);
        for (size_t i = 0; i < names.size(); ++i)
            EXPECT_EQ(inOrder[i], fakeLocation(names[i])) << names[i];
    }
}

TEST_F(Locations, LightsTwoAndFiveTakeSlotsZeroAndOne)
{
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT2);
    glEnable(GL_LIGHT5);
    const Calls names = query();
    EXPECT_TRUE(contains(names, "gles_LSposition[0]"));
    EXPECT_TRUE(contains(names, "gles_LSposition[1]"));
    EXPECT_FALSE(contains(names, "gles_LSposition[2]"));
    EXPECT_EQ(entry.locations.light[0].position, fakeLocation("gles_LSposition[0]"));
    EXPECT_EQ(entry.locations.light[1].packed1, fakeLocation("gles_LSpacked1[1]"));
    for (uint32_t slot = 2; slot < kMaxLights; ++slot) {
        EXPECT_EQ(entry.locations.light[slot].position, -1);
        EXPECT_EQ(entry.locations.light[slot].position1, -1);
    }
}

TEST_F(Locations, WhatIsNotQueriedIsMinusOneWhateverTheMemoryHeld)
{
    query();
    const ProgramLocations &l = entry.locations;
    for (const GLint location : {l.paletteWeightAttrib,
                                 l.paletteIndexAttrib,
                                 l.paletteMatrices,
                                 l.paletteInverseMatrices,
                                 l.sceneColor,
                                 l.materialEmission,
                                 l.materialShininess,
                                 l.textureMatrix[0],
                                 l.textureMatrix[1],
                                 l.userClipPlaneEye,
                                 l.userClipNeg,
                                 l.sampler[0],
                                 l.sampler[1],
                                 l.alphaFactor,
                                 l.fogEnd,
                                 l.fogInvRange,
                                 l.fogDensity,
                                 l.fogCoord,
                                 l.fogColor,
                                 l.texEnvColor,
                                 l.texEnvColorScale,
                                 l.pointDistanceAttenuation,
                                 l.pointMinSize,
                                 l.pointMaxSize,
                                 l.lineWidth,
                                 l.colorAttrib})
        EXPECT_EQ(location, -1);
    for (const LightLocations &light : l.light)
        EXPECT_EQ(light.ambient, -1);
}

TEST_F(Locations, ColourIsAnAttributeOrAUniform)
{
    Calls names = query();
    EXPECT_EQ(names.back(), "gles_FragColor");
    EXPECT_EQ(entry.locations.colorUniform, fakeLocation("gles_FragColor"));
    EXPECT_EQ(entry.locations.colorAttrib, -1);
    glEnableClientState(GL_COLOR_ARRAY);
    names = query();
    EXPECT_EQ(names.back(), "@gles_Color");
    EXPECT_EQ(entry.locations.colorAttrib, fakeLocation("gles_Color"));
    EXPECT_EQ(entry.locations.colorUniform, -1);
}

TEST_F(Locations, EitherUnitBringsTheEnvironmentUniforms)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        start(false);
        glActiveTexture(GL_TEXTURE0 + unit);
        glEnable(GL_TEXTURE_2D);
        const Calls names = query();
        EXPECT_TRUE(contains(names, "gles_sampler" + std::to_string(unit)));
        EXPECT_FALSE(contains(names, "gles_sampler" + std::to_string(1 - unit)));
        EXPECT_TRUE(contains(names, "gles_TexEnvColor"));
        EXPECT_TRUE(contains(names, "gles_TexEnvColorScale"));
        EXPECT_FALSE(contains(names, "gles_Texture" + std::to_string(unit) + "Matrix"));
    }
}

TEST_F(Locations, FogNamesDependOnSourceAndBackend)
{
    glEnable(GL_FOG);
    Calls names = query();
    EXPECT_TRUE(contains(names, "gles_FogEnd"));
    EXPECT_FALSE(contains(names, "gles_FogCoord"));
    EXPECT_TRUE(contains(names, "gles_FogColor"));
    start(true);
    glEnable(GL_FOG);
    glFogf(GL_FOG_COORDINATE_SOURCE_QRN, GL_FOG_COORDINATE_QRN);
    names = query();
    EXPECT_TRUE(contains(names, "gles_FogCoord"));
    EXPECT_FALSE(contains(names, "gles_FogColor"));
}

TEST_F(Locations, OnlyAMissingLineWidthIsAnAssertion)
{
    for (const char *name : {"gles_AlphaRef", "gles_NormalMatrix", "gles_Normal", "gles_FragColor"})
        fakeBackend().unknownLocations[name] = -1;
    query();
    EXPECT_EQ(entry.locations.alphaRef, -1);
    EXPECT_EQ(entry.locations.normalAttrib, -1);
    EXPECT_EQ(takeAssertions(), Calls{});

    fakeBackend().unknownLocations["gles_LineWidth"] = -1;
    glEnable(GL_LINE_SMOOTH);
    ctx->primitiveFlags = PRIMITIVE_LINES;
    query();
    EXPECT_EQ(takeAssertions().size(), 1u);
}

TEST_F(Locations, NamesAreFormattedWithTheirIndex)
{
    EXPECT_EQ(getUniformLocationf(3, "gles_LSpacked0[%i]", 7), fakeLocation("gles_LSpacked0[7]"));
    EXPECT_EQ(takeCalls(), Calls{"glGetUniformLocation(3, \"gles_LSpacked0[7]\")"});
}

TEST_F(Locations, NameOf1023CharactersFitsAndALongerOneIsCutWithAnAssertion)
{
    const std::string longest(1022, 'n');
    getUniformLocationf(3, (longest + "%i").c_str(), 7);
    EXPECT_EQ(takeCalls(), Calls{"glGetUniformLocation(3, \"" + longest + "7\")"});
    EXPECT_EQ(takeAssertions(), Calls{});
    getUniformLocationf(3, (longest + "%i").c_str(), 42);
    EXPECT_EQ(takeCalls(), Calls{"glGetUniformLocation(3, \"" + longest + "4\")"});
    EXPECT_EQ(takeAssertions().size(), 1u);
}

TEST_F(Locations, AreQueriedOncePerProgram)
{
    draw();
    EXPECT_FALSE(callsOf("glGetUniformLocation").empty());
    EXPECT_EQ(drawCalls("glGetUniformLocation"), Calls{});
    EXPECT_EQ(callsOf("glGetAttribLocation"), Calls{});
}
