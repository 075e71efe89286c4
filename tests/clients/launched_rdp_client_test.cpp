// Launches from the entry point to the client, under the recorder: every command in its order,
// every argument as the client got it, and what the front-end can read meanwhile.

#include "clients/exports.hpp"

#include "clients/watched_terminal.hpp"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

class LaunchedRdpClient : public WatchedTerminal {};

constexpr const char* audio_query = "ps -ef|grep 'pulseaudio'|grep -v grep|wc -l";
constexpr const char* size_query =
    "DISPLAY=:0.0 xrandr |grep -w \"current\" |awk -F',' '{print$2}'"
    "|grep -o \"[0-9]\\{1,4\\} x [0-9]\\{1,4\\}\"|sed -n \"1,1p\"|sed s/[[:space:]]//g";

/// The first commands, once there are so many.
Texts first_commands(std::size_t count) {
    EXPECT_TRUE(wait_until([&] { return recorded_commands().size() >= count; }));
    Texts commands = recorded_commands();
    if (commands.size() > count) commands.resize(count);
    return commands;
}

const Values office_values = {{"id", "35"},
                              {"type", "1"},
                              {"name", "Office"},
                              {"serverAddress", "10.0.0.5"},
                              {"password", "cGFzc3dvcmQ+"},
                              {"username", "u 1"},
                              {"domain", "D"},
                              {"colorDepth", "32"},
                              {"useRdGateway", "on"},
                              {"rdGatewayAddress", "gw"},
                              {"rdGatewayDomain", "GD"},
                              {"rdGatewayPassword", "Z3NlY3JldA++"},
                              {"redirectAudio", "on"},
                              {"isConnectStart", "on"},
                              {"appFullpath", "C:/Program Files/x.exe"},
                              {"workDir", "C:/work"},
                              {"monitorSelect", "extend"}};

} // namespace

TEST_F(LaunchedRdpClient, ALaunchRunsExactlyTheseCommands) {
    StandIn client("xfreerdp");
    client.prints("hello\n").prints_errors("trouble\n");
    StandIn xrandr("xrandr");
    xrandr.prints("Screen 0: minimum 8 x 8, current 2560 x 1024, maximum 32767 x 32767\n"
                  "DUMMY0 connected 1280x1024+0+0 (normal left inverted) 0mm x 0mm\n");
    store_items({record_item("rdpItem_id_35", office_values)});
    write_file("/home/root/freerdp.log", "of the last session\n");
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(qvlaunchclient(35), 0); }), "");

    const std::string command =
        "xfreerdp /t:Office /v:'10.0.0.5' /size:2560x1024 +auto-reconnect "
        "/auto-reconnect-max-retries:5 /cert-ignore  /u:'u 1' /p:'password' /d:'D' /g:'gw' /gu:'' "
        "/gp:'gsecret' /gd:'GD' /bpp:32 -compression -wallpaper -bitmap-cache -window-drag "
        "-menu-anims /shell:\"C:/Program Files/x.exe\" /shell-dir:\"C:/work\" "
        "/multimon /monitors:1,0 >>/home/root/freerdp.log 2>&1 &";
    EXPECT_EQ(first_commands(9),
              (Texts{audio_query, "qvplugin 0 96 >/dev/null 2>&1", audio_query, size_query,
                     "echo '" + stored_marker() + "'>/home/root/freerdp.log", "killall xfreerdp",
                     command, clear_status, look_for("xfreerdp")}));
    EXPECT_EQ(log_lines(), (Texts{"[INFO] @launchclient id = 35", "[INFO] rdpclient id=35", "",
                                  "[INFO] xfreerdp params:" + command}));

    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    EXPECT_EQ(client.calls(), (StandIn::Calls{{"/t:Office",
                                               "/v:10.0.0.5",
                                               "/size:2560x1024",
                                               "+auto-reconnect",
                                               "/auto-reconnect-max-retries:5",
                                               "/cert-ignore",
                                               "/u:u 1",
                                               "/p:password",
                                               "/d:D",
                                               "/g:gw",
                                               "/gu:",
                                               "/gp:gsecret",
                                               "/gd:GD",
                                               "/bpp:32",
                                               "-compression",
                                               "-wallpaper",
                                               "-bitmap-cache",
                                               "-window-drag",
                                               "-menu-anims",
                                               "/shell:C:/Program Files/x.exe",
                                               "/shell-dir:C:/work",
                                               "/multimon",
                                               "/monitors:1,0"}}));
    EXPECT_EQ(killall.calls(), (StandIn::Calls{{"xfreerdp"}}));
    EXPECT_EQ(qvplugin.calls(), (StandIn::Calls{{"0", "96"}}));
    EXPECT_TRUE(wait_until([] {
        return read_file("/home/root/freerdp.log") == stored_marker() + "\nhello\ntrouble\n";
    })) << read_file("/home/root/freerdp.log");
    EXPECT_TRUE(wait_until([] { return file_exists(status_file); }));
    EXPECT_EQ(read_file(status_file), "\n");
}

