#include "qvtcctl/verb/windows.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* tree =
    "xwininfo: Window id: 0x1d5 (the root window) (has no name)\n"
    "\n"
    "     0x200001 \"office\": (\"xfreerdp\" \"xfreerdp\")  1280x1024+0+0  +0+0\n";

TEST(QvtcctlWindows, AWindowIsALineOfTheTree) {
    EXPECT_TRUE(names_window(tree, "xfreerdp"));
    EXPECT_FALSE(names_window(tree, "vncviewer"));
    EXPECT_FALSE(names_window("xfree\nrdp", "xfreerdp"));
    EXPECT_FALSE(names_window("", "xfreerdp"));
}

TEST(QvtcctlWindows, TheTreeOfTheTerminalsScreenIsAskedFor) {
    test::StandIn xwininfo("xwininfo");
    xwininfo.runs("echo \"$DISPLAY $*\" >/tmp/asked; echo xfreerdp; exit 0");
    EXPECT_EQ(look_for_window("xfreerdp"), Sight::seen);
    EXPECT_EQ(test::read_file("/tmp/asked"), ":0.0 -root -tree\n");
    EXPECT_EQ(look_for_window("vncviewer"), Sight::absent);
}

TEST(QvtcctlWindows, AScreenThatCannotBeAskedIsUnknown) {
    test::StandIn xwininfo("xwininfo");
    xwininfo.prints("xfreerdp\n").exits_with(1);
    EXPECT_EQ(look_for_window("xfreerdp"), Sight::unknown);
}

TEST(QvtcctlWindows, AScreenThatDoesNotAnswerIsGivenUp) {
    test::StandIn xwininfo("xwininfo");
    xwininfo.keeps_running();
    EXPECT_EQ(look_for_window("xfreerdp"), Sight::unknown);
}

} // namespace
} // namespace qvtc::qvtcctl
