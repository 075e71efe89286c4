// Launches by the thousand: what comes and goes with one, its watch's thread, the pipes, the
// shells and the client, must be gone in the end, and so must the memory.

#include "clients/exports.hpp"

#include "connections/documents.hpp"
#include "core/os.hpp"
#include "core/text.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>
#include <thread>

namespace qvtc::test {

namespace {

namespace fs = std::filesystem;

struct Kind {
    const char* client;
    const char* item;
    unsigned id;
};
constexpr Kind kinds[] = {{"xfreerdp", "rdpItem_id_35", 35},
                          {"remote-viewer", "spiceItem_id_70", 70},
                          {"vmware-view", "vmwareItem_id_160", 160},
                          {"vncviewer", "vncItem_id_230", 230},
                          {"firefox", "firefox_id_290", 290}};

/// Everything that a launch may leave behind.
struct Remains {
    std::size_t threads = 0;
    std::size_t descriptors = 0;
    std::size_t processes = 0;

    bool operator==(const Remains&) const = default;
};

void PrintTo(const Remains& remains, std::ostream* stream) {
    *stream << remains.threads << " threads, " << remains.descriptors << " descriptors, "
            << remains.processes << " processes";
}

std::size_t entries_of(const char* directory) {
    const fs::directory_iterator entries(directory);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

Remains remains() {
    std::size_t processes = 0;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        if (std::isdigit(static_cast<unsigned char>(entry.path().filename().string()[0])) != 0) {
            ++processes;
        }
    }
    return {entries_of("/proc/self/task"), entries_of("/proc/self/fd"), processes};
}

bool are_gone(const Remains& before) {
    return wait_until([&] { return remains() == before; }, std::chrono::seconds(60));
}

std::size_t bytes_in_use() { return mallinfo2().uordblks; }

/// The system as it is where something could be left behind: threads, the shell of each client and
/// one captured program for each watch are real. Commands that come and go within a call, and the
/// time between two looks, are left out.
class BriskOs final : public Os {
  public:
    int run(const std::string& command) override {
        if (!command.ends_with('&')) return 0;
        ++clients;
        return real_.run(command);
    }
    std::string capture(const std::string& command, std::size_t limit) override {
        if (!contains(command, "xwininfo")) return "";
        thread_local bool asked = false;
        if (asked) return "a window\n";
        asked = true;
        ++looks;
        return real_.capture("echo a window", limit);
    }
    std::optional<std::vector<std::string>> lines(const std::string& command) override {
        return real_.lines(command);
    }
    bool exists(const char* path) override { return real_.exists(path); }
    std::time_t now() override { return real_.now(); }
    void sleep(unsigned) override {}
    bool start_thread(std::function<void()> body) override {
        return real_.start_thread([this, body = std::move(body)] {
            body();
            ++watches_ended; // the last that the thread sees of this
        });
    }

    std::atomic<int> clients = 0;
    std::atomic<int> looks = 0;
    std::atomic<int> watches_ended = 0;

  private:
    Os& real_ = os();
    ScopedOs in_force_{*this};
};

class Soak : public FreshTerminal {
  protected:
    void SetUp() override {
        std::thread([] {}).join(); // a sanitizer starts one of its own with the first
        Items items;
        for (const Kind& kind : kinds) {
            items.push_back(record_item(kind.item, {{"id", std::to_string(kind.id)},
                                                    {"serverAddress", "10.0.0.5"},
                                                    {"username", "u1"}}));
        }
        store_items(items);
    }
};

} // namespace

TEST_F(Soak, AThousandLaunchesOfEveryKindLeaveNothingBehind) {
    constexpr int launches = 1000;
    constexpr int settled = 200;
    constexpr int together = 20; // so that watches overlap, but do not pile up
    for (const Kind& kind : kinds) {
        fs::create_symlink("/bin/true", std::string("/usr/local/bin/") + kind.client);
    }
    BriskOs system;
    const Remains before = remains();
    std::size_t bytes_early = 0;
    for (int i = 1; i <= launches; ++i) {
        for (const Kind& kind : kinds) ASSERT_EQ(qvlaunchclient(kind.id), 0);
        if (i % together == 0) {
            ASSERT_TRUE(are_gone(before))
                << "after " << i << " launches of each kind: " << testing::PrintToString(remains());
        }
        if (i == settled) bytes_early = bytes_in_use();
    }
    EXPECT_EQ(system.clients, launches * static_cast<int>(std::size(kinds)));
    EXPECT_EQ(system.watches_ended, launches * static_cast<int>(std::size(kinds)));
    EXPECT_EQ(system.looks, launches * static_cast<int>(std::size(kinds)));
    // Less than a hundred bytes a launch, so nothing of it.
    EXPECT_LT(bytes_in_use(), bytes_early + (launches - settled) * std::size(kinds) * 100);
}

// The same with every command and every second as it is, therefore less often.
TEST_F(Soak, RealLaunchesLeaveNothingBehind) {
    constexpr int launches = 10;
    const StandIn killall("killall");
    const StandIn reset_usb("/usr/bin/resetusb.sh");
    const StandIn qvplugin("qvplugin");
    const StandIn xrandr("xrandr");
    StandIn xwininfo("xwininfo");
    xwininfo.prints("xfreerdp remote-view vmware-view vncviewer firefox\n");
    const StandIn rdp("xfreerdp");
    const StandIn spice("remote-viewer");
    const StandIn horizon("vmware-view");
    const StandIn vnc("vncviewer");
    const StandIn web("firefox");
    const Remains before = remains();
    for (int i = 0; i < launches; ++i) {
        for (const Kind& kind : kinds) ASSERT_EQ(qvlaunchclient(kind.id), 0);
    }
    EXPECT_TRUE(are_gone(before)) << testing::PrintToString(remains());
    for (const StandIn* const client : {&rdp, &spice, &horizon, &vnc, &web}) {
        EXPECT_EQ(client->calls().size(), static_cast<std::size_t>(launches)) << client->path();
    }
    EXPECT_EQ(reset_usb.calls().size(), static_cast<std::size_t>(launches));
}

} // namespace qvtc::test
