
#pragma GL_QRN_flat_varying
#extension GL_QRN_fog_blend : require
#extension GL_QRN_line_coord : require
#extension GL_OES_EGL_image_external : require

flat varying mediump vec4   gles_FragColor;
flat varying mediump vec4   gles_FragColorBack;
varying mediump vec4        gles_TexCoordPacked;

#define gles_TexCoord0 vec2(gles_TexCoordPacked.xy)
#define gles_TexCoord1 vec2(gles_TexCoordPacked.zw)

uniform         samplerExternalOES gles_sampler0;
uniform         sampler2D gles_sampler1;
uniform lowp    bool        userClipNeg;
uniform mediump vec3        gles_FogColor;
uniform mediump float       gles_LineWidth;
uniform mediump float       gles_AlphaRef;
uniform mediump vec4        gles_TexEnvColorScale[2];
uniform mediump vec4        gles_TexEnvColor[2];

mediump         vec4        currentColor;

varying highp   float       userClipDotVeye;
varying mediump float       gles_FogFactor;

void main(void)
{
    mediump vec4  texture0;
    mediump vec4  texture1;
    mediump vec4  arg0;
    mediump vec4  arg1;
    mediump vec4  arg2;
    mediump float dist;
    mediump float coverage;

    if (gl_FrontFacing)
    {
        currentColor = gles_FragColor;
    }
    else
    {
        currentColor = gles_FragColorBack;
    }
    texture0 = texture2D(gles_sampler0, gles_TexCoord0.xy);
    texture1 = texture2D(gles_sampler1, gles_TexCoord1.xy);
    currentColor.rgb += (gles_TexEnvColor[0].rgb - currentColor.rgb) * texture0.rgb; // GL_BLEND
    // GL_COMBINE
    arg0 = vec4(texture1.rgba);
    arg1 = vec4(1.0 - currentColor.rgb, texture0.a);
    arg2 = vec4(vec3(gles_TexEnvColor[1].a), 1.0 - gles_FragColor.a);
    currentColor.rgb = vec3((arg1 + arg2 * (arg0 - arg1)));
    currentColor.a = (arg0 * arg1).a;
    currentColor.rgba *= gles_TexEnvColorScale[1];
    currentColor = clamp(currentColor, 0.0, 1.0);

    if (!(currentColor.a  > gles_AlphaRef)) discard;

    if     (!userClipNeg && userClipDotVeye < 0.0 ) discard;
    else if (userClipNeg && userClipDotVeye >= 0.0) discard;
    gl_FogFactor = gles_FogFactor;
    dist = abs(gl_LineCoord.y - 0.5);
    coverage = min( (0.5 - dist) * gles_LineWidth, 1.0);
    currentColor.a *= coverage;
    gl_FragColor = currentColor;
}
