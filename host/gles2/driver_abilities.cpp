// SPDX-License-Identifier: MIT
#include "driver_abilities.h"

#include "driver.h"
#include "driver_limit.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

static double languageVersion()
{
    if (driverLimit() == DriverLimit::Es2) return 1.0;
    const char *language = reinterpret_cast<const char *>(driver.glGetString(GL_SHADING_LANGUAGE_VERSION));
    // "OpenGL ES GLSL ES 3.20 ..."
    constexpr std::string_view prefix = "OpenGL ES GLSL ES ";
    const bool known = language && std::string_view(language).starts_with(prefix);
    return known ? strtod(language + prefix.size(), nullptr) : 1.0;
}

// Pixels; lines of one pixel are all that OpenGL ES promises.
static float widestLine()
{
    GLfloat range[2] = {1.0f, 1.0f};
    if (driverLimit() == DriverLimit::None) driver.glGetFloatv(GL_ALIASED_LINE_WIDTH_RANGE, range);
    return range[1];
}

// Half of what a vertex shader has: what is not gathered needs its place too, and a vector takes a whole one where a
// driver might have packed smaller values. Eight lights of all kinds take some eighty.
static int gatheredVectors()
{
    static constexpr GLint kMost = 96;
    GLint vectors = 0;
    driver.glGetIntegerv(GL_MAX_VERTEX_UNIFORM_VECTORS, &vectors);
    return std::min(vectors / 2, kMost);
}

DriverAbilities readDriverAbilities()
{
    const char *extensions = driverExtensions();
    const double version = languageVersion();
    GLint range[2] = {};
    GLint precision = 0;
    driver.glGetShaderPrecisionFormat(GL_FRAGMENT_SHADER, GL_HIGH_FLOAT, range, &precision);
    DriverAbilities abilities;
    abilities.fragmentHighp = range[1] > 0;
    abilities.essl300 = version > 2.99;
    abilities.externalImageEssl300 = hasExtension(extensions, "GL_OES_EGL_image_external_essl3");
    abilities.geometryEssl320 = version > 3.19;
    abilities.levelQueries = version > 3.09 && driver.glGetTexLevelParameteriv;
    if (version > 3.09) {
        for (const char *name : {"GL_EXT_geometry_shader", "GL_OES_geometry_shader"}) {
            if (hasExtension(extensions, name)) abilities.geometryExtensionEssl310 = name;
        }
    }
    abilities.widestLine = widestLine();
    for (const char *name : {"GL_ARM_shader_framebuffer_fetch", "GL_EXT_shader_framebuffer_fetch"}) {
        if (hasExtension(extensions, name)) abilities.framebufferFetch = name;
    }
    if (driverLimit() != DriverLimit::Es2) driver.glGetIntegerv(GL_MAX_VERTEX_ATTRIBS, &abilities.vertexAttributes);
    abilities.gatheredVectors = gatheredVectors();
    return abilities;
}

bool driverHas(const char *extension)
{
    return hasExtension(driverExtensions(), extension);
}
