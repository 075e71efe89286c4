#include "network/wireless.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::network {

namespace {

using test::Texts;
using test::operator+;

class Wireless : public test::FreshTerminal {};

constexpr const char* find_supplicant = "ps -ef|grep 'wpa_supplicant'|grep -v grep|wc -l";
constexpr const char* list_networks = "env LANG=en_US.UTF8 nmcli dev wifi";
constexpr const char* forget = "run nmcli connect|grep wlan|awk '{print $2}' |xargs nmcli c delet";

const Texts restart = {"run killall dhclient", "run killall wpa_supplicant 2>/dev/null",
                       "run /usr/sbin/wpa_supplicant -u -f /var/log/wpa_supplicant.log -c "
                       "/etc/wpa_supplicant/wpa_supicant.conf -P /var/run/wpa_supplicant.pid -B",
                       "run ifconfig wlan0 up", "run dhclient wlan0 &"};

std::string connect(const std::string& name, const std::string& password) {
    return "run env LANG=en_US.UTF8 nmcli d wifi connect \"" + name + "\" password \"" + password +
           "\" wlan0 >/dev/null 2>&1 &";
}

std::string remove_profiles(const std::string& name) {
    return "run rm -f /etc/sysconfig/network-scripts/ifcfg-" + name + "*";
}

void store_switch(const std::string& value) {
    test::store_items({{"configItem", {{"tc_config_param_15", value}}}});
}

std::string text_of(const Json& object) {
    return json_object_to_json_string_ext(object.get(), JSON_C_TO_STRING_PLAIN);
}

} // namespace

TEST_F(Wireless, SwitchIsStoredAsItStandsAndTheLinkBroughtUpOrDown) {
    const std::pair<const char*, const char*> cases[] = {
        {"useWifi=on", "run ifconfig wlan0 up"}, {"useWifi=off", "run ifconfig wlan0 down"},
        {"on", "run ifconfig wlan0 up"},         {"a=1&useWifi=on", "run ifconfig wlan0 up"},
        {"nonsense", "run ifconfig wlan0 up"}, // it contains "on"
        {"", "run ifconfig wlan0 down"},
    };
    for (const auto& [params, command] : cases) {
        test::ScriptedOs system;
        switch_wifi(params);
        EXPECT_EQ(system.record, Texts{command});
        EXPECT_EQ(wifi_switch(), params);
    }
}

TEST_F(Wireless, DeliberatelyRestartsWithAMisspelledConfiguration) {
    test::ScriptedOs system;
    system.status = 512;
    EXPECT_EQ(restart_supplicant(), 512);
    EXPECT_EQ(system.record, restart);
}

TEST_F(Wireless, ListIsEmptyWhenItIsSwitchedOff) {
    for (const char* const value :
         {"", "on", "wifi=on", "useWifi=off", "useWifi=on&x=off", "1234567"}) {
        store_switch(value);
        test::ScriptedOs system;
        EXPECT_EQ(text_of(wifi_list()), "{\"list\":[]}") << value;
        EXPECT_EQ(system.record, Texts{}) << value;
    }
}

TEST_F(Wireless, ListIsAskedForWhileTheSupplicantRuns) {
    for (const char* const value : {"useWifi=on", "12345678"}) {
        store_switch(value);
        test::ScriptedOs system;
        system.replies[find_supplicant] = "1\n";
        system.replies[list_networks] = "header\nOffice Infra 6 130 Mbit/s 59 x WPA2\n";
        EXPECT_EQ(text_of(wifi_list()), R"({"list":[{"ssid":"Office","connected":"off",)"
                                        R"("encryptType":"wpa2","sigStrength":"5"}]})");
        EXPECT_EQ(system.record, (Texts{std::string("capture 512 ") + find_supplicant,
                                        std::string("capture 10240 ") + list_networks}));
    }
}

TEST_F(Wireless, ListStartsAMissingSupplicant) {
    store_switch("useWifi=on");
    test::ScriptedOs system;
    EXPECT_EQ(text_of(wifi_list()), "{\"list\":[]}");
    EXPECT_EQ(system.record, (Texts{std::string("capture 512 ") + find_supplicant} + restart +
                              Texts{std::string("capture 10240 ") + list_networks}));
}

