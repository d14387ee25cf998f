// SPDX-License-Identifier: MIT
#include "settings/panel_settings.h"

#include "settings/settings_file.h"

#include <cstdlib>

const char kUnnamedShader[] = "unknown";

namespace {

// What the switches of a device without a settings file are.
constexpr PanelSettings kDefaults = {
    .flags0 = 0x43A90000, // inline constants, optimised updates, 2x and 4x sample buffers with normal smoothing,
                          // no faceness culling
    .flags1 = 0x000011A1, // shadowed on-chip memory, natural buffer alignment, dither-safe and fast clears, memory pool
    .resolveLogPath = "c:\\resolve_log.txt",
    .vertexShaderDumpPath = "./glslvs.txt",
    .fragmentShaderDumpPath = "./glslfs.txt",
    .compilerDumpShaderName = kUnnamedShader,
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

PanelSettings panelSettings = {};
bool panelSettingsLoaded = false;

// ORVALA_FORCE_GMEM_SHL shifts the on-chip memory size. Only the low byte of its number counts; 32 and more leave
// nothing of the size.
void shiftOnChipMemory(PanelSettings *settings)
{
    const char *text = std::getenv("ORVALA_FORCE_GMEM_SHL");
    if (!text) return;
    const uint32_t shift = static_cast<uint32_t>(std::atoi(text)) & 0xFF;
    const auto size = static_cast<uint32_t>(settings->onChipMemorySize);
    settings->onChipMemorySize = shift < 32 ? static_cast<int32_t>(size << shift) : 0;
}

} // namespace

void fillPanelSettings(PanelSettings *settings)
{
    *settings = kDefaults;
    parseFile(settings);
    shiftOnChipMemory(settings);
    // High smoothing needs its buffer, whatever the file says of the buffer.
    if (settings->flags0 & PANEL_SMOOTHING_2X_HIGH) settings->flags0 |= PANEL_SAMPLE_BUFFER_2X;
    if (settings->flags0 & PANEL_SMOOTHING_4X_HIGH) settings->flags0 |= PANEL_SAMPLE_BUFFER_4X;
}

const PanelSettings *get_panel_settings()
{
    if (!panelSettingsLoaded) {
        panelSettingsLoaded = true;
        fillPanelSettings(&panelSettings);
    }
    return &panelSettings;
}
