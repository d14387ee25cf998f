// SPDX-License-Identifier: MIT
#include "explain_report.h"

#include "explain_state.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

static constexpr size_t kLineWidth = 110; // characters of a wrapped line

[[gnu::format(printf, 1, 2)]] static std::string print(const char *format, ...)
{
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

static std::string counted(uint64_t count, const char *noun)
{
    const char *plural = std::string_view(noun).ends_with("ch") ? "es" : "s";
    return print("%llu %s%s", static_cast<unsigned long long>(count), noun, count == 1 ? "" : plural);
}

// The phrases in as few lines as possible, each after `indent`; the first after `first` of the same width.
static std::string wrapped(const std::vector<std::string> &phrases, const std::string &first, const std::string &indent)
{
    std::string text;
    std::string line = first;
    bool begun = false; // the line has a phrase
    for (size_t i = 0; i < phrases.size(); ++i) {
        const std::string phrase = phrases[i] + (i + 1 < phrases.size() ? ";" : "");
        if (begun && line.size() + 1 + phrase.size() > kLineWidth) {
            text += line + '\n';
            line = indent;
            begun = false;
        }
        line += (begun ? " " : "") + phrase;
        begun = true;
    }
    return text + line + '\n';
}

std::string explainedFileName(int number, const std::string &use)
{
    return print("program-%03d", number) + (use.empty() ? "" : "-") + use + ".txt";
}

bool isExplainedFileName(const std::string &name)
{
    int number = 0;
    int end = 0;
    if (sscanf(name.c_str(), "program-%d%n", &number, &end) != 1) return false;
    const size_t use = name.find_first_not_of("-abcdefghijklmnopqrstuvwxyz", static_cast<size_t>(end));
    return use != std::string::npos &&
           name == print("program-%03d", number) +
                       name.substr(static_cast<size_t>(end), use - static_cast<size_t>(end)) + ".txt";
}

// --- a program's file

static void addSection(std::string &out, const std::string &title, const std::string &text)
{
    out += "\n==== " + title + " ====\n" + text;
    if (!text.ends_with('\n')) out += '\n';
}

static std::string_view lineOf(std::string_view text, int number)
{
    for (int line = 1; line < number; ++line) {
        const size_t end = text.find('\n');
        if (end == std::string_view::npos) return {};
        text.remove_prefix(end + 1);
    }
    return text.substr(0, text.find('\n'));
}

// One part of the driver's log under its name; nothing for an empty one. The generated line follows each message that
// names one, as "0:LINE" somewhere in it.
static std::string logPart(const char *part, const std::string &log, const std::string &generated)
{
    std::string out;
    for (size_t at = 0; at < log.size();) {
        const size_t end = std::min(log.find('\n', at), log.size());
        const std::string message = log.substr(at, end - at);
        out += message + '\n';
        const size_t place = message.find("0:");
        const int number = place == std::string::npos ? 0 : atoi(message.c_str() + place + 2);
        if (number > 0 && !generated.empty())
            out += print("    line %d: ", number) + std::string(lineOf(generated, number)) + '\n';
        at = end + 1;
    }
    return out.empty() ? out : std::string(part) + ":\n" + out;
}

// The lines of a given-up version's log belong to the same texts, but would only repeat the ones below it.
static void addLog(std::string &out, const std::string &refusedLog, const ExplainedTexts &handed,
                   const std::string &vertex, const std::string &fragment)
{
    std::string log;
    if (!refusedLog.empty()) log += "of a higher version, which was given up:\n" + refusedLog;
    log += logPart("vertex shader", handed.stages[0].log, vertex);
    log += logPart("fragment shader", handed.stages[1].log, fragment);
    // Without both shaders the program's log repeats theirs.
    if (handed.stages[0].ok && handed.stages[1].ok) log += logPart("program", handed.result.log, {});
    addSection(out, "driver's log", log.empty() ? "(empty)\n" : log);
}

// Which vectors of the array are which uniform.
static std::string gatheredPlaces(const std::vector<GatheredUniform> &gathered)
{
    std::string text;
    for (const GatheredUniform &uniform : gathered) {
        text += print("[%d] %s %s", uniform.vector, uniform.type.c_str(), uniform.name.c_str());
        text += uniform.isArray ? print("[%d]\n", uniform.elements) : "\n";
    }
    return text;
}

static void addHandedTexts(std::string &out, const TranslatedProgram &texts)
{
    const std::string language = texts.version == 0
                                     ? "GLSL version of its own"
                                     : print("GLSL ES %d.%02d", texts.version / 100, texts.version % 100);
    addSection(out, "vertex shader, as handed to the driver, " + language, texts.vertex);
    if (!texts.gathered.empty())
        addSection(out, std::string("places in ") + kGatheredUniforms, gatheredPlaces(texts.gathered));
    if (!texts.geometry.empty())
        addSection(out, "geometry shader, as handed to the driver, " + language, texts.geometry);
    addSection(out, "fragment shader, as handed to the driver, " + language, texts.fragment);
}

static std::string outcome(const ExplainedTexts &handed)
{
    const char *done = handed.result.loaded   ? "loaded from a file in"
                       : handed.result.ok     ? "compiled and linked in"
                       : !handed.stages[0].ok ? "the vertex shader DID NOT COMPILE, after"
                       : !handed.stages[1].ok ? "the fragment shader DID NOT COMPILE, after"
                                              : "the program DID NOT LINK, after";
    return print("%s %.1f ms\n", done, handed.result.milliseconds);
}

std::string explainedFile(const ExplainedProgram &program, const ExplainedBuild &build)
{
    const ExplainedMoment &built = program.firstBuild;
    std::string out = print("program %d: built in frame %llu for draw %llu, %.3f s after the start; ", program.number,
                            static_cast<unsigned long long>(built.frame), static_cast<unsigned long long>(built.draw),
                            built.seconds) +
                      outcome(build.handed) + "\nstate that made it\n";
    for (const std::string &phrase : program.state)
        out += "    " + phrase + '\n';
    addLog(out, build.refused.log, build.handed, build.vertex, build.fragment);
    addSection(out, "vertex shader, as generated", build.vertex);
    addSection(out, "fragment shader, as generated", build.fragment);
    addHandedTexts(out, build.handed.texts);
    return out;
}

std::string explainedExpansionFile(const ExplainedProgram &program, const std::string &use,
                                   const ExplainedTexts &handed)
{
    std::string out =
        print("program %d, another one for its texts (%s): ", program.number, use.c_str()) + outcome(handed);
    addLog(out, {}, handed, {}, {});
    addHandedTexts(out, handed.texts);
    return out;
}

// --- the summary

static std::string modeNames(uint32_t modes)
{
    static constexpr const char *kNames[] = {"GL_POINTS",    "GL_LINES",          "GL_LINE_LOOP",   "GL_LINE_STRIP",
                                             "GL_TRIANGLES", "GL_TRIANGLE_STRIP", "GL_TRIANGLE_FAN"};
    std::string names;
    for (size_t mode = 0; mode < std::size(kNames); ++mode) {
        if (modes >> mode & 1) names += (names.empty() ? "" : ", ") + std::string(kNames[mode]);
    }
    return names;
}

struct BuildTotals {
    uint64_t builds, failures, loads, kept;
    double milliseconds, firstDrawMilliseconds;
};

static BuildTotals totalsOf(const ExplainedRun &run)
{
    BuildTotals totals{};
    for (const auto &program : run.programs) {
        totals.builds += static_cast<uint64_t>(program->builds);
        totals.failures += static_cast<uint64_t>(program->failures);
        totals.loads += static_cast<uint64_t>(program->loads);
        totals.kept += static_cast<uint64_t>(program->kept);
        totals.milliseconds += program->buildMilliseconds;
        totals.firstDrawMilliseconds += program->firstDrawMilliseconds;
    }
    return totals;
}

static std::string frameLines(const ExplainedRun &run)
{
    if (run.frames == 0) return "";
    const auto mean = [](const ExplainedFrames &frames) {
        return frames.milliseconds / static_cast<double>(frames.count);
    };
    std::string text = "frames    ";
    if (run.building.count)
        text += print("%s with a build, %.1f ms on average; ", counted(run.building.count, "frame").c_str(),
                      mean(run.building));
    if (run.plain.count)
        text += print("%s without, %.1f ms on average; ", counted(run.plain.count, "frame").c_str(), mean(run.plain));
    return text + print("longest: frame %llu, %.1f ms\n", static_cast<unsigned long long>(run.longestFrame),
                        run.longestFrameMilliseconds);
}

static std::string totalLines(const ExplainedRun &run)
{
    const BuildTotals totals = totalsOf(run);
    const uint64_t missed = totals.builds + totals.loads + totals.kept;
    std::string text = run.application + ": " + counted(run.draws, "draw") + " in " + counted(run.frames, "frame") +
                       print(" and %.2f s", run.seconds) + "\n" + run.driver + "\n\n";
    text += print("programs  %zu different, %s by the driver in %.1f ms, first draws with them in %.1f ms",
                  run.programs.size(), counted(totals.builds, "build").c_str(), totals.milliseconds,
                  totals.firstDrawMilliseconds);
    text += totals.failures ? ", " + std::to_string(totals.failures) + " FAILED: see their files\n" : "\n";
    text += print("library   %s for another program: %s, %llu missed\n",
                  counted(run.libraryHits + missed, "search").c_str(), counted(run.libraryHits, "hit").c_str(),
                  static_cast<unsigned long long>(missed));
    text += print("backend   of those missed: %llu kept from before, %llu loaded from files, %llu to be built\n",
                  static_cast<unsigned long long>(totals.kept), static_cast<unsigned long long>(totals.loads),
                  static_cast<unsigned long long>(totals.builds));
    text += frameLines(run);
    if (run.otherDraws) text += counted(run.otherDraws, "draw") + " without a program: they draw nothing\n";
    return text;
}

static std::string programRow(const ExplainedProgram &program)
{
    const auto number = [](uint64_t value) { return static_cast<unsigned long long>(value); };
    std::string row =
        print("    %03d %6llu %8llu %9.3f %6d %9.1f", program.number, number(program.firstBuild.frame),
              number(program.firstBuild.draw), program.firstBuild.seconds, program.builds, program.buildMilliseconds);
    if (program.draws)
        row += print(" %14.1f %7llu %10llu  ", program.firstDrawMilliseconds, number(program.draws),
                     number(program.vertices)) +
               modeNames(program.modes);
    else
        row += print(" %14s %7d %10d", "-", 0, 0);
    if (program.failures) row += "  FAILED";
    return row + '\n';
}

static std::string programLines(const ExplainedRun &run, const ExplainedProgram &program)
{
    const std::string indent(8, ' ');
    std::string text = programRow(program);
    text += wrapped(program.state, indent, indent);
    if (program.before == 0) return text;
    const ExplainedProgram &before = *run.programs[static_cast<size_t>(program.before - 1)];
    std::vector<std::string> changes;
    for (const std::string &phrase : phrasesNotIn(program.state, before.state))
        changes.push_back("+ " + phrase);
    for (const std::string &phrase : phrasesNotIn(before.state, program.state))
        changes.push_back("- " + phrase);
    return text + wrapped(changes, indent + print("after %03d: ", program.before), indent + std::string(11, ' '));
}

std::string explainedSummary(const ExplainedRun &run)
{
    std::string text = totalLines(run);
    if (run.programs.empty()) return text + "\nno program was built\n";
    text += "\nprogram  frame     draw   seconds builds  build ms  first draw ms   draws   vertices  primitives\n";
    for (const auto &program : run.programs)
        text += programLines(run, *program);
    return text;
}
