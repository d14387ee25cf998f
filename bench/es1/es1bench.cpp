// SPDX-License-Identifier: MIT
// The scenes in plain ES 1.1, as its programs write them. Runs on the drop-in pair and on the machine's own libraries.
#include "es1/content.h"
#include "es1/frame.h"
#include "es1/upload.h"

#include <GLES/gl.h>
#include <GLES/glext.h>

#include <cstddef>
#include <string_view>

namespace {

// base: the first vertex in memory, or null for the bound buffer.
void describeArrays(unsigned parts, const Vertex *base)
{
    const auto *bytes = reinterpret_cast<const char *>(base);
    glVertexPointer(3, GL_FLOAT, sizeof(Vertex), bytes + offsetof(Vertex, position));
    if (parts & NORMALS) glNormalPointer(GL_FLOAT, sizeof(Vertex), bytes + offsetof(Vertex, normal));
    if (parts & COORDS) glTexCoordPointer(2, GL_FLOAT, sizeof(Vertex), bytes + offsetof(Vertex, coord));
    if (parts & COLOURS) glColorPointer(4, GL_UNSIGNED_BYTE, sizeof(Vertex), bytes + offsetof(Vertex, colour));
}

void enableArrays(unsigned parts)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    if (parts & NORMALS) glEnableClientState(GL_NORMAL_ARRAY);
    if (parts & COORDS) glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    if (parts & COLOURS) glEnableClientState(GL_COLOR_ARRAY);
}

MeshBuffers useMesh(const Mesh &mesh, unsigned parts)
{
    const MeshBuffers buffers = uploadMesh(mesh);
    enableArrays(parts);
    describeArrays(parts, nullptr);
    return buffers;
}

// Another texture in each unit, with the bound mesh's coordinates.
void useTextureUnits()
{
    makeTextureUnits();
    for (const GLenum unit : {GL_TEXTURE1, GL_TEXTURE0}) {
        glActiveTexture(unit);
        glClientActiveTexture(unit);
        glEnable(GL_TEXTURE_2D);
        enableArrays(COORDS);
        describeArrays(COORDS, nullptr);
    }
}

void placeCamera()
{
    glMatrixMode(GL_PROJECTION);
    glFrustumf(-kHalfWidth, kHalfWidth, -kHalfWidth, kHalfWidth, kNear, kFar);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0.0f, 0.0f, -kDistance);
}

void countPixels()
{
    glMatrixMode(GL_PROJECTION);
    glOrthof(0.0f, kSceneSize, 0.0f, kSceneSize, -1.0f, 1.0f);
    glMatrixMode(GL_MODELVIEW);
}

// Lights in eye space, a grey ambient light, white material with a highlight.
void switchLightsOn(int count)
{
    glEnable(GL_LIGHTING);
    glPushMatrix();
    glLoadIdentity();
    for (int i = 0; i < count; ++i) {
        const GLenum name = GL_LIGHT0 + static_cast<GLenum>(i);
        glEnable(name);
        glLightfv(name, GL_POSITION, kLights[i].position);
        glLightfv(name, GL_DIFFUSE, kLights[i].diffuse);
        glLightfv(name, GL_SPECULAR, kLights[i].specular);
    }
    glPopMatrix();
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kSceneAmbient);
    glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, kSpecular);
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, kShininess);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, kMaterialColours[0]);
}

void setFog()
{
    glFogf(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, kFogStart);
    glFogf(GL_FOG_END, kFogEnd);
    glFogfv(GL_FOG_COLOR, kFogColour);
}

void blend()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void drawGemInCell(int number)
{
    glDrawArrays(GL_TRIANGLES, number % kCells * kGemVertices, kGemVertices);
}

namespace same {
void setUp()
{
    placeCamera();
    useMesh(makeGemGrid(), COLOURS);
}
void draw(int number)
{
    drawGemInCell(number);
}
} // namespace same

namespace matrix {
void setUp()
{
    placeCamera();
    useMesh(makeGem(), COLOURS);
}
void draw(int number)
{
    glPushMatrix();
    glTranslatef(cellX(number), cellY(number), 0.0f);
    glRotatef(angleDegrees(number), kAxis[0], kAxis[1], kAxis[2]);
    glDrawArrays(GL_TRIANGLES, 0, kGemVertices);
    glPopMatrix();
}
} // namespace matrix

