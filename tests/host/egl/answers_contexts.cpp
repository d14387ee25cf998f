// SPDX-License-Identifier: MIT
// Questions about displays, configurations and contexts.
#include "answers.h"

#include <cstdio>
#include <thread>

void askDisplays(const Stage &stage)
{
    ASK(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS));
    ASK(eglQueryString(EGL_NO_DISPLAY, EGL_VERSION));
    ASK(eglQueryString(EGL_NO_DISPLAY, EGL_VENDOR));
    ASK(eglQueryString(stage.display, EGL_EXTENSIONS));
    ASK(eglQueryString(stage.display, EGL_VERSION));
    ASK(eglQueryString(stage.display, EGL_VENDOR));
    ASK(eglQueryString(stage.display, EGL_CLIENT_APIS));
    ASK(eglQueryString(stage.display, EGL_WIDTH));
    ASK(eglQueryString(strangeHandle(), EGL_VERSION));
    ASK(eglInitialize(EGL_NO_DISPLAY, nullptr, nullptr));
    ASK(eglInitialize(strangeHandle(), nullptr, nullptr));
    EGLint major = 0, minor = 0;
    ASK(eglInitialize(stage.display, &major, &minor));
    ASK(major * 10 + minor);
    ASK(eglGetPlatformDisplay(EGL_NONE, nullptr, nullptr));
    ASK(eglTerminate(EGL_NO_DISPLAY));
    ASK(eglTerminate(strangeHandle()));
    ASK(eglGetCurrentDisplay());
    ASK(eglGetCurrentContext());
    ASK(eglGetCurrentSurface(EGL_DRAW));
    ASK(eglGetCurrentSurface(EGL_WIDTH));
}

void askConfigs(const Stage &stage)
{
    EGLint count = -1;
    ASK(eglGetConfigs(stage.display, nullptr, 0, &count));
    ASK(count);
    ASK(eglGetConfigs(stage.display, nullptr, 0, nullptr));
    std::vector<EGLConfig> configs(size_t(count) + 1);
    ASK(eglGetConfigs(stage.display, configs.data(), 2, &count));
    ASK(count);
    ASK(eglGetConfigs(stage.display, configs.data(), EGLint(configs.size()), &count));
    ASK(count);
    for (EGLint i = 0; i < count; i++) {
        std::string line = "configuration";
        for (EGLint attribute = EGL_BUFFER_SIZE; attribute <= EGL_CONFORMANT; attribute++) {
            EGLint value = -1;
            if (eglGetConfigAttrib(stage.display, configs[size_t(i)], attribute, &value))
                append(line, value);
            else
                line += " -";
        }
        say(line, 0);
    }
    ASK(eglGetConfigAttrib(stage.display, nullptr, EGL_RED_SIZE, &count));
    ASK(eglGetConfigAttrib(stage.display, strangeHandle(), EGL_RENDERABLE_TYPE, &count));
    ASK(eglGetConfigAttrib(stage.display, stage.config, EGL_RENDERABLE_TYPE, nullptr));
    ASK(eglGetConfigAttrib(stage.display, stage.config, EGL_NONE, &count));

    EGLint id = 0;
    eglGetConfigAttrib(stage.display, stage.config, EGL_CONFIG_ID, &id);
    const std::vector<EGLint> lists[] = {
        {},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT | EGL_OPENGL_ES2_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT | EGL_OPENGL_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENVG_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_ES_BIT | EGL_OPENVG_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, EGL_DONT_CARE},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RENDERABLE_TYPE, 0},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_CONFORMANT, EGL_OPENGL_ES_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_CONFORMANT, EGL_OPENVG_BIT},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_DEPTH_SIZE, 24, EGL_STENCIL_SIZE, 8},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_SAMPLES, 4, EGL_SAMPLE_BUFFERS, 1},
        {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_RED_SIZE, 64},
        {EGL_CONFIG_ID, id},
        {EGL_CONFIG_ID, 9999},
        {EGL_CONFIG_ID, id, EGL_RENDERABLE_TYPE, EGL_OPENVG_BIT},
        {EGL_RED_SIZE, -2},
        {EGL_NONE - 1, 1},
        {EGL_SURFACE_TYPE, EGL_PIXMAP_BIT},
        {EGL_MATCH_NATIVE_PIXMAP, 7},
    };
    for (std::vector<EGLint> list : lists) {
        std::string label = "choose";
        for (const EGLint entry : list)
            append(label, entry);
        list.push_back(EGL_NONE);
        count = -1;
        say(label, eglChooseConfig(stage.display, list.data(), configs.data(), EGLint(configs.size()), &count));
        std::string ids = "chosen";
        for (EGLint i = 0; i < count; i++)
            if (eglGetConfigAttrib(stage.display, configs[size_t(i)], EGL_CONFIG_ID, &id)) append(ids, id);
        say(ids, count);
    }
    ASK(eglChooseConfig(stage.display, nullptr, nullptr, 0, nullptr));
    ASK(eglChooseConfig(stage.display, nullptr, nullptr, 5, &count));
    ASK(eglChooseConfig(EGL_NO_DISPLAY, nullptr, nullptr, 0, &count));
    ASK(eglChooseConfig(EGL_NO_DISPLAY, nullptr, nullptr, 0, nullptr));
}

