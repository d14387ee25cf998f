// SPDX-License-Identifier: MIT
#include "shadergen/vertex_lighting.h"

#include "frontend/assert.h"
#include "frontend/gl_limits.h"
#include "state/lighting_state.h"

namespace {

constexpr char kLightingDeclarations[] = R"(
// variables used if lighting is enabled
#define spotExponent packed0.x
#define spotCutoff packed0.y
#define spotCosCutoff packed0.z
#define constantAttenuation packed1.x
#define linearAttenuation packed1.y
#define quadraticAttenuation packed1.z

struct gles_MaterialParameters {
    vec4 emission;    // Ecm
    float shininess;  // Srm
};
uniform gles_MaterialParameters gles_Material;

struct gles_LightModelProducts {
    vec4 sceneColor;  // Derived. Ecm + Acm * Acs
};
uniform gles_LightModelProducts gles_LightModelProduct;

vec4 AmbientDiffuse;
vec4 Specular;

)";

constexpr char kLightArrays[] = R"(uniform vec4 gles_LSambient[gles_MaxLights];             // Acli
uniform vec4 gles_LSdiffuse[gles_MaxLights];             // Dcli
uniform vec4 gles_LSspecular[gles_MaxLights];            // Scli
uniform vec3 gles_LSposition[gles_MaxLights];            // position
uniform vec3 gles_LSspotDirection[gles_MaxLights];       // Sdli
uniform vec4 gles_LSpacked0[gles_MaxLights];             // packed0.xyzw = {exponent, cutoff, coscutoff, unused}
uniform vec4 gles_LSpacked1[gles_MaxLights];             // packed1.xyzw = {catt, latt, qatt, unused}
uniform vec3 gles_LSposition0[gles_MaxLights];
uniform vec3 gles_LSposition1[gles_MaxLights];
)";

// The half vectors of point and spot lights are taken with the fixed eye direction (0, 0, 1), as for a viewer that is
// not local. That of a directional light comes as vp1.
constexpr char kDirectionalHead[] =
    R"(void processDirectionalLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 vp0, vec3 vp1, in vec3 normal)
{
)";

constexpr char kDirectionalSpecular[] =
    "    Specular += specular * pow(clamp(dot(normal, vp1), 0.0, 1.0), gles_Material.shininess);\n";

constexpr char kDirectionalTail[] =
    R"(     AmbientDiffuse += vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * max(0.0, dot(normal, vp0));
}

)";

constexpr char kPointHead[] =
    R"(void processPointLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 position, vec4 packed1, in vec3 normal, in vec3 ecPosition3)
{
    // Compute vector from surface to light position
    vec3 VP = position - ecPosition3;

    // Compute distance between surface and light position
    float d = length(VP);

    // Normalize the vector from surface to light position
    VP = normalize(VP);

    // Compute attenuation
    float attenuation = 1.0 / (constantAttenuation +
        linearAttenuation * d +
        quadraticAttenuation * d * d);

    float nDotVP = max(0.0, dot(normal, VP)); // normal . light direction
    if (nDotVP > 0.0)
    {
)";

constexpr char kPointSpecular[] =
    R"(        float nDotHV = clamp(dot(normal, normalize(VP + vec3(0.0, 0.0, 1.0))), 0.0, 1.0); // normal . light half vector
        Specular += attenuation * specular * pow(nDotHV, gles_Material.shininess);
)";

constexpr char kPointTail[] =
    R"(        AmbientDiffuse += attenuation * ( vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * nDotVP);
    }
    else
    {
        AmbientDiffuse.rgb += (attenuation * ambient.rgb);
    }
}

)";

constexpr char kSpotHead[] =
    R"(void processSpotLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 position, vec3 spotDirection, vec4 packed0, vec4 packed1, in vec3 normal, in vec3 ecPosition3)
{
    // Compute vector from surface to light position
    vec3 VP = position - ecPosition3;

    // Compute distance between surface and light position
    float d = length(VP);

    // Normalize the vector from surface to light position
    VP = normalize(VP);

    // See if point on surface is inside cone of illumination
    float spotDot = dot(-VP, spotDirection);
    float attenuation = 0.0;

    if (spotDot >= spotCosCutoff)
    {
        // Compute distance attenuation
        attenuation = 1.0 / (constantAttenuation +
            linearAttenuation * d +
            quadraticAttenuation * d * d);

        // Combine the spotlight and distance attenuation.
        attenuation *= pow(spotDot, spotExponent);
    }

    float nDotVP = max(0.0, dot(normal, VP));  // normal . light direction

    if (nDotVP > 0.0)
    {
)";

constexpr char kSpotSpecular[] =
    R"(        float nDotHV = clamp(dot(normal, normalize(VP + vec3(0.0, 0.0, 1.0))), 0.0, 1.0); // normal . light_half_vector
        Specular += attenuation * specular * pow(nDotHV, gles_Material.shininess);

)";

