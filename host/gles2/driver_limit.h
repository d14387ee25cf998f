// SPDX-License-Identifier: MIT
// TRL20_DRIVER_LIMIT: a driver that can do less than this machine's, for trying out what is done instead. Nothing but
// the code that reads the driver's abilities knows of it.
//
//   es2         the least of OpenGL ES 2.0: no extension, eight vertex attributes for what is made here, lines of one
//               pixel. EGL images stay: ES 1.1 textures are made from them
//   thin-lines  lines of one pixel only
#pragma once

enum class DriverLimit { None, Es2, ThinLines };

/// The limit the environment asks for, read once. An unknown one is told on standard error and is none.
DriverLimit driverLimit();

/// The driver's extensions, as far as the limit leaves them; blank-separated. A context must be current.
const char *driverExtensions();
