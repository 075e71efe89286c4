// Values that would like to be more than values, over every setter of displays, as the setter's
// argument and as what a setting already holds.

#include "display/exports.hpp"
#include "display_terminal.hpp"
#include "store/document.hpp"

#include <gtest/gtest.h>
#include <set>

namespace qvtc::test {

namespace {

/// All commands that displays give to the shell without an output's name in them, but for the
/// seconds of power saving.
const std::set<std::string>& known_commands() {
    static const std::set<std::string> known = [] {
        std::set<std::string> commands = {
            run_script,
            "touch /etc/X11/clone",
            "rm -rf /etc/X11/clone",
            "rm -rf /etc/xdg/openbox/rc.xml",
            "cp /etc/xdg/openbox/rc.xml.clone /etc/xdg/openbox/rc.xml",
            "cp /etc/xdg/openbox/rc.xml.extend /etc/xdg/openbox/rc.xml",
            "touch /home/root/hdmi",
            "rm -rf /home/root/hdmi",
            "touch /etc/X11/reverse",
            "rm -f /etc/X11/reverse",
            "dmidecode -s system-product-name",
            "cp -dpR /etc/X11/xorg.conf /tmp/backup_xorg.conf",
            "lspci |grep VGA",
            "cat /proc/cpuinfo |grep \"model name\" |sed -n 1p",
            "DISPLAY=:0.0 xrandr |grep -w connected|awk '{print$1}'",
            "DISPLAY=:0.0 xrandr --output VGA1 --brightness 0.200000",
            "DISPLAY=:0.0 xrandr --output VGA1 --brightness 1.000000",
            "xset dpms 0 0 0 >/dev/null 2>&1",
            "xset s off >/dev/null 2>&1",
            "xset dpms force on >/dev/null 2>&1",
        };
        return commands;
    }();
    return known;
}

std::vector<std::string> hostile_values() {
    std::vector<std::string> values = {
        "",
        "'",
        "\"",
        "it's",
        "a\"b",
        "`touch /tmp/owned`",
        "$(touch /tmp/owned)",
        "'; touch /tmp/owned; '",
        "\"; touch /tmp/owned; \"",
        "x\ntouch /tmp/owned\n",
        "x; touch /tmp/owned",
        "x && touch /tmp/owned",
        "x | touch /tmp/owned",
        "x > /tmp/owned",
        "../../../tmp/owned",
        "*",
        "%s%n%d",
        "\\",
        "\\\\",
        "|",
        "%",
        "&",
        "=",
        "&&&&",
        "====",
        "<a>",
        "]]>",
        "&amp;",
        "{'a':'b'}",
        "\xff\xfe\x80",
        "\xc3",
        "\x01\x02\x1b[31m",
        "-1",
        "99999999999999999999",
        "-99999999999999999999",
        "1e999",
        "nan",
        "\xE4\xB8\xAD\xE6\x96\x87",
    };
    for (const std::size_t size : {255U, 256U, 1024U, 10239U, 10240U, 100000U}) {
        values.emplace_back(size, 'x');
    }
    values.emplace_back(10240, '9');
    values.emplace_back(100000, '\'');
    return values;
}

struct Setter {
    const char* key; ///< of the pair in which the value comes; null for the bare value
    int (*set)(const char*);
};

int reset_demo_mode(const char* value) { return qvsetdemomode(value[0]); }

constexpr Setter setters[] = {
    {"res", setdispconf},
    {"force", setdispconf},
    {nullptr, setdispconf},
    {nullptr, savedispconf},
    {nullptr, savedispconf_bak},
    {"displayMode", setdisplaymode},
    {"displayMode", qvsetdisplaymode},
    {nullptr, setdisplaymode},
    {"displayOrder", setdisplayorder},
    {"displayOrder", qvsetdisplayorder},
    {nullptr, qvsetdisplayorder},
    {"brightness", qvsetmonitor},
    {nullptr, qvsetmonitor},
    {"monitorPowerSave", qvsetidle},
    {"monitorPowerSave=on&monitorPowerSaveMins", qvsetidle},
    {nullptr, setidle},
    {"useUserportal", qvsetuserportal},
    {nullptr, setuserportal},
    {nullptr, reset_demo_mode},
};

class HostileDisplays : public DisplayTerminal {
  protected:
    HostileDisplays() {
        xrandr.prints("VGA1 connected 1x1\n");
        write_file("/etc/xdg/openbox/rc.xml.clone", "");
        write_file("/etc/xdg/openbox/rc.xml.extend", "");
        write_file("/etc/X11/xorg.conf", "");
        store_settings({{"kept", "kept"}});
        forget_commands();
    }
    ~HostileDisplays() override { EXPECT_FALSE(file_exists("/tmp/owned")); }