constexpr char kSpotTail[] =
    R"(        AmbientDiffuse += attenuation * (vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * nDotVP);
    }
    else
    {
        AmbientDiffuse.rgb += (attenuation * ambient.rgb);
    }
}

)";

// LightKind of a light as the key has it.
uint32_t lightKind(const ProgramKey &key, uint32_t light)
{
    return key.inputs.lightKinds >> (2 * light) & 3;
}

bool hasLightOfKind(const ProgramKey &key, LightKind kind)
{
    for (uint32_t light = 0; light < kMaxLights; ++light)
        if (lightKind(key, light) == kind) return true;
    return false;
}

void emitLightFunction(const ProgramKey &key, strbuf *out, const char *head, const char *specular, const char *tail)
{
    strbuf_cat(out, head);
    if (!key.state.noSpecular) strbuf_cat(out, specular);
    strbuf_cat(out, tail);
}

// Slot n of the light uniforms is the n-th enabled light, not the light's number.
void emitLightCall(uint32_t kind, uint32_t slot, strbuf *out)
{
    const int n = static_cast<int>(slot);
    switch (kind) {
    case LIGHT_DIRECTIONAL:
        strbuf_print(out,
                     "    processDirectionalLight(gles_LSambient[%i], gles_LSdiffuse[%i], gles_LSspecular[%i], "
                     "gles_LSposition0[%i], gles_LSposition1[%i], normal);\n",
                     n, n, n, n, n);
        break;
    case LIGHT_POINT:
        strbuf_print(out,
                     "    processPointLight(gles_LSambient[%i], gles_LSdiffuse[%i], gles_LSspecular[%i], "
                     "gles_LSposition[%i], gles_LSpacked1[%i], normal, ecPosition3);\n",
                     n, n, n, n, n);
        break;
    case LIGHT_SPOT:
        strbuf_print(out,
                     "    processSpotLight(gles_LSambient[%i], gles_LSdiffuse[%i], gles_LSspecular[%i], "
                     "gles_LSposition[%i], gles_LSspotDirection[%i], gles_LSpacked0[%i], gles_LSpacked1[%i], "
                     "normal, ecPosition3);\n",
                     n, n, n, n, n, n, n);
        break;
    default:
        assertThat(false, "shader key: an enabled light is directional, point or spot");
    }
}

void emitLightCalls(const ProgramKey &key, strbuf *out)
{
    uint32_t slot = 0;
    for (uint32_t light = 0; light < kMaxLights; ++light)
        if (const uint32_t kind = lightKind(key, light); kind != LIGHT_OFF) emitLightCall(kind, slot++, out);
    assertThat(slot == key.state.lightCount, "shader key: lightCount is the number of enabled lights");
}

} // namespace

void emitLightingDeclarations(const ProgramKey &key, strbuf *out)
{
    if (!key.state.lighting) return;
    strbuf_cat(out, kLightingDeclarations);
    if (key.state.lightCount != 0) strbuf_cat(out, kLightArrays);
}

void emitLightingFunction(const ProgramKey &key, strbuf *out)
{
    const ShaderStateBitfield &state = key.state;
    if (!state.lighting) return;

    const bool anyPoint = hasLightOfKind(key, LIGHT_POINT);
    const bool anySpot = hasLightOfKind(key, LIGHT_SPOT);
    if (hasLightOfKind(key, LIGHT_DIRECTIONAL))
        emitLightFunction(key, out, kDirectionalHead, kDirectionalSpecular, kDirectionalTail);
    if (anyPoint) emitLightFunction(key, out, kPointHead, kPointSpecular, kPointTail);
    if (anySpot) emitLightFunction(key, out, kSpotHead, kSpotSpecular, kSpotTail);

    strbuf_cat(out, "vec4 flight(in vec3 normal, in vec4 ecPosition)\n{\n");
    if (anyPoint || anySpot) strbuf_cat(out, "    vec3 ecPosition3 = (vec3(ecPosition)) / ecPosition.w;\n");
    strbuf_cat(out, "    // clear the light intensity accumulators\n    AmbientDiffuse = vec4(0.0);\n");
    strbuf_cat(out, state.noSpecular ? "\n" : "    Specular = vec4(0.0);\n\n");
    if (state.lightCount != 0) emitLightCalls(key, out);

    strbuf_cat(out, "\n    vec4 color = gles_LightModelProduct.sceneColor;");
    if (state.lightCount != 0) strbuf_cat(out, "\n    color.rgb += AmbientDiffuse.rgb;");
    strbuf_cat(out, state.colorMaterial ? "\n    color = color * gles_Color + gles_Material.emission;\n" : "\n");
    if (!state.noSpecular && state.lightCount != 0) strbuf_cat(out, "    color.rgb += Specular.rgb;\n");
    strbuf_cat(out, state.alphaFactor ? "    color = clamp(color, 0.0, 1.0);\n"
                                        "    return vec4(color.rgb, color.a * gles_alphaFactor);\n}\n\n"
                                      : "    return clamp(color, 0.0, 1.0);\n}\n\n");
}
