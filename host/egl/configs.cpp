// SPDX-License-Identifier: MIT
// Configurations are the machine's. What ES 2.0 can draw to, ES 1.x can: the ES 1.x bit is answered from the ES 2.0
// one, whether or not the machine's driver has an ES 1.x of its own.
#include "machine_egl.h"
#include "thread_state.h"

#include <vector>

namespace {

bool isApiMask(EGLint attribute)
{
    return attribute == EGL_RENDERABLE_TYPE || attribute == EGL_CONFORMANT;
}

// EGL_DONT_CARE has all bits set, the ES 1.x one too, and stays as it is.
EGLint askForEs2(EGLint mask)
{
    if (mask == EGL_DONT_CARE || !(mask & EGL_OPENGL_ES_BIT)) return mask;
    return (mask & ~EGL_OPENGL_ES_BIT) | EGL_OPENGL_ES2_BIT;
}

std::vector<EGLint> machineCriteria(const EGLint *attributes)
{
    std::vector<EGLint> criteria;
    bool renderableGiven = false;
    for (; attributes && attributes[0] != EGL_NONE; attributes += 2) {
        const EGLint attribute = attributes[0];
        renderableGiven |= attribute == EGL_RENDERABLE_TYPE;
        criteria.insert(criteria.end(), {attribute, isApiMask(attribute) ? askForEs2(attributes[1]) : attributes[1]});
    }
    // EGL's default asks for ES 1.x.
    if (!renderableGiven) criteria.insert(criteria.end(), {EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT});
    criteria.push_back(EGL_NONE);
    return criteria;
}

} // namespace

EGLBoolean EGLAPIENTRY eglChooseConfig(EGLDisplay dpy, const EGLint *attrib_list, EGLConfig *configs,
                                       EGLint config_size, EGLint *num_config)
{
    enter("eglChooseConfig");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    const std::vector<EGLint> criteria = machineCriteria(attrib_list);
    return machineEgl().eglChooseConfig(dpy, criteria.data(), configs, config_size, num_config);
}

EGLBoolean EGLAPIENTRY eglGetConfigAttrib(EGLDisplay dpy, EGLConfig config, EGLint attribute, EGLint *value)
{
    enter("eglGetConfigAttrib");
    if (!machineEglFound()) return finish(EGL_NOT_INITIALIZED);
    if (!machineEgl().eglGetConfigAttrib(dpy, config, attribute, value)) return EGL_FALSE;
    if (isApiMask(attribute)) {
        *value &= ~EGL_OPENGL_ES_BIT;
        if (*value & EGL_OPENGL_ES2_BIT) *value |= EGL_OPENGL_ES_BIT;
    }
    return EGL_TRUE;
}
