// SPDX-License-Identifier: MIT
// Which contexts share objects. An ES 1.x context that shares with one of the machine's has to share texture names with
// every other ES 1.x context of the same group, because the library counts them per group.
#pragma once

#include <EGL/egl.h>

#include <cstdint>

/// A number no group has yet.
uint32_t newShareGroup();

/// The group of a context of the machine's; 0: it shares with nothing that matters here.
uint32_t shareGroupOf(EGLContext machine);

/// Notes the group of a context of the machine's, until the context or its display goes.
void noteShareGroup(EGLDisplay display, EGLContext machine, uint32_t group);
void forgetShareGroup(EGLContext machine);
void forgetShareGroupsOf(EGLDisplay display);
