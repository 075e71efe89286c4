#include "core/log.hpp"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <thread>

#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "qvtcapi/qvtcapi.h"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

constexpr const char* system_log = "/home/root/system.log";
constexpr std::time_t moment = 1'772'683'629; // 2026-03-05 04:07:09 UTC

using Lines = std::vector<std::string>;

unsigned mode_of(const char* path) {
    struct stat status {};
    EXPECT_EQ(stat(path, &status), 0);
    return status.st_mode & 07777U;
}

/// Local time is three and a half hours behind.
class Log : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(system_log);
        setenv("TZ", "NST3:30", 1);
    }
    void TearDown() override {
        std::filesystem::remove_all(system_log);
        unsetenv("TZ");
    }
};

} // namespace

TEST_F(Log, LineIsLocalTimeTagAndMessage) {
    OsCalls calls;
    calls.set_time(moment);
    EXPECT_EQ(qvlog(0, "trace %d", 1), 0);
    calls.set_time(moment + 11L * 3600);
    EXPECT_EQ(qvlog(1, "event '%s' %c%%", "name", 'x'), 0);
    calls.set_time(1'798'770'600); // the last half hour of a year that is over in UTC
    EXPECT_EQ(qvlog(2, "plain"), 0);
    EXPECT_EQ(read_file(system_log), "2026-03-05 00:37:09 [DEBUG] trace 1\n"
                                     "2026-03-05 11:37:09 [INFO] event 'name' x%\n"
                                     "2026-12-31 23:00:00 [ERROR] plain\n");
}

TEST_F(Log, OtherLevelWritesNothingButCreatesTheFile) {
    for (const int level : {5, 3, -1, 1 << 30, -1 << 31}) {
        std::filesystem::remove(system_log);
        EXPECT_EQ(qvlog(level, "message"), 0);
        EXPECT_EQ(read_file(system_log), "") << level;
    }
    qvlog(1, "before");
    const std::string before = read_file(system_log);
    qvlog(5, "message");
    EXPECT_EQ(read_file(system_log), before);
}

TEST_F(Log, EachCallAppends) {
    write_file(system_log, "older line\n");
    OsCalls calls;
    calls.set_time(moment);
    qvlog(1, "a");
    log(Level::info, "%s %d", "b", 2);
    log_message(Level::error, "c %d %s");
    EXPECT_EQ(read_file(system_log), "older line\n"
                                     "2026-03-05 00:37:09 [INFO] a\n"
                                     "2026-03-05 00:37:09 [INFO] b 2\n"
                                     "2026-03-05 00:37:09 [ERROR] c %d %s\n");
    // In one write, or another program's line could come between.
    EXPECT_EQ(calls.on_files(), Lines{std::string("write ") + system_log});
}

TEST_F(Log, NewlineOfAMessageGivesAnEmptyLine) {
    OsCalls calls;
    calls.set_time(moment);
    qvlog(2, "key = %s\n", "a");
    qvlog(0, "%s", "");
    EXPECT_EQ(read_file(system_log), "2026-03-05 00:37:09 [ERROR] key = a\n\n"
                                     "2026-03-05 00:37:09 [DEBUG] \n");
}

TEST_F(Log, LongMessageIsCutAt10239Bytes) {
    for (const std::size_t length : {10'238U, 10'239U, 10'240U, 100'000U}) {
        std::filesystem::remove(system_log);
        const std::string message(length, 'x');
        EXPECT_EQ(qvlog(1, "%s", message.c_str()), 0);
        EXPECT_EQ(log_lines(), Lines{"[INFO] " + message.substr(0, 10'239)});
        log_message(Level::info, message);
        EXPECT_EQ(log_lines().back(), "[INFO] " + message.substr(0, 10'239));
        EXPECT_TRUE(read_file(system_log).ends_with("x\n"));
    }
}

TEST_F(Log, NewFileIsPrivateAndAnExistingOneKeepsItsMode) {
    const mode_t former = umask(0);
    qvlog(1, "a");
    umask(former);
    EXPECT_EQ(mode_of(system_log), 0600U);
    chmod(system_log, 0644);
    qvlog(1, "b");
    EXPECT_EQ(mode_of(system_log), 0644U);
}

TEST_F(Log, MessageIsLostInSilenceWhenTheFileCannotBeOpened) {
    const auto log_one = [] {
        std::string errors;
        const std::string output = capture_stdout([&] {
            errors = capture_stderr([] {
                EXPECT_EQ(qvlog(2, "message"), 0);
                EXPECT_EQ(qvlog(5, "message"), 0);
            });
        });
        EXPECT_EQ(output + errors, "");
    };
    std::filesystem::create_directory(system_log);
    log_one();
    std::filesystem::remove(system_log);
    ASSERT_EQ(mount("none", "/home/root", "tmpfs", MS_RDONLY, nullptr), 0);
    log_one();
    EXPECT_FALSE(file_exists(system_log));
    ASSERT_EQ(umount("/home/root"), 0);
    std::filesystem::rename("/home/root", "/home/away");
    log_one();
    EXPECT_FALSE(file_exists("/home/root"));
    std::filesystem::rename("/home/away", "/home/root");
    {
        const DescriptorLimit limit(0);
        EXPECT_EQ(qvlog(2, "message"), 0);
    }
    EXPECT_FALSE(file_exists(system_log));
}

TEST_F(Log, LeavesNoDescriptorBehind) {
    const std::size_t before = open_descriptors();
    for (int i = 0; i < 20; ++i) qvlog(i % 4, "message");
    EXPECT_EQ(open_descriptors(), before);
}

TEST_F(Log, LinesOfEightThreadsAreWhole) {
    constexpr int threads = 8;
    constexpr int lines = 200;
    const auto message = [](int thread, int line) {
        const auto length = static_cast<std::size_t>(line * 37 % 3000);
        return std::to_string(thread) + "/" + std::to_string(line) + std::string(length, 'x') + ".";
    };
    std::vector<std::thread> writers;
    Lines expected;
    for (int thread = 0; thread < threads; ++thread) {
        writers.emplace_back([&message, thread] {
            for (int line = 0; line < lines; ++line)
                qvlog(line % 3, "%s", message(thread, line).c_str());
        });
        constexpr const char* tags[] = {"[DEBUG] ", "[INFO] ", "[ERROR] "};
        for (int line = 0; line < lines; ++line)
            expected.push_back(tags[line % 3] + message(thread, line));
    }
    for (std::thread& writer : writers) writer.join();
    Lines written = log_lines();
    std::sort(written.begin(), written.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(written, expected);
}

} // namespace qvtc::test