TEST_F(LaunchedRdpClient, AMarkerNamesTheSecondOfTheLaunch) {
    const StandIn client("xfreerdp");
    const StandIn xrandr("xrandr");
    const std::time_t before = std::time(nullptr);
    EXPECT_EQ(qvlaunchclient(35), 0);
    const std::time_t after = std::time(nullptr);
    long long second = 0;
    char rest[64] = {};
    ASSERT_EQ(std::sscanf(stored_marker().c_str(), "[%lld]%63s", &second, rest), 2);
    EXPECT_STREQ(rest, "start");
    EXPECT_EQ(stored_marker(), "[" + std::to_string(second) + "]start to connect...");
    EXPECT_LE(before, second);
    EXPECT_LE(second, after);
}

TEST_F(LaunchedRdpClient, GetsSoundFromTheServerThatQvpluginStarts) {
    StandIn client("xfreerdp");
    const StandIn xrandr("xrandr");
    StandIn audio("pulseaudio");
    audio.keeps_running();
    qvplugin.runs("pulseaudio & while ! pgrep -x pulseaudio; do :; done");
    store_items({record_item("rdpItem_id_35", {{"redirectAudio", "on"}})});
    EXPECT_EQ(qvlaunchclient(35), 0);
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    EXPECT_EQ(
        client.calls()[0],
        (StandIn::Arguments{"/t:", "/v:", "/f", "+auto-reconnect", "/auto-reconnect-max-retries:5",
                            "/cert-ignore", "/bpp:", "/sound:sys:pulse,latency:100",
                            "/microphone:sys:pulse", "-compression", "-wallpaper", "-bitmap-cache",
                            "-window-drag", "-menu-anims", "/monitors:1", "/multimon"}));
    client.forget_calls();
    qvplugin.forget_calls();
    EXPECT_EQ(qvlaunchclient(35), 0); // now it runs
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    EXPECT_EQ(client.calls()[0].at(7), "/sound:sys:pulse,latency:100");
    EXPECT_EQ(qvplugin.calls(), StandIn::Calls{});
}

TEST_F(LaunchedRdpClient, FitsTheScreensAsTheirMarkerFilesSay) {
    struct Case {
        const char* file;
        Texts monitors;
    };
    const Case cases[] = {
        {"/tmp/none", {"/monitors:0", "/multimon"}},
        {"/etc/X11/clone", {"/f"}},
        {"/etc/X11/vga_left_of_hdmi", {"/monitors:1", "/multimon"}},
        {"/home/root/n5095_notebook", {"/monitors:1", "/multimon"}},
        {"/home/root/j4105_notebook", {"/monitors:1", "/multimon"}},
    };
    const StandIn xrandr("xrandr");
    for (const Case& each : cases) {
        StandIn client("xfreerdp");
        store_items({record_item("rdpItem_id_35", {{"monitorSelect", "vga"}})});
        write_file(each.file, "");
        EXPECT_EQ(rdpclient(35), 0);
        ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
        StandIn::Arguments arguments = client.calls()[0];
        arguments.erase(arguments.begin(), arguments.begin() + 12);
        EXPECT_EQ(arguments, each.monitors) << each.file;
        std::filesystem::remove(each.file);
    }
}

TEST_F(LaunchedRdpClient, KeepsItsDrivesAndUsbWhereUsbIsDenied) {
    StandIn client("xfreerdp");
    const StandIn xrandr("xrandr");
    store_items({record_item("rdpItem_id_35", {{"usbRedirection", "on"}, {"localStorage", "on"}})});
    write_file("/home/root/usbdenied", "");
    EXPECT_EQ(rdpclient(35), 0);
    std::filesystem::remove("/home/root/usbdenied");
    EXPECT_EQ(rdpclient(35), 0);
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 2; }));
    const auto has = [&](std::size_t call, const char* argument) {
        const StandIn::Arguments arguments = client.calls().at(call);
        return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
    };
    EXPECT_FALSE(has(0, "/usb:auto"));
    EXPECT_FALSE(has(0, "+drives"));
    EXPECT_TRUE(has(1, "/usb:auto"));
    EXPECT_TRUE(has(1, "+drives"));
}

