#include "system/factory_reset.hpp"

#include "connections/documents.hpp"
#include "core/descriptor.hpp"
#include "store/document.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"

#include <array>
#include <gtest/gtest.h>
#include <map>
#include <qvtcapi/factory_defaults.h>
#include <sys/inotify.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;
namespace keys = store::keys;

const std::string factory_interface(const std::string& device) {
    return "\nTYPE=Ethernet\nNAME=" + device + "\nDEVICE=" + device +
           "\nONBOOT=yes\nBOOTPROTO=dhcp\n";
}

/// A terminal whose programs only note their calls.
class FactoryReset : public test::FreshTerminal {
  protected:
    FactoryReset() {
        test::write_file("/etc/xdg/openbox/rc.xml.clone", "clone");
        std::filesystem::create_directories("/var/lib/ralo");
        test::write_file("/etc/X11/xorg.conf", "former");
    }

    test::StandIn display_{"/var/lib/ralo/display.sh"};
    test::StandIn nmcli_{"nmcli"};
    test::StandIn aplay_{"aplay"};
    test::StandIn reboot_{"reboot"};
    test::StandIn killall_{"killall"};
    test::StandIn pulseaudio_{"/usr/bin/pulseaudio"};
    test::StandIn pacmd_{"pacmd"};
};

std::string setting(const char* key) { return store::setting(key); }

/// What happened to the settings document while it lived.
class DocumentTraffic {
  public:
    DocumentTraffic() : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        inotify_add_watch(events_.get(), "/home/root", IN_MOVED_TO | IN_OPEN);
    }

    struct Count {
        int loads = 0;
        int saves = 0;
    };
    Count count() const {
        Count count;
        alignas(inotify_event) std::array<char, 65536> bytes;
        for (;;) {
            const ssize_t size = read(events_.get(), bytes.data(), bytes.size());
            if (size <= 0) return count;
            for (ssize_t at = 0; at < size;) {
                const auto* event = reinterpret_cast<const inotify_event*>(bytes.data() + at);
                if (event->len > 0 && std::string(event->name) == "vpclientData.xml")
                    ++((event->mask & IN_OPEN) != 0 ? count.loads : count.saves);
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        }
    }

  private:
    Descriptor events_;
};

/// One connection in each slot of each block, types or not.
test::Items one_connection_in_every_slot() {
    test::Items items;
    const std::pair<const char*, int> blocks[] = {
        {"velopaneItem", 0}, {"rdpItem", 32},     {"spiceItem", 64},
        {"ovirtItem", 96},   {"citrixItem", 128}, {"vmwareItem", 160},
        {"vncItem", 224},    {"hdpItem", 256},    {"firefox", 288}};
    for (const auto& [prefix, first] : blocks) {
        for (int id = first; id < first + 32; ++id) {
            items.push_back({prefix + ("_id_" + std::to_string(id)),
                             {{"id", std::to_string(id)}, {"name", "n"}}});
        }
    }
    items.push_back({"someItem_id_192", {{"id", "192"}}});
    return items;
}

} // namespace

