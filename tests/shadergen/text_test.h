// SPDX-License-Identifier: MIT
// What tests of generated texts share.
#pragma once

#include "shadergen/shader_texts.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <utility>

/// A test of texts of a key, which starts as the plain one.
class TextTest : public testing::Test {
protected:
    TextTest()
    {
        resetFakePlatform();
    }
    ~TextTest() override
    {
        EXPECT_EQ(fakePlatform().assertions, expectedAssertions);
    }

    /// The assertions since the last call, or since the test began.
    static std::vector<std::string> takeAssertions()
    {
        return std::exchange(fakePlatform().assertions, {});
    }

    ProgramKey key = plainKey();
    std::vector<std::string> expectedAssertions;
};
