// SPDX-License-Identifier: MIT
#include "shadergen/program_cache.h"

#include "frontend/backend.h"
#include "frontend/context.h"
#include "shadergen/generators.h"
#include "shadergen/locations.h"
#include "shadergen/program_log.h"
#include "shadergen/program_tree.h"
#include "vsp.h"

#include <bit>
#include <cstring>

namespace {

AskedState askedState(const GLIContext *ctx)
{
    const LightingState &lighting = ctx->lighting;
    return {.key = ctx->key,
            .directionalMask = lighting.directionalMask,
            .pointMask = lighting.pointMask,
            .spotMask = lighting.spotMask,
            .attenuationActive = ctx->pointLine.attenuationActive};
}

constexpr uint32_t kKeyWords = sizeof(ShaderStateBitfield) / sizeof(uint64_t);

uint64_t wordAt(const ShaderStateBitfield &key, uint32_t index)
{
    uint64_t word;
    std::memcpy(&word, reinterpret_cast<const char *>(&key) + index * sizeof(word), sizeof(word));
    return word;
}

// Whether a context asks for the same again: in line, by whole words, with one branch.
bool isAsked(const AskedState &asked, const GLIContext *ctx)
{
    const LightingState &lighting = ctx->lighting;
    uint64_t difference = (asked.directionalMask ^ lighting.directionalMask) | (asked.pointMask ^ lighting.pointMask) |
                          (asked.spotMask ^ lighting.spotMask) |
                          (asked.attenuationActive ^ ctx->pointLine.attenuationActive);
    for (uint32_t i = 0; i < kKeyWords; ++i)
        difference |= wordAt(asked.key, i) ^ wordAt(ctx->key, i);
    return difference == 0;
}

// The place of what the context asks for among the recent lookups.
RecentLookup &recentLookup(const GLIContext *ctx)
{
    const LightingState &lighting = ctx->lighting;
    uint64_t hash = lighting.directionalMask ^ lighting.pointMask << 8 ^ lighting.spotMask << 16 ^
                    ctx->pointLine.attenuationActive << 24;
    for (uint32_t i = 0; i < kKeyWords; ++i)
        hash = std::rotl(hash, 7) ^ wordAt(ctx->key, i);
    constexpr uint64_t kGoldenRatio = 0x9E3779B97F4A7C15; // spreads the bits into the highest (Knuth, TAOCP 6.4)
    return ctx->shaderCache->recent[hash * kGoldenRatio >> (64 - std::countr_zero(kRecentLookups))];
}

void unlinkUse(ShaderCacheNode *node)
{
    node->previous->next = node->next;
    node->next->previous = node->previous;
}

void appendMostRecent(ShaderCache *cache, ShaderCacheNode *node)
{
    node->next = &cache->lru;
    node->previous = cache->lru.previous;
    cache->lru.previous->next = node;
    cache->lru.previous = node;
}

// A shader of the given text, compiled; its status is not asked for: a faulty program shows at its draws.
GLuint buildShader(GLenum type, const char *text)
{
    const GLuint shader = glCreateShader_2_0(type);
    glShaderSource_2_0(shader, 1, &text, nullptr);
    glCompileShader_2_0(shader);
    return shader;
}

// Fills the entry for the wanted key. Returns 0 when there was no memory for a text; nothing is left in the backend
// then.
uint32_t buildProgram(GLIContext *ctx, ShaderProgramEntry *entry)
{
    const char *text = GenerateVertexShader(ctx);
    if (!text) return 0;
    entry->vertexShader = buildShader(GL_VERTEX_SHADER, text);
    text = GenerateFragmentShader(ctx);
    if (!text) {
        glDeleteShader_2_0(entry->vertexShader);
        return 0;
    }
    entry->fragmentShader = buildShader(GL_FRAGMENT_SHADER, text);
    entry->key = ctx->shaderCache->wanted;

    entry->program = glCreateProgram_2_0();
    glBindAttribLocation_2_0(entry->program, 0, "gles_Vertex");
    glAttachShader_2_0(entry->program, entry->fragmentShader);
    glAttachShader_2_0(entry->program, entry->vertexShader);
    glLinkProgram_2_0(entry->program);
    setVariableLocation(ctx, entry);
    return 1;
}

void destroyProgram(const ShaderProgramEntry &entry)
{
    glDetachShader_2_0(entry.program, entry.fragmentShader);
    glDetachShader_2_0(entry.program, entry.vertexShader);
    glDeleteShader_2_0(entry.fragmentShader);
    glDeleteShader_2_0(entry.vertexShader);
    glDeleteProgram_2_0(entry.program);
}

// Makes the least recently used entry give its node back. The deletion may have moved another entry into that entry's
// old node, and with it to the least recent place: it is the next to go.
ShaderCacheNode *evictLeastRecent(ShaderCache *cache)
{
    for (RecentLookup &recent : cache->recent)
        recent.node = nullptr;
    const ProgramKey oldest = cache->lru.next->entry.key;
    ShaderCacheNode *node = removeProgram(&cache->root, oldest);
    unlinkUse(node);
    destroyProgram(node->entry);
    return node;
}

// A node outside tree and list: an evicted one when the cache is full, else a new one. Null without memory.
ShaderCacheNode *takeNode(ShaderCache *cache)
{
    if (cache->nodeCount == cache->capacity) return evictLeastRecent(cache);
    auto *node = static_cast<ShaderCacheNode *>(os_malloc(sizeof(ShaderCacheNode)));
    if (node) ++cache->nodeCount;
    return node;
}

// A node with the program of the wanted key, in the tree; null without memory.
ShaderCacheNode *addProgram(GLIContext *ctx)
{
    ShaderCache *cache = ctx->shaderCache;
    ShaderCacheNode *node = takeNode(cache);
    if (!node) return nullptr;
    if (!buildProgram(ctx, &node->entry)) {
        os_free(node);
        --cache->nodeCount;
        return nullptr;
    }
    insertProgram(&cache->root, node);
    return node;
}

// Makes a node that is outside the list the current one. Returns whether it has a program.
bool enterProgram(GLIContext *ctx, ShaderCacheNode *node)
{
    if (node) appendMostRecent(ctx->shaderCache, node);
    if (!node || node->entry.vertexShader == 0 || node->entry.fragmentShader == 0) {
        ctx->currentEntry = nullptr;
        glUseProgram_2_0(0);
        return false;
    }
    ctx->currentEntry = &node->entry;
    glUseProgram_2_0(node->entry.program);
    writeRequestedProgramLogs(node->entry);
    return true;
}

// Searches the tree for the program of the context's key, or builds one, and binds it.
[[gnu::noinline]] void searchProgram(GLIContext *ctx)
{
    ShaderCache *cache = ctx->shaderCache;
    cache->wanted = {normalizedState(ctx->key), generationInputs(ctx)};
    if (ctx->currentEntry && compareKeys(ctx->currentEntry->key, cache->wanted) == 0) {
        ++cache->hitCount;
        recentLookup(ctx) = {askedState(ctx), cache->lru.previous}; // the current program's
        return;
    }
    ShaderCacheNode *node = findProgram(cache->root, cache->wanted);
    if (node) {
        ++cache->hitCount;
        unlinkUse(node);
    } else {
        ++cache->missCount;
        node = addProgram(ctx);
    }
    if (enterProgram(ctx, node)) recentLookup(ctx) = {askedState(ctx), node};
}

} // namespace

