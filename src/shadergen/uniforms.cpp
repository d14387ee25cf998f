// SPDX-License-Identifier: MIT
#include "shadergen/uniforms.h"

#include "frontend/assert.h"
#include "frontend/backend.h"
#include "frontend/context.h"
#include "math/fp_vector.h"
#include "math/matrix_record.h"
#include "shadergen/program_cache.h"

#include <bit>

namespace {

void uploadTextureUnits(const GLIContext *ctx, const ProgramLocations &locations)
{
#pragma GCC unroll 2
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        const TextureUnitKey &key = ctx->key.unit[unit];
        if (!key.enabled) continue;
        glUniform1i_2_0(locations.sampler[unit], static_cast<GLint>(unit));
        if (key.texMatrixForm == TEX_MATRIX_IDENTITY) continue;
        const float *m = ctx->transform.top[STACK_TEXTURE0 + unit]->f;
        if (key.texMatrixForm == TEX_MATRIX_SCALE) {
            const GLfloat diagonal[4] = {m[0], m[5], m[10], m[15]};
            glUniform4fv_2_0(locations.textureMatrix[unit], 1, diagonal);
        } else {
            glUniformMatrix4fv_2_0(locations.textureMatrix[unit], 1, GL_FALSE, m);
        }
    }
    GLfloat colors[kTextureUnits][4];
    GLfloat scales[kTextureUnits][4];
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        for (uint32_t i = 0; i < 4; ++i) {
            colors[unit][i] = ctx->texEnv[unit].color[i];
            scales[unit][i] = ctx->texEnv[unit].scale[i];
        }
    }
    glUniform4fv_2_0(locations.texEnvColor, kTextureUnits, colors[0]);
    glUniform4fv_2_0(locations.texEnvColorScale, kTextureUnits, scales[0]);
}

// This and other parts that most draws do without are out of line: every draw would save registers for them.
[[gnu::noinline]] void uploadFog(const GLIContext *ctx, const ProgramLocations &locations)
{
    const FogState &fog = ctx->fog;
    glUniform1f_2_0(locations.fogEnd, fog.end);
    glUniform1f_2_0(locations.fogInvRange, 1.0f / (fog.end - fog.start)); // infinite for an empty range
    glUniform1f_2_0(locations.fogDensity, fog.density);
    if (fog.coordSource == GL_FOG_COORDINATE_QRN) glUniform1f_2_0(locations.fogCoord, ctx->vendor.fogCoord);
    if (ctx->backend.lacksFog) {
        glUniform3fv_2_0(locations.fogColor, 1, fog.color);
    } else {
        glFogfvQRN_2_0(GL_FOG_COLOR, fog.color);
    }
}

// Kept between draws, since most draws change neither matrix.
[[gnu::noinline]] void makeMvpUpload(TransformState &transform, MvpUploadKind kind)
{
    const float *m = transform.modelViewProjection.f;
    float *out = transform.mvpUpload;
    if (kind == MVP_UPLOAD_TRANSPOSED) {
        matrixTranspose(m, out); // the shader has the vector on the left, or takes rows
    } else {
        for (uint32_t i = 0; i < 4; ++i) {
            out[i] = m[5 * i];
            out[4 + i] = m[12 + i];
        }
        out[7] = 0.0f; // element 15 is part of the scale
    }
    transform.mvpUploadKind = kind;
}

void uploadModelViewProjection(GLIContext *ctx, const ProgramLocations &locations)
{
    TransformState &transform = ctx->transform;
    const uint32_t form = ctx->key.mvpForm;
    if (form <= MVP_GENERAL) [[likely]] {
        if (transform.mvpUploadKind != MVP_UPLOAD_TRANSPOSED) [[unlikely]]
            makeMvpUpload(transform, MVP_UPLOAD_TRANSPOSED);
        glUniformMatrix4fv_2_0(locations.modelViewProjectionMatrix, 1, GL_FALSE, transform.mvpUpload);
    } else if (assertThat(form == MVP_SCALE_TRANSLATE, "form of the modelview-projection matrix")) {
        if (transform.mvpUploadKind != MVP_UPLOAD_SCALE_TRANSLATE) makeMvpUpload(transform, MVP_UPLOAD_SCALE_TRANSLATE);
        glUniform4fv_2_0(locations.modelViewProjectionMatrix, 2, transform.mvpUpload);
    }
}

[[gnu::noinline]] void uploadClipPlane(GLIContext *ctx, const ProgramLocations &locations)
{
    GLfloat *plane = ctx->viewport.clipPlaneEye;
    GLint negated = 0;
    if (plane[0] < 0.0f) {
        // Stays turned: the next draw finds a positive coefficient and loads 0. Applications of this library rely on
        // it.
        for (uint32_t i = 0; i < 4; ++i)
            plane[i] = -plane[i];
        negated = 1;
    }
    glUniform1i_2_0(locations.userClipNeg, negated);
    glUniform4fv_2_0(locations.userClipPlaneEye, 1, plane);
}

