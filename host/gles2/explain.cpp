// SPDX-License-Identifier: MIT
#include "explain.h"

#include "context.h"
#include "explain_state.h"
#include "folder.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <sys/file.h>
#include <unistd.h>

using Clock = std::chrono::steady_clock;
using Guard = std::lock_guard<std::mutex>;

static constexpr const char *kSummary = "summary.txt";
static constexpr std::chrono::seconds kSummaryAge{1}; // a process that is killed leaves a summary at most this old

struct Explainer {
    std::mutex lock;
    int folder;    // descriptor
    pid_t process; // a child of fork has the records, too, but must not write them
    bool writing;  // false after a failure, which was told
    Clock::time_point start;
    Clock::time_point frameStart; // of the first frame when its first program was begun: loading comes before it
    Clock::time_point summaryWritten;
    bool builtInFrame;
    ExplainedRun run;
    std::unordered_map<std::string, ExplainedProgram *> byKey;
    std::unordered_map<const Context *, ExplainedProgram *> lastDrawn;
    // The driver's own functions.
    decltype(Driver::glDrawArrays) drawArrays;
    decltype(Driver::glDrawElements) drawElements;
    decltype(MachineEgl::eglSwapBuffers) swapBuffers;
};

// Null when nothing is explained. Never freed: other threads may draw until the process is gone.
static constinit Explainer *explainer = nullptr;

bool explains()
{
    return explainer != nullptr;
}

static double millisecondsBetween(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double, std::milli>(to - from).count();
}

// --- writing; the lock is held

static void writeReport(const std::string &name, const std::string &content)
{
    if (!explainer->writing || getpid() != explainer->process) return;
    if (replaceFile(explainer->folder, name, content, 0666)) return;
    fprintf(stderr, "trl20: TRL20_EXPLAIN: cannot write %s: %s; nothing more is explained\n", name.c_str(),
            strerror(errno));
    explainer->writing = false;
}

static void writeSummary(Clock::time_point now)
{
    explainer->run.seconds = millisecondsBetween(explainer->start, now) / 1000.0;
    explainer->summaryWritten = now;
    writeReport(kSummary, explainedSummary(explainer->run));
}

static void writeSummaryWhenOld(Clock::time_point now)
{
    if (now - explainer->summaryWritten >= kSummaryAge) writeSummary(now);
}

// --- programs

static ExplainedMoment momentNow(Clock::time_point now)
{
    return {.frame = explainer->run.frames,
            .draw = explainer->run.draws + 1,
            .seconds = millisecondsBetween(explainer->start, now) / 1000.0};
}

static int lastDrawnNumber()
{
    const auto last = explainer->lastDrawn.find(currentContext);
    return last == explainer->lastDrawn.end() ? 0 : last->second->number;
}

static ExplainedProgram *addProgram(const ExplainedBuild &build, Clock::time_point now)
{
    explainer->run.programs.push_back(std::make_unique<ExplainedProgram>());
    ExplainedProgram *program = explainer->run.programs.back().get();
    program->number = static_cast<int>(explainer->run.programs.size());
    program->state = stateOfTexts(build.vertex, build.fragment);
    program->before = lastDrawnNumber();
    program->firstBuild = momentNow(now);
    explainer->byKey.emplace(build.key, program);
    writeReport(explainedFileName(program->number), explainedFile(*program, build));
    return program;
}

static std::string driverName()
{
    std::string name;
    for (GLenum text : {GL_RENDERER, GL_VERSION}) {
        if (const GLubyte *found = driver.glGetString(text))
            name += (name.empty() ? "" : ", ") + std::string(reinterpret_cast<const char *>(found));
    }
    return name;
}

static void countBuild(ExplainedProgram *program, const BuildResult &result)
{
    ++(result.loaded ? program->loads : program->builds);
    if (!result.ok) ++program->failures;
    program->buildMilliseconds += result.milliseconds;
    explainer->builtInFrame = true;
}

ExplainedProgram *explainBuild(const ExplainedBuild &build)
{
    const Guard guard(explainer->lock);
    const Clock::time_point now = Clock::now();
    if (explainer->run.programs.empty()) {
        explainer->run.driver = driverName();
        explainer->frameStart = now - std::chrono::duration_cast<Clock::duration>(
                                          std::chrono::duration<double, std::milli>(build.handed.result.milliseconds));
    }
    const auto found = explainer->byKey.find(build.key);
    ExplainedProgram *program = found == explainer->byKey.end() ? addProgram(build, now) : found->second;
    countBuild(program, build.handed.result);
    program->buildMilliseconds += build.refused.milliseconds;
    program->fresh = true;
    writeSummary(now);
    return program;
}

void explainExpanded(ExplainedProgram *program, const std::string &use, const ExplainedTexts &handed)
{
    const Guard guard(explainer->lock);
    countBuild(program, handed.result);
    writeReport(explainedFileName(program->number, use), explainedExpansionFile(*program, use, handed));
}

void explainKept(ExplainedProgram *program)
{
    const Guard guard(explainer->lock);
    ++program->kept;
    program->fresh = true;
}

// --- draws and swaps

