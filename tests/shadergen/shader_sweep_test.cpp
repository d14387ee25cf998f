// SPDX-License-Identifier: MIT
// Every pair of texts that legal calls can lead to compiles and links on this machine's driver. The sweep takes every
// value of every aspect of a state alone, every pair of such values, and random states, each distinct pair of texts
// once.
#include "shadergen/driver_programs.h"
#include "shadergen/legal_keys.h"
#include "shadergen/shader_texts.h"
#include "support/fake_platform.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

// Drivers keep all members of a structure that is used.
bool isUnusedMember(const std::string &vertex, const std::string &uniform)
{
    const size_t begin = uniform.find(' ') + 1;
    const std::string name = uniform.substr(begin, uniform.find('[') - begin);
    return name.find('.') != std::string::npos && vertex.find(name) == std::string::npos;
}

class ShaderSweep : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        // Programs of an earlier run would come from the driver's cache uncompiled.
        setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
        ASSERT_TRUE(openDriver());
        abilities = driverAbilities();
    }
    static void TearDownTestSuite()
    {
        closeDriver();
    }

    void SetUp() override
    {
        resetFakePlatform();
    }
    void TearDown() override
    {
        EXPECT_TRUE(fakePlatform().assertions.empty()) << fakePlatform().assertions.front();
        std::printf("%zu pairs of texts built\n", built.size());
    }

    // Builds the program of the state, unless its texts were built before. The first complaint ends the test.
    void build(const Choices &choices)
    {
        const ProgramKey key = legalKey(choices);
        const std::string vertex = vertexText(key);
        const std::string fragment = fragmentText(key);
        if (!built.insert(std::hash<std::string>()(vertex + '\0' + fragment)).second) return;
        ASSERT_EQ(buildProgram(vertex, fragment, abilities, expansion), "");
    }

    void buildRandomStates(uint32_t seed, int count)
    {
        std::mt19937 random(seed);
        for (int state = 0; state < count; ++state) {
            Choices choices;
            for (uint32_t aspect = 0; aspect < ASPECTS; ++aspect)
                choices[aspect] = static_cast<uint8_t>(random() % aspectValues(aspect));
            ASSERT_NO_FATAL_FAILURE(build(choices));
        }
    }

    // The translator's way for a driver that has GLSL ES 1.00 only.
    void buildInTheOldestLanguage(uint32_t seed, int count, Expansion wanted)
    {
        const DriverAbilities all = abilities;
        abilities = {.fragmentHighp = all.fragmentHighp, .gatheredVectors = all.gatheredVectors};
        expansion = wanted;
        buildRandomStates(seed, count);
        abilities = all;
    }

    // What an application can load must not get less by gathering, or its values would be lost.
    void compareUniforms(uint32_t seed, int count)
    {
        DriverAbilities plain = abilities;
        plain.gatheredVectors = 0;
        int compared = 0; // some programs end with nothing to load
        std::mt19937 random(seed);
        for (int state = 0; state < count; ++state) {
            Choices choices = {};
            for (uint32_t aspect = 0; aspect < ASPECTS; ++aspect)
                choices[aspect] = static_cast<uint8_t>(random() % aspectValues(aspect));
            const ProgramKey key = legalKey(choices);
            const std::string vertex = vertexText(key);
            const std::string fragment = fragmentText(key);
            const std::set<std::string> alone = uniformsOf(vertex, fragment, plain);
            compared += !alone.empty();
            const std::set<std::string> gathered = uniformsOf(vertex, fragment, abilities);
            for (const std::string &uniform : alone)
                ASSERT_TRUE(gathered.count(uniform) || isUnusedMember(vertex, uniform)) << uniform << "\n" << vertex;
        }
        EXPECT_GT(compared, count / 2);
    }

    // Every pair of values of two different aspects, of which the first is in the given range.
    void buildPairs(uint32_t firstAspect, uint32_t endAspect)
    {
        for (uint32_t a = firstAspect; a < endAspect; ++a)
            for (uint32_t b = a + 1; b < ASPECTS; ++b)
                for (uint32_t va = 0; va < aspectValues(a); ++va)
                    for (uint32_t vb = 0; vb < aspectValues(b); ++vb) {
                        Choices choices = {};
                        choices[a] = static_cast<uint8_t>(va);
                        choices[b] = static_cast<uint8_t>(vb);
                        choosePrerequisites(a, choices);
                        choosePrerequisites(b, choices);
                        ASSERT_NO_FATAL_FAILURE(build(choices));
                    }
    }

    static DriverAbilities abilities;
    Expansion expansion = Expansion::None;
    std::set<size_t> built;
};

