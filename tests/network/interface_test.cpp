#include "network/interface.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace qvtc::network {

namespace {

using test::Texts;
using test::operator+;

class Interface : public test::FreshTerminal {};

/// Lets no descriptor be opened as long as it lives.
class NoDescriptors {
  public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &former_);
        const rlimit none = {0, former_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &former_); }

  private:
    rlimit former_{};
};

constexpr const char* wifi_hardware = "ip addr |grep wlan0";
constexpr const char* eth0_file = "/etc/sysconfig/network-scripts/ifcfg-eth0";

} // namespace

TEST_F(Interface, RunsWhenItsFlagsSaySo) {
    const std::pair<std::string, bool> cases[] = {
        {"", false},
        {test::running_line, true},
        {"eth0: flags=4099<UP,BROADCAST,MULTICAST>  mtu 1500\n", false},
        {"eth0: flags=4163<UP,BROADCAST,RUNNING,PROMISC,MULTICAST>  mtu 1500\n", false},
        {"eth0: Flagge=4163<UP,BROADCAST,RUNNING,MULTICAST>  mtu 1500\n", true},
        {std::string(900, 'x') + "UP,BROADCAST", false},
    };
    for (const auto& [lines, runs] : cases) {
        test::ScriptedOs system;
        system.outputs = {lines};
        EXPECT_EQ(is_running("eth0"), runs) << lines;
        // With its trailing blank.
        EXPECT_EQ(system.record, Texts{"capture 1024 ifconfig |grep eth0 "});
    }
}

TEST_F(Interface, AnyOfThreeMakesTheTerminalRun) {
    for (const char* const device : {"eth0", "eth1"}) {
        test::ScriptedOs system;
        system.replies[std::string("ifconfig |grep ") + device + " "] = test::running_line;
        EXPECT_TRUE(any_running());
        EXPECT_EQ(system.record, test::status_commands); // all are asked
    }
    test::ScriptedOs system;
    EXPECT_FALSE(any_running());
    EXPECT_EQ(system.record, test::status_commands);
}

TEST_F(Interface, WirelessCountsWhenItIsThereAndSwitchedOn) {
    struct Case {
        const char* stored;
        bool present;
        bool asked;
    };
    const Case cases[] = {{"useWifi=on", true, true},
                          {"useWifi=off", true, false},
                          {"off", true, false},
                          {"on", true, true},
                          {"useWifi=on", false, false}};
    for (const Case& each : cases) {
        test::store_items({{"configItem", {{"tc_config_param_15", each.stored}}}});
        test::ScriptedOs system;
        if (each.present) system.replies[wifi_hardware] = "4: wlan0: <UP>\n";
        system.replies["ifconfig |grep wlan0 "] = test::running_line;
        EXPECT_EQ(any_running(), each.asked) << each.stored;
        Texts expected = test::status_commands;
        if (each.asked) expected.push_back("capture 1024 ifconfig |grep wlan0 ");
        EXPECT_EQ(system.record, expected) << each.stored;
    }
}

TEST_F(Interface, AddressesComeFromTheKernel) {
    EXPECT_EQ(address_of("lo"), "127.0.0.1");
    std::string mask;
    EXPECT_EQ(read_mask("lo", mask), MaskRead::done);
    EXPECT_EQ(mask, "255.0.0.0");
    EXPECT_EQ(address_of("none0"), std::nullopt);
    EXPECT_EQ(address_of(""), std::nullopt);
    EXPECT_EQ(address_of("lo" + std::string(14, '\0')), std::nullopt); // longer than any name
    EXPECT_EQ(test::recorded_commands(), Texts{});
}

TEST_F(Interface, WithoutAMaskItsReaderSaysWhy) {
    std::string mask = "before";
    EXPECT_EQ(test::capture_stdout([&] { EXPECT_EQ(read_mask("none0", mask), MaskRead::refused); }),
              "getmask ioctl failed net_interface=none0\n");
    EXPECT_EQ(test::capture_stdout([&] {
                  const NoDescriptors none;
                  EXPECT_EQ(read_mask("lo", mask), MaskRead::no_socket);
                  EXPECT_EQ(address_of("lo"), std::nullopt);
              }),
              "getmask open socket failed net_interface=lo\n");
    EXPECT_EQ(mask, "before");
}

TEST_F(Interface, ModeIsThatOfTheFirstLineWithAProtocol) {
    const std::pair<Texts, const char*> cases[] = {
        {{"BOOTPROTO=static"}, "1"},
        {{"BOOTPROTO=dhcp"}, "0"},
        {{"BOOTPROTO=dhcp", "BOOTPROTO=static"}, "0"},
        {{"BOOTPROTO=\"static\""}, "1"},
        {{}, "0"},
        {{""}, "0"},
        {{std::string(505, '#') + "static"}, "1"},
        {{std::string(506, '#') + "static"}, "0"}, // 511 bytes of it are read
    };
    for (const auto& [lines, expected] : cases) {
        test::ScriptedOs system;
        system.files = {eth0_file};
        system.printed_lines = lines;
        std::string conf = "before";
        EXPECT_EQ(read_conf("eth0", conf), ConfRead::done);
        EXPECT_EQ(conf, expected);
        EXPECT_EQ(system.record,
                  Texts{std::string("lines cat ") + eth0_file + "| grep \"BOOTPROTO\""});
    }
}

