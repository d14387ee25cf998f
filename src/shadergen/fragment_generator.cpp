// SPDX-License-Identifier: MIT
// The fragment shader text: colour, texture stages, alpha test, clip plane, fog, coverage. The alpha test sees the
// colour before fog and coverage.
#include "shadergen/generators.h"

#include "frontend/assert.h"
#include "frontend/context.h"
#include "shadergen/fragment_combine.h"
#include "shadergen/program_cache.h"

namespace {

constexpr char kPackedCoordinates[] = R"(varying mediump vec4        gles_TexCoordPacked;

#define gles_TexCoord0 vec2(gles_TexCoordPacked.xy)
#define gles_TexCoord1 vec2(gles_TexCoordPacked.zw)

)";

constexpr char kEnvironmentUniforms[] = R"(uniform mediump vec4        gles_TexEnvColorScale[2];
uniform mediump vec4        gles_TexEnvColor[2];

mediump         vec4        currentColor;

)";

constexpr char kMainHead[] = R"(
void main(void)
{
    mediump vec4  texture0;
    mediump vec4  texture1;
    mediump vec4  arg0;
    mediump vec4  arg1;
    mediump vec4  arg2;
)";

constexpr char kChooseFace[] = R"(    if (gl_FrontFacing)
    {
        currentColor = gles_FragColor;
    }
    else
    {
        currentColor = gles_FragColorBack;
    }
)";

constexpr char kUserClipTest[] = R"(    if     (!userClipNeg && userClipDotVeye < 0.0 ) discard;
    else if (userClipNeg && userClipDotVeye >= 0.0) discard;
)";

// aaInnerRing is a squared distance, as dist is.
constexpr char kPointCoverage[] =
    R"(    dist = dot(gl_PointCoord.xy - vec2(0.5, 0.5), gl_PointCoord.xy - vec2(0.5, 0.5));
    coverage = (1.0 - smoothstep(aaInnerRing, 0.25, dist));
    if (coverage == 0.0) discard;
    currentColor.a *= coverage;
)";

constexpr char kLineCoverage[] = R"(    dist = abs(gl_LineCoord.y - 0.5);
    coverage = min( (0.5 - dist) * gles_LineWidth, 1.0);
    currentColor.a *= coverage;
)";

// Which components a texture brings into the classic environment modes.
enum TextureComponents : uint32_t { ALPHA_ONLY, COLOR_ONLY, COLOR_AND_ALPHA, NO_COMPONENTS };

// Formats of the classic modes' statements, by EnvCode and TextureComponents. Every %i, three at most, is the unit.
// GL_DECAL with an alpha texture copies the colour as with an RGB texture.
constexpr const char *kClassicModes[ENV_REPLACE + 1][NO_COMPONENTS] = {
    {nullptr, nullptr, nullptr},
    // GL_MODULATE
    {
        "    currentColor.a *= texture%i.a; // GL_MODULATE\n",
        "    currentColor.rgb *= texture%i.rgb; // GL_MODULATE\n",
        "    currentColor *= texture%i; // GL_MODULATE\n",
    },
    // GL_DECAL
    {
        "    currentColor.rgb = texture%i.rgb; // GL_DECAL\n",
        "    currentColor.rgb = texture%i.rgb; // GL_DECAL\n",
        "    currentColor.rgb += (texture%i.rgb - currentColor.rgb) * texture%i.a; // GL_DECAL\n",
    },
    // GL_ADD
    {
        "    currentColor.a *= texture%i.a; // GL_ADD\n"
        "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n",
        "    currentColor.rgb += texture%i.rgb; // GL_ADD\n"
        "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n",
        "    currentColor.rgb += texture%i.rgb; // GL_ADD\n"
        "    currentColor.a *= texture%i.a;     // GL_ADD\n"
        "    currentColor = clamp(currentColor, 0.0, 1.0);\n\n",
    },
    // GL_BLEND
    {
        "    currentColor.a *= texture%i.a; // GL_BLEND\n",
        "    currentColor.rgb += (gles_TexEnvColor[%i].rgb - currentColor.rgb) * texture%i.rgb; // GL_BLEND\n",
        "    currentColor = vec4(currentColor.rgb + (gles_TexEnvColor[%i].rgb - currentColor.rgb) * texture%i.rgb, "
        "currentColor.a * texture%i.a); // GL_BLEND\n",
    },
    // GL_REPLACE
    {
        "    currentColor.a = texture%i.a; // GL_REPLACE\n",
        "    currentColor.rgb = texture%i.rgb; // GL_REPLACE\n",
        "    currentColor = texture%i; // GL_REPLACE\n",
    },
};

