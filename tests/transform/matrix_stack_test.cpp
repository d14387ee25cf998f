// SPDX-License-Identifier: MIT
#include "state/state_test.h"

namespace {

using Elements = std::array<GLfloat, 16>;

constexpr Elements kIdentity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// Flags words: the class, 0x10 for float, 0x20 for unrotated.
constexpr uint32_t kFloat = 0x10;
constexpr uint32_t kUnrotated = 0x20;

// Each matrix mode with its stack and what a change of it marks.
struct Mode {
    const char *name;
    GLenum mode;
    GLenum unit;
    uint32_t stack;
    uint32_t dirty;
    uint32_t keyDirty;
    uint32_t capacity; // entries; 0 = no stack
};

const Mode kModes[] = {
    {"modelview", GL_MODELVIEW, GL_TEXTURE0, 0, 0x2, 0, 16},
    {"projection", GL_PROJECTION, GL_TEXTURE0, 1, 0x2, 0, 4},
    {"texture of unit 0", GL_TEXTURE, GL_TEXTURE0, 2, 0x80, 16, 2},
    {"texture of unit 1", GL_TEXTURE, GL_TEXTURE1, 3, 0x100, 32, 2},
    {"palette", GL_MATRIX_PALETTE_OES, GL_TEXTURE0, 4, 0x10, 0, 0},
};

// A command that changes the current entry.
struct Command {
    const char *name;
    std::function<void()> call;
};

const std::vector<Command> &changingCommands()
{
    static const GLfloat floats[16] = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1};
    static const GLfixed fixeds[16] = {0x10000, 0, 0, 0, 0, 0x10000, 0, 0, 0, 0, 0x10000, 0, 0, 0, 0, 0x10000};
    static const std::vector<Command> list = {
        {"glLoadIdentity", [] { glLoadIdentity(); }},
        {"glLoadMatrixf", [] { glLoadMatrixf(floats); }},
        {"glLoadMatrixx", [] { glLoadMatrixx(fixeds); }},
        {"glMultMatrixf", [] { glMultMatrixf(floats); }},
        {"glMultMatrixx", [] { glMultMatrixx(fixeds); }},
        {"glRotatef", [] { glRotatef(30, 1, 0, 0); }},
        {"glTranslatef", [] { glTranslatef(1, 2, 3); }},
        {"glScalef", [] { glScalef(1, 2, 3); }},
        {"glRotatex", [] { glRotatex(0x10000, 0x10000, 0, 0); }},
        {"glTranslatex", [] { glTranslatex(0x10000, 0, 0); }},
        {"glScalex", [] { glScalex(0x10000, 0x10000, 0x10000); }},
        {"glOrthof", [] { glOrthof(0, 1, 0, 1, -1, 1); }},
        {"glFrustumf", [] { glFrustumf(-1, 1, -1, 1, 1, 2); }},
        {"glOrthox", [] { glOrthox(0, 0x10000, 0, 0x10000, -0x10000, 0x10000); }},
        {"glFrustumx", [] { glFrustumx(-0x10000, 0x10000, -0x10000, 0x10000, 0x10000, 0x20000); }},
    };
    return list;
}

class MatrixStacks : public StateTest {
protected:
    void select(const Mode &mode)
    {
        glActiveTexture(mode.unit);
        glMatrixMode(mode.mode);
        glCurrentPaletteMatrixOES(6);
        takeCalls();
        clearMarks(ctx);
    }
    const MatrixRecord &top() const
    {
        return *ctx->transform.top[ctx->transform.currentStack];
    }
    Elements elements() const
    {
        return values(top().f);
    }
    void expectMarks(const Mode &mode) const
    {
        EXPECT_EQ(ctx->dirty, mode.dirty);
        EXPECT_EQ(ctx->transform.uniformDirty, mode.dirty);
        EXPECT_EQ(ctx->keyDirty, mode.keyDirty);
        EXPECT_EQ(ctx->palette.dirty, mode.stack == STACK_PALETTE ? 1u << 6 : 0u);
    }
    void expectNoMarks() const
    {
        EXPECT_EQ(ctx->dirty, 0u);
        EXPECT_EQ(ctx->transform.uniformDirty, 0u);
        EXPECT_EQ(ctx->keyDirty, 0);
        EXPECT_EQ(ctx->palette.dirty, 0u);
    }
};

} // namespace

