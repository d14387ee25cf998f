// SPDX-License-Identifier: MIT
// Says in one screen whether OpenGL ES 1.1 programs will run here: which driver the backend finds, what it can do, what
// is done where it cannot, and what to do when something is missing.
//   trl20_doctor FOLDER    the folder of the libraries
//   trl20_doctor --brief   the line that belongs above benchmark results
// Exit status: 0 this machine will do, 1 it will not, 2 called wrongly.
#include "drawing_trial.h"
#include "driver.h"
#include "driver_abilities.h"
#include "driver_limit.h"
#include "off_screen.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Row {
    const char *ability;
    bool present;
    const char *whenPresent; // what becomes of it
    const char *whenAbsent;
};

std::string textOf(const void *text)
{
    return text ? static_cast<const char *>(text) : "";
}

std::string driverText(GLenum name)
{
    return textOf(driver.glGetString(name));
}

void printField(const char *name, const std::string &text)
{
    printf("%-12s%s\n", name, text.c_str());
}

// Of a driver's long name the beginning, so that its line stays one of 80 columns.
std::string fitted(const std::string &text)
{
    constexpr size_t kColumns = 80 - 12;
    return text.size() > kColumns ? text.substr(0, kColumns - 3) + "..." : text;
}

int refuse(const std::string &problem, const std::vector<std::string> &advice)
{
    printf("This machine will not do: %s.\n\nWhat to do:\n", problem.c_str());
    for (const std::string &line : advice)
        printf("  %s\n", line.c_str());
    return 1;
}

// Of a variable that names a driver file: it is the first suspect.
std::string adviseOn(const char *variable)
{
    const char *file = getenv(variable);
    if (!file || !*file) return {};
    if (!dlopen(file, RTLD_NOW | RTLD_LOCAL)) return std::string(variable) + ": " + dlerror();
    return std::string(variable) + " names " + file;
}

std::vector<std::string> driverAdvice()
{
    std::vector<std::string> advice;
    for (const char *variable : {"TRL20_DRIVER_EGL", "TRL20_DRIVER_GLES2"}) {
        const std::string found = adviseOn(variable);
        if (!found.empty()) advice.push_back(found);
    }
    if (!advice.empty()) {
        advice.push_back("Unset this, or name the right file.");
        return advice;
    }
    return {"On Debian: apt-get install libegl1 libgles2 libgl1-mesa-dri",
            "A driver in another place is named by TRL20_DRIVER_EGL (its libEGL.so.1) and",
            "TRL20_DRIVER_GLES2 (its libGLESv2.so.2)."};
}

int refuseContext(const std::string &failedCall)
{
    if (failedCall == "eglInitialize") return refuse("EGL is there, but no driver behind it starts", driverAdvice());
    return refuse("it makes no OpenGL ES 2.0 context (" + failedCall + ")", driverAdvice());
}

int refuseDrawing(const std::string &failure, const std::string &folder)
{
    std::vector<std::string> advice = {
        "The driver works. What failed:",
        "  " + failure,
        "The libraries are in " + folder + ".",
        "Install or build trl20 again, and leave TRL20_GLES1_LIBRARY unset.",
    };
    if (access("orvala_panel.txt", R_OK) == 0)
        advice.push_back("orvala_panel.txt in this folder changes how they run: try another folder.");
    return refuse("drawing through trl20 failed", advice);
}

// The driver's own word for drawing on the processor; false also when EGL cannot tell.
bool drawsOnProcessor(EGLDisplay display)
{
    const auto queryDisplay = reinterpret_cast<PFNEGLQUERYDISPLAYATTRIBEXTPROC>(
        reinterpret_cast<void *>(machineEgl.eglGetProcAddress("eglQueryDisplayAttribEXT")));
    const auto queryDevice = reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(
        reinterpret_cast<void *>(machineEgl.eglGetProcAddress("eglQueryDeviceStringEXT")));
    EGLAttrib device = 0;
    if (!queryDisplay || !queryDevice || !queryDisplay(display, EGL_DEVICE_EXT, &device) || !device) return false;
    const char *extensions = queryDevice(reinterpret_cast<EGLDeviceEXT>(device), EGL_EXTENSIONS);
    return hasExtension(extensions, "EGL_MESA_device_software");
}

// Why the processor draws: no card, no right to open it, or no driver for it.
std::string reasonForProcessor()
{
    std::error_code ignored;
    for (const auto &entry : std::filesystem::directory_iterator("/dev/dri", ignored)) {
        const std::string path = entry.path().string();
        if (path.find("/renderD") == std::string::npos) continue;
        if (access(path.c_str(), R_OK | W_OK) == 0) return "the graphics card has no driver (libgl1-mesa-dri)";
        return path + " is closed; join group render";
    }
    return "no graphics card is seen in /dev/dri";
}

