// SPDX-License-Identifier: MIT
// Vendor entry points from an ES 1.1 context, through the library and the backend, over this machine's driver.
#include "es1_fixture.h"

#define GL_GLEXT_PROTOTYPES 1
#include <GLES/glext.h>
#include <GLES/glext_trl20.h>

#include <vector>

namespace {

using Vendor = Es1Test;
using Names = std::vector<GLuint>;

Names listed(PFNGLGETTEXTURESQRNPROC list)
{
    Names names(100);
    GLint count = -1;
    list(names.data(), static_cast<GLint>(names.size()), &count);
    names.resize(static_cast<size_t>(count < 0 ? 0 : count));
    return names;
}

// Mesa's drivers offer monitors on some hardware; the software driver does not.
TEST_F(Vendor, WithoutMonitorsInTheDriverTheCallsAreInvalidOperations)
{
    glBeginPerfMonitorQRN(1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    GLuint monitor = 42;
    glGenPerfMonitorsQRN(1, &monitor);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION));
    EXPECT_EQ(monitor, 42u);
}

TEST_F(Vendor, ABufferThatIsNotMappedHasNoPointer)
{
    void *pointer = &pointer;
    glBindBuffer(GL_ARRAY_BUFFER, 3);
    glBufferData(GL_ARRAY_BUFFER, 16, nullptr, GL_STATIC_DRAW);
    glGetBufferPointervZEK(GL_ARRAY_BUFFER, &pointer);
    EXPECT_EQ(pointer, nullptr);
    // OpenGL ES 2.0 alone has no mapped buffers.
    EXPECT_EQ(glGetError(), static_cast<GLenum>(overEs2() ? GL_INVALID_OPERATION : GL_NO_ERROR));

    pointer = &pointer;
    glGetBufferPointervZEK(GL_ELEMENT_ARRAY_BUFFER, &pointer);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION)) << "no buffer is bound there";
}

TEST_F(Vendor, FixedPointQueriesReachTheBackend)
{
    GLfixed values[4] = {};
    glClearColor(0.25f, 0.5f, 1.0f, 0.0f);
    glGetFixedv(GL_COLOR_CLEAR_VALUE, values);
    EXPECT_EQ(std::vector<GLfixed>(values, values + 4), (std::vector<GLfixed>{16384, 32768, 65536, 0}));
}

// What overrides a parameter is the device's own; the library is silent without it.
TEST_F(Vendor, OverridesOfTextureParametersDoNothing)
{
    GLint filter = 0;
    glBindTexture(GL_TEXTURE_2D, 1);
    glTexObjectStateOverrideiQRN(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &filter);
    EXPECT_EQ(filter, GL_NEAREST_MIPMAP_LINEAR);
}

TEST_F(Vendor, TexturesAndBuffersAreListedFromTheirFirstBindToTheirDeletion)
{
    GLuint texture = 0, buffers[2] = {};
    glGenTextures(1, &texture);
    EXPECT_EQ(listed(glGetTexturesQRN), Names{}) << "a name alone is no object";
    glBindTexture(GL_TEXTURE_2D, texture);
    EXPECT_EQ(listed(glGetTexturesQRN), Names{texture});
    glBindTexture(GL_TEXTURE_2D, 500); // a name of the application's own choice
    EXPECT_EQ(listed(glGetTexturesQRN), (Names{texture, 500}));

    glGenBuffers(2, buffers);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
    EXPECT_EQ(listed(glGetBuffersQRN), (Names{buffers[0], buffers[1]}));
    glDeleteBuffers(1, &buffers[0]);
    EXPECT_EQ(listed(glGetBuffersQRN), Names{buffers[1]});

    glDeleteTextures(1, &texture);
    EXPECT_EQ(listed(glGetTexturesQRN), Names{500});
}

TEST_F(Vendor, TargetsOfDrawingAreListed)
{
    EXPECT_EQ(listed(glGetFramebuffersQRN), Names{});
    EXPECT_EQ(listed(glGetRenderbuffersQRN), Names{});
    GLuint framebuffer = 0, renderbuffer = 0;
    glGenFramebuffersOES(1, &framebuffer);
    glGenRenderbuffersOES(1, &renderbuffer);
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, framebuffer);
    glBindRenderbufferOES(GL_RENDERBUFFER_OES, renderbuffer);
    EXPECT_EQ(listed(glGetFramebuffersQRN), Names{framebuffer});
    EXPECT_EQ(listed(glGetRenderbuffersQRN), Names{renderbuffer});
    glBindFramebufferOES(GL_FRAMEBUFFER_OES, 0);
    glDeleteFramebuffersOES(1, &framebuffer);
    glDeleteRenderbuffersOES(1, &renderbuffer);
    EXPECT_EQ(listed(glGetFramebuffersQRN), Names{});
    EXPECT_EQ(listed(glGetRenderbuffersQRN), Names{});
}

TEST_F(Vendor, ProgramsAreThoseMadeForTheStatesDrawn)
{
    EXPECT_EQ(listed(glGetProgramsQRN).size(), 0u);
    drawSquare();
    EXPECT_EQ(listed(glGetProgramsQRN).size(), 1u);
    drawSquare();
    EXPECT_EQ(listed(glGetProgramsQRN).size(), 1u);
    glEnable(GL_FOG);
    drawSquare();
    const Names programs = listed(glGetProgramsQRN);
    EXPECT_EQ(programs.size(), 2u);
    EXPECT_EQ(listed(glGetShadersQRN).size(), 4u) << "two of each program";
}

TEST_F(Vendor, AListingIsCutToItsRoomAndTellsTheWholeNumber)
{
    for (GLuint name = 1; name <= 3; ++name)
        glBindTexture(GL_TEXTURE_2D, name);
    GLuint names[3] = {77, 77, 77};
    GLint count = 0;
    glGetTexturesQRN(names, 2, &count);
    EXPECT_EQ(Names(names, names + 3), (Names{1, 2, 77}));
    EXPECT_EQ(count, 3);
    count = 0;
    glGetTexturesQRN(nullptr, 0, &count);
    EXPECT_EQ(count, 3);
    glGetTexturesQRN(names, -1, &count);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(Vendor, ContextsThatShareObjectsListTheSame)
{
    glBindTexture(GL_TEXTURE_2D, 9);
    ASSERT_TRUE(makeCurrent(create(1, context)));
    EXPECT_EQ(listed(glGetTexturesQRN), Names{9});
    ASSERT_TRUE(makeCurrent(create(1)));
    EXPECT_EQ(listed(glGetTexturesQRN), Names{});
}

} // namespace
