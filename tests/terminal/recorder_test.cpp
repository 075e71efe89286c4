#include "support/support.hpp"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <linux/sched.h>
#include <memory>
#include <string>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

void run(const std::string& text) { ASSERT_EQ(std::system(text.c_str()), 0) << text; }

std::string capture_with_popen(const std::string& text) {
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(popen(text.c_str(), "r"), pclose);
    std::string output;
    for (int letter = 0; (letter = std::fgetc(stream.get())) != EOF;) {
        output += static_cast<char>(letter);
    }
    return output;
}

/// Runs a shell that gets the given process number.
void run_as_process(pid_t number, const char* text) {
    clone_args arguments{};
    arguments.exit_signal = SIGCHLD;
    arguments.set_tid = reinterpret_cast<std::uintptr_t>(&number);
    arguments.set_tid_size = 1;
    const long child = syscall(SYS_clone3, &arguments, sizeof arguments);
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", text, nullptr);
        _exit(127);
    }
    ASSERT_EQ(child, number);
    int status = -1;
    ASSERT_EQ(waitpid(number, &status, 0), number);
    ASSERT_EQ(status, 0);
}

} // namespace

TEST(Recorder, KeepsTextsToTheByteAndInOrder) {
    const Texts texts = {"true",     "echo \"a  b\" >/dev/null", "true '\n\n'\ntrue\n",
                         "  true  ", "true '\t\xc3\xa4\xff'",    ": " + std::string(100'000, 'x')};
    for (const std::string& text : texts) run(text);
    EXPECT_EQ(recorded_commands(), texts);
}

TEST(Recorder, LosesNothingOfFourThreadsOfTwoHundredCommands) {
    constexpr int count = 200;
    std::vector<std::thread> threads;
    for (char name = 'a'; name < 'e'; ++name) {
        threads.emplace_back([name] {
            for (int i = 0; i < count; ++i) run(": " + std::string(1, name) + std::to_string(i));
        });
    }
    for (std::thread& thread : threads) thread.join();
    const Texts recorded = recorded_commands();
    EXPECT_EQ(recorded.size(), 4U * count);
    for (char name = 'a'; name < 'e'; ++name) {
        Texts expected;
        for (int i = 0; i < count; ++i)
            expected.push_back(": " + std::string(1, name) + std::to_string(i));
        Texts own;
        for (const std::string& text : recorded) {
            if (text[2] == name) own.push_back(text);
        }
        EXPECT_EQ(own, expected);
    }
}

TEST(Recorder, TellsCapturedCommandsFromOthers) {
    EXPECT_EQ(capture_with_popen("echo captured"), "captured\n");
    run("true");
    EXPECT_EQ(capture_stdout([] { run("echo printed"); }), "printed\n");
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{
                  {"echo captured", true}, {"true", false}, {"echo printed", false}}));
}

TEST(Recorder, LeavesOutWhatScriptsRun) {
    run("sh -c 'true first'; sh -c 'true second'; true");
    EXPECT_EQ(recorded_commands(), Texts{"sh -c 'true first'; sh -c 'true second'; true"});
}

TEST(Recorder, LeavesOutAShellThatTakesThePlaceOfItsCommand) {
    run("sh -c 'exec sh -c true'");
    run("true");
    EXPECT_EQ(recorded_commands(), (Texts{"sh -c 'exec sh -c true'", "true"}));
}

TEST(Recorder, KeepsCommandsWhoseProcessesHadTheSameNumber) {
    run_as_process(4000, "true first");
    // Start times are counted in hundredths of a second.
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(wait_until(
        [&] { return std::chrono::steady_clock::now() - start > std::chrono::milliseconds(20); }));
    run_as_process(4000, "true second");
    EXPECT_EQ(recorded_commands(), (Texts{"true first", "true second"}));
}

TEST(Recorder, ForgetsWhenAsked) {
    run("true before");
    forget_commands();
    EXPECT_EQ(recorded_commands(), Texts{});
    run("true after");
    EXPECT_EQ(recorded_commands(), Texts{"true after"});
}

TEST(Recorder, IsBashCalledAsSh) {
    EXPECT_EQ(capture_with_popen(R"(echo -e 'a\tb'; echo "$0 $POSIXLY_CORRECT $BASH_VERSION")")
                  .substr(0, 9),
              "a\tb\nsh y ");
}

TEST(Recorder, IsAnotherShellWhereOneIsNamed) {
    setenv("QVTC_SHELL", "/bin/dash", 1);
    EXPECT_EQ(capture_with_popen("echo -e x"), "-e x\n");
    unsetenv("QVTC_SHELL");
    EXPECT_EQ(recorded_commands(), Texts{"echo -e x"});
}

} // namespace qvtc::test