TEST_F(LaunchedRdpClient, ALaunchWithAnUndecodablePasswordRunsNothing) {
    store_items({record_item("rdpItem_id_35", {{"password", "abc"}})});
    write_file("/home/root/freerdp.log", "of the last session\n");
    EXPECT_EQ(rdpclient(35), -1);
    EXPECT_EQ(qvlaunchclient(35), 0);
    EXPECT_EQ(recorded_commands(), Texts{});
    EXPECT_EQ(read_file("/home/root/freerdp.log"), "of the last session\n");
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] rdpclient id=35", "", "[ERROR] @qvlaunchclient password decode error",
                     "[INFO] @launchclient id = 35", "[INFO] rdpclient id=35", "",
                     "[ERROR] @qvlaunchclient password decode error"}));
    EXPECT_FALSE(file_exists(status_file));
}

TEST_F(LaunchedRdpClient, AWindowSeenTenTimesResetsUsbOnceAndLeavesTheStatusOpen) {
    const StandIn client("xfreerdp");
    const StandIn xrandr("xrandr");
    show_window("0x200001 \"Office\": (\"xfreerdp\" \"xfreerdp\")", 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(qvlaunchclient(35), 0);
    ASSERT_TRUE(wait_until([&] { return !reset_usb.calls().empty(); }, std::chrono::seconds(60)));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(9));
    EXPECT_EQ(reset_usb.calls(), (StandIn::Calls{{}}));
    EXPECT_EQ(xwininfo.calls(), StandIn::Calls(10, {"-root", "-tree"}));
    EXPECT_EQ(read_file("/tmp/statuses"), std::string(10, '\n'));
    EXPECT_EQ(read_file(status_file), "\n");
    EXPECT_EQ(recorded_commands().back(), "/usr/bin/resetusb.sh");
}

// --- Cancelling ------------------------------------------------------------------------------

TEST_F(LaunchedRdpClient, IsCancelledWhereItHasATerminal) {
    StandIn client("xfreerdp");
    client.keeps_running();
    // The program `script` gives what it runs a terminal; ps names only processes with one.
    ASSERT_EQ(std::system("script -qec 'exec xfreerdp /v:a' /dev/null >/dev/null </dev/null & "
                          "script -qec 'exec xfreerdp /v:b' /dev/null >/dev/null </dev/null & "
                          "setsid xfreerdp /v:c >/dev/null </dev/null &"),
              0);
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 3; }));
    const auto pids_of = [](const char* argument) {
        const std::string command =
            std::string("pgrep -fx 'xfreerdp /v:") + argument + "' >/tmp/pids";
        EXPECT_NE(std::system(command.c_str()), -1);
        return lines_of(read_file("/tmp/pids"));
    };
    const Texts a = pids_of("a");
    const Texts b = pids_of("b");
    ASSERT_EQ(a.size(), 1U);
    ASSERT_EQ(b.size(), 1U);
    forget_commands();
    write_file("/home/root/system.log", "");
    EXPECT_EQ(qvcancelconnect(), 0);
    Texts pids{a[0], b[0]};
    if (std::stoi(a[0]) > std::stoi(b[0])) std::swap(pids[0], pids[1]);
    EXPECT_EQ(recorded_commands(), (Texts{"ps -au |grep '[^--color=auto]xfreerdp' |awk '{print$2}'",
                                          "kill " + pids[0], "kill " + pids[1]}));
    EXPECT_EQ(log_lines(), (Texts{"[INFO] pid:" + pids[0], "[INFO] pid:" + pids[1],
                                  "[INFO] end cancelconnect"}));
    EXPECT_TRUE(wait_until([&] { return pids_of("a").empty() && pids_of("b").empty(); }));
    EXPECT_EQ(pids_of("c").size(), 1U); // without a terminal
}

TEST_F(LaunchedRdpClient, IsNotCancelledWhereThereIsNone) {
    EXPECT_EQ(cancelconnect(), 0);
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{
                  {"ps -au |grep '[^--color=auto]xfreerdp' |awk '{print$2}'", true}}));
    EXPECT_EQ(log_lines(), Texts{"[INFO] end cancelconnect"});
}

} // namespace qvtc::test
