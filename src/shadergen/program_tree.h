// SPDX-License-Identifier: MIT
// The red-black tree of cached programs, ordered by the bytes of their keys. Insertion and deletion walk down once.
#pragma once

#include "shadergen/program_cache.h"

/// Order of the tree: below, at or above 0 as memcmp of the keys' bytes.
int compareKeys(const ProgramKey &a, const ProgramKey &b);

/// The node whose key equals the given one; null when there is none.
ShaderCacheNode *findProgram(ShaderCacheNode *root, const ProgramKey &key);

/// Links a node whose entry's key is not in the tree yet.
void insertProgram(ShaderCacheNode **root, ShaderCacheNode *node);

/// Removes the entry with the given key and returns the node that left the tree, which then holds that entry. When that
/// is another node than the one which held it, the two have exchanged their entries; list links stay where they are.
/// Null when no entry has the key.
ShaderCacheNode *removeProgram(ShaderCacheNode **root, const ProgramKey &key);
