// Every exported function in a terminal, with the commands that it gives to the shell; what its
// worker makes of each answer is in that worker's tests.

#include "network/exports.hpp"

#include "connections/documents.hpp"
#include "core/text.hpp"
#include "network/network_commands.hpp"
#include "qvtcapi/qvtcapi.h"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

constexpr const char* scripts = "/etc/sysconfig/network-scripts/";

class NetworkExports : public FreshTerminal {
  protected:
    StandIn ifconfig{"ifconfig"};
    StandIn ip{"ip"};
    StandIn route{"route"};
    StandIn nmcli{"nmcli"};
    StandIn ifup{"ifup"};
    StandIn ifdown{"ifdown"};
    StandIn killall{"killall"};
    StandIn dhclient{"dhclient"};
    StandIn systemctl{"systemctl"};
    StandIn supplicant{"/usr/sbin/wpa_supplicant"};
};

/// A parameter string that a setter may change.
class Params {
  public:
    explicit Params(const char* text) : text_(text) {}
    operator char*() { return text_.data(); }

  private:
    std::string text_;
};

const Texts status = {"ifconfig |grep eth0 ", "ifconfig |grep eth1 ", "ip addr |grep wlan0"};

std::string text_of(json_object* object) {
    const std::string text =
        object == nullptr ? "null" : json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

/// The commands that this call gives to the shell.
template <typename Call>
Texts commands_of(Call call) {
    forget_commands();
    call();
    return recorded_commands();
}

} // namespace

TEST_F(NetworkExports, WiredGettersAskForTheirInterfaceFirst) {
    std::filesystem::remove("/etc/resolv.conf");
    EXPECT_EQ(commands_of([] { EXPECT_EQ(qvgetwiredconf(), nullptr); }),
              Texts{"ip addr |grep eth0"});
    EXPECT_EQ(commands_of([] {
                  EXPECT_EQ(
                      text_of(qvgetexwiredconf()),
                      R"({"conf":"none","ip":"","mask":"","gateway":"","dns1":"","dns2":""})");
              }),
              Texts{"ip addr |grep eth1"});
    ip.prints("3: eth0: <UP>\n4: eth1: <UP>\n");
    const std::string zeros = R"({"conf":"0","ip":"0.0.0.0","mask":"0.0.0.0",)"
                              R"("gateway":"0.0.0.0","dns1":"0.0.0.0","dns2":"0.0.0.0"})";
    EXPECT_EQ(commands_of([&] { EXPECT_EQ(text_of(qvgetwiredconf()), zeros); }),
              Texts{"ip addr |grep eth0"} + status);
    EXPECT_EQ(commands_of([&] { EXPECT_EQ(text_of(qvgetexwiredconf()), zeros); }),
              Texts{"ip addr |grep eth1"} + status);
    write_file(std::string(scripts) + "ifcfg-lo", "BOOTPROTO=static\n");
    EXPECT_EQ(commands_of([] {
                  EXPECT_EQ(text_of(getwiredconf("lo")),
                            R"({"conf":"1","ip":"127.0.0.1","mask":"255.0.0.0",)"
                            R"("gateway":"0.0.0.0","dns1":"0.0.0.0","dns2":"0.0.0.0"})");
              }),
              Texts{std::string("cat ") + scripts + "ifcfg-lo| grep \"BOOTPROTO\""} + status);
}

