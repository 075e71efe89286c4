// Every file that the library has a shell write, or a shell read, under both shells that a
// terminal may have: the files are the same.

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>

#include "clients/watcher.hpp"
#include "connections/documents.hpp"
#include "display/exports.hpp"
#include "qvtcapi/qvtcapi.h"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

constexpr const char* scripts = "/etc/sysconfig/network-scripts/ifcfg-";

class WrittenFiles : public FreshTerminal, public testing::WithParamInterface<const char*> {
  protected:
    WrittenFiles() { setenv("QVTC_SHELL", GetParam(), 1); }
    ~WrittenFiles() override { unsetenv("QVTC_SHELL"); }

    /// Programs that a call would wait for, or that would touch more than files.
    std::array<StandIn, 10> programs_ = {
        StandIn("nmcli"),        StandIn("systemctl"),
        StandIn("dhclient"),     StandIn("ifup"),
        StandIn("ifdown"),       StandIn("date"),
        StandIn("ntpdate-sync"), StandIn("hwclock"),
        StandIn("clock"),        StandIn("/var/lib/ralo/display.sh")};
};

} // namespace

TEST_P(WrittenFiles, OfTheDisplay) {
    EXPECT_EQ(setdispconf("1920x1080"), 0);
    EXPECT_EQ(read_file("/var/lib/ralo/res"), "1920x1080\n");
    expect_golden("display/minimal.conf", read_file("/etc/X11/xorg.conf"));
}

TEST_P(WrittenFiles, OfTheWiredNetwork) {
    char params[] = "conf=1&ip=192.168.1.20&mask=255.255.255.0&gateway=192.168.1.1&"
                    "dns1=192.168.1.1&dns2=192.168.1.2\n";
    EXPECT_EQ(qvsetwiredconf(params), 0);
    expect_golden("network/ifcfg_static.txt", read_file(std::string(scripts) + "eth0"));
    expect_golden("network/network.txt", read_file("/etc/sysconfig/network"));
    expect_golden("network/resolv_conf.txt", read_file("/etc/resolv.conf"));
    expect_golden("network/resolv_conf.txt", read_file("/root/resolv.conf"));
    EXPECT_EQ(read_file("/tmp/abcd-eth0"), "192.168.1.1\n");
}

TEST_P(WrittenFiles, OfTheWirelessNetwork) {
    write_file(std::string(scripts) + "Office", "ESSID=Office\nBOOTPROTO=dhcp\nDNS1=1.1.1.1\n");
    char params[] = "ssid=4f6666696365&conf=1&ip=10.0.0.2&mask=255.0.0.0&gateway=10.0.0.1&"
                    "dns1=a\\nb\\c&dns2=it's\n";
    qvsetwirelessconf(params);
    EXPECT_EQ(read_file(std::string(scripts) + "Office"),
              "ESSID=Office\nBOOTPROTO=static\nKEY_MGMT=WPA-PSK\nIPADDR=10.0.0.2\n"
              "GATEWAY=10.0.0.1\nNETMASK=255.0.0.0\nDNS1=anbc\nDNS2='it'\\''s'\n");
    expect_golden("network/wpa_supplicant_conf.txt", read_file("/etc/wpa_supplicant.conf"));
}

TEST_P(WrittenFiles, OfTheSystem) {
    char time[] = "useNTP=on&ntpHost=pool.example&region=Asia&city=Tokyo";
    qvsetdatetime(time);
    EXPECT_EQ(read_file("/etc/default/ntpdate"),
              "# Configuration script used by ntpdate-sync script\n\n"
              "NTPSERVERS=\"pool.example\"\n\n"
              "# Set to \"yes\" to write time to hardware clock on success\n"
              "UPDATE_HWCLOCK=\"no\"\n\n");
    EXPECT_EQ(read_file("/etc/timezone"), "Asia/Tokyo\n");
    char name[] = "reception";
    qvsethostname(name);
    EXPECT_EQ(read_file("/etc/hostname"), "reception\n");
    // An option to one shell's echo, and to the other's a text.
    char option[] = "-e";
    qvsethostname(option);
    EXPECT_EQ(read_file("/etc/hostname"), "reception\n");
}

TEST_P(WrittenFiles, OfAnOutcome) {
    StandIn xwininfo("xwininfo");
    xwininfo.prints("     0x1 \"FreeRDP\": (\"xfreerdp\" \"xfreerdp\")\n");
    clients::watch_for_outcome("xfreerdp");
    EXPECT_EQ(read_file("/usr/local/vpclient/config/clientstatus"), "0x00000000 connect success\n");
}

INSTANTIATE_TEST_SUITE_P(UnderEachShell, WrittenFiles, testing::Values("/bin/bash", "/bin/dash"),
                         [](const auto& shell) { return std::string(shell.param).substr(5); });

} // namespace qvtc::test
