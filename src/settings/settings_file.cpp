// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include "settings/panel_settings.h"
#include "vsp.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kLineSize = 256; // bytes of the line buffer, its final zero included
constexpr char kDelimiters[] = " =\n";

bool isText(const char *a, const char *b)
{
    return os_strcmp(a, b) == 0;
}

void tellUnknown(const char *key, const char *value)
{
    std::printf("  ** Unrecognized value of '%s' for '%s'!\n", value, key);
}

void setPerformance(PanelSettings &settings, const char *value)
{
    // First clear, then set: the flags of the two words.
    struct Mode {
        const char *name;
        uint32_t clear0, set0;
        uint32_t clear1, set1;
    };
    constexpr Mode modes[] = {
        {"ifh", 0, 0x1, 0, 0},
        {"ifd", 0, 0x2, 0, 0},
        {"vspNull", 0, 0x1, 0, 0x4},
        {"normal", 0x3, 0, 0x4, 0},
        {"es11ifd", 0x1, 0x2, 0x4, PANEL_INTERFACE_ONLY},
    };
    for (const Mode &mode : modes) {
        if (!isText(value, mode.name)) continue;
        settings.flags0 = (settings.flags0 & ~mode.clear0) | mode.set0;
        settings.flags1 = (settings.flags1 & ~mode.clear1) | mode.set1;
        return;
    }
    tellUnknown("performance", value);
}

void setTriangleJuice(PanelSettings &settings, const char *value)
{
    if (value[0] < '0' || value[0] > '3' || value[1] != '\0') return tellUnknown("triJuice", value);
    settings.triangleJuice = static_cast<uint32_t>(value[0] - '0');
}

// Without memory for the copy the name stays.
void setCompilerDumpShaderName(PanelSettings &settings, const char *value)
{
    auto *copy = static_cast<char *>(os_malloc(os_strlen(value) + 1));
    if (!copy) return;
    os_strcpy(copy, value);
    if (settings.compilerDumpShaderName != kUnnamedShader) os_free(const_cast<char *>(settings.compilerDumpShaderName));
    settings.compilerDumpShaderName = copy;
}

void assign(uint32_t &word, uint32_t bits, bool on)
{
    word = on ? word | bits : word & ~bits;
}

void setExact(uint32_t &word, uint32_t bits, const char *value)
{
    if (isText(value, "1")) assign(word, bits, true);
    if (isText(value, "0")) assign(word, bits, false);
}

void setPair(uint32_t &word, uint32_t bits, const char *setting, const char *clearing, const char *key,
             const char *value)
{
    if (isText(value, setting)) return assign(word, bits, true);
    if (isText(value, clearing)) return assign(word, bits, false);
    tellUnknown(key, value);
}

// "on" and "off" do not take each other back: both bits may end up set.
void setThreeWay(uint32_t &word, uint32_t on, uint32_t off, const char *key, const char *value)
{
    if (isText(value, "on")) return assign(word, on, true);
    if (isText(value, "off")) return assign(word, off, true);
    if (isText(value, "default")) return assign(word, on | off, false);
    tellUnknown(key, value);
}

void setGrade(uint32_t &word, uint32_t normal, uint32_t high, const char *value)
{
    if (isText(value, "Normal")) word = (word & ~high) | normal;
    if (isText(value, "High")) word = (word & ~normal) | high;
}

// A row becomes: if (isText(key, "log.pm4")) return assign(settings.flags0, 0x8, value[0] == '1');
void apply(PanelSettings &settings, const char *key, const char *value)
{
#define KEY_STARTS(name, word, bits)                                                                                   \
    if (isText(key, name)) return assign(settings.word, bits, value[0] == '1');
#define KEY_EXACT(name, word, bits)                                                                                    \
    if (isText(key, name)) return setExact(settings.word, bits, value);
#define KEY_PAIR(name, word, bits, setting, clearing)                                                                  \
    if (isText(key, name)) return setPair(settings.word, bits, setting, clearing, key, value);
#define KEY_THREE_WAY(name, word, on, off)                                                                             \
    if (isText(key, name)) return setThreeWay(settings.word, on, off, key, value);
#define KEY_GRADE(name, word, normal, high)                                                                            \
    if (isText(key, name)) return setGrade(settings.word, normal, high, value);
#define KEY_NUMBER(name, field)                                                                                        \
    if (isText(key, name)) {                                                                                           \
        settings.field = std::atoi(value);                                                                             \
        return;                                                                                                        \
    }
#define KEY_BY(name, function)                                                                                         \
    if (isText(key, name)) return function(settings, value);
#include "settings/keys.def"
}

} // namespace

void parseFile(PanelSettings *settings)
{
    std::FILE *file = std::fopen("./orvala_panel.txt", "r");
    if (!file) file = std::fopen("c:/orvala_panel.txt", "r");
    if (!file) return;

    char line[kLineSize];
    while (std::fgets(line, kLineSize, file)) {
        char *rest = nullptr; // not strtok: the application may be in the middle of its own
        const char *key = strtok_r(line, kDelimiters, &rest);
        const char *value = key ? strtok_r(nullptr, kDelimiters, &rest) : nullptr;
        if (value) apply(*settings, key, value);
    }
    std::fclose(file);
}
