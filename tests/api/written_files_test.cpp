// Every file that the library has a shell write, or a shell read, under both shells that a
// terminal may have: the files are the same.

#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <json-c/json.h>

#include "audio/exports.hpp"
#include "clients/watched_terminal.hpp"
#include "clients/watcher.hpp"
#include "connections/documents.hpp"
#include "display/exports.hpp"
#include "qvtcapi/qvtcapi.h"
#include "support/passed_on_os.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

constexpr const char* scripts = "/etc/sysconfig/network-scripts/ifcfg-";

class WrittenFiles : public FreshTerminal, public testing::WithParamInterface<const char*> {
  protected:
    WrittenFiles() { setenv("QVTC_SHELL", GetParam(), 1); }
    ~WrittenFiles() override { unsetenv("QVTC_SHELL"); }

    /// Programs that a call would wait for, or that would touch more than files.
    std::array<StandIn, 17> programs_ = {StandIn("nmcli"),
                                         StandIn("systemctl"),
                                         StandIn("dhclient"),
                                         StandIn("ifup"),
                                         StandIn("ifdown"),
                                         StandIn("date"),
                                         StandIn("ntpdate-sync"),
                                         StandIn("hwclock"),
                                         StandIn("clock"),
                                         StandIn("killall"),
                                         StandIn("aplay"),
                                         StandIn("amixer"),
                                         StandIn("pacmd"),
                                         StandIn("/usr/bin/pulseaudio"),
                                         StandIn("/usr/bin/set_default_sink"),
                                         StandIn("/etc/init.d/networking"),
                                         StandIn("/var/lib/ralo/display.sh")};
};

/// The system without its waits: what would run on a thread runs at once.
class WithoutWaits final : public PassedOnOs {
    std::time_t now() override { return 1'763'700'000; }
    void sleep(unsigned) override {}
    bool start_thread(std::function<void()> body) override {
        body();
        return true;
    }
};

constexpr const char* marker = "[1763700000]start to connect...";

/// A connection whose client takes its leave, and what is then in its log.
struct Launch {
    unsigned id;
    const char* item;
    const char* client;
    const char* log;
    bool marked; ///< the log begins with the start marker
};
constexpr Launch launches[] = {
    {35, "rdpItem_id_35", "xfreerdp", "/home/root/freerdp.log", true},
    {70, "spiceItem_id_70", "remote-viewer", "/home/root/spicec.log", true},
    {230, "vncItem_id_230", "vncviewer", "/home/root/vnc.log", false}, // its marker is in SPICE's
    {290, "firefox_id_290", "firefox", "/home/root/firefox.log", true},
};

std::string status_of(unsigned id) {
    json_object* const object = qvgetclientstatus(id);
    std::string status = json_object_get_string(json_object_object_get(object, "status"));
    json_object_put(object);
    return status;
}

} // namespace

TEST_P(WrittenFiles, OfTheDisplay) {
    EXPECT_EQ(setdispconf("1920x1080"), 0);
    EXPECT_EQ(read_file("/var/lib/ralo/res"), "1920x1080\n");
    expect_golden("display/minimal.conf", read_file("/etc/X11/xorg.conf"));
    write_file("/etc/X11/xorg.conf", "former\n");
    savedispconf_bak("1");
    EXPECT_EQ(read_file("/tmp/backup_xorg.conf"), "former\n");
}

TEST_P(WrittenFiles, OfTheScreens) {
    write_file("/etc/xdg/openbox/rc.xml.clone", "clone\n");
    write_file("/etc/xdg/openbox/rc.xml.extend", "extend\n");
    setdisplaymode("displayMode=extendverticalscreen");
    EXPECT_EQ(read_file("/etc/xdg/openbox/rc.xml"), "extend\n");
    EXPECT_EQ(read_file("/home/root/hdmi"), "");
    EXPECT_FALSE(file_exists("/etc/X11/clone"));
    setdisplaymode("displayMode=clone");
    EXPECT_EQ(read_file("/etc/xdg/openbox/rc.xml"), "clone\n");
    EXPECT_EQ(read_file("/etc/X11/clone"), "");
    EXPECT_FALSE(file_exists("/home/root/hdmi"));
    setdisplayorder("displayOrder=Reverse");
    EXPECT_EQ(read_file("/etc/X11/reverse"), "");
}

TEST_P(WrittenFiles, OfTheSound) {
    write_file("/etc/pulse/default.pa", "#load-module module-alsa-sink device=hw:0\n"
                                        "#load-module module-alsa-source device=hw:0\n");
    volumeinit();
    EXPECT_EQ(read_file("/etc/pulse/default.pa"), "load-module module-alsa-sink \n"
                                                  "load-module module-alsa-source device=hw:0\n");
    expect_golden("audio/asound_0.conf", read_file("/etc/asound.conf"));
    set_sound_config(12);
    expect_golden("audio/asound_12.conf", read_file("/etc/asound.conf"));
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
    char dhcp[] = "conf=0";
    EXPECT_EQ(qvsetwiredconf(dhcp), 0);
    expect_golden("network/ifcfg_dhcp.txt", read_file(std::string(scripts) + "eth0"));
}