TEST_F(MatrixStacks, StartInModelviewModeWithIdentitiesAtDepthZero)
{
    TestContext fresh;
    const TransformState &transform = fresh->transform;
    EXPECT_EQ(transform.matrixMode, GLenum(GL_MODELVIEW));
    EXPECT_EQ(transform.currentStack, 0u);
    const MatrixRecord *const bottoms[] = {transform.modelview, transform.projection, transform.texture[0],
                                           transform.texture[1]};
    for (uint32_t stack = 0; stack < 4; ++stack) {
        EXPECT_EQ(transform.top[stack], bottoms[stack]);
        EXPECT_EQ(transform.depth[stack], 0u);
        EXPECT_EQ(values(transform.top[stack]->f), kIdentity);
        EXPECT_EQ(transform.top[stack]->flags, 0x38u);
    }
    EXPECT_EQ(transform.top[STACK_PALETTE], &fresh->palette.matrices[0]);
    EXPECT_EQ(values(transform.normalMatrix), (std::array<GLfloat, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(transform.projectionAdjustment.flags & MATRIX_IDENTITY, 8u);
    EXPECT_EQ(values(transform.effectiveProjection.f), kIdentity);
    EXPECT_EQ(fresh->dirty & 0x2, 0x2u);
    EXPECT_EQ(fresh->palette.dirty, 0xFFFFFu);
}

TEST_F(MatrixStacks, InitialisationLeavesAdjustmentAndEffectiveProjection)
{
    ctx->transform.projectionAdjustment.f[5] = -1;
    ctx->transform.effectiveProjection.f[0] = 9;
    glTranslatef(1, 2, 3);
    glPushMatrix();
    glMatrixMode(GL_PROJECTION);
    clearMarks(ctx);
    ctx->transform.normalMatrixStale = 0;
    initTransform(ctx);
    EXPECT_EQ(ctx->dirty, 0x2u);
    EXPECT_EQ(ctx->transform.uniformDirty, 0x2u);
    EXPECT_EQ(ctx->transform.normalMatrixStale, 1u);
    EXPECT_EQ(ctx->transform.projectionAdjustment.f[5], -1.0f);
    EXPECT_EQ(ctx->transform.effectiveProjection.f[0], 9.0f);
    EXPECT_EQ(ctx->transform.depth[0], 0u);
    EXPECT_EQ(ctx->transform.top[0], ctx->transform.modelview);
    EXPECT_EQ(values(ctx->transform.top[0]->f), kIdentity);
    EXPECT_EQ(ctx->transform.matrixMode, GLenum(GL_MODELVIEW));
    EXPECT_EQ(ctx->transform.currentStack, 0u);
}

TEST_F(MatrixStacks, ModesSelectTheirStackAndMarkNothing)
{
    for (const Mode &mode : kModes) {
        SCOPED_TRACE(mode.name);
        select(mode);
        EXPECT_EQ(ctx->transform.currentStack, mode.stack);
        EXPECT_EQ(ctx->transform.matrixMode, mode.mode);
        expectNoMarks();
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(MatrixStacks, AnyOtherModeIsInvalidEnum)
{
    glMatrixMode(GL_PROJECTION);
    for (const GLenum mode : {0u, 0x16FFu, 0x1703u, 0x883Fu, 0x8841u, 0xFFFFFFFFu})
        expectOnlyError(ctx, GL_INVALID_ENUM, [mode] { glMatrixMode(mode); });
    EXPECT_EQ(ctx->transform.matrixMode, GLenum(GL_PROJECTION));
}

TEST_F(MatrixStacks, TextureModeSelectsTheUnitActiveAtThatCallAndFollowsItsChanges)
{
    glActiveTexture(GL_TEXTURE1);
    glMatrixMode(GL_TEXTURE);
    EXPECT_EQ(ctx->transform.currentStack, 3u);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(ctx->transform.currentStack, 2u);
    glTranslatef(5, 0, 0);
    EXPECT_EQ(ctx->transform.texture[0][0].f[12], 5.0f);
    EXPECT_EQ(ctx->transform.texture[1][0].f[12], 0.0f);
    glActiveTexture(GL_TEXTURE0);
    EXPECT_EQ(ctx->transform.currentStack, 2u);
    glActiveTexture(GL_TEXTURE1);
    EXPECT_EQ(ctx->transform.currentStack, 3u);
    glTranslatef(7, 0, 0);
    EXPECT_EQ(ctx->transform.texture[0][0].f[12], 5.0f);
    EXPECT_EQ(ctx->transform.texture[1][0].f[12], 7.0f);
}

TEST_F(MatrixStacks, OtherModesDoNotFollowTheActiveUnit)
{
    for (const GLenum mode : {GL_MODELVIEW, GL_PROJECTION, GL_MATRIX_PALETTE_OES}) {
        glMatrixMode(mode);
        const uint32_t stack = ctx->transform.currentStack;
        glActiveTexture(GL_TEXTURE1);
        EXPECT_EQ(ctx->transform.currentStack, stack);
        glActiveTexture(GL_TEXTURE0);
        EXPECT_EQ(ctx->transform.currentStack, stack);
    }
}

TEST_F(MatrixStacks, TakeOnePushLessThanTheirCapacity)
{
    for (const Mode &mode : kModes) {
        if (mode.capacity == 0) continue;
        SCOPED_TRACE(mode.name);
        select(mode);
        for (uint32_t depth = 1; depth < mode.capacity; ++depth) {
            glPushMatrix();
            EXPECT_EQ(ctx->transform.depth[mode.stack], depth);
        }
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        expectOnlyError(ctx, GL_STACK_OVERFLOW, [] { glPushMatrix(); });
        for (uint32_t depth = mode.capacity - 1; depth > 0; --depth)
            glPopMatrix();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        clearMarks(ctx);
        expectOnlyError(ctx, GL_STACK_UNDERFLOW, [] { glPopMatrix(); });
        expectNoMarks();
    }
}

TEST_F(MatrixStacks, ThePaletteIsNoStack)
{
    select(kModes[4]);
    expectOnlyError(ctx, GL_STACK_OVERFLOW, [] { glPushMatrix(); });
    expectOnlyError(ctx, GL_STACK_UNDERFLOW, [] { glPopMatrix(); });
    expectNoMarks();
}

TEST_F(MatrixStacks, PushCopiesElementsAndFlagsAndMarksNothing)
{
    for (const Mode &mode : kModes) {
        if (mode.capacity == 0) continue;
        SCOPED_TRACE(mode.name);
        select(mode);
        glTranslatef(1, 2, 3);
        glScalef(2, 2, 2);
        const Elements before = elements();
        const uint32_t flags = top().flags;
        const MatrixRecord *const below = &top();
        clearMarks(ctx);
        glPushMatrix();
        expectNoMarks();
        EXPECT_EQ(&top(), below + 1);
        EXPECT_EQ(elements(), before);
        EXPECT_EQ(top().flags, flags);
    }
}

TEST_F(MatrixStacks, PopReturnsToTheEntryBelowAndMarksTheStack)
{
    for (const Mode &mode : kModes) {
        if (mode.capacity == 0) continue;
        SCOPED_TRACE(mode.name);
        select(mode);
        glPushMatrix();
        glTranslatef(1, 2, 3);
        clearMarks(ctx);
        glPopMatrix();
        EXPECT_EQ(elements(), kIdentity);
        EXPECT_EQ(top().flags, 0x38u);
        expectMarks(mode);
    }
    EXPECT_EQ(values(ctx->transform.effectiveProjection.f), kIdentity) << "recomputed by the projection's pop";
}

TEST_F(MatrixStacks, EveryChangeMarksItsStack)
{
    for (const Mode &mode : kModes) {
        for (const Command &command : changingCommands()) {
            SCOPED_TRACE(std::string(command.name) + " on " + mode.name);
            select(mode);
            command.call();
            expectMarks(mode);
            EXPECT_TRUE(top().flags & MATRIX_FLOAT);
        }
    }
    EXPECT_EQ(takeCalls(), std::vector<std::string>{});
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(MatrixStacks, AChangeTouchesOnlyTheCurrentEntry)
{
    for (const Mode &mode : kModes) {
        SCOPED_TRACE(mode.name);
        select(mode);
        const MatrixRecord *before[5];
        std::array<Elements, 5> others;
        for (uint32_t stack = 0; stack < 5; ++stack) {
            before[stack] = ctx->transform.top[stack];
            others[stack] = values(before[stack]->f);
        }
        glScalef(7, 7, 7);
        for (uint32_t stack = 0; stack < 5; ++stack) {
            EXPECT_EQ(ctx->transform.top[stack], before[stack]);
            EXPECT_EQ(values(before[stack]->f) == others[stack], stack != mode.stack);
        }
    }
}

TEST_F(MatrixStacks, NothingHappensWithoutAContextOrInInterfaceOnlyMode)
{
    std::vector<std::function<void()>> all;
    for (const Command &command : changingCommands())
        all.push_back(command.call);
    all.push_back([] { glMatrixMode(GL_PROJECTION); });
    all.push_back([] { glMatrixMode(0); });
    all.push_back([] { glPushMatrix(); });
    all.push_back([] { glPopMatrix(); });
    all.push_back([] { glLoadMatrixf(nullptr); });
    all.push_back([] { glLoadMatrixx(nullptr); });
    all.push_back([] { glMultMatrixf(nullptr); });
    all.push_back([] { glMultMatrixx(nullptr); });
    all.push_back([] { glOrthof(1, 1, 1, 1, 1, 1); });
    all.push_back([] { glFrustumf(0, 0, 0, 0, 0, 0); });
    expectInert(*context, all);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(MatrixStacks, LoadIdentitySetsTheClassAndUnrotated)
{
    glFrustumf(-1, 1, -1, 1, 1, 2);
    glLoadIdentity();
    EXPECT_EQ(elements(), kIdentity);
    EXPECT_EQ(top().flags, 0x38u);
}

TEST_F(MatrixStacks, LoadMatrixClassifies)
{
    GLfloat m[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 7, 8, 9, 1};
    glLoadMatrixf(m);
    EXPECT_EQ(elements(), (Elements{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 7, 8, 9, 1}));
    EXPECT_EQ(top().flags, 2u | kFloat);
    m[5] = 3;
    glLoadMatrixf(m);
    EXPECT_EQ(top().flags, 1u | kFloat);
    m[15] = 2;
    glLoadMatrixf(m);
    EXPECT_EQ(top().flags, 0u | kFloat);
    glLoadMatrixf(kIdentity.data());
    EXPECT_EQ(top().flags, 2u | kFloat) << "a loaded identity is not recognised as one";
}

TEST_F(MatrixStacks, AFixedPointLoadBecomesFloatWithTheClassOfTheLoad)
{
    GLfixed m[16] = {0x8000, 0, 0, 0, 0, 0x8000, 0, 0, 0, 0, 0x8000, 0, -0x10000, 0x28000, 1, 0x10000};
    glLoadMatrixx(m);
    EXPECT_EQ(elements(), (Elements{0.5f, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, 0.5f, 0, -1, 2.5f, 0x1p-16f, 1}));
    EXPECT_EQ(top().flags, 2u | kFloat);
    m[3] = 1;
    glLoadMatrixx(m);
    EXPECT_EQ(top().f[3], 0x1p-16f);
    EXPECT_EQ(top().flags, 0u | kFloat);
}

TEST_F(MatrixStacks, MultMatrixMultipliesOnTheRight)
{
    const GLfloat scale[16] = {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1};
    const GLfixed move[16] = {0x10000, 0, 0, 0, 0, 0x10000, 0, 0, 0, 0, 0x10000, 0, 0x10000, 0x20000, 0x30000, 0x10000};
    glMultMatrixf(scale);
    EXPECT_EQ(top().flags, 1u | kFloat);
    glMultMatrixx(move);
    // scale x translation: the translation is scaled.
    EXPECT_EQ(elements(), (Elements{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 2, 6, 12, 1}));
    EXPECT_EQ(top().flags, 1u | kFloat);
    const GLfloat projective[16] = {1, 0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    glMultMatrixf(projective);
    EXPECT_EQ(elements(), (Elements{4, 6, 12, 1, 0, 3, 0, 0, 0, 0, 4, 0, 2, 6, 12, 1}));
    EXPECT_EQ(top().flags, 0u | kFloat);
}

TEST_F(MatrixStacks, RotationIsRigidAndMultipliesOnTheRight)
{
    glRotatef(90, 0, 0, 2);
    const std::vector<GLfloat> quarterTurn = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    expectNear(top().f, quarterTurn, 1e-6f); // sine and cosine of the table are not exact
    EXPECT_EQ(top().flags, 4u | kFloat);
    glLoadIdentity();
    glTranslatef(1, 2, 3);
    glRotatef(90, 0, 0, 1);
    EXPECT_EQ(top().f[12], 1.0f);
    EXPECT_EQ(top().f[13], 2.0f);
    glScalef(2, 2, 2);
    glRotatef(90, 1, 0, 0);
    EXPECT_EQ(top().flags, 2u | kFloat) << "class of the product, not of the rotation";
}

TEST_F(MatrixStacks, TranslationDropsUnrotated)
{
    glScalef(2, 2, 2);
    EXPECT_EQ(top().flags, 2u | kFloat | kUnrotated);
    glTranslatef(1, 2, 3);
    EXPECT_EQ(elements(), (Elements{2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 2, 4, 6, 1}));
    EXPECT_EQ(top().flags, 2u | kFloat);
    glScalef(3, 3, 3);
    EXPECT_EQ(top().flags, 2u | kFloat) << "once lost it does not come back";
    glLoadIdentity();
    glTranslatef(0, 0, 0);
    EXPECT_EQ(top().flags, 4u | kFloat);
}

TEST_F(MatrixStacks, ScalingKeepsUnrotated)
{
    glScalef(2, 2, 2);
    EXPECT_EQ(top().flags, 0x32u);
    glScalef(1, 2, 2);
    EXPECT_EQ(top().flags, 0x31u);
    EXPECT_EQ(elements(), (Elements{2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}));
    glRotatef(10, 1, 0, 0);
    EXPECT_FALSE(top().flags & kUnrotated);
}

TEST_F(MatrixStacks, FixedPointCommandsConvertTheirArguments)
{
    glTranslatex(0x18000, -0x10000, 1);
    EXPECT_EQ(elements(), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1.5f, -1, 0x1p-16f, 1}));
    glLoadIdentity();
    glScalex(0x18000, 0x8000, -0x20000);
    EXPECT_EQ(elements(), (Elements{1.5f, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, -2, 0, 0, 0, 0, 1}));
    glLoadIdentity();
    glRotatef(30.5f, 1, 2, 3);
    const Elements rotated = elements();
    glLoadIdentity();
    glRotatex(0x1E8000, 0x10000, 0x20000, 0x30000);
    EXPECT_EQ(elements(), rotated);
    glLoadIdentity();
    glOrthof(-1.5f, 2, -3, 4.5f, 1, 10);
    const Elements ortho = elements();
    glLoadIdentity();
    glOrthox(-0x18000, 0x20000, -0x30000, 0x48000, 0x10000, 0xA0000);
    EXPECT_EQ(elements(), ortho);
    glLoadIdentity();
    glFrustumf(-1.5f, 2, -3, 4.5f, 1, 10);
    const Elements frustum = elements();
    glLoadIdentity();
    glFrustumx(-0x18000, 0x20000, -0x30000, 0x48000, 0x10000, 0xA0000);
    EXPECT_EQ(elements(), frustum);
}

TEST_F(MatrixStacks, OrthoIsTheStandardsMatrixAndCountsAsGeneral)
{
    glOrthof(-2, 6, 1, 5, -3, 13);
    EXPECT_EQ(elements(), (Elements{0.25f, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, -0.125f, 0, -0.5f, -1.5f, -0.625f, 1}));
    EXPECT_EQ(top().flags, kFloat);
    glLoadIdentity();
    glTranslatef(1, 1, 1);
    glOrthof(-2, 6, 1, 5, -3, 13);
    EXPECT_EQ(top().f[12], 0.5f) << "multiplied on the right";
}

TEST_F(MatrixStacks, FrustumIsTheStandardsMatrix)
{
    glFrustumf(-1, 3, -2, 6, 2, 10);
    EXPECT_EQ(elements(), (Elements{1, 0, 0, 0, 0, 0.5f, 0, 0, 0.5f, 0.5f, -1.5f, -1, 0, 0, -5, 0}));
    EXPECT_EQ(top().flags, kFloat);
    glLoadIdentity();
    glScalef(2, 2, 2);
    glFrustumf(-1, 3, -2, 6, 2, 10);
    EXPECT_EQ(elements(), (Elements{2, 0, 0, 0, 0, 1, 0, 0, 1, 1, -3, -1, 0, 0, -10, 0}));
    EXPECT_EQ(top().flags, kFloat);
}

TEST_F(MatrixStacks, AnEmptyOrthoVolumeIsInvalidValue)
{
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthof(1, 1, 0, 1, 0, 1); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthof(0, 1, 2, 2, 0, 1); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthof(0, 1, 0, 1, 3, 3); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthox(5, 5, 0, 1, 0, 1); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthox(0, 1, 5, 5, 0, 1); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glOrthox(0, 1, 0, 1, 5, 5); });
    expectNoMarks();
    // Turned over in any direction is allowed, and a near plane of 0 or behind the eye.
    expectAccepted([] { glOrthof(1, 0, 1, 0, 1, 0); });
    expectAccepted([] { glOrthof(0, 1, 0, 1, -5, 0); });
}

TEST_F(MatrixStacks, AnEmptyOrUnseenFrustumIsInvalidValue)
{
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(1, 1, 0, 1, 1, 2); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 2, 2, 1, 2); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 0, 1, 3, 3); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 0, 1, 0, 2); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 0, 1, -0.5f, 2); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 0, 1, 2, 0); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumf(0, 1, 0, 1, 2, -1); });
    expectOnlyError(ctx, GL_INVALID_VALUE, [] { glFrustumx(0, 1, 0, 1, 0, 2); });
    expectNoMarks();
    expectAccepted([] { glFrustumf(1, 0, 1, 0, 2, 1); });
    expectAccepted([] { glFrustumf(0, 1, 0, 1, 0x1p-126f, 1); });
}

