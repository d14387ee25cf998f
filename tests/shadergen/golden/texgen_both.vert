#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

uniform mat4       gles_ModelViewProjectionMatrix;
attribute vec4     gles_MultiTexCoord0;
varying vec4       gles_TexCoord0;
uniform vec4       gles_Texture0Matrix;
attribute vec4     gles_MultiTexCoord1;
varying vec4       gles_TexCoord1;
uniform mat4       gles_Texture1Matrix;

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
    return normalize(normal);
}

vec4 ftexgen_normal(in vec3 normal)
{
    return vec4(normal, 1.0);
}

vec4 ftexgen_reflection(in vec3 normal, in vec4 ecPosition)
{
    vec3 ecPosition3 = (vec3(ecPosition)) / ecPosition.w;
    vec3 reflection = reflect(normalize(ecPosition3), normal);
    return vec4(reflection, 1.0);
}

void main(void)
{
    vec4  ecPosition = ftransform_to_eyecoord();
    vec3  transformedNormal = fnormal(gles_Normal);
    gles_TexCoord0 = gles_Texture0Matrix * ftexgen_reflection(transformedNormal, ecPosition);
    gles_TexCoord1 = gles_Texture1Matrix * ftexgen_normal(transformedNormal);

    gl_Position = es_ftransform();
}
