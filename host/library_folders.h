// SPDX-License-Identifier: MIT
// Where a machine's own libraries are looked for.
#pragma once

/// The standard folders, the usual ones first. The multiarch folder is the one that the build is for, for instance
/// x86_64-linux-gnu.
inline constexpr const char *kLibraryFolders[] = {
#ifdef TRL20_MULTIARCH
    "/usr/lib/" TRL20_MULTIARCH,
    "/lib/" TRL20_MULTIARCH,
    "/usr/local/lib/" TRL20_MULTIARCH,
#endif
    "/usr/lib64",
    "/lib64",
    "/usr/lib",
    "/lib",
    "/usr/local/lib64",
    "/usr/local/lib",
};
