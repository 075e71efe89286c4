// Every command of qvtcctl while the settings document cannot be read. The library reports all
// settings as unset then, and takes every change for stored.
#include "qvtcctl/command/command_line.hpp"
#include "qvtcctl/verb/settings_document.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <cstdlib>
#include <map>
#include <set>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

/// What a person would type after each command; one that is not here fails the test.
const std::map<std::string, std::string> arguments{
    {"connection list", ""},
    {"connection show", "32"},
    {"connection add", "rdp name=b serverAddress=10.0.0.6"},
    {"connection set", "32 name=b"},
    {"connection remove", "32"},
    {"connection import", "/tmp/backup.json"},
    {"connection export", ""},
    {"connection fields", "web"},
    {"connection types", ""},
    {"launch", "32"},
    {"status", "32"},
    {"cancel", ""},
    {"doctor", "32"},
    {"delay", "5"},
    {"display show", ""},
    {"display list", ""},
    {"display set", "1024x768 --yes"},
    {"display keep", ""},
    {"display revert", ""},
    {"display mode", "clone"},
    {"display order", ""},
    {"display brightness", "80"},
    {"display screens", ""},
    {"display refresh", "'{\"rate\": 60}'"},
    {"network show", ""},
    {"network set", "eth0 dhcp"},
    {"network wifi", "on"},
    {"network scan", ""},
    {"network join", "Office --open"},
    {"network wireless", "Office dhcp"},
    {"network route", "eth0"},
    {"volume", "--playback 60"},
    {"sound show", ""},
    {"sound configure", "1 --yes"},
    {"power idle", "on --minutes 10"},
    {"power reboot", "--yes"},
    {"power shutdown", "--yes"},
    {"power network-repair", "--yes"},
    {"host-name", "reception-2"},
    {"manager-password", "--remove"},
    {"time", "--zone Europe/Vienna"},
    {"info", ""},
    {"factory-reset", "--yes"},
    {"init", ""},
    {"language", "ko_KR"},
    {"battery", ""},
    {"oem", ""},
    {"log", "--lines 0"},
    {"portal", "off"},
    {"demo-mode", "on"},
    {"update download", "http://127.0.0.1/update.qvtc"},
    {"update run", "--yes"},
    {"update status", ""},
};

/// Everything that could restart the terminal, or change its network.
struct Programs {
    StandIn systemctl{"systemctl"};
    StandIn shutdown{"shutdown"};
    StandIn reboot{"reboot"};
    StandIn killall{"killall"};
    StandIn dhclient{"dhclient"};
    StandIn networking{"/etc/init.d/networking"};
    StandIn wget{"wget"};
    StandIn nmcli{"nmcli"};
    StandIn qvplugin{"qvplugin"};
};

/// The files that a command could change, with their times and contents.
std::string files_of_terminal() {
    return test::capture_stdout([] {
        EXPECT_EQ(std::system("cd / && find home/root etc run/qvtcctl.lock usr/local/vpclient "
                              "var/lib/ralo -printf '%p %s %i %C@\\n' 2>/dev/null | sort"),
                  0);
    });
}

class QvtcctlDamagedDocument : public testing::Test {
  protected:
    void SetUp() override {
        Transcript()
            .run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
            .run("qvtcctl connection export >/tmp/backup.json; rm -f /home/root/system.log");
        damage();
    }

    static void damage() { test::write_file(settings_document, "garbage\n"); }

    Programs programs;
};

const std::string refusal =
    "! qvtcctl: the settings document /home/root/vpclientData.xml cannot be read: line 1: Start "
    "tag expected, '<' not found. Restore a backup with \"qvtcctl connection import FILE\", which "
    "keeps the damaged document under another name; or move it away to begin a new one.\n= 1\n";

TEST_F(QvtcctlDamagedDocument, IsNeverTakenForAnEmptyOne) {
    Transcript others;
    std::set<std::string> names;
    for (const Group& group : groups()) {
        for (const Verb* verb : group.verbs) {
            const std::string command_name = Place{&group, verb}.full_name();
            const std::string name = command_name.substr(std::string_view("qvtcctl ").size());
            names.insert(name);
            ASSERT_TRUE(arguments.contains(name)) << "nothing to type after " << name;
            const std::string command = command_name + " " + arguments.at(name);
            if (verb->settings == Settings::not_needed) {
                others.run(command);
                damage();
                continue;
            }
            const std::string before = files_of_terminal();
            test::forget_commands();
            EXPECT_EQ(Transcript().run(command).text(), "$ " + command + "\n" + refusal);
            EXPECT_EQ(files_of_terminal(), before) << command;
            EXPECT_EQ(test::recorded_commands_of("/usr/local/bin/qvtcctl"),
                      std::vector<std::string>{})
                << command;
        }
    }
    EXPECT_EQ(names.size(), arguments.size()) << "a command is gone";
    others.expect("document_not_needed");
}

// The command itself does without, but not with a connection to look up.
TEST_F(QvtcctlDamagedDocument, HidesTheConnectionWhoseClientIsToBeEnded) {
    EXPECT_EQ(Transcript().run("qvtcctl cancel 32").text(), "$ qvtcctl cancel 32\n" + refusal);
}

} // namespace
} // namespace qvtc::qvtcctl
