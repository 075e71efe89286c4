// A front-end whose memory runs out in the middle of a call.

#include "support/support.hpp"

#include <array>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

class ShortOfMemory : public testing::Test {
  protected:
    void SetUp() override { std::filesystem::create_directories("/var/lib/ralo"); }

    /// What the front-end prints of its settings.
    static std::string printed(const std::string& command) {
        return capture_stdout(
            [&] { EXPECT_EQ(std::system((command + " 2>/dev/null").c_str()), 0); });
    }

  private:
    // What its calls start.
    std::array<StandIn, 35> programs_ = {StandIn("/var/lib/ralo/display.sh"),
                                         StandIn("/usr/bin/pulseaudio"),
                                         StandIn("/usr/sbin/wpa_supplicant"),
                                         StandIn("/etc/init.d/networking"),
                                         StandIn("reboot"),
                                         StandIn("killall"),
                                         StandIn("xfreerdp"),
                                         StandIn("remote-viewer"),
                                         StandIn("vmware-view"),
                                         StandIn("vncviewer"),
                                         StandIn("firefox"),
                                         StandIn("x11vnc"),
                                         StandIn("xwininfo"),
                                         StandIn("xset"),
                                         StandIn("xrandr"),
                                         StandIn("nmcli"),
                                         StandIn("dhclient"),
                                         StandIn("ifup"),
                                         StandIn("ifdown"),
                                         StandIn("ifconfig"),
                                         StandIn("ip"),
                                         StandIn("route"),
                                         StandIn("systemctl"),
                                         StandIn("date"),
                                         StandIn("ntpdate-sync"),
                                         StandIn("hwclock"),
                                         StandIn("clock"),
                                         StandIn("aplay"),
                                         StandIn("amixer"),
                                         StandIn("pacmd"),
                                         StandIn("qvplugin"),
                                         StandIn("dmidecode"),
                                         StandIn("blockdev"),
                                         StandIn("lspci"),
                                         StandIn("curl")};
};

} // namespace

TEST_F(ShortOfMemory, ACallStoresAllOfItsChangeOrNothingAndNeverCrashes) {
    EXPECT_EQ(printed(QVTC_SHORT_OF_MEMORY), "");
}

TEST_F(ShortOfMemory, AProcessWithFewPagesLeftLosesNoSetting) {
    EXPECT_EQ(printed(QVTC_SHORT_OF_MEMORY " pages"), "");
}

} // namespace qvtc::test
