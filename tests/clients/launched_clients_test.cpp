// Launches from the entry point to the client, under the recorder: every command in its order,
// every argument as the client got it, and what the front-end can read meanwhile.

#include "clients/exports.hpp"

#include "clients/watched_terminal.hpp"
#include "core/file_lock.hpp"

#include <chrono>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

class LaunchedClients : public WatchedTerminal {};

/// The status file's text, once it is no longer empty.
std::string outcome() {
    EXPECT_TRUE(
        wait_until([] { return file_exists(status_file) && read_file(status_file).size() > 1; },
                   std::chrono::seconds(30)));
    return read_file(status_file);
}

} // namespace

TEST_F(LaunchedClients, AVncWindowOnTheThirdPollIsASuccessTwoSecondsLater) {
    StandIn client("vncviewer");
    client.prints("Connected to RFB server\n");
    show_window("0x200001 \"x\": (\"vncviewer\" \"Vncviewer\")", 3);
    store_items({record_item("vncItem_id_230",
                             {{"id", "230"}, {"serverAddress", "10.0.0.5"}, {"password", "abc"}})});
    write_file(status_file, "0x00000001 connect failed\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(qvlaunchclient(230), 0);
    ASSERT_TRUE(wait_until([] { return file_exists("/tmp/polls"); })); // the former text is gone
    EXPECT_EQ(outcome(), "0x00000000 connect success\n");
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken, std::chrono::seconds(2));
    EXPECT_EQ(read_file("/tmp/statuses"), "\n\n\n"); // open at every poll

    const std::string command =
        "vncviewer FullScreen  passwd abc10.0.0.5 >>/home/root/vnc.log 2>&1 &";
    EXPECT_EQ(recorded_commands(),
              (Texts{"echo '" + lines_of(read_file("/home/root/spicec.log")).at(0) +
                         "'>>/home/root/spicec.log",
                     "rm -rf /root/.config/spice/known_hosts", "killall vncviewer", command,
                     clear_status, look_for("vncviewer"), look_for("vncviewer"),
                     look_for("vncviewer"), write_success}));
    EXPECT_TRUE(wait_until([] { return log_lines().size() == 3; }));
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] @launchclient id = 230", "[INFO] spice connection params:" + command,
                     std::string("[INFO] connectstatus_thread:") + write_success}));
    EXPECT_EQ(client.calls(), (StandIn::Calls{{"FullScreen", "passwd", "abc10.0.0.5"}}));
    EXPECT_EQ(killall.calls(), (StandIn::Calls{{"vncviewer"}}));
    EXPECT_EQ(read_file("/home/root/vnc.log"), "Connected to RFB server\n");
}

TEST_F(LaunchedClients, AWindowThatNeverShowsIsAFailureAfterTenPolls) {
    StandIn client("remote-viewer");
    xwininfo.prints("     0x200001 \"other\": (\"xterm\" \"XTerm\")  640x480+0+0\n");
    store_items({record_item("spiceItem_id_70",
                             {{"id", "70"}, {"serverAddress", "10.0.0.7"}, {"port", "5930"}})});
    write_file("/root/.config/spice/known_hosts", "old");
    write_file("/home/root/spicec.log", "earlier\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(qvlaunchclient(70), 0);
    EXPECT_EQ(outcome(), "0x00000001 connect failed\n");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(9));

    const std::string command = "remote-viewer -f --spice-disable-usbredir spice://10.0.0.7:5930 "
                                ">>/home/root/spicec.log 2>&1 &";
    const Texts log = lines_of(read_file("/home/root/spicec.log"));
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[0], "earlier");
    Texts commands = {"echo '" + log[1] + "'>>/home/root/spicec.log",
                      "rm -rf /root/.config/spice/known_hosts",
                      "killall spicec",
                      "killall spicy",
                      "killall remote-view",
                      command,
                      clear_status};
    commands.insert(commands.end(), 10, look_for("remote-view"));
    commands.push_back(write_failure);
    EXPECT_EQ(recorded_commands(), commands);
    EXPECT_TRUE(wait_until([] { return log_lines().size() == 3; }));
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] @launchclient id = 70", "[INFO] spice connection params:" + command,
                     std::string("[INFO] connectstatus_thread:") + write_failure}));
    EXPECT_EQ(client.calls(),
              (StandIn::Calls{{"-f", "--spice-disable-usbredir", "spice://10.0.0.7:5930"}}));
    EXPECT_FALSE(file_exists("/root/.config/spice/known_hosts"));
}

