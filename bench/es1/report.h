// SPDX-License-Identifier: MIT
// The results of the scenes as a table for people and as JSON for programs.
#pragma once

#include "es1/measure.h"
#include "pictures/image.h"

#include <optional>
#include <vector>

/// What was found out about one scene.
struct SceneResult {
    SceneRow scene = {};
    std::string unavailable[SIDES] = {}; // empty, or the extension that a side lacks
    Cost costs[SIDES] = {};
    Difference fromOurs[SIDES] = {}; // pictures
    bool picturesAgree = true;
};

/// Instructions within the budget; nothing without a budget or without a count.
std::optional<bool> reachedBudget(const SceneResult &result);

/// Where it was found out.
struct Machine {
    std::string processor, renderer, date;
    unsigned cores = 0;
};
Machine describeMachine(const std::string &renderer);

/// The table of instructions and pictures, row by row, and that of times.
void printCountHead();
void printCountRow(const SceneResult &result);
void printTimeHead(int rounds);
void printTimeRow(const SceneResult &result);

/// Returns false when the file cannot be written.
bool writeJson(const std::string &path, const Machine &machine, const std::vector<SceneResult> &results);
