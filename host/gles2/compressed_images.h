// SPDX-License-Identifier: MIT
// Images that are decoded here before the driver gets them.
#pragma once

#include "context.h"

/// glTexImage2D with rows that follow each other without gaps, whatever the application's unpack alignment.
void uploadPacked(GLenum target, GLint level, GLenum format, GLenum type, GLsizei width, GLsizei height,
                  const void *texels);
