
#extension GL_OES_EGL_image_external : require

uniform mediump vec4        gles_FragColor;
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
    gl_FragColor = currentColor;
}
