// SPDX-License-Identifier: MIT
#include "figure_body.h"

#define BLUE                                                                                                           \
    {                                                                                                                  \
        0.22f, 0.45f, 0.85f                                                                                            \
    }
#define CORAL                                                                                                          \
    {                                                                                                                  \
        0.95f, 0.42f, 0.34f                                                                                            \
    }
#define GOLD                                                                                                           \
    {                                                                                                                  \
        0.97f, 0.72f, 0.25f                                                                                            \
    }
#define CREAM                                                                                                          \
    {                                                                                                                  \
        0.96f, 0.88f, 0.76f                                                                                            \
    }
#define TEAL                                                                                                           \
    {                                                                                                                  \
        0.16f, 0.66f, 0.62f                                                                                            \
    }
// clang-format off
const struct BoneShape kBones[BONES] = {
    {-1, {0.0f, 0.98f, 0.0f}, BLUE}, {PELVIS, {0.0f, 1.14f, 0.0f}, CORAL}, {CHEST, {0.0f, 1.53f, 0.0f}, CREAM},
    {CHEST, {0.185f, 1.435f, 0.0f}, GOLD}, {CHEST, {-0.185f, 1.435f, 0.0f}, GOLD},
    {LEFT_ARM, {0.405f, 1.25f, 0.0f}, CREAM}, {RIGHT_ARM, {-0.405f, 1.25f, 0.0f}, CREAM},
    {PELVIS, {0.10f, 0.94f, 0.0f}, TEAL}, {PELVIS, {-0.10f, 0.94f, 0.0f}, TEAL},
    {LEFT_THIGH, {0.11f, 0.52f, 0.0f}, BLUE}, {RIGHT_THIGH, {-0.11f, 0.52f, 0.0f}, BLUE},
    {LEFT_SHIN, {0.11f, 0.10f, 0.0f}, CORAL}, {RIGHT_SHIN, {-0.11f, 0.10f, 0.0f}, CORAL}};

const struct Part kParts[PARTS] = {
    {PELVIS, {-0.07f, 0.96f, 0.0f}, {0.07f, 0.96f, 0.0f}, 0.115f, 0.115f},
    {PELVIS, {0.0f, 0.98f, 0.0f}, {0.0f, 1.12f, 0.0f}, 0.115f, 0.100f},
    {CHEST, {0.0f, 1.16f, 0.0f}, {0.0f, 1.34f, 0.01f}, 0.095f, 0.115f},
    {CHEST, {-0.07f, 1.36f, 0.01f}, {0.07f, 1.36f, 0.01f}, 0.110f, 0.110f},
    {CHEST, {-0.15f, 1.435f, 0.0f}, {0.15f, 1.435f, 0.0f}, 0.062f, 0.062f},
    {CHEST, {0.0f, 1.44f, 0.0f}, {0.0f, 1.52f, 0.0f}, 0.048f, 0.048f},
    {HEAD, {0.0f, 1.54f, 0.0f}, {0.0f, 1.60f, 0.01f}, 0.048f, 0.048f},
    {HEAD, {0.0f, 1.655f, 0.015f}, {0.0f, 1.695f, 0.01f}, 0.104f, 0.104f},
    {LEFT_ARM, {0.205f, 1.418f, 0.0f}, {0.395f, 1.258f, 0.0f}, 0.062f, 0.049f},
    {RIGHT_ARM, {-0.205f, 1.418f, 0.0f}, {-0.395f, 1.258f, 0.0f}, 0.062f, 0.049f},
    {LEFT_FOREARM, {0.415f, 1.242f, 0.0f}, {0.596f, 1.090f, 0.0f}, 0.050f, 0.036f},
    {RIGHT_FOREARM, {-0.415f, 1.242f, 0.0f}, {-0.596f, 1.090f, 0.0f}, 0.050f, 0.036f},
    {LEFT_FOREARM, {0.627f, 1.064f, 0.0f}, {0.665f, 1.032f, 0.01f}, 0.045f, 0.042f},
    {RIGHT_FOREARM, {-0.627f, 1.064f, 0.0f}, {-0.665f, 1.032f, 0.01f}, 0.045f, 0.042f},
    {LEFT_THIGH, {0.105f, 0.87f, 0.0f}, {0.11f, 0.54f, 0.005f}, 0.098f, 0.064f},
    {RIGHT_THIGH, {-0.105f, 0.87f, 0.0f}, {-0.11f, 0.54f, 0.005f}, 0.098f, 0.064f},
    {LEFT_SHIN, {0.11f, 0.50f, 0.0f}, {0.11f, 0.14f, 0.0f}, 0.066f, 0.040f},
    {RIGHT_SHIN, {-0.11f, 0.50f, 0.0f}, {-0.11f, 0.14f, 0.0f}, 0.066f, 0.040f},
    {LEFT_FOOT, {0.11f, 0.055f, -0.03f}, {0.115f, 0.045f, 0.16f}, 0.054f, 0.044f},
    {RIGHT_FOOT, {-0.11f, 0.055f, -0.03f}, {-0.115f, 0.045f, 0.16f}, 0.054f, 0.044f}};
// clang-format on
