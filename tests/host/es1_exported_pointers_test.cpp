// SPDX-License-Identifier: MIT
// The backend's pointers as other modules see them: data symbols of the library, which its own calls go through too.
#include "es1_fixture.h"

#include <dlfcn.h>

namespace {

struct ExportedPointer {
    const char *symbol;
    const char *function;
    bool core;
};

constexpr bool CORE = true;
constexpr bool OPTIONAL = false;
constexpr ExportedPointer kPointers[] = {
#define BACKEND_INTERNAL(name, need)
#define BACKEND_EXPORTED(name, need) {#name "_2_0", #name, need},
#define BACKEND(name, result, arguments, visibility, group, need) BACKEND_##visibility(name, need)
#include "src/frontend/backend.def"
};

using ExportedPointers = Es1Test;

GLuint boundByCompanion;

void GL_APIENTRY bindByCompanion(GLenum, GLuint texture)
{
    boundByCompanion = texture;
}

TEST_F(ExportedPointers, AreTheBackendsFunctions)
{
    void *library = dlopen("libGLESv1_CM_trl20.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    void *const *backend = static_cast<void *const *>(dlsym(library, "hGllModule"));
    ASSERT_TRUE(backend && *backend);
    for (const ExportedPointer &row : kPointers) {
        void *const *pointer = static_cast<void *const *>(dlsym(library, row.symbol));
        ASSERT_NE(pointer, nullptr) << row.symbol;
        EXPECT_EQ(*pointer, dlsym(*backend, row.function)) << row.symbol;
        EXPECT_TRUE(*pointer || !row.core) << row.symbol;
    }
    dlclose(library);
}

TEST_F(ExportedPointers, AreWhatTheLibraryItselfCalls)
{
    void *library = dlopen("libGLESv1_CM_trl20.so", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    auto *pointer = static_cast<void(GL_APIENTRY **)(GLenum, GLuint)>(dlsym(library, "glBindTexture_2_0"));
    ASSERT_NE(pointer, nullptr);
    const auto before = *pointer;
    *pointer = bindByCompanion;
    glBindTexture(GL_TEXTURE_2D, 7);
    *pointer = before;
    EXPECT_EQ(boundByCompanion, 7u);
    dlclose(library);
}

} // namespace
