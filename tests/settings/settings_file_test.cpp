// SPDX-License-Identifier: MIT
#include "settings/panel_settings.h"
#include "settings/settings_file.h"
#include "support/fake_platform.h"
#include "support/working_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr char kFile[] = "orvala_panel.txt";
constexpr char kVariable[] = "ORVALA_FORCE_GMEM_SHL";
constexpr uint32_t kFlags0 = 0x43A90000; // without a file
constexpr uint32_t kFlags1 = 0x000011A1;

// The order that other components know.
constexpr size_t kPlaces[] = {
    offsetof(PanelSettings, flags0),
    offsetof(PanelSettings, flags1),
    offsetof(PanelSettings, resolveLogPath),
    offsetof(PanelSettings, vertexShaderDumpPath),
    offsetof(PanelSettings, fragmentShaderDumpPath),
    offsetof(PanelSettings, compilerDumpShaderName),
    offsetof(PanelSettings, compilerDumpPath),
    offsetof(PanelSettings, guardbandValue),
    offsetof(PanelSettings, onChipMemorySize),
    offsetof(PanelSettings, binCountWeight),
    offsetof(PanelSettings, groupCountWeight),
    offsetof(PanelSettings, triangleJuice),
    offsetof(PanelSettings, vertexBufferSetting),
    offsetof(PanelSettings, multisampleMode),
    offsetof(PanelSettings, hardwareBlit2D),
    offsetof(PanelSettings, failNth),
    offsetof(PanelSettings, doNotFailFirst),
    offsetof(PanelSettings, failRandomSeed),
    offsetof(PanelSettings, failPercent),
};
static_assert(std::size(kPlaces) == 19 && std::is_sorted(std::begin(kPlaces), std::end(kPlaces)));
static_assert(sizeof(PanelSettings) == 14 * 4 + 5 * sizeof(void *));

class SettingsFile : public testing::Test {
protected:
    SettingsFile()
    {
        resetFakePlatform();
        unsetenv(kVariable);
    }
    ~SettingsFile() override
    {
        unsetenv(kVariable);
        dropName();
    }

    // The settings record of a file with this text. What was printed is in `printed`.
    const PanelSettings &with(const std::string &text)
    {
        writeFile(kFile, text);
        return fill();
    }

    const PanelSettings &fill()
    {
        dropName();
        std::memset(static_cast<void *>(&settings), 0xCC, sizeof(settings));
        testing::internal::CaptureStdout();
        fillPanelSettings(&settings);
        printed = testing::internal::GetCapturedStdout();
        filled = true;
        return settings;
    }

    void dropName()
    {
        if (filled && settings.compilerDumpShaderName != kUnnamedShader)
            os_free(const_cast<char *>(settings.compilerDumpShaderName));
        filled = false;
    }

    WorkingDirectory directory;
    PanelSettings settings = {};
    std::string printed;
    bool filled = false;
};

void expectDefaults(const PanelSettings &settings)
{
    EXPECT_EQ(settings.flags0, kFlags0);
    EXPECT_EQ(settings.flags1, kFlags1);
    EXPECT_STREQ(settings.resolveLogPath, "c:\\resolve_log.txt");
    EXPECT_STREQ(settings.vertexShaderDumpPath, "./glslvs.txt");
    EXPECT_STREQ(settings.fragmentShaderDumpPath, "./glslfs.txt");
    EXPECT_STREQ(settings.compilerDumpShaderName, "unknown");
    EXPECT_STREQ(settings.compilerDumpPath, "./scdevdump.txt");
    EXPECT_EQ(settings.guardbandValue, 0);
    EXPECT_EQ(settings.onChipMemorySize, 0);
    EXPECT_EQ(settings.binCountWeight, 80);
    EXPECT_EQ(settings.groupCountWeight, 20);
    EXPECT_EQ(settings.triangleJuice, 0u);
    EXPECT_EQ(settings.vertexBufferSetting, 22);
    EXPECT_EQ(settings.multisampleMode, 0);
    EXPECT_EQ(settings.hardwareBlit2D, 0u);
    EXPECT_EQ(settings.failNth, 0);
    EXPECT_EQ(settings.doNotFailFirst, 0);
    EXPECT_EQ(settings.failRandomSeed, 0);
    EXPECT_EQ(settings.failPercent, 0);
}

