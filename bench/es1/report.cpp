// SPDX-License-Identifier: MIT
#include "es1/report.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <thread>

namespace {

// "-" for what was not measured.
std::string numberText(double value, int decimals)
{
    if (value <= 0.0) return "-";
    char text[32];
    std::snprintf(text, sizeof(text), "%.*f", decimals, value);
    return text;
}

std::string ratioText(double a, double b)
{
    return numberText(b > 0.0 ? a / b : 0.0, 2);
}

constexpr char kCostHead[] = "  native      es2     ours /native  /es2";

// Whose instructions those of ours are.
constexpr const char *kPartNames[PARTS] = {"program", "library", "backend", "driver"};

// The cells of three sides and of the ratios of ours to the two others.
std::string costCells(const double (&values)[SIDES], int decimals)
{
    char cells[160];
    std::snprintf(cells, sizeof(cells), "%8s %8s %8s %7s %5s", numberText(values[NATIVE], decimals).c_str(),
                  numberText(values[ES2], decimals).c_str(), numberText(values[OURS], decimals).c_str(),
                  ratioText(values[OURS], values[NATIVE]).c_str(), ratioText(values[OURS], values[ES2]).c_str());
    return cells;
}

// Quotes and backslashes do not occur in our own words; a renderer's name may have them.
std::string jsonString(const std::string &text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return quoted + '"';
}

std::string jsonNumber(double value)
{
    const std::string text = numberText(value, 1);
    return text == "-" ? "null" : text;
}

std::string jsonSide(const SceneResult &result, Side side)
{
    if (!result.unavailable[side].empty()) return "{\"unavailable\": " + jsonString(result.unavailable[side]) + "}";
    const Cost &cost = result.costs[side];
    std::string parts;
    for (int part = 0; part < PARTS; ++part)
        parts +=
            ", " + jsonString(std::string("instructions_") + kPartNames[part]) + ": " + jsonNumber(cost.parts[part]);
    return "{\"instructions\": " + jsonNumber(cost.instructions) + parts + ", \"wall_ns\": " + jsonNumber(cost.wallNs) +
           ", \"cpu_ns\": " + jsonNumber(cost.cpuNs) +
           ", \"differing_pixels\": " + std::to_string(result.fromOurs[side].pixels) +
           ", \"largest_difference\": " + std::to_string(result.fromOurs[side].most) + "}";
}

std::string jsonScene(const SceneResult &result)
{
    const SceneRow &scene = result.scene;
    std::string text = "    {\"name\": " + jsonString(scene.name) + ", \"title\": " + jsonString(scene.title);
    for (const Side side : {NATIVE, ES2, OURS})
        text += ",\n     " + jsonString(kSideNames[side]) + ": " + jsonSide(result, side);
    const std::optional<bool> reached = reachedBudget(result);
    text += ",\n     \"budget\": " + (scene.budget ? std::to_string(scene.budget) : "null");
    text += std::string(", \"reached\": ") + (!reached ? "null" : *reached ? "true" : "false");
    return text + ", \"pictures_agree\": " + (result.picturesAgree ? "true" : "false") + "}";
}

} // namespace

std::optional<bool> reachedBudget(const SceneResult &result)
{
    const double ours = result.costs[OURS].instructions;
    if (!result.scene.budget || ours <= 0.0) return std::nullopt;
    return ours <= result.scene.budget;
}

Machine describeMachine(const std::string &renderer)
{
    Machine machine = {.processor = "unknown", .renderer = renderer, .date = "", .cores = 0};
    std::ifstream processors("/proc/cpuinfo");
    for (std::string line; std::getline(processors, line);) {
        const size_t colon = line.find(": ");
        if (!line.starts_with("model name") || colon == std::string::npos) continue;
        machine.processor = line.substr(colon + 2);
        break;
    }
    machine.cores = std::thread::hardware_concurrency();
    char date[32] = "";
    const std::time_t now = std::time(nullptr);
    std::strftime(date, sizeof(date), "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&now));
    machine.date = date;
    return machine;
}

void printCountHead()
{
    std::printf("instructions per draw, over the driver that draws nothing\n%-50s %s  budget reached |", "scene",
                kCostHead);
    for (const char *name : kPartNames)
        std::printf(" %7s", name);
    std::printf("\n");
}

void printCountRow(const SceneResult &result)
{
    const SceneRow &scene = result.scene;
    double instructions[SIDES];
    for (const Side side : {NATIVE, ES2, OURS})
        instructions[side] = result.costs[side].instructions;
    const std::optional<bool> reached = reachedBudget(result);
    std::printf("%-9s%-41s %s %7s %7s |", scene.name, scene.title, costCells(instructions, 0).c_str(),
                scene.budget ? std::to_string(scene.budget).c_str() : "-",
                !reached   ? "-"
                : *reached ? "yes"
                           : "NO");
    for (const double part : result.costs[OURS].parts)
        std::printf(" %7s", numberText(part, 0).c_str());
    std::printf("\n");
    for (const Side side : {NATIVE, ES2})
        if (!result.unavailable[side].empty())
            std::printf("%-9s%s: not drawn, no %s here\n", "", kSideNames[side], result.unavailable[side].c_str());
    std::fflush(stdout);
}

void printTimeHead(int rounds)
{
    std::printf("\nmicroseconds per draw, over the real driver, medians of %d runs in turn\n", rounds);
    std::printf("%-9s %-40s | %s\n", "", " wall", " processor, all threads");
    std::printf("%-9s %s | %s\n", "scene", kCostHead, kCostHead);
    double load[1] = {};
    if (getloadavg(load, 1) == 1 && load[0] > 0.75 * std::thread::hardware_concurrency())
        std::printf("(other programs are running, load %.1f: wall times say little)\n", load[0]);
}

void printTimeRow(const SceneResult &result)
{
    double wall[SIDES], cpu[SIDES];
    for (const Side side : {NATIVE, ES2, OURS}) {
        wall[side] = result.costs[side].wallNs / 1000.0;
        cpu[side] = result.costs[side].cpuNs / 1000.0;
    }
    std::printf("%-9s %s | %s\n", result.scene.name, costCells(wall, 2).c_str(), costCells(cpu, 2).c_str());
    std::fflush(stdout);
}

bool writeJson(const std::string &path, const Machine &machine, const std::vector<SceneResult> &results)
{
    std::ofstream json(path);
    json << "{\n  \"date\": " << jsonString(machine.date) << ",\n  \"processor\": " << jsonString(machine.processor)
         << ",\n  \"cores\": " << machine.cores << ",\n  \"renderer\": " << jsonString(machine.renderer)
         << ",\n  \"scenes\": [\n";
    for (size_t i = 0; i < results.size(); ++i)
        json << jsonScene(results[i]) << (i + 1 < results.size() ? ",\n" : "\n");
    json << "  ]\n}\n";
    return static_cast<bool>(json.flush());
}
