// SPDX-License-Identifier: MIT
// The generators' texts as strings, and the expected texts kept in golden/.
#pragma once

#include "shadergen/key.h"

#include <initializer_list>
#include <string>
#include <utility>

/// The two texts of a key, each generated into a fresh buffer.
std::string vertexText(const ProgramKey &key);
std::string fragmentText(const ProgramKey &key);

/// The content of golden/<name>. A file that cannot be read fails the test and gives "".
std::string golden(const std::string &name);

/// The text with each first piece replaced by the second one, in order. A piece that does not occur exactly once fails
/// the test.
std::string edited(std::string text, std::initializer_list<std::pair<std::string, std::string>> edits);

/// An otherwise empty key with the general 4x4 transform.
ProgramKey plainKey();

/// Turns a unit on: RGBA texture, GL_MODULATE, plain 2D coordinates.
void enableUnit(ProgramKey &key, uint32_t unit);

/// Turns lighting on with what it brings along: colour per vertex and eye coordinates.
void enableLighting(ProgramKey &key);

/// Gives a light its kind (a LightKind) and counts it.
void addLight(ProgramKey &key, uint32_t light, uint32_t kind);
