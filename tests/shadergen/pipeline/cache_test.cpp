// SPDX-License-Identifier: MIT
#include "frontend/backend.h"
#include "shadergen/pipeline/pipeline_test.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>

namespace {

class ProgramCache : public PipelineTest {
protected:
    /// A state of its own for each number below 768: fog, alpha test, flat shading, texture environments.
    void setState(uint32_t number)
    {
        ctx->keyDirty = 0;
        ctx->fog.enabled = 1;
        ctx->key.fogMode = 1 + number % 3;
        number /= 3;
        ctx->key.alphaFunc = number & 7;
        ctx->key.flatShading = number >> 3 & 1;
        ctx->key.colorMaterial = number >> 4 & 1;
        ctx->key.kept = number >> 5 & 3;
        ctx->key.alphaFactor = number >> 7 & 1;
    }
    void drawState(uint32_t number)
    {
        setState(number);
        draw();
    }
    /// A text buffer that any text must grow. (A missing one is tried twice, so that one failure heals itself.)
    void shrinkShaderText()
    {
        const int untilFailure = std::exchange(fakePlatform().allocationsUntilFailure, -1);
        os_free(ctx->shaderText.text);
        ctx->shaderText = {.text = static_cast<char *>(os_malloc(16)), .capacity = 16, .length = 0, .cut = 0};
        fakePlatform().allocationsUntilFailure = untilFailure;
    }
    /// Programs in the order of their last use, the least recent first.
    std::vector<GLuint> useOrder() const
    {
        std::vector<GLuint> programs;
        for (const ShaderCacheNode *node = ctx->shaderCache->lru.next; node != &ctx->shaderCache->lru;
             node = node->next) {
            EXPECT_EQ(node->next->previous, node);
            programs.push_back(node->entry.program);
        }
        return programs;
    }
    /// All entries of the tree by the bytes of their keys.
    std::map<std::string, const ShaderProgramEntry *> entries() const
    {
        std::map<std::string, const ShaderProgramEntry *> all;
        collect(ctx->shaderCache->root, all);
        return all;
    }
    static void collect(const ShaderCacheNode *node, std::map<std::string, const ShaderProgramEntry *> &all)
    {
        if (!node) return;
        collect(node->child[0], all);
        all[{reinterpret_cast<const char *>(&node->entry.key), sizeof(ProgramKey)}] = &node->entry;
        collect(node->child[1], all);
    }
    /// The calls of the last draw that make, bind or destroy programs.
    static Calls programCalls()
    {
        Calls found;
        for (const std::string &call : takeCalls()) {
            for (const char *part : {"Shader", "Program(", "BindAttribLocation"}) {
                if (call.find(part) == std::string::npos) continue;
                found.push_back(call.rfind("glShaderSource", 0) == 0 ? "glShaderSource" : call);
                break;
            }
        }
        return found;
    }
    static std::string name(const char *function, std::initializer_list<GLuint> names)
    {
        std::string text = std::string(function) + "(";
        for (const GLuint one : names) {
            if (text.back() != '(') text += ", ";
            text += std::to_string(one);
        }
        return text += ")";
    }
    /// The calls that make a program of three fresh names.
    static Calls building(GLuint vertexShader, GLuint fragmentShader, GLuint program)
    {
        return {"glCreateShader(0x8b31)",
                "glShaderSource",
                name("glCompileShader", {vertexShader}),
                "glCreateShader(0x8b30)",
                "glShaderSource",
                name("glCompileShader", {fragmentShader}),
                "glCreateProgram()",
                std::string("glBindAttribLocation(").append(std::to_string(program)).append(", 0, \"gles_Vertex\")"),
                name("glAttachShader", {program, fragmentShader}),
                name("glAttachShader", {program, vertexShader}),
                name("glLinkProgram", {program})};
    }
    static Calls destroying(const ShaderProgramEntry &entry)
    {
        return {name("glDetachShader", {entry.program, entry.fragmentShader}),
                name("glDetachShader", {entry.program, entry.vertexShader}),
                name("glDeleteShader", {entry.fragmentShader}), name("glDeleteShader", {entry.vertexShader}),
                name("glDeleteProgram", {entry.program})};
    }
};

} // namespace

