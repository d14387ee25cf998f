// SPDX-License-Identifier: MIT
// The vertex shader text: declarations, functions, main. Uniforms that a key does not need are not declared.
#include "shadergen/generators.h"

#include "frontend/assert.h"
#include "frontend/context.h"
#include "shadergen/program_cache.h"
#include "shadergen/vertex_lighting.h"

namespace {

constexpr char kPassThroughHead[] = R"(#pragma GL_QRN_flat_varying
#define gles_MaxTextures 2

attribute vec4 gles_Vertex;
attribute vec4 gles_Color;
attribute vec4 gles_MultiTexCoord0;
attribute vec4 gles_MultiTexCoord1;

)";

constexpr char kPassThroughPacked[] = R"(varying vec4   gles_TexCoordPacked;
#define gles_TexCoord0 gles_TexCoordPacked.xy
#define gles_TexCoord1 gles_TexCoordPacked.zw
)";

constexpr char kDeclarations[] = R"(#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

)";

constexpr char kPointDeclarations[] = R"(uniform vec3       gles_PointDistanceAttenuation;
uniform float      gles_PointMinSize;
uniform float      gles_PointMaxSize;
)";

// Plain globals, which main fills and packs at its end.
constexpr char kPackedDeclarations[] = R"(varying vec4       gles_TexCoordPacked;
vec4               gles_TexCoord0;
vec4               gles_TexCoord1;

)";

constexpr char kUserClipDeclarations[] = R"(
// variables used when user clip plane is enabled
uniform vec4       userClipPlaneEye;
varying float      userClipDotVeye;

)";

constexpr char kFogDeclarations[] = R"(varying float      gles_FogFactor;
uniform float      gles_FogEnd;
uniform float      gles_FogInvRange;
uniform float      gles_FogDensity;
)";

constexpr char kPaletteTransform[] = R"(vec4 ftransform_to_eyecoord(void)
{
    return MPmodelView_tmp * gles_Vertex;
}

vec4 es_ftransform(void)
{
    return gles_ProjectionMatrix * (MPmodelView_tmp * gles_Vertex);
}

)";

constexpr char kTransform[] = R"(vec4 ftransform_to_eyecoord(void)
{
    return gles_ModelViewMatrix * gles_Vertex;
}

vec4 es_ftransform(void)
{
)";

constexpr char kTexGenNormal[] = R"(vec4 ftexgen_normal(in vec3 normal)
{
    return vec4(normal, 1.0);
}

)";

constexpr char kTexGenReflection[] = R"(vec4 ftexgen_reflection(in vec3 normal, in vec4 ecPosition)
{
    vec3 ecPosition3 = (vec3(ecPosition)) / ecPosition.w;
    vec3 reflection = reflect(normalize(ecPosition3), normal);
    return vec4(reflection, 1.0);
}

)";

constexpr char kBackColor[] = R"(
    // calculate back-facing frag color
    vec3  transformedNormalBack = fnormal(-gles_Normal);
    gles_FragColorBack = flight(transformedNormalBack, ecPosition);

)";

constexpr char kModelviewDepth[] =
    "    float fogz = abs(gles_ModelViewMatrix[0].z*gles_Vertex.x + gles_ModelViewMatrix[1].z*gles_Vertex.y + "
    "gles_ModelViewMatrix[2].z*gles_Vertex.z + gles_ModelViewMatrix[3].z*gles_Vertex.w);\n";

constexpr char kAttenuatedSize[] = R"(    float d = length(vec3(ecPosition) / ecPosition.w);
    float pda = sqrt(gles_PointDistanceAttenuation[0] +
                     gles_PointDistanceAttenuation[1] * d +
                     gles_PointDistanceAttenuation[2] * d * d);
    float pointSize = clamp(gles_PointSize / pda, gles_PointMinSize, gles_PointMaxSize);
)";

// One pixel larger for the edge. The ring is squared, since the fragment shader compares squared distances.
constexpr char kSmoothPointSize[] = R"(    gl_PointSize = pointSize + 1.0;
    aaInnerRing  = (pointSize - 1.0) / (2.0 * (pointSize + 1.0));
    aaInnerRing  *= aaInnerRing;
)";

void emitColorVaryings(const ProgramKey &key, strbuf *out)
{
    const bool flat = key.state.flatShading;
    strbuf_cat(out, flat ? "flat varying vec4  gles_FragColor;\n" : "varying vec4       gles_FragColor;\n");
    if (!key.state.twoSided) return;
    strbuf_cat(out, flat ? "flat varying vec4  gles_FragColorBack;\n" : "varying vec4       gles_FragColorBack;\n");
}

