// The network with real interfaces, a real DHCP and name server at the far end of the cable, the
// real programs, and the real nmcli before a NetworkManager that only tells of access points.
#include "support/support.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>
#include <json-c/json.h>
#include <qvtcapi/qvtcapi.h>
#include <sys/wait.h>

namespace qvtc::test {
namespace {

struct Output {
    int status = 0;
    std::string text;
};

Output output_of(const std::string& command) {
    std::FILE* const stream = popen(command.c_str(), "re");
    if (stream == nullptr) throw std::runtime_error("cannot run " + command);
    Output output;
    std::array<char, 4096> block{};
    while (const std::size_t length = fread(block.data(), 1, block.size(), stream))
        output.text.append(block.data(), length);
    output.status = WEXITSTATUS(pclose(stream));
    return output;
}

std::string text_of(json_object* object) {
    const std::string text =
        object == nullptr ? "null" : json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

std::string member(json_object* object, const char* key) {
    const std::string text = json_object_get_string(json_object_object_get(object, key));
    json_object_put(object);
    return text;
}

int set(int (*setter)(const char*), std::string params) { return setter(params.data()); }

class NetworkJourney : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* const program :
             {"ip", "ifconfig", "route", "dhclient", "dnsmasq", "killall"}) {
            QVTC_NEED_PROGRAM(program);
        }
        const Output started = output_of(QVTC_NETWORK "/lan start eth0 eth1 wlan0 2>&1");
        ASSERT_EQ(started.status, 0) << started.text;
    }
};

constexpr const char* static_params = "conf=1&ip=192.168.77.20&mask=255.255.255.0&"
                                      "gateway=192.168.77.1&dns1=192.168.77.1&dns2=9";
constexpr const char* static_conf =
    R"({"conf":"1","ip":"192.168.77.20","mask":"255.255.255.0","gateway":"192.168.77.1",)"
    R"("dns1":"192.168.77.1","dns2":""})";

TEST_F(NetworkJourney, AStaticAddressIsInUse) {
    EXPECT_EQ(qvgetwiredstatus(), 0);
    EXPECT_EQ(set(qvsetwiredconf, static_params), 0);
    EXPECT_EQ(qvgetwiredstatus(), 1);
    EXPECT_EQ(text_of(qvgetwiredconf()), static_conf);
    EXPECT_EQ(output_of("getent ahostsv4 terminal.test | head -n 1").text.substr(0, 13),
              "192.168.77.9 "); // the name server is asked, through the gateway's port
    EXPECT_EQ(read_file("/root/resolv.conf"),
              "# Created by NetworkManager\nnameserver 192.168.77.1\n");
    EXPECT_EQ(read_file("/tmp/abcd-eth0"), "192.168.77.1\n");
}

TEST_F(NetworkJourney, ALeaseIsInUse) {
    EXPECT_EQ(set(qvsetwiredconf, "conf=0"), 0);
    json_object* const conf = qvgetwiredconf();
    const std::string address = json_object_get_string(json_object_object_get(conf, "ip"));
    EXPECT_TRUE(address.starts_with("192.168.77.5") || address == "192.168.77.60") << address;
    EXPECT_EQ(text_of(conf), R"({"conf":"0","ip":")" + address +
                                 R"(","mask":"255.255.255.0","gateway":"192.168.77.1",)"
                                 R"("dns1":"192.168.77.1","dns2":"192.168.77.2"})");
    EXPECT_EQ(qvgetwiredstatus(), 1);
}

TEST_F(NetworkJourney, APortChangesFromOneToTheOther) {
    EXPECT_EQ(set(qvsetwiredconf, "conf=0"), 0);
    EXPECT_EQ(set(qvsetwiredconf, static_params), 0);
    EXPECT_EQ(text_of(qvgetwiredconf()), static_conf);
    EXPECT_EQ(set(qvsetwiredconf, "conf=1&dns1=192.168.77.2&dns2=9"), 0); // servers alone
    EXPECT_EQ(member(qvgetwiredconf(), "ip"), "192.168.77.20");
    EXPECT_EQ(member(qvgetwiredconf(), "dns1"), "192.168.77.2");
    EXPECT_EQ(set(qvsetwiredconf, "conf=0"), 0);
    EXPECT_EQ(member(qvgetwiredconf(), "conf"), "0");
    EXPECT_NE(member(qvgetwiredconf(), "ip"), "192.168.77.20");
}

