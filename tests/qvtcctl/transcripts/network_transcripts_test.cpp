// "qvtcctl network" as its user sees it: real interfaces and the real library, with stand-ins for
// the programs of a terminal's image that bring an interface up and manage wireless networks.
#include "support/support.hpp"
#include "transcript.hpp"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

/// As an image's ifup does it: what the interface's file says.
constexpr const char* ifup_script = ". /etc/sysconfig/network-scripts/ifcfg-$1\n"
                                    "[ -f /etc/sysconfig/network ] && . /etc/sysconfig/network\n"
                                    "ip link set \"$1\" up\n"
                                    "[ \"$BOOTPROTO\" = static ] || exit 1\n"
                                    "ifconfig \"$1\" \"$IPADDR\" netmask \"$NETMASK\"\n"
                                    "ip route replace default via \"$GATEWAY\" dev \"$1\"\n";

constexpr const char* ifdown_script = "ip address flush dev \"$1\"; ip link set \"$1\" down";

class QvtcctlNetworkTranscript : public testing::Test {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("ip");
        QVTC_NEED_PROGRAM("ifconfig");
        QVTC_NEED_PROGRAM("route");
        ifup.runs(ifup_script);
        ifdown.runs(ifdown_script);
        // The real one would ask name servers that nobody runs here for the gateways' names.
        route.runs("/usr/sbin/route -n \"$@\" | sed 's/^0[.]0[.]0[.]0 /default /'");
    }

    /// Lets an interface be there, with its cable plugged in.
    static void plug(const std::string& device) {
        const std::string command = "ip link add " + device + " type veth peer name far-" + device +
                                    " && ip link set far-" + device + " up";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    StandIn ifup{"ifup"};
    StandIn ifdown{"ifdown"};
    StandIn route{"route"};
    StandIn nmcli{"nmcli"};
    StandIn dhclient{"dhclient"};
    StandIn killall{"killall"};
    StandIn systemctl{"systemctl"};
    StandIn supplicant{"/usr/sbin/wpa_supplicant"};
};

constexpr const char* set_static = "qvtcctl network set eth0 static --address 192.168.77.20 --mask "
                                   "255.255.255.0 --gateway 192.168.77.1 --dns1 192.168.77.1";

TEST_F(QvtcctlNetworkTranscript, APortIsSetAndShown) {
    plug("eth0");
    Transcript transcript;
    transcript.run("qvtcctl network show")
        .run(set_static)
        .run("qvtcctl network show")
        .run("qvtcctl network show --json")
        .run("qvtcctl network set eth0 dns --dns1 9.9.9.9 --dns2 1.1.1.1")
        .run("qvtcctl network route")
        .run("qvtcctl network route eth0 --json")
        .run("qvtcctl network set eth0 dhcp")
        .run("qvtcctl network route");
    transcript.expect("network_set");
}

TEST_F(QvtcctlNetworkTranscript, APortThatNetworkManagerManagesIsTold) {
    plug("eth0");
    nmcli.runs("[ \"$*\" = '-g GENERAL.NM-MANAGED device show eth0' ] && echo yes");
    Transcript transcript;
    transcript.run(set_static).run(std::string(set_static) + " --json | tail -n 4");
    nmcli.runs("echo no");
    transcript.run(set_static);
    nmcli.runs("echo yes");
    ifup.runs("exit 1");
    transcript.run(set_static);
    transcript.expect("network_managed");
}

TEST_F(QvtcctlNetworkTranscript, ALongSilenceSaysWhatItWaitsFor) {
    plug("eth0");
    ifup.runs("sleep 1.2; exit 1");
    route.runs("sleep 1.2; /usr/sbin/route -n \"$@\"");
    Transcript transcript;
    transcript.run("qvtcctl network set eth0 dhcp")
        .run("qvtcctl network route eth0 2>&1 | head -n 1");
    transcript.expect("network_slow");
}

