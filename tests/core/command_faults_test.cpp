// Commands on a system that refuses pipes, processes and shells, or keeps interrupting.

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/command.hpp"
#include "core/exports.hpp"
#include "core/faults/alarms.hpp"
#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "core/os.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

struct Captured {
    explicit Captured(const char* command) : bytes(16, '#') {
        result = systemex(command, bytes.data(), static_cast<int>(bytes.size()));
    }
    std::string bytes;
    int result;
};

const std::string nothing(16, '\0');

std::string padded(std::string text) {
    text.resize(16, '\0');
    return text;
}

/// Memory that a forked child shares with the test.
struct Shared {
    int result;
    bool was_there;
};

Shared* shared_memory() {
    void* const memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return new (memory) Shared{};
}

/// Takes /bin/sh away for as long as it lives; under it lies what cannot be executed.
class NoShell {
  public:
    NoShell() { EXPECT_EQ(mount("/dev/null", "/bin/sh", nullptr, MS_BIND, nullptr), 0); }
    NoShell(const NoShell&) = delete;
    NoShell& operator=(const NoShell&) = delete;
    ~NoShell() { EXPECT_EQ(umount2("/bin/sh", MNT_DETACH), 0); }
};

/// In a child that has been refused any descriptor above 0.
void allow_descriptors() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

/// Captures in a process that has no shell, and in which each forked child comes back. The
/// child prints a word, tells its result and ends; the parent's capture is returned.
Captured captured_without_a_shell(Shared& of_child) {
    const pid_t self = getpid();
    Captured captured("echo never");
    if (getpid() != self) {
        allow_descriptors();
        of_child.was_there = true;
        of_child.result = captured.result;
        [[maybe_unused]] const ssize_t count = write(STDOUT_FILENO, "child", 5);
        _exit(0);
    }
    return captured;
}

class IgnoredChildren {
  public:
    IgnoredChildren() : former_(std::signal(SIGCHLD, SIG_IGN)) {}
    IgnoredChildren(const IgnoredChildren&) = delete;
    IgnoredChildren& operator=(const IgnoredChildren&) = delete;
    ~IgnoredChildren() { std::signal(SIGCHLD, former_); }

  private:
    sighandler_t former_;
};

} // namespace

TEST(CaptureFaults, WithoutAPipeItIsMinusOneAndTheBufferIsCleared) {
    for (const unsigned descriptors : {0U, 1U}) {
        const DescriptorLimit limit(descriptors);
        const Captured captured("touch /tmp/ran");
        EXPECT_EQ(captured.result, -1);
        EXPECT_EQ(captured.bytes, nothing);
    }
    EXPECT_FALSE(file_exists("/tmp/ran"));
    EXPECT_EQ(recorded_commands(), Texts{});
    EXPECT_EQ(Captured("echo abc").bytes, padded("abc\n"));
}

TEST(CaptureFaults, ForkTakesThePlaceOfASpawnThatFails) {
    const std::size_t descriptors = open_descriptors();
    OsCalls calls;
    calls.fail("posix_spawn", ENOMEM);
    const Captured captured("echo forked; echo err >&2; exit 3");
    EXPECT_EQ(captured.result, -1);
    EXPECT_EQ(captured.bytes, padded("forked\n"));
    EXPECT_EQ(Captured("yes").bytes, "y\ny\ny\ny\ny\ny\ny\ny\n");
    ASSERT_EQ(std::system("ls /proc/self/fd >/tmp/without"), 0);
    EXPECT_EQ(Captured("ls /proc/self/fd").bytes, padded(read_file("/tmp/without")));
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_EQ(recorded_commands(), (Texts{"echo forked; echo err >&2; exit 3", "yes",
                                          "ls /proc/self/fd >/tmp/without", "ls /proc/self/fd"}));
}

TEST(CaptureFaults, SpawnIsTheNormalWayAndForkNotUsed) {
    OsCalls calls;
    calls.fail("fork", EAGAIN);
    EXPECT_EQ(Captured("echo spawned").bytes, padded("spawned\n"));
}

TEST(CaptureFaults, WithoutAProcessItIsMinusOneAndTheBufferIsCleared) {
    const std::size_t descriptors = open_descriptors();
    OsCalls calls;
    calls.fail("posix_spawn", EAGAIN).fail("fork", EAGAIN);
    const Captured captured("touch /tmp/ran");
    EXPECT_EQ(captured.result, -1);
    EXPECT_EQ(captured.bytes, nothing);
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_FALSE(file_exists("/tmp/ran"));
}

