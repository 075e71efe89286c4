#include "network/wireless_addressing.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::network {

namespace {

using test::Texts;
using test::operator+;

class WirelessAddressing : public test::FreshTerminal {};

constexpr const char* supplicant_file = "/etc/wpa_supplicant.conf";

std::string profile(const std::string& name) {
    return "/etc/sysconfig/network-scripts/ifcfg-" + name;
}

std::string look_for(const std::string& pattern) {
    return "env LANG=en_US.UTF8 nmcli dev wifi|grep " + pattern + " |awk '{print $9}'";
}

Texts delete_addresses(const std::string& file) {
    Texts commands;
    for (const char* const key : {"IPADDR", "GATEWAY", "NETMASK", "DNS1", "DNS2"})
        commands.push_back("run sed -i \"/" + std::string(key) + "=/d\" " + file);
    return commands;
}

std::string boot_protocol(const std::string& name, const std::string& file) {
    return "run sed -i \"/BOOTPROTO/ s/\\(BOOTPROTO=\\).*/\\1" + name + "/\" " + file;
}

const std::string office = "4f6666696365";

} // namespace

TEST_F(WirelessAddressing, AStaticAddressGoesIntoTheProfile) {
    test::ScriptedOs system;
    EXPECT_TRUE(set_wireless_conf("conf=1&ip=10.0.0.2&mask=255.0.0.0&gateway=10.0.0.1&"
                                  "dns1=10.0.0.3&dns2=10.0.0.4&ssid=" +
                                  office));
    const std::string file = profile("Office");
    EXPECT_EQ(
        system.record,
        (Texts{"capture 1024 " + look_for("Office"), "run echo \"KEY_MGMT=WPA-PSK\" >> " + file} +
         delete_addresses(file) +
         Texts{boot_protocol("static", file), "run echo \"IPADDR=10.0.0.2\" >> " + file,
               "run echo \"GATEWAY=10.0.0.1\" >> " + file,
               "run echo \"NETMASK=255.0.0.0\" >> " + file, "run echo \"DNS1=10.0.0.3\" >> " + file,
               "run echo \"DNS2=10.0.0.4\" >> " + file, "run killall dhclient",
               "run nmcli r wifi off", "run nmcli r wifi on", "run systemctl restart network"}));
    test::expect_golden("network/wpa_supplicant_conf.txt", test::read_file(supplicant_file));
    EXPECT_EQ(test::stored_setting("networkconf-wlan0"),
              "{'conf':'1','ip':'10.0.0.2','mask':'255.0.0.0','gateway':'10.0.0.1',"
              "'dns1':'10.0.0.3','dns2':'10.0.0.4','ssid':'4f6666696365'}");
}

TEST_F(WirelessAddressing, DhcpAsksTheServerItself) {
    for (const char* const list : {"0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;4f6666696365",
                                   "1;0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;4f6666696365"}) {
        test::ScriptedOs system;
        system.status = 256;
        EXPECT_EQ(apply_wireless_conf(list), 256);
        const std::string file = profile("Office");
        EXPECT_EQ(system.record, (Texts{"capture 1024 " + look_for("Office"),
                                        "run echo \"KEY_MGMT=WPA-PSK\" >> " + file} +
                                  delete_addresses(file) +
                                  Texts{boot_protocol("dhcp", file), "run killall dhclient",
                                        "run dhclient wlan0"}));
    }
}

TEST_F(WirelessAddressing, AnOpenNetworkGetsNoKeyManagement) {
    test::ScriptedOs system;
    system.replies[look_for("Office")] = "--\n";
    EXPECT_EQ(
        test::capture_stdout([] { apply_wireless_conf(("1;1.1.1.1;;;;;" + office).c_str()); }),
        "open................");
    EXPECT_EQ(system.record.at(1), delete_addresses(profile("Office")).at(0));
}

TEST_F(WirelessAddressing, NamesAreOneWordAndOnePattern) {
    test::ScriptedOs system;
    apply_wireless_conf("0;0;0;0;0;0;47756573742a2057694669"); // Guest* WiFi
    EXPECT_EQ(system.record.at(0), "capture 1024 " + look_for("Guest\\\\\\*\\ WiFi"));
    EXPECT_EQ(system.record.at(1),
              "run echo \"KEY_MGMT=WPA-PSK\" >> " + profile("Guest\\*\\ WiFi"));
    system.record.clear();
    apply_wireless_conf("0;0;0;0;0;0;2f6574632f706173737764"); // /etc/passwd
    EXPECT_EQ(system.record.at(1), "run echo \"KEY_MGMT=WPA-PSK\" >> " + profile("-etc-passwd"));
}

TEST_F(WirelessAddressing, WithoutAListOrANameIsDhcpOfTheNameThatZeroesMake) {
    for (const char* const list : {static_cast<const char*>(nullptr), "", "0;1.1.1.1"}) {
        test::ScriptedOs system;
        apply_wireless_conf(list);
        EXPECT_EQ(system.record.back(), "run dhclient wlan0");
        EXPECT_EQ(system.record.at(1),
                  "run echo \"KEY_MGMT=WPA-PSK\" >> " + profile("\x0e\x0e\x0e"));
    }
}

