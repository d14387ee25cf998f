#pragma GL_QRN_flat_varying

#define gles_MaxLights    4
#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

uniform vec4       gles_ModelViewProjectionMatrix[2];
attribute vec4     gles_Color;
flat varying vec4  gles_FragColor;
flat varying vec4  gles_FragColorBack;
uniform float      gles_alphaFactor;

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

uniform vec4 gles_LSambient[gles_MaxLights];             // Acli
uniform vec4 gles_LSdiffuse[gles_MaxLights];             // Dcli
uniform vec4 gles_LSspecular[gles_MaxLights];            // Scli
uniform vec3 gles_LSposition[gles_MaxLights];            // position
uniform vec3 gles_LSspotDirection[gles_MaxLights];       // Sdli
uniform vec4 gles_LSpacked0[gles_MaxLights];             // packed0.xyzw = {exponent, cutoff, coscutoff, unused}
uniform vec4 gles_LSpacked1[gles_MaxLights];             // packed1.xyzw = {catt, latt, qatt, unused}
uniform vec3 gles_LSposition0[gles_MaxLights];
uniform vec3 gles_LSposition1[gles_MaxLights];

void processDirectionalLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 vp0, vec3 vp1, in vec3 normal)
{
    Specular += specular * pow(clamp(dot(normal, vp1), 0.0, 1.0), gles_Material.shininess);
     AmbientDiffuse += vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * max(0.0, dot(normal, vp0));
}

void processPointLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 position, vec4 packed1, in vec3 normal, in vec3 ecPosition3)
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
        float nDotHV = clamp(dot(normal, normalize(VP + vec3(0.0, 0.0, 1.0))), 0.0, 1.0); // normal . light half vector
        Specular += attenuation * specular * pow(nDotHV, gles_Material.shininess);
        AmbientDiffuse += attenuation * ( vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * nDotVP);
    }
    else
    {
        AmbientDiffuse.rgb += (attenuation * ambient.rgb);
    }
}

void processSpotLight(vec4 ambient, vec4 diffuse, vec4 specular, vec3 position, vec3 spotDirection, vec4 packed0, vec4 packed1, in vec3 normal, in vec3 ecPosition3)
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
        float nDotHV = clamp(dot(normal, normalize(VP + vec3(0.0, 0.0, 1.0))), 0.0, 1.0); // normal . light_half_vector
        Specular += attenuation * specular * pow(nDotHV, gles_Material.shininess);

        AmbientDiffuse += attenuation * (vec4(ambient.r,ambient.g,ambient.b,0.0) + diffuse * nDotVP);
    }
    else
    {
        AmbientDiffuse.rgb += (attenuation * ambient.rgb);
    }
}

vec4 flight(in vec3 normal, in vec4 ecPosition)
{
    vec3 ecPosition3 = (vec3(ecPosition)) / ecPosition.w;
    // clear the light intensity accumulators
    AmbientDiffuse = vec4(0.0);
    Specular = vec4(0.0);

    processSpotLight(gles_LSambient[0], gles_LSdiffuse[0], gles_LSspecular[0], gles_LSposition[0], gles_LSspotDirection[0], gles_LSpacked0[0], gles_LSpacked1[0], normal, ecPosition3);
    processDirectionalLight(gles_LSambient[1], gles_LSdiffuse[1], gles_LSspecular[1], gles_LSposition0[1], gles_LSposition1[1], normal);
    processPointLight(gles_LSambient[2], gles_LSdiffuse[2], gles_LSspecular[2], gles_LSposition[2], gles_LSpacked1[2], normal, ecPosition3);
    processPointLight(gles_LSambient[3], gles_LSdiffuse[3], gles_LSspecular[3], gles_LSposition[3], gles_LSpacked1[3], normal, ecPosition3);

    vec4 color = gles_LightModelProduct.sceneColor;
    color.rgb += AmbientDiffuse.rgb;
    color = color * gles_Color + gles_Material.emission;
    color.rgb += Specular.rgb;
    color = clamp(color, 0.0, 1.0);
    return vec4(color.rgb, color.a * gles_alphaFactor);
}

vec4 ftransform_to_eyecoord(void)
{
    return gles_ModelViewMatrix * gles_Vertex;
}

vec4 es_ftransform(void)
{
    /* scale + translation */
    return gles_Vertex * gles_ModelViewProjectionMatrix[0]+gles_ModelViewProjectionMatrix[1];
}

vec3 fnormal(vec3 v)
{
    vec3 normal = gles_NormalMatrix * v;
    return normalize(normal);
}

void main(void)
{
    vec4  ecPosition = ftransform_to_eyecoord();
    vec3  transformedNormal = fnormal(gles_Normal);

    // calculate back-facing frag color
    vec3  transformedNormalBack = fnormal(-gles_Normal);
    gles_FragColorBack = flight(transformedNormalBack, ecPosition);

    gles_FragColor = flight(transformedNormal, ecPosition);

    gl_Position = es_ftransform();
}
