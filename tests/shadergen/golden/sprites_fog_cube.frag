
#extension GL_OES_EGL_image_external : require

varying mediump vec4        gles_FragColor;
varying mediump vec4        gles_TexCoord0;
varying mediump vec4        gles_TexCoord1;
uniform         samplerCube gles_sampler0;
uniform         sampler2D gles_sampler1;
uniform mediump vec3        gles_FogColor;
uniform mediump vec4        gles_TexEnvColorScale[2];
uniform mediump vec4        gles_TexEnvColor[2];

mediump         vec4        currentColor;

varying mediump float       gles_FogFactor;

void main(void)
{
    mediump vec4  texture0;
    mediump vec4  texture1;
    mediump vec4  arg0;
    mediump vec4  arg1;
    mediump vec4  arg2;

    currentColor = gles_FragColor;
    texture0 = textureCube(gles_sampler0, vec3(gl_PointCoord.xy, 0.0));
    texture1 = texture2D(gles_sampler1, gl_PointCoord.xy);
    currentColor.rgb += texture0.rgb; // GL_ADD
    currentColor.a *= texture0.a;     // GL_ADD
    currentColor = clamp(currentColor, 0.0, 1.0);

    currentColor.rgb = texture1.rgb; // GL_DECAL
    currentColor.rgb = gles_FogColor + gles_FogFactor * (currentColor.rgb - gles_FogColor);

    gl_FragColor = currentColor;
}
