#include "display/brightness.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

extern "C" char buffer[];

namespace qvtc::display {

namespace {

using test::Texts;

class Brightness : public test::DisplayTerminal {};

constexpr const char* ask =
    "DISPLAY=:0.0 xrandr --verbose|grep Brightness|awk -F: 'NR==1{print$2}'";
constexpr const char* ask_outputs = "DISPLAY=:0.0 xrandr |grep -w connected|awk '{print$1}'";

} // namespace

TEST_F(Brightness, OfTheFirstOutputIsInPercentTruncated) {
    const std::pair<const char*, const char*> cases[] = {
        {" 0.80\n", "80"}, {" 1.0\n", "100"}, {"0.2", "20"},     {" 0.0\n", "0"},
        {"0.999", "99"},   {"0.57", "56"}, // the nearest there is lies below
        {"-0.5", "-50"},   {"-0.009", "0"},   {"1.5e1", "1500"}, {"high", "0"},
        {"\n", "0"},       {"1e300", "0"},    {"nan", "0"},      {"-inf", "0"},
    };
    for (const auto& [said, percent] : cases) {
        test::ScriptedOs system;
        system.outputs = {said};
        EXPECT_EQ(test::text_of(qvgetmonitor()),
                  std::string(R"({"brightness":")") + percent + R"("})");
        EXPECT_EQ(system.record, Texts{std::string("capture 204800 ") + ask});
        EXPECT_STREQ(buffer, said);
    }
}

TEST_F(Brightness, IsEmptyWhenNoOutputTellsOne) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("VGA1 connected\n");
    EXPECT_EQ(test::text_of(qvgetmonitor()), R"({"brightness":""})");
    EXPECT_EQ(test::recorded_command_details(), (std::vector<test::RecordedCommand>{{ask, true}}));
    EXPECT_STREQ(buffer, "");
}

TEST_F(Brightness, IsReadFromTheFirstOutputOnly) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("VGA1 connected\n\tBrightness: 0.65\nHDMI1 connected\n\tBrightness: 1.0\n");
    EXPECT_EQ(test::text_of(qvgetmonitor()), R"({"brightness":"65"})");
    EXPECT_STREQ(buffer, " 0.65\n");
}

TEST_F(Brightness, IsSetOnEveryConnectedOutputWithinItsBoundsAndStoredAsGiven) {
    const std::pair<const char*, const char*> cases[] = {
        {"100", "1.000000"},        {"150", "1.000000"}, {"20", "0.200000"},  {"19", "0.200000"},
        {"5", "0.200000"},          {"-5", "0.200000"},  {"57", "0.570000"},  {"33", "0.330000"},
        {"99", "0.990000"},         {"abc", "0.200000"}, {"80x", "0.800000"}, {" 70", "0.700000"},
        {"2147483647", "1.000000"},
    };
    for (const auto& [asked, set] : cases) {
        test::StandIn xrandr("xrandr");
        xrandr.prints("VGA1 connected 1x1\nDP1 disconnected\nHDMI1 connected 1x1\n");
        test::forget_commands();
        // What the stand-in prints for the setting is of no interest.
        const std::string params = std::string("brightness=") + asked;
        test::capture_stdout([&] { EXPECT_EQ(qvsetmonitor(params.c_str()), 0); });
        const std::string end = std::string(" --brightness ") + set;
        EXPECT_EQ(test::recorded_command_details(),
                  (std::vector<test::RecordedCommand>{
                      {ask_outputs, true},
                      {"DISPLAY=:0.0 xrandr --output VGA1" + end, false},
                      {"DISPLAY=:0.0 xrandr --output HDMI1" + end, false}}))
            << asked;
        EXPECT_EQ(xrandr.calls().back(), (Texts{"--output", "HDMI1", "--brightness", set}));
        EXPECT_EQ(test::stored_setting(test::brightness_key), asked);
    }
}

TEST_F(Brightness, OutputsAreAskedForWithinTheirLimit) {
    test::ScriptedOs system;
    system.outputs = {"\n\nA\n\nB"};
    test::capture_stderr([] { set_brightness("brightness=50"); });
    EXPECT_EQ(system.record, (Texts{std::string("capture 128 ") + ask_outputs,
                                    "run DISPLAY=:0.0 xrandr --output A --brightness 0.500000",
                                    "run DISPLAY=:0.0 xrandr --output B --brightness 0.500000"}));
}

TEST_F(Brightness, IsStoredWithoutAnyOutput) {
    test::ScriptedOs system;
    test::capture_stderr([] { EXPECT_EQ(qvsetmonitor("brightness=55"), 0); });
    EXPECT_EQ(system.record.size(), 1U);
    EXPECT_EQ(test::stored_setting(test::brightness_key), "55");
}

TEST_F(Brightness, WithoutTheKeyNothingHappens) {
    for (const char* const params : {"", "55", "brightness", "brightness=", "Brightness=55"}) {
        EXPECT_EQ(qvsetmonitor(params), 0);
    }
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_FALSE(test::file_exists(test::document_path));
}

TEST_F(Brightness, AnOutputsNameIsNeverShellSyntax) {
    test::ScriptedOs system;
    system.outputs = {"a;b\n$(touch\n`x`\n'q'\n\"q\"\nHDMI-A-0\n"};
    test::capture_stderr([] { set_brightness("brightness=100"); });
    const auto set = [](const std::string& name) {
        return "run DISPLAY=:0.0 xrandr --output " + name + " --brightness 1.000000";
    };
    EXPECT_EQ(Texts(system.record.begin() + 1, system.record.end()),
              (Texts{set("a\\;b"), set("\\$\\(touch"), set("\\`x\\`"), set("\\'q\\'"),
                     set("\\\"q\\\""), set("HDMI-A-0")}));
}

} // namespace qvtc::display
