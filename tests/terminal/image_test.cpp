// The programs of a terminal's image that other systems lack: terminal/stand-ins.

#include "support/support.hpp"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

using Calls = StandIn::Calls;

std::string output_of(const std::string& command) {
    return capture_stdout([&] { (void)!std::system(command.c_str()); });
}

} // namespace

TEST(Image, StoresNumberedTexts) {
    EXPECT_EQ(output_of("qvplugin 1 90 YWJj; qvplugin 1 91 ; qvplugin 0 90; qvplugin 0 92"),
              "YWJj");
    EXPECT_EQ(output_of("qvplugin 0 91; echo $?; qvplugin 0 ../90; echo $?"), "0\n2\n");
}

TEST(Image, NotesCallsThatNeedTheHardware) {
    EXPECT_EQ(output_of("/usr/bin/resetusb.sh; /usr/bin/set_default_sink 2"), "");
    EXPECT_EQ(read_file("/var/log/resetusb.sh.log"), "\n");
    EXPECT_EQ(read_file("/var/log/set_default_sink.log"), "2\n");
}

TEST(Image, AppliesTheDisplaySettings) {
    StandIn xrandr("xrandr");
    xrandr.prints("Screen 0\nVGA1 connected 1x1+0+0\nDP1 disconnected\nHDMI1 connected\n");
    const std::string script = "/var/lib/ralo/display.sh >/dev/null";
    output_of(script);
    write_file("/var/lib/ralo/res", "1280x1024\n");
    write_file("/etc/X11/reverse", "");
    output_of(script);
    write_file("/etc/X11/clone", "");
    output_of(script);
    EXPECT_EQ(xrandr.calls(), (Calls{{},
                                     {"--output", "VGA1", "--auto", "--output", "HDMI1", "--auto",
                                      "--right-of", "VGA1"},
                                     {},
                                     {"--output", "HDMI1", "--mode", "1280x1024", "--output",
                                      "VGA1", "--mode", "1280x1024", "--right-of", "HDMI1"},
                                     {},
                                     {"--output", "HDMI1", "--mode", "1280x1024", "--output",
                                      "VGA1", "--mode", "1280x1024", "--same-as", "HDMI1"}}));
}

TEST(Image, BringsInterfacesUpAndDown) {
    QVTC_NEED_PROGRAM("ifconfig");
    ASSERT_EQ(std::system("ip link add eth0 type veth peer name far0 && ip link set far0 up"), 0);
    write_file("/etc/sysconfig/network", "GATEWAY=192.168.7.1\n");
    write_file("/etc/sysconfig/network-scripts/ifcfg-eth0",
               "DEVICE=eth0\nBOOTPROTO=static\nIPADDR=192.168.7.5\nNETMASK=255.255.255.0\n");
    const std::string facts = "ip -4 -o address show dev eth0 | awk '{ print $4 }'; "
                              "ip route show default | awk '{ print $3, $5 }'";
    EXPECT_EQ(output_of("ifup eth0; " + facts), "192.168.7.5/24\n192.168.7.1 eth0\n");
    EXPECT_EQ(output_of("ifdown eth0; " + facts), "");
    EXPECT_EQ(output_of("systemctl restart network; " + facts),
              "192.168.7.5/24\n192.168.7.1 eth0\n");
    EXPECT_EQ(output_of("ifup eth9 2>&1; echo $?"), "ifup: configuration for eth9 not found.\n1\n");
}

TEST(Image, AsksTheTimeServersItIsTold) {
    const StandIn ntpdate("ntpdate");
    output_of("ntpdate-sync");
    write_file("/etc/default/ntpdate", "NTPSERVERS=\"one.test two.test\"\n");
    output_of("ntpdate-sync");
    EXPECT_EQ(ntpdate.calls(), (Calls{{"one.test", "two.test"}}));
    const StandIn hwclock("hwclock");
    output_of("clock -w");
    EXPECT_EQ(hwclock.calls(), (Calls{{"-w"}}));
}

TEST(Image, SpeaksAsTheTerminalsNetworkManager) {
    StandIn nmcli("/usr/bin/nmcli");
    nmcli.prints("IN-USE\n");
    EXPECT_EQ(output_of("nmcli dev wifi"), "IN-USE\n");
    output_of("nmcli d wifi connect 'My AP' password 'a b' wlan0; "
              "nmcli d wifi connect Open password '' wlan0; nmcli r wifi off");
    EXPECT_EQ(nmcli.calls(),
              (Calls{{"-f", "IN-USE,SSID,MODE,CHAN,RATE,SIGNAL,BARS,SECURITY", "dev", "wifi"},
                     {"d", "wifi", "connect", "My AP", "password", "a b", "ifname", "wlan0"},
                     {"d", "wifi", "connect", "Open", "ifname", "wlan0"},
                     {"r", "wifi", "off"}}));
}

} // namespace qvtc::test
