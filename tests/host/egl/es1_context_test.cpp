// SPDX-License-Identifier: MIT
// ES 1.x contexts through the drop-in: made, shared, current, destroyed, and the errors in between.
#include "dropin.h"

#include <vsp.h>

#include <future>
#include <thread>

using Es1Context = DropInTest;

namespace {

TEST_F(Es1Context, VersionOneIsTheLibrarysOverAnEs2Context)
{
    const EGLContext context = createEs1();
    ASSERT_NE(context, EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_EQ(live(), 1);
    EXPECT_EQ(fakeEs1().display, display);
    EXPECT_EQ(fakeEs1().attributes, (std::vector<EGLint>{EGL_CONTEXT_CLIENT_VERSION, 2}));
    EXPECT_NE(fakeEs1().slot, 0u);
}

TEST_F(Es1Context, NoVersionMeansVersionOne)
{
    EXPECT_NE(createContext({}), EGL_NO_CONTEXT);
    EXPECT_EQ(live(), 1);
    EXPECT_NE(egl.eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr), EGL_NO_CONTEXT);
    EXPECT_EQ(live(), 2);
}

TEST_F(Es1Context, MinorVersionsZeroAndOneExistAndTwoDoesNot)
{
    EXPECT_NE(createContext({EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 0}), EGL_NO_CONTEXT);
    EXPECT_NE(createContext({EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 1}), EGL_NO_CONTEXT);
    EXPECT_EQ(createContext({EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, 2}), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
    EXPECT_EQ(createContext({EGL_CONTEXT_MAJOR_VERSION, 1, EGL_CONTEXT_MINOR_VERSION, -1}), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
}

TEST_F(Es1Context, OtherAttributesReachTheMachine)
{
    ASSERT_NE(createContext({EGL_CONTEXT_OPENGL_DEBUG, EGL_TRUE, EGL_CONTEXT_CLIENT_VERSION, 1}), EGL_NO_CONTEXT);
    EXPECT_EQ(fakeEs1().attributes,
              (std::vector<EGLint>{EGL_CONTEXT_OPENGL_DEBUG, EGL_TRUE, EGL_CONTEXT_CLIENT_VERSION, 2}));
    EXPECT_EQ(createContext({EGL_CONTEXT_OPENGL_PROFILE_MASK, 0x7777}), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_ATTRIBUTE);
}

TEST_F(Es1Context, CreationFailsWithTheBackendsError)
{
    fakeEs1().failCreation = EGL_BAD_CONFIG;
    EXPECT_EQ(createEs1(), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONFIG);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
}

TEST_F(Es1Context, CreationRefusesContextsWithoutErrors)
{
    EXPECT_EQ(createContext({EGL_CONTEXT_OPENGL_NO_ERROR_KHR, EGL_TRUE}), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_ATTRIBUTE);
    EXPECT_NE(createContext({EGL_CONTEXT_OPENGL_NO_ERROR_KHR, EGL_FALSE}), EGL_NO_CONTEXT);
}

TEST_F(Es1Context, CreationNeedsAnInitialisedDisplay)
{
    const EGLint version1[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    EXPECT_EQ(egl.eglCreateContext(EGL_NO_DISPLAY, config, EGL_NO_CONTEXT, version1), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
    ASSERT_TRUE(egl.eglTerminate(display));
    EXPECT_EQ(createEs1(), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_NOT_INITIALIZED);
    ASSERT_TRUE(egl.eglInitialize(display, nullptr, nullptr));
}

TEST_F(Es1Context, CreationRefusesAnUnknownConfiguration)
{
    const EGLint version1[] = {EGL_CONTEXT_CLIENT_VERSION, 1, EGL_NONE};
    EXPECT_EQ(egl.eglCreateContext(display, &config, EGL_NO_CONTEXT, version1), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONFIG);
}

TEST_F(Es1Context, SharesWithAnotherEs1Context)
{
    const EGLContext first = createEs1();
    void *firstInLibrary = fakeEs1().lastContext;
    EXPECT_EQ(fakeEs1().lastShare, nullptr);
    EXPECT_NE(createEs1(first), EGL_NO_CONTEXT);
    EXPECT_EQ(fakeEs1().lastShare, firstInLibrary);
}

TEST_F(Es1Context, SharesWithTheMachinesContexts)
{
    const EGLContext es2 = createEs2();
    ASSERT_NE(createEs1(es2), EGL_NO_CONTEXT);
    void *firstInLibrary = fakeEs1().lastContext;
    EXPECT_EQ(fakeEs1().lastShare, nullptr) << "the library has no context to share with";
    EXPECT_EQ(fakeEs1().lastMachineShare, es2);

    ASSERT_NE(createEs1(createEs2(es2)), EGL_NO_CONTEXT);
    EXPECT_EQ(fakeEs1().lastShare, firstInLibrary) << "now it has one, and its texture names are the group's";
}

TEST_F(Es1Context, JoinsTheGroupOfTheContextThatSharesWithAnEs1Context)
{
    const EGLContext first = createEs1();
    void *firstInLibrary = fakeEs1().lastContext;
    const EGLContext es2 = createEs2(createEs2(first));
    ASSERT_NE(createEs1(es2), EGL_NO_CONTEXT);
    EXPECT_EQ(fakeEs1().lastShare, firstInLibrary);

    ASSERT_NE(createEs1(createEs2()), EGL_NO_CONTEXT);
    EXPECT_EQ(fakeEs1().lastShare, nullptr) << "of another group";
}

TEST_F(Es1Context, DoesNotShareWithADestroyedContext)
{
    const EGLContext gone = createEs1();
    ASSERT_TRUE(egl.eglDestroyContext(display, gone));
    EXPECT_EQ(createEs1(gone), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
}

TEST_F(Es1Context, IsCurrentForEglAndForTheLibrary)
{
    const EGLContext context = createEs1();
    void *inLibrary = fakeEs1().lastContext;
    ASSERT_TRUE(makeCurrent(context));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_EQ(egl.eglGetCurrentContext(), context);
    EXPECT_EQ(egl.eglGetCurrentSurface(EGL_DRAW), surface);
    EXPECT_EQ(egl.eglGetCurrentDisplay(), display);
    EXPECT_EQ(os_tls_read(fakeEs1().slot), inLibrary);

    ASSERT_TRUE(makeCurrent(EGL_NO_CONTEXT));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_EQ(egl.eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetCurrentDisplay(), EGL_NO_DISPLAY);
    EXPECT_EQ(os_tls_read(fakeEs1().slot), nullptr);
}

TEST_F(Es1Context, IsCurrentWithoutSurfaces)
{
    const EGLContext context = createEs1();
    EXPECT_TRUE(egl.eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
    EXPECT_EQ(egl.eglGetCurrentContext(), context);
}

TEST_F(Es1Context, AlternatesWithTheMachinesContexts)
{
    const EGLContext es1 = createEs1(), es2 = createEs2();
    void *inLibrary = fakeEs1().lastContext;
    for (int round = 0; round < 3; round++) {
        ASSERT_TRUE(makeCurrent(es1));
        EXPECT_EQ(egl.eglGetCurrentContext(), es1);
        EXPECT_EQ(os_tls_read(fakeEs1().slot), inLibrary);
        ASSERT_TRUE(makeCurrent(es2));
        EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
        EXPECT_EQ(egl.eglGetCurrentContext(), es2);
        EXPECT_EQ(egl.eglGetCurrentSurface(EGL_DRAW), surface);
        EXPECT_EQ(os_tls_read(fakeEs1().slot), nullptr);
    }
}

TEST_F(Es1Context, StaysCurrentWhenTheNextCannotBecomeSo)
{
    const EGLContext first = createEs1();
    void *firstInLibrary = fakeEs1().lastContext;
    const EGLContext second = createEs1(), es2 = createEs2();
    ASSERT_TRUE(makeCurrent(first));

    for (const EGLContext next : {second, es2}) {
        const auto noSurface = reinterpret_cast<EGLSurface>(&config);
        EXPECT_FALSE(egl.eglMakeCurrent(display, noSurface, noSurface, next));
        EXPECT_EQ(egl.eglGetError(), EGL_BAD_SURFACE);
        EXPECT_EQ(egl.eglGetCurrentContext(), first);
        EXPECT_EQ(egl.eglGetCurrentSurface(EGL_DRAW), surface);
        EXPECT_EQ(os_tls_read(fakeEs1().slot), firstInLibrary);
        EXPECT_EQ(fakeEs1().currentContext(), firstInLibrary);
    }
    EXPECT_FALSE(egl.eglMakeCurrent(display, surface, surface, EGL_NO_CONTEXT));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
    EXPECT_EQ(egl.eglGetCurrentContext(), first);
    // The one that failed belongs to no thread.
    EXPECT_TRUE(std::async(std::launch::async, [&] {
                    return egl.eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, second) &&
                           egl.eglReleaseThread();
                }).get());
}

TEST_F(Es1Context, ThatCannotBecomeCurrentLeavesAnEs2ContextCurrent)
{
    const EGLContext es1 = createEs1(), es2 = createEs2();
    ASSERT_TRUE(makeCurrent(es2));
    const auto noSurface = reinterpret_cast<EGLSurface>(&config);
    EXPECT_FALSE(egl.eglMakeCurrent(display, noSurface, noSurface, es1));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_SURFACE);
    EXPECT_EQ(egl.eglGetCurrentContext(), es2);
    EXPECT_EQ(egl.eglGetCurrentSurface(EGL_READ), surface);
    EXPECT_EQ(os_tls_read(fakeEs1().slot), nullptr);
    EXPECT_EQ(fakeEs1().currentContext(), nullptr);
}

TEST_F(Es1Context, IsInvalidUnderAnotherDisplay)
{
    const EGLContext context = createEs1();
    EXPECT_FALSE(egl.eglMakeCurrent(EGL_NO_DISPLAY, surface, surface, context));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
    EXPECT_FALSE(egl.eglDestroyContext(EGL_NO_DISPLAY, context));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
    EGLint value = 0;
    EXPECT_FALSE(egl.eglQueryContext(EGL_NO_DISPLAY, context, EGL_CONTEXT_CLIENT_VERSION, &value));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
    EXPECT_EQ(live(), 1);
}

TEST_F(Es1Context, GoesAtDestruction)
{
    const EGLContext context = createEs1();
    EXPECT_TRUE(egl.eglDestroyContext(display, context));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_EQ(live(), 0);
    EXPECT_FALSE(egl.eglDestroyContext(display, context));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
}

TEST_F(Es1Context, DestroyedWhileCurrentLivesUntilReleased)
{
    const EGLContext context = createEs1();
    ASSERT_TRUE(makeCurrent(context));
    ASSERT_TRUE(egl.eglDestroyContext(display, context));
    EXPECT_EQ(live(), 1);
    EXPECT_EQ(egl.eglGetCurrentContext(), context);
    EXPECT_FALSE(makeCurrent(context));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);

    ASSERT_TRUE(makeCurrent(EGL_NO_CONTEXT));
    EXPECT_EQ(live(), 0);
}

TEST_F(Es1Context, DestroyedWhileCurrentGoesWhenAnotherTakesItsPlace)
{
    EGLContext context = createEs1();
    const EGLContext next = createEs1();
    ASSERT_TRUE(makeCurrent(context));
    ASSERT_TRUE(egl.eglDestroyContext(display, context));
    ASSERT_TRUE(makeCurrent(next));
    EXPECT_EQ(live(), 1);
    EXPECT_EQ(egl.eglGetCurrentContext(), next);

    ASSERT_TRUE(egl.eglDestroyContext(display, next));
    const EGLContext es2 = createEs2();
    ASSERT_TRUE(makeCurrent(es2));
    EXPECT_EQ(live(), 0);
    EXPECT_EQ(egl.eglGetCurrentContext(), es2);
}

TEST_F(Es1Context, GoesWithItsDisplayAndOnlyWithIt)
{
    createEs1();
    const EGLContext current = createEs1();
    ASSERT_TRUE(makeCurrent(current));
    ASSERT_TRUE(egl.eglTerminate(display));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_EQ(live(), 1) << "the current one lives on";
    EXPECT_FALSE(egl.eglDestroyContext(display, current));
    EXPECT_EQ(egl.eglGetError(), EGL_NOT_INITIALIZED);
    EXPECT_TRUE(egl.eglReleaseThread());
    EXPECT_EQ(live(), 0);
    ASSERT_TRUE(egl.eglInitialize(display, nullptr, nullptr));
}

TEST_F(Es1Context, OfOneDisplayIsNotTouchedByAnother)
{
    // A second display of the machine: its default platform, or the same one by its device.
    const auto queryDevices = procAddress<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
    ASSERT_TRUE(queryDevices);
    EGLDeviceEXT device = nullptr;
    EGLint count = 0;
    ASSERT_TRUE(queryDevices(1, &device, &count));
    ASSERT_EQ(count, 1);
    const EGLDisplay other = egl.eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr);
    ASSERT_NE(other, display);
    ASSERT_TRUE(egl.eglInitialize(other, nullptr, nullptr));

    const EGLContext here = createEs1();
    EGLConfig otherConfig = nullptr;
    ASSERT_TRUE(egl.eglChooseConfig(other, nullptr, &otherConfig, 1, &count));
    const EGLContext there = egl.eglCreateContext(other, otherConfig, EGL_NO_CONTEXT, nullptr);
    ASSERT_NE(there, EGL_NO_CONTEXT);
    EXPECT_EQ(live(), 2);

    EXPECT_FALSE(egl.eglDestroyContext(other, here));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
    EXPECT_EQ(createEs1(there), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
    EXPECT_EQ(createEs2(there), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
    EXPECT_FALSE(egl.eglMakeCurrent(other, EGL_NO_SURFACE, EGL_NO_SURFACE, here));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_CONTEXT);
    ASSERT_TRUE(egl.eglMakeCurrent(other, EGL_NO_SURFACE, EGL_NO_SURFACE, there));
    ASSERT_TRUE(makeCurrent(here)) << "straight from one display to the other";
    EXPECT_EQ(egl.eglGetCurrentDisplay(), display);

    ASSERT_TRUE(egl.eglTerminate(other));
    EXPECT_EQ(live(), 1);
    EXPECT_EQ(egl.eglGetCurrentContext(), here);
    EXPECT_TRUE(egl.eglDestroyContext(display, here)) << "still a valid handle";
}

TEST_F(Es1Context, AnswersQueriesOfItself)
{
    const EGLContext context = createEs1();
    EGLint configId = 0, value = 0;
    ASSERT_TRUE(egl.eglGetConfigAttrib(display, config, EGL_CONFIG_ID, &configId));

    EXPECT_TRUE(egl.eglQueryContext(display, context, EGL_CONTEXT_CLIENT_VERSION, &value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(egl.eglQueryContext(display, context, EGL_CONTEXT_CLIENT_TYPE, &value));
    EXPECT_EQ(value, EGL_OPENGL_ES_API);
    EXPECT_TRUE(egl.eglQueryContext(display, context, EGL_CONFIG_ID, &value));
    EXPECT_EQ(value, configId);
    EXPECT_TRUE(egl.eglQueryContext(display, context, EGL_RENDER_BUFFER, &value));
    EXPECT_EQ(value, EGL_NONE) << "bound to no surface";
    ASSERT_TRUE(makeCurrent(context));
    EXPECT_TRUE(egl.eglQueryContext(display, context, EGL_RENDER_BUFFER, &value));
    EXPECT_EQ(value, EGL_BACK_BUFFER);

    EXPECT_FALSE(egl.eglQueryContext(display, context, EGL_WIDTH, &value));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_ATTRIBUTE);
    EXPECT_FALSE(egl.eglQueryContext(display, context, EGL_CONFIG_ID, nullptr));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_PARAMETER);
}

TEST_F(Es1Context, SwapsThroughTheLibraryOnlyWhileCurrent)
{
    const int before = fakeEs1().swaps;
    ASSERT_TRUE(makeCurrent(createEs1()));
    EXPECT_TRUE(egl.eglSwapBuffers(display, surface));
    EXPECT_EQ(fakeEs1().swaps, before + 1);
    EXPECT_FALSE(egl.eglSwapBuffers(EGL_NO_DISPLAY, surface));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_DISPLAY);
    EXPECT_FALSE(egl.eglSwapBuffers(display, reinterpret_cast<EGLSurface>(&config)));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_SURFACE);
    EXPECT_EQ(fakeEs1().swaps, before + 2);
    ASSERT_TRUE(makeCurrent(createEs2()));
    EXPECT_TRUE(egl.eglSwapBuffers(display, surface));
    EXPECT_EQ(fakeEs1().swaps, before + 2);
}

TEST_F(Es1Context, TellsTheLibraryOfSwapsWithDamage)
{
    const auto swap = procAddress<PFNEGLSWAPBUFFERSWITHDAMAGEKHRPROC>("eglSwapBuffersWithDamageKHR");
    ASSERT_TRUE(swap);
    const int before = fakeEs1().swaps;
    ASSERT_TRUE(makeCurrent(createEs1()));
    EXPECT_TRUE(swap(display, surface, nullptr, 0)) << std::hex << egl.eglGetError();
    EXPECT_EQ(fakeEs1().swaps, before + 1);
    EXPECT_FALSE(swap(display, EGL_NO_SURFACE, nullptr, 0));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_SURFACE);
    ASSERT_TRUE(makeCurrent(createEs2()));
    EXPECT_TRUE(swap(display, surface, nullptr, 0));
    EXPECT_EQ(fakeEs1().swaps, before + 2) << "the one without a surface is counted, the one of ES 2 is not";
}

TEST_F(Es1Context, CanBeWaitedFor)
{
    ASSERT_TRUE(makeCurrent(createEs1()));
    EXPECT_TRUE(egl.eglWaitClient());
    EXPECT_TRUE(egl.eglWaitGL());
    EXPECT_TRUE(egl.eglWaitNative(EGL_CORE_NATIVE_ENGINE));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
}

TEST_F(Es1Context, OfAnotherThreadIsRefusedUntilThatReleasesIt)
{
    const EGLContext context = createEs1();
    std::promise<void> isCurrent, mayRelease;
    std::thread other([&] {
        EXPECT_TRUE(makeCurrent(context));
        isCurrent.set_value();
        mayRelease.get_future().wait();
        EXPECT_TRUE(egl.eglReleaseThread());
    });
    isCurrent.get_future().wait();
    EXPECT_FALSE(makeCurrent(context));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_ACCESS);
    EXPECT_EQ(egl.eglGetCurrentContext(), EGL_NO_CONTEXT);
    mayRelease.set_value();
    other.join();
    EXPECT_TRUE(makeCurrent(context));
}

