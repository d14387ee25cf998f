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


// variables used when user clip plane is enabled
uniform vec4       userClipPlaneEye;
varying float      userClipDotVeye;

mat4               MPmodelView_tmp;        // Temporary matrix for mpalette
attribute vec4     mpalette_weight;
attribute vec4     mpalette_index;         // indices to palette for vertex (has to be float)
uniform mat4       MV_palette[20];         // ModelView
uniform mat3       MVI_palette[20];        // ModelViewInverse (Normal Matrix)

varying float      gles_FogFactor;
uniform float      gles_FogEnd;
uniform float      gles_FogInvRange;
uniform float      gles_FogDensity;

void apply_fog(in float z)
{
    gles_FogFactor = clamp((gles_FogEnd - z) * gles_FogInvRange, 0.0, 1.0);
}
vec4 ftransform_to_eyecoord(void)
{
    return MPmodelView_tmp * gles_Vertex;
}

vec4 es_ftransform(void)
{
    return gles_ProjectionMatrix * (MPmodelView_tmp * gles_Vertex);
}

void cons_mpalette(void)
{
    MPmodelView_tmp =
        mpalette_weight[0] * MV_palette[int(mpalette_index[0])] +
        mpalette_weight[1] * MV_palette[int(mpalette_index[1])] +
        mpalette_weight[2] * MV_palette[int(mpalette_index[2])] ;
}

vec3 fnormal(vec3 v)
{
    vec3 normal = (
        mpalette_weight[0] * MVI_palette[int(mpalette_index[0])] + 
        mpalette_weight[1] * MVI_palette[int(mpalette_index[1])] + 
        mpalette_weight[2] * MVI_palette[int(mpalette_index[2])]) * v;
    return normal;
}

void main(void)
{
    cons_mpalette();
    vec4  ecPosition = ftransform_to_eyecoord();
    vec3  transformedNormal = fnormal(gles_Normal);
    gles_FragColor = clamp(gles_Color, 0.0, 1.0);
    userClipDotVeye = dot(userClipPlaneEye, ecPosition);

    gl_Position = es_ftransform();
    float fogz = abs(ecPosition.z);
    apply_fog(fogz);
}
