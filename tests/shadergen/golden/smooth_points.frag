
#extension GL_OES_EGL_image_external : require

uniform mediump vec4        gles_FragColor;
uniform mediump vec4        gles_TexEnvColorScale[2];
uniform mediump vec4        gles_TexEnvColor[2];

mediump         vec4        currentColor;

varying mediump float       aaInnerRing;

void main(void)
{
    mediump vec4  texture0;
    mediump vec4  texture1;
    mediump vec4  arg0;
    mediump vec4  arg1;
    mediump vec4  arg2;
    mediump float dist;
    mediump float coverage;

    currentColor = gles_FragColor;
    dist = dot(gl_PointCoord.xy - vec2(0.5, 0.5), gl_PointCoord.xy - vec2(0.5, 0.5));
    coverage = (1.0 - smoothstep(aaInnerRing, 0.25, dist));
    if (coverage == 0.0) discard;
    currentColor.a *= coverage;
    gl_FragColor = currentColor;
}