TEST_F(WirelessAddressing, TooShortParametersAreRefused) {
    test::ScriptedOs system;
    for (const char* const params : {"", "abc"}) EXPECT_FALSE(set_wireless_conf(params));
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::log_lines(), Texts(2, "[ERROR] set wireless config error"));
}

TEST_F(WirelessAddressing, WhiteSpaceBehindAValueIsNotWritten) {
    test::ScriptedOs system;
    EXPECT_TRUE(set_wireless_conf("ssid=" + office +
                                  "&conf=1&ip=10.0.0.2 &gateway=10.0.0.1\r\n&"
                                  "mask=255.0.0.0\t&dns1=10.0.0.3\n"));
    const std::string file = profile("Office");
    EXPECT_EQ(Texts(system.record.begin() + 8, system.record.begin() + 12),
              (Texts{"run echo \"IPADDR=10.0.0.2\" >> " + file,
                     "run echo \"GATEWAY=10.0.0.1\" >> " + file,
                     "run echo \"NETMASK=255.0.0.0\" >> " + file,
                     "run echo \"DNS1=10.0.0.3\" >> " + file}));
}

TEST_F(WirelessAddressing, ParametersWithoutAModeChangeNothing) {
    test::ScriptedOs system;
    EXPECT_FALSE(set_wireless_conf("ip=1.1.1.1&ssid=" + office));
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::stored_document(), "");
    EXPECT_FALSE(test::file_exists(supplicant_file));
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @setnetworkconf no conf"});
}

TEST_F(WirelessAddressing, ReadsTheStoredModeAndTheRest) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "0"},
        {"0", "0"},
        {"'conf':'1'", "0"}, // of ten characters
        {"{'conf':'1'", "1"},
        {"{'conf':'1','ip':'10.0.0.2'}", "1"},
        {"{'conf':'0','ip':'10.0.0.2'}", "0"},
    };
    std::filesystem::remove("/etc/resolv.conf");
    for (const auto& [stored, expected] : cases) {
        test::store_items({{"configItem", {{"networkconf-wlan0", stored}}}});
        test::ScriptedOs system;
        EXPECT_EQ(wireless_conf().conf, expected) << stored;
        EXPECT_EQ(system.record, test::status_commands);
    }
    test::store_items(
        {{"configItem", {{"networkconf-wlan0", std::string(250, ' ') + "'conf':'1'"}}}});
    test::ScriptedOs system;
    EXPECT_EQ(wireless_conf().conf, "0"); // only 255 bytes of it are read
}

TEST_F(WirelessAddressing, WritesWhatItReadsToStandardError) {
    test::store_items({}); // or the parser would speak of a missing document
    test::write_file("/etc/resolv.conf", "nameserver 10.0.0.9\n");
    test::ScriptedOs system;
    system.replies["ifconfig |grep eth0 "] = test::running_line;
    system.replies[test::gateway_command("wlan0")] = "10.0.0.1\n";
    EXPECT_EQ(test::capture_stderr([] {
                  const NetConf conf = wireless_conf();
                  EXPECT_EQ(conf.gateway, "10.0.0.1");
                  EXPECT_EQ(conf.dns1, "10.0.0.9");
                  EXPECT_EQ(conf.dns2, "0.0.0.0"); // not empty, as for a wired port
              }),
              "value={'conf':'0','ip':'0.0.0.0','mask':'0.0.0.0','gateway':'10.0.0.1',"
              "'dns1':'10.0.0.9','dns2':'0.0.0.0'}\n");
}

TEST_F(WirelessAddressing, EditsARealProfile) {
    const test::StandIn nmcli("nmcli");
    const test::StandIn killall("killall");
    const test::StandIn dhclient("dhclient");
    test::StandIn systemctl("systemctl");
    test::write_file(profile("Guest WiFi"),
                     "ESSID=\"Guest WiFi\"\nBOOTPROTO=dhcp\nIPADDR=10.9.9.9\nDNS1=1\n");
    EXPECT_EQ(apply_wireless_conf("1;10.0.0.2;255.0.0.0;10.0.0.1;10.0.0.3;x'y;"
                                  "47756573742057694669"),
              0);
    test::expect_golden("network/profile_static.txt", test::read_file(profile("Guest WiFi")));
    EXPECT_EQ(systemctl.calls(), (test::StandIn::Calls{{"restart", "network"}}));
    systemctl.exits_with(1);
    EXPECT_EQ(apply_wireless_conf("0;0;0;0;0;0;47756573742057694669"), 0);
    test::expect_golden("network/profile_dhcp.txt", test::read_file(profile("Guest WiFi")));
    EXPECT_EQ(dhclient.calls(), (test::StandIn::Calls{{"wlan0"}}));
}

} // namespace qvtc::network
