#define gles_MaxLights    1
#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

uniform mat4       gles_ModelViewProjectionMatrix;
attribute vec4     gles_Color;
varying vec4       gles_FragColor;

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

vec4 flight(in vec3 normal, in vec4 ecPosition)
{
    // clear the light intensity accumulators
    AmbientDiffuse = vec4(0.0);
    Specular = vec4(0.0);

    processDirectionalLight(gles_LSambient[0], gles_LSdiffuse[0], gles_LSspecular[0], gles_LSposition0[0], gles_LSposition1[0], normal);

    vec4 color = gles_LightModelProduct.sceneColor;
    color.rgb += AmbientDiffuse.rgb;
    color.rgb += Specular.rgb;
    return clamp(color, 0.0, 1.0);
}

vec4 ftransform_to_eyecoord(void)
{
    return gles_ModelViewMatrix * gles_Vertex;
}

vec4 es_ftransform(void)
{
    return gles_Vertex * gles_ModelViewProjectionMatrix;
}

vec3 fnormal(vec3 v)
{
    vec3 normal = gles_NormalMatrix * v;
    return normal;
}

void main(void)
{
    vec4  ecPosition = ftransform_to_eyecoord();
    vec3  transformedNormal = fnormal(gles_Normal);
    gles_FragColor = flight(transformedNormal, ecPosition);

    gl_Position = es_ftransform();
}
