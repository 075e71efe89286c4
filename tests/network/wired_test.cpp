#include "network/wired.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::network {

namespace {

using test::read_file;
using test::Texts;
using test::operator+;

const std::string scripts = "/etc/sysconfig/network-scripts/ifcfg-";
constexpr const char* network_file = "/etc/sysconfig/network";
constexpr const char* resolv_conf = "/etc/resolv.conf";

constexpr const char* whole = "conf=1&ip=192.168.1.20&mask=255.255.255.0&gateway=192.168.1.1&"
                              "dns1=192.168.1.1&dns2=192.168.1.2";

class Wired : public test::FreshTerminal {
  protected:
    Wired() {
        test::write_file(scripts + "eth0", "former\n");
        test::write_file(network_file, "former\n");
        test::write_file(resolv_conf, "former\n");
    }
};

std::string text_of(const Json& object) {
    return json_object_to_json_string_ext(object.get(), JSON_C_TO_STRING_PLAIN);
}

const Texts no_servers = {"run rm -rf /root/resolv.conf", "run ifdown eth0", "run ifup eth0"};
const Texts servers = {"run rm -rf /root/resolv.conf", "run rm -rf /root/resolv.conf",
                       "run cp /etc/resolv.conf /root/resolv.conf", "run ifdown eth0",
                       "run ifup eth0"};

} // namespace

TEST_F(Wired, AStaticAddressIsStoredWrittenAndApplied) {
    test::ScriptedOs system;
    system.status = 256;
    EXPECT_EQ(set_wired_conf("eth0", whole), 256);
    EXPECT_EQ(system.record,
              (Texts{"run rm -rf /root/resolv.conf", "run echo 192.168.1.1>/tmp/abcd-eth0",
                     "run rm -rf /root/resolv.conf", "run cp /etc/resolv.conf /root/resolv.conf",
                     "run ifdown eth0", "run ifup eth0"}));
    test::expect_golden("network/ifcfg_static.txt", read_file(scripts + "eth0"));
    test::expect_golden("network/network.txt", read_file(network_file));
    test::expect_golden("network/resolv_conf.txt", read_file(resolv_conf));
    EXPECT_EQ(test::stored_setting("networkconf-eth0"),
              "{'conf':'1','ip':'192.168.1.20','mask':'255.255.255.0','gateway':'192.168.1.1',"
              "'dns1':'192.168.1.1','dns2':'192.168.1.2'}");
}

TEST_F(Wired, DhcpWritesNoAddressAndLeavesTheGateway) {
    for (const char* const params :
         {"conf=0", "conf=0&ip=10.0.0.2&mask=255.0.0.0&gateway=10.0.0.1", "conf=1&ip=0.0.0.0",
          "conf=1&ip=0", "conf=1&gateway=10.0.0.1"}) {
        test::write_file(scripts + "eth0", "former\n");
        test::ScriptedOs system;
        EXPECT_EQ(set_wired_conf("eth0", params), 0);
        EXPECT_EQ(system.record, servers) << params;
        test::expect_golden("network/ifcfg_dhcp.txt", read_file(scripts + "eth0"));
        EXPECT_EQ(read_file(network_file), "former\n");
    }
}

TEST_F(Wired, NameServersAloneKeepTheInterfaceFile) {
    test::ScriptedOs system;
    EXPECT_EQ(set_wired_conf("eth0", "conf=1&dns1=8.8.8.8"), 0);
    EXPECT_EQ(system.record, servers);
    EXPECT_EQ(read_file(scripts + "eth0"), "former\n");
    EXPECT_EQ(read_file(network_file), "former\n");
    EXPECT_EQ(read_file(resolv_conf),
              "# Created by NetworkManager\nnameserver 8.8.8.8\nnameserver 0.0.0.0\n");
    EXPECT_EQ(test::stored_setting("networkconf-eth0"),
              "{'conf':'1','ip':'','mask':'','gateway':'','dns1':'8.8.8.8','dns2':''}");
}

TEST_F(Wired, DeliberatelyWritesZeroesForNameServersThatAreNotAskedFor) {
    test::ScriptedOs system;
    EXPECT_EQ(set_wired_conf("eth0", "conf=0"), 0);
    EXPECT_EQ(system.record, servers);
    EXPECT_EQ(read_file(resolv_conf), "# Created by NetworkManager\nnameserver 0.0.0.0\n"
                                      "nameserver 0.0.0.0\n");
}

TEST_F(Wired, NameServersOfFiveCharactersAreNotWritten) {
    test::ScriptedOs system;
    EXPECT_EQ(set_wired_conf("eth0", "conf=1&dns1=1.1.1&dns2=::1.1"), 0);
    EXPECT_EQ(system.record, no_servers);
    EXPECT_EQ(read_file(resolv_conf), "# Created by NetworkManager\n");
    system.record.clear();
    EXPECT_EQ(set_wired_conf("eth0", "conf=1&dns1=1.1.1&dns2=::1.12"), 0);
    EXPECT_EQ(system.record, servers);
    EXPECT_EQ(read_file(resolv_conf), "# Created by NetworkManager\nnameserver ::1.12\n");
}

