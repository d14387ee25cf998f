// SPDX-License-Identifier: MIT
// A draw goes on with what an earlier one derived as far as that still holds. Random calls are given to two contexts,
// of which one forgets what was derived before every draw: both must load the same into the same program.
#include "shadergen/program_cache.h"
#include "support/fake_backend.h"
#include "support/fake_platform.h"
#include "support/random_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

constexpr int kRounds = 10;
constexpr int kChanges = 200; // per round, with four draws each

// Marks everything as changed. The palette's matrices stay as they are: what was found about them holds until they
// change, whatever lights there are by then.
void forgetDerivation(GLIContext *ctx)
{
    ctx->derivedFor = 0;
    ctx->keyDirty = KEY_DIRTY_ALL;
    ctx->transform.uniformDirty |= DIRTY_TRANSFORM;
    ctx->palette.normalsDirty = kAllPaletteMatrices;
    ctx->lighting.geometryDirty = kAllLights;
    ctx->lighting.sceneColorDirty = 1;
    markLightColors(ctx->lighting, kAllLights);
    for (RecentLookup &recent : ctx->shaderCache->recent)
        recent.node = nullptr;
}

// Names of programs and shaders differ between contexts; which are used is compared by their keys.
bool namesProgram(const std::string &call)
{
    static const char *const kFunctions[] = {
        "glUseProgram",   "glCreate",  "glShaderSource",       "glCompileShader",
        "glAttachShader", "glDetach",  "glLinkProgram",        "glBindAttribLocation",
        "glDeleteShader", "glDeleteP", "glGetUniformLocation", "glGetAttribLocation"};
    return std::any_of(std::begin(kFunctions), std::end(kFunctions),
                       [&](const char *function) { return call.starts_with(function); });
}

std::vector<std::string> takeLoads()
{
    std::vector<std::string> calls = takeCalls();
    std::erase_if(calls, namesProgram);
    return calls;
}

std::string bytesOf(const auto &record)
{
    return {reinterpret_cast<const char *>(&record), sizeof(record)};
}

std::string keyInUse(const GLIContext *ctx)
{
    return ctx->currentEntry ? bytesOf(ctx->currentEntry->key) : "none";
}

struct Twins {
    TestContext keeping, forgetting;
    int goneOn = 0; // draws that could go on with what was derived
};

void drawInBoth(Twins &twins, void (*change)(uint32_t), uint32_t changeSeed, uint32_t drawSeed)
{
    twins.keeping.makeCurrent();
    change(changeSeed);
    twins.goneOn += twins.keeping->derivedFor != 0;
    takeCalls();
    drawAtRandom(drawSeed);
    const std::vector<std::string> kept = takeLoads();

    twins.forgetting.makeCurrent();
    change(changeSeed);
    forgetDerivation(twins.forgetting.ctx);
    takeCalls();
    drawAtRandom(drawSeed);
    ASSERT_EQ(kept, takeLoads());
    ASSERT_EQ(bytesOf(twins.keeping->key), bytesOf(twins.forgetting->key));
    ASSERT_EQ(keyInUse(twins.keeping.ctx), keyInUse(twins.forgetting.ctx));
}

} // namespace

TEST(KeptDerivation, ADrawLoadsWhatOneThatDerivesEverythingLoads)
{
    std::mt19937 random(40);
    const auto seed = [&random] { return static_cast<uint32_t>(random()); };
    for (int round = 0; round < kRounds; ++round) {
        resetFakeBackend();
        Twins twins;
        for (int i = 0; i < kChanges; ++i) {
            SCOPED_TRACE("round " + std::to_string(round) + ", change " + std::to_string(i));
            const uint32_t draw = seed();
            ASSERT_NO_FATAL_FAILURE(drawInBoth(twins, changeAtRandom, seed(), draw));
            for (int repeat = 0; repeat < 3; ++repeat)
                ASSERT_NO_FATAL_FAILURE(drawInBoth(twins, changeValueAtRandom, seed(), draw));
        }
        EXPECT_GT(twins.goneOn, kChanges);
        EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>());
    }
}
