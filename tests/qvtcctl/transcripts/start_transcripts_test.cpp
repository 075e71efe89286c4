// qvtcctl as its user sees it, against the real library: power saving, user portal, demo mode.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

constexpr const char* settings = "/home/root/vpclientData.xml";

TEST(QvtcctlStart, PowerSavingIsShownAndSet) {
    const StandIn xset("xset");
    Transcript()
        .run("qvtcctl power idle")
        .run("qvtcctl power idle on")
        .run("qvtcctl power idle on --minutes 10")
        .run("qvtcctl power idle")
        .run("qvtcctl power idle off")
        .run("qvtcctl power idle on")
        .run("qvtcctl power idle --json")
        .run("qvtcctl power idle on --minutes 1092 --json")
        .run("sed -i 's/=1092/=soon/' /home/root/vpclientData.xml; qvtcctl power idle")
        .run("qvtcctl power idle --json")
        .run("qvtcctl power idle on")
        .expect("power_idle");
    EXPECT_EQ(xset.calls().back(), (StandIn::Arguments{"dpms", "0", "0", "300"}));
}

TEST(QvtcctlStart, PortalAndDemoModeAreShownAndSet) {
    Transcript()
        .run("qvtcctl portal")
        .run("qvtcctl portal off")
        .run("qvtcctl portal")
        .run("qvtcctl portal on --json")
        .run("qvtcctl demo-mode")
        .run("qvtcctl demo-mode on")
        .run("qvtcctl demo-mode --json")
        .run("qvtcctl demo-mode off")
        .expect("start_settings");
}

TEST(QvtcctlStart, RefusedValuesChangeNothing) {
    Transcript()
        .run("qvtcctl power")
        .run("qvtcctl power idle yes")
        .run("qvtcctl power idle --minutes 10")
        .run("qvtcctl power idle on --minutes 0")
        .run("qvtcctl power idle on --minutes 1093")
        .run("qvtcctl power idle on --minutes 5m")
        .run("qvtcctl power idle on --minutes=")
        .run("qvtcctl portal On")
        .run("qvtcctl demo-mode 1")
        .run("qvtcctl demo-mode 1 --json")
        .expect("start_refused");
    EXPECT_FALSE(test::file_exists(settings));
}

TEST(QvtcctlStart, WhatIsNotStoredIsTold) {
    const StandIn xset("xset");
    test::write_file(settings, "<Other/>");
    Transcript()
        .run("qvtcctl power idle on --minutes 10")
        .run("qvtcctl portal off")
        .run("qvtcctl demo-mode on")
        .expect("start_not_taken");
}

} // namespace
} // namespace qvtc::qvtcctl
