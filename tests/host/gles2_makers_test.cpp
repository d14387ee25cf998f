// SPDX-License-Identifier: MIT
// Programs and shaders go with the context that made them, while others of its share group live on.
#include "backend_fixture.h"

#include <string>
#include <thread>
#include <vector>

namespace {

using Names = std::vector<GLuint>;

// The texts of a red program.
constexpr const char *kRedFragment = "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }\n";
constexpr Pixel kRed = {255, 0, 0, 255};

struct Makers : BackendTest {
    void SetUp() override
    {
        BackendTest::SetUp();
        other = makeContext(context);
        ASSERT_NE(other, nullptr);
    }

    enum class Current { None, Other, Itself }; // while a context is destroyed

    void destroyOther(Current current = Current::None)
    {
        makeCurrent(current == Current::None ? nullptr : current == Current::Other ? context : other);
        EXPECT_EQ(backend().table.destroyContext(other), 1);
        makeCurrent(context);
    }

    Names listed(void(GL_APIENTRY *list)(GLuint *, GLint, GLint *))
    {
        Names names(1000);
        GLint count = 0;
        list(names.data(), static_cast<GLint>(names.size()), &count);
        names.resize(static_cast<size_t>(count));
        return names;
    }

    GLuint makeShader(const char *text)
    {
        const GLuint shader = gl.glCreateShader(GL_FRAGMENT_SHADER);
        gl.glShaderSource(shader, 1, &text, nullptr);
        gl.glCompileShader(shader);
        return shader;
    }

    // As the library above makes its programs: it keeps the shaders.
    GLuint makeProgramWithShaders()
    {
        const GLuint program = gl.glCreateProgram();
        const GLuint vertex = gl.glCreateShader(GL_VERTEX_SHADER);
        const GLchar *text = kPlainVertex;
        gl.glShaderSource(vertex, 1, &text, nullptr);
        gl.glCompileShader(vertex);
        gl.glBindAttribLocation(program, 0, "gles_Vertex");
        gl.glAttachShader(program, vertex);
        gl.glAttachShader(program, makeShader(kRedFragment));
        gl.glLinkProgram(program);
        return program;
    }

    void expectRed()
    {
        gl.glClear(GL_COLOR_BUFFER_BIT);
        drawSquare();
        EXPECT_EQ(pixelAt(9, 9), kRed);
    }

    void *other = nullptr; // shares with `context`, and is current when a test begins
};

TEST_F(Makers, ADestroyedContextTakesItsProgramsAndShadersAlong)
{
    makeCurrent(context);
    const GLuint ownProgram = makeProgram(kPlainVertex, kColorFragment);
    const GLuint ownShader = makeShader(kRedFragment);
    makeCurrent(other);
    const Names programs = listed(gl.glGetProgramsQRN), shaders = listed(gl.glGetShadersQRN);

    for (const Current current : {Current::None, Current::Other, Current::Itself}) {
        const GLuint used = makeProgramWithShaders();
        gl.glUseProgram(used);
        expectRed();
        makeProgramWithShaders();
        gl.glCreateProgram(); // never linked
        makeShader("nonsense");
        EXPECT_EQ(listed(gl.glGetProgramsQRN).size(), programs.size() + 3);
        EXPECT_EQ(listed(gl.glGetShadersQRN).size(), shaders.size() + 5);

        destroyOther(current);
        EXPECT_EQ(listed(gl.glGetProgramsQRN), programs);
        EXPECT_EQ(listed(gl.glGetShadersQRN), shaders);
        gl.glUseProgram(used);
        EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_INVALID_VALUE)) << "also where names are looked for first";
        other = makeContext(context);
    }
    destroyOther();
    gl.glUseProgram(ownProgram);
    gl.glDeleteShader(ownShader);
    EXPECT_EQ(gl.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Makers, AProgramInUseElsewhereLivesUntilItIsLeft)
{
    const GLuint program = makeProgramWithShaders();
    makeCurrent(context);
    gl.glUseProgram(program);
    destroyOther();

    expectRed();
    GLint deleted = GL_FALSE;
    gl.glGetProgramiv(program, GL_DELETE_STATUS, &deleted);
    EXPECT_EQ(deleted, GL_TRUE);
    EXPECT_EQ(listed(gl.glGetProgramsQRN), Names{program});
    EXPECT_EQ(listed(gl.glGetShadersQRN).size(), 2u);
    gl.glUseProgram(0);
    EXPECT_EQ(listed(gl.glGetProgramsQRN), Names{});
    EXPECT_EQ(listed(gl.glGetShadersQRN), Names{});
}

TEST_F(Makers, AShaderAttachedToAnothersProgramLivesAsLongAsThat)
{
    const GLuint shader = makeShader(kRedFragment);
    makeCurrent(context);
    const GLuint program = gl.glCreateProgram();
    gl.glAttachShader(program, shader);
    destroyOther();
    EXPECT_EQ(listed(gl.glGetShadersQRN), Names{shader});
    gl.glDetachShader(program, shader);
    EXPECT_EQ(listed(gl.glGetShadersQRN), Names{});
}

