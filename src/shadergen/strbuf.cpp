// SPDX-License-Identifier: MIT
#include "shadergen/strbuf.h"

#include "frontend/assert.h"

#include <cstdarg>
#include <cstdio>

static constexpr int32_t kGrowBytes = 4096;  // a plain shader pair needs one step, the longest texts three
static constexpr int32_t kPrintBytes = 4096; // of the local buffer for formatted text

void strbuf_reset(strbuf *buffer)
{
    if (buffer->text) buffer->text[0] = '\0';
    buffer->length = 0;
    buffer->cut = 0;
}

void strbuf_grow(strbuf *buffer)
{
    const size_t bytes = static_cast<size_t>(buffer->capacity) + kGrowBytes;
    char *text = static_cast<char *>(buffer->text ? os_realloc(buffer->text, bytes) : os_malloc(bytes));
    if (!text) return;

    if (!buffer->text) text[0] = '\0';
    buffer->text = text;
    buffer->capacity += kGrowBytes;
}

void strbuf_cat(strbuf *buffer, const char *text)
{
    size_t count = os_strlen(text);
    if (!buffer->text) strbuf_grow(buffer);
    const size_t length = static_cast<size_t>(buffer->length);
    if (length + count + 1 > static_cast<size_t>(buffer->capacity)) {
        const int32_t before = buffer->capacity;
        strbuf_grow(buffer);
        const size_t capacity = static_cast<size_t>(buffer->capacity);
        if (length + count + 1 > capacity) {
            assertThat(buffer->capacity == before, "strbuf_cat: the text fits after one growth");
            buffer->cut = 1;
            if (capacity == 0) return;
            count = capacity - 1 - length;
        }
    }
    os_memcpy(buffer->text + length, text, count);
    buffer->length += static_cast<int32_t>(count);
    buffer->text[buffer->length] = '\0';
}

void strbuf_print(strbuf *buffer, const char *format, ...)
{
    char formatted[kPrintBytes];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(formatted, sizeof(formatted), format, arguments);
    va_end(arguments);
    strbuf_cat(buffer, formatted);
    if (!assertThat(length < kPrintBytes, "strbuf_print: the formatted text fits 4095 characters")) buffer->cut = 1;
}

void cat_strs(strbuf *buffer, const char *const *list, int count)
{
    for (int i = 0; i < count; ++i) {
        strbuf_cat(buffer, list[i]);
        strbuf_cat(buffer, "\n");
    }
}
