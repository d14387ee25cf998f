// SPDX-License-Identifier: MIT
#include "figure_mesh.h"

#include <math.h>
#include <string.h>

// The skin is where the distance to the body is zero. Space is cut into cubes; every cube that the skin passes through
// gets a vertex, and every edge of the grid that it crosses a square of the four cubes around it.
enum { COLUMNS = 120, ROWS = 152, LAYERS = 42 };

static const GLfloat kCell = 0.0128f, kOrigin[] = {-0.765f, -0.03f, -0.22f};
static const GLfloat kBlend = 0.045f;  // over which distance the parts flow into each other
static const GLfloat kSpread = 0.028f; // over which distance a vertex changes from one bone to the next

static GLfloat partDistance(const struct Part *part, const GLfloat *p)
{
    GLfloat along = 0.0f, squared = 0.0f, off = 0.0f;
    for (int i = 0; i < 3; ++i) {
        along += (p[i] - part->from[i]) * (part->to[i] - part->from[i]);
        squared += (part->to[i] - part->from[i]) * (part->to[i] - part->from[i]);
    }
    const GLfloat t = fminf(fmaxf(along / squared, 0.0f), 1.0f);
    for (int i = 0; i < 3; ++i) {
        const GLfloat d = p[i] - part->from[i] - t * (part->to[i] - part->from[i]);
        off += d * d;
    }
    return sqrtf(off) - part->fromRadius - t * (part->toRadius - part->fromRadius);
}

// Below zero inside. bones: null, or gets the distance to every bone alone.
static GLfloat bodyDistance(const GLfloat *p, GLfloat *bones)
{
    GLfloat body = 1.0f;
    for (int i = 0; bones && i < BONES; ++i)
        bones[i] = 1.0f;
    for (int i = 0; i < PARTS; ++i) {
        const GLfloat d = partDistance(&kParts[i], p), near = fmaxf(kBlend - fabsf(body - d), 0.0f);
        if (bones) bones[kParts[i].bone] = fminf(bones[kParts[i].bone], d);
        body = fminf(body, d) - near * near / (4.0f * kBlend);
    }
    return body;
}

static void moveToSkin(struct FigureVertex *vertex)
{
    for (int round = 0; round < 2; ++round) {
        const GLfloat distance = bodyDistance(vertex->position, NULL), step = 0.002f;
        GLfloat length = 0.0f;
        for (int i = 0; i < 3; ++i) {
            GLfloat beside[3];
            memcpy(beside, vertex->position, sizeof beside);
            beside[i] += step;
            vertex->normal[i] = bodyDistance(beside, NULL) - distance;
            length += vertex->normal[i] * vertex->normal[i];
        }
        for (int i = 0; i < 3; ++i) {
            vertex->normal[i] /= sqrtf(length);
            vertex->position[i] -= distance * vertex->normal[i];
        }
    }
}

// The nearest bone and those joined to it share the vertex; the nearer one, the more.
static void bindToBones(struct FigureVertex *vertex)
{
    GLfloat distances[BONES], colour[3] = {0.0f, 0.0f, 0.0f}, sum = 0.0f;
    bodyDistance(vertex->position, distances);
    int nearest = 0;
    for (int i = 1; i < BONES; ++i)
        if (distances[i] < distances[nearest]) nearest = i;
    const GLfloat least = distances[nearest];
    for (int i = 0; i < BONES; ++i) {
        const int joined = i == nearest || kBones[i].parent == nearest || kBones[nearest].parent == i;
        distances[i] = joined ? expf((least - distances[i]) / kSpread) : 0.0f;
    }
    for (int i = 0; i < WEIGHTS; ++i) {
        int best = 0;
        for (int k = 1; k < BONES; ++k)
            if (distances[k] > distances[best]) best = k;
        vertex->bones[i] = (GLubyte)best;
        vertex->weights[i] = distances[best];
        sum += distances[best];
        distances[best] = 0.0f;
    }
    for (int i = 0; i < WEIGHTS; ++i) {
        vertex->weights[i] /= sum;
        for (int k = 0; k < 3; ++k)
            colour[k] += vertex->weights[i] * kBones[vertex->bones[i]].colour[k];
    }
    for (int k = 0; k < 3; ++k)
        vertex->colour[k] = (GLubyte)(255.0f * colour[k] + 0.5f);
    vertex->colour[3] = 255;
}

static void pointAt(int corner, GLfloat offset, GLfloat *position)
{
    const int place[] = {corner % COLUMNS, corner / COLUMNS % ROWS, corner / (COLUMNS * ROWS)};
    for (int i = 0; i < 3; ++i)
        position[i] = kOrigin[i] + ((GLfloat)place[i] + offset) * kCell;
}

// A cube has a vertex when not all of its corners lie on the same side of the skin.
static int isCrossed(const GLfloat *field, int corner)
{
    int inside = 0;
    for (int i = 0; i < 8; ++i)
        inside += field[corner + i % 2 + i / 2 % 2 * COLUMNS + i / 4 * COLUMNS * ROWS] < 0.0f;
    return inside != 0 && inside != 8;
}

static void addSquare(struct FigureMesh *mesh, int a, int b, int c, int d)
{
    const int corners[] = {a, b, c, a, c, d};
    for (int i = 0; i < 6; ++i)
        mesh->indices[mesh->indexCount++] = (GLushort)corners[i];
}

void makeFigureMesh(struct FigureMesh *mesh)
{
    enum { CORNERS = COLUMNS * ROWS * LAYERS };
    static GLfloat field[CORNERS];
    static int vertexOf[CORNERS]; // of the cube at this corner
    const int steps[] = {1, COLUMNS, COLUMNS * ROWS};
    const int last = CORNERS - steps[0] - steps[1] - steps[2];
    for (int i = 0; i < CORNERS; ++i) {
        GLfloat position[3];
        pointAt(i, 0.0f, position);
        field[i] = bodyDistance(position, NULL);
    }
    for (int i = 0; i < last; ++i) {
        if (!isCrossed(field, i) || mesh->vertexCount == MESH_VERTICES) continue;
        struct FigureVertex *vertex = &mesh->vertices[mesh->vertexCount];
        vertexOf[i] = mesh->vertexCount++;
        pointAt(i, 0.5f, vertex->position);
        moveToSkin(vertex);
        bindToBones(vertex);
    }
    // The body keeps away from the grid's border, so that an edge it crosses has cubes on all sides.
    for (int i = 0; i < 3 * last; ++i) {
        const int corner = i / 3, u = steps[(i + 1) % 3], v = steps[(i + 2) % 3];
        const int inside = field[corner] < 0.0f, insideNext = field[corner + steps[i % 3]] < 0.0f;
        if (inside == insideNext || mesh->indexCount + 6 > MESH_INDICES) continue;
        const int *cube = &vertexOf[corner];
        if (inside)
            addSquare(mesh, cube[-u - v], cube[-v], cube[0], cube[-u]);
        else
            addSquare(mesh, cube[-u - v], cube[-u], cube[0], cube[-v]);
    }
}
