// SPDX-License-Identifier: MIT
// The mathematics functions that matrix commands and draws call, each through its exported symbol. Names ending in /glm
// are the same work by GLM behind a function call as well, in the same run.
#include <algorithm>
#include <array>
#include <vector>

#include <benchmark/benchmark.h>

#ifdef TRL20_HAVE_GLM
#include <glm/glm.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>
#endif

#include "math/fixed.h"
#include "math/fp_matrix.h"
#include "math/fp_trig.h"
#include "math/matrix_classify.h"
#include "math/matrix_inline.h"
#include "math/matrix_record.h"

namespace {

// A rotation with a translation, so that repeated products stay bounded.
MatrixRecord rigidRecord()
{
    MatrixRecord m;
    fp_matrix_build_rotate(m.f, 33.0f, 1.0f, 2.0f, 3.0f);
    m.f[12] = 0.5f;
    m.f[13] = -0.25f;
    m.f[14] = 2.0f;
    m.flags = MATRIX_FLOAT | MATRIX_TRANSROT;
    return m;
}

void multiply(benchmark::State &state, uint32_t matrixClass)
{
    const MatrixRecord a = rigidRecord(), b = rigidRecord();
    MatrixRecord out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fp_matrix_mul(a.f, b.f, out.f, matrixClass, matrixClass));
        benchmark::ClobberMemory();
    }
}

// One step of a matrix command: the product replaces its left factor, so the next waits for it.
void multiplyInPlace(benchmark::State &state, uint32_t matrixClass)
{
    MatrixRecord a = rigidRecord();
    MatrixRecord b = rigidRecord();
    b.f[12] = b.f[13] = b.f[14] = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fp_matrix_postmul(a.f, b.f, matrixClass, matrixClass));
        benchmark::ClobberMemory();
    }
}

void translate(benchmark::State &state)
{
    MatrixRecord m = rigidRecord();
    for (auto _ : state) {
        benchmark::DoNotOptimize(fp_matrix_translate(m.f, 1.0f, -1.0f, 0.5f, MATRIX_TRANSROT));
        benchmark::ClobberMemory();
    }
}

void buildRotation(benchmark::State &state)
{
    MatrixRecord m;
    float angle = 0.0f;
    for (auto _ : state) {
        fp_matrix_build_rotate(m.f, angle, 1.0f, 2.0f, 3.0f);
        benchmark::ClobberMemory();
        angle = angle < 360.0f ? angle + 7.0f : 0.0f;
    }
}

void invert(benchmark::State &state, uint32_t matrixClass)
{
    const MatrixRecord m = rigidRecord();
    MatrixRecord out;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fp_matrix_inverse(out.f, m.f, matrixClass));
        benchmark::ClobberMemory();
    }
}

void invertTranspose(benchmark::State &state, uint32_t matrixClass)
{
    const MatrixRecord m = rigidRecord();
    float out[9];
    for (auto _ : state) {
        benchmark::DoNotOptimize(fp_matrix3_inverse_transpose(out, m.f, matrixClass));
        benchmark::ClobberMemory();
    }
}

void zeroOneMaskOf(benchmark::State &state)
{
    const MatrixRecord m = rigidRecord();
    for (auto _ : state) {
        benchmark::DoNotOptimize(getMatrixZeroOneMask(&m));
        benchmark::ClobberMemory();
    }
}

void zeroOneMaskPlainOf(benchmark::State &state)
{
    const MatrixRecord m = rigidRecord();
    for (auto _ : state) {
        benchmark::DoNotOptimize(zeroOneMaskPlain(m.f));
        benchmark::ClobberMemory();
    }
}

void orthogonality(benchmark::State &state)
{
    const MatrixRecord m = rigidRecord();
    for (auto _ : state) {
        benchmark::DoNotOptimize(isMatrixOrthogonal(&m));
        benchmark::ClobberMemory();
    }
}

void inverseRoot(benchmark::State &state)
{
    int32_t x = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(fixedInvSqrt_s1516(x));
        x = (x + 0x12345) & 0x7FFFFFFF;
    }
}

void fixedTrig(benchmark::State &state)
{
    int32_t angle = 0, cosine, sine;
    for (auto _ : state) {
        fixedTrig_s1516(angle, &cosine, &sine);
        benchmark::DoNotOptimize(cosine);
        benchmark::DoNotOptimize(sine);
        angle = (angle + 0x71234) & 0x1FFFFFF;
    }
}

#ifdef TRL20_HAVE_GLM

glm::mat4 glmRigid()
{
    glm::mat4 m;
    const MatrixRecord record = rigidRecord();
    std::copy(record.f, record.f + 16, &m[0][0]);
    return m;
}

[[gnu::noinline]] void glmMultiply(const glm::mat4 &a, const glm::mat4 &b, glm::mat4 &out)
{
    out = a * b;
}

[[gnu::noinline]] void glmTranslate(glm::mat4 &m, float x, float y, float z)
{
    m = glm::translate(m, glm::vec3(x, y, z));
}