TEST_F(ProgramCache, StartsEmptyWithRoomFor64)
{
    const ShaderCache &cache = *ctx->shaderCache;
    EXPECT_EQ(cache.root, nullptr);
    EXPECT_EQ(cache.lru.next, &cache.lru);
    EXPECT_EQ(cache.lru.previous, &cache.lru);
    EXPECT_EQ(cache.capacity, 64u);
    EXPECT_EQ(cache.nodeCount, 0u);
    EXPECT_EQ(cache.hitCount, 0u);
    EXPECT_EQ(cache.missCount, 0u);
    EXPECT_EQ(ctx->currentEntry, nullptr);
}

TEST_F(ProgramCache, InitialisingClearsTheCurrentEntryAndTheText)
{
    destroyShaderCache(ctx);
    EXPECT_EQ(ctx->shaderCache, nullptr);
    ctx->currentEntry = reinterpret_cast<ShaderProgramEntry *>(&ctx->key);
    ctx->shaderText = {.text = reinterpret_cast<char *>(&ctx->key), .capacity = 1, .length = 2, .cut = 1};
    initShaderCache(ctx);
    EXPECT_EQ(ctx->currentEntry, nullptr);
    EXPECT_EQ(ctx->shaderText.text, nullptr);
    EXPECT_EQ(ctx->shaderText.capacity, 0);
    EXPECT_EQ(ctx->shaderText.length, 0);
}

TEST_F(ProgramCache, FirstDrawBuildsAndBindsAProgram)
{
    draw();
    Calls expected = building(1, 2, 3);
    expected.push_back("glUseProgram(3)");
    EXPECT_EQ(programCalls(), expected);
    ASSERT_NE(ctx->currentEntry, nullptr);
    EXPECT_EQ(ctx->currentEntry->program, 3u);
    EXPECT_EQ(ctx->currentEntry->vertexShader, 1u);
    EXPECT_EQ(ctx->currentEntry->fragmentShader, 2u);
    const ProgramKey key = {normalizedState(ctx->key), generationInputs(ctx)};
    EXPECT_EQ(std::memcmp(&ctx->currentEntry->key, &key, sizeof(key)), 0);
    ASSERT_EQ(fakeBackend().shaderTexts.size(), 2u);
    EXPECT_NE(fakeBackend().shaderTexts[0].find("gl_Position"), std::string::npos);
    EXPECT_NE(fakeBackend().shaderTexts[1].find("gl_FragColor"), std::string::npos);
}

TEST_F(ProgramCache, SecondDrawWithTheSameStateIsAHitWithoutProgramCalls)
{
    draw();
    takeCalls();
    draw();
    EXPECT_EQ(programCalls(), Calls{});
    EXPECT_EQ(ctx->shaderCache->missCount, 1u);
    EXPECT_EQ(ctx->shaderCache->hitCount, 1u);
    EXPECT_EQ(ctx->shaderCache->nodeCount, 1u);
}

TEST_F(ProgramCache, ReturningToAnEarlierStateBindsItsProgram)
{
    drawState(0);
    drawState(1);
    takeCalls();
    drawState(0);
    EXPECT_EQ(programCalls(), Calls{"glUseProgram(3)"});
    EXPECT_EQ(ctx->shaderCache->missCount, 2u);
    EXPECT_EQ(ctx->shaderCache->hitCount, 1u);
    EXPECT_EQ(useOrder(), (std::vector<GLuint>{6, 3}));
}

TEST_F(ProgramCache, StateWithoutEffectSharesTheProgram)
{
    draw();
    glEnable(GL_LIGHT0);
    glEnable(GL_NORMALIZE);
    glShadeModel(GL_SMOOTH);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glWeightPointerOES(3, GL_BYTE, 0, nullptr);
    draw();
    EXPECT_EQ(ctx->shaderCache->missCount, 1u);
    EXPECT_EQ(ctx->shaderCache->hitCount, 1u);
}

TEST_F(ProgramCache, InputsBesideTheKeyMakeProgramsOfTheirOwn)
{
    enableLights(1);
    draw();
    const ShaderStateBitfield directional = ctx->key;
    const GLuint program = ctx->currentEntry->program;
    // Light 1 instead of light 0, a point instead of a directional one beside it: only the kinds by light tell.
    glEnable(GL_LIGHT1);
    const GLfloat point[] = {0, 0, 1, 1};
    glLightfv(GL_LIGHT1, GL_POSITION, point);
    draw();
    const ShaderStateBitfield both = ctx->key;
    const GLuint first = ctx->currentEntry->program;
    EXPECT_NE(first, program);
    EXPECT_NE(std::memcmp(&directional, &both, sizeof(both)), 0);
    glLightfv(GL_LIGHT0, GL_POSITION, point);
    const GLfloat direction[] = {0, 0, 1, 0};
    glLightfv(GL_LIGHT1, GL_POSITION, direction);
    draw();
    EXPECT_EQ(std::memcmp(&both, &ctx->key, sizeof(both)), 0) << "the 72 bytes do not tell them apart";
    EXPECT_NE(ctx->currentEntry->program, first);

    const GLfloat attenuation[] = {0, 1, 0};
    const uint32_t misses = ctx->shaderCache->missCount;
    const ShaderStateBitfield lit = ctx->key;
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation);
    draw();
    EXPECT_EQ(std::memcmp(&lit, &ctx->key, sizeof(lit)), 0);
    EXPECT_EQ(ctx->shaderCache->missCount, misses + 1);
}

