// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

struct Enable {
    const char *name;
    GLenum array;
    ClientArray ArrayState::*record; // null for the coordinate arrays
    GLint startSize;
};

const Enable kEnables[] = {
    {"vertex", GL_VERTEX_ARRAY, &ArrayState::vertex, 4},
    {"normal", GL_NORMAL_ARRAY, &ArrayState::normal, 3},
    {"colour", GL_COLOR_ARRAY, &ArrayState::color, 4},
    {"matrix index", GL_MATRIX_INDEX_ARRAY_OES, &ArrayState::matrixIndex, 4},
    {"weight", GL_WEIGHT_ARRAY_OES, &ArrayState::weight, 4},
    {"point size", GL_POINT_SIZE_ARRAY_OES, &ArrayState::pointSize, 0},
};

void *const kPointer = offsetPointer(0x40);

class Arrays : public StateTest {};

void expectRecord(const ClientArray &array, GLint size, GLenum type, GLsizei stride, const void *pointer, GLuint buffer)
{
    EXPECT_EQ(array.size, size);
    EXPECT_EQ(array.type, type);
    EXPECT_EQ(array.strideBytes, stride);
    EXPECT_EQ(array.pointer, pointer);
    EXPECT_EQ(array.buffer, buffer);
}

void expectStart(const ClientArray &array, GLint size)
{
    EXPECT_EQ(array.enabled, 0u);
    expectRecord(array, size, GL_FLOAT, 0, nullptr, 0);
}

// What one pointer call accepts.
struct PointerCall {
    const char *name;
    std::function<void(GLint size, GLenum type, GLsizei stride)> call;
    std::vector<GLint> sizes; // accepted; empty for a call without a size
    std::vector<GLenum> types;
};

const std::vector<PointerCall> &pointerCalls()
{
    const std::vector<GLenum> coordinates = {GL_BYTE, GL_SHORT, GL_FIXED, GL_FLOAT};
    static const std::vector<PointerCall> list = {
        {"glVertexPointer", [](auto n, auto t, auto s) { glVertexPointer(n, t, s, kPointer); }, {2, 3, 4}, coordinates},
        {"glNormalPointer", [](auto, auto t, auto s) { glNormalPointer(t, s, kPointer); }, {}, coordinates},
        {"glColorPointer",
         [](auto n, auto t, auto s) { glColorPointer(n, t, s, kPointer); },
         {4},
         {GL_UNSIGNED_BYTE, GL_FIXED, GL_FLOAT}},
        {"glTexCoordPointer",
         [](auto n, auto t, auto s) { glTexCoordPointer(n, t, s, kPointer); },
         {2, 3, 4},
         coordinates},
    };
    return list;
}

} // namespace

TEST_F(Arrays, StartDisabledAsFloats)
{
    const ArrayState &arrays = ctx->arrays;
    EXPECT_EQ(arrays.arrayBuffer, 0u);
    EXPECT_EQ(arrays.elementArrayBuffer, 0u);
    for (const Enable &enable : kEnables) {
        SCOPED_TRACE(enable.name);
        expectStart(arrays.*enable.record, enable.startSize);
    }
    expectStart(arrays.texCoord[0], 4);
    expectStart(arrays.texCoord[1], 4);
    EXPECT_EQ(arrays.vertexType, GLenum(GL_FLOAT));
    EXPECT_EQ(arrays.clientUnit, 0u);
}

TEST_F(Arrays, InitialisationClearsEverything)
{
    glBindBuffer(GL_ARRAY_BUFFER, 3);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 4);
    glVertexPointer(2, GL_SHORT, 12, kPointer);
    glEnableClientState(GL_VERTEX_ARRAY);
    initVertexArray(ctx);
    EXPECT_EQ(ctx->arrays.arrayBuffer, 0u);
    EXPECT_EQ(ctx->arrays.elementArrayBuffer, 0u);
    expectStart(ctx->arrays.vertex, 4);
}

TEST_F(Arrays, PointerCallsStoreTheirArgumentsAndTheBoundBuffer)
{
    glBindBuffer(GL_ARRAY_BUFFER, 7);
    takeCalls();
    glVertexPointer(2, GL_SHORT, 12, kPointer);
    glNormalPointer(GL_BYTE, 3, kPointer);
    glColorPointer(4, GL_UNSIGNED_BYTE, 4, kPointer);
    glTexCoordPointer(3, GL_FIXED, 24, kPointer);
    expectRecord(ctx->arrays.vertex, 2, GL_SHORT, 12, kPointer, 7);
    EXPECT_EQ(ctx->arrays.vertexType, GLenum(GL_SHORT));
    expectRecord(ctx->arrays.normal, 3, GL_BYTE, 3, kPointer, 7);
    expectRecord(ctx->arrays.color, 4, GL_UNSIGNED_BYTE, 4, kPointer, 7);
    expectRecord(ctx->arrays.texCoord[0], 3, GL_FIXED, 24, kPointer, 7);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{}) << "draws bind the arrays, not these calls";

    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glVertexPointer(4, GL_FLOAT, 0, nullptr);
    expectRecord(ctx->arrays.vertex, 4, GL_FLOAT, 0, nullptr, 0);
}

