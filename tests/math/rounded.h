// SPDX-License-Identifier: MIT
// Arithmetic for expected values, made apart from the library: float steps through double, which rounds like single
// steps because a double has more than twice the bits; fixed-point steps through 64-bit integers, which hold every
// product and the sums of a few.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>

namespace expected {

inline float add(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) + b);
}
inline float sub(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) - b);
}
inline float mul(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) * b);
}
inline float div(float a, float b)
{
    return static_cast<float>(static_cast<double>(a) / b);
}
inline float root(float a)
{
    return static_cast<float>(std::sqrt(static_cast<double>(a)));
}
inline float neg(float a)
{
    return std::bit_cast<float>(std::bit_cast<uint32_t>(a) ^ 0x80000000u);
}

/// Low 32 bits of a wide value.
inline int32_t low32(int64_t value)
{
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}
inline int32_t fixedMul(int32_t a, int32_t b)
{
    return low32((static_cast<int64_t>(a) * b) >> 16);
}

} // namespace expected

/// A float compared by its bits; all NaN are the same value.
struct Bits {
    float value;
};

inline bool operator==(Bits a, Bits b)
{
    if (a.value != a.value) return b.value != b.value;
    return std::bit_cast<uint32_t>(a.value) == std::bit_cast<uint32_t>(b.value);
}

inline std::ostream &operator<<(std::ostream &out, Bits a)
{
    return out << a.value << " (0x" << std::hex << std::bit_cast<uint32_t>(a.value) << std::dec << ")";
}

using Random = std::mt19937;

inline constexpr float kSpecialFloats[] = {0.0f,
                                           -0.0f,
                                           1.0f,
                                           -1.0f,
                                           0.5f,
                                           2.0f,
                                           0x1p-149f,
                                           -0x1p-149f,
                                           0x1.fffffcp-127f,
                                           0x1p-126f,
                                           -0x1p-126f,
                                           0x1.fffffep127f,
                                           -0x1.fffffep127f,
                                           65536.0f,
                                           -32768.0f,
                                           0x1p24f,
                                           0x1p31f,
                                           0x1p63f,
                                           std::numeric_limits<float>::infinity(),
                                           -std::numeric_limits<float>::infinity(),
                                           std::numeric_limits<float>::quiet_NaN()};

inline constexpr int32_t kSpecialWords[] = {
    0,     1,     -1,     0x10000,   -0x10000,  0xFFFF,        0x10001,       0x8000,   0x640000,
    17560, 17561, -17561, INT32_MAX, INT32_MIN, INT32_MAX - 1, INT32_MIN + 1, 0x5A0000, -0x5A0000};

/// -8 to 8 evenly.
inline float plainFloat(Random &random)
{
    return std::uniform_real_distribution<float>(-8.0f, 8.0f)(random);
}

/// Any bit pattern, special values often, ordinary numbers most often.
inline float anyFloat(Random &random)
{
    const uint32_t choice = random() % 10;
    if (choice == 0) return kSpecialFloats[random() % std::size(kSpecialFloats)];
    if (choice == 1) return std::bit_cast<float>(static_cast<uint32_t>(random()));
    return plainFloat(random);
}

/// Any word, special values often, small ones as often as large ones.
inline int32_t anyWord(Random &random)
{
    const uint32_t choice = random() % 8;
    if (choice == 0) return kSpecialWords[random() % std::size(kSpecialWords)];
    return static_cast<int32_t>(static_cast<uint32_t>(random())) >> random() % 32;
}

/// -8.0 to 8.0 in s15.16.
inline int32_t plainWord(Random &random)
{
    return static_cast<int32_t>(random() % 0x100001) - 0x80000;
}
