// SPDX-License-Identifier: MIT
// Top-down red-black tree: every step down leaves a tree that needs no repair above it (Guibas and Sedgewick, "A
// dichromatic framework for balanced trees", 1978).
#include "shadergen/program_tree.h"

#include <cstring>

namespace {

// The child to go to from a node on the way to a key: larger keys are right.
uint32_t directionTo(const ShaderCacheNode *node, const ProgramKey &key)
{
    return compareKeys(node->entry.key, key) < 0;
}

bool isRed(const ShaderCacheNode *node)
{
    return node && node->red;
}

// The child on the other side becomes the root of the subtree, in black over the reddened node.
ShaderCacheNode *rotate(ShaderCacheNode *node, uint32_t direction)
{
    ShaderCacheNode *up = node->child[!direction];
    node->child[!direction] = up->child[direction];
    up->child[direction] = node;
    node->red = 1;
    up->red = 0;
    return up;
}

ShaderCacheNode *rotateTwice(ShaderCacheNode *node, uint32_t direction)
{
    node->child[!direction] = rotate(node->child[!direction], !direction);
    return rotate(node, direction);
}

void exchangeEntries(ShaderCacheNode *a, ShaderCacheNode *b)
{
    const ShaderProgramEntry entry = a->entry;
    a->entry = b->entry;
    b->entry = entry;
}

} // namespace

int compareKeys(const ProgramKey &a, const ProgramKey &b)
{
    return std::memcmp(&a, &b, sizeof(ProgramKey));
}

ShaderCacheNode *findProgram(ShaderCacheNode *root, const ProgramKey &key)
{
    ShaderCacheNode *node = root;
    while (node) {
        const int order = compareKeys(node->entry.key, key);
        if (order == 0) return node;
        node = node->child[order < 0];
    }
    return nullptr;
}

void insertProgram(ShaderCacheNode **root, ShaderCacheNode *node)
{
    node->child[0] = node->child[1] = nullptr;
    node->red = 1;

    ShaderCacheNode head = {}; // false parent of the root
    head.child[1] = *root;
    ShaderCacheNode *greatGrandparent = &head;
    ShaderCacheNode *grandparent = nullptr;
    ShaderCacheNode *parent = &head;
    ShaderCacheNode *at = head.child[1];
    uint32_t direction = 1;
    uint32_t lastDirection = 1;

    for (;;) {
        const bool placed = at == nullptr;
        if (placed) {
            parent->child[direction] = at = node;
        } else if (isRed(at->child[0]) && isRed(at->child[1])) {
            at->red = 1;
            at->child[0]->red = 0;
            at->child[1]->red = 0;
        }
        if (grandparent && isRed(at) && isRed(parent)) {
            const uint32_t side = greatGrandparent->child[1] == grandparent;
            greatGrandparent->child[side] = at == parent->child[lastDirection]
                                                ? rotate(grandparent, !lastDirection)
                                                : rotateTwice(grandparent, !lastDirection);
        }
        if (placed) break;

        lastDirection = direction;
        direction = directionTo(at, node->entry.key);
        if (grandparent) greatGrandparent = grandparent;
        grandparent = parent;
        parent = at;
        at = at->child[direction];
    }
    *root = head.child[1];
    (*root)->red = 0;
}

ShaderCacheNode *removeProgram(ShaderCacheNode **root, const ProgramKey &key)
{
    if (!*root) return nullptr;

    ShaderCacheNode head = {}; // false parent of the root
    head.child[1] = *root;
    ShaderCacheNode *grandparent = nullptr;
    ShaderCacheNode *parent = nullptr;
    ShaderCacheNode *at = &head;
    ShaderCacheNode *found = nullptr;
    uint32_t direction = 1;

    while (at->child[direction]) {
        const uint32_t lastDirection = direction;
        grandparent = parent;
        parent = at;
        at = at->child[direction];
        direction = directionTo(at, key);
        if (compareKeys(at->entry.key, key) == 0) found = at;

        // Push a red node down, so that the node at the bottom can be unlinked without repair.
        if (isRed(at) || isRed(at->child[direction])) continue;
        if (isRed(at->child[!direction])) {
            parent = parent->child[lastDirection] = rotate(at, direction);
            continue;
        }
        ShaderCacheNode *sibling = parent->child[!lastDirection];
        if (!sibling) continue;
        if (!isRed(sibling->child[0]) && !isRed(sibling->child[1])) {
            parent->red = 0;
            sibling->red = 1;
            at->red = 1;
            continue;
        }
        const uint32_t side = grandparent->child[1] == parent;
        grandparent->child[side] =
            isRed(sibling->child[lastDirection]) ? rotateTwice(parent, lastDirection) : rotate(parent, lastDirection);
        ShaderCacheNode *top = grandparent->child[side];
        at->red = 1;
        top->red = 1;
        top->child[0]->red = 0;
        top->child[1]->red = 0;
    }

    if (found) {
        if (found != at) exchangeEntries(found, at);
        parent->child[parent->child[1] == at] = at->child[at->child[0] == nullptr];
    }
    *root = head.child[1];
    if (*root) (*root)->red = 0;
    return found ? at : nullptr;
}