TEST(CaptureFaults, ChildOfAMissingShellGoesOnInTheCallersCode) {
    Shared* const child = shared_memory();
    const NoShell missing;
    const Captured captured = captured_without_a_shell(*child);
    EXPECT_TRUE(child->was_there);
    EXPECT_EQ(child->result, -1);
    EXPECT_EQ(captured.result, -1);
    // Its standard output was the capture's already.
    EXPECT_EQ(captured.bytes, padded("child"));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(CaptureFaults, OfTheLibraryItselfIsEmptyAndStaysOneProcess) {
    const pid_t self = getpid();
    bool forked = false;
    OsCalls calls;
    const auto expect_one_process = [&](const std::function<void()>& capture) {
        calls.before("fork", [&] { forked = true; });
        capture();
        if (getpid() != self) _exit(0);
        EXPECT_FALSE(forked);
    };
    const std::string too_long(140'000, 'x'); // for the kernel
    char output[1024] = "former";
    expect_one_process([&] { EXPECT_EQ(os().capture("echo " + too_long, 10), ""); });
    expect_one_process([&] { EXPECT_EQ(stringdecode(too_long.c_str(), output), -1); });
    EXPECT_STREQ(output, "");
    expect_one_process([&] { EXPECT_EQ(detect_process(too_long.c_str()), 0); });
    const NoShell missing;
    expect_one_process([&] { EXPECT_EQ(os().capture("echo never", 10), ""); });
    expect_one_process([&] { EXPECT_EQ(stringdecode("never", output), -1); });
    expect_one_process([&] { EXPECT_EQ(detect_process("never"), 0); });
    expect_one_process([&] { EXPECT_EQ(execmd("echo never", output), -1); });
}

TEST(CaptureFaults, ChildWithoutAStandardOutputGoesOnInTheCallersCode) {
    static bool refuse_descriptors = false;
    pthread_atfork(nullptr, nullptr, [] {
        if (!refuse_descriptors) return;
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = 1; // so that 1 is no number for a descriptor
        setrlimit(RLIMIT_NOFILE, &limit);
    });
    refuse_descriptors = true;
    Shared* const child = shared_memory();
    OsCalls calls;
    calls.fail("posix_spawn", ENOMEM);
    std::optional<Captured> captured;
    const std::string printed =
        capture_stdout([&] { captured = captured_without_a_shell(*child); });
    refuse_descriptors = false;
    EXPECT_TRUE(child->was_there);
    EXPECT_EQ(child->result, -1);
    EXPECT_EQ(captured->result, -1);
    EXPECT_EQ(captured->bytes, nothing);
    EXPECT_EQ(printed, "child");
}

TEST(CaptureFaults, ResultIsZeroWhenThereIsNothingToWaitFor) {
    const IgnoredChildren ignored;
    const Captured captured("echo abc");
    EXPECT_EQ(captured.result, 0);
    EXPECT_EQ(captured.bytes, padded("abc\n"));
    OsCalls calls;
    calls.fail("posix_spawn", ENOMEM);
    EXPECT_EQ(Captured("echo abc").result, 0);
}

TEST(CaptureFaults, ClosedStandardDescriptorsOfTheCallerDoNotMatter) {
    const std::vector<std::vector<int>> sets = {{1}, {0, 1}, {0, 1, 2}, {0}, {1, 2}};
    for (const bool forked : {false, true}) {
        for (const std::vector<int>& closed : sets) {
            OsCalls calls;
            if (forked) calls.fail("posix_spawn", ENOMEM);
            std::vector<std::unique_ptr<ClosedDescriptor>> gone;
            for (const int number : closed)
                gone.push_back(std::make_unique<ClosedDescriptor>(number));
            const Captured captured("echo abc; [ -e /proc/self/fd/0 ] && echo in");
            const std::size_t descriptors = open_descriptors();
            Captured("echo abc");
            const std::size_t left = open_descriptors();
            const bool has_input = closed.front() != 0;
            gone.clear();
            EXPECT_EQ(left, descriptors);
            EXPECT_EQ(captured.bytes, padded(has_input ? "abc\nin\n" : "abc\n")) << closed.size();
            EXPECT_EQ(captured.result, -1);
        }
    }
}

TEST(CaptureFaults, SignalsInterruptNeitherReadingNorWaiting) {
    const Alarms alarms(3);
    // All output comes at the end; then there is none, and the wait is long.
    EXPECT_EQ(Captured("sleep 0.2; echo late").bytes, padded("late\n"));
    const Captured captured("exec >/dev/null; sleep 0.2; touch /tmp/ended");
    EXPECT_EQ(captured.result, -1);
    EXPECT_TRUE(file_exists("/tmp/ended"));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_GT(alarms.count(), 20);
}

TEST(CaptureFaults, SignalsDoNotCutAnOverlongOutputShort) {
    const Alarms alarms(3);
    // The command must meet no closed pipe before it prints what does not fit.
    const Captured captured("printf 1234567890123456; sleep 0.1; echo more && touch /tmp/printed");
    EXPECT_EQ(captured.bytes, "1234567890123456");
    EXPECT_TRUE(file_exists("/tmp/printed"));
}

TEST(LineFaults, SignalsDoNotCutOutputShort) {
    const Alarms alarms(3);
    char line[64] = {};
    EXPECT_EQ(execmd("printf 'a '; sleep 0.1; echo b", line), 0);
    EXPECT_STREQ(line, "ab");
    EXPECT_EQ(output_lines("printf a; sleep 0.1; echo b; sleep 0.1; echo c"), (Texts{"ab", "c"}));
    EXPECT_GT(alarms.count(), 20);
}

TEST(LineFaults, CommandThatCannotBeStartedIsLogged) {
    std::filesystem::remove("/home/root/system.log");
    std::string line(64, '#');
    {
        const DescriptorLimit limit(1); // one for the log
        EXPECT_EQ(execmd("echo abc", line.data()), -1);
        errno = 0;
        EXPECT_EQ(output_lines("echo abc"), std::nullopt);
        EXPECT_EQ(errno, EMFILE);
    }
    EXPECT_EQ(line, std::string(64, '#'));
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] @execmd popen error Too many open files"}));
    EXPECT_EQ(recorded_commands(), Texts{});
}

} // namespace qvtc::test
