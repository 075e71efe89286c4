#include "clients/exports.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <json-c/json.h>
#include <pthread.h>

namespace qvtc::test {

namespace {

class ClientExports : public FreshTerminal {};

using Texts = std::vector<std::string>;

constexpr const char* status_file = "/usr/local/vpclient/config/clientstatus";

std::string text_of(json_object* object) {
    return json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
}

/// What a thread of this body gives back.
void* joined(void* (*body)(void*), const char* argument) {
    std::string text = argument;
    pthread_t thread{};
    EXPECT_EQ(pthread_create(&thread, nullptr, body, text.data()), 0);
    void* result = &thread;
    EXPECT_EQ(pthread_join(thread, &result), 0);
    return result;
}

void* as_pointer(long number) { return reinterpret_cast<void*>(number); }

} // namespace

TEST_F(ClientExports, EveryLauncherGivesZeroOrMinusOneWithoutAThread) {
    int (*const launchers[])(std::uint32_t) = {rdpclient, launch_spice_connection, vmwareclient,
                                               launch_vnc_connection, launch_firefox_connection};
    const char* const clients[] = {"xfreerdp ", "remote-viewer ", "env ", "vncviewer ", "firefox "};
    for (std::size_t i = 0; i < std::size(launchers); ++i) {
        ScriptedOs system;
        EXPECT_EQ(launchers[i](40), 0);
        ASSERT_GE(system.record.size(), 2U);
        EXPECT_EQ(system.record.back(), "thread");
        EXPECT_TRUE((system.record.end() - 2)->starts_with(std::string("run ") + clients[i]));
        system.has_threads = false;
        EXPECT_EQ(launchers[i](40), -1);
    }
}

TEST_F(ClientExports, LaunchersReadTheRecordOfAnIdOfTheirType) {
    store_items({record_item("rdpItem_id_40", {{"serverAddress", "rdp"}}),
                 record_item("spiceItem_id_40", {{"serverAddress", "spice"}}),
                 record_item("vmwareItem_id_40", {{"serverAddress", "vmware"}}),
                 record_item("vncItem_id_40", {{"serverAddress", "vnc"}}),
                 record_item("firefox_id_40", {{"serverAddress", "web"}})});
    const std::pair<int (*)(std::uint32_t), const char*> cases[] = {
        {rdpclient, " /v:'rdp' "},
        {launch_spice_connection, " spice://spice "},
        {vmwareclient, " -s vmware "},
        {launch_vnc_connection, "FullScreen vnc "},
        {launch_firefox_connection, "firefox web "},
    };
    for (const auto& [launcher, part] : cases) {
        ScriptedOs system;
        EXPECT_EQ(launcher(40), 0);
        EXPECT_NE((system.record.end() - 2)->find(part), std::string::npos) << part;
    }
}

TEST_F(ClientExports, ALaunchIsZeroWhateverTheLauncherSaysAndMinusOneForOtherIds) {
    ScriptedOs system;
    system.has_threads = false;
    for (int (*const entry)(std::uint32_t) : {launchclient, qvlaunchclient}) {
        for (const std::uint32_t id : {32U, 63U, 64U, 95U, 160U, 191U, 224U, 255U, 288U, 319U}) {
            EXPECT_EQ(entry(id), 0) << id;
        }
        for (const std::uint32_t id :
             {0U, 31U, 96U, 100U, 159U, 192U, 223U, 256U, 287U, 320U, 4294967295U}) {
            EXPECT_EQ(entry(id), -1) << id;
        }
    }
}

TEST_F(ClientExports, AnIdWithoutAClientIsLogged) {
    EXPECT_EQ(qvlaunchclient(100), -1);
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] @launchclient id = 100", "[ERROR] without the id, id error"}));
    EXPECT_EQ(recorded_commands(), Texts{});
}

// --- Threads ---------------------------------------------------------------------------------

TEST_F(ClientExports, AWatchEndsItsThread) {
    {
        ScriptedOs system;
        system.outputs = {"a window\n"};
        EXPECT_EQ(joined(connectstatus_thread, "vncviewer"), nullptr);
        EXPECT_EQ(system.record,
                  (Texts{"run echo \"\" > /usr/local/vpclient/config/clientstatus",
                         "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep vncviewer",
                         "run echo \"0x00000000 connect success\" > "
                         "/usr/local/vpclient/config/clientstatus"}));
    }
    ScriptedOs system;
    EXPECT_EQ(joined(freerdp_thread, "xfreerdp"), nullptr);
    EXPECT_EQ(system.record.size(), 1U + 10U + 9U); // cleared, ten looks, nine waits
    EXPECT_EQ(system.record.at(1),
              "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep xfreerdp");
}

