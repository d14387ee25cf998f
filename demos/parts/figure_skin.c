// SPDX-License-Identifier: MIT
#include "figure_skin.h"

#include "figure_mesh.h"
#include "frame.h"

#include <GLES/glext.h>
#include <math.h>
#include <stddef.h>
#include <string.h>

static struct FigureMesh mesh;
static int onProcessor;

// The palette's functions are an extension's.
static PFNGLCURRENTPALETTEMATRIXOESPROC currentPaletteMatrix;
static PFNGLLOADPALETTEFROMMODELVIEWMATRIXOESPROC loadPaletteFromModelView;
static PFNGLMATRIXINDEXPOINTEROESPROC matrixIndexPointer;
static PFNGLWEIGHTPOINTEROESPROC weightPointer;

// What the processor works out instead: the bones' matrices, and the moved mesh in eye coordinates.
static GLfloat matrices[BONES][16], positions[MESH_VERTICES][3], normals[MESH_VERTICES][3];

static Function paletteFunction(const char *name)
{
    return findFunction("GL_OES_matrix_palette", name);
}

const char *startFigure(int withoutPalette)
{
    onProcessor = withoutPalette;
    currentPaletteMatrix = (PFNGLCURRENTPALETTEMATRIXOESPROC)paletteFunction("glCurrentPaletteMatrixOES");
    loadPaletteFromModelView =
        (PFNGLLOADPALETTEFROMMODELVIEWMATRIXOESPROC)paletteFunction("glLoadPaletteFromModelViewMatrixOES");
    matrixIndexPointer = (PFNGLMATRIXINDEXPOINTEROESPROC)paletteFunction("glMatrixIndexPointerOES");
    weightPointer = (PFNGLWEIGHTPOINTEROESPROC)paletteFunction("glWeightPointerOES");
    const int found = currentPaletteMatrix && loadPaletteFromModelView && matrixIndexPointer && weightPointer;
    if (!found && !onProcessor) return "this driver has no GL_OES_matrix_palette";
    makeFigureMesh(&mesh);
    return NULL;
}

static void turn(GLfloat x, GLfloat y, GLfloat z)
{
    glRotatef(x, 1.0f, 0.0f, 0.0f);
    glRotatef(y, 0.0f, 1.0f, 0.0f);
    glRotatef(z, 0.0f, 0.0f, 1.0f);
}

// Turns a bone against its parent as the stride wants it. Angles in degrees; x swings to and fro, negative forward.
static void turnBone(int bone, GLfloat phase)
{
    const GLfloat side = kBones[bone].joint[0] > 0.0f ? 1.0f : -1.0f, swing = side * sinf(phase);
    const GLfloat lift = fmaxf(side * cosf(phase), 0.0f);
    switch (bone) {
    case PELVIS:
        turn(10.0f, -8.0f * sinf(phase), 3.0f * cosf(phase));
        break;
    case CHEST:
        turn(6.0f, 18.0f * sinf(phase), -3.0f * cosf(phase));
        break;
    case HEAD:
        turn(-12.0f, -10.0f * sinf(phase), 0.0f);
        break;
    case LEFT_ARM:
    case RIGHT_ARM:
        turn(8.0f + 50.0f * swing, 0.0f, -34.0f * side);
        break;
    case LEFT_FOREARM:
    case RIGHT_FOREARM:
        glRotatef(80.0f - 16.0f * swing, -0.643f, -0.766f * side, 0.0f);
        break; // across the arm
    case LEFT_THIGH:
    case RIGHT_THIGH:
        turn(-20.0f - 44.0f * swing, 0.0f, 0.0f);
        break;
    case LEFT_SHIN:
    case RIGHT_SHIN:
        turn(20.0f + 80.0f * lift, 0.0f, 0.0f);
        break;
    default:
        turn(8.0f - 16.0f * swing, 0.0f, 0.0f);
        break;
    }
}

// Moves the modelview matrix to the bone, keeps it, and goes on to the bones that hang on this one.
static void placeBone(int bone, GLfloat phase)
{
    const GLfloat *joint = kBones[bone].joint;
    glPushMatrix();
    glTranslatef(joint[0], joint[1], joint[2]);
    turnBone(bone, phase);
    glTranslatef(-joint[0], -joint[1], -joint[2]);
    if (onProcessor) {
        glGetFloatv(GL_MODELVIEW_MATRIX, matrices[bone]);
    } else {
        currentPaletteMatrix((GLuint)bone);
        loadPaletteFromModelView();
    }
    for (int i = 0; i < BONES; ++i)
        if (kBones[i].parent == bone) placeBone(i, phase);
    glPopMatrix();
}

// Bones turn and move only, so that normals need no inverse.
static void moveMesh(void)
{
    for (int i = 0; i < mesh.vertexCount; ++i) {
        const struct FigureVertex *vertex = &mesh.vertices[i];
        memset(positions[i], 0, sizeof positions[i]);
        memset(normals[i], 0, sizeof normals[i]);
        for (int k = 0; k < 3 * WEIGHTS; ++k) {
            const GLfloat *m = &matrices[vertex->bones[k / 3]][k % 3], *p = vertex->position, *n = vertex->normal;
            const GLfloat weight = vertex->weights[k / 3];
            positions[i][k % 3] += weight * (m[0] * p[0] + m[4] * p[1] + m[8] * p[2] + m[12]);
            normals[i][k % 3] += weight * (m[0] * n[0] + m[4] * n[1] + m[8] * n[2]);
        }
    }
}

void drawFigure(GLfloat phase)
{
    const struct FigureVertex *first = mesh.vertices;
    placeBone(PELVIS, phase);
    glPushMatrix();
    if (onProcessor) {
        moveMesh();
        glLoadIdentity();
        glVertexPointer(3, GL_FLOAT, 0, positions);
        glNormalPointer(GL_FLOAT, 0, normals);
    } else {
        glEnable(GL_MATRIX_PALETTE_OES);
        glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
        glEnableClientState(GL_WEIGHT_ARRAY_OES);
        matrixIndexPointer(WEIGHTS, GL_UNSIGNED_BYTE, sizeof *first, first->bones);
        weightPointer(WEIGHTS, GL_FLOAT, sizeof *first, first->weights);
        glVertexPointer(3, GL_FLOAT, sizeof *first, first->position);
        glNormalPointer(GL_FLOAT, sizeof *first, first->normal);
    }
    glColorPointer(4, GL_UNSIGNED_BYTE, sizeof *first, first->colour);
    glDrawElements(GL_TRIANGLES, mesh.indexCount, GL_UNSIGNED_SHORT, mesh.indices);
    if (!onProcessor) glDisable(GL_MATRIX_PALETTE_OES);
    glPopMatrix();
}
