// SPDX-License-Identifier: MIT
#include "settings/panel_settings.h"

namespace {

// What the switches of a device without a settings file are. Only the interface-only flag, clear here, is read by this
// library; the others describe hardware paths.
constexpr PanelSettings kDefaults = {
    .flags0 = 0x43A90000, // inline constants, optimised updates, 2x and 4x sample buffers with normal smoothing,
                          // no faceness culling
    .flags1 = 0x000011A1, // shadowed on-chip memory, natural buffer alignment, dither-safe and fast clears, memory pool
    .resolveLogPath = "c:\\resolve_log.txt",
    .vertexShaderDumpPath = "./glslvs.txt",
    .fragmentShaderDumpPath = "./glslfs.txt",
    .compilerDumpShaderName = "unknown",
    .compilerDumpPath = "./scdevdump.txt",
    .guardbandValue = 0,
    .onChipMemorySize = 0,
    .binCountWeight = 80,
    .groupCountWeight = 20,
    .triangleJuice = 0,
    .vertexBufferSetting = 22,
    .multisampleMode = 0,
    .hardwareBlit2D = 0,
    .failNth = 0,
    .doNotFailFirst = 0,
    .failRandomSeed = 0,
    .failPercent = 0,
};

} // namespace

const PanelSettings *get_panel_settings()
{
    return &kDefaults;
}
