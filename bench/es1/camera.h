// SPDX-License-Identifier: MIT
// The matrices of the camera, which ES 1.1 builds by its own calls, for the hand-written ES 2 scenes.
#pragma once

#include "es1/content.h"

#include <glm/gtc/matrix_transform.hpp>

inline glm::mat4 projectionMatrix()
{
    return glm::frustum(-kHalfWidth, kHalfWidth, -kHalfWidth, kHalfWidth, kNear, kFar);
}

inline glm::mat4 viewMatrix()
{
    return glm::translate(glm::mat4(1.0f), {0.0f, 0.0f, -kDistance});
}

/// Pixels of the surface to clip coordinates.
inline glm::mat4 pixelMatrix(float size)
{
    return glm::ortho(0.0f, size, 0.0f, size, -1.0f, 1.0f);
}

/// A turned object in its cell, in eye space.
inline glm::mat4 turnedInCell(int number)
{
    const glm::mat4 moved = glm::translate(viewMatrix(), {cellX(number), cellY(number), 0.0f});
    return glm::rotate(moved, glm::radians(angleDegrees(number)), {kAxis[0], kAxis[1], kAxis[2]});
}