TEST_F(MatrixStacks, TheEffectiveProjectionIsACopyUnderAnIdentityAdjustment)
{
    glMatrixMode(GL_PROJECTION);
    glScalef(2, 3, 4);
    EXPECT_EQ(values(ctx->transform.effectiveProjection.f), elements());
    EXPECT_EQ(ctx->transform.effectiveProjection.flags, top().flags);
}

TEST_F(MatrixStacks, TheAdjustmentStandsInFrontOfTheProjection)
{
    MatrixRecord &adjustment = ctx->transform.projectionAdjustment;
    adjustment.f[5] = -1;
    adjustment.f[13] = 10;
    adjustment.flags = MATRIX_ANISOSCALE | kFloat;
    glMatrixMode(GL_PROJECTION);
    glTranslatef(1, 2, 3);
    EXPECT_EQ(values(ctx->transform.effectiveProjection.f),
              (Elements{1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1, 0, 1, 8, 3, 1}));
    EXPECT_EQ(elements(), (Elements{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1}));
    glPushMatrix();
    glLoadIdentity();
    EXPECT_EQ(ctx->transform.effectiveProjection.f[13], 10.0f);
    glPopMatrix();
    EXPECT_EQ(ctx->transform.effectiveProjection.f[13], 8.0f);
    glMatrixMode(GL_MODELVIEW);
    glScalef(9, 9, 9);
    EXPECT_EQ(ctx->transform.effectiveProjection.f[13], 8.0f);
}

TEST_F(MatrixStacks, MarksOfTheUniformsOutliveADraw)
{
    glMatrixMode(GL_TEXTURE);
    glTranslatef(1, 0, 0);
    ctx->dirty = 0;
    EXPECT_EQ(ctx->transform.uniformDirty, 0x80u);
}
