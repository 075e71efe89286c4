#include "core/os.hpp"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <pthread.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>

#include "core/faults/alarms.hpp"
#include "core/faults/os_calls.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;
using Clock = std::chrono::steady_clock;

/// Has a name, and nothing else.
class NamedOs : public Os {
  public:
    explicit NamedOs(std::string name) : name_(std::move(name)) {}
    int run(const std::string&) override { return 0; }
    std::string capture(const std::string&, std::size_t) override { return name_; }
    std::optional<Texts> lines(const std::string&) override { return Texts{name_}; }
    bool exists(const char*) override { return false; }
    std::time_t now() override { return 0; }
    void sleep(unsigned) override {}
    bool start_thread(std::function<void()>) override { return false; }

  private:
    std::string name_;
};

/// Threads of this process, from the kernel's list.
std::size_t threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

/// The same before a test; a sanitizer starts one of its own with the first that a program starts.
std::size_t threads_at_rest() {
    std::thread([] {}).join();
    return threads();
}

/// Address space in use, in megabytes.
long address_space() {
    std::ifstream file("/proc/self/statm");
    long pages = 0;
    file >> pages;
    return pages / 256;
}

} // namespace

TEST(Os, RunsATextUnderTheShellAndGivesItsWaitStatus) {
    EXPECT_EQ(os().run("true"), 0);
    EXPECT_EQ(WEXITSTATUS(os().run("exit 3")), 3);
    EXPECT_EQ(WTERMSIG(os().run("kill -9 $$")), 9);
    EXPECT_EQ(
        recorded_command_details(),
        (std::vector<RecordedCommand>{{"true", false}, {"exit 3", false}, {"kill -9 $$", false}}));
}

TEST(Os, CapturesAtMostTheLimitUpToTheFirstNul) {
    const struct {
        const char* command;
        std::size_t limit;
        std::string expected;
    } cases[] = {
        {"echo abc", 16, "abc\n"},           {"echo abc", 4, "abc\n"}, {"echo abcd", 4, "abcd"},
        {"printf 'a\\0b'", 16, "a"},         {"true", 16, ""},         {"echo abc", 0, ""},
        {"echo abc >&2 2>/dev/null", 9, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(os().capture(c.command, c.limit), c.expected);
    EXPECT_EQ(os().lines("echo a; echo b"), (Texts{"a", "b"}));
}

TEST(Os, SeesWhatExists) {
    write_file("/tmp/there", "");
    std::filesystem::create_symlink("/tmp/nowhere", "/tmp/dangling");
    EXPECT_TRUE(os().exists("/tmp/there"));
    EXPECT_TRUE(os().exists("/tmp"));
    EXPECT_FALSE(os().exists("/tmp/not_there"));
    EXPECT_FALSE(os().exists("/tmp/dangling"));
}

TEST(Os, KnowsTheTime) {
    OsCalls calls;
    calls.set_time(1'794'700'800);
    EXPECT_EQ(os().now(), 1'794'700'800);
}

TEST(Os, SleepsAsLongAsAskedWhateverInterrupts) {
    const Alarms alarms(20);
    const auto start = Clock::now();
    os().sleep(1);
    const auto slept = Clock::now() - start;
    EXPECT_GE(slept, std::chrono::seconds(1));
    EXPECT_LT(slept, std::chrono::seconds(5));
    EXPECT_GT(alarms.count(), 20);
    os().sleep(0);
}

TEST(Os, StartsAThreadAndGoesOn) {
    const std::size_t before = threads_at_rest();
    std::atomic<bool> go_on = false;
    std::atomic<bool> done = false;
    ASSERT_TRUE(os().start_thread([&] {
        while (!go_on) std::this_thread::yield();
        done = true;
    }));
    EXPECT_FALSE(done);
    go_on = true;
    EXPECT_TRUE(wait_until([&] { return done && threads() == before; }));
}

TEST(Os, ThreadMayThrowOrLeaveByTheThreadLibrarysDoor) {
    static std::atomic<int> released = 0;
    struct Resource {
        ~Resource() { ++released; }
    };
    const std::size_t before = threads_at_rest();
    ASSERT_TRUE(os().start_thread([] {
        const Resource resource;
        throw std::runtime_error("lost");
    }));
    ASSERT_TRUE(os().start_thread([] {
        const Resource resource;
        pthread_exit(nullptr);
    }));
    EXPECT_TRUE(wait_until([&] { return released == 2 && threads() == before; }));
}

TEST(Os, TenThousandThreadsLeaveNothingBehind) {
    std::atomic<int> ended = 0;
    const auto run_one = [&] {
        const int before = ended;
        ASSERT_TRUE(os().start_thread([&] { ++ended; }));
        while (ended == before) std::this_thread::yield();
    };
    const std::size_t threads_before = threads_at_rest();
    run_one();
    const long before = address_space();
    for (int i = 0; i < 10'000; ++i) run_one();
    EXPECT_TRUE(wait_until([&] { return threads() == threads_before; }));
    // Each thread that stayed would keep a stack of megabytes.
    EXPECT_LT(address_space() - before, 1000);
}

TEST(Os, SaysWhenThereIsNoThreadToBeHad) {
    OsCalls calls;
    calls.fail("pthread_create", EAGAIN);
    bool ran = false;
    EXPECT_FALSE(os().start_thread([&] { ran = true; }));
    EXPECT_FALSE(ran);
}

TEST(ScopedOs, IsInForceForEveryThreadAsLongAsItLives) {
    NamedOs outer("outer");
    NamedOs inner("inner");
    const auto name_in_thread = [] {
        return std::async(std::launch::async, [] { return os().capture("echo real", 16); }).get();
    };
    {
        const ScopedOs scope(outer);
        EXPECT_EQ(name_in_thread(), "outer");
        {
            const ScopedOs inner_scope(inner);
            EXPECT_EQ(name_in_thread(), "inner");
        }
        EXPECT_EQ(name_in_thread(), "outer");
    }
    EXPECT_EQ(name_in_thread(), "real\n");
}

} // namespace qvtc::test