TEST_F(LaunchedClients, ASpiceClientGetsItsListsAsOneArgumentEach) {
    StandIn client("remote-viewer");
    xwininfo.prints("remote-viewer\n");
    store_items({record_item("spiceItem_id_64", {{"desktopBackground", "off"},
                                                 {"fontSmooth", "off"},
                                                 {"useRedirect", "on"},
                                                 {"serverAddress", "h"}})});
    EXPECT_EQ(launch_spice_connection(64), 0);
    EXPECT_EQ(outcome(), "0x00000000 connect success\n");
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    EXPECT_EQ(client.calls(),
              (StandIn::Calls{{"-f", "--spice-disable-effects=wallpaper,font-smooth,animation",
                               "--spice-usbredir-auto-redirect-filter=0x03,0x1bc0,0x1001,-1,1|"
                               "0x03,-1,-1,-1,0|-1,-1,-1,-1,1",
                               "--spice-usbredir-redirect-on-connect=0x03,0x1bc0,0x1001,-1,1|"
                               "0x03,-1,-1,-1,0|-1,-1,-1,-1,1",
                               "spice://h"}}));
}

TEST_F(LaunchedClients, AWebAddressStaysWhole) {
    StandIn client("firefox");
    client.prints("page\n");
    show_window("\"firefox-esr\": (\"firefox-esr\" \"Firefox-esr\")", 1);
    store_items({record_item("firefox_id_290",
                             {{"id", "290"}, {"serverAddress", "http://10.0.0.9/?a=1%b=2#top"}})});
    EXPECT_EQ(qvlaunchclient(290), 0);
    EXPECT_EQ(outcome(), "0x00000000 connect success\n");
    const std::string command =
        "firefox http://10.0.0.9/\\?a=1\\&b=2#top >>/home/root/firefox.log 2>&1 &";
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    EXPECT_EQ(client.calls(), (StandIn::Calls{{"http://10.0.0.9/?a=1&b=2#top"}}));
    const std::string log = read_file("/home/root/firefox.log");
    EXPECT_EQ(
        recorded_commands(),
        (Texts{"echo '" + lines_of(log).at(0) + "'>>/home/root/firefox.log", "killall firefox",
               command, clear_status, look_for("firefox"), write_success}));
    EXPECT_TRUE(wait_until(
        [&] { return read_file("/home/root/firefox.log") == lines_of(log).at(0) + "\npage\n"; }));
    EXPECT_EQ(log_lines().at(1), "[INFO] firefox connection params:" + command);
}

