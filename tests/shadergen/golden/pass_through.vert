#pragma GL_QRN_flat_varying
#define gles_MaxTextures 2

attribute vec4 gles_Vertex;
attribute vec4 gles_Color;
attribute vec4 gles_MultiTexCoord0;
attribute vec4 gles_MultiTexCoord1;

varying vec4   gles_TexCoord0;
varying vec4   gles_TexCoord1;

void main(void)
{
    gles_TexCoord1 = gles_MultiTexCoord1;

    gl_Position = gles_Vertex;
}

