// SPDX-License-Identifier: MIT
// The growable, always zero-terminated text that both generators write into. Zero-filled is an empty text.
#pragma once

#include <cstdint>

struct strbuf {
    char *text;       // null until first use
    int32_t capacity; // bytes allocated
    int32_t length;   // characters before the terminating zero
    uint8_t cut;      // 1: something appended since the last reset did not fit
};

/// Makes the text empty. Keeps the memory; a null text stays null.
void strbuf_reset(strbuf *buffer);

/// Raises the capacity by 4096 bytes. Without memory the buffer stays as it was.
void strbuf_grow(strbuf *buffer);

/// Appends a string, growing at most once beyond the first allocation. What does not fit then is cut off and marked;
/// that is an assertion unless memory ran out.
void strbuf_cat(strbuf *buffer, const char *text);

/// Appends formatted text of at most 4095 characters; a longer one is an assertion, and is cut off and marked.
void strbuf_print(strbuf *buffer, const char *format, ...) __attribute__((format(printf, 2, 3)));

/// Appends each of count strings, each followed by a line break.
void cat_strs(strbuf *buffer, const char *const *list, int count);