TEST_F(Makers, TheNextContextWithTheSameTextsCompilesNothing)
{
    gl.glUseProgram(makeProgramWithShaders());
    expectRed();
    destroyOther();

    other = makeContext(context);
    const int compiles = countedCalls("glCompileShader"), links = countedCalls("glLinkProgram");
    gl.glUseProgram(makeProgramWithShaders());
    expectRed();
    EXPECT_EQ(countedCalls("glCompileShader"), compiles);
    EXPECT_EQ(countedCalls("glLinkProgram"), links);
    destroyOther();
}

// Makes programs of different texts in contexts of which none is current when they go. Returns how many of the
// driver's programs there are more than before.
struct ManyPrograms : Makers {
    static constexpr int kContexts = 5, kProgramsEach = 64;

    int fillKeeper()
    {
        std::vector<void *> contexts = {other};
        while (contexts.size() < kContexts)
            contexts.push_back(makeContext(context));
        const int made = countedCalls("glCreateProgram"), gone = countedCalls("glDeleteProgram");
        for (int i = 0; i < kContexts * kProgramsEach; ++i) {
            if (i % kProgramsEach == 0) makeCurrent(contexts[static_cast<size_t>(i / kProgramsEach)]);
            makeProgram(kPlainVertex, "void main() { gl_FragColor = vec4(" + std::to_string(i) + ".0); }\n");
        }
        makeCurrent(nullptr);
        for (void *each : contexts)
            EXPECT_EQ(backend().table.destroyContext(each), 1);
        return countedCalls("glCreateProgram") - made - (countedCalls("glDeleteProgram") - gone);
    }
};

// 256 are kept.
TEST_F(ManyPrograms, WhatTheKeeperHasTooManyOfGoesWhenAContextIsCurrentAgain)
{
    EXPECT_EQ(fillKeeper(), 320) << "none can be deleted without a context";
    const int deletions = countedCalls("glDeleteProgram");
    makeCurrent(context);
    EXPECT_EQ(countedCalls("glDeleteProgram") - deletions, 64);
}

// A program with more uniform locations than are remembered cannot be put back to zero, so it is not kept.
struct Unkept : Makers {
    static constexpr const char *kManyUniforms = "uniform mediump float values[4097];\nuniform int place;\n"
                                                 "void main() { gl_FragColor = vec4(values[place]); }\n";

    GLuint makeUnkept()
    {
        const GLuint program = makeProgram(kPlainVertex, kManyUniforms);
        if (gl.glGetUniformLocation(program, "values[4096]") < 4096) ADD_FAILURE() << "the driver packs locations";
        return program;
    }
};

TEST_F(Unkept, ProgramsAreDeletedInTheDriverAtOnceWhereAContextIsCurrent)
{
    gl.glUseProgram(makeUnkept());
    makeCurrent(context);
    const int deletions = countedCalls("glDeleteProgram");
    EXPECT_EQ(backend().table.destroyContext(other), 1);
    EXPECT_EQ(countedCalls("glDeleteProgram") - deletions, 1);
}

TEST_F(Unkept, ProgramsWaitForAContextOtherwise)
{
    gl.glUseProgram(makeUnkept());
    makeCurrent(nullptr);
    const int deletions = countedCalls("glDeleteProgram");
    EXPECT_EQ(backend().table.destroyContext(other), 1);
    EXPECT_EQ(countedCalls("glDeleteProgram") - deletions, 0);
    makeCurrent(context);
    EXPECT_EQ(countedCalls("glDeleteProgram") - deletions, 1);
}

TEST_F(Makers, ProgramsOfTheMachinesOwnContextsStay)
{
    const GLuint foreign = driver.glCreateProgram(); // as through a context of the machine's that shares
    EXPECT_EQ(makeProgramWithShaders(), foreign) << "the backend's names are its own";
    destroyOther();
    GLint deleted = -1;
    driver.glGetProgramiv(foreign, GL_DELETE_STATUS, &deleted);
    EXPECT_EQ(deleted, GL_FALSE);
    driver.glDeleteProgram(foreign);
    EXPECT_EQ(driver.glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

// Contexts come and go on one thread, while another changes between its programs.
TEST_F(Makers, ContextsGoWhileAnotherThreadDraws)
{
    makeCurrent(nullptr);
    std::thread thread([&] {
        for (int i = 0; i < 100; ++i) {
            makeCurrent(other);
            for (int program = 0; program < 5; ++program)
                gl.glUseProgram(makeProgramWithShaders());
            drawSquare();
            makeCurrent(nullptr);
            EXPECT_EQ(backend().table.destroyContext(other), 1);
            other = makeContext(context);
        }
        makeCurrent(nullptr);
        EXPECT_EQ(backend().table.destroyContext(other), 1);
    });
    makeCurrent(context);
    const GLuint own[] = {makeProgramWithShaders(), makeProgramWithShaders()};
    for (int i = 0; i < 2000; ++i) {
        gl.glUseProgram(own[i % 2]);
        drawSquare();
    }
    thread.join();
    EXPECT_EQ(listed(gl.glGetProgramsQRN), (Names{own[0], own[1]}));
    EXPECT_EQ(listed(gl.glGetShadersQRN).size(), 4u);
    expectRed();
}

} // namespace
