// SPDX-License-Identifier: MIT
// Which attributes of a vertex shader its results depend on. Drivers count what a text names, not what it needs, and
// OpenGL ES 2.0 promises eight attributes only.
#pragma once

#include "shader_scan.h"

#include <set>
#include <string_view>

/// Names in the text that may have an influence on the variables named in `results`, and those themselves. Names are
/// looked at without regard to scope and order.
std::set<std::string_view> namesFor(const ShaderScan &scan, const std::set<std::string_view> &results);

/// Names of the attributes that may have an influence on the variables named in `results`, gl_Position among them when
/// wanted. Errs on the side of too many: names are looked at without regard to scope and order.
std::set<std::string_view> attributesFor(const ShaderScan &scan, const std::set<std::string_view> &results);
