#include "qvtcctl/display/outputs.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

void PrintTo(const Output& output, std::ostream* stream) {
    *stream << output.name << " at \"" << output.place << '"';
}

namespace {

using Outputs = std::vector<Output>;

TEST(QvtcctlOutputs, AreTheConnectedOnesWithTheirPlaces) {
    EXPECT_EQ(connected_outputs("Screen 0: minimum 64 x 64, current 2560 x 1024, maximum 9 x 9\n"
                                "VGA1 connected primary 1280x1024+0+0 (normal) 0mm x 0mm\n"
                                "   1280x1024     85.02*+  75.02    60.02  \n"
                                "DP1 disconnected (normal left inverted right x axis y axis)\n"
                                "HDMI1 connected 1280x800+1280+0 0mm x 0mm\n"
                                "HDMI2 connected (normal left inverted right x axis y axis)\n"
                                "HDMI3 connected\n"),
              (Outputs{{"VGA1", "1280x1024+0+0"},
                       {"HDMI1", "1280x800+1280+0"},
                       {"HDMI2", ""},
                       {"HDMI3", ""}}));
}

TEST(QvtcctlOutputs, AreNoneInATextThatListsNone) {
    for (const char* const text :
         {"", "\n\n", "connected", " connected", "x", "VGA1 disconnected", "Can't open display"}) {
        EXPECT_EQ(connected_outputs(text), Outputs{}) << text;
    }
}

TEST(QvtcctlOutputs, ThatAnArrangementLeavesOutAreNamed) {
    const Outputs four{{"D0", "10x10+0+0"},
                       {"D1", "10x10+0+0"},
                       {"D2", "10x10+0+10"},
                       {"D3", "10x10+10+0"},
                       {"D4", ""}};
    using Names = std::vector<std::string>;
    EXPECT_EQ(outside(Arrangement::same_place, four), (Names{"D2", "D3", "D4"}));
    EXPECT_EQ(outside(Arrangement::beside, four), (Names{"D1", "D2", "D4"}));
    EXPECT_EQ(outside(Arrangement::below, four), (Names{"D1", "D3", "D4"}));
    EXPECT_EQ(outside(Arrangement::same_place, {}), Names{});
}

TEST(QvtcctlOutputs, AreAskedOfTheTerminalsScreen) {
    test::StandIn xrandr("xrandr");
    xrandr.runs("echo \"VGA1 connected ${DISPLAY/:/7x7+0+}\"");
    EXPECT_EQ(connected_outputs(), (Outputs{{"VGA1", "7x7+0+0.0"}}));
    xrandr.runs("echo 'VGA1 connected'; exit 1");
    EXPECT_EQ(connected_outputs(), std::nullopt);
}

} // namespace
} // namespace qvtc::qvtcctl
