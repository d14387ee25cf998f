
#extension GL_OES_EGL_image_external : require

varying mediump vec4        gles_FragColor;
varying mediump vec4        gles_TexCoord1;
uniform         sampler2D gles_sampler1;
uniform mediump vec4        gles_TexEnvColorScale[2];
uniform mediump vec4        gles_TexEnvColor[2];

mediump         vec4        currentColor;


void main(void)
{
    mediump vec4  texture0;
    mediump vec4  texture1;
    mediump vec4  arg0;
    mediump vec4  arg1;
    mediump vec4  arg2;

    currentColor = gles_FragColor;
    texture1 = texture2D(gles_sampler1, gles_TexCoord1.xy);
    currentColor *= texture1; // GL_MODULATE
    gl_FragColor = currentColor;
}
