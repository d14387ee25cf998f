// SPDX-License-Identifier: MIT
// The library's own cost of draws and state calls: every backend function is empty. Budgets: an unchanged draw 600
// instructions, a state call 10 ns, a look-up of the current program 20 ns, of one of 64 programs 200 ns.
//
// Instructions of one unchanged draw, with everything it calls:
//   valgrind --tool=callgrind --toggle-collect=glDrawArrays draw_bench --benchmark_filter=draw/unchanged/plain
//       --benchmark_min_time=0.001
// divided by the number of calls that callgrind_annotate names.
#include "frontend/current.h"
#include "frontend/lifecycle.h"
#include "shadergen/derive.h"
#include "shadergen/program_cache.h"
#include "support/empty_backend.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

constexpr GLfloat kVertices[12] = {};

// A context for one benchmark.
struct BenchContext {
    BenchContext()
    {
        if (!ctx) std::abort();
        glVertexPointer(3, GL_FLOAT, 0, kVertices);
        glEnableClientState(GL_VERTEX_ARRAY);
    }
    ~BenchContext()
    {
        gliDestroyContext(ctx);
    }
    BenchContext(const BenchContext &) = delete;
    BenchContext &operator=(const BenchContext &) = delete;

    GLIContext *ctx = createEmptyBackendContext();
};

void plainState() {}

void threeLights()
{
    const GLfloat point[] = {1, 2, 3, 1};
    glEnable(GL_LIGHTING);
    for (const GLenum light : {GL_LIGHT0, GL_LIGHT1, GL_LIGHT2})
        glEnable(light);
    glLightfv(GL_LIGHT1, GL_POSITION, point);
    glLightfv(GL_LIGHT2, GL_POSITION, point);
    glLightf(GL_LIGHT2, GL_SPOT_CUTOFF, 30);
    glNormalPointer(GL_FLOAT, 0, kVertices);
    glEnableClientState(GL_NORMAL_ARRAY);
    glTranslatef(0, 0, -5);
    glRotatef(30, 0, 1, 0);
}

void oneTexture()
{
    glEnable(GL_TEXTURE_2D);
    glTexCoordPointer(2, GL_FLOAT, 0, kVertices);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
}

void drawUnchanged(benchmark::State &run, void (*prepare)())
{
    const BenchContext context;
    prepare();
    glDrawArrays(GL_TRIANGLES, 0, 3);
    for (auto _ : run)
        glDrawArrays(GL_TRIANGLES, 0, 3);
    if (context.ctx->shaderCache->missCount != 1) run.SkipWithError("more than one program");
}

void lookUpCurrent(benchmark::State &run)
{
    const BenchContext context;
    glDrawArrays(GL_TRIANGLES, 0, 3);
    for (auto _ : run)
        gliSetShaderProgram(context.ctx);
}

// Sixty-four states that differ in key fields far apart.
void setState(GLIContext *ctx, uint32_t number)
{
    ctx->key.alphaFunc = number & 7;
    ctx->key.flatShading = number >> 3 & 1;
    ctx->key.fogMode = number >> 4 & 3;
}

void lookUpOneOf64(benchmark::State &run)
{
    const BenchContext context;
    GLIContext *ctx = context.ctx;
    glDrawArrays(GL_TRIANGLES, 0, 3);
    for (uint32_t number = 0; number < kCacheCapacity; ++number) {
        setState(ctx, number);
        gliSetShaderProgram(ctx);
    }
    uint32_t number = 0;
    for (auto _ : run) {
        number = (number + 37) % kCacheCapacity; // every state in turn, none twice in a row
        setState(ctx, number);
        gliSetShaderProgram(ctx);
    }
    if (ctx->shaderCache->missCount != kCacheCapacity) run.SkipWithError("not all 64 programs are cached");
}

void setColor(benchmark::State &run)
{
    const BenchContext context;
    for (auto _ : run)
        glColor4f(1, 0.5f, 0.25f, 1);
}

void enableAndDisable(benchmark::State &run)
{
    const BenchContext context;
    for (auto _ : run) {
        glEnable(GL_FOG);
        glDisable(GL_FOG);
    }
}

void translate(benchmark::State &run)
{
    const BenchContext context;
    for (auto _ : run)
        glTranslatef(1, -1, 0.5f);
}

void rotate(benchmark::State &run)
{
    const BenchContext context;
    for (auto _ : run)
        glRotatef(30, 0, 1, 0);
}

// Without the look-up of the backend's entry points, which the device's loader decides.
void createAndDestroy(benchmark::State &run)
{
    for (auto _ : run) {
        GLIContext *ctx = createEmptyBackendContext();
        benchmark::DoNotOptimize(ctx);
        gliDestroyContext(ctx);
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("draw/unchanged/plain", drawUnchanged, plainState);
    benchmark::RegisterBenchmark("draw/unchanged/lit3", drawUnchanged, threeLights);
    benchmark::RegisterBenchmark("draw/unchanged/textured", drawUnchanged, oneTexture);
    benchmark::RegisterBenchmark("shadergen/lookup/current", lookUpCurrent);
    benchmark::RegisterBenchmark("shadergen/lookup/hit_of_64", lookUpOneOf64);
    benchmark::RegisterBenchmark("state/glColor4f", setColor);
    benchmark::RegisterBenchmark("state/glEnable_glDisable", enableAndDisable);
    benchmark::RegisterBenchmark("state/glTranslatef", translate);
    benchmark::RegisterBenchmark("state/glRotatef", rotate);
    benchmark::RegisterBenchmark("context/create_destroy", createAndDestroy);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
