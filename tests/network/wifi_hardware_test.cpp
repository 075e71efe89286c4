#include "network/wifi_hardware.hpp"

#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::network {

TEST(WifiHardware, IsThereWhenItsInterfaceIsListedAndItIsNotDisabled) {
    test::ScriptedOs system;
    EXPECT_FALSE(wireless_present());
    system.replies["ip addr |grep wlan0"] = "4: wlan0: <BROADCAST,MULTICAST> mtu 1500\n";
    EXPECT_TRUE(wireless_present());
    system.files = {"/home/root/disablewifi"};
    EXPECT_FALSE(wireless_present());
    EXPECT_EQ(system.record, test::Texts(3, "capture 2048 ip addr |grep wlan0"));
}

} // namespace qvtc::network