TEST_F(NetworkExports, WiredSettersGiveTheStatusOfIfupOrZero) {
    ifup.exits_with(3);
    const auto commands = [](const std::string& device) {
        return Texts{"rm -rf /root/resolv.conf", "echo 10.0.0.1>/tmp/abcd-" + device,
                     "rm -rf /root/resolv.conf", "cp /etc/resolv.conf /root/resolv.conf",
                     "ifdown " + device,         "ifup " + device};
    };
    constexpr const char* params =
        "conf=1&ip=10.0.0.2&mask=255.0.0.0&gateway=10.0.0.1&dns1=10.0.0.1";
    EXPECT_EQ(commands_of([] { EXPECT_EQ(qvsetwiredconf(Params(params)), 3 << 8); }),
              commands("eth0"));
    EXPECT_EQ(commands_of([] { EXPECT_EQ(setwiredconf(Params(params)), 3 << 8); }),
              commands("eth0"));
    EXPECT_EQ(commands_of([] { EXPECT_EQ(qvsetexwiredconf(Params(params)), 0); }),
              commands("eth1"));
    EXPECT_EQ(commands_of([] { EXPECT_EQ(setexwiredconf(Params(params)), 0); }), commands("eth1"));
    EXPECT_EQ(commands_of([] { EXPECT_EQ(setnetworkconf("eth1", Params(params)), 3 << 8); }),
              commands("eth1"));
    EXPECT_EQ(commands_of([] {
                  EXPECT_EQ(savenetconf("eth0", "1;10.0.0.2;255.0.0.0;10.0.0.1;10.0.0.1", 0),
                            3 << 8);
              }),
              commands("eth0"));
    EXPECT_EQ(read_file("/root/resolv.conf"), read_file("/etc/resolv.conf"));
    EXPECT_EQ(read_file("/tmp/abcd-eth1"), "10.0.0.1\n");
    EXPECT_EQ(commands_of([] { EXPECT_EQ(network_restart("eth1"), 3 << 8); }),
              (Texts{"ifdown eth1", "ifup eth1"}));
    EXPECT_EQ(qvsetwiredconf(Params("abc")), -1);
    EXPECT_EQ(qvsetexwiredconf(Params("abc")), 0);
    EXPECT_EQ(qvsetwiredconf(Params("ip=10.0.0.2")), -1);
    EXPECT_EQ(qvsetexwiredconf(Params("ip=10.0.0.2")), 0);
}

TEST_F(NetworkExports, OnlyOneKeepsTheInterfaceFile) {
    for (const int keepfile : {0, 2, -1}) {
        std::filesystem::remove(std::string(scripts) + "ifcfg-eth0");
        savenetconf("eth0", "0", keepfile);
        EXPECT_TRUE(file_exists(std::string(scripts) + "ifcfg-eth0")) << keepfile;
    }
    std::filesystem::remove(std::string(scripts) + "ifcfg-eth0");
    savenetconf("eth0", "0", 1);
    EXPECT_FALSE(file_exists(std::string(scripts) + "ifcfg-eth0"));
}

TEST_F(NetworkExports, StatusIsOneOrZero) {
    int (*const entries[])() = {qvgetwiredstatus, getwiredstatus, getnetworkstatus};
    for (int (*const entry)() : entries)
        EXPECT_EQ(commands_of([&] { EXPECT_EQ(entry(), 0); }), status);
    ifconfig.prints("eth1: flags=4163<UP,BROADCAST,RUNNING,MULTICAST>  mtu 1500\n");
    for (int (*const entry)() : entries) EXPECT_EQ(entry(), 1);
    EXPECT_EQ(commands_of([] {
                  EXPECT_EQ(networkstatus("eth1"), 1);
                  EXPECT_EQ(networkstatus("eth0"), 0);
              }),
              (Texts{"ifconfig |grep eth1 ", "ifconfig |grep eth0 "}));
}

TEST_F(NetworkExports, ARecordKeepsWhatCannotBeRead) {
    std::filesystem::remove("/etc/resolv.conf");
    netconf record;
    std::memset(&record, 'x', sizeof record);
    EXPECT_EQ(getnetconf("none0", &record), 0);
    EXPECT_STREQ(record.conf, "0");
    EXPECT_EQ(std::string(record.ip), std::string(63, 'x')); // terminated now
    wiredconf_init(&record);
    for (const char* const field :
         {record.conf, record.ip, record.gateway, record.mask, record.dns1, record.dns2})
        EXPECT_STREQ(field, "0.0.0.0");
    write_file("/etc/resolv.conf", "nameserver " + std::string(900, '1') + "\n");
    EXPECT_EQ(getnetconf("lo", &record), 0);
    EXPECT_STREQ(record.ip, "127.0.0.1");
    EXPECT_STREQ(record.mask, "255.0.0.0");
    EXPECT_STREQ(record.gateway, "0.0.0.0");
    EXPECT_EQ(std::string(record.dns1), std::string(63, '1'));
    EXPECT_STREQ(record.dns2, "");
}