TEST_P(WrittenFiles, OfTheNetworksRepair) {
    write_file("/etc/sysconfig/network", "GATEWAY=10.0.0.1\n");
    EXPECT_EQ(qvdiagnsys(), 0);
    EXPECT_EQ(read_file("/etc/wpa_supplicant.conf"),
              "# allow frontend (e.g., wpa_cli) to be used by all users in 'wheel' group\n"
              "ctrl_interface=/var/run/wpa_supplicant\nctrl_interface_group=0\n"
              "update_config=1\n\n");
    EXPECT_EQ(read_file("/etc/sysconfig/network"), "\n");
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
    EXPECT_EQ(std::filesystem::read_symlink("/etc/localtime"),
              "/usr/share/zoneinfo/posix/Asia/Tokyo");
    char name[] = "reception";
    qvsethostname(name);
    EXPECT_EQ(read_file("/etc/hostname"), "reception\n");
    // An option to one shell's echo, and to the other's a text.
    char option[] = "-e";
    qvsethostname(option);
    EXPECT_EQ(read_file("/etc/hostname"), "reception\n");
}

TEST_P(WrittenFiles, OfTheLanguage) {
    const std::string theme = "/usr/share/plymouth/themes/darwin/";
    write_file(theme + "background-zh_CN.png", "Chinese");
    write_file(theme + "logo.png", "former");
    char language[] = "language=zh_CN";
    EXPECT_EQ(qvsetlanguage(language), 0);
    EXPECT_EQ(read_file(theme + "logo.png"), "Chinese");
}

TEST_P(WrittenFiles, OfTheStart) {
    const StandIn xset("xset");
    const std::string pictures = "/usr/local/vpclient/bin/image/";
    write_file(pictures + "background-old.png", "old");
    write_file("/var/lib/ralo/image/base/background-new.png", "new");
    write_file("/home/root/freerdp.log", std::string(600'000, 'x'));
    EXPECT_EQ(qvtcinitapi(), 0);
    EXPECT_FALSE(file_exists(pictures + "background-old.png"));
    EXPECT_EQ(read_file(pictures + "background-new.png"), "new");
    EXPECT_EQ(read_file("/home/root/freerdp.log.old"), std::string(600'000, 'x'));
    EXPECT_FALSE(file_exists("/home/root/freerdp.log"));
}

TEST_P(WrittenFiles, OfALaunch) {
    const WithoutWaits system;
    const StandIn xwininfo("xwininfo");
    Items items;
    for (const Launch& each : launches)
        items.push_back(record_item(
            each.item, {{"id", std::to_string(each.id)}, {"serverAddress", "10.0.0.5"}}));
    store_items(items);
    for (const Launch& each : launches) {
        StandIn client(each.client);
        client.prints("Bye\n");
        EXPECT_EQ(qvlaunchclient(each.id), 0) << each.client;
        const std::string text = each.marked ? std::string(marker) + "\nBye\n" : "Bye\n";
        EXPECT_TRUE(wait_until(
            [&] { return file_exists(each.log) && read_file(each.log).ends_with("Bye\n"); }));
        EXPECT_EQ(read_file(each.log), text) << each.client;
    }
    // SPICE's log is where VNC's marker goes too.
    EXPECT_EQ(lines_of(read_file("/home/root/spicec.log")), (Texts{marker, "Bye", marker}));
}

TEST_P(WrittenFiles, OfAnOutcome) {
    const WithoutWaits system;
    StandIn xwininfo("xwininfo");
    clients::watch_for_outcome("xfreerdp");
    EXPECT_EQ(read_file(status_file), "0x00000001 connect failed\n");
    clients::watch_rdp_window("xfreerdp");
    EXPECT_EQ(read_file(status_file), "\n");
    xwininfo.prints("     0x1 \"FreeRDP\": (\"xfreerdp\" \"xfreerdp\")\n");
    clients::watch_for_outcome("xfreerdp");
    EXPECT_EQ(read_file(status_file), "0x00000000 connect success\n");
}

TEST_P(WrittenFiles, OfAClientsLogAsItIsAskedFor) {
    store_items({{"configItem", {{"com.valmora.thinclient.para_10_0", marker}}},
                 record_item("spiceItem_id_70", {{"id", "70"}, {"serverAddress", "10.0.0.5"}})});
    write_file("/home/root/spicec.log",
               "main channel: opened\n" + std::string(marker) + "\nC:\\new\001\n");
    EXPECT_EQ(status_of(70), "0");
    write_file("/home/root/spicec.log", std::string(marker) + "\nmain \001channel: opened\n");
    EXPECT_EQ(status_of(70), "1");
    EXPECT_FALSE(file_exists("/tmp/tmp.log"));
}

INSTANTIATE_TEST_SUITE_P(UnderEachShell, WrittenFiles, testing::Values("/bin/bash", "/bin/dash"),
                         [](const auto& shell) { return std::string(shell.param).substr(5); });

} // namespace qvtc::test
