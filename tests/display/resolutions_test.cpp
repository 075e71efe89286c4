#include "display/resolutions.hpp"

#include "display_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

class CurrentResolution : public test::DisplayTerminal {};

const std::string query = "xrandr |grep -w \"connected\"|awk -F' ' '{print $3}'|grep -o "
                          "\"[0-9]\\{1,4\\}x[0-9]\\{1,4\\}\"";

constexpr const char* two_screens =
    "Screen 0: minimum 320 x 200, current 3200 x 1080, maximum 8192 x 8192\n"
    "VGA1 disconnected (normal left inverted right x axis y axis)\n"
    "HDMI1 connected 1920x1080+0+0 (normal left inverted right) 510mm x 290mm\n"
    "   1920x1080     60.00*+\n"
    "DP1 connected 1280x1024+1920+0 (normal left inverted right) 376mm x 301mm\n";

} // namespace

TEST(Resolutions, AnIndexIsTheNumberThatItSaysFromOneToTen) {
    for (unsigned number = 1; number <= 10; ++number) {
        EXPECT_EQ(number_of_index(std::to_string(number)), number);
    }
    for (const char* const index :
         {"0", "", "11", "12", "13", "01", " 1", "1 ", "+1", "-1", "1.0", "10\n", "abc", "auto"}) {
        EXPECT_EQ(number_of_index(index), 0U) << index;
    }
}

TEST(Resolutions, EveryNumberHasItsName) {
    const char* const names[] = {"auto",      "1024x768",  "1280x720",  "1440x900", "1600x1200",
                                 "1920x1080", "1280x1024", "1366x768",  "1600x900", "1280x800",
                                 "auto",      "2560x1440", "1680x1050", "3840x2160"};
    for (unsigned number = 0; number < std::size(names); ++number) {
        EXPECT_STREQ(name_of_number(number), names[number]) << number;
    }
    EXPECT_STREQ(name_of_number(14), "auto");
    EXPECT_STREQ(name_of_number(4294967295U), "auto");
}

TEST(Resolutions, ARequestNamesItsIndex) {
    const std::pair<const char*, const char*> cases[] = {
        {"800x600", "0"},     {"1024x768", "1"},  {"1280x720", "2"},          {"1440x900", "3"},
        {"1600x1200", "4"},   {"1920x1080", "5"}, {"1280x1024", "6"},         {"1366x768", "7"},
        {"1600x900", "8"},    {"auto", "10"},     {"res=auto", "10"},         {"xautox", "10"},
        {"res=0", "0"},       {"res=9", "9"},     {"res=10", "10"},           {"res=9&force=", "9"},
        {"res=+5", "5"},      {"res=05", "5"},    {"force=1&res=7&x=y", "7"}, {"res=5x", "5"},
        {"res=5&auto", "10"},
    };
    for (const auto& [request, index] : cases) EXPECT_EQ(requested_index(request), index);
}

TEST(Resolutions, ARequestForNoneOfThemHasNoIndex) {
    for (const char* const request :
         {"", "1280x800", "2560x1440", "1680x1050", "3840x2160", "res=11", "res=12", "res=13",
          "res=-1", "res=", "res", "res=99999999", " 1024x768", "1024X768", "Auto", "x=5",
          "1024x768&force=1"}) {
        EXPECT_EQ(requested_index(request), "") << request;
    }
}

TEST(Resolutions, DeliberatelyATextThatIsNoNumberCountsAsZero) {
    EXPECT_EQ(requested_index("res=abc"), "0");
    EXPECT_EQ(requested_index("res=1024x768"), ""); // 1024
}

TEST(Resolutions, TheOfferedAreTenInOrder) {
    EXPECT_EQ(test::text_of(offered_resolutions()),
              R"({"list":[{"value":"auto"},{"value":"800x600"},{"value":"1024x768"},)"
              R"({"value":"1280x720"},{"value":"1440x900"},{"value":"1600x1200"},)"
              R"({"value":"1920x1080"},{"value":"1280x1024"},{"value":"1366x768"},)"
              R"({"value":"1600x900"}]})");
}

TEST(Resolutions, EveryOfferedOneCanBeRequested) {
    const Json offered = offered_resolutions();
    json_object* const list = json_object_object_get(offered.get(), "list");
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        json_object* const entry = json_object_array_get_idx(list, i);
        const char* const value = json_object_get_string(json_object_object_get(entry, "value"));
        EXPECT_NE(requested_index(value), "") << value;
    }
}

TEST_F(CurrentResolution, IsThatOfTheFirstConnectedOutput) {
    test::StandIn xrandr("xrandr");
    xrandr.prints(two_screens);
    EXPECT_EQ(current_resolution(), "1920x1080");
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{{query, true}}));
    EXPECT_EQ(test::log_lines(), test::Texts{});
}

TEST_F(CurrentResolution, IsEmptyWhenNoOutputTellsOne) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("VGA1 disconnected 1x1\nHDMI1 connected (normal left)\n");
    EXPECT_EQ(current_resolution(), "");
    xrandr.exits_with(1).prints("");
    EXPECT_EQ(current_resolution(), "");
}

TEST_F(CurrentResolution, IsTheNextOutputsWhereTheFirstIsSwitchedOff) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("HDMI1 connected (normal left)\nDP1 connected 1280x1024+0+0 (normal)\n");
    EXPECT_EQ(current_resolution(), "1280x1024");
}

TEST_F(CurrentResolution, DeliberatelyIsNotSeenBehindTheWordPrimary) {
    test::StandIn xrandr("xrandr");
    xrandr.prints("HDMI1 connected primary 1920x1080+0+0 (normal left)\n");
    EXPECT_EQ(current_resolution(), "");
}

TEST(CurrentResolutionLine, LosesItsBlanksAndWhatIsBeyondItsLimit) {
    test::ScriptedOs system;
    const std::pair<std::string, std::string> cases[] = {
        {" 1 x 2 ", "1x2"},
        {"", ""},
        {"   ", ""},
        {std::string(253, 'x'), std::string(253, 'x')},
        {std::string(254, 'x'), std::string(254, 'x')},
        {std::string(300, 'x'), std::string(254, 'x')},
    };
    for (const auto& [line, resolution] : cases) {
        system.printed_lines = {line, "7x7"};
        EXPECT_EQ(current_resolution(), resolution);
    }
    EXPECT_EQ(system.record.front(), "lines " + query);
}

TEST_F(CurrentResolution, IsNoneAndLoggedWhenTheCommandCannotBeStarted) {
    test::ScriptedOs system;
    system.lines_error = EMFILE;
    EXPECT_EQ(current_resolution(), std::nullopt);
    EXPECT_EQ(test::log_lines(),
              test::Texts{"[DEBUG] execute command failed: Too many open files"});
}

} // namespace qvtc::display
