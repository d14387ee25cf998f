// SPDX-License-Identifier: MIT
// Random legal calls and draws through the whole library over the recording backend: every text it asks the backend to
// compile builds on this machine's driver. What shader_sweep_test.cpp assumes about legal keys is not assumed here.
#include "shadergen/driver_programs.h"
#include "support/fake_backend.h"
#include "support/fake_platform.h"
#include "support/random_calls.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace {

class CallSweep : public testing::TestWithParam<bool> {
protected:
    static void SetUpTestSuite()
    {
        setenv("MESA_SHADER_CACHE_DISABLE", "true", 1);
        ASSERT_TRUE(openDriver());
    }
    static void TearDownTestSuite()
    {
        closeDriver();
    }

    // Builds what the draws since the last call asked for, each pair of texts once.
    void buildNewTexts()
    {
        std::vector<std::string> &texts = fakeBackend().shaderTexts;
        ASSERT_EQ(texts.size() % 2, 0u);
        for (size_t i = 0; i < texts.size(); i += 2)
            if (built.insert(std::hash<std::string>()(texts[i] + '\0' + texts[i + 1])).second) {
                ASSERT_EQ(buildProgram(texts[i], texts[i + 1], driverAbilities()), "");
            }
        texts.clear();
    }

    std::set<size_t> built;
};

} // namespace

TEST_P(CallSweep, EveryProgramThatDrawsAskForBuilds)
{
    resetFakeBackend();
    fakeBackend().vendorEntries = GetParam();
    const TestContext context;
    glEnableClientState(GL_VERTEX_ARRAY);
    std::mt19937 seeds(20);
    for (int i = 0; i < 4500; ++i) {
        changeAtRandom(static_cast<uint32_t>(seeds()));
        drawAtRandom(static_cast<uint32_t>(seeds()));
        ASSERT_NO_FATAL_FAILURE(buildNewTexts()) << "after " << i << " changes";
        takeCalls();
    }
    EXPECT_EQ(fakePlatform().assertions, std::vector<std::string>());
    EXPECT_GT(built.size(), 1000u);
    std::printf("%zu pairs of texts built\n", built.size());
}

INSTANTIATE_TEST_SUITE_P(Backends, CallSweep, testing::Bool(),
                         [](const auto &with) { return with.param ? "WithVendorEntries" : "WithoutVendorEntries"; });