void printDriver(const OffScreen &screen)
{
    const auto egl = [&](EGLint name) { return textOf(machineEgl.eglQueryString(screen.display, name)); };
    printField("driver", fitted(driverText(GL_RENDERER)));
    printField("", fitted(driverText(GL_VENDOR) + ", " + driverText(GL_VERSION)));
    if (drawsOnProcessor(screen.display)) printField("", "on the processor: " + reasonForProcessor());
    printField("EGL", fitted(egl(EGL_VENDOR) + ", " + egl(EGL_VERSION) + ", on the " + screen.platform + " platform"));
}

void printWindows()
{
    const char *wayland = getenv("WAYLAND_DISPLAY");
    const char *x11 = getenv("DISPLAY");
    if (wayland && *wayland)
        printField("windows", std::string("on the Wayland display ") + wayland);
    else if (x11 && *x11)
        printField("windows", std::string("on the X11 display ") + x11);
    else
        printField("windows", "none: no display here. xvfb-run trl20 run PROGRAM makes one");
}

void printLimit()
{
    if (driverLimit() != DriverLimit::None)
        printField("limited", "to " + textOf(getenv("TRL20_DRIVER_LIMIT")) + " by TRL20_DRIVER_LIMIT");
}

void printAbilities()
{
    const DriverAbilities abilities = readDriverAbilities();
    const bool geometry = abilities.geometryEssl320 || !abilities.geometryExtensionEssl310.empty();
    const Row rows[] = {
        {"precise fragment colours", abilities.fragmentHighp, "full precision", "mediump: less exact colours and fog"},
        {"flat shading", abilities.essl300, "flat outputs of ES 3 shaders", "by the processor, which is slower"},
        {"soft edges of lines", geometry, "by geometry shaders", "by the processor, which is slower"},
        {"wide lines", abilities.widestLine > 1.0f, "by the driver",
         geometry ? "by geometry shaders" : "by the processor, which is slower"},
        {"images of video frames", driverHas("GL_OES_EGL_image_external"), "as external textures", "refused"},
        {"ETC1 textures", driverHas("GL_OES_compressed_ETC1_RGB8_texture"), "by the driver",
         "decoded by the processor"},
        {"logic operations", !abilities.framebufferFetch.empty(), "by shaders that read the colour buffer",
         "ignored: colours are written as they are"},
        {"performance monitors", driverHas("GL_AMD_performance_monitor"), "by the driver", "refused"},
    };
    printf("\nWhat the driver can do beyond OpenGL ES 2.0, and what becomes of it:\n");
    for (const Row &row : rows)
        printf("  %-28s%-5s%s\n", row.ability, row.present ? "yes" : "no",
               row.present ? row.whenPresent : row.whenAbsent);
    printf("\nEverything else needs no more than OpenGL ES 2.0: lights, fog, texture\n"
           "environments, alpha test and the clip plane become generated shaders, paletted\n"
           "textures are expanded on the processor.\n");
}

// Returns the call that failed; null: the machine's EGL makes contexts of this version.
const char *probeContext(EGLint version)
{
    const OffScreen screen = enterOffScreen(machineEgl, version);
    leaveOffScreen(machineEgl, screen);
    return screen.failure;
}

int examine(const std::string &folder)
{
    if (const char *failedCall = probeContext(2)) return refuseContext(failedCall);
    const bool ownEs1 = !probeContext(1);
    // A wrong value limits nothing and has been told by now. The libraries would tell it again.
    if (driverLimit() == DriverLimit::None) unsetenv("TRL20_DRIVER_LIMIT");
    const std::string failure = tryDrawing(folder);
    if (!failure.empty()) return refuseDrawing(failure, folder);

    const OffScreen screen = enterOffScreen(machineEgl, 2);
    printf("This machine will do: a triangle was drawn through trl20 as it should be.\n\n");
    printDriver(screen);
    printField("own ES 1.1", ownEs1 ? "there, and not used by trl20" : "none, and none is needed");
    printField("libraries", folder);
    printWindows();
    printLimit();
    printAbilities();
    return 0;
}

int printBrief()
{
    if (enterOffScreen(machineEgl, 2).failure) return 1;
    printf("driver: %s, %s\n", driverText(GL_RENDERER).c_str(), driverText(GL_VERSION).c_str());
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: trl20_doctor FOLDER | --brief\n");
        return 2;
    }
    const bool brief = strcmp(argv[1], "--brief") == 0;
    if (!loadDriver()) return brief ? 1 : refuse("it has no OpenGL ES 2.0 driver", driverAdvice());
    return brief ? printBrief() : examine(argv[1]);
}
