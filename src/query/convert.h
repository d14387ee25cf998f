// SPDX-License-Identifier: MIT
// From a state value's natural type to the type a query asks for.
#pragma once

#include "frontend/gl_headers.h"

/// Natural type of a state value.
enum QueryKind : uint32_t {
    QUERY_KIND_INTEGER = 1, // integers, enums, booleans as 0 and 1
    QUERY_KIND_FLOAT = 2,
    QUERY_KIND_FIXED = 3,      // s15.16
    QUERY_KIND_NORMALISED = 4, // colour-like floats
};

/// Type of a query's result. A boolean is one byte, the others are 32 bits.
enum QueryOutput : uint32_t {
    QUERY_OUTPUT_BOOLEAN = 0,
    QUERY_OUTPUT_INTEGER = 1,
    QUERY_OUTPUT_FLOAT = 2,
    QUERY_OUTPUT_FIXED = 3,
};

/// Writes count converted values. values: count 32-bit words of the given kind. Nothing is written for a count of 0, an
/// unknown kind or an unknown output. Floats become integers by truncation, and are true only above zero: see
/// docs/behaviour.md.
void convertQueryValues(const void *values, uint32_t count, uint32_t kind, uint32_t output, void *out);

/// value x 65536, truncated toward zero and saturated.
GLfixed fixedFromFloat(GLfloat value);