DriverAbilities ShaderSweep::abilities;

} // namespace

TEST_F(ShaderSweep, EveryValueAloneBuilds)
{
    for (uint32_t aspect = 0; aspect < ASPECTS; ++aspect) {
        for (uint32_t value = 0; value < aspectValues(aspect); ++value) {
            Choices choices = {};
            choices[aspect] = static_cast<uint8_t>(value);
            ASSERT_NO_FATAL_FAILURE(build(choices));
            choosePrerequisites(aspect, choices);
            ASSERT_NO_FATAL_FAILURE(build(choices));
        }
    }
}

TEST_F(ShaderSweep, EveryPairWithAGeneralAspectBuilds)
{
    buildPairs(0, UNIT0);
}

TEST_F(ShaderSweep, EveryPairWithinTheUnitsBuilds)
{
    buildPairs(UNIT0, ASPECTS);
}

TEST_F(ShaderSweep, RandomStatesBuild)
{
    buildRandomStates(20, 4000);
}

TEST_F(ShaderSweep, GatheringLosesNoUniform)
{
    compareUniforms(21, 700);
}

TEST_F(ShaderSweep, RandomStatesBuildInTheOldestLanguage)
{
    buildInTheOldestLanguage(11, 1000, Expansion::None);
}

// Vertex shaders that run their main twice.
TEST_F(ShaderSweep, RandomStatesBuildForFlatTrianglesInTheOldestLanguage)
{
    buildInTheOldestLanguage(12, 300, Expansion::FlatShading);
}

TEST_F(ShaderSweep, RandomStatesBuildForLinesInTheOldestLanguage)
{
    buildInTheOldestLanguage(13, 300, Expansion::Lines);
}

// The unit's own texture by its number: the same text as GL_TEXTURE, the plain source.
static bool isOwnTexture(uint32_t aspect, uint32_t value)
{
    const uint32_t unit = aspect >= UNIT1 ? 1 : 0;
    const uint32_t arguments = (unit == 1 ? UNIT1 : UNIT0) + static_cast<uint32_t>(ARGUMENTS);
    if (aspect < arguments) return false;
    const uint32_t ofArgument = (aspect - arguments) % ARGUMENT_ASPECTS;
    if (ofArgument != RGB_SOURCE && ofArgument != ALPHA_SOURCE) return false;
    return SOURCE_TEXTURE + value == SOURCE_TEXTURE0 + unit;
}

// Otherwise the sweep would build the same texts over and over.
TEST(LegalKeys, EveryValueOfAnAspectChangesAText)
{
    resetFakePlatform();
    for (uint32_t aspect = 0; aspect < ASPECTS; ++aspect) {
        if (aspect == NO_DIFFUSE) continue; // only together with NO_SPECULAR, which then forbids two-sided colours
        Choices plain = {};
        choosePrerequisites(aspect, plain);
        plain[aspect] = 0;
        const ProgramKey plainStateKey = legalKey(plain);
        for (uint32_t value = 1; value < aspectValues(aspect); ++value) {
            Choices choices = plain;
            choices[aspect] = static_cast<uint8_t>(value);
            if (isOwnTexture(aspect, value)) continue;
            const ProgramKey key = legalKey(choices);
            EXPECT_TRUE(vertexText(key) != vertexText(plainStateKey) ||
                        fragmentText(key) != fragmentText(plainStateKey))
                << "aspect " << aspect << ", value " << value;
        }
    }
}
