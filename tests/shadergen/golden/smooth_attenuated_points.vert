#define gles_MaxTextures  2

const float        invloge2 = 1.4426950408889634073599246810019;
attribute vec4     gles_Vertex;
attribute vec3     gles_Normal;
attribute float    gles_PointSize;

uniform mat4       gles_ModelViewMatrix;
uniform mat4       gles_ProjectionMatrix;
uniform mat3       gles_NormalMatrix;

uniform mat4       gles_ModelViewProjectionMatrix;
uniform vec3       gles_PointDistanceAttenuation;
uniform float      gles_PointMinSize;
uniform float      gles_PointMaxSize;

varying float      aaInnerRing;vec4 ftransform_to_eyecoord(void)
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

    gl_Position = es_ftransform();
    float d = length(vec3(ecPosition) / ecPosition.w);
    float pda = sqrt(gles_PointDistanceAttenuation[0] +
                     gles_PointDistanceAttenuation[1] * d +
                     gles_PointDistanceAttenuation[2] * d * d);
    float pointSize = clamp(gles_PointSize / pda, gles_PointMinSize, gles_PointMaxSize);
    gl_PointSize = pointSize + 1.0;
    aaInnerRing  = (pointSize - 1.0) / (2.0 * (pointSize + 1.0));
    aaInnerRing  *= aaInnerRing;
}