TEST_F(Arrays, PointerCallsLeaveTheEnable)
{
    for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY, GL_TEXTURE_COORD_ARRAY})
        glEnableClientState(array);
    glVertexPointer(2, GL_SHORT, 0, kPointer);
    glNormalPointer(GL_BYTE, 0, kPointer);
    glColorPointer(4, GL_FIXED, 0, kPointer);
    glTexCoordPointer(2, GL_BYTE, 0, kPointer);
    EXPECT_EQ(ctx->arrays.vertex.enabled, 1u);
    EXPECT_EQ(ctx->arrays.normal.enabled, 1u);
    EXPECT_EQ(ctx->arrays.color.enabled, 1u);
    EXPECT_EQ(ctx->arrays.texCoord[0].enabled, 1u);
}

TEST_F(Arrays, PointerCallsAcceptExactlyTheirSizesTypesAndStrides)
{
    const GLenum types[] = {GL_BYTE,  GL_UNSIGNED_BYTE, GL_SHORT, GL_UNSIGNED_SHORT, 0x1404, 0x1405,
                            GL_FLOAT, 0x140A,           0x140B,   GL_FIXED,          0x140D, 0};
    for (const PointerCall &pointer : pointerCalls()) {
        for (GLint size = -1; size <= 6; ++size) {
            for (const GLenum type : types) {
                for (const GLsizei stride : {-1, 0, 1, INT32_MAX}) {
                    SCOPED_TRACE(testing::Message() << pointer.name << ' ' << size << ' ' << type << ' ' << stride);
                    const auto has = [](const auto &list, auto value) {
                        return std::find(list.begin(), list.end(), value) != list.end();
                    };
                    const bool sizeGood = pointer.sizes.empty() || has(pointer.sizes, size);
                    clearMarks(ctx);
                    const auto call = [&] { pointer.call(size, type, stride); };
                    if (!sizeGood || stride < 0) {
                        expectOnlyError(ctx, GL_INVALID_VALUE, call);
                    } else if (!has(pointer.types, type)) {
                        expectOnlyError(ctx, GL_INVALID_ENUM, call);
                    } else {
                        expectAccepted(call);
                        EXPECT_EQ(ctx->dirty, 0x8u);
                    }
                }
            }
        }
    }
}

TEST_F(Arrays, SizeOneIsInvalidValueAndUnsignedBytesAreInvalidEnum)
{
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glVertexPointer(1, GL_FLOAT, 0, kPointer); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glVertexPointer(3, GL_UNSIGNED_BYTE, 0, kPointer); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glVertexPointer(5, 0x140A, 0, kPointer); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glColorPointer(3, GL_FLOAT, 0, kPointer); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glNormalPointer(GL_UNSIGNED_BYTE, 0, kPointer); });
}

TEST_F(Arrays, CoordinatesGoToTheClientActiveUnit)
{
    glClientActiveTexture(GL_TEXTURE1);
    clearMarks(ctx);
    glTexCoordPointer(2, GL_SHORT, 8, kPointer);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    expectRecord(ctx->arrays.texCoord[1], 2, GL_SHORT, 8, kPointer, 0);
    EXPECT_EQ(ctx->arrays.texCoord[1].enabled, 1u);
    expectStart(ctx->arrays.texCoord[0], 4);
    glClientActiveTexture(GL_TEXTURE0);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    EXPECT_EQ(ctx->arrays.texCoord[1].enabled, 1u);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    EXPECT_EQ(ctx->arrays.texCoord[0].enabled, 1u);
}

TEST_F(Arrays, ANewCoordinateCountMarksTheUnitsLookup)
{
    for (uint32_t unit = 0; unit < kTextureUnits; ++unit) {
        glClientActiveTexture(GL_TEXTURE0 + unit);
        clearMarks(ctx);
        glTexCoordPointer(4, GL_SHORT, 0, kPointer);
        EXPECT_EQ(ctx->keyDirty, 0);
        glTexCoordPointer(2, GL_SHORT, 0, kPointer);
        EXPECT_EQ(ctx->keyDirty, 16 << unit) << "the lookup is no longer projective";
    }
}

TEST_F(Arrays, ClientActiveTextureTakesTwoUnitsAndCallsNoBackend)
{
    glClientActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(ctx->arrays.clientUnit, 1u);
    EXPECT_EQ(ctx->current.activeUnit, 0u);
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glClientActiveTexture(GL_TEXTURE2); });
    expectOnlyError(ctx, GL_INVALID_ENUM, [] { glClientActiveTexture(GL_TEXTURE0 - 1); });
    takeCalls();
    glClientActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(ctx->arrays.clientUnit, 0u);
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(ctx->dirty, 0u);
}

