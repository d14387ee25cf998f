// SPDX-License-Identifier: MIT
#pragma once

#include "frontend/gl_headers.h"

/// Lets the library look at what the texture bound to a target holds: images that it did not see being given. An ES 1.x
/// context is current.
void noteImagesInPlace(GLenum target);
