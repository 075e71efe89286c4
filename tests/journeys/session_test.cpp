#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* client_status_file = "/usr/local/vpclient/config/clientstatus";

class Session : public Journey {};

unsigned stored_demo(const std::string& name) {
    return store_record({{"name", name},
                         {"serverAddress", "127.0.0.1"},
                         {"username", "demo"},
                         {"password", stored_password("password")},
                         {"colorDepth", "32"}});
}

std::vector<std::string> window_of(const std::string& name) {
    return {"\"" + name + "\": (\"xfreerdp\" \"xfreerdp\")  1280x800+0+0  +0+0"};
}

bool wait_for_window(const std::string& name) {
    return client_windows_once(window_of(name)) == window_of(name);
}

std::size_t thread_count() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(threads), end(threads)));
}

/// The real window lister, which also notes for each call whether it saw a client.
void note_sightings(StandIn& lister) {
    lister.runs(R"(tree=$(/usr/bin/xwininfo "$@")
case $tree in *xfreerdp*) echo seen ;; *) echo missed ;; esac >>/tmp/sightings
printf '%s\n' "$tree")");
}

TEST_F(Session, ComesUpAndIsWatchedUntilTheTenthSighting) {
    start_remote_desktop("--password");
    StandIn reset_usb("/usr/bin/resetusb.sh");
    StandIn window_lister("xwininfo");
    note_sightings(window_lister);
    write_file(client_status_file, "0x00000001 connect failed\n");
    const std::size_t threads_before = thread_count();
    const unsigned id = stored_demo("desk");

    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_TRUE(wait_until([] { return read_file(client_status_file) == "\n"; }));
    ASSERT_TRUE(wait_for_colour(20, 20, remote_ground));

    ASSERT_TRUE(wait_until([&] { return thread_count() == threads_before; }, patience));
    EXPECT_EQ(reset_usb.calls(), (StandIn::Calls{{}}));
    std::vector<std::string> sightings = lines_of(read_file("/tmp/sightings"));
    EXPECT_EQ(std::erase(sightings, "seen"), 10);
    EXPECT_LT(sightings.size(), 10U);
    EXPECT_EQ(client_windows(), window_of("desk"));
    EXPECT_EQ(read_file(client_status_file), "\n");
    EXPECT_EQ(client_words(), "");
}

TEST_F(Session, CountsAsConnectedWhenItStillRunsAtTheSeventhQuestion) {
    start_remote_desktop("--password");
    const unsigned id = stored_demo("desk");
    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_TRUE(wait_for_window("desk"));
    std::vector<std::string> answers;
    for (int i = 0; i < 14; ++i) answers.push_back(status_of(id));
    EXPECT_EQ(answers, (std::vector<std::string>{"0", "0", "0", "0", "0", "0", "1", //
                                                 "0", "0", "0", "0", "0", "1", "0"}));
}

TEST_F(Session, EndsTheOneBefore) {
    start_remote_desktop("--password");
    ASSERT_EQ(qvlaunchclient(stored_demo("first")), 0);
    ASSERT_TRUE(wait_for_window("first"));
    const unsigned second = stored_demo("second");
    ASSERT_EQ(qvlaunchclient(second), 0);
    ASSERT_TRUE(wait_for_window("second"));
    EXPECT_EQ(status_of(second), "0");
}

TEST_F(Session, IsReportedAsGoneAfterTheServerHasGone) {
    start_remote_desktop("--password");
    const unsigned id = stored_demo("desk");
    ASSERT_EQ(qvlaunchclient(id), 0);
    ASSERT_TRUE(wait_for_colour(20, 20, remote_ground));
    ASSERT_EQ(output_of("killall freerdp-shadow-cli").status, 0);
    ASSERT_TRUE(wait_until([] { return !runs("xfreerdp"); }, patience));
    // The server's end comes as a reset if it had not read everything yet.
    const std::string words = client_words();
    const bool was_reset = words.find("Connection reset by peer") != std::string::npos;
    EXPECT_EQ(status_of(id), was_reset ? status_from("Connection reset by peer") : status_unknown())
        << words;
    EXPECT_EQ(client_windows(), std::vector<std::string>{});
}

} // namespace
} // namespace qvtc::test
