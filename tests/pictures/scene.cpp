// SPDX-License-Identifier: MIT
#include "pictures/scene.h"

std::vector<Scene> allScenes()
{
    std::vector<Scene> all;
    for (const auto list :
         {drawingScenes,       flatScenes,         matrixScenes,   lightingScenes, lightScenes,       materialScenes,
          fogScenes,           alphaAndClipScenes, pointScenes,    lineScenes,     wideLineScenes,    textureScenes,
          formatScenes,        compressedScenes,   imageScenes,    cubeMapScenes,  environmentScenes, combinerScenes,
          textureMatrixScenes, drawTextureScenes,  skinningScenes, targetScenes}) {
        for (Scene &scene : list())
            all.push_back(scene);
    }
    return all;
}

void unitSquareProjection()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(0, 1, 0, 1, -1, 1);
    glMatrixMode(GL_MODELVIEW);
}

void pixelProjection()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrthof(0, kPictureSize, 0, kPictureSize, -1, 1);
    glMatrixMode(GL_MODELVIEW);
}

void drawRectangle(float left, float bottom, float right, float top, float z)
{
    const GLfloat positions[] = {left, bottom, z, right, bottom, z, left, top, z, right, top, z};
    const GLfloat texCoords[] = {0, 0, 1, 0, 0, 1, 1, 1};
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, positions);
    for (const GLenum unit : {GL_TEXTURE1, GL_TEXTURE0}) {
        glClientActiveTexture(unit);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, texCoords);
    }
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    // The pointers name memory of this call.
    glDisableClientState(GL_VERTEX_ARRAY);
    for (const GLenum unit : {GL_TEXTURE1, GL_TEXTURE0}) {
        glClientActiveTexture(unit);
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
}
