// A terminal that was used, and what a factory reset leaves of it; all through the public header,
// on a real screen.
#include "desktop.hpp"
#include "support/support.hpp"

#include <json-c/json.h>
#include <qvtcapi/factory_defaults.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr unsigned types[] = {QVTC_TYPE_BROKER, QVTC_TYPE_RDP,    QVTC_TYPE_SPICE,
                              QVTC_TYPE_OVIRT,  QVTC_TYPE_CITRIX, QVTC_TYPE_HORIZON,
                              QVTC_TYPE_VNC,    QVTC_TYPE_HDP,    QVTC_TYPE_WEB};

/// A getter's object as text; "null" for none.
std::string text_of(json_object* object) {
    if (object == nullptr) return "null";
    std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

std::size_t connections_of(unsigned type) {
    json_object* object = qvgetconnections(type);
    const std::size_t count = json_object_array_length(json_object_object_get(object, "list"));
    json_object_put(object);
    return count;
}

class FactoryResetJourney : public Journey {
  protected:
    FactoryResetJourney() : Journey("--two") {}

    void SetUp() override {
        Journey::SetUp();
        write_file("/etc/X11/xorg.conf", "");
        write_file("/etc/xdg/openbox/rc.xml.clone", "");
        write_file("/etc/xdg/openbox/rc.xml.extend", "");
    }

    /// Changes everything that a person can change.
    static void use_the_terminal() {
        for (const unsigned type : types) {
            for (int i = 0; i < 3; ++i) {
                char params[] = "name=n&serverAddress=10.0.0.5";
                qvsetconnections(type, params);
            }
        }
        qvsetconnectdelay("delay=20");
        qvsetdemomode(1);
        qvsetuserportal("useUserportal=off");
        qvsetidle("monitorPowerSave=on&monitorPowerSaveMins=10");
        qvsetlanguage("language=zh_CN");
        qvsetvmwaretoolbar(1);
        qvsetvolume("playVolume=30&micVolume=40");
        qvsetwifionoff("useWifi=on");
        qvsetmonitor("brightness=60");
        qvsetdisplaymode("displayMode=extend");
        qvsethostname("reception");
        qvsetmgrpwd("password=secret");
        qvsetdatetime("useNTP=off&region=Asia&city=Tokyo");
        qvsetwiredconf("conf=1&ip=10.0.0.20&mask=255.255.255.0&gateway=10.0.0.1&dns1=10.0.0.2");
    }

    StandIn reboot_{"reboot"};
    StandIn nmcli_{"nmcli"};
    StandIn amixer_{"amixer"};
    StandIn aplay_{"aplay"};
    StandIn pulseaudio_{"/usr/bin/pulseaudio"};
    StandIn pacmd_{"pacmd"};
    StandIn ifup_{"ifup"};
    StandIn ifdown_{"ifdown"};
    StandIn dmidecode_{"dmidecode"};
};

TEST_F(FactoryResetJourney, LeavesTheFactoryStateAndRestarts) {
    use_the_terminal();
    ASSERT_EQ(text_of(qvconnectdelay()), R"({"delay":"20"})");
    ASSERT_EQ(text_of(qvgetmgrpwd()), R"({"password":"secret"})");
    ASSERT_EQ(connections_of(QVTC_TYPE_RDP), 3U);
    ASSERT_TRUE(reboot_.calls().empty());
    forget_commands();

    ASSERT_EQ(qvresetsysconf(), 0);

    EXPECT_EQ(recorded_commands().back(), "reboot > /dev/null 2>&1");
    EXPECT_EQ(reboot_.calls().size(), 1U);
    for (const unsigned type : types)
        EXPECT_EQ(connections_of(type), type == QVTC_TYPE_VNC ? 3U : 0U) << type;
    EXPECT_EQ(text_of(qvconnectdelay()), R"({"delay":"3"})");
    EXPECT_EQ(qvdemomode(), 0);
    EXPECT_EQ(text_of(qvgetuserportal()), R"({"useUserportal":"on"})");
    EXPECT_EQ(text_of(qvgetidle()), R"({"monitorPowerSave":"off","monitorPowerSaveMins":"5"})");
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":"en_US"})");
    EXPECT_EQ(text_of(qvgetvmwaretoolbar()), R"({"toolbar":"off"})");
    EXPECT_EQ(text_of(qvgetwifionoff()), R"({"useWifi":"off"})");
    EXPECT_EQ(text_of(qvgetdispconf()), R"({"res":"10"})");
    EXPECT_EQ(qvisdispchanged(), 0);
    EXPECT_EQ(text_of(qvdisplaymode()), R"({"displayMode":"clone"})");
    EXPECT_EQ(text_of(qvgetmgrpwd()), R"({"password":""})");
    char host_name[128];
    qvgethostname(host_name);
    EXPECT_STREQ(host_name, "reception"); // without an identity the name stays
    EXPECT_EQ(read_file("/etc/sysconfig/network-scripts/ifcfg-eth0"),
              "\nTYPE=Ethernet\nNAME=eth0\nDEVICE=eth0\nONBOOT=yes\nBOOTPROTO=dhcp\n");
    // What stays: the stored wired addressing, the gateway, name servers, the zone.
    EXPECT_NE(read_file("/home/root/vpclientData.xml").find("'ip':'10.0.0.20'"), std::string::npos);
    EXPECT_NE(read_file("/etc/sysconfig/network").find("GATEWAY=10.0.0.1"), std::string::npos);
    EXPECT_EQ(read_file("/etc/timezone"), "Asia/Tokyo\n");
}

TEST_F(FactoryResetJourney, TheNextStartAppliesIt) {
    use_the_terminal();
    ASSERT_NE(output_of("xrandr --verbose | grep -c 'Brightness: 0.60'").text, "0\n");
    ASSERT_EQ(qvresetsysconf(), 0);
    ASSERT_EQ(qvtcinitapi(), 0);
    EXPECT_EQ(output_of("xrandr --verbose | grep -c 'Brightness: 1.0'").text, "2\n");
    EXPECT_FALSE(runs("x11vnc"));
}

} // namespace
} // namespace qvtc::test
