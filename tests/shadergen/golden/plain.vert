#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

uniform mat4       gles_ModelViewProjectionMatrix;

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

    gl_Position = es_ftransform();
}