TEST_F(FactoryReset, RunsItsStepsInOrder) {
    aplay_.prints("card 1: PCH [HDA Intel PCH], device 0: ALC256 Analog [ALC256 Analog]\n");
    store::store_setting(keys::device_identity, "123456");
    test::forget_commands();

    reset_to_factory_settings();

    EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "auto\n");
    const Texts automatic = {"/var/lib/ralo/display.sh >/dev/null 2>&1"};
    Texts expected = automatic;
    auto then = [&](const Texts& more) {
        expected.insert(expected.end(), more.begin(), more.end());
    };
    then({"nmcli connect|grep wlan|awk '{print $2}' |xargs nmcli c delet", "rm -rf /root/tclog.txt",
          "echo \"TC123456\" > /etc/hostname"});
    then(automatic);
    then(
        {"rm -rf /root/*.log", "rm -rf /home/root/*.log", "rm -rf /root/*.txt",
         "aplay -l|grep card|grep -v USB|awk 'NR==1'|awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}",
         "cat /proc/cpuinfo |grep \"model name\" |sed -n 1p", "killall xfreerdp  >/dev/null 2>&1",
         "killall pulseaudio >/dev/null 2>&1", "killall pulseaudio >/dev/null 2>&1",
         "rm -rf /etc/asound.conf;mv /etc/asound.conf.bak /etc/asound.conf",
         "/usr/bin/pulseaudio --start", "pacmd list-sources", "touch /etc/X11/clone",
         "rm -rf /etc/xdg/openbox/rc.xml",
         "cp /etc/xdg/openbox/rc.xml.clone /etc/xdg/openbox/rc.xml", "rm -rf /home/root/hdmi"});
    then(automatic);
    then({"reboot > /dev/null 2>&1"});
    EXPECT_EQ(test::recorded_commands(), expected);
    EXPECT_EQ(reboot_.calls().size(), 1U);
    EXPECT_NE(test::read_file("/etc/asound.conf").find("pcm \"hw:1,0\""), std::string::npos);
}

TEST_F(FactoryReset, LeavesTheDocumentedDefaultsAndSurvivors) {
    for (const qvtc_factory_default& each : qvtc_factory_defaults)
        store::store_setting(each.key, "changed");
    const std::map<const char*, std::string> kept = {
        {keys::device_identity, "123456"},
        {keys::default_route, "route add default gw 10.0.0.1 dev eth1 >/dev/null 2>&1"},
        {keys::date_and_time, "useNTP=on&ntpHost=h"},
        {"networkconf-eth0", "{'conf':'1','ip':'10.0.0.2'}"},
        {"networkconf-eth1", "{'conf':'0'}"},
        {"something_else", "kept"}};
    for (const auto& [key, value] : kept) store::store_setting(key, value);
    store::store_setting(keys::host_name, "reception");
    store::store_setting(keys::manager_password, "secret");
    test::write_file("/etc/sysconfig/network-scripts/ifcfg-eth0", "BOOTPROTO=static\n");
    test::write_file("/etc/sysconfig/network", "GATEWAY=10.0.0.1\n");
    test::write_file("/etc/resolv.conf", "nameserver 10.0.0.1\n");

    reset_to_factory_settings();

    for (const qvtc_factory_default& each : qvtc_factory_defaults)
        EXPECT_EQ(setting(each.key), store::value_form(each.value)) << each.key;
    for (const auto& [key, value] : kept) EXPECT_EQ(setting(key), value) << key;
    EXPECT_EQ(setting(keys::host_name), "TC123456");
    EXPECT_EQ(setting(keys::manager_password), "");
    EXPECT_EQ(test::read_file("/etc/hostname"), "TC123456\n");
    EXPECT_EQ(test::read_file("/etc/sysconfig/network-scripts/ifcfg-eth0"),
              factory_interface("eth0"));
    EXPECT_EQ(test::read_file("/etc/sysconfig/network-scripts/ifcfg-eth1"),
              factory_interface("eth1"));
    EXPECT_EQ(test::read_file("/etc/sysconfig/network"), "GATEWAY=10.0.0.1\n");
    EXPECT_EQ(test::read_file("/etc/resolv.conf"), "nameserver 10.0.0.1\n");
    EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "auto\n");
    EXPECT_TRUE(test::file_exists("/etc/X11/clone"));
    EXPECT_EQ(test::read_file("/etc/xdg/openbox/rc.xml"), "clone");
}

TEST_F(FactoryReset, ForgetsConnectionsButThoseFrom192To255) {
    test::store_items(one_connection_in_every_slot());

    reset_to_factory_settings();

    const store::Document document = store::Document::load();
    for (const auto& [item, fields] : one_connection_in_every_slot()) {
        const int id = std::stoi(item.substr(item.rfind('_') + 1));
        EXPECT_EQ(document.get(item, "id").has_value(), id >= 192 && id <= 255) << item;
    }
}

