#include "system/power.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

using Texts = std::vector<std::string>;

TEST(Power, ARebootIsForced) {
    const test::StandIn systemctl("systemctl");
    reboot();
    EXPECT_EQ(test::recorded_commands(), Texts{"systemctl --force reboot > /dev/null 2>&1"});
    EXPECT_EQ(systemctl.calls(), (test::StandIn::Calls{{"--force", "reboot"}}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] thinclient reboot"});
}

TEST(Power, AShutdownIsAtOnce) {
    const test::StandIn shutdown("shutdown");
    shut_down();
    EXPECT_EQ(test::recorded_commands(), Texts{"shutdown now > /dev/null 2>&1"});
    EXPECT_EQ(shutdown.calls(), (test::StandIn::Calls{{"now"}}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] thinclient shutdown"});
}

} // namespace qvtc::system