TEST_F(NetworkExports, SingleReadersFillTheirBufferOrLeaveIt) {
    std::array<char, 64> text{"before"};
    std::array<char, 64> other{"before"};
    EXPECT_EQ(getipaddr("none0", text.data()), -1);
    EXPECT_EQ(getmask("none0", text.data()), 1);
    EXPECT_EQ(getgateway("eth0", text.data()), -1);
    std::filesystem::remove("/etc/resolv.conf");
    EXPECT_EQ(getdns(text.data(), other.data()), -1);
    write_file("/etc/resolv.conf", "nameserver 10.0.0.1\n");
    EXPECT_EQ(getdns(other.data(), text.data()), 0);
    EXPECT_STREQ(other.data(), "10.0.0.1");
    EXPECT_STREQ(text.data(), "before");
    EXPECT_EQ(getipaddr("lo", text.data()), 0);
    EXPECT_STREQ(text.data(), "127.0.0.1");
    EXPECT_EQ(getmask("lo", text.data()), 0);
    EXPECT_STREQ(text.data(), "255.0.0.0");
    EXPECT_EQ(getconf(text.data(), "none0"), 0);
    EXPECT_STREQ(text.data(), "0");
    EXPECT_EQ(getnetdevname(text.data()), 0);
    EXPECT_STREQ(text.data(), "eth0");
    ifconfig.prints("eth0: <UP,BROADCAST,RUNNING,MULTICAST>\n");
    EXPECT_EQ(getgateway("eth0", text.data()), 0);
    EXPECT_STREQ(text.data(), "eth0"); // on a network, but without a default route
    ip.prints("default via 10.0.0.254 dev eth0 \n");
    EXPECT_EQ(commands_of([&] { EXPECT_EQ(getgateway("eth0", text.data()), 0); }),
              status + Texts{gateway_command("eth0")});
    EXPECT_STREQ(text.data(), "10.0.0.254");
}

TEST_F(NetworkExports, NothingIsTakenFromNullOrWrittenToIt) {
    std::array<char, 64> text{};
    netconf record;
    EXPECT_EQ(getipaddr(nullptr, text.data()), -1);
    EXPECT_EQ(getipaddr("lo", nullptr), -1);
    EXPECT_EQ(getmask(nullptr, text.data()), -1);
    EXPECT_EQ(getmask("lo", nullptr), -1);
    EXPECT_EQ(getgateway(nullptr, nullptr), -1);
    EXPECT_EQ(getconf(nullptr, "lo"), -1);
    EXPECT_EQ(getdns(nullptr, text.data()), -1);
    EXPECT_EQ(getnetconf(nullptr, &record), 0);
    EXPECT_EQ(networkstatus(nullptr), 0);
    EXPECT_EQ(getwiredconf(nullptr), nullptr);
    EXPECT_EQ(setnetworkconf(nullptr, text.data()), -1);
    EXPECT_EQ(setwirelessconf(nullptr), -1);
    EXPECT_EQ(setdefaultroute(nullptr), 0);
    EXPECT_EQ(enctype_type(nullptr), 4);
    EXPECT_EQ(scan_tabbed_data(nullptr, nullptr, 5), 0);
    EXPECT_EQ(recorded_commands(), Texts{});
}

TEST_F(NetworkExports, AResetOfAnInterfaceIsItsFile) {
    EXPECT_EQ(resetnetwork("eth1"), 0);
    EXPECT_EQ(read_file(std::string(scripts) + "ifcfg-eth1"),
              "\nTYPE=Ethernet\nNAME=eth1\nDEVICE=eth1\nONBOOT=yes\nBOOTPROTO=dhcp\n");
    EXPECT_EQ(recorded_commands(), Texts{});
    std::filesystem::remove_all(scripts);
    EXPECT_EQ(resetnetwork("eth1"), -1);
}

