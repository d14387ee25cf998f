// SPDX-License-Identifier: MIT
// Configurations through the drop-in: whatever serves ES 2.0 serves ES 1.x.
#include "dropin.h"

#include <dlfcn.h>
#include <vector>

using Configs = DropInTest;

namespace {

using ChooseConfig = decltype(&eglChooseConfig);
using Criteria = std::vector<EGLint>;

std::vector<EGLConfig> choose(ChooseConfig chooseConfig, EGLDisplay display, Criteria criteria)
{
    // A display without windows has no configuration of the default surface type.
    criteria.insert(criteria.end(), {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE});
    std::vector<EGLConfig> configs(1000);
    EGLint count = 0;
    EXPECT_TRUE(chooseConfig(display, criteria.data(), configs.data(), EGLint(configs.size()), &count));
    configs.resize(size_t(count));
    return configs;
}

TEST_F(Configs, ForEs1AreTheMachinesForEs2)
{
    void *machine = dlopen(MACHINE_EGL, RTLD_NOW | RTLD_LOCAL);
    const auto machineChoose = reinterpret_cast<ChooseConfig>(dlsym(machine, "eglChooseConfig"));
    constexpr EGLint kEs1 = EGL_OPENGL_ES_BIT, kEs2 = EGL_OPENGL_ES2_BIT, kGl = EGL_OPENGL_BIT;
    const struct {
        const char *label;
        Criteria asked, machines;
    } cases[] = {
        {"ES 1.x", {EGL_RENDERABLE_TYPE, kEs1}, {EGL_RENDERABLE_TYPE, kEs2}},
        {"ES 2.0", {EGL_RENDERABLE_TYPE, kEs2}, {EGL_RENDERABLE_TYPE, kEs2}},
        {"both", {EGL_RENDERABLE_TYPE, kEs1 | kEs2}, {EGL_RENDERABLE_TYPE, kEs2}},
        {"with desktop GL", {EGL_RENDERABLE_TYPE, kEs1 | kGl}, {EGL_RENDERABLE_TYPE, kEs2 | kGl}},
        {"desktop GL", {EGL_RENDERABLE_TYPE, kGl}, {EGL_RENDERABLE_TYPE, kGl}},
        {"the default, ES 1.x", {}, {EGL_RENDERABLE_TYPE, kEs2}},
        {"anything", {EGL_RENDERABLE_TYPE, EGL_DONT_CARE}, {EGL_RENDERABLE_TYPE, EGL_DONT_CARE}},
        {"conformant", {EGL_CONFORMANT, kEs1}, {EGL_CONFORMANT, kEs2, EGL_RENDERABLE_TYPE, kEs2}},
        {"depth", {EGL_DEPTH_SIZE, 24, EGL_RENDERABLE_TYPE, kEs1}, {EGL_DEPTH_SIZE, 24, EGL_RENDERABLE_TYPE, kEs2}},
    };
    for (const auto &row : cases) {
        const auto configs = choose(egl.eglChooseConfig, display, row.asked);
        EXPECT_FALSE(configs.empty()) << row.label;
        EXPECT_EQ(configs, choose(machineChoose, display, row.machines)) << row.label;
    }
}

TEST_F(Configs, MayBeChosenWithoutCriteria)
{
    EGLint count = -1;
    EXPECT_TRUE(egl.eglChooseConfig(display, nullptr, nullptr, 0, &count));
    EXPECT_GE(count, 0);
    EXPECT_FALSE(egl.eglChooseConfig(EGL_NO_DISPLAY, nullptr, nullptr, 0, &count));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
}

TEST_F(Configs, SayEs1ExactlyWhereTheySayEs2)
{
    std::vector<EGLConfig> configs(1000);
    EGLint count = 0;
    ASSERT_TRUE(egl.eglGetConfigs(display, configs.data(), EGLint(configs.size()), &count));
    ASSERT_GT(count, 0);
    for (EGLint i = 0; i < count; i++)
        for (const EGLint attribute : {EGL_RENDERABLE_TYPE, EGL_CONFORMANT}) {
            EGLint mask = 0;
            ASSERT_TRUE(egl.eglGetConfigAttrib(display, configs[size_t(i)], attribute, &mask));
            EXPECT_EQ((mask & EGL_OPENGL_ES_BIT) != 0, (mask & EGL_OPENGL_ES2_BIT) != 0);
        }
}

TEST_F(Configs, KeepTheirOtherAttributes)
{
    EGLint red = 0;
    ASSERT_TRUE(egl.eglGetConfigAttrib(display, config, EGL_RED_SIZE, &red));
    EXPECT_EQ(red, 8);
    EXPECT_FALSE(egl.eglGetConfigAttrib(display, config, EGL_CONTEXT_CLIENT_VERSION, &red));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_ATTRIBUTE);
}

TEST_F(Configs, ClientApisNameOpenGlEs)
{
    const std::string apis = std::string(" ") + egl.eglQueryString(display, EGL_CLIENT_APIS) + " ";
    EXPECT_NE(apis.find(" OpenGL_ES "), std::string::npos) << apis;
}

} // namespace
