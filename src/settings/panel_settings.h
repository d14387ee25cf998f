// SPDX-License-Identifier: MIT
// The settings record, filled once per process.
#pragma once

#include <cstdint>

/// Bits of PanelSettings::flags1 that this library reads.
constexpr uint32_t PANEL_INTERFACE_ONLY = 0x8;

struct PanelSettings {
    uint32_t flags0; // bits of the settings file's switches
    uint32_t flags1;
    const char *resolveLogPath;
    const char *vertexShaderDumpPath;
    const char *fragmentShaderDumpPath;
    const char *compilerDumpShaderName;
    const char *compilerDumpPath;
    int32_t guardbandValue;
    int32_t onChipMemorySize;
    int32_t binCountWeight;
    int32_t groupCountWeight;
    uint32_t triangleJuice; // 0..3
    int32_t vertexBufferSetting;
    int32_t multisampleMode;
    uint32_t hardwareBlit2D; // bit 0
    int32_t failNth;
    int32_t doNotFailFirst;
    int32_t failRandomSeed;
    int32_t failPercent;
};

/// The one record of the process.
const PanelSettings *get_panel_settings();