void emitColorCopy(const ProgramKey &key, strbuf *out)
{
    strbuf_cat(out, key.state.alphaFactor ? "    vec4 temp = clamp(gles_Color, 0.0, 1.0);\n"
                                            "    gles_FragColor = vec4(temp.rgb, temp.a * gles_alphaFactor);\n"
                                          : "    gles_FragColor = clamp(gles_Color, 0.0, 1.0);\n");
}

void emitPassThrough(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    strbuf_cat(out, kPassThroughHead);
    strbuf_cat(out, state.packedTexCoords ? kPassThroughPacked
                                          : "varying vec4   gles_TexCoord0;\nvarying vec4   gles_TexCoord1;\n\n");
    if (state.perVertexColor) emitColorVaryings(key, out);
    strbuf_cat(out, "void main(void)\n{\n");
    if (state.perVertexColor) emitColorCopy(key, out);
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit) {
        if (!state.unit[unit].enabled) continue;
        if (state.packedTexCoords) {
            strbuf_print(out, "    gles_TexCoord%i = vec2(gles_MultiTexCoord%i);\n", unit, unit);
        } else {
            strbuf_print(out, "    gles_TexCoord%i = gles_MultiTexCoord%i;\n", unit, unit);
        }
    }
    strbuf_cat(out, "\n    gl_Position = gles_Vertex;\n}\n\n");
}

void emitTransformUniform(const ProgramKey &key, strbuf *out)
{
    if (!assertThat(key.state.mvpForm <= MVP_SCALE_TRANSLATE, "shader key: mvpForm is 0 to 5")) return;
    strbuf_cat(out, key.state.mvpForm == MVP_SCALE_TRANSLATE ? "uniform vec4       gles_ModelViewProjectionMatrix[2];\n"
                                                             : "uniform mat4       gles_ModelViewProjectionMatrix;\n");
}

void emitUnitDeclarations(const ProgramKey &key, int unit, strbuf *out)
{
    const TextureUnitKey &unitKey = key.state.unit[unit];
    if (!unitKey.enabled) return;
    strbuf_print(out, "attribute vec4     gles_MultiTexCoord%i;\n", unit);
    if (!key.state.packedTexCoords) strbuf_print(out, "varying vec4       gles_TexCoord%i;\n", unit);
    if (unitKey.texMatrixForm == TEX_MATRIX_IDENTITY) return;
    if (unitKey.texMatrixForm == TEX_MATRIX_SCALE) {
        strbuf_print(out, "uniform vec4       gles_Texture%iMatrix;\n", unit);
    } else {
        strbuf_print(out, "uniform mat4       gles_Texture%iMatrix;\n", unit);
    }
}

void emitPaletteDeclarations(strbuf *out)
{
    const int count = static_cast<int>(kPaletteMatrices);
    strbuf_print(out,
                 "mat4               MPmodelView_tmp;        // Temporary matrix for mpalette\n"
                 "attribute vec4     mpalette_weight;\n"
                 "attribute vec4     mpalette_index;         // indices to palette for vertex (has to be float)\n"
                 "uniform mat4       MV_palette[%i];         // ModelView\n"
                 "uniform mat3       MVI_palette[%i];        // ModelViewInverse (Normal Matrix)\n\n",
                 count, count);
}

void emitVertexDeclarations(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    if (state.flatShading) strbuf_cat(out, "#pragma GL_QRN_flat_varying\n\n");
    if (state.lighting && state.lightCount != 0)
        strbuf_print(out, "#define gles_MaxLights    %i\n", static_cast<int>(state.lightCount));
    strbuf_cat(out, kDeclarations);
    emitTransformUniform(key, out);
    if (state.perVertexColor) {
        strbuf_cat(out, "attribute vec4     gles_Color;\n");
        emitColorVaryings(key, out);
    }
    if (state.alphaFactor) strbuf_cat(out, "uniform float      gles_alphaFactor;\n");
    if (key.inputs.pointAttenuation) strbuf_cat(out, kPointDeclarations);
    emitLightingDeclarations(key, out);
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit)
        emitUnitDeclarations(key, unit, out);
    if (state.packedTexCoords) strbuf_cat(out, kPackedDeclarations);
    strbuf_cat(out, "\n");
    if (state.userClip) strbuf_cat(out, kUserClipDeclarations);
    if (state.matrixPalette) emitPaletteDeclarations(out);
    if (state.fogMode != FOG_NONE) {
        if (state.fogCoordinate) strbuf_cat(out, "uniform float      gles_FogCoord;\n");
        strbuf_cat(out, kFogDeclarations);
    }
    // No line break: the next function follows on the same line.
    if (state.pointSmooth) strbuf_cat(out, "varying float      aaInnerRing;");
}