// A direction by the transpose of the modelview's 3x3: from eye space into object space when that is orthogonal.
void toObjectSpace(const MatrixRecord &modelview, const GLfloat direction[3], GLfloat out[3])
{
    for (uint32_t column = 0; column < 3; ++column)
        out[column] = fp_vec3_dotp(modelview.f + 4 * column, direction);
}

void uploadLightDirections(const GLIContext *ctx, const Light &light, const LightLocations &locations)
{
    const ShaderStateBitfield &key = ctx->key;
    if (key.orthogonalTransform && key.directionalLight && key.noTexGen && !key.matrixPalette) {
        const MatrixRecord &modelview = *ctx->transform.top[STACK_MODELVIEW];
        GLfloat direction[3];
        GLfloat halfVector[3];
        toObjectSpace(modelview, light.direction, direction);
        toObjectSpace(modelview, light.halfVector, halfVector);
        glUniform3fv_2_0(locations.position0, 1, direction);
        glUniform3fv_2_0(locations.position1, 1, halfVector);
    } else if (light.kind == LIGHT_DIRECTIONAL) {
        glUniform3fv_2_0(locations.position0, 1, light.direction);
        glUniform3fv_2_0(locations.position1, 1, light.halfVector);
    }
}

void uploadLight(const GLIContext *ctx, const Light &light, const LightLocations &locations)
{
    glUniform4fv_2_0(locations.ambient, 1, light.ambientProduct);
    glUniform4fv_2_0(locations.diffuse, 1, light.diffuseProduct);
    glUniform4fv_2_0(locations.specular, 1, light.specularProduct);
    uploadLightDirections(ctx, light, locations);
    glUniform3fv_2_0(locations.spotDirection, 1, light.spotDirectionUnit);
    glUniform3fv_2_0(locations.position, 1, light.position);
    glUniform4fv_2_0(locations.packed0, 1, light.packed0);
    glUniform4fv_2_0(locations.packed1, 1, light.packed1);
}

} // namespace

void uploadDrawUniforms(GLIContext *ctx)
{
    const ProgramLocations &locations = ctx->currentEntry->locations;
    const ShaderStateBitfield &key = ctx->key;
    if (key.unit[0].enabled || key.unit[1].enabled) uploadTextureUnits(ctx, locations);
    if (key.alphaFactor) glUniform1f_2_0(locations.alphaFactor, ctx->vendor.alphaFactor);
    if (ctx->fog.enabled) uploadFog(ctx, locations);
    if (ctx->pointLine.attenuationActive) {
        glUniform3fv_2_0(locations.pointDistanceAttenuation, 1, ctx->pointLine.distanceAttenuation);
        glUniform1f_2_0(locations.pointMinSize, ctx->pointLine.pointSizeMin);
        glUniform1f_2_0(locations.pointMaxSize, ctx->pointLine.pointSizeMax);
    }
    if (key.lineSmooth) glUniform1f_2_0(locations.lineWidth, ctx->pointLine.lineWidth + 1.0f);
    glUniform1f_2_0(locations.alphaRef, ctx->alphaTest.ref);
}

void uploadTransformUniforms(GLIContext *ctx)
{
    const ProgramLocations &locations = ctx->currentEntry->locations;
    const TransformState &transform = ctx->transform;
    uploadModelViewProjection(ctx, locations);
    glUniformMatrix4fv_2_0(locations.modelViewMatrix, 1, GL_FALSE, transform.top[STACK_MODELVIEW]->f);
    glUniformMatrix4fv_2_0(locations.projectionMatrix, 1, GL_FALSE, transform.top[STACK_PROJECTION]->f);
    glUniformMatrix3fv_2_0(locations.normalMatrix, 1, GL_FALSE, transform.normalMatrix);
    if (ctx->key.userClip) uploadClipPlane(ctx, locations);
}

[[gnu::noinline]] void uploadLightUniforms(GLIContext *ctx)
{
    const ProgramLocations &locations = ctx->currentEntry->locations;
    const LightingState &lighting = ctx->lighting;
    glUniform4fv_2_0(locations.materialEmission, 1, lighting.material.emission);
    glUniform1f_2_0(locations.materialShininess, lighting.material.shininess);
    glUniform4fv_2_0(locations.sceneColor, 1, lighting.sceneColor);

    uint32_t slot = 0;
    for (uint32_t left = enabledLights(lighting); left; left &= left - 1)
        uploadLight(ctx, lighting.lights[std::countr_zero(left)], locations.light[slot++]);
    assertThat(slot == ctx->key.lightCount, "number of enabled lights");
}