TEST_F(ProgramCache, LightsOfTheSameKindsInTheSameOrderShareAProgram)
{
    const GLfloat point[] = {0, 0, 1, 1};
    for (const GLenum light : {GL_LIGHT0, GL_LIGHT3, GL_LIGHT7}) {
        glLightfv(light, GL_POSITION, point);
        glLightf(light, GL_SPOT_CUTOFF, 30);
    }
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT1); // directional
    glEnable(GL_LIGHT3); // spot
    draw();
    const GLuint program = ctx->currentEntry->program;
    glDisable(GL_LIGHT3);
    glEnable(GL_LIGHT7);
    draw();
    EXPECT_EQ(ctx->currentEntry->program, program) << "1 and 7 instead of 1 and 3";
    glDisable(GL_LIGHT7);
    glEnable(GL_LIGHT0);
    draw();
    EXPECT_NE(ctx->currentEntry->program, program) << "the spot light comes first now";
}

TEST_F(ProgramCache, PaletteUnitsHaveProgramsOfTheirOwn)
{
    for (const GLint units : {1, 2, 3, 4}) {
        enablePalette(units);
        draw();
        EXPECT_EQ(ctx->shaderCache->missCount, static_cast<uint32_t>(units));
    }
}

TEST_F(ProgramCache, SixtyFifthStateEvictsTheLeastRecent)
{
    for (uint32_t state = 0; state < 64; ++state)
        drawState(state);
    EXPECT_EQ(ctx->shaderCache->nodeCount, 64u);
    EXPECT_EQ(ctx->shaderCache->missCount, 64u);
    EXPECT_EQ(callsOf("glDeleteProgram"), Calls{});
    const std::vector<GLuint> before = useOrder();
    ASSERT_EQ(before.size(), 64u);
    const ShaderProgramEntry oldest = ctx->shaderCache->lru.next->entry;
    EXPECT_EQ(oldest.program, 3u);
    const size_t blocks = fakePlatform().liveBlocks;
    const GLuint next = fakeBackend().nextName;

    takeCalls();
    drawState(64);
    Calls expected = destroying(oldest);
    for (const std::string &call : building(next, next + 1, next + 2))
        expected.push_back(call);
    expected.push_back(name("glUseProgram", {next + 2}));
    EXPECT_EQ(programCalls(), expected);
    EXPECT_EQ(ctx->shaderCache->nodeCount, 64u);
    EXPECT_EQ(ctx->shaderCache->missCount, 65u);
    EXPECT_EQ(fakePlatform().liveBlocks, blocks) << "the node's memory is used again";
    EXPECT_EQ(entries().size(), 64u);
    EXPECT_EQ(useOrder().back(), next + 2);
}

TEST_F(ProgramCache, UseKeepsAProgramFromEviction)
{
    for (uint32_t state = 0; state < 64; ++state)
        drawState(state);
    const GLuint first = 3;
    drawState(0);
    EXPECT_EQ(useOrder().back(), first);
    for (uint32_t state = 64; state < 74; ++state) {
        drawState(state);
        drawState(0);
    }
    EXPECT_EQ(ctx->currentEntry->program, first);
    EXPECT_EQ(callsOf("glDeleteProgram").size(), 10u);
}

