// SPDX-License-Identifier: MIT
#include "shadergen/locations.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/context.h"
#include "vsp.h"

#include <cstdio>

namespace {

constexpr size_t kNameBytes = 1024; // with the terminating zero; the longest name has 34 characters

void formatName(char (&name)[kNameBytes], const char *format, int index)
{
    const int length = std::snprintf(name, kNameBytes, format, index);
    assertThat(length >= 0 && static_cast<size_t>(length) < kNameBytes, "uniform name shorter than 1024 characters");
}

// The functions of a row's kind, under its kind's name.
GLint queryUNIFORM(GLuint program, const char *name)
{
    return glGetUniformLocation_2_0(program, name);
}
GLint queryATTRIBUTE(GLuint program, const char *name)
{
    return glGetAttribLocation_2_0(program, name);
}

// One function per row of locations.def: `void sampler(ShaderProgramEntry *, int unit)` and so on, so that the order of
// queries below names rows and no location name is written twice.
namespace row {
#define LOCATION(field, name, kind)                                                                                    \
    void field(ShaderProgramEntry *entry)                                                                              \
    {                                                                                                                  \
        entry->locations.field = query##kind(entry->program, name);                                                    \
    }
#define LOCATION_UNITS(field, format, kind)                                                                            \
    void field(ShaderProgramEntry *entry, int unit)                                                                    \
    {                                                                                                                  \
        char name[kNameBytes];                                                                                         \
        formatName(name, format, unit);                                                                                \
        entry->locations.field[unit] = query##kind(entry->program, name);                                              \
    }
#include "shadergen/locations.def"
} // namespace row

void queryPalette(ShaderProgramEntry *entry)
{
    row::paletteWeightAttrib(entry);
    row::paletteIndexAttrib(entry);
    row::paletteMatrices(entry);
    row::paletteInverseMatrices(entry);
}

// Slot n of the light arrays is the n-th enabled light.
void queryLights(const GLIContext *ctx, ShaderProgramEntry *entry)
{
    row::materialEmission(entry);
    row::materialShininess(entry);
    row::sceneColor(entry);
    int slot = 0;
    for (const Light &light : ctx->lighting.lights) {
        if (!light.enabled) continue;
        LightLocations &locations = entry->locations.light[slot];
#define LOCATION_LIGHT(field, format) locations.field = getUniformLocationf(entry->program, format, slot);
#include "shadergen/locations.def"
        ++slot;
    }
}

void queryUnit(const GLIContext *ctx, ShaderProgramEntry *entry, int unit)
{
    const TextureUnitKey &key = ctx->key.unit[unit];
    if (key.enabled) row::sampler(entry, unit);
    if (key.texMatrixForm != TEX_MATRIX_IDENTITY) row::textureMatrix(entry, unit);
}

void queryFog(const GLIContext *ctx, ShaderProgramEntry *entry)
{
    row::fogEnd(entry);
    row::fogInvRange(entry);
    row::fogDensity(entry);
    if (ctx->fog.coordSource == GL_FOG_COORDINATE_QRN) row::fogCoord(entry);
    if (ctx->backend.lacksFog) row::fogColor(entry);
}

void queryPoints(ShaderProgramEntry *entry)
{
    row::pointDistanceAttenuation(entry);
    row::pointMinSize(entry);
    row::pointMaxSize(entry);
}

void queryAttributes(const GLIContext *ctx, ShaderProgramEntry *entry)
{
    row::vertexAttrib(entry);
    row::normalAttrib(entry);
    row::pointSizeAttrib(entry);
    row::texCoordAttrib(entry, 0);
    row::texCoordAttrib(entry, 1);
    if (ctx->key.perVertexColor) {
        row::colorAttrib(entry);
    } else {
        row::colorUniform(entry);
    }
}

} // namespace

GLint getUniformLocationf(GLuint program, const char *format, int index)
{
    char name[kNameBytes];
    formatName(name, format, index);
    return glGetUniformLocation_2_0(program, name);
}

void setVariableLocation(GLIContext *ctx, ShaderProgramEntry *entry)
{
    os_memset(&entry->locations, 0xFF, sizeof(entry->locations)); // -1 everywhere

    const ShaderStateBitfield &key = ctx->key;
    if (key.matrixPalette) queryPalette(entry);
    if (key.lighting) queryLights(ctx, entry);
    row::modelViewProjectionMatrix(entry);
    row::modelViewMatrix(entry);
    row::projectionMatrix(entry);
    row::normalMatrix(entry);
    if (key.userClip) {
        row::userClipPlaneEye(entry);
        row::userClipNeg(entry);
    }
    row::alphaRef(entry);
    queryUnit(ctx, entry, 0);
    queryUnit(ctx, entry, 1);
    if (key.unit[0].enabled || key.unit[1].enabled) {
        row::texEnvColor(entry);
        row::texEnvColorScale(entry);
    }
    if (key.alphaFactor) row::alphaFactor(entry);
    if (ctx->fog.enabled) queryFog(ctx, entry);
    if (ctx->pointLine.attenuationActive) queryPoints(entry);
    if (key.lineSmooth) {
        row::lineWidth(entry);
        assertThat(entry->locations.lineWidth != -1, "gles_LineWidth in a program for smooth lines");
    }
    queryAttributes(ctx, entry);
}
