// SPDX-License-Identifier: MIT
#include "math/fp_scalar.h"

#include "math/fp_scalar_inline.h"

namespace {

// The compiler may turn a direct call into the instruction, which leaves errno alone; it cannot through this pointer.
double (*const volatile librarySqrt)(double) = std::sqrt;

} // namespace

float fp_abs(float a)
{
    return std::bit_cast<float>(std::bit_cast<uint32_t>(a) & ~kFloatSignBit);
}

float fp_negate(float a)
{
    return negated(a);
}

float fp_add(float a, float b)
{
    return a + b;
}

float fp_sub(float a, float b)
{
    return a - b;
}

float fp_mul(float a, float b)
{
    return a * b;
}

float fp_div(float a, float b)
{
    return a / b;
}

float fp_mul2ab(float a, float b)
{
    return (a + a) * b;
}

float fp_madd(float a, float b, float c)
{
    return c + a * b;
}

float fp_msub(float a, float b, float c)
{
    return a - b * c;
}

float fp_recp(float a)
{
    return reciprocalOrZero(a);
}

float fp_recp_prec(float a)
{
    return reciprocalOrZero(a);
}

float fp_sqrt(float a)
{
    const float root = roundedRoot(a);
    if (root != root) [[unlikely]]
        return static_cast<float>(librarySqrt(static_cast<double>(a)));
    return root;
}

float fp_sqrt_prec(float a)
{
    return fp_sqrt(a);
}

float fp_recpsqrt(float a)
{
    return 1.0f / fp_sqrt(a);
}

float fp_recpsqrt_prec(float a)
{
    return fp_recpsqrt(a);
}

float fp_interpolate(float a, float b, float t)
{
    return (1.0f - t) * a + b * t;
}