TEST_F(ProgramCache, EvictionExchangesAnEntryIntoTheLeastRecentPlace)
{
    // The victim is always the entry in the least recent place. When the tree gives up another node, that node's entry
    // moves to the victim's place and is the next to go; every other place stays.
    for (uint32_t state = 0; state < 64; ++state)
        drawState(state);
    uint32_t exchanges = 0;
    for (uint32_t state = 64; state < 700; ++state) {
        std::vector<GLuint> expected = useOrder();
        const auto before = entries();
        const ProgramKey victimKey = ctx->shaderCache->lru.next->entry.key;
        const auto victim = before.find({reinterpret_cast<const char *>(&victimKey), sizeof(victimKey)});
        ASSERT_NE(victim, before.end());
        const GLuint smallerNeighbour = victim == before.begin() ? 0 : std::prev(victim)->second->program;
        takeCalls();
        drawState(state);
        EXPECT_EQ(callsOf("glDeleteProgram"), Calls{name("glDeleteProgram", {expected.front()})});

        std::vector<GLuint> after = useOrder();
        ASSERT_EQ(after.size(), 64u);
        EXPECT_EQ(after.back(), ctx->currentEntry->program);
        after.pop_back();
        expected.erase(expected.begin());
        if (after.front() != expected.front()) {
            ++exchanges;
            EXPECT_EQ(after.front(), smallerNeighbour);
            expected.erase(std::find(expected.begin(), expected.end(), smallerNeighbour));
            expected.insert(expected.begin(), smallerNeighbour);
        }
        ASSERT_EQ(after, expected) << "state " << state;
    }
    EXPECT_GT(exchanges, 0u);
}

TEST_F(ProgramCache, LongRandomRunFindsTheRightProgramAndLeaksNone)
{
    std::mt19937 random(7);
    std::map<uint32_t, GLuint> programOf; // programs alive, by state
    std::map<GLuint, uint32_t> stateOf;
    uint32_t misses = 0;
    for (uint32_t step = 0; step < 10000; ++step) {
        // A small working set most of the time, and excursions.
        const uint32_t state = random() % 4 ? random() % 48 : random() % 768;
        takeCalls();
        drawState(state);
        for (const std::string &call : callsOf("glDeleteProgram")) {
            const auto gone = static_cast<GLuint>(std::stoul(call.substr(16)));
            ASSERT_EQ(stateOf.count(gone), 1u);
            programOf.erase(stateOf[gone]);
            stateOf.erase(gone);
        }
        ASSERT_NE(ctx->currentEntry, nullptr);
        const GLuint program = ctx->currentEntry->program;
        const auto known = programOf.find(state);
        if (known != programOf.end()) {
            ASSERT_EQ(program, known->second) << "step " << step;
        } else {
            ++misses;
            ASSERT_EQ(stateOf.count(program), 0u);
            programOf[state] = program;
            stateOf[program] = state;
        }
        ASSERT_EQ(ctx->shaderCache->missCount, misses);
        ASSERT_EQ(ctx->shaderCache->hitCount, step + 1 - misses);
        ASSERT_EQ(ctx->shaderCache->nodeCount, std::min<uint32_t>(misses, 64));
        ASSERT_EQ(programOf.size(), ctx->shaderCache->nodeCount);
        // The current entry is an entry of the cache, and the most recently used one.
        ASSERT_EQ(ctx->currentEntry, &ctx->shaderCache->lru.previous->entry);
    }
    EXPECT_GT(misses, 500u);
    std::set<GLuint> inTree;
    for (const auto &[key, entry] : entries())
        inTree.insert(entry->program);
    const std::vector<GLuint> inList = useOrder();
    EXPECT_EQ(std::set<GLuint>(inList.begin(), inList.end()), inTree);
}

TEST_F(ProgramCache, CompileAndLinkStatusAreNotAskedFor)
{
    draw();
    for (const char *query :
         {"glGetShaderiv", "glGetProgramiv", "glGetShaderInfoLog", "glGetProgramInfoLog", "glGetError"})
        EXPECT_EQ(callsOf(query), Calls{}) << query;
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
}

TEST_F(ProgramCache, MissingShaderNameUnbindsAndSkipsTheDraw)
{
    fakeBackend().createShaderFails = true;
    draw();
    EXPECT_EQ(ctx->currentEntry, nullptr);
    EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(0)"});
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{});
    EXPECT_EQ(ctx->shaderCache->nodeCount, 1u);

    // The entry stays: the same state is a hit that unbinds again.
    fakeBackend().createShaderFails = false;
    takeCalls();
    draw();
    EXPECT_EQ(programCalls(), Calls{"glUseProgram(0)"});
    EXPECT_EQ(ctx->shaderCache->hitCount, 1u);
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{});

    takeCalls();
    drawState(1);
    ASSERT_NE(ctx->currentEntry, nullptr);
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
}

TEST_F(ProgramCache, FailureUnbindsTheProgramOfTheDrawBefore)
{
    drawState(0);
    fakeBackend().createShaderFails = true;
    takeCalls();
    drawState(1);
    EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(0)"});
    takeCalls();
    drawState(0);
    EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(3)"});
    EXPECT_EQ(callsOf("glDrawArrays").size(), 1u);
}

