// SPDX-License-Identifier: MIT
// Switches: those of the driver, remembered, and those of OpenGL ES 1.1 that only exist here.
#pragma once

#include "context.h"

/// Capabilities of every ES 2.0 driver. Bits of CapabilityState::driver.
enum DriverCapability : uint32_t {
    DRIVER_BLEND = 1u << 0,
    DRIVER_CULL_FACE = 1u << 1,
    DRIVER_DEPTH_TEST = 1u << 2,
    DRIVER_DITHER = 1u << 3,
    DRIVER_POLYGON_OFFSET_FILL = 1u << 4,
    DRIVER_SAMPLE_ALPHA_TO_COVERAGE = 1u << 5,
    DRIVER_SAMPLE_COVERAGE = 1u << 6,
    DRIVER_SCISSOR_TEST = 1u << 7,
    DRIVER_STENCIL_TEST = 1u << 8,
};

/// Capabilities that are only tracked. Bits of CapabilityState::tracked.
enum TrackedCapability : uint32_t {
    TRACKED_MULTISAMPLE = 1u << 0,
    TRACKED_SAMPLE_ALPHA_TO_ONE = 1u << 1,
    TRACKED_COLOR_LOGIC_OP = 1u << 2,
    TRACKED_POINT_SMOOTH = 1u << 3,
    TRACKED_LINE_SMOOTH = 1u << 4,
};

/// The bit of a tracked capability, 0 for every other name.
uint32_t trackedBit(GLenum capability);
