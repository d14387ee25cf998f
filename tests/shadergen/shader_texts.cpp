// SPDX-License-Identifier: MIT
#include "shadergen/shader_texts.h"

#include "shadergen/generators.h"
#include "vsp.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

static std::string generated(void (*generate)(const ProgramKey &, strbuf *), const ProgramKey &key)
{
    strbuf buffer = {};
    generate(key, &buffer);
    EXPECT_EQ(buffer.cut, 0);
    const std::string text = buffer.text ? buffer.text : "";
    os_free(buffer.text);
    return text;
}

std::string vertexText(const ProgramKey &key)
{
    return generated(generateVertexText, key);
}

std::string fragmentText(const ProgramKey &key)
{
    return generated(generateFragmentText, key);
}

std::string golden(const std::string &name)
{
    std::ifstream file(std::string(GOLDEN_DIR) + "/" + name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::string edited(std::string text, std::initializer_list<std::pair<std::string, std::string>> edits)
{
    for (const auto &[from, to] : edits) {
        const size_t at = text.find(from);
        if (at == std::string::npos || text.find(from, at + 1) != std::string::npos) {
            ADD_FAILURE() << "not exactly once in the text: " << from;
            continue;
        }
        text.replace(at, from.size(), to);
    }
    return text;
}

ProgramKey plainKey()
{
    ProgramKey key = {};
    key.state.mvpForm = MVP_GENERAL;
    key.state.noTexGen = 1;
    return key;
}

void enableUnit(ProgramKey &key, uint32_t unit)
{
    key.state.unit[unit].enabled = 1;
    key.state.combine[unit].envRgb = ENV_MODULATE;
    key.state.combine[unit].formatClass = FORMAT_RGBA;
}

void enableLighting(ProgramKey &key)
{
    key.state.lighting = 1;
    key.state.perVertexColor = 1;
    key.state.eyeCoordinates = 1;
}

void addLight(ProgramKey &key, uint32_t light, uint32_t kind)
{
    key.inputs.lightKinds = (key.inputs.lightKinds | kind << (2 * light)) & 0xFFFF;
    key.state.lightCount = (key.state.lightCount + 1) & 0xF;
}
