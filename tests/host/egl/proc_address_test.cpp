// SPDX-License-Identifier: MIT
// eglGetProcAddress: which function stands behind a name, and under which context.
#include "dropin.h"

#define GL_GLEXT_PROTOTYPES
#include <GLES/gl.h>
#include <GLES/glext.h>

#include <algorithm>
#include <dlfcn.h>
#include <fstream>
#include <set>
#include <string>
#include <thread>

using ProcAddress = DropInTest;

namespace {

std::string stringOfCurrent(GLenum name)
{
    const GLubyte *text = procAddress<decltype(&glGetString)>("glGetString")(name);
    return text ? reinterpret_cast<const char *>(text) : "";
}

void *addressOf(const char *name)
{
    return procAddress<void *>(name);
}

void *libraryAddress(const char *name)
{
    static void *library = dlopen(FAKE_ES1_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    return dlsym(library, name);
}

TEST_F(ProcAddress, OfASharedNameFollowsTheCurrentContext)
{
    const auto getString = procAddress<decltype(&glGetString)>("glGetString");
    const EGLContext es1 = createEs1(), es2 = createEs2();
    for (int round = 0; round < 2; round++) {
        ASSERT_TRUE(makeCurrent(es1));
        EXPECT_STREQ(reinterpret_cast<const char *>(getString(GL_VERSION)), "stand-in ES 1.1");
        ASSERT_TRUE(makeCurrent(es2));
        EXPECT_EQ(stringOfCurrent(GL_VERSION).rfind("OpenGL ES", 0), 0u);
    }
}

TEST_F(ProcAddress, OfASharedNameFollowsEachThreadsContext)
{
    ASSERT_TRUE(makeCurrent(createEs1()));
    std::thread([&] {
        egl.eglBindAPI(EGL_OPENGL_ES_API);
        EXPECT_TRUE(egl.eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, createEs2()));
        EXPECT_EQ(stringOfCurrent(GL_VERSION).rfind("OpenGL ES", 0), 0u);
        EXPECT_TRUE(egl.eglReleaseThread());
    }).join();
    EXPECT_EQ(stringOfCurrent(GL_VERSION), "stand-in ES 1.1");
}

TEST_F(ProcAddress, OfASharedNamePassesArguments)
{
    const int before = fakeEs1().clears;
    ASSERT_TRUE(makeCurrent(createEs1()));
    procAddress<decltype(&glClear)>("glClear")(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(fakeEs1().clears, before + 1);
}

TEST_F(ProcAddress, OfASharedNameTheLibraryLacksDoesNothing)
{
    ASSERT_EQ(libraryAddress("glMatrixMode"), nullptr);
    ASSERT_TRUE(makeCurrent(createEs1()));
    procAddress<decltype(&glMatrixMode)>("glMatrixMode")(GL_MODELVIEW);
    EXPECT_EQ(procAddress<decltype(&glIsTexture)>("glIsTexture")(1), GL_FALSE);
}

TEST_F(ProcAddress, OfASharedNameIsSafeWithoutAContext)
{
    procAddress<decltype(&glClear)>("glClear")(GL_COLOR_BUFFER_BIT);
    procAddress<decltype(&glClear)>("glClear")(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
}

TEST_F(ProcAddress, OfAnEs1NameIsTheLibrarysOwn)
{
    EXPECT_EQ(addressOf("glOrthof"), libraryAddress("glOrthof"));
    EXPECT_NE(addressOf("glOrthof"), nullptr);
}

TEST_F(ProcAddress, OfAnExtensionComesFromTheLibrarysLookup)
{
    EXPECT_EQ(libraryAddress("glDrawTexiOES"), nullptr) << "the stand-in exports none";
    void *drawTex = addressOf("glDrawTexiOES");
    Dl_info found = {};
    ASSERT_TRUE(drawTex && dladdr(drawTex, &found));
    EXPECT_STREQ(found.dli_fname, FAKE_ES1_LIBRARY);
}

TEST_F(ProcAddress, OfAnEglNameIsTheDropIns)
{
#define EGL_PASS(name, result, arguments, call, failure)                                                               \
    EXPECT_EQ(addressOf(#name), reinterpret_cast<void *>(egl.name)) << #name;
#define EGL_OWN(name) EXPECT_EQ(addressOf(#name), reinterpret_cast<void *>(egl.name)) << #name;
#include "host/egl/egl_functions.def"
}

TEST_F(ProcAddress, OfOtherNamesIsTheMachines)
{
    void *machine = dlopen(MACHINE_EGL, RTLD_NOW | RTLD_LOCAL);
    const auto machineAddress = reinterpret_cast<decltype(&eglGetProcAddress)>(dlsym(machine, "eglGetProcAddress"));
    for (const char *name : {"glCreateProgram", "glUniform4fv", "eglCreateSyncKHR", "eglQueryDevicesEXT"}) {
        EXPECT_NE(addressOf(name), nullptr) << name;
        EXPECT_EQ(addressOf(name), reinterpret_cast<void *>(machineAddress(name))) << name;
    }
    EXPECT_EQ(addressOf("eglNoSuchFunctionTRL"), nullptr);
    EXPECT_EQ(addressOf(""), nullptr);
    EXPECT_EQ(procAddress<void *>(nullptr), nullptr);
}

TEST_F(ProcAddress, OfTheContextExtensionsTakesEs1Contexts)
{
    const EGLContext context = createEs1();
    const auto label = procAddress<PFNEGLLABELOBJECTKHRPROC>("eglLabelObjectKHR");
    ASSERT_TRUE(label);
    EXPECT_EQ(label(display, EGL_OBJECT_CONTEXT_KHR, context, nullptr), EGL_SUCCESS);
    EXPECT_EQ(label(display, EGL_OBJECT_SURFACE_KHR, surface, nullptr), EGL_SUCCESS);
    EXPECT_EQ(label(display, EGL_OBJECT_CONTEXT_KHR, &config, nullptr), EGL_BAD_PARAMETER);
}

// The function names a Khronos header declares.
std::set<std::string> declaredIn(std::initializer_list<const char *> headers)
{
    std::set<std::string> names;
    for (const char *header : headers) {
        std::ifstream file(std::string("/usr/include/") + header);
        EXPECT_TRUE(file) << header;
        // A prototype is "... APIENTRY glName (...": the word after the macro, pointer types apart.
        for (std::string word, previous; file >> word; previous = word) {
            if (!previous.ends_with("APIENTRY") || !word.starts_with("gl")) continue;
            names.insert(word.substr(0, word.find('(')));
        }
    }
    return names;
}

const struct {
    std::string name, scope, place;
} kRows[] = {
#define GL_FUNCTION(name, scope, place) {#name, #scope, #place},
#include "host/egl/gl_functions.def"
};

TEST(ProcAddressTable, HoldsEveryCoreNameAndKnowsWhichOthersShareIt)
{
    const auto others =
        declaredIn({"GLES2/gl2.h", "GLES2/gl2ext.h", "GLES3/gl32.h", "GL/gl.h", "GL/glext.h", "GL/glcorearb.h"});
    ASSERT_GT(others.size(), 2000u);
    std::set<std::string> names;
    for (const auto &row : kRows) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name << " twice";
        EXPECT_EQ(row.scope, others.count(row.name) ? "SHARED" : "ES1") << row.name;
    }
    const auto core = declaredIn({"GLES/gl.h"});
    ASSERT_EQ(core.size(), 145u);
    for (const std::string &name : core)
        EXPECT_EQ(names.count(name), 1u) << name;
}

TEST(ProcAddressTable, MarksExactlyTheLibrarysProceduresAsExtensions)
{
    const std::set<std::string> procedures = {
#define PROC(name) #name,
#include "src/frontend/procs.def"
    };
    std::set<std::string> extensions;
    for (const auto &row : kRows)
        if (row.place == "EXTENSION") extensions.insert(row.name);
    EXPECT_EQ(extensions, procedures);
}

} // namespace