TEST_F(NetworkJourney, APulledCableIsNoNetwork) {
    EXPECT_EQ(set(qvsetwiredconf, static_params), 0);
    ASSERT_EQ(output_of(QVTC_NETWORK "/lan unplug eth0").status, 0);
    EXPECT_TRUE(wait_until([] { return qvgetwiredstatus() == 0; }));
    EXPECT_EQ(member(qvgetwiredconf(), "gateway"), "0.0.0.0");
    EXPECT_EQ(member(qvgetwiredconf(), "ip"), "192.168.77.20");
    ASSERT_EQ(output_of(QVTC_NETWORK "/lan plug eth0").status, 0);
    EXPECT_TRUE(wait_until([] { return qvgetwiredstatus() == 1; }));
}

TEST_F(NetworkJourney, TheExtraPortIsOneOfItsOwn) {
    EXPECT_EQ(set(qvsetexwiredconf, "conf=1&ip=192.168.77.21&mask=255.255.255.0&"
                                    "gateway=192.168.77.1&dns1=192.168.77.1"),
              0);
    EXPECT_EQ(member(qvgetexwiredconf(), "ip"), "192.168.77.21");
    EXPECT_EQ(member(qvgetwiredconf(), "ip"), "0.0.0.0");
    EXPECT_EQ(qvgetwiredstatus(), 1);
    ASSERT_EQ(output_of("ip link delete eth1").status, 0);
    EXPECT_EQ(member(qvgetexwiredconf(), "conf"), "none");
}

TEST_F(NetworkJourney, ADefaultRouteThatIsThereIsFound) {
    EXPECT_EQ(set(qvsetwiredconf, static_params), 0);
    const std::string before = output_of("ip route").text;
    EXPECT_EQ(set(qvsetdefaultroute, "default=eth0"), 0);
    EXPECT_EQ(output_of("ip route").text, before);
    const std::string document = read_file("/home/root/vpclientData.xml");
    EXPECT_NE(document.find("<tc_config_param_16>default"), std::string::npos) << document;
    EXPECT_EQ(qvgetdefaultroute(), nullptr);
}

TEST_F(NetworkJourney, ADefaultRouteWithoutAGatewayIsNotAdded) {
    EXPECT_EQ(set(qvsetwiredconf, static_params), 0);
    ASSERT_EQ(output_of("ip link set eth1 up && ip address add 192.168.77.21/24 dev eth1").status,
              0);
    const std::string before = output_of("ip route show default").text;
    EXPECT_EQ(set(qvsetdefaultroute, "default=eth1"), 0);
    EXPECT_EQ(output_of("ip route show default").text, before);
    const std::string document = read_file("/home/root/vpclientData.xml");
    EXPECT_NE(document.find("route add default gw  dev eth1"), std::string::npos) << document;
}

TEST_F(NetworkJourney, ADefaultRouteThatTheListOfRoutesHidesIsAdded) {
    // The list of routes is read twice, by two programs; only where they differ is one added.
    ASSERT_EQ(output_of("ip link set eth0 up && ip address add 192.168.77.20/24 dev eth0 && "
                        "ip link set eth1 up && ip address add 192.168.77.21/24 dev eth1 && "
                        "ip route add default via 192.168.77.1 dev eth1 metric 50")
                  .status,
              0);
    StandIn route("route");
    route.runs("if [ $# = 0 ]; then ip route delete default dev eth1 metric 50; "
               "ip route add default via 192.168.77.1 dev eth1 metric 60; else "
               "exec /usr/sbin/route \"$@\"; fi");
    EXPECT_EQ(set(qvsetdefaultroute, "default=eth1"), 0);
    EXPECT_EQ(lines_of(output_of("ip route show default").text),
              (std::vector<std::string>{"default via 192.168.77.1 dev eth1 ",
                                        "default via 192.168.77.1 dev eth1 metric 60 "}));
}

TEST_F(NetworkJourney, TheToolSetsAndShowsIt) {
    EXPECT_EQ(output_of(QVTC_CONTROL " network set eth0 static --address 192.168.77.20 --mask "
                                     "255.255.255.0 --gateway 192.168.77.1 --dns1 192.168.77.1 "
                                     "2>&1")
                  .text,
              "eth0 has the address 192.168.77.20, mask 255.255.255.0, gateway 192.168.77.1, name "
              "server 192.168.77.1.\n");
    EXPECT_EQ(output_of(QVTC_CONTROL " network route").text,
              "eth0 carries a default route via 192.168.77.1.\n");
    const Output lease = output_of(QVTC_CONTROL " network set eth0 dhcp 2>&1");
    EXPECT_EQ(lease.status, 0) << lease.text;
    EXPECT_TRUE(lease.text.ends_with(", mask 255.255.255.0, gateway 192.168.77.1, name servers "
                                     "192.168.77.1 and 192.168.77.2.\n"))
        << lease.text;
}