TEST_F(Interface, ModeWithoutAFileIsDhcpAndWithoutACommandToo) {
    test::ScriptedOs system;
    std::string conf = "before";
    EXPECT_EQ(read_conf("eth0", conf), ConfRead::done);
    EXPECT_EQ(conf, "0");
    EXPECT_EQ(system.record, Texts{});
    system.files = {eth0_file};
    conf = "before";
    EXPECT_EQ(read_conf("eth0", conf), ConfRead::not_started);
    EXPECT_EQ(conf, "0");
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @getconf popen error"});
}

TEST_F(Interface, ModeIsReadFromARealFile) {
    std::string conf;
    test::write_file(eth0_file, "\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=10.0.0.2\n");
    EXPECT_EQ(read_conf("eth0", conf), ConfRead::done);
    EXPECT_EQ(conf, "1");
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{
                  {std::string("cat ") + eth0_file + "| grep \"BOOTPROTO\"", true}}));
}

TEST_F(Interface, GatewayIsAskedForOnlyOnANetwork) {
    test::ScriptedOs system;
    EXPECT_EQ(gateway_of("eth1"), std::nullopt);
    EXPECT_EQ(system.record, test::status_commands);
    system.record.clear();
    system.replies["ifconfig |grep eth0 "] = test::running_line;
    system.replies[test::gateway_command("eth1")] = "192.168.1.1 \n";
    EXPECT_EQ(gateway_of("eth1"), "192.168.1.1");
    EXPECT_EQ(system.record,
              (test::status_commands + Texts{"capture 128 " + test::gateway_command("eth1")}));
}

TEST_F(Interface, GatewayShorterThanSixCharactersIsNone) {
    test::ScriptedOs system;
    system.replies["ifconfig |grep eth0 "] = test::running_line;
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"eth0\n", ""},
        {"1.1.1", ""},
        {"1.1.1\n", "1.1.1"},
        {"a b\n\t \n", "a b"},
        {"10.0.0.1\n10.0.0.2\n", "10.0.0.1\n10.0.0.2"},
    };
    for (const auto& [printed, expected] : cases) {
        system.replies[test::gateway_command("eth0")] = printed;
        EXPECT_EQ(gateway_of("eth0"), expected) << printed;
    }
}

TEST_F(Interface, RecordIsFilledWithWhatCanBeRead) {
    test::write_file("/etc/resolv.conf",
                     "nameserver 10.0.0.1\nnameserver " + std::string(100, '2') + "\n");
    NetConf conf;
    {
        test::ScriptedOs system;
        system.files = {"/etc/sysconfig/network-scripts/ifcfg-lo"};
        system.printed_lines = Texts{"BOOTPROTO=static"};
        system.replies["ifconfig |grep eth1 "] = test::running_line;
        system.replies[test::gateway_command("lo")] = "10.0.0.254\n";
        read_net_conf("lo", conf);
        EXPECT_EQ(system.record,
                  (Texts{"lines cat /etc/sysconfig/network-scripts/ifcfg-lo| grep \"BOOTPROTO\""} +
                   test::status_commands + Texts{"capture 128 " + test::gateway_command("lo")}));
    }
    EXPECT_EQ(conf.conf, "1");
    EXPECT_EQ(conf.ip, "127.0.0.1");
    EXPECT_EQ(conf.mask, "255.0.0.0");
    EXPECT_EQ(conf.gateway, "10.0.0.254");
    EXPECT_EQ(conf.dns1, "10.0.0.1");
    EXPECT_EQ(conf.dns2, std::string(63, '2'));
}

TEST_F(Interface, RecordKeepsWhatCannotBeRead) {
    std::filesystem::remove("/etc/resolv.conf");
    NetConf conf;
    {
        test::ScriptedOs system;
        read_net_conf("none0", conf);
    }
    for (const std::string* const field :
         {&conf.ip, &conf.mask, &conf.gateway, &conf.dns1, &conf.dns2})
        EXPECT_EQ(*field, "0.0.0.0");
    EXPECT_EQ(conf.conf, "0");
    test::write_file("/etc/resolv.conf", "");
    test::ScriptedOs system;
    read_net_conf("none0", conf);
    EXPECT_EQ(conf.dns1, ""); // the file was read, and names none
    EXPECT_EQ(conf.dns2, "");
}

TEST_F(Interface, FilesStayInTheirDirectory) {
    EXPECT_EQ(interface_file("eth0"), eth0_file);
    EXPECT_EQ(interface_file("Guest WiFi"), "/etc/sysconfig/network-scripts/ifcfg-Guest WiFi");
    EXPECT_EQ(interface_file("../../passwd"), "/etc/sysconfig/network-scripts/ifcfg-..-..-passwd");
    EXPECT_EQ(interface_file(".."), "/etc/sysconfig/network-scripts/ifcfg-..");
    EXPECT_EQ(interface_file("/"), "/etc/sysconfig/network-scripts/ifcfg--");
}

} // namespace qvtc::network