TEST_F(FactoryReset, DeletesTheLogsAndNothingElse) {
    for (const char* const path : {"/root/a.log", "/root/a.txt", "/root/tclog.txt",
                                   "/home/root/freerdp.log", "/home/root/a.txt", "/root/a.conf"})
        test::write_file(path, "x");
    reset_to_factory_settings();
    EXPECT_FALSE(test::file_exists("/root/a.log"));
    EXPECT_FALSE(test::file_exists("/root/a.txt"));
    EXPECT_FALSE(test::file_exists("/root/tclog.txt"));
    EXPECT_FALSE(test::file_exists("/home/root/freerdp.log"));
    EXPECT_TRUE(test::file_exists("/home/root/a.txt"));
    EXPECT_TRUE(test::file_exists("/root/a.conf"));
}

TEST_F(FactoryReset, RemovesWhatKilledWritersHaveLeft) {
    const std::string left[] = {"/home/root/.vpclientData.xml.qvtc-draft",
                                "/home/root/.vpclientData.xml.qvtc-kept",
                                "/run/.home!root!vpclientData.xml.qvtc-draft",
                                "/etc/.resolv.conf.qvtc-draft",
                                "/etc/X11/.xorg.conf.qvtc-draft",
                                "/etc/sysconfig/.network.qvtc-draft",
                                "/etc/sysconfig/network-scripts/.ifcfg-Office.qvtc-draft",
                                "/etc/default/.ntpdate.qvtc-draft"};
    for (const std::string& path : left) test::write_file(path, "password");
    // A copy that is kept is the document itself, until it has been written out.
    test::write_file("/home/root/.vpclientData.xml.qvtc-kept", "<ThinClientConfig/>");
    reset_to_factory_settings();
    for (const std::string& path : left) EXPECT_FALSE(test::file_exists(path)) << path;
}

TEST_F(FactoryReset, AnIdentityOfOneCharacterNamesNoHost) {
    for (const char* const identity : {"", "1"}) {
        store::store_setting(keys::device_identity, identity);
        store::store_setting(keys::host_name, "reception");
        reset_to_factory_settings();
        EXPECT_EQ(setting(keys::host_name), "reception") << identity;
    }
}

TEST_F(FactoryReset, OneModelLosesItsHdmiSound) {
    test::write_file("/home/root/enable_hdmi_audio", "");
    test::write_file("/etc/pulse/default.pa",
                     "load-module module-alsa-sink device=hw:0,3\nother\n");
    reset_to_factory_settings();
    EXPECT_TRUE(test::file_exists("/home/root/enable_hdmi_audio"));
    EXPECT_EQ(test::read_file("/etc/pulse/default.pa"),
              "load-module module-alsa-sink device=hw:0,3\nother\n");

    test::StandIn cat("cat"); // what the processor is asked with
    cat.prints("model name\t: Intel(R) Celeron(R) N5095 @ 2.00GHz\n");
    reset_to_factory_settings();
    EXPECT_FALSE(test::file_exists("/home/root/enable_hdmi_audio"));
    EXPECT_EQ(test::read_file("/etc/pulse/default.pa"),
              "load-module module-alsa-sink device=dmixer mmap=0\nother\n");
}

TEST_F(FactoryReset, LoadsAndSavesTheDocumentAHandfulOfTimes) {
    test::store_items(one_connection_in_every_slot());
    store::store_setting(keys::device_identity, "123456");
    const DocumentTraffic traffic;
    reset_to_factory_settings();
    const DocumentTraffic::Count count = traffic.count();
    EXPECT_GE(count.saves, 1);
    EXPECT_LE(count.saves, 6);
    EXPECT_GE(count.loads, 1);
    EXPECT_LE(count.loads, 10);
}

TEST_F(FactoryReset, GoesOnWhereTheDocumentCannotBeWritten) {
    std::filesystem::create_directory("/home/root/vpclientData.xml");
    reset_to_factory_settings();
    EXPECT_EQ(reboot_.calls().size(), 1U);
    EXPECT_EQ(test::read_file("/etc/sysconfig/network-scripts/ifcfg-eth0"),
              factory_interface("eth0"));
}

} // namespace qvtc::system
