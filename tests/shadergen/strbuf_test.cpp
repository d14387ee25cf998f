// SPDX-License-Identifier: MIT
#include "shadergen/strbuf.h"

#include "support/fake_platform.h"

#include <gtest/gtest.h>

namespace {

class TextBuffer : public testing::Test {
protected:
    TextBuffer()
    {
        resetFakePlatform();
    }
    ~TextBuffer() override
    {
        os_free(buffer.text);
    }

    strbuf buffer = {};
};

std::string filled(size_t count)
{
    return std::string(count, 'x');
}

} // namespace

TEST_F(TextBuffer, ResetOfAnUnusedBufferAllocatesNothing)
{
    strbuf_reset(&buffer);
    EXPECT_EQ(buffer.text, nullptr);
    EXPECT_EQ(fakePlatform().allocations, 0u);
}

TEST_F(TextBuffer, FirstGrowthIsAnEmptyTextOf4096Bytes)
{
    strbuf_grow(&buffer);
    ASSERT_NE(buffer.text, nullptr);
    EXPECT_STREQ(buffer.text, "");
    EXPECT_EQ(buffer.capacity, 4096);
}

TEST_F(TextBuffer, EveryGrowthAdds4096BytesAndKeepsTheText)
{
    strbuf_cat(&buffer, "kept");
    strbuf_grow(&buffer);
    strbuf_grow(&buffer);
    EXPECT_EQ(buffer.capacity, 3 * 4096);
    EXPECT_STREQ(buffer.text, "kept");
}

TEST_F(TextBuffer, AppendsStandOneAfterTheOther)
{
    strbuf_cat(&buffer, "one");
    strbuf_cat(&buffer, "");
    strbuf_cat(&buffer, ", two");
    EXPECT_STREQ(buffer.text, "one, two");
    EXPECT_EQ(buffer.length, 8);
}

TEST_F(TextBuffer, ResetKeepsTheMemory)
{
    strbuf_cat(&buffer, "gone");
    const char *text = buffer.text;
    strbuf_reset(&buffer);
    strbuf_cat(&buffer, "new");
    EXPECT_EQ(buffer.text, text);
    EXPECT_STREQ(buffer.text, "new");
    EXPECT_EQ(buffer.capacity, 4096);
    EXPECT_EQ(fakePlatform().allocations, 1u);
}

TEST_F(TextBuffer, TextAndZeroThatJustFitDoNotGrow)
{
    strbuf_cat(&buffer, filled(4000).c_str());
    strbuf_cat(&buffer, filled(95).c_str());
    EXPECT_EQ(buffer.capacity, 4096);
    EXPECT_EQ(std::string(buffer.text), filled(4095));
}

TEST_F(TextBuffer, OneCharacterMoreGrowsOnce)
{
    strbuf_cat(&buffer, filled(4000).c_str());
    strbuf_cat(&buffer, filled(96).c_str());
    EXPECT_EQ(buffer.capacity, 8192);
    EXPECT_EQ(std::string(buffer.text), filled(4096));
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(TextBuffer, FirstAppendMayGrowTwice)
{
    strbuf_cat(&buffer, filled(8191).c_str());
    EXPECT_EQ(buffer.capacity, 8192);
    EXPECT_EQ(std::string(buffer.text), filled(8191));
    EXPECT_EQ(buffer.cut, 0);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(TextBuffer, WhatOneGrowthDoesNotHoldIsAnAssertionAndCut)
{
    strbuf_cat(&buffer, filled(8192).c_str());
    EXPECT_EQ(buffer.capacity, 8192);
    EXPECT_EQ(std::string(buffer.text), filled(8191));
    EXPECT_EQ(buffer.cut, 1);
    ASSERT_EQ(fakePlatform().assertions.size(), 1u);
}

TEST_F(TextBuffer, LaterAppendGrowsOnceOnly)
{
    strbuf_cat(&buffer, "ab");
    strbuf_cat(&buffer, filled(9000).c_str());
    EXPECT_EQ(buffer.capacity, 8192);
    EXPECT_EQ(std::string(buffer.text), "ab" + filled(8189));
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
}

TEST_F(TextBuffer, ResetTakesTheCutMarkAway)
{
    strbuf_cat(&buffer, filled(8192).c_str());
    strbuf_reset(&buffer);
    EXPECT_EQ(buffer.cut, 0);
    EXPECT_STREQ(buffer.text, "");
}

TEST_F(TextBuffer, PrintFormats)
{
    strbuf_print(&buffer, "%s[%i]", "texture", 1);
    strbuf_print(&buffer, ".%c", 'x');
    EXPECT_STREQ(buffer.text, "texture[1].x");
}

TEST_F(TextBuffer, Print4095CharactersFit)
{
    strbuf_print(&buffer, "%s", filled(4095).c_str());
    EXPECT_EQ(std::string(buffer.text), filled(4095));
    EXPECT_EQ(buffer.cut, 0);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(TextBuffer, Print4096CharactersAreAnAssertionAndCut)
{
    strbuf_print(&buffer, "%s", filled(4096).c_str());
    EXPECT_EQ(std::string(buffer.text), filled(4095));
    EXPECT_EQ(buffer.cut, 1);
    EXPECT_EQ(fakePlatform().assertions.size(), 1u);
}

TEST_F(TextBuffer, ListEndsEveryStringWithALineBreak)
{
    const char *const lines[] = {"first", "", "third"};
    cat_strs(&buffer, lines, 3);
    EXPECT_STREQ(buffer.text, "first\n\nthird\n");
}

TEST_F(TextBuffer, EmptyListAppendsNothing)
{
    cat_strs(&buffer, nullptr, 0);
    EXPECT_EQ(buffer.text, nullptr);
}

TEST_F(TextBuffer, WithoutMemoryForTheFirstGrowthTheBufferStaysUnused)
{
    fakePlatform().allocationsUntilFailure = 0;
    strbuf_grow(&buffer);
    EXPECT_EQ(buffer.text, nullptr);
    EXPECT_EQ(buffer.capacity, 0);
}

TEST_F(TextBuffer, AppendWithoutMemoryIsCutWithoutAnAssertion)
{
    fakePlatform().allocationsUntilFailure = 1;
    strbuf_cat(&buffer, filled(4090).c_str());
    strbuf_cat(&buffer, "0123456789");
    EXPECT_EQ(std::string(buffer.text), filled(4090) + "01234");
    EXPECT_EQ(buffer.capacity, 4096);
    EXPECT_EQ(buffer.cut, 1);
    EXPECT_TRUE(fakePlatform().assertions.empty());
}

TEST_F(TextBuffer, AppendTriesTheMemoryTwiceBeforeTheFirstText)
{
    fakePlatform().allocationsUntilFailure = 0;
    strbuf_cat(&buffer, "text");
    EXPECT_STREQ(buffer.text, "text");
    EXPECT_EQ(buffer.capacity, 4096);
    EXPECT_EQ(buffer.cut, 0);
}

TEST_F(TextBuffer, AppendWorksAgainOnceThereIsMemory)
{
    strbuf_cat(&buffer, filled(4095).c_str());
    fakePlatform().allocationsUntilFailure = 0;
    strbuf_cat(&buffer, "lost");
    EXPECT_EQ(std::string(buffer.text), filled(4095));
    strbuf_cat(&buffer, "found");
    EXPECT_EQ(std::string(buffer.text), filled(4095) + "found");
    EXPECT_EQ(buffer.cut, 1); // the text as a whole is not what was asked for
}