void emitHead(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    strbuf_cat(out, "\n");
    if (state.flatShading) strbuf_cat(out, "#pragma GL_QRN_flat_varying\n");
    if (state.fogMode != FOG_NONE && !key.inputs.fogBlendInShader)
        strbuf_cat(out, "#extension GL_QRN_fog_blend : require\n");
    if (state.lineSmooth) strbuf_cat(out, "#extension GL_QRN_line_coord : require\n");
    strbuf_cat(out, "#extension GL_OES_EGL_image_external : require\n\n");
}

void emitColorInputs(const ProgramKey &key, strbuf *out)
{
    const bool flat = key.state.flatShading;
    if (!key.state.perVertexColor) return strbuf_cat(out, "uniform mediump vec4        gles_FragColor;\n");
    strbuf_cat(out, flat ? "flat varying mediump vec4   gles_FragColor;\n"
                         : "varying mediump vec4        gles_FragColor;\n");
    if (!key.state.twoSided) return;
    strbuf_cat(out, flat ? "flat varying mediump vec4   gles_FragColorBack;\n"
                         : "varying mediump vec4        gles_FragColorBack;\n");
}

void emitTextureInputs(const ProgramKey &key, strbuf *out)
{
    if (key.state.packedTexCoords) {
        strbuf_cat(out, kPackedCoordinates);
    } else {
        for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit)
            if (key.state.unit[unit].enabled) strbuf_print(out, "varying mediump vec4        gles_TexCoord%i;\n", unit);
    }
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit) {
        const TextureUnitKey &unitKey = key.state.unit[unit];
        if (!unitKey.enabled) continue;
        const char *type = unitKey.external ? "samplerExternalOES" : unitKey.cubeMap ? "samplerCube" : "sampler2D";
        strbuf_print(out, "uniform         %s gles_sampler%d;\n", type, unit);
    }
}

void emitFragmentDeclarations(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    emitHead(key, out);
    emitColorInputs(key, out);
    emitTextureInputs(key, out);
    if (state.userClip) strbuf_cat(out, "uniform lowp    bool        userClipNeg;\n");
    if (state.fogMode != FOG_NONE) strbuf_cat(out, "uniform mediump vec3        gles_FogColor;\n");
    if (state.lineSmooth) strbuf_cat(out, "uniform mediump float       gles_LineWidth;\n");
    if (state.alphaFunc != 0) strbuf_cat(out, "uniform mediump float       gles_AlphaRef;\n");
    strbuf_cat(out, kEnvironmentUniforms);
    if (state.userClip) strbuf_cat(out, "varying highp   float       userClipDotVeye;\n");
    if (state.pointSmooth) strbuf_cat(out, "varying mediump float       aaInnerRing;\n");
    if (state.fogMode != FOG_NONE) strbuf_cat(out, "varying mediump float       gles_FogFactor;\n");
    strbuf_cat(out, kMainHead);
    if (state.pointSmooth || state.lineSmooth)
        strbuf_cat(out, "    mediump float dist;\n    mediump float coverage;\n");
    strbuf_cat(out, "\n");
    strbuf_cat(out, state.twoSided ? kChooseFace : "    currentColor = gles_FragColor;\n");
}