TEST_F(NetworkExports, WifiHardwareAndItsSwitch) {
    EXPECT_EQ(commands_of([] { EXPECT_EQ(getwifi(), 0); }), Texts{"ip addr |grep wlan0"});
    EXPECT_EQ(text_of(qvgetwifi()), R"({"status":"0"})");
    ip.prints("4: wlan0: <UP>\n");
    EXPECT_EQ(getwifi(), 1);
    EXPECT_EQ(text_of(qvgetwifi()), R"({"status":"1"})");
    write_file("/home/root/disablewifi", "");
    EXPECT_EQ(text_of(qvgetwifi()), R"({"status":"0"})");
    EXPECT_EQ(qvgetwirelessconf(), nullptr);

    std::array<char, 64> text{"before"};
    EXPECT_EQ(getwifionoff(text.data()), -1);
    EXPECT_STREQ(text.data(), "before");
    EXPECT_EQ(text_of(qvgetwifionoff()), R"({"useWifi":"off"})");
    EXPECT_EQ(commands_of([] { EXPECT_EQ(qvsetwifionoff(Params("useWifi=on")), 0); }),
              Texts{"ifconfig wlan0 up"});
    EXPECT_EQ(text_of(qvgetwifionoff()), R"({"useWifi":"on"})");
    EXPECT_EQ(commands_of([] { EXPECT_EQ(setwifionoff(Params("useWifi=off")), 0); }),
              Texts{"ifconfig wlan0 down"});
    EXPECT_EQ(getwifionoff(text.data()), 0);
    EXPECT_STREQ(text.data(), "useWifi=off");
}

TEST_F(NetworkExports, ListsAreObjectsOfTheirOwn) {
    store_items({{"configItem", {{"tc_config_param_15", "useWifi=on"}}}});
    nmcli.prints("header\nOffice Infra 6 130 Mbit/s 59 x WPA2\n");
    StandIn ps("ps");
    ps.prints("root 1 wpa_supplicant\n");
    const Texts commands = {"ps -ef|grep 'wpa_supplicant'|grep -v grep|wc -l",
                            "env LANG=en_US.UTF8 nmcli dev wifi"};
    for (json_object* (*const getter)() : {qvgetwifilist, getwifilist}) {
        forget_commands();
        json_object* const first = getter();
        EXPECT_EQ(recorded_commands(), commands);
        json_object* const second = getter();
        EXPECT_NE(first, second);
        const std::string expected = R"({"list":[{"ssid":"Office","connected":"off",)"
                                     R"("encryptType":"wpa2","sigStrength":"5"}]})";
        EXPECT_EQ(text_of(first), expected);
        EXPECT_EQ(text_of(second), expected);
    }
    EXPECT_EQ(nmcli.calls().front(), (StandIn::Arguments{"dev", "wifi"}));
}

TEST_F(NetworkExports, APieceOfAScanOnItsOwn) {
    char fields[3][128];
    std::memset(fields, 'x', sizeof fields);
    EXPECT_EQ(scan_tabbed_data("  a \tb$(touch /tmp/owned) c", fields, 2), 2);
    EXPECT_STREQ(fields[0], "a");
    EXPECT_STREQ(fields[1], "b$(touch");
    EXPECT_EQ(fields[2][0], 'x');
    EXPECT_EQ(scan_tabbed_data(std::string(200, 'y').c_str(), fields, 3), 1);
    EXPECT_EQ(std::string(fields[0]), std::string(127, 'y'));
    EXPECT_EQ(scan_tabbed_data("a", fields, 0), 0);
    EXPECT_EQ(scan_tabbed_data("a", fields, -1), 0);
    EXPECT_EQ(enctype_type(Params("WPA1")), 1);
    EXPECT_EQ(signal_level(35, 7), 3);
    EXPECT_EQ(recorded_commands(), Texts{});
}

TEST_F(NetworkExports, JoiningReturnsAtOnce) {
    nmcli.runs("[ \"$2\" = wifi ] && sleep 100");
    for (int (*const setter)(const char*) : {qvsetwifiauth, setwifiauth}) {
        EXPECT_EQ(
            commands_of([&] { EXPECT_EQ(setter(Params("ssid=436f7270&password=secret12")), 0); }),
            (Texts{"nmcli connect|grep wlan|awk '{print $2}' |xargs nmcli c delet",
                   "rm -f /etc/sysconfig/network-scripts/ifcfg-Corp*",
                   "env LANG=en_US.UTF8 nmcli d wifi connect \"Corp\" password \"secret12\" "
                   "wlan0 >/dev/null 2>&1 &"}));
        ASSERT_TRUE(wait_until([&] { return !nmcli.calls().empty(); }));
    }
    ASSERT_TRUE(wait_until([&] { return nmcli.calls().size() >= 6; }));
    EXPECT_EQ(nmcli.calls().back(), (StandIn::Arguments{"d", "wifi", "connect", "Corp", "password",
                                                        "secret12", "wlan0"}));
    EXPECT_EQ(qvsetwifiauth(Params("")), 0);
    EXPECT_EQ(commands_of([] { EXPECT_EQ(resetWifi(), 0); }),
              (Texts{"killall dhclient", "killall wpa_supplicant 2>/dev/null",
                     "/usr/sbin/wpa_supplicant -u -f /var/log/wpa_supplicant.log -c "
                     "/etc/wpa_supplicant/wpa_supicant.conf -P /var/run/wpa_supplicant.pid -B",
                     "ifconfig wlan0 up", "dhclient wlan0 &"}));
}