// A switch: a key and its bits in one of the three words of switches.
struct Switch {
    const char *key;
    uint32_t PanelSettings::*word;
    uint32_t bits;
};

constexpr auto kWord0 = &PanelSettings::flags0;
constexpr auto kWord1 = &PanelSettings::flags1;

// Set by a value that starts with '1', cleared by every other.
const std::vector<Switch> kFirstCharacterSwitches = {
    {"log.resolves", kWord0, 0x4}, {"log.pm4", kWord0, 0x8},         {"log.pm4mem", kWord0, 0x10},
    {"log.shaders", kWord0, 0x20}, {"log.dumpx", kWord0, 0x20000},   {"log.primitives", kWord0, 0x40000},
    {"log.sc_dev", kWord1, 0x10},  {"forceGuardband", kWord0, 0x80}, {"forceGmemSize", kWord0, 0x100},
};

// Set by "1", cleared by "0".
const std::vector<Switch> kExactSwitches = {
    {"enableOptimizedResourceUpdates", kWord0, 0x2000000},
    {"enableInlineConstantUpdates", kWord0, 0x40000000},
    {"allocateMultisampleBuffer", kWord0, 0x1800000},
    {"allocate2xMultisampleBuffer", kWord0, 0x800000},
    {"allocate4xMultisampleBuffer", kWord0, 0x1000000},
    {"disableExtraSwapBlit", kWord0, 0x4000000},
    {"waitForIdleAfterDraw", kWord0, 0x8000000},
    {"forceAutoTextureCompression", kWord0, 0x10000000},
    {"useUncachedVBOs", kWord0, 0x20000000},
    {"useSafeMode", kWord0, 0x80000000},
    {"enableMemoryPool", kWord1, 0x1},
    {"disableSwapTsIdle", kWord1, 0x2},
    {"enableFastClears", kWord1, 0x20},
    {"ditherSafeFastClears", kWord1, 0x80},
    {"waitForIdleOnSubmit", kWord1, 0x40},
    {"shadowGmemInAppBuffers", kWord1, 0x1000},
    {"forceMSAAMode", kWord1, 0x200},
    {"2D.HwBlt", &PanelSettings::hardwareBlit2D, 0x1},
    {"VAESEnable", kWord1, 0x400},
    {"VAESGenericError", kWord1, 0x800},
};

struct Number {
    const char *key;
    int32_t PanelSettings::*field;
};

const std::vector<Number> kNumbers = {
    {"guardbandValue", &PanelSettings::guardbandValue},
    {"gmemSize", &PanelSettings::onChipMemorySize},
    {"numBins_weight", &PanelSettings::binCountWeight},
    {"numGroups_weight", &PanelSettings::groupCountWeight},
    {"veboSetting", &PanelSettings::vertexBufferSetting},
    {"MSAAMode", &PanelSettings::multisampleMode},
    {"VAESFailNth", &PanelSettings::failNth},
    {"VAESDoNotFailFirstN", &PanelSettings::doNotFailFirst},
    {"VAESRandomSeed", &PanelSettings::failRandomSeed},
    {"VAESFailPercent", &PanelSettings::failPercent},
};

// Lines in the file and what they make of the two flag words.
struct FlagCase {
    const char *lines;
    uint32_t flags0;
    uint32_t flags1;
};

std::string line(const char *key, const std::string &value)
{
    return std::string(key) + "=" + value + "\n";
}

std::string unrecognized(const char *key, const char *value)
{
    return std::string("  ** Unrecognized value of '") + value + "' for '" + key + "'!\n";
}

} // namespace

TEST_F(SettingsFile, WithoutAFileTheRecordHoldsItsDefaults)
{
    expectDefaults(fill());
    EXPECT_EQ(printed, "");
    EXPECT_EQ(settings.flags1 & PANEL_INTERFACE_ONLY, 0u);
}

