// SPDX-License-Identifier: MIT
// Size and format of a texture's level from a driver that has no query for them: by uploads of no texels, which the
// driver refuses for another format, and beyond the level's edges.
#pragma once

#include "texture_levels.h"

/// The level of the texture bound at an image target; all 0 when there is none, or when the driver lets everything
/// pass. Texels stay as they are; errors of the driver are taken, so none may be pending.
TextureLevel probeLevel(GLenum imageTarget, GLint level);
