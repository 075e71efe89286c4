#include "display/xorg_conf.hpp"

#include "core/text.hpp"
#include "display/resolutions.hpp"
#include "display_terminal.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

// The files under tests/golden/display were written by hand: for the driver "intel", the mode
// 1920x1080 and, with two screens, the outputs DP1 and HDMI1.
std::string expected_file(const StaticFacts& facts) {
    std::string text = test::golden_file(facts.dual ? "dual.conf" : "clone.conf");
    const auto put = [&text](std::string_view from, const std::string& to) {
        ASSERT_TRUE(contains(text, from)) << from;
        text = replace_all(text, from, to);
    };
    put("\tDriver\t\"intel\"\n", textf("\tDriver\t\"%s\"\n", facts.driver));
    put("\t\tModes           \"1920x1080_60.00\"\n",
        facts.mode.empty() ? "" : textf("\t\tModes           \"%s\"\n", facts.mode.c_str()));
    if (facts.dual) {
        put("monitor-DP1", std::string("monitor-") + facts.outputs.first);
        put("\"monitor-HDMI1\"\t  \"Monitor-1\"",
            textf("\"monitor-%s\"\t  \"Monitor-1\"", facts.outputs.second));
    }
    return text;
}

struct Machine {
    const char* processor;
    OutputTest holding; ///< the only fact that holds, "none" for none
    Outputs outputs;
};

constexpr Machine machines[] = {
    {"Intel(R) Celeron(R) CPU  J3160  @ 1.60GHz", OutputTest::none, {"DP2", "HDMI1"}},
    {"Intel(R) Celeron(R) CPU  J3355  @ 2.00GHz", OutputTest::none, {"DP1", "HDMI1"}},
    {"Intel(R) Celeron(R) CPU  N3160  @ 1.60GHz", OutputTest::none, {"HDMI3", "HDMI1"}},
    {"Intel(R) Celeron(R) N5095 @ 2.00GHz", OutputTest::is_notebook, {"eDP1", "HDMI1"}},
    {"Intel(R) Celeron(R) N5095 @ 2.00GHz", OutputTest::dp1_is_connected, {"DP1", "HDMI2"}},
    {"Intel(R) Celeron(R) N5095 @ 2.00GHz",
     OutputTest::hdmi1_is_not_connected,
     {"HDMI-2", "HDMI-1"}},
    {"Intel(R) Celeron(R) N5095 @ 2.00GHz", OutputTest::none, {"HDMI2", "HDMI1"}},
    {"AMD GX-415GA SOC", OutputTest::none, {"VGA1", "HDMI1"}},
    {"", OutputTest::none, {"VGA1", "HDMI1"}},
};

constexpr const char* modes[] = {
    "800x600_60.00",
    "1024x768_60.00",
    "1280x720_60.00",
    "1440x900_60.00",
    "1600x1200_60.00",
    "1920x1080_60.00",
    "1280x1024_60.00",
    "1366x768_60.00",
    "1600x900_60.00",
    "4096x2160",
    "",
};

} // namespace

TEST(XorgConf, TheMinimalFileIsToTheByte) {
    EXPECT_EQ(joined(minimal_configuration()), test::golden_file("minimal.conf"));
}

TEST(XorgConf, TheFlagsAloneAreToTheByte) {
    EXPECT_EQ(joined(flags_only_configuration()), test::golden_file("flags_only.conf"));
    EXPECT_EQ(flags_only_configuration().size(), 9U);
}

TEST(XorgConf, TheCompleteFileIsToTheByte) {
    EXPECT_EQ(joined(static_configuration({"1920x1080_60.00", "intel", true, {"DP1", "HDMI1"}})),
              test::golden_file("dual.conf"));
    EXPECT_EQ(joined(static_configuration({"1920x1080_60.00", "intel", false, {}})),
              test::golden_file("clone.conf"));
}

TEST(XorgConf, TheCompleteFileHasEachDriverModeAndMappingInItsPlace) {
    for (const char* const driver : {"Radeon", "vmware", "intel"}) {
        for (const char* const mode : modes) {
            for (const Machine& machine : machines) {
                for (const bool dual : {true, false}) {
                    const StaticFacts facts{mode, driver, dual, machine.outputs};
                    ASSERT_EQ(joined(static_configuration(facts)), expected_file(facts));
                }
            }
        }
    }
}

TEST(XorgConf, EveryProcessorHasItsOutputs) {
    for (const Machine& machine : machines) {
        const Outputs outputs =
            outputs_of(machine.processor, [&](OutputTest test) { return test == machine.holding; });
        EXPECT_STREQ(outputs.first, machine.outputs.first) << machine.processor;
        EXPECT_STREQ(outputs.second, machine.outputs.second) << machine.processor;
    }
}

TEST(XorgConf, TheFirstProcessorThatMatchesCounts) {
    const auto never = [](OutputTest) { return false; };
    EXPECT_STREQ(outputs_of("N3160 J3160", never).first, "DP2");
    EXPECT_STREQ(outputs_of("N5095 J3355", never).first, "DP1");
    EXPECT_STREQ(outputs_of("N5095 N3160", never).first, "HDMI3");
    EXPECT_STREQ(outputs_of("n3160", never).first, "VGA1");
}

TEST(XorgConf, FactsAreAskedForInTurnAndOnlyWhereOutputsDependOnThem) {
    std::vector<OutputTest> asked;
    const auto never = [&](OutputTest test) {
        asked.push_back(test);
        return false;
    };
    for (const char* const processor : {"J3160", "J3355", "N3160", "any", ""}) {
        outputs_of(processor, never);
    }
    EXPECT_TRUE(asked.empty());
    outputs_of("N5095", never);
    EXPECT_EQ(asked, (std::vector{OutputTest::is_notebook, OutputTest::dp1_is_connected,
                                  OutputTest::hdmi1_is_not_connected}));
    asked.clear();
    outputs_of("N5095", [&](OutputTest test) {
        asked.push_back(test);
        return test == OutputTest::dp1_is_connected;
    });
    EXPECT_EQ(asked, (std::vector{OutputTest::is_notebook, OutputTest::dp1_is_connected}));
}

TEST(XorgConf, TheDriverIsThatOfTheCard) {
    EXPECT_STREQ(driver_of("01:00.0 VGA compatible controller: AMD/ATI Radeon HD 6450"), "Radeon");
    EXPECT_STREQ(driver_of("00:0f.0 VGA compatible controller: vmware SVGA II"), "vmware");
    EXPECT_STREQ(driver_of("vmware with a Radeon"), "Radeon");
    for (const char* const cards : {"", "VMware SVGA II", "radeon", "Intel HD Graphics 500"}) {
        EXPECT_STREQ(driver_of(cards), "intel") << cards;
    }
}

TEST(XorgConf, TheModesAreNotTheNamesThatTheScriptIsTold) {
    const char* const expected[] = {
        "800x600_60.00",   "1024x768_60.00",  "1280x720_60.00", "1440x900_60.00", "1600x1200_60.00",
        "1920x1080_60.00", "1280x1024_60.00", "1366x768_60.00", "1600x900_60.00", "800x600_60.00"};
    for (unsigned number = 0; number < std::size(expected); ++number) {
        EXPECT_STREQ(static_mode_of(number), expected[number]) << number;
    }
    for (const unsigned number : {11U, 12U, 13U, 4294967295U}) {
        EXPECT_STREQ(static_mode_of(number), "800x600_60.00") << number;
    }
}

} // namespace qvtc::display