TEST_F(SettingsFile, FilesThatSayNothingLeaveTheDefaults)
{
    const std::string texts[] = {"",
                                 "\n\n\n",
                                 "   =  = \n",
                                 "useSafeMode\n",
                                 "useSafeMode=\n",
                                 "useSafeMode =  \nperformance\nbinning\n",
                                 "=1\n",
                                 "nosuchkey=1\n",
                                 "USESAFEMODE=1\n",
                                 "useSafeMode1\n",
                                 "# useSafeMode=1\n",
                                 "\tuseSafeMode=1\n"};
    for (const std::string &text : texts) {
        SCOPED_TRACE(text);
        expectDefaults(with(text));
        EXPECT_EQ(printed, "");
    }
}

TEST_F(SettingsFile, ADirectoryInItsPlaceLeavesTheDefaults)
{
    std::filesystem::create_directory(kFile);
    expectDefaults(fill());
}

TEST_F(SettingsFile, TheSecondPlaceIsReadOnlyWithoutTheFirst)
{
    std::filesystem::create_directory("c:");
    writeFile("c:/orvala_panel.txt", "triJuice=2\n");
    EXPECT_EQ(fill().triangleJuice, 2u);

    EXPECT_EQ(with("gmemSize=5\n").triangleJuice, 0u);
    EXPECT_EQ(settings.onChipMemorySize, 5);
}

TEST_F(SettingsFile, AFirstCharacterSwitchIsSetByAOneInFrontAndClearedByEverythingElse)
{
    for (const Switch &one : kFirstCharacterSwitches) {
        for (const std::string value : {"1", "1x", "10", "1\r"}) {
            SCOPED_TRACE(line(one.key, value));
            EXPECT_EQ(with(line(one.key, value)).*one.word & one.bits, one.bits);
        }
        for (const std::string value : {"0", "yes", "on", "x1", "-1", "true"}) {
            SCOPED_TRACE(line(one.key, value));
            EXPECT_EQ(with(line(one.key, "1") + line(one.key, value)).*one.word & one.bits, 0u);
            expectDefaults(settings);
        }
        EXPECT_EQ(printed, "");
    }
}

TEST_F(SettingsFile, ASwitchTouchesItsOwnBitsOnly)
{
    std::vector<Switch> all = kFirstCharacterSwitches;
    all.insert(all.end(), kExactSwitches.begin(), kExactSwitches.end());
    for (const Switch &one : all) {
        SCOPED_TRACE(one.key);
        PanelSettings expected = with("");
        with(line(one.key, "1"));
        expected.*one.word |= one.bits;
        EXPECT_EQ(std::memcmp(&settings, &expected, sizeof(expected)), 0);
        with(line(one.key, "0"));
        expected.*one.word &= ~one.bits;
        EXPECT_EQ(std::memcmp(&settings, &expected, sizeof(expected)), 0);
    }
}

TEST_F(SettingsFile, AnExactSwitchKnowsOneAndZeroOnly)
{
    for (const Switch &one : kExactSwitches) {
        for (const std::string value : {"yes", "10", "1x", "01", "00", "on", "-1", "1\r"}) {
            SCOPED_TRACE(line(one.key, value));
            EXPECT_EQ(with(line(one.key, "1") + line(one.key, value)).*one.word & one.bits, one.bits);
            EXPECT_EQ(with(line(one.key, "0") + line(one.key, value)).*one.word & one.bits, 0u);
            EXPECT_EQ(printed, "");
        }
    }
}

TEST_F(SettingsFile, NumbersAreReadAsDecimal)
{
    const std::pair<const char *, int32_t> values[] = {
        {"7", 7}, {"-3", -3}, {"+5", 5}, {"12abc", 12}, {"abc", 0}, {"0x10", 0}, {"2147483647", 2147483647}};
    for (const Number &number : kNumbers) {
        for (const auto &[text, value] : values) {
            SCOPED_TRACE(line(number.key, text));
            PanelSettings expected = with("");
            expected.*number.field = value;
            with(line(number.key, text));
            EXPECT_EQ(std::memcmp(&settings, &expected, sizeof(expected)), 0);
        }
    }
}

