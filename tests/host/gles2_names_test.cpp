// SPDX-License-Identifier: MIT
// The names that listings go by: they come with the first bind and go with the deletion, in every context that shares
// them, so that a program may make and delete objects for ever.
#include "backend_fixture.h"

#include <algorithm>
#include <iterator>

namespace {

using Listing = void(GL_APIENTRY *)(GLuint *names, GLint room, GLint *count);

bool lists(Listing listing, GLuint name)
{
    GLuint names[64] = {};
    GLint count = 0;
    listing(names, 64, &count);
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

struct ObjectNames : BackendTest {
    // How many names a listing asks the driver for.
    static int asked(Listing listing, const char *question)
    {
        const int before = countedCalls(question);
        listing(nullptr, 0, nullptr);
        return countedCalls(question) - before;
    }
    // Makes objects of all kinds under one name each, and deletes them.
    void makeAndDelete(GLuint name)
    {
        gl.glBindTexture(GL_TEXTURE_2D, name);
        gl.glBindBuffer(GL_ARRAY_BUFFER, name);
        gl.glBindRenderbuffer(GL_RENDERBUFFER, name);
        gl.glBindFramebuffer(GL_FRAMEBUFFER, name);
        gl.glDeleteTextures(1, &name);
        gl.glDeleteBuffers(1, &name);
        gl.glDeleteRenderbuffers(1, &name);
        gl.glDeleteFramebuffers(1, &name);
    }
};

TEST_F(ObjectNames, NothingIsKeptOfDeletedObjects)
{
    // The fixture has objects of its own.
    const int textures = asked(gl.glGetTexturesQRN, "glIsTexture");
    const int buffers = asked(gl.glGetBuffersQRN, "glIsBuffer");
    const int renderbuffers = asked(gl.glGetRenderbuffersQRN, "glIsRenderbuffer");
    const int framebuffers = asked(gl.glGetFramebuffersQRN, "glIsFramebuffer");
    for (GLuint name = 1000; name < 1200; ++name)
        makeAndDelete(name);
    EXPECT_EQ(asked(gl.glGetTexturesQRN, "glIsTexture"), textures);
    EXPECT_EQ(asked(gl.glGetBuffersQRN, "glIsBuffer"), buffers);
    EXPECT_EQ(asked(gl.glGetRenderbuffersQRN, "glIsRenderbuffer"), renderbuffers);
    EXPECT_EQ(asked(gl.glGetFramebuffersQRN, "glIsFramebuffer"), framebuffers);
}

TEST_F(ObjectNames, ANameThatIsGivenAgainIsListedAgain)
{
    makeAndDelete(1000);
    gl.glBindTexture(GL_TEXTURE_2D, 1000);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 1000);
    gl.glBindRenderbuffer(GL_RENDERBUFFER, 1000);
    EXPECT_TRUE(lists(gl.glGetTexturesQRN, 1000));
    EXPECT_TRUE(lists(gl.glGetBuffersQRN, 1000));
    EXPECT_TRUE(lists(gl.glGetRenderbuffersQRN, 1000));
}

// The second context has seen the name, and has to take it for a new one all the same.
TEST_F(ObjectNames, ANameThatAnotherContextDeletedIsListedAgain)
{
    void *first = context;
    gl.glBindTexture(GL_TEXTURE_2D, 1000);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 1000);
    void *second = makeContext(first);
    gl.glBindTexture(GL_TEXTURE_2D, 1000);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 1000);
    gl.glBindTexture(GL_TEXTURE_2D, 0);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);

    makeCurrent(first);
    const GLuint name = 1000;
    gl.glDeleteTextures(1, &name);
    gl.glDeleteBuffers(1, &name);
    EXPECT_FALSE(lists(gl.glGetTexturesQRN, 1000));
    EXPECT_FALSE(lists(gl.glGetBuffersQRN, 1000));

    makeCurrent(second);
    gl.glBindTexture(GL_TEXTURE_2D, 1000);
    gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 1000);
    EXPECT_TRUE(lists(gl.glGetTexturesQRN, 1000));
    EXPECT_TRUE(lists(gl.glGetBuffersQRN, 1000));

    makeCurrent(first);
    EXPECT_EQ(backend().table.destroyContext(second), 1);
    gl.glDeleteTextures(1, &name); // looks at the contexts that are left
    EXPECT_FALSE(lists(gl.glGetTexturesQRN, 1000));
}

} // namespace