void emitFogFunction(const ProgramKey &key, strbuf *out)
{
    // By FogCode. exp(-x) is exp2(-x / ln 2).
    static constexpr const char *kFactor[] = {
        nullptr,
        "    gles_FogFactor = clamp((gles_FogEnd - z) * gles_FogInvRange, 0.0, 1.0);\n",
        "    gles_FogFactor = clamp(exp2(-gles_FogDensity * z * invloge2), 0.0, 1.0);\n",
        "    gles_FogFactor = clamp(exp2(-gles_FogDensity * z * gles_FogDensity * z * invloge2), 0.0, 1.0);\n",
    };
    if (key.state.fogMode == FOG_NONE) return;
    strbuf_cat(out, "\nvoid apply_fog(in float z)\n{\n");
    strbuf_cat(out, kFactor[key.state.fogMode]);
    strbuf_cat(out, "}\n");
}

void emitPaletteFunctions(const ProgramKey &key, strbuf *out)
{
    const int count = static_cast<int>(key.inputs.paletteUnits);
    strbuf_cat(out, kPaletteTransform);
    strbuf_cat(out, "void cons_mpalette(void)\n{\n    MPmodelView_tmp =\n");
    for (int i = 0; i < count; ++i) {
        strbuf_print(out, "        mpalette_weight[%i] * MV_palette[int(mpalette_index[%i])] %s\n", i, i,
                     i + 1 < count ? "+" : ";");
    }
    strbuf_cat(out, "}\n\nvec3 fnormal(vec3 v)\n{\n    vec3 normal = (\n");
    for (int i = 0; i < count; ++i) {
        strbuf_print(out, "        mpalette_weight[%i] * MVI_palette[int(mpalette_index[%i])]%s\n", i, i,
                     i + 1 < count ? " + " : ") * v;");
    }
}

// Rows of the matrix that are those of the identity pass the vertex' component through.
void emitRowProducts(int rows, strbuf *out)
{
    strbuf_cat(out, "    return vec4(");
    for (int i = 0; i < 4; ++i) {
        if (i < rows) {
            strbuf_print(out, "dot(gles_ModelViewProjectionMatrix[%i],gles_Vertex)", i);
        } else {
            strbuf_print(out, "gles_Vertex.%c", "xyzw"[i]);
        }
        if (i < 3) strbuf_cat(out, ",\n                ");
    }
    strbuf_cat(out, ");\n");
}

void emitMatrixFunctions(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    strbuf_cat(out, kTransform);
    if (state.mvpForm == MVP_SCALE_TRANSLATE) {
        strbuf_cat(out,
                   "    /* scale + translation */\n"
                   "    return gles_Vertex * gles_ModelViewProjectionMatrix[0]+gles_ModelViewProjectionMatrix[1];\n");
    } else if (state.mvpForm == MVP_GENERAL) {
        // The vector stands on the left, so the uniform holds the transposed matrix.
        strbuf_cat(out, "    return gles_Vertex * gles_ModelViewProjectionMatrix;\n");
    } else if (assertThat(state.mvpForm < MVP_GENERAL, "shader key: mvpForm is 0 to 5")) {
        emitRowProducts(static_cast<int>(state.mvpForm), out);
    }
    strbuf_cat(out, "}\n\nvec3 fnormal(vec3 v)\n{\n");
    // Lights that are all directional come in object space then.
    const bool objectSpace = state.orthogonalTransform && state.directionalLight && state.noTexGen;
    strbuf_cat(out, objectSpace ? "    vec3 normal = v;\n" : "    vec3 normal = gles_NormalMatrix * v;\n");
}

void emitTransformFunctions(const ProgramKey &key, strbuf *out)
{
    if (key.state.matrixPalette) {
        emitPaletteFunctions(key, out);
    } else {
        emitMatrixFunctions(key, out);
    }
    const bool normalize = key.state.normalizeNormal || key.inputs.normalizeForTexGen;
    strbuf_cat(out, normalize ? "    return normalize(normal);\n}\n\n" : "    return normal;\n}\n\n");
}