TEST_F(NetworkExports, WirelessSettings) {
    ip.prints("4: wlan0: <UP>\n");
    std::filesystem::remove("/etc/resolv.conf");
    const std::string object = "{'conf':'1','ip':'0.0.0.0','mask':'0.0.0.0','gateway':'0.0.0.0',"
                               "'dns1':'0.0.0.0','dns2':'0.0.0.0'}";
    for (int (*const setter)(const char*) : {qvsetwirelessconf, setwirelessconf}) {
        EXPECT_EQ(setter(Params("conf=1&ip=10.0.0.2&ssid=436f7270")), 0);
        const std::string file = "/etc/sysconfig/network-scripts/ifcfg-Corp";
        Texts commands = {"env LANG=en_US.UTF8 nmcli dev wifi|grep Corp |awk '{print $9}'",
                          "echo \"KEY_MGMT=WPA-PSK\" >> " + file};
        for (const std::string key : {"IPADDR", "GATEWAY", "NETMASK", "DNS1", "DNS2"})
            commands.push_back("sed -i \"/" + key + "=/d\" " + file);
        commands.push_back("sed -i \"/BOOTPROTO/ s/\\(BOOTPROTO=\\).*/\\1static/\" " + file);
        commands.push_back("echo \"IPADDR=10.0.0.2\" >> " + file);
        for (const std::string key : {"GATEWAY", "NETMASK", "DNS1", "DNS2"})
            commands.push_back("echo \"" + key + "=0.0.0.0\" >> " + file);
        EXPECT_EQ(recorded_commands(),
                  (commands + Texts{"killall dhclient", "nmcli r wifi off", "nmcli r wifi on",
                                    "systemctl restart network"}));
        forget_commands();
    }
    EXPECT_EQ(commands_of([] { json_object_put(qvgetwirelessconf()); }),
              Texts{"ip addr |grep wlan0"} + status);
    EXPECT_EQ(text_of(qvgetwirelessconf()), replace_all(object, '\'', '"'));
    std::array<char, 1024> text{};
    EXPECT_EQ(getwirelessconf(text.data()), 0);
    EXPECT_EQ(std::string(text.data()), object);
    EXPECT_EQ(qvsetwirelessconf(Params("abc")), 0);
    EXPECT_EQ(setwirelessconf(Params("abc")), -1);
    EXPECT_EQ(qvsetwirelessconf(Params("ip=10.0.0.2")), 0);
    EXPECT_EQ(setwirelessconf(Params("ip=10.0.0.2")), -1);
    dhclient.exits_with(2);
    EXPECT_EQ(savewirelessconf(nullptr), -1);
}

TEST_F(NetworkExports, DefaultRoutes) {
    std::array<char, 1024> text{"before"};
    EXPECT_EQ(getdefaultroute(text.data()), 0);
    EXPECT_STREQ(text.data(), "before");
    EXPECT_EQ(qvgetdefaultroute(), nullptr);
    const std::string add = "route add default gw  dev eth1 >/dev/null 2>&1";
    for (int (*const setter)(const char*) : {qvsetdefaultroute, setdefaultroute}) {
        EXPECT_EQ(commands_of([&] { EXPECT_EQ(setter(Params("default=eth1")), 0); }),
                  Texts{"route |grep default"} + status + Texts{add});
    }
    EXPECT_EQ(log_lines(), Texts{"[DEBUG] qvsetdefaultroute=default=eth1"});
    EXPECT_EQ(getdefaultroute(text.data()), 0);
    EXPECT_EQ(std::string(text.data()), add);
    EXPECT_EQ(qvgetdefaultroute(), nullptr);
}

} // namespace qvtc::test