TEST_F(Wired, WhiteSpaceBehindAValueIsNotWritten) {
    for (const char* const tail : {"\n", " ", "\r\n", "\t \n"}) {
        test::ScriptedOs system;
        std::string params = whole;
        for (std::size_t at = params.find('&'); at != std::string::npos;
             at = params.find('&', at + 5))
            params.insert(at, params.starts_with("conf=1&") && at == 6 ? "" : tail);
        EXPECT_EQ(set_wired_conf("eth0", params + tail), 0);
        EXPECT_EQ(system.record.at(1), "run echo 192.168.1.1>/tmp/abcd-eth0");
        test::expect_golden("network/ifcfg_static.txt", read_file(scripts + "eth0"));
        test::expect_golden("network/network.txt", read_file(network_file));
        test::expect_golden("network/resolv_conf.txt", read_file(resolv_conf));
    }
}

TEST_F(Wired, AGatewayThatEchoTakesForAnOptionChangesNothing) {
    test::ScriptedOs system;
    EXPECT_EQ(set_wired_conf("eth0", "conf=1&ip=10.0.0.2&gateway=-n\n"), -1);
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::stored_document(), "");
    EXPECT_EQ(read_file(scripts + "eth0"), "former\n");
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @setnetworkconf not a gateway"});
}

TEST_F(Wired, AnyInterfaceGetsItsOwnFiles) {
    test::ScriptedOs system;
    EXPECT_EQ(apply_wired_conf("wlan0", "1;10.0.0.2;255.0.0.0;10.0.0.1", false), 0);
    EXPECT_EQ(read_file(scripts + "wlan0"),
              "\nTYPE=Ethernet\nNAME=wlan0\nDEVICE=wlan0\nONBOOT=yes\nBOOTPROTO=static\n"
              "IPADDR=10.0.0.2\nNETMASK=255.0.0.0\n");
    EXPECT_EQ(read_file(scripts + "eth0"), "former\n");
    EXPECT_EQ(system.record.at(1), "run echo 10.0.0.1>/tmp/abcd-wlan0");
    EXPECT_EQ(system.record.back(), "run ifup wlan0");
}

TEST_F(Wired, WithoutAListIsDhcp) {
    test::ScriptedOs system;
    apply_wired_conf("eth0", nullptr, false);
    test::expect_golden("network/ifcfg_dhcp.txt", read_file(scripts + "eth0"));
    EXPECT_EQ(read_file(resolv_conf), "# Created by NetworkManager\nnameserver 0.0.0.0\n"
                                      "nameserver 0.0.0.0\n");
}

TEST_F(Wired, TooShortParametersChangeNothing) {
    test::ScriptedOs system;
    for (const char* const params : {"", "a=1", "con"}) {
        EXPECT_EQ(set_wired_conf("eth0", params), -1);
    }
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::log_lines(), Texts{});
    EXPECT_EQ(read_file(scripts + "eth0"), "former\n");
}

TEST_F(Wired, ParametersWithoutAModeChangeNothing) {
    test::ScriptedOs system;
    EXPECT_EQ(set_wired_conf("eth0", "ip=10.0.0.2&password=secret"), -1);
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::stored_document(), "");
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @setnetworkconf no conf"});
}

TEST_F(Wired, AResetWritesTheFileAndNothingElse) {
    test::ScriptedOs system;
    EXPECT_TRUE(reset_wired("eth0"));
    test::expect_golden("network/ifcfg_dhcp.txt", read_file(scripts + "eth0"));
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(read_file(resolv_conf), "former\n");
    EXPECT_EQ(read_file(network_file), "former\n");
    std::filesystem::remove_all("/etc/sysconfig/network-scripts");
    EXPECT_FALSE(reset_wired("eth0"));
}

TEST_F(Wired, APortThatIsNotThereIsNoneOrEmpty) {
    test::ScriptedOs system;
    EXPECT_EQ(main_port_conf(), nullptr);
    EXPECT_EQ(text_of(extra_port_conf()),
              R"({"conf":"none","ip":"","mask":"","gateway":"","dns1":"","dns2":""})");
    EXPECT_EQ(system.record,
              (Texts{"capture 1024 ip addr |grep eth0", "capture 1024 ip addr |grep eth1"}));
}

TEST_F(Wired, APortThatIsThereIsRead) {
    std::filesystem::remove(resolv_conf);
    test::ScriptedOs system;
    system.replies["ip addr |grep eth0"] = "2: eth0@if3: <BROADCAST>\n";
    system.replies["ip addr |grep eth1"] = "3: eth1@if4: <BROADCAST>\n";
    const std::string empty = R"({"conf":"0","ip":"0.0.0.0","mask":"0.0.0.0",)"
                              R"("gateway":"0.0.0.0","dns1":"0.0.0.0","dns2":"0.0.0.0"})";
    EXPECT_EQ(text_of(main_port_conf()), empty);
    EXPECT_EQ(text_of(extra_port_conf()), empty);
    test::write_file(resolv_conf, "nameserver 1'2\"3\n");
    EXPECT_EQ(text_of(wired_conf("lo")), R"({"conf":"0","ip":"127.0.0.1","mask":"255.0.0.0",)"
                                         R"("gateway":"0.0.0.0","dns1":"1'2\"3","dns2":""})");
}

} // namespace qvtc::network