void emitTexGenFunctions(const ProgramKey &key, strbuf *out)
{
    bool normalMap = false;
    bool reflectionMap = false;
    for (const TextureUnitKey &unit : key.state.unit) {
        if (!unit.enabled) continue;
        assertThat(unit.texGen <= TEXGEN_REFLECTION_MAP, "shader key: texGen is 0 to 2");
        normalMap |= unit.texGen == TEXGEN_NORMAL_MAP;
        reflectionMap |= unit.texGen == TEXGEN_REFLECTION_MAP;
    }
    if (normalMap) strbuf_cat(out, kTexGenNormal);
    if (reflectionMap) strbuf_cat(out, kTexGenReflection);
}

void emitEyeCoordinates(const ProgramKey &key, strbuf *out)
{
    strbuf_cat(out, "    vec4  ecPosition = ftransform_to_eyecoord();\n"
                    "    vec3  transformedNormal = fnormal(gles_Normal);\n");
    if (key.state.lighting) {
        if (key.state.twoSided) strbuf_cat(out, kBackColor);
        strbuf_cat(out, "    gles_FragColor = flight(transformedNormal, ecPosition);\n");
    } else if (key.state.perVertexColor) {
        emitColorCopy(key, out);
    }
    if (key.state.userClip) strbuf_cat(out, "    userClipDotVeye = dot(userClipPlaneEye, ecPosition);\n");
}

void emitTexCoord(const ProgramKey &key, int unit, strbuf *out)
{
    static constexpr const char *kAttribute[] = {"gles_MultiTexCoord0", "gles_MultiTexCoord1"};
    static_assert(sizeof(kAttribute) / sizeof(kAttribute[0]) == kTextureUnits);
    const TextureUnitKey &unitKey = key.state.unit[unit];
    if (!unitKey.enabled) return;

    const char *source = kAttribute[unit];
    if (unitKey.texGen == TEXGEN_NORMAL_MAP) source = "ftexgen_normal(transformedNormal)";
    if (unitKey.texGen == TEXGEN_REFLECTION_MAP) source = "ftexgen_reflection(transformedNormal, ecPosition)";
    if (unitKey.texMatrixForm == TEX_MATRIX_IDENTITY) {
        strbuf_print(out, "    gles_TexCoord%i = %s;\n", unit, source);
    } else {
        strbuf_print(out, "    gles_TexCoord%i = gles_Texture%iMatrix * %s;\n", unit, unit, source);
    }
}

void emitFogCall(const ProgramKey &key, strbuf *out)
{
    if (key.state.fogMode == FOG_NONE) return;
    if (key.state.fogCoordinate) {
        strbuf_cat(out, "    float fogz = gles_FogCoord;\n");
    } else {
        strbuf_cat(out, key.state.eyeCoordinates ? "    float fogz = abs(ecPosition.z);\n" : kModelviewDepth);
    }
    strbuf_cat(out, "    apply_fog(fogz);\n");
}

void emitPointSize(const ProgramKey &key, strbuf *out)
{
    if (!key.state.pointSize) return;
    strbuf_cat(out, key.inputs.pointAttenuation ? kAttenuatedSize : "    float pointSize = gles_PointSize;\n");
    strbuf_cat(out, key.state.pointSmooth ? kSmoothPointSize : "    gl_PointSize = pointSize;\n");
}

void emitVertexMain(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    if (state.matrixPalette) strbuf_cat(out, "    cons_mpalette();\n");
    if (state.eyeCoordinates) {
        emitEyeCoordinates(key, out);
    } else if (state.perVertexColor) {
        emitColorCopy(key, out);
    }
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit)
        emitTexCoord(key, unit, out);
    strbuf_cat(out, "\n    gl_Position = es_ftransform();\n");
    emitFogCall(key, out);
    emitPointSize(key, out);
    if (state.packedTexCoords) {
        strbuf_cat(out, "    gles_TexCoordPacked.xy = gles_TexCoord0.xy;\n"
                        "    gles_TexCoordPacked.zw = gles_TexCoord1.xy;\n");
    }
}

} // namespace

void generateVertexText(const ProgramKey &key, strbuf *out)
{
    strbuf_reset(out);
    if (key.state.passThrough) return emitPassThrough(key, out);

    emitVertexDeclarations(key, out);
    emitLightingFunction(key, out);
    emitFogFunction(key, out);
    emitTransformFunctions(key, out);
    emitTexGenFunctions(key, out);
    strbuf_cat(out, "void main(void)\n{\n");
    emitVertexMain(key, out);
    strbuf_cat(out, "}\n");
}

const char *GenerateVertexShader(GLIContext *ctx)
{
    generateVertexText(ctx->shaderCache->wanted, &ctx->shaderText);
    return ctx->shaderText.cut ? nullptr : ctx->shaderText.text;
}