const char *lookupExpression(const ProgramKey &key, int unit)
{
    // Two strings each: by unit.
    static constexpr const char *kSprite[] = {"texture2D(gles_sampler0, gl_PointCoord.xy)",
                                              "texture2D(gles_sampler1, gl_PointCoord.xy)"};
    static constexpr const char *kSpriteCube[] = {"textureCube(gles_sampler0, vec3(gl_PointCoord.xy, 0.0))",
                                                  "textureCube(gles_sampler1, vec3(gl_PointCoord.xy, 0.0))"};
    static constexpr const char *kCube[] = {"textureCube(gles_sampler0, gles_TexCoord0.xyz)",
                                            "textureCube(gles_sampler1, gles_TexCoord1.xyz)"};
    static constexpr const char *kProjective[] = {"texture2DProj(gles_sampler0, gles_TexCoord0.xyzw)",
                                                  "texture2DProj(gles_sampler1, gles_TexCoord1.xyzw)"};
    static constexpr const char *kPlain[] = {"texture2D(gles_sampler0, gles_TexCoord0.xy)",
                                             "texture2D(gles_sampler1, gles_TexCoord1.xy)"};
    const TextureUnitKey &unitKey = key.state.unit[unit];
    if (key.state.pointSpriteReplace >> unit & 1) return unitKey.cubeMap ? kSpriteCube[unit] : kSprite[unit];
    if (unitKey.cubeMap) return kCube[unit];
    return unitKey.projective ? kProjective[unit] : kPlain[unit];
}

TextureComponents textureComponents(uint32_t formatClass)
{
    switch (formatClass) {
    case FORMAT_ALPHA:
        return ALPHA_ONLY;
    case FORMAT_LUMINANCE:
    case FORMAT_RGB:
        return COLOR_ONLY;
    case FORMAT_LUMINANCE_ALPHA:
    case FORMAT_RGBA:
        return COLOR_AND_ALPHA;
    default:
        assertThat(false, "shader key: formatClass is 0 to 4");
        return NO_COMPONENTS;
    }
}

void emitStage(const ProgramKey &key, int unit, strbuf *out)
{
    const CombineBlock &block = key.state.combine[unit];
    const TextureComponents components = textureComponents(block.formatClass);
    if (!assertThat(block.envRgb >= ENV_MODULATE && block.envRgb <= COMBINE_DOT3_RGBA,
                    "shader key: environment code is 1 to 13"))
        return;
    if (block.envRgb >= COMBINE_REPLACE) return emitCombine(key, static_cast<uint32_t>(unit), out);
    if (components != NO_COMPONENTS) strbuf_print(out, kClassicModes[block.envRgb][components], unit, unit, unit);
}

void emitTextureStages(const ProgramKey &key, strbuf *out)
{
    // All lookups first: a stage may use the other unit's texture.
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit)
        if (key.state.unit[unit].enabled) strbuf_print(out, "    texture%i = %s;\n", unit, lookupExpression(key, unit));
    for (int unit = 0; unit < static_cast<int>(kTextureUnits); ++unit)
        if (key.state.unit[unit].enabled) emitStage(key, unit, out);
}

void emitAlphaTest(const ProgramKey &key, strbuf *out)
{
    // From GL_NEVER on; the first without a line break. No code for GL_ALWAYS.
    static constexpr const char *kTest[] = {
        "",
        "    discard;",
        "    if (!(currentColor.a  < gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a == gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a <= gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a  > gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a != gles_AlphaRef)) discard;\n\n",
        "    if (!(currentColor.a >= gles_AlphaRef)) discard;\n\n",
    };
    strbuf_cat(out, kTest[key.state.alphaFunc]);
}

void emitFog(const ProgramKey &key, strbuf *out)
{
    if (key.state.fogMode == FOG_NONE) return;
    strbuf_cat(out, key.inputs.fogBlendInShader
                        ? "    currentColor.rgb = gles_FogColor + gles_FogFactor * (currentColor.rgb - gles_FogColor);"
                          "\n\n"
                        : "    gl_FogFactor = gles_FogFactor;\n");
}

} // namespace

void generateFragmentText(const ProgramKey &key, strbuf *out)
{
    strbuf_reset(out);
    emitFragmentDeclarations(key, out);
    emitTextureStages(key, out);
    emitAlphaTest(key, out);
    if (key.state.userClip) strbuf_cat(out, kUserClipTest);
    emitFog(key, out);
    if (key.state.pointSmooth) strbuf_cat(out, kPointCoverage);
    if (key.state.lineSmooth) strbuf_cat(out, kLineCoverage);
    strbuf_cat(out, "    gl_FragColor = currentColor;\n}\n");
}

const char *GenerateFragmentShader(GLIContext *ctx)
{
    generateFragmentText(ctx->shaderCache->wanted, &ctx->shaderText);
    return ctx->shaderText.cut ? nullptr : ctx->shaderText.text;
}