namespace textures {
GLuint names[kTextures];
void setUp()
{
    placeCamera();
    useMesh(makeGemGrid(), COORDS);
    for (int i = 0; i < kTextures; ++i)
        names[i] = makeTexture(i);
    glEnable(GL_TEXTURE_2D);
}
void draw(int number)
{
    glBindTexture(GL_TEXTURE_2D, names[number % kTextures]);
    drawGemInCell(number);
}
} // namespace textures

namespace lights {
void setUp()
{
    placeCamera();
    useMesh(makeGemGrid(), NORMALS);
    switchLightsOn(3);
}
void draw(int number)
{
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, kMaterialColours[number % kMaterials]);
    drawGemInCell(number);
}
} // namespace lights

// The bits of a combination: light, texture of unit 0, texture of unit 1, fog with blending. Arrays are on when used.
namespace states {
void setUp()
{
    placeCamera();
    useMesh(makeGemGrid(), NORMALS | COLOURS);
    useTextureUnits();
    switchLightsOn(1);
    setFog();
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}
void enable(GLenum capability, bool on)
{
    (on ? glEnable : glDisable)(capability);
}
void enableArray(GLenum array, bool on)
{
    (on ? glEnableClientState : glDisableClientState)(array);
}
void enableTexture(GLenum unit, bool on)
{
    glActiveTexture(unit);
    glClientActiveTexture(unit);
    enable(GL_TEXTURE_2D, on);
    enableArray(GL_TEXTURE_COORD_ARRAY, on);
}
void draw(int number)
{
    const int bits = combination(number);
    enable(GL_LIGHTING, bits & 1);
    enableArray(GL_NORMAL_ARRAY, bits & 1);
    enableArray(GL_COLOR_ARRAY, !(bits & 1));
    enableTexture(GL_TEXTURE0, bits & 2);
    enableTexture(GL_TEXTURE1, bits & 4);
    enable(GL_FOG, bits & 8);
    enable(GL_BLEND, bits & 8);
    drawGemInCell(number);
}
} // namespace states

namespace sprites {
void setUp()
{
    countPixels();
    useMesh(makeUnitSquare(), COORDS);
    makeTexture(1);
    glEnable(GL_TEXTURE_2D);
    blend();
}
void draw(int number)
{
    const float *colour = kMaterialColours[number % kMaterials];
    glColor4f(colour[0], colour[1], colour[2], colour[3]);
    glPushMatrix();
    glTranslatef(spriteX(number), spriteY(number), 0.0f);
    glScalef(kSpriteSize, kSpriteSize, 1.0f);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glPopMatrix();
}
} // namespace sprites

namespace drawtex {
PFNGLDRAWTEXFOESPROC drawTexture;
void setUp()
{
    drawTexture = reinterpret_cast<PFNGLDRAWTEXFOESPROC>(eglGetProcAddress("glDrawTexfOES"));
    constexpr GLint kWhole[] = {0, 0, kTextureSize, kTextureSize};
    makeTexture(1);
    glTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_CROP_RECT_OES, kWhole);
    glEnable(GL_TEXTURE_2D);
    blend();
}
void draw(int number)
{
    drawTexture(spriteX(number), spriteY(number), 0.0f, kSpriteSize, kSpriteSize);
}
} // namespace drawtex

namespace client {
Mesh meshes[kCells];
void setUp()
{
    placeCamera();
    for (int i = 0; i < kCells; ++i)
        meshes[i] = makeCone(i);
    enableArrays(COLOURS);
}
void draw(int number)
{
    const Mesh &mesh = meshes[number % kCells];
    describeArrays(COLOURS, mesh.vertices.data());
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(mesh.indices.size()), GL_UNSIGNED_SHORT, mesh.indices.data());
}
} // namespace client

namespace buffers {
MeshBuffers meshes[kCells];
void setUp()
{
    placeCamera();
    for (int i = 0; i < kCells; ++i)
        meshes[i] = uploadMesh(makeCone(i));
    enableArrays(COLOURS);
}
void draw(int number)
{
    const MeshBuffers &mesh = meshes[number % kCells];
    glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices);
    describeArrays(COLOURS, nullptr);
    glDrawElements(GL_TRIANGLES, mesh.indexCount, GL_UNSIGNED_SHORT, nullptr);
}
} // namespace buffers