// Counts the draw. Returns its program when this is the first one with it, null otherwise.
static ExplainedProgram *countDraw(GLenum mode, GLsizei count)
{
    const Guard guard(explainer->lock);
    const Clock::time_point now = Clock::now();
    ++explainer->run.draws;
    writeSummaryWhenOld(now);
    const LinkedProgram *linked = currentContext ? currentContext->program : nullptr;
    if (!linked || !linked->explained) {
        ++explainer->run.otherDraws;
        return nullptr;
    }

    ExplainedProgram *program = linked->explained;
    ExplainedProgram *&last = explainer->lastDrawn[currentContext];
    if (last != program && !program->fresh) ++explainer->run.libraryHits;
    last = program;
    program->fresh = false;
    ++program->draws;
    if (count > 0) program->vertices += static_cast<uint64_t>(count);
    if (mode < 32) program->modes |= 1u << mode;
    return program->draws == 1 ? program : nullptr;
}

static void noteFirstDraw(ExplainedProgram *program, Clock::time_point begin)
{
    const Guard guard(explainer->lock);
    program->firstDrawMilliseconds = millisecondsBetween(begin, Clock::now());
}

static void GL_APIENTRY countingDrawArrays(GLenum mode, GLint first, GLsizei count)
{
    ExplainedProgram *begun = countDraw(mode, count);
    const Clock::time_point begin = Clock::now();
    explainer->drawArrays(mode, first, count);
    if (begun) noteFirstDraw(begun, begin);
}

static void GL_APIENTRY countingDrawElements(GLenum mode, GLsizei count, GLenum type, const void *indices)
{
    ExplainedProgram *begun = countDraw(mode, count);
    const Clock::time_point begin = Clock::now();
    explainer->drawElements(mode, count, type, indices);
    if (begun) noteFirstDraw(begun, begin);
}

void drawUncounted(GLenum mode, GLint first, GLsizei count)
{
    (explainer ? explainer->drawArrays : driver.glDrawArrays)(mode, first, count);
}

static void countFrame()
{
    const Guard guard(explainer->lock);
    const Clock::time_point now = Clock::now();
    const double milliseconds = millisecondsBetween(explainer->frameStart, now);
    ExplainedRun &run = explainer->run;
    ExplainedFrames &frames = explainer->builtInFrame ? run.building : run.plain;
    ++frames.count;
    frames.milliseconds += milliseconds;
    if (milliseconds > run.longestFrameMilliseconds) {
        run.longestFrameMilliseconds = milliseconds;
        run.longestFrame = run.frames;
    }
    ++run.frames;
    explainer->builtInFrame = false;
    explainer->frameStart = now;
    writeSummaryWhenOld(now);
}

static EGLBoolean EGLAPIENTRY countingSwapBuffers(EGLDisplay display, EGLSurface surface)
{
    const EGLBoolean swapped = explainer->swapBuffers(display, surface);
    if (swapped) countFrame(); // with the swap itself, in which a software driver draws
    return swapped;
}

// --- the start

// Removes what an earlier run left, so that every program file in the folder is of this run.
static void removeOldFiles(int folder)
{
    DIR *listing = fdopendir(dup(folder));
    if (!listing) return;
    while (const dirent *entry = readdir(listing)) {
        if (isExplainedFileName(entry->d_name)) unlinkat(folder, entry->d_name, 0);
    }
    closedir(listing);
}

// Opens the folder for this process alone; while another one writes to it, a folder inside it. Returns -1 with errno.
static int openOwnFolder(const std::string &path)
{
    const int folder = openFolder(path, 0777);
    if (folder < 0 || flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return folder;
    close(folder);
    const std::string inner = path + "/process-" + std::to_string(getpid());
    fprintf(stderr, "trl20: TRL20_EXPLAIN: another process writes to %s; this one writes to %s\n", path.c_str(),
            inner.c_str());
    return openFolder(inner, 0777);
}

// The records must outlive the library above, which unloads this one when its last context goes and may load it again.
static void stayLoaded()
{
    Dl_info self{};
    if (dladdr(reinterpret_cast<void *>(&startExplain), &self) && self.dli_fname)
        dlopen(self.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

static void writeLastSummary()
{
    const Guard guard(explainer->lock);
    writeSummary(Clock::now());
}

static void startOnce()
{
    const char *path = secure_getenv("TRL20_EXPLAIN");
    if (!path || !*path) return;
    const int folder = openOwnFolder(path);
    // An empty summary, to see whether the folder can be written to.
    if (folder < 0 || !replaceFile(folder, kSummary, "no draw yet\n", 0666)) {
        fprintf(stderr, "trl20: TRL20_EXPLAIN: cannot write to %s: %s; nothing is explained\n", path, strerror(errno));
        return;
    }
    removeOldFiles(folder);

    const Clock::time_point now = Clock::now();
    Explainer *made = new Explainer{};
    made->folder = folder;
    made->process = getpid();
    made->writing = true;
    made->start = made->frameStart = made->summaryWritten = now;
    made->run.application = program_invocation_short_name;
    made->drawArrays = driver.glDrawArrays;
    made->drawElements = driver.glDrawElements;
    made->swapBuffers = machineEgl.eglSwapBuffers;
    explainer = made;
    driver.glDrawArrays = countingDrawArrays;
    driver.glDrawElements = countingDrawElements;
    machineEgl.eglSwapBuffers = countingSwapBuffers;
    stayLoaded();
    atexit(writeLastSummary);
}

void startExplain()
{
    static std::once_flag once;
    std::call_once(once, startOnce);
}
