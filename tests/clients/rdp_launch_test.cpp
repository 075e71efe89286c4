// How an RDP session is launched: what is asked, in which order, and what becomes of it.

#include "clients/rdp.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class RdpLaunch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

const std::string audio_query = "ps -ef|grep 'pulseaudio'|grep -v grep|wc -l";
const std::string size_query =
    "DISPLAY=:0.0 xrandr |grep -w \"current\" |awk -F',' '{print$2}'"
    "|grep -o \"[0-9]\\{1,4\\} x [0-9]\\{1,4\\}\"|sed -n \"1,1p\"|sed s/[[:space:]]//g";
const std::string redirection = " >>/home/root/freerdp.log 2>&1 &";

// What a launch of the record "Office" at 10.0.0.5 begins and ends with.
const std::string head = "xfreerdp /t:Office /v:'10.0.0.5' /f +auto-reconnect "
                         "/auto-reconnect-max-retries:5 /cert-ignore ";
const std::string tail =
    " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims /monitors:1 /multimon";

test::Values office(const test::Values& more = {}) {
    test::Values values{
        {"id", "35"}, {"name", "Office"}, {"serverAddress", "10.0.0.5"}, {"colorDepth", "32"}};
    values.insert(values.end(), more.begin(), more.end());
    return values;
}

void store_office(const test::Values& more = {}) {
    test::store_items({test::record_item("rdpItem_id_35", office(more))});
}

/// The command line that a launch of the stored record 35 runs, without its redirection.
std::string launched_line(test::ScriptedOs& system) {
    system.record.clear();
    EXPECT_TRUE(launch_rdp(35));
    for (const std::string& call : system.record) {
        if (!call.starts_with("run xfreerdp ")) continue;
        EXPECT_TRUE(call.ends_with(redirection)) << call;
        return call.substr(4, call.size() - 4 - redirection.size());
    }
    return "nothing was started";
}

} // namespace

TEST_F(RdpLaunch, AsksAndActsInOrder) {
    store_office({{"username", "u1"}, {"password", "c2VjcmV0"}});
    test::ScriptedOs system;
    system.time = 1'763'700'000;
    system.outputs = {"1\n", "1280x800\n"};
    EXPECT_TRUE(launch_rdp(35));
    const std::string command =
        "xfreerdp /t:Office /v:'10.0.0.5' /size:1280x800 +auto-reconnect "
        "/auto-reconnect-max-retries:5 /cert-ignore  /u:'u1' /p:'secret' /bpp:32 -compression "
        "-wallpaper -bitmap-cache -window-drag -menu-anims /monitors:1 /multimon "
        ">>/home/root/freerdp.log 2>&1 &";
    EXPECT_EQ(system.record,
              (Texts{"capture 512 " + audio_query, "capture 1024 " + size_query,
                     "run echo '[1763700000]start to connect...'>/home/root/freerdp.log",
                     "run killall xfreerdp", "run " + command, "thread"}));
    EXPECT_EQ(test::log_lines(),
              (Texts{"[INFO] rdpclient id=35", "", "[INFO] xfreerdp params:" + command}));
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1763700000]start to connect...");
}

TEST_F(RdpLaunch, IsWatchedByTheRdpWatch) {
    store_office();
    test::ScriptedOs system;
    EXPECT_TRUE(launch_rdp(35));
    system.record.clear();
    ASSERT_EQ(system.threads.size(), 1U);
    system.outputs.assign(10, "a window\n");
    system.threads[0]();
    EXPECT_EQ(system.record.at(0), "run echo \"\" > /usr/local/vpclient/config/clientstatus");
    EXPECT_EQ(system.record.at(1),
              "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep xfreerdp");
    EXPECT_EQ(system.record.back(), "run /usr/bin/resetusb.sh");
}

TEST_F(RdpLaunch, WithoutAThreadFailsWhenTheClientRuns) {
    store_office();
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(launch_rdp(35));
    EXPECT_EQ(system.record.back(), "thread");
    EXPECT_EQ(*(system.record.end() - 2), "run " + head + tail + redirection);
    EXPECT_EQ(test::log_lines().back(), "[ERROR] @launchclient thread create fail");
}