TEST_F(SettingsFile, FlagsFollowTheTextValues)
{
    const FlagCase cases[] = {
        {"performance=ifh\n", kFlags0 | 0x1, kFlags1},
        {"performance=ifd\n", kFlags0 | 0x2, kFlags1},
        {"performance=vspNull\n", kFlags0 | 0x1, kFlags1 | 0x4},
        {"performance=ifh\nperformance=ifd\n", kFlags0 | 0x3, kFlags1},
        {"performance=vspNull\nperformance=ifd\nperformance=normal\n", kFlags0, kFlags1},
        {"performance=es11ifd\n", kFlags0 | 0x2, kFlags1 | 0x8},
        {"performance=vspNull\nperformance=es11ifd\n", kFlags0 | 0x2, kFlags1 | 0x8},
        {"performance=es11ifd\nperformance=normal\n", kFlags0, kFlags1 | 0x8},
        {"binning=sw\n", kFlags0 | 0x40, kFlags1},
        {"binning=sw\nbinning=hw\n", kFlags0, kFlags1},
        {"convertTristrips=on\n", kFlags0 | 0x200, kFlags1},
        {"convertTristrips=off\n", kFlags0 | 0x400, kFlags1},
        {"convertTristrips=off\nconvertTristrips=on\n", kFlags0 | 0x600, kFlags1},
        {"convertTristrips=off\nconvertTristrips=on\nconvertTristrips=default\n", kFlags0, kFlags1},
        {"convertTrifans=on\n", kFlags0 | 0x800, kFlags1},
        {"convertTrifans=off\n", kFlags0 | 0x1000, kFlags1},
        {"convertTrifans=on\nconvertTrifans=off\n", kFlags0 | 0x1800, kFlags1},
        {"convertTrifans=on\nconvertTrifans=off\nconvertTrifans=default\n", kFlags0, kFlags1},
        {"convertLineloops=on\n", kFlags0 | 0x2000, kFlags1},
        {"convertLineloops=off\n", kFlags0 | 0x4000, kFlags1},
        {"convertLineloops=on\nconvertLineloops=default\n", kFlags0, kFlags1},
        {"facenessCulling=on\n", kFlags0 | 0x8000, kFlags1}, // "off" is the default and stays
        {"facenessCulling=off\n", kFlags0, kFlags1},
        {"facenessCulling=default\n", kFlags0 & ~0x18000u, kFlags1},
        {"vboDataAlignment=dword\n", kFlags0, kFlags1 & ~0x100u},
        {"vboDataAlignment=dword\nvboDataAlignment=natural\n", kFlags0, kFlags1},
        {"msaaSmoothing=High\n", 0x43D10000, kFlags1},
        {"msaaSmoothing=High\nmsaaSmoothing=Normal\n", kFlags0, kFlags1},
        {"2xmsaaSmoothing=High\n", 0x43B10000, kFlags1},
        {"2xmsaaSmoothing=High\n2xmsaaSmoothing=Normal\n", kFlags0, kFlags1},
        {"4xmsaaSmoothing=High\n", 0x43C90000, kFlags1},
        {"4xmsaaSmoothing=High\n4xmsaaSmoothing=Normal\n", kFlags0, kFlags1},
        {"msaaSmoothing=high\n2xmsaaSmoothing=1\n4xmsaaSmoothing=HIGH\n", kFlags0, kFlags1},
        // The buffers that high smoothing needs come back.
        {"2xmsaaSmoothing=High\nallocate2xMultisampleBuffer=0\n", 0x43B10000, kFlags1},
        {"allocate4xMultisampleBuffer=0\n4xmsaaSmoothing=High\n", 0x43C90000, kFlags1},
        {"allocateMultisampleBuffer=0\n2xmsaaSmoothing=High\n", 0x42B10000, kFlags1},
        {"allocateMultisampleBuffer=0\n", 0x42290000, kFlags1},
    };
    for (const FlagCase &one : cases) {
        SCOPED_TRACE(one.lines);
        with(one.lines);
        EXPECT_EQ(settings.flags0, one.flags0);
        EXPECT_EQ(settings.flags1, one.flags1);
        EXPECT_EQ(printed, "");
    }
}

