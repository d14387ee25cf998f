// SPDX-License-Identifier: MIT
// Linked programs kept between runs, in the folder that TRL20_PROGRAM_CACHE names. Without it nothing here is called
// after startStoredPrograms.
#pragma once

#include "program_objects.h"

/// Looks for TRL20_PROGRAM_CACHE, once per process, and says on standard error when the folder cannot be used: it must
/// be the user's own, and nobody else may write to it, since a driver trusts the programs it is given.
void startStoredPrograms();

/// True when there is a folder.
bool storesPrograms();

/// Everything that a linked program depends on: the driver, the texts it is given, and where the attributes are. Empty
/// when this driver gives no linked programs away, which is told once. A context must be current.
std::string storedProgramKey(const TranslatedProgram &texts, const AttributeBindings &bindings);

/// Makes the driver's program, a new one, what an earlier run stored for the key. False when there is nothing of that
/// key or the driver does not want it any longer; the program can then be linked as usual.
bool loadStoredProgram(const std::string &key, GLuint program);

/// Says before linking that the program will be stored.
void askForStorage(GLuint program);

/// Stores the program, which has been linked. A folder that cannot be written to is told once.
void storeProgram(const std::string &key, GLuint program);