[[gnu::noinline]] void glmRotation(glm::mat4 &m, float angle, float x, float y, float z)
{
    m = glm::rotate(glm::mat4(1.0f), glm::radians(angle), glm::vec3(x, y, z));
}

[[gnu::noinline]] void glmInverse(glm::mat4 &out, const glm::mat4 &m)
{
    out = glm::inverse(m);
}

void multiplyGlm(benchmark::State &state)
{
    const glm::mat4 a = glmRigid(), b = glmRigid();
    glm::mat4 out;
    for (auto _ : state) {
        glmMultiply(a, b, out);
        benchmark::ClobberMemory();
    }
}

void multiplyInPlaceGlm(benchmark::State &state)
{
    glm::mat4 a = glmRigid(), b = glmRigid();
    b[3] = glm::vec4(0, 0, 0, 1);
    for (auto _ : state) {
        glmMultiply(a, b, a);
        benchmark::ClobberMemory();
    }
}

void translateGlm(benchmark::State &state)
{
    glm::mat4 m = glmRigid();
    for (auto _ : state) {
        glmTranslate(m, 1.0f, -1.0f, 0.5f);
        benchmark::ClobberMemory();
    }
}

void buildRotationGlm(benchmark::State &state)
{
    glm::mat4 m;
    float angle = 0.0f;
    for (auto _ : state) {
        glmRotation(m, angle, 1.0f, 2.0f, 3.0f);
        benchmark::ClobberMemory();
        angle = angle < 360.0f ? angle + 7.0f : 0.0f;
    }
}

void invertGlm(benchmark::State &state)
{
    const glm::mat4 m = glmRigid();
    glm::mat4 out;
    for (auto _ : state) {
        glmInverse(out, m);
        benchmark::ClobberMemory();
    }
}

#endif

void registerAll()
{
    benchmark::RegisterBenchmark("math/matrix_mul/affine", multiply, MATRIX_TRANSROT);
    benchmark::RegisterBenchmark("math/matrix_mul/general", multiply, MATRIX_GENERAL);
    benchmark::RegisterBenchmark("math/matrix_postmul/affine", multiplyInPlace, MATRIX_TRANSROT);
    benchmark::RegisterBenchmark("math/matrix_postmul/general", multiplyInPlace, MATRIX_GENERAL);
    benchmark::RegisterBenchmark("math/translate/affine", translate);
    benchmark::RegisterBenchmark("math/rotate/build", buildRotation);
    benchmark::RegisterBenchmark("math/inverse/general", invert, MATRIX_GENERAL);
    benchmark::RegisterBenchmark("math/inverse/affine", invert, MATRIX_ANISOSCALE);
    benchmark::RegisterBenchmark("math/inverse/rigid", invert, MATRIX_TRANSROT);
    benchmark::RegisterBenchmark("math/inverse_transpose/general", invertTranspose, MATRIX_GENERAL);
    benchmark::RegisterBenchmark("math/inverse_transpose/affine", invertTranspose, MATRIX_ANISOSCALE);
    benchmark::RegisterBenchmark("math/inverse_transpose/rigid", invertTranspose, MATRIX_TRANSROT);
    benchmark::RegisterBenchmark("math/zero_one_mask", zeroOneMaskOf);
    benchmark::RegisterBenchmark("math/zero_one_mask/plain", zeroOneMaskPlainOf);
    benchmark::RegisterBenchmark("math/orthogonal", orthogonality);
    benchmark::RegisterBenchmark("math/fixed/inverse_root", inverseRoot);
    benchmark::RegisterBenchmark("math/fixed/trig", fixedTrig);
#ifdef TRL20_HAVE_GLM
    benchmark::RegisterBenchmark("math/matrix_mul/glm", multiplyGlm);
    benchmark::RegisterBenchmark("math/matrix_postmul/glm", multiplyInPlaceGlm);
    benchmark::RegisterBenchmark("math/translate/glm", translateGlm);
    benchmark::RegisterBenchmark("math/rotate/glm", buildRotationGlm);
    benchmark::RegisterBenchmark("math/inverse/glm", invertGlm);
#endif
}

// At least ten repetitions, of which the median and the spread are shown; options given by the caller come last and
// win.
std::vector<char *> withDefaults(int argc, char **argv)
{
    static char repetitions[] = "--benchmark_repetitions=10";
    static char aggregates[] = "--benchmark_report_aggregates_only=true";
    static char warmUp[] = "--benchmark_min_warmup_time=0.02";
    static char time[] = "--benchmark_min_time=0.05";
    std::vector<char *> out = {argv[0], repetitions, aggregates, warmUp, time};
    out.insert(out.end(), argv + 1, argv + argc);
    return out;
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<char *> arguments = withDefaults(argc, argv);
    int count = static_cast<int>(arguments.size());
    benchmark::AddCustomContext("compiler", __VERSION__);
    benchmark::Initialize(&count, arguments.data());
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
