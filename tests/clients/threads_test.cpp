// What the front-end's threads, the watches and the clients have of each other: nothing.

#include "clients/exports.hpp"
#include "clients/watcher.hpp"

#include "connections/documents.hpp"
#include "connections/exports.hpp"
#include "core/os.hpp"
#include "support/support.hpp"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <json-c/json.h>
#include <map>
#include <thread>

namespace qvtc::test {

namespace {

namespace fs = std::filesystem;

class Threads : public FreshTerminal {
  protected:
    StandIn killall{"killall"};
    StandIn xwininfo{"xwininfo"};
};

using Descriptors = std::map<std::string, std::string>;

/// What the descriptors of a process lead to.
Descriptors descriptors_of(const std::string& process) {
    Descriptors descriptors;
    for (const auto& entry : fs::directory_iterator("/proc/" + process + "/fd")) {
        descriptors[entry.path().filename()] = fs::read_symlink(entry.path());
    }
    return descriptors;
}

/// What this process leaves to the programs that it starts.
Descriptors inheritance() {
    Descriptors descriptors = descriptors_of("self");
    std::erase_if(descriptors, [](const auto& descriptor) {
        const int flags = fcntl(std::stoi(descriptor.first), F_GETFD);
        return flags < 0 || (flags & FD_CLOEXEC) != 0;
    });
    return descriptors;
}

/// The process that runs a program of that name, of which there is one.
std::string process_of(const char* program) {
    EXPECT_EQ(std::system((std::string("pgrep -x ") + program + " >/tmp/process").c_str()), 0);
    return lines_of(read_file("/tmp/process")).at(0);
}

std::size_t threads_of_this_process() {
    const fs::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

// The thread sanitizer makes a thread's beginning and end a hundred times as dear, and a machine
// that is busy besides would not come to the end of ten thousand in the test's time.
#ifdef __SANITIZE_THREAD__
constexpr int watches = 2'000;
#else
constexpr int watches = 10'000;
#endif
constexpr std::chrono::seconds patience{60};

std::atomic<int> watched;

void watch_nothing(const std::string& pattern) {
    if (pattern == "nothing") ++watched;
}

void release(json_object* object) { json_object_put(object); }

} // namespace

TEST_F(Threads, AClientInheritsNothingOfACaptureThatGoesOn) {
    StandIn client("vncviewer");
    client.keeps_running();
    xwininfo.prints("vncviewer\n");
    store_items({record_item("vncItem_id_230", {{"serverAddress", "10.0.0.5"}})});
    Descriptors expected = inheritance();
    expected["0"] = "/dev/null"; // as of every command in the background
    expected["1"] = expected["2"] = "/home/root/vnc.log";
    std::string captured;
    std::thread capturer([&] {
        captured = os().capture("echo started >/tmp/started; "
                                "while [ ! -e /tmp/go ]; do sleep 0.01; done; echo done",
                                100);
    });
    ASSERT_TRUE(wait_until([] { return file_exists("/tmp/started"); }));
    EXPECT_EQ(qvlaunchclient(230), 0);
    ASSERT_TRUE(wait_until([&] { return client.calls().size() == 1; }));
    const std::string process = process_of("vncviewer");
    EXPECT_TRUE(wait_until([&] { return descriptors_of(process) == expected; }))
        << testing::PrintToString(descriptors_of(process)) << ", not "
        << testing::PrintToString(expected);
    write_file("/tmp/go", "");
    capturer.join(); // although the client goes on
    EXPECT_EQ(captured, "done\n");
    EXPECT_TRUE(fs::exists("/proc/" + process));
}

TEST_F(Threads, CapturesEndAtOnceWhileClientsAreStarted) {
    StandIn client("firefox");
    client.keeps_running();
    xwininfo.prints("firefox\n");
    std::atomic<bool> all_launched = false;
    std::vector<std::thread> capturers;
    std::atomic<int> wrong = 0;
    std::atomic<int> captures = 0;
    for (int i = 0; i < 2; ++i) {
        capturers.emplace_back([&] {
            while (!all_launched) {
                if (os().capture("echo captured", 100) != "captured\n") ++wrong;
                ++captures;
            }
        });
    }
    for (int launch = 0; launch < 30; ++launch) EXPECT_EQ(qvlaunchclient(290), 0);
    all_launched = true;
    for (std::thread& capturer : capturers) capturer.join(); // the clients are still running
    EXPECT_EQ(wrong, 0);
    EXPECT_GT(captures, 0);
    EXPECT_TRUE(wait_until([&] { return client.calls().size() == 30; }));
}

TEST_F(Threads, ThousandsOfWatchesLeaveNothingBehind) {
    const auto mapped = [] {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages;
    };
    const std::size_t before = threads_of_this_process() + 1; // a sanitizer's own may join them
    std::size_t mapped_early = 0;
    watched = 0;
    for (int i = 1; i <= watches; ++i) {
        ASSERT_TRUE(clients::start_watch(watch_nothing, "nothing"));
        if (i % 100 != 0) continue;
        ASSERT_TRUE(wait_until([&] { return watched == i; }, patience)) << watched << " of " << i;
        ASSERT_TRUE(wait_until([&] { return threads_of_this_process() <= before; }, patience))
            << threads_of_this_process() << " threads after " << i;
        if (i == 1000) mapped_early = mapped();
    }
    // Of threads that nobody joins, each would keep a stack of 2048 pages.
    EXPECT_LT(mapped(), mapped_early + 1000 * 2048);
}

TEST_F(Threads, EveryEntryPointMayBeCalledOnEveryThread) {
    const StandIn spice("remote-viewer");
    const StandIn web("firefox");
    const StandIn vnc("vncviewer");
    xwininfo.prints("remote-viewer firefox vncviewer\n");
    StandIn rdp("xfreerdp");
    rdp.keeps_running(); // so that the polls are counted
    ASSERT_EQ(std::system("xfreerdp &"), 0);
    ASSERT_TRUE(wait_until([&] { return rdp.calls().size() == 1; }));
    Items items;
    for (int id = 64; id < 70; ++id) {
        items.push_back(record_item("spiceItem_id_" + std::to_string(id),
                                    {{"id", std::to_string(id)}, {"serverAddress", "10.0.0.7"}}));
    }
    items.push_back(record_item("rdpItem_id_35", {{"id", "35"}, {"serverAddress", "10.0.0.5"}}));
    store_items(items);
    const auto repeat = [](auto action) {
        return std::thread([action] {
            for (int i = 0; i < 8; ++i) action(i);
        });
    };
    capture_stdout([&] {
        std::thread threads[] = {
            repeat([](int) { EXPECT_EQ(qvlaunchclient(64), 0); }),
            repeat([](int) { EXPECT_EQ(qvlaunchclient(290), 0); }),
            repeat([](int) { EXPECT_EQ(qvlaunchclient(230), 0); }),
            repeat([](int) { release(qvgetclientstatus(35)); }),
            repeat([](int) { release(qvgetclientstatus(35)); }),
            repeat([](int) { release(qvgetclientstatus(64)); }),
            repeat([](int) { release(qvgetconnections(2)); }),
            repeat([](int i) {
                std::string params = "name=" + std::to_string(i);
                EXPECT_EQ(setconnections(1, params.data()), 0);
            }),
            repeat([](int i) { EXPECT_EQ(qvdelconnection(2, 20U + static_cast<unsigned>(i)), 0); }),
            repeat([](int i) {
                EXPECT_EQ(qvsetconnectdelay(("delay=" + std::to_string(i)).c_str()), 1);
            }),
            repeat([](int) { EXPECT_EQ(qvcancelconnect(), 0); }),
        };
        for (std::thread& thread : threads) thread.join();
        // Eight records were added to the one that there was.
        EXPECT_TRUE(
            wait_until([] { return threads_of_this_process() <= 2; }, std::chrono::seconds(30)));
    });
    json_object* const list = qvgetconnections(1);
    EXPECT_EQ(json_object_array_length(json_object_object_get(list, "list")), 9U);
    release(list);
    EXPECT_EQ(stored_setting("tc_config_param_1"), "7");
    // The last watcher may still be about to write.
    EXPECT_TRUE(wait_until([] {
        return read_file("/usr/local/vpclient/config/clientstatus") ==
               "0x00000000 connect success\n";
    }));
}

} // namespace qvtc::test
