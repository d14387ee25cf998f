#pragma GL_QRN_flat_varying
#define gles_MaxTextures 2

attribute vec4 gles_Vertex;
attribute vec4 gles_Color;
attribute vec4 gles_MultiTexCoord0;
attribute vec4 gles_MultiTexCoord1;

varying vec4   gles_TexCoordPacked;
#define gles_TexCoord0 gles_TexCoordPacked.xy
#define gles_TexCoord1 gles_TexCoordPacked.zw
varying vec4       gles_FragColor;
void main(void)
{
    gles_FragColor = clamp(gles_Color, 0.0, 1.0);
    gles_TexCoord0 = vec2(gles_MultiTexCoord0);
    gles_TexCoord1 = vec2(gles_MultiTexCoord1);

    gl_Position = gles_Vertex;
}