TEST_F(LaunchedClients, AHorizonClientRunsInItsLanguageAndEnvironment) {
    StandIn client("vmware-view");
    client.runs("printf '%s\\n' \"$GTK2_RC_FILES\" \"$LANG\" \"$LD_LIBRARY_PATH\" >/tmp/env.new; "
                "mv /tmp/env.new /tmp/env");
    show_window("\"vmware-view\"", 1);
    store_items({record_item("vmwareItem_id_160", {{"id", "160"},
                                                   {"serverAddress", "view.lan"},
                                                   {"username", "u1"},
                                                   {"password", "c2VjcmV0"},
                                                   {"desktop", "57696e20313121"},
                                                   {"vmwareProtocol", "RDP"}}),
                 {"configItem", {{"tc_config_param_8", "zh_CN"}}}});
    EXPECT_EQ(qvlaunchclient(160), 0);
    EXPECT_EQ(outcome(), "0x00000000 connect success\n");
    ASSERT_TRUE(wait_until([] { return file_exists("/tmp/env"); }));
    EXPECT_EQ(read_file("/tmp/env"), "/usr/lib/vmware/gtkrc\nzh_CN.UTF-8\n:/usr/lib/vmware\n");
    EXPECT_EQ(client.calls(),
              (StandIn::Calls{{"-q", "--once", "--enableMMR", "--monitors=2", "-s", "view.lan",
                               "-u", "u1", "-p", "secret", "-n", "Win", "11!", "--nomenubar",
                               "--protocol=RDP", "--rdpclient=xfreerdp",
                               "--xfreerdpOptions= +auto-reconnect  /rfx /sound:sys:pulse "
                               "/microphone:sys:pulse //multimedia:decoder:gstreamer -compression "
                               "+fonts +wallpaper +themes +bitmap-cache -window-drag -menu-anims "
                               "/f "}}));
    const Texts commands = recorded_commands();
    ASSERT_EQ(commands.size(), 7U);
    EXPECT_EQ((Texts{commands.begin(), commands.begin() + 3}),
              (Texts{"killall vmware-remotemks", "killall vmware-view", "killall vmware-view"}));
    EXPECT_EQ((Texts{commands.begin() + 4, commands.end()}),
              (Texts{clear_status, look_for("vmware-view"), write_success}));
    EXPECT_EQ(log_lines().at(1), "[INFO] vmware cmdline:" + commands[3]);
    EXPECT_EQ(stored_marker(), "");
}

TEST_F(LaunchedClients, OfAnAbsentRecordStartAllTheSame) {
    const StandIn spice("remote-viewer");
    const StandIn vnc("vncviewer");
    const StandIn web("firefox");
    xwininfo.prints("remote-viewer vncviewer firefox\n");
    for (const unsigned id : {64U, 224U, 288U}) EXPECT_EQ(qvlaunchclient(id), 0);
    EXPECT_TRUE(wait_until([&] { return spice.calls().size() == 1; }));
    EXPECT_TRUE(wait_until([&] { return vnc.calls().size() == 1; }));
    EXPECT_TRUE(wait_until([&] { return web.calls().size() == 1; }));
    EXPECT_EQ(spice.calls(), (StandIn::Calls{{"-f", "--spice-disable-usbredir"}}));
    EXPECT_EQ(vnc.calls(), (StandIn::Calls{{"FullScreen"}}));
    EXPECT_EQ(web.calls(), StandIn::Calls{{}});
}

TEST_F(LaunchedClients, EachIsStartedASecondLaterAtMostWhileTheSettingsAreLocked) {
    const StandIn clients[] = {StandIn("xfreerdp"), StandIn("remote-viewer"),
                               StandIn("vmware-view"), StandIn("vncviewer"), StandIn("firefox")};
    const FileLock held("/run/qvtcapi.lock");
    ASSERT_TRUE(held.acquired());
    const struct {
        unsigned id;
        std::size_t notes; ///< how often its start is noted in the settings
    } launches[] = {{32, 1}, {64, 2}, {160, 0}, {224, 2}, {288, 2}};
    for (const auto& [id, notes] : launches) {
        write_file("/home/root/system.log", "");
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(qvlaunchclient(id), 0) << id;
        const auto taken = std::chrono::steady_clock::now() - start;
        EXPECT_GE(taken, std::chrono::seconds(notes > 0 ? 1 : 0)) << id;
        EXPECT_LT(taken, std::chrono::seconds(5)) << id;
        Texts errors = log_lines();
        std::erase_if(errors, [](const std::string& line) { return !line.starts_with("[ERROR]"); });
        EXPECT_EQ(errors, Texts(notes, "[ERROR] @xmlwrite /home/root/vpclientData.xml not locked: "
                                       "another writer holds it"))
            << id;
    }
    for (const StandIn& client : clients)
        EXPECT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
}

} // namespace qvtc::test