TEST_F(ProgramCache, MissingProgramNameSkipsTheDraw)
{
    const auto createProgram = glCreateProgram_2_0;
    glCreateProgram_2_0 = [] { return GLuint(0); };
    draw();
    glCreateProgram_2_0 = createProgram;
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{});
    EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(0)"});
}

TEST_F(ProgramCache, EveryFailingAllocationSkipsOneDrawAndLeavesNothingBehind)
{
    // The node, the vertex text and the fragment text.
    bool succeeded = false;
    for (int failing = 0; !succeeded; ++failing) {
        ASSERT_LE(failing, 3);
        start(false);
        fakeBackend().onCall["glCompileShader"] = [this] {
            if (callsOf("glCompileShader").size() == 1) shrinkShaderText();
        };
        const size_t blocks = fakePlatform().liveBlocks;
        shrinkShaderText();
        fakePlatform().allocationsUntilFailure = failing;
        draw();
        succeeded = fakePlatform().allocationsUntilFailure >= 0; // the failing call was never reached
        EXPECT_EQ(succeeded, failing == 3);
        fakePlatform().allocationsUntilFailure = -1;
        takeAssertions();
        if (!succeeded) {
            EXPECT_EQ(ctx->currentEntry, nullptr) << "allocation " << failing;
            EXPECT_EQ(callsOf("glUseProgram"), Calls{"glUseProgram(0)"});
            EXPECT_EQ(callsOf("glDrawArrays"), Calls{});
            EXPECT_EQ(ctx->shaderCache->nodeCount, 0u);
            EXPECT_EQ(entries().size(), 0u);
            EXPECT_EQ(callsOf("glCreateShader").size(), callsOf("glDeleteShader").size());
            EXPECT_EQ(callsOf("glCreateProgram"), Calls{});
        }
        takeCalls();
        draw();
        EXPECT_EQ(callsOf("glDrawArrays").size(), 1u) << "the draw after allocation " << failing << " failed";
        context.reset();
        EXPECT_LT(fakePlatform().liveBlocks, blocks);
    }
}

TEST_F(ProgramCache, FailedBuildInAFullCacheKeepsTheOthers)
{
    for (uint32_t state = 0; state < 64; ++state)
        drawState(state);
    shrinkShaderText();
    takeCalls();
    fakePlatform().allocationsUntilFailure = 0;
    drawState(64);
    fakePlatform().allocationsUntilFailure = -1;
    takeAssertions();
    EXPECT_EQ(ctx->currentEntry, nullptr);
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{});
    EXPECT_EQ(ctx->shaderCache->nodeCount, 63u);
    EXPECT_EQ(entries().size(), 63u);
    EXPECT_EQ(useOrder().size(), 63u);
    takeCalls();
    drawState(64);
    drawState(65);
    EXPECT_EQ(callsOf("glDrawArrays").size(), 2u);
    EXPECT_EQ(ctx->shaderCache->nodeCount, 64u);
}

TEST_F(ProgramCache, ContextWithoutACacheDrawsNothing)
{
    destroyShaderCache(ctx);
    fakePlatform().allocationsUntilFailure = 0;
    initShaderCache(ctx);
    fakePlatform().allocationsUntilFailure = -1;
    ASSERT_EQ(ctx->shaderCache, nullptr);
    draw();
    EXPECT_EQ(callsOf("glDrawArrays"), Calls{});
    EXPECT_EQ(callsOf("glCreateProgram"), Calls{});
}

TEST_F(ProgramCache, DestructionFreesNodesAndLeavesProgramsToTheBackend)
{
    start(false);
    context.reset();
    const size_t blocks = fakePlatform().liveBlocks;
    start(false);
    for (uint32_t state = 0; state < 70; ++state)
        drawState(state);
    takeCalls();
    context.reset();
    EXPECT_EQ(fakePlatform().liveBlocks, blocks);
    EXPECT_EQ(callsOf("glDeleteProgram"), Calls{});
    EXPECT_EQ(callsOf("glDeleteShader"), Calls{});
}

TEST_F(ProgramCache, ContextsHaveProgramsOfTheirOwn)
{
    draw();
    const TestContext second(ctx);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    EXPECT_EQ(ctx->shaderCache->missCount, 1u);
    EXPECT_EQ(second->shaderCache->missCount, 1u);
    EXPECT_NE(ctx->currentEntry->program, second->currentEntry->program);
}