TEST_F(QvtcctlNetworkTranscript, ItsCommandsExplainThemselves) {
    Transcript transcript;
    transcript.run("qvtcctl network --help")
        .run("qvtcctl network set --help")
        .run("qvtcctl network join --help")
        .run("qvtcctl network shwo")
        .run("qvtcctl network wifi");
    transcript.expect("network_help");
}

TEST_F(QvtcctlNetworkTranscript, WhatIsWrongIsRefusedBeforeAnythingIsCalled) {
    plug("eth0");
    Transcript transcript;
    transcript
        .run("qvtcctl network set eth0 static --address 192.168.77.20 --mask 255.0.255.0 "
             "--gateway 192.168.77.1")
        .run("qvtcctl network set eth0 static --address 192.168.77.20 --mask 255.255.255.0 "
             "--gateway 10.0.0.1")
        .run("qvtcctl network set eth0 static --address '1.2.3.4;reboot'")
        .run("qvtcctl network set eth0 static --address 1.2.3.4 --mask 255.0.0.0 --gateway "
             "1.0.0.1 --dns1 name --json")
        .run("qvtcctl network set eth0 dhcp --address 10.0.0.2")
        .run("qvtcctl network set eth2 dhcp")
        .run("qvtcctl network set wlan0 dhcp")
        .run("qvtcctl network set eth0 fixed")
        .run("qvtcctl network set eth0")
        .run("qvtcctl network set eth1 dhcp")
        .run("qvtcctl network route wlan1")
        .run("qvtcctl network route eth0")
        .run("qvtcctl network wifi maybe")
        .run("qvtcctl network scan")
        .run("qvtcctl network join Office --open")
        .run("qvtcctl network wireless Office dhcp");
    transcript.expect("network_refused");
    EXPECT_EQ(ifup.calls(), StandIn::Calls{});
    EXPECT_EQ(nmcli.calls(), StandIn::Calls{});
}

TEST_F(QvtcctlNetworkTranscript, APortThatDoesNotComeUpIsTold) {
    plug("eth0");
    plug("eth1");
    ifup.runs("exit 1");
    Transcript transcript;
    transcript.run(set_static).run("qvtcctl network set eth1 dhcp --json");
    transcript.expect("network_not_up");
}

TEST_F(QvtcctlNetworkTranscript, WifiIsSwitchedAndItsNetworksListed) {
    plug("wlan0");
    nmcli.prints("IN-USE  BSSID              SSID        MODE   CHAN  RATE        SIGNAL  BARS  "
                 "SECURITY    \n"
                 "        00:11:22:33:44:06  Corp        Infra  149   540 Mbit/s  70      ▂▄▆_  "
                 "WPA2 802.1X \n"
                 "*       00:11:22:33:44:02  Guest WiFi  Infra  6     130 Mbit/s  59      ▂▄▆_  "
                 "--          \n"
                 "        00:11:22:33:44:08  Bob's \"AP\"  Infra  1     54 Mbit/s   10      ▂___  "
                 "WPA2        \n");
    Transcript transcript;
    transcript.run("qvtcctl network wifi")
        .run("qvtcctl network scan")
        .run("qvtcctl network wifi on")
        .run("qvtcctl network scan")
        .run("qvtcctl network scan --json")
        .run("qvtcctl network wifi off --json");
    transcript.expect("network_wifi");
}

