// SPDX-License-Identifier: MIT
// Everything interleaved at random; the seeds are fixed, so a failure comes back at every run.
#include "pictures/random_state.h"
#include "pictures/sequences.h"

namespace {

constexpr const char *kDrawNames[] = {"triangles", "elements", "points", "lines", "draw-texture"};
constexpr size_t kDraws = 80;

// A few changes, now and then a draw nobody looks at, then one that is compared.
void playRandom(Stage &stage, uint32_t seed)
{
    std::mt19937 random(seed);
    newContext(stage);
    RandomState state = startState();
    setState(state);
    for (size_t i = 0; i < kDraws; ++i) {
        const auto changes = 1 + random() % 6;
        for (uint32_t change = 0; change < changes; ++change) {
            changeState(state, random);
            if (random() % 4 == 0) drawState(state, static_cast<RandomDraw>(random() % 5));
        }
        const auto draw = static_cast<RandomDraw>(random() % 8 < 4 ? random() % 2 : random() % 5);
        compare(
            stage, kDrawNames[static_cast<size_t>(draw)], [&] { drawState(state, draw); }, [&] { setState(state); });
    }
}

} // namespace

Sequence randomSequence(uint32_t seed)
{
    return {"Random" + std::to_string(seed), kDraws, [seed](Stage &stage) { playRandom(stage, seed); }};
}

std::vector<Sequence> randomSequences()
{
    return {randomSequence(1), randomSequence(2), randomSequence(3)};
}
