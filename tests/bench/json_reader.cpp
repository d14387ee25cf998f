// SPDX-License-Identifier: MIT
#include "bench/json_reader.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

// All read the text from `at`, and return false where it is not JSON.
static bool readJsonValue(const std::string &text, size_t &at, const std::string &path, JsonValues &values);

static void skipBlanks(const std::string &text, size_t &at)
{
    at = std::min(text.find_first_not_of(" \n\t\r", at), text.size());
}

static bool take(const std::string &text, size_t &at, char wanted)
{
    skipBlanks(text, at);
    if (at == text.size() || text[at] != wanted) return false;
    ++at;
    return true;
}

static bool readJsonString(const std::string &text, size_t &at, std::string &value)
{
    if (!take(text, at, '"')) return false;
    for (; at < text.size() && text[at] != '"'; ++at) {
        if (static_cast<unsigned char>(text[at]) < ' ') return false;
        if (text[at] == '\\') ++at;
        value += text[at];
    }
    return at++ < text.size();
}

// Members of an object or elements of an array, after the opening bracket.
static bool readJsonItems(const std::string &text, size_t &at, const std::string &path, JsonValues &values, char end)
{
    if (take(text, at, end)) return true;
    for (int number = 0;; ++number) {
        std::string name = "[" + std::to_string(number) + "]";
        if (end == '}') {
            std::string member;
            if (!readJsonString(text, at, member) || !take(text, at, ':')) return false;
            name = (path.empty() ? "" : ".") + member;
        }
        if (!readJsonValue(text, at, path + name, values)) return false;
        if (take(text, at, end)) return true;
        if (!take(text, at, ',')) return false;
    }
}

static bool readJsonValue(const std::string &text, size_t &at, const std::string &path, JsonValues &values)
{
    if (take(text, at, '{')) return readJsonItems(text, at, path, values, '}');
    if (take(text, at, '[')) return readJsonItems(text, at, path, values, ']');
    if (at < text.size() && text[at] == '"') return readJsonString(text, at, values[path]);
    const size_t end = std::min(text.find_first_of(",]} \n\t\r", at), text.size());
    const std::string word = text.substr(at, end - at);
    values[path] = word;
    at = end;
    if (word == "true" || word == "false" || word == "null") return true;
    char *rest = nullptr;
    std::strtod(word.c_str(), &rest);
    return !word.empty() && !*rest && (word[0] == '-' || std::isdigit(static_cast<unsigned char>(word[0])));
}

bool readJson(const std::string &text, JsonValues &values)
{
    size_t at = 0;
    if (!readJsonValue(text, at, "", values)) return false;
    skipBlanks(text, at);
    return at == text.size();
}