// --- A manager of its own ---------------------------------------------------------------------

/// The real NetworkManager, which manages every port that it is not told to leave alone.
class ManagedNetworkJourney : public NetworkJourney {
  protected:
    void SetUp() override {
        NetworkJourney::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        for (const char* const program : {"NetworkManager", "nmcli", "dbus-daemon"}) {
            QVTC_NEED_PROGRAM(program);
        }
        std::filesystem::remove("/usr/local/bin/nmcli"); // the real one answers
        std::filesystem::create_directories("/run/dbus");
        write_file("/run/dbus/manager.conf",
                   "<busconfig><type>system</type><auth>EXTERNAL</auth>"
                   "<listen>unix:path=/run/dbus/system_bus_socket</listen>"
                   "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                   "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        ASSERT_EQ(output_of("dbus-daemon --config-file=/run/dbus/manager.conf --fork").status, 0);
    }

    /// Begins it with these lines of configuration, and waits until it says whether it manages the
    /// port: "yes" or "no", and at its very beginning "no" of each.
    static void manage(const std::string& lines, const std::string& expected) {
        write_file("/run/manager.conf", "[main]\nplugins=keyfile\n" + lines);
        ASSERT_EQ(output_of("NetworkManager --config=/run/manager.conf --config-dir=/run/none "
                            "--system-config-dir=/run/none >/run/manager.log 2>&1")
                      .status,
                  0);
        std::string answer;
        const auto is_settled = [&] {
            answer = output_of("nmcli -g GENERAL.NM-MANAGED device show eth0 2>&1").text;
            return answer == expected + "\n";
        };
        ASSERT_TRUE(wait_until(is_settled)) << answer;
    }

    static std::string set_static() {
        return output_of(QVTC_CONTROL " network set eth0 static --address 192.168.77.20 --mask "
                                      "255.255.255.0 --gateway 192.168.77.1 2>&1")
            .text;
    }
};

constexpr const char* static_sentence =
    "eth0 has the address 192.168.77.20, mask 255.255.255.0, gateway 192.168.77.1.\n";

TEST_F(ManagedNetworkJourney, APortThatItManagesIsToldAndOneThatItLeavesAloneIsNot) {
    // Otherwise it would replace the address at once, or a moment later.
    manage("no-auto-default=*\n", "yes");
    EXPECT_EQ(set_static(),
              std::string(static_sentence) +
                  "Note: NetworkManager manages eth0 and may replace these addresses at any time. "
                  "Let it leave eth0 alone: add \"[keyfile]\" and "
                  "\"unmanaged-devices=interface-name:eth0\" to a file in "
                  "/etc/NetworkManager/conf.d, and restart NetworkManager.\n");
    ASSERT_EQ(output_of("kill $(pgrep -x NetworkManager)").status, 0);
    ASSERT_TRUE(wait_until([] { return output_of("pgrep -x NetworkManager").status != 0; }));
    manage("[keyfile]\nunmanaged-devices=interface-name:eth0\n", "no");
    EXPECT_EQ(set_static(), static_sentence);
}

// --- Wireless ---------------------------------------------------------------------------------

class WirelessJourney : public NetworkJourney {
  protected:
    void SetUp() override {
        NetworkJourney::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        for (const char* const program : {"nmcli", "dbus-daemon", "gdbus", "wpa_supplicant"}) {
            QVTC_NEED_PROGRAM(program);
        }
        QVTC_NEED(output_of("/usr/bin/python3 -c 'import dbusmock' 2>&1").status == 0,
                  "python3-dbusmock is not installed");
        const Output started = output_of(QVTC_NETWORK "/access-points 2>&1");
        ASSERT_EQ(started.status, 0) << started.text;
    }
};

constexpr const char* networks =
    R"({"list":[{"ssid":"Corp","connected":"off","encryptType":"802.1X","sigStrength":"6"},)"
    R"({"ssid":"Guest WiFi","connected":"on","encryptType":"open","sigStrength":"5"},)"
    R"({"ssid":"mixed","connected":"off","encryptType":"wpa2","sigStrength":"0"},)"
    R"({"ssid":"Bob's \"AP\"","connected":"off","encryptType":"wpa2","sigStrength":"0"}]})";

TEST_F(WirelessJourney, NetworksInRangeAreListed) {
    EXPECT_EQ(text_of(qvgetwifi()), R"({"status":"1"})");
    EXPECT_EQ(text_of(qvgetwifilist()), R"({"list":[]})");
    EXPECT_EQ(set(qvsetwifionoff, "useWifi=on"), 0);
    EXPECT_EQ(text_of(qvgetwifilist()), networks);
    // As today's nmcli prints it, with the access points' addresses.
    std::filesystem::remove("/usr/local/bin/nmcli");
    EXPECT_EQ(text_of(qvgetwifilist()), networks);
    EXPECT_EQ(output_of(QVTC_CONTROL " network scan").text, "   NAME        SIGNAL  ENCRYPTION\n"
                                                            "   Corp        ######  802.1X\n"
                                                            "*  Guest WiFi  #####-  open\n"
                                                            "   mixed       ------  wpa2\n"
                                                            "   Bob's \"AP\"  ------  wpa2\n");
    EXPECT_EQ(set(qvsetwifionoff, "useWifi=off"), 0);
    EXPECT_EQ(text_of(qvgetwifilist()), R"({"list":[]})");
}

TEST_F(WirelessJourney, TheListStartsTheSupplicant) {
    EXPECT_EQ(output_of("pgrep -x wpa_supplicant").status, 1);
    std::filesystem::create_directories("/etc/wpa_supplicant");
    write_file("/etc/wpa_supplicant/wpa_supicant.conf", "");
    EXPECT_EQ(set(qvsetwifionoff, "useWifi=on"), 0);
    EXPECT_EQ(text_of(qvgetwifilist()), networks);
    EXPECT_TRUE(wait_until([] { return output_of("pgrep -x wpa_supplicant").status == 0; }));
}

/// Whether a line of the calls that NetworkManager got holds all of these.
bool was_called_with(const std::vector<std::string>& parts) {
    for (const std::string& line : lines_of(read_file("/run/access-points.log"))) {
        bool all = true;
        for (const std::string& part : parts) all = all && line.find(part) != std::string::npos;
        if (all) return true;
    }
    return false;
}

TEST_F(WirelessJourney, ANetworkIsJoinedWithItsKey) {
    // Its name is: Bob's "AP"
    EXPECT_EQ(set(qvsetwifiauth, "ssid=426f6227732022415022&password=se'cr$et"), 0);
    EXPECT_TRUE(wait_until([] {
        return was_called_with({"AddAndActivateConnection", "\"psk\": \"se'cr$et\"", "/ap4\""});
    }));
}

TEST_F(WirelessJourney, AnEnterpriseProfileReachesNetworkManagerAsItIs) {
    EXPECT_EQ(set(qvsetwifiauth, "ssid=436f7270&encryptType=802.1X&username=an'na&"
                                 "password=se'cr$et"),
              0);
    EXPECT_TRUE(wait_until([] {
        return was_called_with({" AddConnection ", "\"ssid\": [67, 111, 114, 112]",
                                "\"key-mgmt\": \"wpa-eap\"",
                                "\"802-1x\": {\"eap\": [\"peap\"], \"identity\": \"an'na\", "
                                "\"password\": \"se'cr$et\", \"phase2-auth\": \"mschapv2\"}"});
    }));
}

TEST_F(WirelessJourney, TheLinkGetsALease) {
    write_file("/etc/sysconfig/network-scripts/ifcfg-Guest WiFi", "BOOTPROTO=static\nIPADDR=1\n");
    EXPECT_EQ(set(qvsetwirelessconf, "conf=0&ssid=47756573742057694669"), 0);
    json_object* const conf = qvgetwirelessconf();
    const std::string address = json_object_get_string(json_object_object_get(conf, "ip"));
    EXPECT_TRUE(address.starts_with("192.168.77.")) << address;
    EXPECT_EQ(member(conf, "conf"), "0");
    EXPECT_EQ(read_file("/etc/sysconfig/network-scripts/ifcfg-Guest WiFi"),
              "BOOTPROTO=dhcp\nKEY_MGMT=WPA-PSK\n");
}

} // namespace
} // namespace qvtc::test
