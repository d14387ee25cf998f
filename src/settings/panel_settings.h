// SPDX-License-Identifier: MIT
// The settings record, filled once per process from defaults, the settings file and the environment.
#pragma once

#include <cstdint>

/// Bits of PanelSettings::flags0 that this library reads.
constexpr uint32_t PANEL_LOG_SHADERS = 0x20;       // write the info logs of the next program
constexpr uint32_t PANEL_LOG_DUMPX = 0x20000;      // state dump per draw, snapshot per swap
constexpr uint32_t PANEL_LOG_PRIMITIVES = 0x40000; // element dumps per glDrawElements
constexpr uint32_t PANEL_SMOOTHING_2X_HIGH = 0x100000;
constexpr uint32_t PANEL_SMOOTHING_4X_HIGH = 0x400000;
constexpr uint32_t PANEL_SAMPLE_BUFFER_2X = 0x800000;
constexpr uint32_t PANEL_SAMPLE_BUFFER_4X = 0x1000000;

/// Bits of PanelSettings::flags1 that this library reads.
constexpr uint32_t PANEL_INTERFACE_ONLY = 0x8;

/// Nineteen words, in the order that the device's other driver components know. docs/settings.md says what sets them.
struct PanelSettings {
    uint32_t flags0; // bits of the settings file's switches
    uint32_t flags1;
    const char *resolveLogPath;
    const char *vertexShaderDumpPath;
    const char *fragmentShaderDumpPath;
    const char *compilerDumpShaderName; // kUnnamedShader, or a copy that the settings file's reader made
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

/// Start value of PanelSettings::compilerDumpShaderName.
extern const char kUnnamedShader[];

/// The one record of the process. The first call fills it, later calls give it unchanged; not synchronised.
const PanelSettings *get_panel_settings();

/// Fills a record anew: the defaults, then the settings file, the environment, and the buffers that high smoothing
/// needs. What the record held before is overwritten and not freed.
void fillPanelSettings(PanelSettings *settings);
