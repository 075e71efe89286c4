#include "core/file_lock.hpp"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/faults/alarms.hpp"
#include "core/faults/descriptors.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

const std::string path = "/run/file_lock_test";

class AFileLock : public testing::Test {
  protected:
    void SetUp() override { std::filesystem::remove_all(path); }
    void TearDown() override { std::filesystem::remove_all(path); }
};

bool is_free() {
    const LockWait at_once(0s);
    return FileLock(path).acquired();
}

} // namespace

TEST_F(AFileLock, IsHeldByOneAtATime) {
    {
        const FileLock first(path);
        EXPECT_TRUE(first.acquired());
        const LockWait wait(1s);
        const auto start = Clock::now();
        EXPECT_EQ(FileLock(path).error(), ETIMEDOUT);
        EXPECT_GE(Clock::now() - start, 1s);
        EXPECT_LT(Clock::now() - start, 5s);
        EXPECT_EQ(LockWait::left(), 0s);
        EXPECT_TRUE(FileLock(path + "_2").acquired());
    }
    EXPECT_TRUE(is_free());
}

TEST_F(AFileLock, IsAnEmptyFileThatOnlyItsOwnerCanOpen) {
    const mode_t former = umask(0);
    { const FileLock lock(path); }
    umask(former);
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0600U);
    EXPECT_EQ(status.st_size, 0);
}

TEST_F(AFileLock, IsWaitedForWhileAnotherThreadHoldsItWhateverSignalsCome) {
    auto held = std::make_unique<FileLock>(path);
    const Alarms alarms(2);
    std::atomic<bool> released = false;
    std::thread waiting([&] {
        const FileLock lock(path);
        EXPECT_TRUE(lock.acquired());
        EXPECT_TRUE(released);
    });
    std::this_thread::sleep_for(30ms);
    released = true;
    held.reset();
    waiting.join();
}

TEST_F(AFileLock, EndsWithTheProcessThatHeldIt) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const FileLock lock(path);
        [[maybe_unused]] const ssize_t count = write(ends[1], "x", 1);
        pause();
    }
    char ready = 0;
    ASSERT_EQ(read(ends[0], &ready, 1), 1);
    close(ends[0]);
    close(ends[1]);
    EXPECT_FALSE(is_free());
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_TRUE(is_free());
}

TEST_F(AFileLock, IsNotHandedToAProgramThatIsStartedMeanwhile) {
    {
        const FileLock lock(path);
        ASSERT_EQ(std::system("sleep 1000 >/dev/null 2>&1 & echo $! >/tmp/sleeper"), 0);
    }
    EXPECT_TRUE(is_free());
    ASSERT_EQ(std::system("kill $(cat /tmp/sleeper)"), 0);
}

// Whoever waits for a file that is removed, or given another name, would else hold a lock that
// nobody meets.
TEST_F(AFileLock, IsThatOfTheFileThatBearsTheNameInTheEnd) {
    auto first = std::make_unique<FileLock>(path);
    std::atomic<bool> held = false;
    std::atomic<bool> done = false;
    std::thread second([&] {
        const FileLock lock(path);
        held = lock.acquired();
        while (!done) std::this_thread::sleep_for(1ms);
    });
    std::this_thread::sleep_for(20ms);
    std::filesystem::rename(path, path + ".away");
    first.reset();
    EXPECT_TRUE(wait_until([&] { return held.load(); }));
    EXPECT_FALSE(is_free());
    done = true;
    second.join();
}

TEST_F(AFileLock, IsRefusedForAFileThatIsNoneOrCannotBeOpened) {
    write_file("/tmp/elsewhere", "");
    std::filesystem::create_symlink("/tmp/elsewhere", path);
    EXPECT_EQ(FileLock(path).error(), ELOOP);
    const DescriptorLimit limit(0);
    EXPECT_EQ(FileLock(path).error(), EMFILE);
}

TEST_F(AFileLock, IsNotNeededWhereNoFileCanBe) {
    EXPECT_TRUE(FileLock("/run/none/lock").acquired());
    EXPECT_TRUE(FileLock("/proc/version/lock").acquired());
}

} // namespace qvtc::test
