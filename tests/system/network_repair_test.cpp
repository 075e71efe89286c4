#include "system/network_repair.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

TEST(NetworkRepair, RunsItsStepsInOrder) {
    const test::StandIn killall("killall");
    const test::StandIn dhclient("dhclient");
    const test::StandIn networking("/etc/init.d/networking");
    test::write_file("/etc/sysconfig/network", "# Created by anaconda\nGATEWAY=10.0.0.1\n");

    repair_network();

    EXPECT_EQ(test::recorded_commands(),
              (std::vector<std::string>{"killall dhclient", "echo \"\" > /etc/sysconfig/network",
                                        "dhclient", "/etc/init.d/networking restart &"}));
    EXPECT_EQ(test::read_file("/etc/wpa_supplicant.conf"),
              "# allow frontend (e.g., wpa_cli) to be used by all users in 'wheel' group\n"
              "ctrl_interface=/var/run/wpa_supplicant\n"
              "ctrl_interface_group=0\n"
              "update_config=1\n"
              "\n");
    EXPECT_EQ(test::read_file("/etc/sysconfig/network"), "\n");
    EXPECT_EQ(killall.calls(), (test::StandIn::Calls{{"dhclient"}}));
    EXPECT_EQ(dhclient.calls(), (test::StandIn::Calls{{}}));
    EXPECT_TRUE(
        test::wait_until([&] { return networking.calls() == test::StandIn::Calls{{"restart"}}; }));
}

} // namespace qvtc::system