void askCreation(const Stage &stage)
{
    const std::vector<EGLint> lists[] = {
        {},
        {EGL_CONTEXT_CLIENT_VERSION, 0},
        {EGL_CONTEXT_CLIENT_VERSION, 1},
        {EGL_CONTEXT_CLIENT_VERSION, -1},
        {EGL_CONTEXT_CLIENT_VERSION, 4},
        {EGL_CONTEXT_CLIENT_VERSION, 2, EGL_CONTEXT_CLIENT_VERSION, 1},
        {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 0},
        {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 1},
        {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 2},
        {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, -1},
        {EGL_CONTEXT_MINOR_VERSION, 1},
        {EGL_CONTEXT_OPENGL_DEBUG, EGL_TRUE},
        {EGL_CONTEXT_OPENGL_DEBUG, 7},
        {EGL_CONTEXT_OPENGL_ROBUST_ACCESS, EGL_TRUE},
        {EGL_CONTEXT_OPENGL_ROBUST_ACCESS, EGL_FALSE},
        {EGL_CONTEXT_OPENGL_FORWARD_COMPATIBLE, EGL_TRUE},
        {EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT},
        {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY, EGL_NO_RESET_NOTIFICATION},
        {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY, EGL_LOSE_CONTEXT_ON_RESET},
        {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT, EGL_NO_RESET_NOTIFICATION_EXT},
        {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT, EGL_LOSE_CONTEXT_ON_RESET_EXT},
        {EGL_CONTEXT_OPENGL_ROBUST_ACCESS_EXT, EGL_TRUE},
        {EGL_CONTEXT_FLAGS_KHR, 0},
        {EGL_CONTEXT_FLAGS_KHR, EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR},
        {EGL_CONTEXT_FLAGS_KHR, EGL_CONTEXT_OPENGL_FORWARD_COMPATIBLE_BIT_KHR},
        {EGL_CONTEXT_FLAGS_KHR, EGL_CONTEXT_OPENGL_ROBUST_ACCESS_BIT_KHR},
        {EGL_CONTEXT_FLAGS_KHR, 0x100},
        {EGL_CONTEXT_OPENGL_NO_ERROR_KHR, EGL_TRUE},
        {EGL_CONTEXT_OPENGL_NO_ERROR_KHR, EGL_FALSE},
        {EGL_CONTEXT_RELEASE_BEHAVIOR_KHR, EGL_CONTEXT_RELEASE_BEHAVIOR_NONE_KHR},
        {EGL_CONTEXT_RELEASE_BEHAVIOR_KHR, EGL_CONTEXT_RELEASE_BEHAVIOR_FLUSH_KHR},
        {EGL_CONTEXT_PRIORITY_LEVEL_IMG, EGL_CONTEXT_PRIORITY_HIGH_IMG},
        {EGL_WIDTH, 1},
    };
    for (const std::vector<EGLint> &list : lists) {
        std::string label = "create";
        char entryText[16];
        for (const EGLint entry : list) {
            snprintf(entryText, sizeof(entryText), " %#x", unsigned(entry));
            label += entryText;
        }
        const EGLContext context = createContext(stage, list);
        say(label, context);
        if (context) {
            say(" made current", useContext(stage, context));
            EGLint version = 0;
            say(" queried", eglQueryContext(stage.display, context, EGL_CONTEXT_CLIENT_VERSION, &version));
            say(" version", version);
            useContext(stage, EGL_NO_CONTEXT);
            say(" destroyed", eglDestroyContext(stage.display, context));
        }
    }
    const EGLint version1[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    ASK(eglCreateContext(EGL_NO_DISPLAY, stage.config, EGL_NO_CONTEXT, version1));
    ASK(eglCreateContext(strangeHandle(), stage.config, EGL_NO_CONTEXT, version1));
    ASK(eglCreateContext(stage.display, strangeHandle(), EGL_NO_CONTEXT, version1));
    ASK(eglCreateContext(stage.display, stage.config, strangeHandle(), version1));
    ASK(eglCreateContext(stage.other, stage.config, EGL_NO_CONTEXT, version1));
    ASK(eglCreateContext(stage.other, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, version1));
    const EGLContext withoutConfig = eglCreateContext(stage.display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, version1);
    ASK(withoutConfig);
    EGLint id = -1;
    ASK(eglQueryContext(stage.display, withoutConfig, EGL_CONFIG_ID, &id));
    ASK(id);
    ASK(useContext(stage, withoutConfig));
    ASK(eglDestroyContext(stage.display, withoutConfig));
    ASK(eglDestroyContext(stage.display, withoutConfig));
    ASK(useContext(stage, EGL_NO_CONTEXT));
    ASK(eglDestroyContext(stage.display, withoutConfig));
    ASK(eglDestroyContext(stage.display, EGL_NO_CONTEXT));
    ASK(eglDestroyContext(EGL_NO_DISPLAY, withoutConfig));
    ASK(eglDestroyContext(EGL_NO_DISPLAY, EGL_NO_CONTEXT));
}

void askSharing(const Stage &stage)
{
    const EGLContext first = createEs1(stage);
    const EGLContext second = createEs1(stage, first);
    ASK(second);
    ASK(eglDestroyContext(stage.display, first));
    ASK(createEs1(stage, first));
    ASK(createEs1(stage, second));
    ASK(createEs2(stage, second));
    ASK(createContext(stage, {EGL_CONTEXT_CLIENT_VERSION, 3}, second));
    ASK(useContext(stage, second));
    ASK(createEs1(stage, second));
    ASK(eglGetCurrentContext() == second);
}

void askQueries(const Stage &stage)
{
    const EGLContext context = createEs1(stage);
    for (int round = 0; round < 3; round++) {
        for (const EGLint attribute :
             {EGL_CONTEXT_CLIENT_TYPE, EGL_CONTEXT_CLIENT_VERSION, EGL_RENDER_BUFFER, EGL_WIDTH, EGL_NONE,
              EGL_CONTEXT_MINOR_VERSION, EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_PRIORITY_LEVEL_IMG}) {
            EGLint value = -7;
            say("query " + std::to_string(attribute), eglQueryContext(stage.display, context, attribute, &value));
            say(" is", value);
        }
        if (round == 0) ASK(useContext(stage, context));
        if (round == 1) ASK(useContext(stage, EGL_NO_CONTEXT));
    }
    EGLint value = -7;
    ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
    ASK(eglQueryContext(stage.display, context, EGL_RENDER_BUFFER, &value));
    ASK(value);
    if (stage.windowSurface) {
        ASK(eglMakeCurrent(stage.display, stage.windowSurface, stage.windowSurface, context));
        ASK(eglQueryContext(stage.display, context, EGL_RENDER_BUFFER, &value));
        ASK(value);
    }
    ASK(eglQueryContext(stage.display, context, EGL_CONTEXT_CLIENT_VERSION, nullptr));
    ASK(eglQueryContext(stage.display, EGL_NO_CONTEXT, EGL_CONTEXT_CLIENT_VERSION, &value));
    ASK(eglQueryContext(stage.display, strangeHandle(), EGL_CONTEXT_CLIENT_VERSION, &value));
    ASK(eglQueryContext(stage.other, context, EGL_CONTEXT_CLIENT_VERSION, &value));
    ASK(eglQueryContext(EGL_NO_DISPLAY, context, EGL_CONTEXT_CLIENT_VERSION, &value));
}

void askMakeCurrent(const Stage &stage)
{
    const EGLint size[] = {EGL_WIDTH, 8, EGL_HEIGHT, 8, EGL_NONE};
    const EGLSurface second = eglCreatePbufferSurface(stage.display, stage.config, size);
    const EGLContext es1 = createEs1(stage), es2 = createEs2(stage);
    ASK(eglMakeCurrent(stage.display, stage.pbuffer, second, es1));
    ASK(eglGetCurrentSurface(EGL_DRAW) == stage.pbuffer);
    ASK(eglGetCurrentSurface(EGL_READ) == second);
    ASK(eglGetCurrentDisplay() == stage.display);
    ASK(eglGetCurrentContext() == es1);
    ASK(eglMakeCurrent(stage.display, stage.pbuffer, EGL_NO_SURFACE, es1));
    ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, stage.pbuffer, es1));
    ASK(eglMakeCurrent(stage.display, stage.pbuffer, stage.pbuffer, EGL_NO_CONTEXT));
    ASK(eglMakeCurrent(stage.display, stage.pbuffer, stage.pbuffer, strangeHandle()));
    ASK(eglMakeCurrent(stage.display, strangeHandle(), stage.pbuffer, es1));
    ASK(eglMakeCurrent(stage.display, strangeHandle(), strangeHandle(), es1));
    ASK(eglMakeCurrent(EGL_NO_DISPLAY, stage.pbuffer, stage.pbuffer, es1));
    ASK(eglMakeCurrent(stage.other, stage.pbuffer, stage.pbuffer, es1));
    ASK(eglMakeCurrent(strangeHandle(), stage.pbuffer, stage.pbuffer, es1));
    ASK(eglGetCurrentContext() == es1);
    ASK(eglMakeCurrent(EGL_NO_DISPLAY, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
    ASK(eglGetCurrentContext() == es1);
    ASK(eglMakeCurrent(stage.other, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
    ASK(eglGetCurrentContext());

    // A surface of a configuration without depth or with another one: which of them go together is the machine's.
    EGLint count = 0;
    std::vector<EGLConfig> configs(500);
    const EGLint criteria[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT, EGL_NONE};
    eglChooseConfig(stage.display, criteria, configs.data(), EGLint(configs.size()), &count);
    for (EGLint i = 0; i < count; i++) {
        EGLint id = 0;
        eglGetConfigAttrib(stage.display, configs[size_t(i)], EGL_CONFIG_ID, &id);
        const EGLSurface surface = eglCreatePbufferSurface(stage.display, configs[size_t(i)], size);
        say("current with a surface of configuration " + std::to_string(id),
            eglMakeCurrent(stage.display, surface, surface, es1));
        eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroySurface(stage.display, surface);
    }

    ASK(useContext(stage, es2));
    ASK(eglGetCurrentContext() == es2);
    ASK(useContext(stage, es1));
    ASK(eglDestroySurface(stage.display, second));
    ASK(eglMakeCurrent(stage.display, second, second, es1));
    ASK(eglDestroyContext(stage.display, es1));
    ASK(eglGetCurrentContext() == es1);
    ASK(eglDestroyContext(stage.display, es1));
    ASK(useContext(stage, es2));
    ASK(eglGetCurrentContext() == es2);
    ASK(useContext(stage, es1));
}

void askThreads(const Stage &stage)
{
    const EGLContext context = createEs1(stage);
    ASK(useContext(stage, context));
    std::thread([&] {
        ASK(eglGetCurrentContext());
        ASK(eglQueryAPI());
        ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
        ASK(eglGetCurrentContext());
        const EGLContext own = createEs1(stage, context);
        ASK(own);
        ASK(eglMakeCurrent(stage.display, stage.pbuffer, stage.pbuffer, own));
        ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, own));
        ASK(eglBindAPI(EGL_OPENGL_API));
        ASK(eglDestroyContext(EGL_NO_DISPLAY, own));
    }).join();
    ASK(useContext(stage, EGL_NO_CONTEXT));
    std::thread([&] {
        ASK(useContext(stage, context));
        ASK(eglDestroyContext(EGL_NO_DISPLAY, context) + eglReleaseThread());
        ASK(eglGetCurrentContext());
        ASK(eglReleaseThread());
    }).join();
    ASK(useContext(stage, context));
    ASK(eglBindAPI(EGL_OPENGL_API));
    ASK(eglReleaseThread());
    ASK(eglQueryAPI());
    ASK(eglGetCurrentContext());
    ASK(eglGetCurrentDisplay());
    ASK(useContext(stage, context));
    ASK(eglGetCurrentContext() == context);
}

void askApis(const Stage &stage)
{
    ASK(eglQueryAPI());
    ASK(eglBindAPI(EGL_OPENVG_API));
    ASK(eglBindAPI(EGL_NONE));
    ASK(eglQueryAPI());
    const EGLContext es1 = createEs1(stage);
    ASK(useContext(stage, es1));
    ASK(eglBindAPI(EGL_OPENGL_API));
    ASK(eglGetCurrentContext() == es1);
    ASK(eglGetCurrentDisplay() == stage.display);
    ASK(eglGetCurrentSurface(EGL_DRAW) == stage.pbuffer);
    ASK(eglWaitClient());
    const EGLContext gl = createContext(stage, {});
    ASK(gl);
    ASK(createContext(stage, {}, es1));
    ASK(createContext(stage, {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 1}));
    ASK(createContext(stage, {EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 6}));
    ASK(useContext(stage, gl));
    ASK(eglGetCurrentContext() == gl);
    ASK(eglBindAPI(EGL_OPENGL_ES_API));
    ASK(eglGetCurrentContext() == gl);
    ASK(createEs1(stage, gl));
    ASK(useContext(stage, es1));
    ASK(eglGetCurrentContext() == es1);
    ASK(eglBindAPI(EGL_OPENGL_API));
    ASK(useContext(stage, EGL_NO_CONTEXT));
    ASK(eglGetCurrentContext());
}

void askTermination(const Stage &stage)
{
    const EGLContext kept = createEs1(stage), other = createEs1(stage);
    EGLint value = 0;
    ASK(useContext(stage, kept));
    ASK(eglTerminate(stage.display));
    ASK(eglTerminate(stage.display));
    ASK(eglGetCurrentContext() == kept);
    ASK(eglQueryContext(stage.display, kept, EGL_CONTEXT_CLIENT_VERSION, &value));
    ASK(eglDestroyContext(stage.display, kept));
    ASK(createEs1(stage));
    ASK(useContext(stage, other));
    ASK(eglSwapBuffers(stage.display, stage.pbuffer));
    ASK(eglInitialize(stage.display, nullptr, nullptr));
    ASK(eglQueryContext(stage.display, kept, EGL_CONTEXT_CLIENT_VERSION, &value));
    ASK(eglDestroyContext(stage.display, kept));
    ASK(eglDestroyContext(stage.display, other));
    ASK(useContext(stage, EGL_NO_CONTEXT));
    ASK(eglGetCurrentContext());

    // Configurations have gone with the display.
    const EGLint version1[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    const EGLContext fresh = eglCreateContext(stage.display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, version1);
    ASK(fresh);
    ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, fresh));
    ASK(eglTerminate(stage.display));
    ASK(eglMakeCurrent(stage.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT));
    ASK(eglGetCurrentContext());
    ASK(eglReleaseThread());
    ASK(eglGetCurrentContext());
    ASK(eglInitialize(stage.display, nullptr, nullptr));
    ASK(eglCreateContext(stage.display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, version1));
    ASK(eglTerminate(stage.display));
}
