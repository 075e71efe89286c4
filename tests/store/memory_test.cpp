// A front-end whose memory runs out in the middle of a call.

#include "support/support.hpp"

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
    StandIn display_{"/var/lib/ralo/display.sh"};
    StandIn reboot_{"reboot"};
    StandIn killall_{"killall"};
    StandIn rdp_{"xfreerdp"};
    StandIn spice_{"remote-viewer"};
    StandIn horizon_{"vmware-view"};
    StandIn vnc_{"vncviewer"};
    StandIn web_{"firefox"};
    StandIn windows_{"xwininfo"};
};

} // namespace

TEST_F(ShortOfMemory, ACallStoresAllOfItsChangeOrNothingAndNeverCrashes) {
    EXPECT_EQ(printed(QVTC_SHORT_OF_MEMORY), "");
}

TEST_F(ShortOfMemory, AProcessWithFewPagesLeftLosesNoSetting) {
    EXPECT_EQ(printed(QVTC_SHORT_OF_MEMORY " pages"), "");
}

} // namespace qvtc::test