TEST_F(ClientExports, ACommandRunnerGivesItsOutcomeAsAPointer) {
    write_file(status_file, "before\n");
    EXPECT_EQ(joined(launchclient_thread, "exit 7"), as_pointer(0));
    EXPECT_EQ(read_file(status_file), "");
    EXPECT_EQ(recorded_commands(), Texts{"exit 7"});
    EXPECT_EQ(log_lines(), Texts{"[INFO] @launchclient_thread freerdp exit..."});
    std::filesystem::remove_all("/usr/local/vpclient/config");
    EXPECT_EQ(joined(launchclient_thread, "true"), as_pointer(-2));
    std::filesystem::create_directories("/usr/local/vpclient/config");
}

TEST_F(ClientExports, WithoutMemoryForAThreadTheClientRunsUnwatched) {
    const StandIn killall("killall");
    const StandIn client("firefox");
    pthread_attr_t former;
    pthread_attr_t huge;
    ASSERT_EQ(pthread_getattr_default_np(&former), 0);
    ASSERT_EQ(pthread_getattr_default_np(&huge), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 47U), 0);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    EXPECT_EQ(launch_firefox_connection(290), -1);
    EXPECT_EQ(qvlaunchclient(290), 0);
    ASSERT_EQ(pthread_setattr_default_np(&former), 0);
    EXPECT_TRUE(wait_until([&] { return client.calls().size() == 2; }));
    EXPECT_FALSE(file_exists(status_file));
    const Texts lines = log_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "[ERROR] @launchclient thread create fail"),
              2);
}

// --- RDP without a record --------------------------------------------------------------------

TEST_F(ClientExports, ABrokersClientIsWaitedForAndItsStatusGivenBack) {
    StandIn client("xfreerdp");
    client.runs("sleep 0.05; echo \"$#\" >/tmp/ended; exit 3");
    EXPECT_EQ(qvvelopanelaunchclient("/v:'a b' /u:\"$HOME\" x"), 3 << 8);
    EXPECT_EQ(read_file("/tmp/ended"), "3\n");
    EXPECT_EQ(client.calls(), (StandIn::Calls{{"/v:a b", "/u:/home/root", "x"}}));
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{{"xfreerdp /v:'a b' /u:\"$HOME\" x", false}}));
    EXPECT_EQ(log_lines(), Texts{});
    EXPECT_FALSE(file_exists(status_file));
}

TEST_F(ClientExports, CancellingIsZeroOrMinusOne) {
    for (int (*const cancel)() : {qvcancelconnect, cancelconnect}) {
        ScriptedOs system;
        EXPECT_EQ(cancel(), -1);
        system.printed_lines = {"12"};
        EXPECT_EQ(cancel(), 0);
        EXPECT_EQ(system.record.back(), "run kill 12");
    }
}

// --- Status ----------------------------------------------------------------------------------

TEST_F(ClientExports, AStatusIsAddedToAnObject) {
    json_object* const object = json_tokener_parse(R"({"id":"35","status":"old"})");
    EXPECT_EQ(addstatusitem(object, "0"), 0);
    EXPECT_EQ(text_of(object), R"({"id":"35","status":"0"})");
    EXPECT_EQ(addstatusitem(object, "a\"b"), 0);
    EXPECT_EQ(text_of(object), R"({"id":"35","status":"a\"b"})");
    json_object_put(object);
}

TEST_F(ClientExports, AStatusIsAnObjectOfItsOwnForEachCall) {
    for (json_object* (*const getter)(std::uint32_t) : {getclientstatus, qvgetclientstatus}) {
        json_object* const first = getter(500);
        json_object* const second = getter(500);
        EXPECT_NE(first, second);
        EXPECT_EQ(text_of(first), R"({"status":"1"})");
        json_object_put(first);
        EXPECT_EQ(text_of(second), R"({"status":"1"})");
        json_object_put(second);
    }
}

TEST(ClientSwitches, OnlyTheLowByteOfAFlagCounts) {
    const std::pair<int, const char*> cases[] = {{0, "off"},   {1, "on"},   {255, "on"},
                                                 {256, "off"}, {257, "on"}, {-1, "on"}};
    for (const auto& [flag, shown] : cases) {
        EXPECT_EQ(qvsetvmwaretoolbar(flag), 0);
        json_object* object = qvgetvmwaretoolbar();
        EXPECT_STREQ(json_object_get_string(json_object_object_get(object, "toolbar")), shown);
        json_object_put(object);
    }
}

TEST(ClientSwitches, TheCameraReadsBackAsNull) {
    const test::StandIn qvplugin("qvplugin");
    EXPECT_EQ(qvsethdxcamera(1), 0);
    EXPECT_EQ(qvgethdxcamera(), nullptr);
    EXPECT_EQ(qvplugin.calls(),
              (test::StandIn::Calls{{"1", "90", "aGR4Y2FtZXJhPW9u"}, {"0", "90"}}));
}

} // namespace qvtc::test
