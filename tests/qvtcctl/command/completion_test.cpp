#include "qvtcctl/command/command_line.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using Words = std::vector<std::string>;

Words offered(const Words& words) { return completions(words); }

TEST(QvtcctlCompletion, OffersWhatMayStandThere) {
    struct Case {
        Words words, offered;
    };
    const Words top_words = {"connection",    "launch",    "status",           "cancel",  "doctor",
                             "delay",         "display",   "network",          "volume",  "sound",
                             "power",         "host-name", "manager-password", "time",    "info",
                             "factory-reset", "init",      "language",         "battery", "oem",
                             "log",           "portal",    "demo-mode",        "update"};
    const Case cases[] = {
        {{""}, top_words},
        {{"c"}, {"connection", "cancel"}},
        {{"connection", "s"}, {"show", "set"}},
        {{"connection", "list", ""},
         {"broker", "rdp", "spice", "ovirt", "citrix", "horizon", "vnc", "hdp", "web"}},
        {{"connection", "list", "rdp", ""}, {}},
        {{"network", "s"}, {"show", "set", "scan"}},
        {{"network", "set", "eth0", "static", "--g"}, {"--gateway"}},
        {{"connection", "add", "r"}, {"rdp"}},
        {{"connection", "add", "--password", "r"}, {"rdp"}},
        {{"connection", "add", "rdp", "rdGatewayU"},
         {"rdGatewayUseRemoteAccount=", "rdGatewayUsername="}},
        {{"connection", "add", "rdp", "name=x", "useG"}, {"useGFX="}},
        {{"connection", "set", "32", "useGFX="}, {"useGFX=on", "useGFX=off"}},
        {{"connection", "set", "32", "useGFX=of"}, {"useGFX=off"}},
        {{"connection", "set", "32", "monitorSelect="},
         {"monitorSelect=extend", "monitorSelect=vga", "monitorSelect=hdmi"}},
        {{"connection", "set", "32", "password"}, {}},
        {{"connection", "set", "32", "nosuch="}, {}},
        {{"launch", "32", "--"},
         {"--wait", "--timeout", "--end-others", "--json", "--debug", "--help"}},
        {{"launch", ""}, {}},
        {{"sound", ""}, {"show", "configure"}},
        {{"volume", "--c"}, {"--capture"}},
        {{"nosuch", ""}, top_words},
        {{"display", "s"}, {"show", "set", "screens"}},
        {{"power", ""}, {"idle", "reboot", "shutdown", "network-repair"}},
        {{"power", "idle", ""}, {"on", "off"}},
        {{"power", "idle", "on", ""}, {}},
        {{"display", "set", "128"}, {"1280x720", "1280x800", "1280x1024"}},
        {{"display", "mode", ""}, {"clone", "extend", "vertical"}},
        {{"display", "order", "r"}, {"reverse"}},
        {{"network", "set", ""}, {"eth0", "eth1"}},
        {{"network", "set", "eth0", ""}, {"dhcp", "static", "dns"}},
        {{"network", "wireless", "Office", ""}, {"dhcp", "static"}},
        {{"network", "wifi", ""}, {"on", "off"}},
        {{"log", "--level", ""}, {"debug", "info", "error"}},
        {{"log", "--lines", ""}, {}},
    };
    for (const Case& c : cases) EXPECT_EQ(offered(c.words), c.offered) << c.words.back();
}

TEST(QvtcctlCompletion, OffersTheNumbersOfTheStoredConnections) {
    EXPECT_EQ(offered({"launch", ""}), Words());
    ASSERT_EQ(
        std::system(QVTCCTL_PROGRAM " connection add rdp name=a serverAddress=10.0.0.5 >/dev/null"),
        0);
    ASSERT_EQ(
        std::system(QVTCCTL_PROGRAM " connection add vnc name=c serverAddress=10.0.0.7 >/dev/null"),
        0);
    EXPECT_EQ(offered({"launch", ""}), (Words{"32", "224"}));
    EXPECT_EQ(offered({"connection", "remove", "32", "2"}), Words{"224"});
    test::write_file("/home/root/vpclientData.xml", "no document");
    EXPECT_EQ(offered({"launch", ""}), Words());
}

/// What bash would put into the line.
std::string bash_completes(const std::string& typed) {
    test::write_file(
        "/tmp/complete",
        "complete() { :; }; compopt() { printf '(%s)' \"$*\"; }\n"
        "PATH=" +
            std::string(QVTCCTL_PROGRAM).substr(0, std::string(QVTCCTL_PROGRAM).rfind('/')) +
            ":$PATH\n"
            ". " QVTCCTL_SOURCES "/qvtcctl.bash\n"
            "COMP_LINE=$1 COMP_POINT=${#1}; _qvtcctl; printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    test::write_file("/tmp/typed", "bash /tmp/complete '" + typed + "'");
    return test::capture_stdout([] { EXPECT_EQ(std::system("bash /tmp/typed"), 0); });
}

TEST(QvtcctlCompletion, BashPutsItIntoTheLine) {
    EXPECT_EQ(bash_completes("qvtcctl connection s"), "show\nset\n");
    EXPECT_EQ(bash_completes("qvtcctl connection "),
              "list\nshow\nadd\nset\nremove\nimport\nexport\n"
              "fields\ntypes\n");
    EXPECT_EQ(bash_completes("qvtcctl connection set 32 useGF"), "(-o nospace)useGFX=\n");
    EXPECT_EQ(bash_completes("qvtcctl connection set 32 useGFX=o"), "on\noff\n");
    EXPECT_EQ(bash_completes("qvtcctl connection import "), "(-o default)\n");
}

} // namespace
} // namespace qvtc::qvtcctl