TEST_F(RdpLaunch, OfAnAbsentRecordStartsTheClientAllTheSame) {
    test::ScriptedOs system;
    EXPECT_EQ(launched_line(system),
              "xfreerdp /t: /v:'' /f +auto-reconnect /auto-reconnect-max-retries:5 /cert-ignore  "
              "/bpp: -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
              "/monitors:1 /multimon");
}

TEST_F(RdpLaunch, LogsItsIdAsASignedNumber) {
    test::ScriptedOs system;
    EXPECT_TRUE(launch_rdp(4294967295U));
    EXPECT_EQ(test::log_lines().at(0), "[INFO] rdpclient id=-1");
}

// --- Passwords -------------------------------------------------------------------------------

TEST_F(RdpLaunch, GivesThePasswordDecoded) {
    const std::pair<const char*, const char*> cases[] = {
        {"cGFzc3dvcmQ+", " /p:'password'"}, // "+" stands for "="
        {"cGFzc3dvcmQ=", " /p:'password'"},
        {"YQBi", " /p:'a'"}, // up to the NUL in it
        {"AGFi", " /p:''"},
        {"++++", " /p:''"},
        {"", ""},
        {"aXQncyAkKHgp", " /p:'it'\\''s $(x)'"},
    };
    for (const auto& [stored, option] : cases) {
        store_office({{"password", stored}});
        test::ScriptedOs system;
        EXPECT_EQ(launched_line(system), head + option + tail) << stored;
    }
}

TEST_F(RdpLaunch, GivesTheGatewayPasswordDecoded) {
    const std::pair<const char*, const char*> cases[] = {
        {"cGFzc3dvcmQ+", "password"}, {"YQBi", "a"}, {"++++", ""}, {"", ""}};
    for (const auto& [stored, password] : cases) {
        store_office({{"domain", "D"},
                      {"useRdGateway", "on"},
                      {"rdGatewayAddress", "G"},
                      {"rdGatewayDomain", "GD"},
                      {"rdGatewayPassword", stored}});
        test::ScriptedOs system;
        EXPECT_EQ(launched_line(system),
                  head + " /d:'D' /g:'G' /gu:'' /gp:'" + password + "' /gd:'GD'" + tail)
            << stored;
    }
}

TEST_F(RdpLaunch, StartsNothingWithAPasswordThatCannotBeDecoded) {
    struct Case {
        test::Values passwords;
        const char* line;
    };
    const Case cases[] = {
        {{{"password", "abc"}}, "[ERROR] @qvlaunchclient password decode error"},
        {{{"password", "c2VjcmV0cw"}}, "[ERROR] @qvlaunchclient password decode error"},
        {{{"rdGatewayPassword", "abc"}}, "[ERROR] @qvlaunchclient pgupasswd decode error"},
        {{{"password", "c2VjcmV0"}, {"rdGatewayPassword", "abc"}},
         "[ERROR] @qvlaunchclient pgupasswd decode error"},
        {{{"password", "abc"}, {"rdGatewayPassword", "abc"}},
         "[ERROR] @qvlaunchclient password decode error"},
    };
    for (const Case& each : cases) {
        store_office(each.passwords);
        test::write_file("/home/root/freerdp.log", "untouched");
        test::write_file("/home/root/system.log", "");
        const std::string before = test::stored_document();
        test::ScriptedOs system;
        EXPECT_FALSE(launch_rdp(35));
        EXPECT_EQ(system.record, Texts{});
        EXPECT_EQ(test::log_lines(), (Texts{"[INFO] rdpclient id=35", "", each.line}));
        EXPECT_EQ(test::stored_document(), before);
        EXPECT_EQ(test::read_file("/home/root/freerdp.log"), "untouched");
    }
}

// --- Audio -----------------------------------------------------------------------------------

