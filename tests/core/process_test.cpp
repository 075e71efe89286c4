#include "core/process.hpp"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/exports.hpp"
#include "core/os.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

/// Answers every capture with the same text, and keeps what was asked.
class ProcessList : public Os {
  public:
    explicit ProcessList(std::string answer) : answer_(std::move(answer)) {}
    int run(const std::string&) override { return -1; }
    std::string capture(const std::string& command, std::size_t limit) override {
        commands.push_back(command);
        limits.push_back(limit);
        return answer_;
    }
    std::optional<Texts> lines(const std::string&) override { return std::nullopt; }
    bool exists(const char*) override { return false; }
    std::time_t now() override { return 0; }
    void sleep(unsigned) override {}
    bool start_thread(std::function<void()>) override { return false; }

    Texts commands;
    std::vector<std::size_t> limits;

  private:
    std::string answer_;
};

/// A program of the test's own that shows in the list of processes, until it is out of scope.
class Running {
  public:
    explicit Running(Texts words) {
        std::vector<char*> arguments;
        for (std::string& word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        EXPECT_EQ(posix_spawnp(&child_, "sleep", nullptr, nullptr, arguments.data(), environ), 0);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }

  private:
    pid_t child_ = 0;
};

} // namespace

TEST(Process, RunsWhenTheCountIsAboveZero) {
    const struct {
        const char* answer;
        bool expected;
    } cases[] = {{"0\n", false}, {"1\n", true},   {"12\n", true}, {"", false},
                 {"\n", false},  {"-1\n", false}, {"x\n", false}, {" 3 lines\n", true}};
    for (const auto& c : cases) {
        ProcessList list(c.answer);
        const ScopedOs scope(list);
        EXPECT_EQ(process_runs("xfreerdp"), c.expected) << c.answer;
        EXPECT_EQ(detect_process("xfreerdp"), c.expected ? 1 : 0) << c.answer;
        const std::string text = "ps -ef|grep 'xfreerdp'|grep -v grep|wc -l";
        EXPECT_EQ(list.commands, (Texts{text, text}));
        EXPECT_EQ(list.limits, (std::vector<std::size_t>{512, 512}));
    }
}

TEST(Process, IsLookedForWithExactlyThisText) {
    EXPECT_EQ(detect_process("x11vnc"), 0);
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{{"ps -ef|grep 'x11vnc'|grep -v grep|wc -l", true}}));
}

TEST(Process, IsFoundByNameAndByArgumentUntilItEnds) {
    EXPECT_EQ(detect_process("freerdp_of_this_test"), 0);
    {
        const Running program({"freerdp_of_this_test", "1000"});
        EXPECT_EQ(detect_process("freerdp_of_this_test"), 1);
        EXPECT_EQ(detect_process("freerdp.of.*test"), 1); // a regular expression
        EXPECT_EQ(detect_process("Freerdp_of_this_test"), 0);
        EXPECT_EQ(detect_process("freerdp_of_this_text"), 0);
    }
    EXPECT_EQ(detect_process("freerdp_of_this_test"), 0);
    StandIn editor("editor");
    editor.keeps_running();
    ASSERT_EQ(std::system("editor /tmp/freerdp_of_this_test.conf >/dev/null 2>&1 &"), 0);
    EXPECT_TRUE(wait_until([] { return detect_process("freerdp_of_this_test") == 1; }));
    EXPECT_EQ(std::system("kill $(ps -ef | awk '/edito[r] /{print $2}')"), 0);
}

TEST(Process, QuoteInANameIsPartOfTheName) {
    EXPECT_EQ(detect_process("x'; touch /tmp/owned; '"), 0);
    EXPECT_FALSE(file_exists("/tmp/owned"));
    EXPECT_EQ(recorded_commands(),
              (Texts{R"(ps -ef|grep 'x'\''; touch /tmp/owned; '\'''|grep -v grep|wc -l)"}));
    const Running program({"name of 'it'", "1000"});
    EXPECT_EQ(detect_process("name of 'it'"), 1);
}

TEST(Process, LongNameIsLookedForWhole) {
    const std::string name(300, 'x');
    EXPECT_EQ(detect_process(name.c_str()), 0);
    const Running program({name, "1000"});
    EXPECT_EQ(detect_process(name.c_str()), 1);
    EXPECT_EQ(detect_process((name + "y").c_str()), 0);
}

TEST(Process, FailingPipelineIsNoProcess) {
    StandIn ps("ps");
    ps.prints_errors("no /proc\n").exits_with(1);
    EXPECT_EQ(detect_process("sh"), 0);
    StandIn wc("wc");
    EXPECT_EQ(detect_process("sh"), 0);
}

} // namespace qvtc::test
