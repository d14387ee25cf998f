// SPDX-License-Identifier: MIT
// Comparing a value given with the value held. Bits are compared, since -0.0 and NaN are values like others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// Bytes. Where values of a multiple of four words are held, they are held at multiples of this.
inline constexpr size_t kHeldAlignment = 16;

#ifdef __SSE2__

/// All ones in each of four words that is the same in both.
template <bool aligned>
[[gnu::always_inline]] static inline __m128i equalFour(const uint32_t *held, const char *given)
{
    const auto *four = reinterpret_cast<const __m128i *>(held);
    return _mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i *>(given)),
                           aligned ? _mm_load_si128(four) : _mm_loadu_si128(four));
}

[[gnu::always_inline]] static inline bool areAllOnes(__m128i equal)
{
    return _mm_movemask_epi8(equal) == 0xffff;
}

/// Whether `count` values of `words` words each are the same.
template <size_t words, size_t count = 1>
[[gnu::always_inline]] static inline bool isEqual(const uint32_t *held, const void *values)
{
    constexpr bool aligned = words % 4 == 0;
    constexpr size_t inFours = words * count / 4 * 4;
    const auto *given = static_cast<const char *>(values);
    const auto fourAt = [&](size_t word) { return equalFour<aligned>(held + word, given + word * sizeof(uint32_t)); };
    if constexpr (words * count == 16) {
        // The library above loads the product for positions by rows, of which the first tells most changes.
        return areAllOnes(fourAt(0)) && areAllOnes(_mm_and_si128(_mm_and_si128(fourAt(4), fourAt(8)), fourAt(12)));
    }
    if constexpr (inFours > 0) {
        __m128i equal = fourAt(0);
        for (size_t word = 4; word < inFours; word += 4)
            equal = _mm_and_si128(equal, fourAt(word));
        if (!areAllOnes(equal)) return false;
    }
    return memcmp(held + inFours, given + inFours * sizeof(uint32_t), (words * count - inFours) * sizeof(uint32_t)) ==
           0;
}

/// Whether nine words are those of three columns, which lie in vectors of their own with a zero at the end.
[[gnu::always_inline]] static inline bool isEqualColumns3(const uint32_t *held, const void *values)
{
    const auto *given = static_cast<const char *>(values);
    const __m128i last = _mm_loadu_si128(reinterpret_cast<const __m128i *>(given + 5 * sizeof(uint32_t)));
    const __m128i equal = _mm_and_si128(
        _mm_and_si128(equalFour<true>(held, given), equalFour<true>(held + 4, given + 3 * sizeof(uint32_t))),
        _mm_cmpeq_epi32(_mm_srli_si128(last, sizeof(uint32_t)),
                        _mm_load_si128(reinterpret_cast<const __m128i *>(held + 8))));
    return (_mm_movemask_epi8(equal) & 0xfff) == 0xfff;
}

#else

template <size_t words, size_t count = 1>
static inline bool isEqual(const uint32_t *held, const void *values)
{
    return memcmp(held, values, words * count * sizeof(uint32_t)) == 0;
}

static inline bool isEqualColumns3(const uint32_t *held, const void *values)
{
    const auto *given = static_cast<const uint32_t *>(values);
    return isEqual<3>(held, given) && isEqual<3>(held + 4, given + 3) && isEqual<3>(held + 8, given + 6);
}

#endif