TEST_F(RdpLaunch, LooksForAnAudioServerAndLetsItBeStartedOnce) {
    struct Case {
        std::deque<std::string> counts;
        Texts asked;
        const char* option;
    };
    const std::string query = "capture 512 " + audio_query;
    const std::string start = "run qvplugin 0 96 >/dev/null 2>&1";
    constexpr const char* sound = " /sound:sys:pulse,latency:100 /microphone:sys:pulse";
    const Case cases[] = {
        {{"1\n"}, {query}, sound},
        {{"3\n"}, {query}, sound},
        {{"0\n", "1\n"}, {query, start, query}, sound},
        {{"0\n", "0\n"}, {query, start, query}, ""},
        {{"", ""}, {query, start, query}, ""},
    };
    for (const Case& each : cases) {
        store_office({{"redirectAudio", "on"}});
        test::ScriptedOs system;
        system.outputs = each.counts;
        EXPECT_EQ(launched_line(system),
                  head + " /bpp:32" + each.option +
                      " -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
                      "/monitors:1 /multimon");
        Texts asked = system.record;
        asked.resize(each.asked.size());
        EXPECT_EQ(asked, each.asked);
        EXPECT_EQ(system.record.at(each.asked.size()), "capture 1024 " + size_query);
    }
}

TEST_F(RdpLaunch, LooksForAnAudioServerAlsoWhereNoSoundIsWanted) {
    store_office();
    test::ScriptedOs system;
    EXPECT_EQ(launched_line(system), head + tail);
    EXPECT_EQ(system.record.at(0), "capture 512 " + audio_query);
    EXPECT_EQ(system.record.at(1), "run qvplugin 0 96 >/dev/null 2>&1");
}

// --- Screens and marker files ----------------------------------------------------------------

TEST_F(RdpLaunch, GivesTheSizeThatTheScreenHas) {
    const std::pair<const char*, const char*> cases[] = {
        {"1280x800\n", "/size:1280x800"},
        {"2560x1024\n", "/size:2560x1024"},
        {"8x60\n", "/size:8x60"},
        {"8x6\n", "/f"},
        {"", "/f"},
    };
    for (const auto& [output, option] : cases) {
        store_office();
        test::ScriptedOs system;
        system.replies = {{audio_query, "1\n"}, {size_query, output}};
        EXPECT_EQ(launched_line(system),
                  std::string("xfreerdp /t:Office /v:'10.0.0.5' ") + option +
                      " +auto-reconnect /auto-reconnect-max-retries:5 /cert-ignore " + tail);
    }
}

TEST_F(RdpLaunch, ChoosesMonitorsByEveryMarkerFileAndChoice) {
    const std::pair<const char*, const char*> markers[] = {
        {"clone", "/etc/X11/clone"},
        {"vga_left_of_hdmi", "/etc/X11/vga_left_of_hdmi"},
        {"n5095_notebook", "/home/root/n5095_notebook"},
        {"j4105_notebook", "/home/root/j4105_notebook"},
    };
    std::string table;
    for (unsigned set = 0; set < 16; ++set) {
        for (const char* const choice : {"extend", "vga", "hdmi", ""}) {
            store_office({{"monitorSelect", choice}});
            test::ScriptedOs system;
            std::string present;
            for (unsigned marker = 0; marker < 4; ++marker) {
                if ((set >> marker & 1U) == 0) continue;
                system.files.insert(markers[marker].second);
                present += std::string(present.empty() ? "" : " + ") + markers[marker].first;
            }
            const std::string line = launched_line(system);
            const std::string before = head + " /bpp:32 -compression -wallpaper -bitmap-cache "
                                              "-window-drag -menu-anims";
            ASSERT_TRUE(line.starts_with(before)) << line;
            table += (present.empty() ? "no marker file" : present) + ", monitorSelect '" + choice +
                     "':" + line.substr(before.size()) + "\n";
        }
    }
    test::expect_golden("clients/rdp_monitors.txt", table);
}

TEST_F(RdpLaunch, LeavesUsbHereWhereItIsDenied) {
    for (const bool denied : {false, true}) {
        store_office({{"usbRedirection", "on"}, {"localStorage", "on"}});
        test::ScriptedOs system;
        if (denied) system.files = {"/home/root/usbdenied"};
        EXPECT_EQ(launched_line(system),
                  denied ? head + tail
                         : head + " /usb:auto /bpp:32 -compression -wallpaper -bitmap-cache "
                                  "-window-drag -menu-anims +drives /monitors:1 /multimon");
    }
}

} // namespace qvtc::clients