void initShaderCache(GLIContext *ctx)
{
    ctx->currentEntry = nullptr;
    ctx->shaderText = {};
    auto *cache = static_cast<ShaderCache *>(os_malloc(sizeof(ShaderCache)));
    ctx->shaderCache = cache;
    if (!cache) return;
    os_memset(cache, 0, sizeof(ShaderCache));
    cache->capacity = kCacheCapacity;
    cache->lru.next = cache->lru.previous = &cache->lru;
}

void destroyShaderCache(GLIContext *ctx)
{
    ShaderCache *cache = ctx->shaderCache;
    if (!cache) return;

    for (ShaderCacheNode *node = cache->lru.next; node != &cache->lru;) {
        ShaderCacheNode *next = node->next;
        os_free(node);
        node = next;
    }
    os_free(cache);
    ctx->shaderCache = nullptr;
    ctx->currentEntry = nullptr;
}

void gliSetShaderProgram(GLIContext *ctx)
{
    ShaderCache *cache = ctx->shaderCache;
    if (!cache) return;

    const RecentLookup &recent = recentLookup(ctx);
    if (!recent.node || !isAsked(recent.asked, ctx)) return searchProgram(ctx);
    ++cache->hitCount;
    if (&recent.node->entry == ctx->currentEntry) return;
    unlinkUse(recent.node);
    enterProgram(ctx, recent.node);
}