TEST_F(Es1Context, IsReleasedByTheEndOfItsThread)
{
    const EGLContext context = createEs1();
    std::thread([&] { EXPECT_TRUE(makeCurrent(context)); }).join();
    EXPECT_TRUE(makeCurrent(context));
    EXPECT_EQ(egl.eglGetCurrentContext(), context);
}

TEST_F(Es1Context, DestroyedElsewhereGoesAtTheEndOfItsThread)
{
    const EGLContext context = createEs1();
    std::promise<void> isCurrent, mayEnd;
    std::thread other([&] {
        EXPECT_TRUE(makeCurrent(context));
        isCurrent.set_value();
        mayEnd.get_future().wait();
    });
    isCurrent.get_future().wait();
    EXPECT_TRUE(egl.eglDestroyContext(display, context));
    EXPECT_EQ(live(), 1);
    mayEnd.set_value();
    other.join();
    EXPECT_EQ(live(), 0);
}

TEST_F(Es1Context, ManyThreadsMakeAndDestroyTheirOwn)
{
    const EGLContext shared = createEs1();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; i++)
        threads.emplace_back([&] {
            for (int round = 0; round < 20; round++) {
                const EGLContext context = createEs1(shared);
                ASSERT_NE(context, EGL_NO_CONTEXT);
                ASSERT_TRUE(egl.eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
                ASSERT_EQ(egl.eglGetCurrentContext(), context);
                ASSERT_TRUE(egl.eglDestroyContext(display, context));
                ASSERT_TRUE(egl.eglReleaseThread());
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(live(), 1);
}

TEST_F(Es1Context, KeepsErrorsPerThread)
{
    EXPECT_EQ(createContext({EGL_CONTEXT_MINOR_VERSION, 9}), EGL_NO_CONTEXT);
    EXPECT_EQ(std::async(std::launch::async, [&] { return egl.eglGetError(); }).get(), EGL_SUCCESS);
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_MATCH);
}

TEST_F(Es1Context, LeavesTheErrorOfTheLastCallOnly)
{
    // Ours, then a success of the machine's.
    EXPECT_EQ(createContext({EGL_CONTEXT_MINOR_VERSION, 9}), EGL_NO_CONTEXT);
    EXPECT_TRUE(egl.eglQueryString(display, EGL_VERSION));
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    // The machine's, then a success of ours.
    EXPECT_FALSE(egl.eglQueryString(display, EGL_WIDTH));
    EXPECT_NE(createEs1(), EGL_NO_CONTEXT);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    EXPECT_FALSE(egl.eglQueryString(display, EGL_WIDTH));
    EXPECT_TRUE(egl.eglGetProcAddress("eglBindAPI")) << "answered without the machine";
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS);
    const auto destroySync = procAddress<PFNEGLDESTROYSYNCKHRPROC>("eglDestroySyncKHR");
    const auto createSync = procAddress<PFNEGLCREATESYNCKHRPROC>("eglCreateSyncKHR");
    EXPECT_EQ(createContext({EGL_CONTEXT_MINOR_VERSION, 9}), EGL_NO_CONTEXT);
    const EGLSyncKHR sync = createSync(display, EGL_SYNC_REUSABLE_KHR, nullptr);
    EXPECT_EQ(egl.eglGetError(), EGL_SUCCESS) << "a success of an extension's function";
    EXPECT_TRUE(destroySync(display, sync));
    // Ours, then one of the machine's.
    EXPECT_EQ(createContext({EGL_CONTEXT_MINOR_VERSION, 9}), EGL_NO_CONTEXT);
    EXPECT_FALSE(egl.eglDestroySurface(display, EGL_NO_SURFACE));
    EXPECT_EQ(egl.eglGetError(), EGL_BAD_SURFACE);
}

} // namespace