// The name of a network is any bytes that its owner likes: Latin-1, a torn character, a sequence
// that clears a screen in 7 and in 8 bits, a name that is shown from right to left.
TEST_F(QvtcctlNetworkTranscript, ANetworksNameIsHarmlessWhateverBytesItHas) {
    QVTC_NEED_PROGRAM("python3");
    plug("wlan0");
    std::string list =
        "IN-USE  BSSID              SSID    MODE   CHAN  RATE        SIGNAL  BARS  SECURITY    \n";
    for (const char* const name :
         {"B\xFCro", "cut\xE4\xB8", "a\x1b[2J", "b\u009B2J", "c\u202Epma"}) {
        list += "        00:11:22:33:44:06  " + std::string(name) +
                "  Infra  149   540 Mbit/s  70      ***   WPA2 802.1X \n";
    }
    nmcli.prints(list);
    Transcript transcript;
    transcript.run("qvtcctl network wifi on >/dev/null")
        .run("qvtcctl network scan")
        .run("qvtcctl network scan --json")
        .run("qvtcctl network scan --json | python3 -c 'import json, sys; "
             "print(len(json.loads(sys.stdin.buffer.read().decode())[\"networks\"]))'");
    transcript.expect("network_wifi_hostile");
    for (const char* const raw : {"\u009B", "\u202E", "\xFC", "\xE4\xB8", "\x1b"})
        EXPECT_EQ(transcript.text().find(raw), std::string::npos) << raw;
}

TEST_F(QvtcctlNetworkTranscript, ANetworkIsJoined) {
    plug("wlan0");
    Transcript transcript;
    transcript.run("qvtcctl network wifi on >/dev/null")
        .run("qvtcctl network join 'Guest WiFi' --open")
        .run("qvtcctl network join Office --password-stdin", "secret12\n")
        .run("qvtcctl network join Corp --enterprise --user anna --password-stdin --json",
             "it's $HOME\n")
        .run("qvtcctl network join Office --password-stdin", "short\nx\n")
        .run("qvtcctl network join Office --password-stdin", "seven77\n")
        .run("qvtcctl network join Office --password-stdin", "")
        .run("qvtcctl network join Corp --enterprise")
        .run("qvtcctl network join Corp --user anna")
        .run("qvtcctl network join Corp --open --enterprise")
        .run("qvtcctl network join Corp --open --password-stdin")
        .run("qvtcctl network join 123456789012345678901234567890123 --open")
        .run("setsid -w qvtcctl network join Office")
        .run_on_terminal("qvtcctl network join Office", "secret12\nsecret12\n");
    transcript.expect("network_join");
    ASSERT_TRUE(test::wait_until([&] {
        const StandIn::Calls calls = nmcli.calls();
        return std::count(calls.begin(), calls.end(),
                          StandIn::Arguments{"d", "wifi", "connect", "Office", "password",
                                             "secret12", "wlan0"}) == 2;
    }));
    const StandIn::Calls calls = nmcli.calls();
    EXPECT_NE(std::find(calls.begin(), calls.end(),
                        StandIn::Arguments{"d", "wifi", "connect", "Guest WiFi", "password", "",
                                           "wlan0"}),
              calls.end());
    EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), [](const StandIn::Arguments& call) {
        return call.size() == 21 && call[18] == "anna" && call[20] == "it's $HOME";
    }));
}

TEST_F(QvtcctlNetworkTranscript, TheWirelessLinkIsSetUp) {
    plug("wlan0");
    systemctl.runs("ip link set wlan0 up; . '/etc/sysconfig/network-scripts/ifcfg-Guest WiFi'; "
                   "ifconfig wlan0 \"$IPADDR\" netmask \"$NETMASK\"; "
                   "ip route replace default via \"$GATEWAY\" dev wlan0");
    test::write_file("/etc/sysconfig/network-scripts/ifcfg-Guest WiFi", "BOOTPROTO=dhcp\n");
    Transcript transcript;
    transcript.run("qvtcctl network wifi on >/dev/null")
        .run("qvtcctl network wireless 'Guest WiFi' static --address 10.0.0.20 --mask "
             "255.255.255.0 --gateway 10.0.0.1")
        .run("qvtcctl network show")
        .run("cat '/etc/sysconfig/network-scripts/ifcfg-Guest WiFi'")
        .run("qvtcctl network wireless 'Guest WiFi' dns --dns1 9.9.9.9")
        .run("ip address flush dev wlan0; qvtcctl network wireless 'Guest WiFi' dhcp");
    transcript.expect("network_wireless");
}

} // namespace
} // namespace qvtc::qvtcctl