    /// Whatever came in: only commands that are known ran, and everything can still be read.
    static void expect_a_sound_terminal() {
        for (const std::string& command : recorded_commands()) {
            const bool seconds =
                command.starts_with("xset dpms 0 0 ") &&
                command.find_first_not_of("-0123456789", 14) == command.find(" >/dev/null 2>&1");
            ASSERT_TRUE(seconds || known_commands().contains(command)) << command;
        }
        forget_commands();
        ASSERT_EQ(store::Document::load().state(), store::Document::State::loaded);
        ASSERT_EQ(stored_setting("kept"), "kept");
        for (json_object* (*const getter)() :
             {qvgetdispconf, qvdisplaymode, qvgetdisplayorder, qvsplitverticallymode,
              qvgetuserportal, qvgetdisplist}) {
            ASSERT_NE(text_of(getter()), "null");
        }
        qvisdispchanged();
        qvdemomode();
        forget_commands();
    }

    const StandIn script{"/var/lib/ralo/display.sh"};
    const StandIn xset{"xset"};
    const StandIn lspci{"lspci"};
    const StandIn dmidecode{"dmidecode"};
    StandIn xrandr{"xrandr"};
};

} // namespace

TEST_F(HostileDisplays, NoSetterTakesAPairsValueForMore) {
    for (const Setter& setter : setters) {
        if (setter.key == nullptr) continue;
        for (const std::string& value : hostile_values()) {
            setter.set((setter.key + ("=" + value)).c_str());
            ASSERT_NO_FATAL_FAILURE(expect_a_sound_terminal())
                << setter.key << " " << value.substr(0, 50);
        }
    }
}

TEST_F(HostileDisplays, NoSetterTakesABareValueForMore) {
    for (const Setter& setter : setters) {
        if (setter.key != nullptr) continue;
        for (const std::string& value : hostile_values()) {
            setter.set(value.c_str());
            ASSERT_NO_FATAL_FAILURE(expect_a_sound_terminal()) << value.substr(0, 50);
        }
    }
}

TEST_F(HostileDisplays, NoStoredValueIsTakenForMore) {
    for (const std::string& value : hostile_values()) {
        capture_stderr([&] {
            store::change_document([&](store::Document& document) {
                for (const char* const key : {applied_key, requested_key, waits_key, brightness_key,
                                              portal_key, demo_key}) {
                    EXPECT_TRUE(document.set("configItem", key, value));
                }
                return document.set("configItem", power_saving_key,
                                    "monitorPowerSave=on&monitorPowerSaveMins=" + value);
            });
        });
        EXPECT_NE(text_of(qvgetidle()), "null");
        display_init();
        qvrestoredispconf();
        setdisplaymode("displayMode=clone");
        qvapplydispconf();
        setdispconf("1024x768");
        ASSERT_NO_FATAL_FAILURE(expect_a_sound_terminal()) << value.substr(0, 50);
    }
}

TEST_F(HostileDisplays, AStoredValueComesBackAsItIs) {
    for (const std::string& value : hostile_values()) {
        if (value.find_first_of("%|\x01\xff\xc3") != std::string::npos || value.empty()) continue;
        store::change_document([&](store::Document& document) {
            return document.set("configItem", requested_key, value);
        });
        const Json object(qvgetdispconf());
        ASSERT_EQ(json_object_get_string(json_object_object_get(object.get(), "res")), value);
    }
}

} // namespace qvtc::test
