// SPDX-License-Identifier: MIT
// The same scenes hand-written in ES 2.0: a small program for each combination of features, matrices by GLM, uniforms
// loaded when they change and not before.
#include "es1/camera.h"
#include "es1/content.h"
#include "es1/es2_program.h"
#include "es1/frame.h"
#include "es1/upload.h"

#include <GLES2/gl2.h>
#include <glm/gtc/type_ptr.hpp>

#include <cstddef>

namespace {

// base: the first vertex in memory, or null for the bound buffer.
void describeArrays(unsigned parts, const Vertex *base)
{
    const auto *bytes = reinterpret_cast<const char *>(base);
    const auto describe = [bytes](Attribute attribute, GLint size, GLenum type, size_t offset) {
        glVertexAttribPointer(attribute, size, type, type == GL_UNSIGNED_BYTE, sizeof(Vertex), bytes + offset);
    };
    describe(POSITION, 3, GL_FLOAT, offsetof(Vertex, position));
    if (parts & NORMALS) describe(NORMAL, 3, GL_FLOAT, offsetof(Vertex, normal));
    if (parts & COORDS) describe(COORD, 2, GL_FLOAT, offsetof(Vertex, coord));
    if (parts & COLOURS) describe(COLOUR, 4, GL_UNSIGNED_BYTE, offsetof(Vertex, colour));
}

void enableArrays(unsigned parts)
{
    glEnableVertexAttribArray(POSITION);
    if (parts & NORMALS) glEnableVertexAttribArray(NORMAL);
    if (parts & COORDS) glEnableVertexAttribArray(COORD);
    if (parts & COLOURS) glEnableVertexAttribArray(COLOUR);
}

MeshBuffers useMesh(const Mesh &mesh, unsigned parts)
{
    const MeshBuffers buffers = uploadMesh(mesh);
    enableArrays(parts);
    describeArrays(parts, nullptr);
    return buffers;
}

void blend()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

void loadMatrix(GLint location, const glm::mat4 &matrix)
{
    glUniformMatrix4fv(location, 1, GL_FALSE, glm::value_ptr(matrix));
}

void drawGemInCell(int number)
{
    glDrawArrays(GL_TRIANGLES, number % kCells * kGemVertices, kGemVertices);
}

namespace same {
void setUp()
{
    makeProgram({.vertexColour = true});
    useMesh(makeGemGrid(), COLOURS);
}
void draw(int number)
{
    drawGemInCell(number);
}
} // namespace same

namespace matrix {
Es2Program program;
glm::mat4 camera;
void setUp()
{
    program = makeProgram({.vertexColour = true});
    camera = projectionMatrix() * viewMatrix();
    useMesh(makeGem(), COLOURS);
}
void draw(int number)
{
    const glm::mat4 moved = glm::translate(camera, {cellX(number), cellY(number), 0.0f});
    const glm::vec3 axis = {kAxis[0], kAxis[1], kAxis[2]};
    loadMatrix(program.modelViewProjection, glm::rotate(moved, glm::radians(angleDegrees(number)), axis));
    glDrawArrays(GL_TRIANGLES, 0, kGemVertices);
}
} // namespace matrix

namespace textures {
GLuint names[kTextures];
void setUp()
{
    makeProgram({.textures = 1});
    useMesh(makeGemGrid(), COORDS);
    for (int i = 0; i < kTextures; ++i)
        names[i] = makeTexture(i);
}
void draw(int number)
{
    glBindTexture(GL_TEXTURE_2D, names[number % kTextures]);
    drawGemInCell(number);
}
} // namespace textures

namespace lights {
Es2Program program;
void setUp()
{
    program = makeProgram({.lights = 3});
    useMesh(makeGemGrid(), NORMALS);
}
void draw(int number)
{
    glUniform4fv(program.materialColour, 1, kMaterialColours[number % kMaterials]);
    drawGemInCell(number);
}
} // namespace lights

// The bits of a combination: light, texture of unit 0, texture of unit 1, fog with blending.
namespace states {
Es2Program programs[kCombinations];
void setUp()
{
    for (int bits = 0; bits < kCombinations; ++bits)
        programs[bits] = makeProgram(
            {.lights = bits & 1, .textures = bits >> 1 & 3, .vertexColour = !(bits & 1), .fog = (bits & 8) != 0});
    useMesh(makeGemGrid(), NORMALS | COORDS | COLOURS);
    makeTextureUnits();
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}
void enableArray(Attribute attribute, bool on)
{
    (on ? glEnableVertexAttribArray : glDisableVertexAttribArray)(attribute);
}
void draw(int number)
{
    const int bits = combination(number);
    glUseProgram(programs[bits].name);
    enableArray(NORMAL, bits & 1);
    enableArray(COLOUR, !(bits & 1));
    enableArray(COORD, bits & 6);
    (bits & 8 ? glEnable : glDisable)(GL_BLEND);
    drawGemInCell(number);
}
} // namespace states

namespace sprites {
Es2Program program;
glm::mat4 pixels;
void setUp()
{
    program = makeProgram({.textures = 1});
    pixels = pixelMatrix(kSceneSize);
    useMesh(makeUnitSquare(), COORDS);
    makeTexture(1);
    blend();
}
void draw(int number)
{
    const glm::mat4 moved = glm::translate(pixels, {spriteX(number), spriteY(number), 0.0f});
    glUniform4fv(program.colour, 1, kMaterialColours[number % kMaterials]);
    loadMatrix(program.modelViewProjection, glm::scale(moved, {kSpriteSize, kSpriteSize, 1.0f}));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
} // namespace sprites

namespace drawtex {
Es2Program program;
void setUp()
{
    program = makeProgram({.textures = 1, .rectangle = true});
    loadMatrix(program.modelViewProjection, pixelMatrix(kSceneSize));
    useMesh(makeUnitSquare(), COORDS);
    makeTexture(1);
    blend();
}
void draw(int number)
{
    glUniform4f(program.rectangle, spriteX(number), spriteY(number), kSpriteSize, kSpriteSize);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
} // namespace drawtex

namespace client {
Mesh meshes[kCells];
void setUp()
{
    makeProgram({.vertexColour = true});
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
    makeProgram({.vertexColour = true});
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
Es2Program program;
MeshBuffers torus;
void setUp()
{
    program = makeProgram({.lights = 2});
    torus = useMesh(makeTorus(), NORMALS);
    glEnable(GL_DEPTH_TEST);
}
void draw(int number)
{
    glClear(GL_DEPTH_BUFFER_BIT);
    const glm::mat4 modelView = turnedInCell(number);
    loadMatrix(program.modelView, modelView);
    // A rotation is its own inverse transpose.
    glUniformMatrix3fv(program.normalMatrix, 1, GL_FALSE, glm::value_ptr(glm::mat3(modelView)));
    glDrawElements(GL_TRIANGLES, torus.indexCount, GL_UNSIGNED_SHORT, nullptr);
}
} // namespace mesh

namespace layers {
Es2Program program;
void setUp()
{
    program = makeProgram({.textures = 3, .fog = true});
    useMesh(makeSquare(), COORDS);
    makeTextureUnits();
    blend();
}
void draw(int number)
{
    const float distance = layerDistance(number), halfWidth = kHalfWidth * distance / kNear;
    const glm::mat4 moved = glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, -distance});
    loadMatrix(program.modelView, glm::scale(moved, {halfWidth, halfWidth, 1.0f}));
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}
} // namespace layers

namespace skinning {
Es2Program program;
glm::mat4 camera;
MeshBuffers tube;
void setUp()
{
    program = makeProgram({.vertexColour = true, .skinned = true});
    camera = projectionMatrix() * viewMatrix();
    tube = useMesh(makeTube(), COLOURS);
    const std::vector<Binding> bindings = makeTubeBindings();
    uploadBytes(bindings.data(), bindings.size() * sizeof(Binding));
    glVertexAttribPointer(WEIGHTS, 2, GL_FLOAT, GL_FALSE, sizeof(Binding), nullptr);
    glVertexAttribPointer(BONES, 2, GL_UNSIGNED_BYTE, GL_FALSE, sizeof(Binding),
                          reinterpret_cast<void *>(offsetof(Binding, bones)));
    glEnableVertexAttribArray(WEIGHTS);
    glEnableVertexAttribArray(BONES);
    glEnable(GL_DEPTH_TEST);
}
void draw(int number)
{
    glm::mat4 bones[kBones];
    const glm::mat4 moved = glm::translate(camera, {cellX(number), 0.0f, 0.0f});
    for (int bone = 0; bone < kBones; ++bone)
        bones[bone] = glm::rotate(moved, glm::radians(boneDegrees(number, bone)), {0.0f, 0.0f, 1.0f});
    glUniformMatrix4fv(program.bones, kBones, GL_FALSE, glm::value_ptr(bones[0]));
    glDrawElements(GL_TRIANGLES, tube.indexCount, GL_UNSIGNED_SHORT, nullptr);
}
} // namespace skinning

#define SCENE(name, title, budget) {#name, name::setUp, name::draw, nullptr},
constexpr Scene kScenes[] = {
#include "es1/scenes.def"
};
#undef SCENE

} // namespace

int main(int argc, char **argv)
{
    return runSceneProgram({.name = "es2bench", .version = 2, .scenes = kScenes}, argc, argv);
}
