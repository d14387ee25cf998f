// SPDX-License-Identifier: MIT
// Programs on this machine's driver, without a display server.
#pragma once

#include "translator.h"

#include <set>
#include <string>

/// Makes a context of the machine's driver current on this thread. False without one.
bool openDriver();

/// Ends what openDriver began.
void closeDriver();

/// What the driver's compiler can do.
DriverAbilities driverAbilities();

/// The uniforms of a linked program as an application sees them, one "type name[elements]" each, in order; empty when
/// the program does not link. Gathered ones are those whose places the driver has kept.
std::set<std::string> uniformsOf(const std::string &vertex, const std::string &fragment,
                                 const DriverAbilities &abilities);

/// Translates, compiles and links the two texts. Returns "" or the driver's complaint. What it made is deleted.
std::string buildProgram(const std::string &vertex, const std::string &fragment, const DriverAbilities &abilities,
                         Expansion expansion = Expansion::None);