TEST_F(SettingsFile, EightKeysTellUnknownValuesAndKeepTheOldOnes)
{
    for (const char *key : {"performance", "binning", "convertTristrips", "convertTrifans", "convertLineloops",
                            "facenessCulling", "triJuice", "vboDataAlignment"}) {
        for (const char *value : {"what", "1x", "ON", "%s%n"}) {
            SCOPED_TRACE(line(key, value));
            expectDefaults(with(line(key, value)));
            EXPECT_EQ(printed, unrecognized(key, value));
        }
    }
    with("binning=a\ntriJuice=4\n");
    EXPECT_EQ(printed, unrecognized("binning", "a") + unrecognized("triJuice", "4"));
}

TEST_F(SettingsFile, TriangleJuiceIsOneDigitFromZeroToThree)
{
    for (uint32_t level = 0; level < 4; ++level)
        EXPECT_EQ(with("triJuice=1\ntriJuice=" + std::to_string(level) + "\n").triangleJuice, level);
    for (const char *value : {"4", "-1", "00", "/", "3x"}) {
        EXPECT_EQ(with(line("triJuice", "2") + line("triJuice", value)).triangleJuice, 2u);
        EXPECT_EQ(printed, unrecognized("triJuice", value));
    }
}

TEST_F(SettingsFile, TheShaderNameIsACopyOfTheLastValue)
{
    const size_t before = fakePlatform().liveBlocks;
    EXPECT_STREQ(with("log.sc_dev_shader_name=first\nlog.sc_dev_shader_name=second third\n").compilerDumpShaderName,
                 "second");
    EXPECT_EQ(fakePlatform().liveBlocks, before + 1);
}

TEST_F(SettingsFile, WithoutMemoryTheShaderNameStays)
{
    fakePlatform().allocationsUntilFailure = 0;
    EXPECT_STREQ(with("log.sc_dev_shader_name=first\n").compilerDumpShaderName, "unknown");
}

TEST_F(SettingsFile, BlanksEqualsSignsOrBothSeparateKeyAndValue)
{
    for (const char *text : {"gmemSize=64\n", "gmemSize 64\n", "gmemSize = 64\n", "  gmemSize ==  64  \n",
                             "gmemSize=64", "=gmemSize 64 128\n"}) {
        EXPECT_EQ(with(text).onChipMemorySize, 64) << text;
    }
    EXPECT_EQ(with("gmemSize\t64\n").onChipMemorySize, 0) << "a tab is part of the key";
    EXPECT_EQ(with("gmemSize=1\ngmemSize=2\n").onChipMemorySize, 2) << "the later line counts";
}

TEST_F(SettingsFile, ALineOfMoreThan255CharactersCountsAsTwo)
{
    // The first 255 characters are blanks and the key's beginning; the rest starts a line of its own.
    const std::string blanks(255, ' ');
    EXPECT_EQ(with(blanks + "gmemSize=7\n").onChipMemorySize, 7);
    EXPECT_EQ(with(std::string(254, ' ') + "gmemSize=7\n").onChipMemorySize, 0) << "key cut after its first letter";
    EXPECT_EQ(with(std::string(244, ' ') + "gmemSize=78\n").onChipMemorySize, 78) << "255 characters fit";
    EXPECT_EQ(with(std::string(245, ' ') + "gmemSize=78\n").onChipMemorySize, 7) << "the last digit is cut off";
    // A long value's rest is a new key and value.
    EXPECT_EQ(with("log.sc_dev_shader_name=" + std::string(232, 'x') + "gmemSize=9\n").onChipMemorySize, 9);
    EXPECT_EQ(std::strlen(settings.compilerDumpShaderName), 232u);
}

