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
#include <vector>

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
    for (const char *name : {"glCreateProgram", "glUniform4fv", "glDispatchCompute"}) {
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

struct Message {
    EGLenum error;
    std::string command;
    EGLint type;
    EGLLabelKHR label;
};
std::vector<Message> messages;

void EGLAPIENTRY keepMessage(EGLenum error, const char *command, EGLint type, EGLLabelKHR label, EGLLabelKHR,
                             const char *)
{
    messages.push_back({error, command, type, label});
}

TEST_F(ProcAddress, OfTheDebugExtensionHearsOfOurErrorsOnce)
{
    const auto control = procAddress<PFNEGLDEBUGMESSAGECONTROLKHRPROC>("eglDebugMessageControlKHR");
    const auto label = procAddress<PFNEGLLABELOBJECTKHRPROC>("eglLabelObjectKHR");
    const auto createWithMinorVersion9 = [this] {
        messages.clear();
        EXPECT_EQ(createContext({EGL_CONTEXT_MINOR_VERSION, 9}), EGL_NO_CONTEXT);
        EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
        return messages.size();
    };
    char name;
    ASSERT_EQ(label(display, EGL_OBJECT_THREAD_KHR, nullptr, &name), EGL_SUCCESS);
    EXPECT_EQ(createWithMinorVersion9(), 0u) << "no callback";
    ASSERT_EQ(control(keepMessage, nullptr), EGL_SUCCESS);
    ASSERT_EQ(createWithMinorVersion9(), 1u);
    EXPECT_EQ(messages[0].error, EGLenum(EGL_BAD_MATCH));
    EXPECT_EQ(messages[0].command, "eglCreateContext");
    EXPECT_EQ(messages[0].type, EGL_DEBUG_MSG_ERROR_KHR);
    EXPECT_EQ(messages[0].label, &name);

    // An error of the machine's is its own to tell.
    messages.clear();
    fakeEs1().failCreation = 0;
    EXPECT_EQ(createContext({EGL_CONTEXT_OPENGL_PROFILE_MASK, 0x7777}), EGL_NO_CONTEXT);
    EXPECT_EQ(messages.size(), 1u);

    const EGLAttrib noErrors[] = {EGL_DEBUG_MSG_ERROR_KHR, EGL_FALSE, EGL_NONE};
    ASSERT_EQ(control(keepMessage, noErrors), EGL_SUCCESS);
    EXPECT_EQ(createWithMinorVersion9(), 0u);
    const EGLAttrib errors[] = {EGL_DEBUG_MSG_ERROR_KHR, EGL_TRUE, EGL_NONE};
    ASSERT_EQ(control(keepMessage, errors), EGL_SUCCESS);
    EXPECT_EQ(createWithMinorVersion9(), 1u);
    ASSERT_EQ(control(nullptr, nullptr), EGL_SUCCESS);
    EXPECT_EQ(createWithMinorVersion9(), 0u);
    EXPECT_EQ(label(display, EGL_OBJECT_THREAD_KHR, nullptr, nullptr), EGL_SUCCESS);
}

// The function names that Khronos headers declare, which begin with a prefix.
std::set<std::string> declaredIn(std::initializer_list<const char *> headers, const std::string &prefix = "gl")
{
    std::set<std::string> names;
    for (const char *header : headers) {
        std::ifstream file(std::string("/usr/include/") + header);
        EXPECT_TRUE(file) << header;
        // A prototype is "... APIENTRY glName (...": the word after the macro, pointer types apart.
        for (std::string word, previous; file >> word; previous = word) {
            if (!previous.ends_with("APIENTRY") || !word.starts_with(prefix)) continue;
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

TEST(ProcAddressTable, HoldsEveryExtensionsFunctionOfEgl)
{
    const std::set<std::string> rows = {
#define EGL_EXTENSION(name) #name,
#define EGL_EXTENSION_SWAP(name) #name,
#define EGL_EXTENSION_OWN(name, function) #name,
#include "host/egl/egl_extensions.def"
    };
    const auto declared = declaredIn({"EGL/eglext.h"}, "egl");
    ASSERT_GT(declared.size(), 100u);
    EXPECT_EQ(rows, declared);
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
