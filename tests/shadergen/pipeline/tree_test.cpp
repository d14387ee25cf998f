// SPDX-License-Identifier: MIT
#include "shadergen/program_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

// Keys whose order by bytes is not the order of their numbers: the differing bytes lie far apart.
ProgramKey keyOf(uint32_t number)
{
    ProgramKey key = {};
    key.inputs.lightKinds = number & 0xFFFF;
    key.state.unit[0].enabled = number >> 2 & 1;
    key.state.fogMode = number & 3;
    key.state.lightCount = number >> 4 & 0xF;
    return key;
}

std::string bytesOf(const ProgramKey &key)
{
    return {reinterpret_cast<const char *>(&key), sizeof(key)};
}

// A tree beside a model of it: what each key's entry holds.
class ProgramTree : public testing::Test {
protected:
    void insert(uint32_t number)
    {
        auto node = std::make_unique<ShaderCacheNode>();
        std::memset(static_cast<void *>(node.get()), 0x5A, sizeof(ShaderCacheNode)); // as recycled memory
        node->entry.key = keyOf(number);
        node->entry.program = number;
        insertProgram(&root, node.get());
        model[bytesOf(keyOf(number))] = number;
        nodes.push_back(std::move(node));
    }

    /// Removes a number that is in the tree; checks that the returned node holds it and frees that node.
    void remove(uint32_t number)
    {
        const ProgramKey key = keyOf(number);
        const ShaderCacheNode *holder = findProgram(root, key);
        ASSERT_NE(holder, nullptr);
        const std::string above = smallerNeighbour(bytesOf(key));
        ShaderCacheNode *node = removeProgram(&root, key);
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->entry.program, number);
        if (node != holder) {
            // The exchange brings the next smaller key's entry into the holder.
            EXPECT_EQ(bytesOf(holder->entry.key), above);
            EXPECT_EQ(holder->entry.program, model.at(above));
        }
        model.erase(bytesOf(key));
        std::erase_if(nodes, [node](const auto &owned) { return owned.get() == node; });
    }

    std::string smallerNeighbour(const std::string &key) const
    {
        auto at = model.find(key);
        return at == model.begin() ? "" : std::prev(at)->first;
    }

    /// Number of black nodes from here to any leaf; fails on a broken rule.
    uint32_t checkSubtree(const ShaderCacheNode *node, bool parentRed, std::vector<std::string> &keys)
    {
        if (!node) return 1;
        EXPECT_LE(node->red, 1u);
        EXPECT_FALSE(parentRed && node->red) << "red below red";
        const uint32_t left = checkSubtree(node->child[0], node->red, keys);
        keys.push_back(bytesOf(node->entry.key));
        const uint32_t right = checkSubtree(node->child[1], node->red, keys);
        EXPECT_EQ(left, right) << "unequal black heights";
        return left + !node->red;
    }

    void check()
    {
        std::vector<std::string> keys;
        EXPECT_FALSE(root && root->red) << "the root is black";
        checkSubtree(root, false, keys);
        std::vector<std::string> expected;
        for (const auto &[key, number] : model)
            expected.push_back(key);
        ASSERT_EQ(keys, expected) << "not the keys of the model in their order";
    }

    ShaderCacheNode *root = nullptr;
    std::map<std::string, uint32_t> model; // keys in memcmp order: std::string compares as unsigned bytes
    std::vector<std::unique_ptr<ShaderCacheNode>> nodes;
};

} // namespace

TEST_F(ProgramTree, EmptyTreeFindsAndRemovesNothing)
{
    EXPECT_EQ(findProgram(nullptr, keyOf(1)), nullptr);
    EXPECT_EQ(removeProgram(&root, keyOf(1)), nullptr);
    EXPECT_EQ(root, nullptr);
}

TEST_F(ProgramTree, FirstNodeIsABlackRoot)
{
    insert(1);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->red, 0u);
    EXPECT_EQ(root->child[0], nullptr);
    EXPECT_EQ(root->child[1], nullptr);
    remove(1);
    EXPECT_EQ(root, nullptr);
}

TEST_F(ProgramTree, LargerKeysGoRight)
{
    insert(0x10);
    insert(0x20);
    const ShaderCacheNode *right = root->child[1];
    const ShaderCacheNode *left = root->child[0];
    ASSERT_NE(left == nullptr, right == nullptr);
    EXPECT_TRUE(!right || bytesOf(right->entry.key) > bytesOf(root->entry.key));
    EXPECT_TRUE(!left || bytesOf(left->entry.key) < bytesOf(root->entry.key));
}

TEST_F(ProgramTree, MissingKeyIsNotRemovedFromAFilledTree)
{
    for (uint32_t number = 0; number < 64; ++number)
        insert(2 * number);
    for (uint32_t number = 0; number < 64; ++number) {
        EXPECT_EQ(removeProgram(&root, keyOf(2 * number + 1)), nullptr);
        check();
    }
}

TEST_F(ProgramTree, AscendingAndDescendingFillsStayBalanced)
{
    for (uint32_t number = 0; number < 64; ++number) {
        insert(number);
        check();
    }
    for (uint32_t number = 64; number-- > 0;) {
        remove(number);
        check();
    }
    for (uint32_t number = 64; number-- > 0;)
        insert(number);
    check();
    for (uint32_t number = 0; number < 64; ++number) {
        remove(number);
        check();
    }
    EXPECT_EQ(root, nullptr);
}

TEST_F(ProgramTree, TenThousandRandomStepsKeepOrderAndColours)
{
    std::mt19937 random(20250101);
    std::vector<uint32_t> present;
    for (uint32_t step = 0; step < 10000; ++step) {
        const bool grow = present.empty() || (present.size() < 64 && random() % 2 == 0);
        if (grow) {
            uint32_t number;
            do
                number = random() % 4096;
            while (model.count(bytesOf(keyOf(number))) != 0);
            insert(number);
            present.push_back(number);
        } else {
            const size_t at = random() % present.size();
            remove(present[at]);
            present.erase(present.begin() + static_cast<std::ptrdiff_t>(at));
        }
        ASSERT_NO_FATAL_FAILURE(check()) << "step " << step;
        const uint32_t asked = random() % 4096;
        const ShaderCacheNode *found = findProgram(root, keyOf(asked));
        ASSERT_EQ(found != nullptr, model.count(bytesOf(keyOf(asked))) != 0);
        ASSERT_TRUE(!found || found->entry.program == asked);
    }
}