TEST_F(Arrays, EnablesMarkOnlyWhenTheyChange)
{
    for (const Enable &enable : kEnables) {
        SCOPED_TRACE(enable.name);
        const ClientArray &array = ctx->arrays.*enable.record;
        for (const uint32_t value : {1u, 0u}) {
            const auto set = [&] { value ? glEnableClientState(enable.array) : glDisableClientState(enable.array); };
            clearMarks(ctx);
            set();
            EXPECT_EQ(array.enabled, value);
            EXPECT_EQ(ctx->dirty, 0x8u);
            ctx->dirty = 0;
            set();
            EXPECT_EQ(array.enabled, value);
            EXPECT_EQ(ctx->dirty, 0u);
        }
    }
    for (const uint32_t value : {1u, 0u}) {
        clearMarks(ctx);
        value ? glEnableClientState(GL_TEXTURE_COORD_ARRAY) : glDisableClientState(GL_TEXTURE_COORD_ARRAY);
        EXPECT_EQ(ctx->dirty, 0x8u);
    }
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
}

TEST_F(Arrays, AnyOtherEnableIsInvalidEnum)
{
    for (const GLenum array : {0u, 0x8073u, 0x8077u, 0x8079u, 0x8843u, 0x8845u, 0x86ACu, 0x86AEu, 0x8B9Bu, 0x8B9Du}) {
        expectOnlyError(ctx, GL_INVALID_ENUM, [array] { glEnableClientState(array); });
        expectOnlyError(ctx, GL_INVALID_ENUM, [array] { glDisableClientState(array); });
    }
}

TEST_F(Arrays, ColourIsPerVertexWithTheArrayOrLighting)
{
    EXPECT_EQ(ctx->key.perVertexColor, 0u);
    glEnableClientState(GL_COLOR_ARRAY);
    EXPECT_EQ(ctx->key.perVertexColor, 1u);
    glEnable(GL_LIGHTING);
    glDisableClientState(GL_COLOR_ARRAY);
    EXPECT_EQ(ctx->key.perVertexColor, 1u);
    glDisable(GL_LIGHTING);
    EXPECT_EQ(ctx->key.perVertexColor, 0u);
    glEnableClientState(GL_VERTEX_ARRAY);
    EXPECT_EQ(ctx->key.perVertexColor, 0u);
    glEnable(GL_LIGHTING);
    EXPECT_EQ(ctx->key.perVertexColor, 1u);
}

TEST_F(Arrays, AClientUnitOutOfRangeIsAnAssertion)
{
    ctx->arrays.clientUnit = 3;
    glTexCoordPointer(2, GL_FLOAT, 0, kPointer);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
    ctx->arrays.clientUnit = 0;
    expectStart(ctx->arrays.texCoord[0], 4);
}

TEST_F(Arrays, ADeletedBufferIsForgottenByEachArrayAndByBothBindings)
{
    ArrayState &arrays = ctx->arrays;
    ClientArray *const all[] = {&arrays.vertex,      &arrays.normal,      &arrays.color,  &arrays.texCoord[0],
                                &arrays.texCoord[1], &arrays.matrixIndex, &arrays.weight, &arrays.pointSize};
    for (size_t i = 0; i < 8; ++i) {
        all[i]->buffer = static_cast<GLuint>(i + 1);
        all[i]->pointer = kPointer;
    }
    for (GLuint name = 1; name <= 8; ++name) {
        SCOPED_TRACE(name);
        glBindBuffer(GL_ARRAY_BUFFER, name);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 9);
        glDeleteBuffers(1, &name);
        EXPECT_EQ(arrays.arrayBuffer, 0u);
        EXPECT_EQ(arrays.elementArrayBuffer, 9u);
        for (size_t i = 0; i < 8; ++i) {
            EXPECT_EQ(all[i]->buffer, i < name ? 0u : i + 1);
            EXPECT_EQ(all[i]->pointer, i < name ? nullptr : kPointer);
        }
    }
    const GLuint elements = 9;
    glDeleteBuffers(1, &elements);
    EXPECT_EQ(arrays.elementArrayBuffer, 0u);
}

TEST_F(Arrays, NothingHappensWithoutAContextOrInInterfaceOnlyMode)
{
    expectInert(*context, {
                              [] { glVertexPointer(2, GL_SHORT, 4, kPointer); },
                              [] { glVertexPointer(9, GL_SHORT, 4, kPointer); },
                              [] { glNormalPointer(GL_SHORT, 4, kPointer); },
                              [] { glNormalPointer(0, 4, kPointer); },
                              [] { glColorPointer(4, GL_FIXED, 4, kPointer); },
                              [] { glColorPointer(0, GL_FIXED, 4, kPointer); },
                              [] { glTexCoordPointer(2, GL_SHORT, 4, kPointer); },
                              [] { glTexCoordPointer(2, 0, 4, kPointer); },
                              [] { glEnableClientState(GL_COLOR_ARRAY); },
                              [] { glEnableClientState(0); },
                              [] { glDisableClientState(GL_COLOR_ARRAY); },
                              [] { glDisableClientState(0); },
                              [] { glClientActiveTexture(GL_TEXTURE1); },
                              [] { glClientActiveTexture(0); },
                          });
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}
