// SPDX-License-Identifier: MIT
#include "driver_limit.h"

#include "driver.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

static DriverLimit readLimit()
{
    const char *named = secure_getenv("TRL20_DRIVER_LIMIT");
    const std::string_view name = named ? named : "";
    if (name == "es2") return DriverLimit::Es2;
    if (name == "thin-lines") return DriverLimit::ThinLines;
    if (!name.empty())
        fprintf(stderr, "trl20: TRL20_DRIVER_LIMIT is es2 or thin-lines, not '%s'; the driver is used as it is\n",
                named);
    return DriverLimit::None;
}

DriverLimit driverLimit()
{
    static const DriverLimit limit = readLimit();
    return limit;
}

// Those of the wanted extensions that the driver has.
static std::string keptExtensions(const char *all)
{
    std::string kept;
    for (const char *name : {"GL_OES_EGL_image", "GL_OES_EGL_image_external"}) {
        if (hasExtension(all, name)) kept.append(name).append(" ");
    }
    return kept;
}

const char *driverExtensions()
{
    const char *all = reinterpret_cast<const char *>(driver.glGetString(GL_EXTENSIONS));
    if (driverLimit() != DriverLimit::Es2) return all;
    static const std::string kept = keptExtensions(all);
    return kept.c_str();
}