TEST_F(Wireless, JoinOfAnOpenNetworkRemovesNoFile) {
    test::ScriptedOs system;
    join_network("ssid=4f6666696365&encryptType=open&password=unused");
    EXPECT_EQ(system.record, (Texts{forget, connect("Office", "")}));
    EXPECT_EQ(test::stored_setting("networkconf-wlan0"), "0");
}

TEST_F(Wireless, JoinWithASharedKey) {
    for (const char* const type :
         {"encryptType=wpa2", "encryptType=wpa", "encryptType=wep", "x=1"}) {
        test::ScriptedOs system;
        join_network(std::string("ssid=4f6666696365&password=secret12&") + type);
        EXPECT_EQ(system.record,
                  (Texts{forget, remove_profiles("Office"), connect("Office", "secret12")}))
            << type;
    }
}

TEST_F(Wireless, JoinOfAnEnterpriseNetworkAddsAProfile) {
    test::ScriptedOs system;
    join_network("encryptType=802.1X&ssid=436f7270&username=anna&password=secret12");
    EXPECT_EQ(system.record,
              (Texts{forget, remove_profiles("Corp"),
                     "run env LANG=en_US.UTF8 nmcli connection add type wifi con-name \"Corp\" "
                     "ifname wlan0 ssid \"Corp\" -- wifi-sec.key-mgmt wpa-eap 802-1x.eap PEAP "
                     "802-1x.phase2-auth mschapv2 802-1x.identity \"anna\" 802-1x.password "
                     "\"secret12\" >/dev/null 2>&1 &"}));
}

TEST_F(Wireless, JoinDropsOneNewlineBehindAValue) {
    test::ScriptedOs system;
    join_network("ssid=436f7270\n&encryptType=802.1X&username=a\n\n&password=b\n");
    EXPECT_NE(system.record.back().find("identity \"a\n\" 802-1x.password \"b\" "),
              std::string::npos);
    EXPECT_EQ(system.record.at(1), remove_profiles("Corp"));
}

TEST_F(Wireless, JoinWithoutAPasswordOrAUserSendsNone) {
    test::ScriptedOs system;
    join_network("ssid=436f7270");
    EXPECT_EQ(system.record.back(), connect("Corp", ""));
    join_network("ssid=436f7270&encryptType=802.1X");
    EXPECT_NE(system.record.back().find("identity \"\" 802-1x.password \"\" "), std::string::npos);
}

TEST_F(Wireless, JoinCutsALongPasswordAndALongName) {
    test::ScriptedOs system;
    join_network("ssid=436f7270&password=" + std::string(255, 'p'));
    EXPECT_EQ(system.record.back(), connect("Corp", std::string(127, 'p')));
    std::string name;
    for (int i = 0; i < 200; ++i) name += "61";
    join_network("ssid=" + name);
    EXPECT_EQ(system.record.back(), connect(std::string(127, 'a'), ""));
}

TEST_F(Wireless, JoinOfNoNetworkTouchesNothing) {
    store_switch("useWifi=on");
    const std::string before = test::stored_document();
    test::ScriptedOs system;
    for (const char* const params : {"", "encryptType=open", "ssid=", "ssid=00", "ssid=\n"})
        join_network(params);
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::stored_document(), before);
    EXPECT_EQ(test::log_lines(), Texts(5, "[ERROR] @setwifiauth no ssid"));
}

TEST_F(Wireless, JoinNeverLeavesTheDirectoryOfProfiles) {
    test::ScriptedOs system;
    join_network("ssid=2e2e2f2e2e2f706173737764&password=x"); // ../../passwd
    EXPECT_EQ(system.record.at(1), remove_profiles("..-..-passwd"));
    EXPECT_EQ(system.record.back(), connect("../../passwd", "x"));
}

TEST_F(Wireless, DeliberatelyForgetsProfilesWithAShortenedVerb) {
    test::ScriptedOs system;
    forget_wireless_profiles();
    EXPECT_EQ(system.record, Texts{forget});
}

TEST_F(Wireless, NamesAreHexadecimalText) {
    EXPECT_EQ(network_name("47756573742057694669"), "Guest WiFi");
    EXPECT_EQ(network_name("5a6fc3ab"), "Zo\u00eb");
    EXPECT_EQ(network_name(""), "");
    EXPECT_EQ(network_name("410042"), "A");
}

} // namespace qvtc::network
