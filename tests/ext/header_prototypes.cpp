// SPDX-License-Identifier: MIT
// The public header by itself in C++, with prototypes.
#define GL_GLEXT_PROTOTYPES
#include <GLES/glext_trl20.h>

#include <type_traits>

#define PROTOTYPE(type, function) static_assert(std::is_same_v<decltype(&function), type>);
#include "ext/vendor_prototypes.def"