TEST_F(SettingsFile, ALineWithAZeroByteEndsThere)
{
    EXPECT_EQ(with(std::string("gmemSize=4\0 6\nveboSetting=3\n", 28)).onChipMemorySize, 4);
    EXPECT_EQ(settings.vertexBufferSetting, 3);
    EXPECT_EQ(with(std::string("gmemSize\0=4\n", 12)).onChipMemorySize, 0);
}

TEST_F(SettingsFile, TheEnvironmentShiftsTheOnChipMemorySize)
{
    struct Shift {
        const char *value;
        int32_t size; // from 5
    };
    const Shift shifts[] = {
        {"0", 5},
        {"1", 10},
        {"3", 40},
        {"29", static_cast<int32_t>(0xA0000000)},
        {"31", static_cast<int32_t>(0x80000000)},
        {"32", 0},
        {"40", 0},
        {"255", 0},
        {"256", 5},
        {"259", 40},
        {"-1", 0},
        {"-253", 40}, // -253 and 3 have the same low byte
        {"", 5},
        {"abc", 5},
        {"3abc", 40},
        {" 3", 40},
    };
    for (const Shift &shift : shifts) {
        SCOPED_TRACE(shift.value);
        setenv(kVariable, shift.value, 1);
        EXPECT_EQ(with("gmemSize=5\n").onChipMemorySize, shift.size);
        EXPECT_EQ(with("").onChipMemorySize, 0);
    }
    unsetenv(kVariable);
    EXPECT_EQ(with("gmemSize=5\n").onChipMemorySize, 5);
}

TEST_F(SettingsFile, ReadsARealFileWithManyKeys)
{
    with("performance = ifd\n"
         "log.shaders 1\n"
         "\n"
         "binning=sw\n"
         "numBins_weight = 60\n"
         "numGroups_weight = 40\n"
         "useSafeMode yes\n"
         "log.pm4 yes\n"
         "2D.HwBlt=1\n");
    EXPECT_EQ(settings.flags0, kFlags0 | 0x2u | 0x20u | 0x40u);
    EXPECT_EQ(settings.binCountWeight, 60);
    EXPECT_EQ(settings.groupCountWeight, 40);
    EXPECT_EQ(settings.hardwareBlit2D, 1u);
}

// Files of random bytes and of random pieces of the grammar. The record must stay readable; the sanitizers of the
// sanitizer build look for the rest.
TEST_F(SettingsFile, SurvivesRandomFiles)
{
    std::vector<std::string> pieces = {" ",
                                       "=",
                                       "\n",
                                       "\r\n",
                                       "1",
                                       "0",
                                       "on",
                                       "off",
                                       "default",
                                       "High",
                                       "Normal",
                                       "sw",
                                       "es11ifd",
                                       "log.sc_dev_shader_name",
                                       "performance",
                                       "triJuice",
                                       "binning",
                                       "99999999999999999999",
                                       "-",
                                       "%n%s",
                                       std::string(1, '\0'),
                                       std::string(300, 'y'),
                                       std::string(255, ' '),
                                       "\xFF\xFE"};
    for (const Switch &one : kFirstCharacterSwitches)
        pieces.emplace_back(one.key);
    for (const Switch &one : kExactSwitches)
        pieces.emplace_back(one.key);
    for (const Number &number : kNumbers)
        pieces.emplace_back(number.key);

    std::mt19937 random(20);
    const auto below = [&random](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); };
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        const size_t length = below(200);
        for (size_t i = 0; i < length; ++i)
            text += round % 2 ? pieces[below(pieces.size())] : std::string(1, static_cast<char>(below(256)));
        with(text);
        ASSERT_NE(settings.compilerDumpShaderName, nullptr) << "round " << round;
        ASSERT_LT(std::strlen(settings.compilerDumpShaderName), 256u) << "round " << round;
        ASSERT_LT(settings.triangleJuice, 4u) << "round " << round;
        ASSERT_LT(settings.hardwareBlit2D, 2u) << "round " << round;
        ASSERT_STREQ(settings.resolveLogPath, "c:\\resolve_log.txt") << "round " << round;
    }
    EXPECT_TRUE(fakePlatform().assertions.empty());
}
