// SPDX-License-Identifier: MIT
// The state of OpenGL ES 1.1 that a program was generated for, read back from its two generated texts.
#pragma once

#include <string>
#include <vector>

/// One phrase per piece of state that shaped the texts, such as "fog: GL_LINEAR", in a fixed order; what the state
/// leaves at its start is left out. Texts that differ have phrases that differ.
std::vector<std::string> stateOfTexts(const std::string &vertex, const std::string &fragment);

/// The phrases of `state` that `other` lacks, in their order.
std::vector<std::string> phrasesNotIn(const std::vector<std::string> &state, const std::vector<std::string> &other);
