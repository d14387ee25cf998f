// SPDX-License-Identifier: MIT
// More shader programs in one context than are kept: 65, one more than fit, and 500.
#include "pictures/environment_reference.h"
#include "pictures/sequences.h"

namespace {

constexpr GLenum kFunctions[] = {GL_MODULATE, GL_ADD, GL_ADD_SIGNED, GL_SUBTRACT, GL_REPLACE};
constexpr GLenum kSources[] = {GL_TEXTURE, GL_CONSTANT, GL_PRIMARY_COLOR};
constexpr GLenum kOperands[] = {GL_SRC_COLOR, GL_ONE_MINUS_SRC_COLOR, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};

// A combiner whose shader no other number below 960 has.
Environment environmentOf(uint32_t n)
{
    Environment env = {.mode = GL_COMBINE, .constant = {0.6, 0.3, 0.7, 0.8}};
    env.rgbArguments[0] = {GL_TEXTURE, kOperands[n % 4]};
    env.alpha = kFunctions[n / 4 % 5];
    env.rgbArguments[1] = {kSources[n / 20 % 3], kOperands[n / 60 % 4]};
    env.rgb = kFunctions[n / 240 % 4];
    return env;
}

void setState(uint32_t n)
{
    const Unit units[2] = {{.enabled = true, .texel = {0.9, 0.5, 0.2, 0.7}, .environment = environmentOf(n)}, {}};
    setUnits(units, {0.4, 0.8, 0.6, 0.9});
}

void drawQuad()
{
    drawRectangle(-0.8f, -0.8f, 0.8f, 0.8f);
}

// Draws all, then looks at some of them again, whose programs may be gone by then.
void playKeys(Stage &stage, uint32_t keys, uint32_t looked)
{
    newContext(stage);
    for (uint32_t n = 0; n < keys; ++n) {
        setState(n);
        drawQuad();
    }
    for (uint32_t i = 0; i < looked; ++i) {
        const uint32_t n = i * 37 % keys;
        setState(n);
        compare(stage, "key " + std::to_string(n), drawQuad, [n] { setState(n); });
    }
}

} // namespace

std::vector<Sequence> keySequences()
{
    return {{"SixtyFiveKeys", 65, [](Stage &stage) { playKeys(stage, 65, 65); }},
            {"FiveHundredKeys", 40, [](Stage &stage) { playKeys(stage, 500, 40); }}};
}
