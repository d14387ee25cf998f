// SPDX-License-Identifier: MIT
// What functions for one kind of matrix record assert first.
#pragma once

#include "math/matrix_record.h"
#include "vsp.h"

inline void assertFloat(const MatrixRecord *m)
{
    if (!(m->flags & MATRIX_FLOAT)) [[unlikely]]
        os_assert_hook(0, "float matrix");
}

inline void assertFixed(const MatrixRecord *m)
{
    if (m->flags & MATRIX_FLOAT) [[unlikely]]
        os_assert_hook(0, "fixed-point matrix");
}