namespace mesh {
MeshBuffers torus;
void setUp()
{
    placeCamera();
    torus = useMesh(makeTorus(), NORMALS);
    switchLightsOn(2);
    glEnable(GL_DEPTH_TEST);
}
void draw(int number)
{
    glClear(GL_DEPTH_BUFFER_BIT);
    glPushMatrix();
    glTranslatef(cellX(number), cellY(number), 0.0f);
    glRotatef(angleDegrees(number), kAxis[0], kAxis[1], kAxis[2]);
    glDrawElements(GL_TRIANGLES, torus.indexCount, GL_UNSIGNED_SHORT, nullptr);
    glPopMatrix();
}
} // namespace mesh

namespace layers {
void setUp()
{
    placeCamera();
    useMesh(makeSquare(), COORDS);
    useTextureUnits();
    setFog();
    glEnable(GL_FOG);
    blend();
}
void draw(int number)
{
    // A square of this half width fills the view at its distance.
    const float distance = layerDistance(number), halfWidth = kHalfWidth * distance / kNear;
    glLoadIdentity();
    glTranslatef(0.0f, 0.0f, -distance);
    glScalef(halfWidth, halfWidth, 1.0f);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
} // namespace layers

namespace skinning {
PFNGLCURRENTPALETTEMATRIXOESPROC currentPaletteMatrix;
PFNGLLOADPALETTEFROMMODELVIEWMATRIXOESPROC loadPaletteFromModelView;
MeshBuffers tube;
template <class Function>
void find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(eglGetProcAddress(name));
}
void setUp()
{
    find(currentPaletteMatrix, "glCurrentPaletteMatrixOES");
    find(loadPaletteFromModelView, "glLoadPaletteFromModelViewMatrixOES");
    PFNGLWEIGHTPOINTEROESPROC weightPointer;
    PFNGLMATRIXINDEXPOINTEROESPROC matrixIndexPointer;
    find(weightPointer, "glWeightPointerOES");
    find(matrixIndexPointer, "glMatrixIndexPointerOES");

    placeCamera();
    tube = useMesh(makeTube(), COLOURS);
    const std::vector<Binding> bindings = makeTubeBindings();
    uploadBytes(bindings.data(), bindings.size() * sizeof(Binding));
    weightPointer(2, GL_FLOAT, sizeof(Binding), nullptr);
    matrixIndexPointer(2, GL_UNSIGNED_BYTE, sizeof(Binding), reinterpret_cast<void *>(offsetof(Binding, bones)));
    glEnableClientState(GL_WEIGHT_ARRAY_OES);
    glEnableClientState(GL_MATRIX_INDEX_ARRAY_OES);
    glEnable(GL_MATRIX_PALETTE_OES);
    glEnable(GL_DEPTH_TEST);
}
void draw(int number)
{
    for (int bone = 0; bone < kBones; ++bone) {
        glPushMatrix();
        glTranslatef(cellX(number), 0.0f, 0.0f);
        glRotatef(boneDegrees(number, bone), 0.0f, 0.0f, 1.0f);
        glMatrixMode(GL_MATRIX_PALETTE_OES);
        currentPaletteMatrix(static_cast<GLuint>(bone));
        loadPaletteFromModelView();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
    }
    glDrawElements(GL_TRIANGLES, tube.indexCount, GL_UNSIGNED_SHORT, nullptr);
}
} // namespace skinning

// The extension that a scene needs, where it needs one.
constexpr const char *extensionOf(std::string_view scene)
{
    if (scene == "drawtex") return "GL_OES_draw_texture";
    if (scene == "skinning") return "GL_OES_matrix_palette";
    return nullptr;
}

#define SCENE(name, title, budget) {#name, name::setUp, name::draw, extensionOf(#name)},
constexpr Scene kScenes[] = {
#include "es1/scenes.def"
};
#undef SCENE

} // namespace

int main(int argc, char **argv)
{
    return runSceneProgram({.name = "es1bench", .version = 1, .scenes = kScenes}, argc, argv);
}
