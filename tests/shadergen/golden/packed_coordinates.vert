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
attribute vec4     gles_MultiTexCoord1;
varying vec4       gles_TexCoordPacked;
vec4               gles_TexCoord0;
vec4               gles_TexCoord1;


vec4 ftransform_to_eyecoord(void)
{
    return gles_ModelViewMatrix * gles_Vertex;
}

vec4 es_ftransform(void)
{
    return vec4(dot(gles_ModelViewProjectionMatrix[0],gles_Vertex),
                dot(gles_ModelViewProjectionMatrix[1],gles_Vertex),
                gles_Vertex.z,
                gles_Vertex.w);
}

vec3 fnormal(vec3 v)
{
    vec3 normal = gles_NormalMatrix * v;
    return normal;
}

void main(void)
{
    gles_TexCoord0 = gles_MultiTexCoord0;
    gles_TexCoord1 = gles_MultiTexCoord1;

    gl_Position = es_ftransform();
    gles_TexCoordPacked.xy = gles_TexCoord0.xy;
    gles_TexCoordPacked.zw = gles_TexCoord1.xy;
}
