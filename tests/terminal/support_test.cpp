// The tools that the other tests rely on.

#include "support/support.hpp"

#include <cstdlib>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/wait.h>

namespace fs = std::filesystem;

namespace qvtc::test {

namespace {

using Calls = StandIn::Calls;
using Lines = std::vector<std::string>;

int status_of(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string output_of(const std::string& command) {
    return capture_stdout([&] { (void)!std::system(command.c_str()); });
}

} // namespace

TEST(StandIn, NotesItsArgumentsExactly) {
    const StandIn program("frobnicate");
    EXPECT_EQ(program.calls(), Calls{});
    ASSERT_EQ(status_of("frobnicate; frobnicate '' 'a b' \"$(printf 'x\\ny\\n\\377')\" '*'"), 0);
    EXPECT_EQ(program.calls(), (Calls{{}, {"", "a b", "x\ny\n\xff", "*"}}));
}

TEST(StandIn, LosesNoCallOfManyAtOnce) {
    const StandIn program("frobnicate");
    ASSERT_EQ(status_of("for i in {1..200}; do frobnicate $i & done; wait"), 0);
    EXPECT_EQ(program.calls().size(), 200U);
    std::vector<bool> seen(201);
    for (const auto& arguments : program.calls()) {
        ASSERT_EQ(arguments.size(), 1U);
        seen.at(std::stoul(arguments[0])) = true;
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 200);
}

TEST(StandIn, PrintsOneTextAfterTheOtherAndRepeatsTheLast) {
    StandIn program("frobnicate");
    EXPECT_EQ(output_of("frobnicate"), "");
    program.prints({"first\n", "second", ""}).forget_calls();
    EXPECT_EQ(output_of("frobnicate; frobnicate; frobnicate; frobnicate"), "first\nsecond");
    const std::string much(300'000, 'x');
    program.prints(much);
    EXPECT_EQ(output_of("frobnicate"), much);
    EXPECT_EQ(program.calls().size(), 5U);
    program.forget_calls();
    EXPECT_EQ(program.calls(), Calls{});
}

TEST(StandIn, GivesEachOfManyCallsAtOnceATextOfItsOwn) {
    StandIn program("frobnicate");
    program.prints({"1\n", "2\n", "3\n", "4\n", "5\n", "6\n", "7\n", "8\n"});
    for (int round = 0; round < 20; ++round) {
        program.forget_calls();
        ASSERT_EQ(status_of("for i in {1..8}; do frobnicate >/tmp/$i & done; wait"), 0);
        EXPECT_EQ(output_of("cat /tmp/[1-8] | sort"), "1\n2\n3\n4\n5\n6\n7\n8\n");
    }
}

TEST(StandIn, ExitsAndComplainsAsTold) {
    StandIn program("frobnicate");
    program.exits_with(3).prints_errors("no frob\n").prints("some\n");
    int status = 0;
    EXPECT_EQ(capture_stderr([&] { status = status_of("frobnicate >/dev/null"); }), "no frob\n");
    EXPECT_EQ(status, 3);
}

TEST(StandIn, RunsAScriptUnderItsOwnName) {
    StandIn program("frobnicate");
    program.runs(R"(echo "$# $2"; cat /proc/$$/comm; exit 4)");
    EXPECT_EQ(output_of("frobnicate 'a' 'b  c'"), "2 b  c\nfrobnicate\n");
    EXPECT_EQ(status_of("frobnicate >/dev/null"), 4);
    EXPECT_EQ(program.calls(), (Calls{{"a", "b  c"}, {}}));
}

TEST(StandIn, KeepsRunningUntilItIsKilledByName) {
    StandIn program("frobnicate");
    program.keeps_running();
    const auto running = [] { return output_of("pidof frobnicate") != ""; };
    ASSERT_EQ(status_of("frobnicate &"), 0);
    ASSERT_TRUE(wait_until(running));
    ASSERT_EQ(status_of("killall frobnicate"), 0);
    EXPECT_TRUE(wait_until([&] { return !running(); }));
}

TEST(StandIn, TakesThePlaceOfAProgramAndGivesItBack) {
    const std::string before = output_of("uname -s; /usr/bin/uname -s");
    {
        StandIn by_name("uname");
        by_name.prints("by name\n");
        EXPECT_EQ(output_of("uname -s"), "by name\n");
        EXPECT_NE(output_of("/usr/bin/uname -s"), "by name\n");
    }
    {
        StandIn by_path("/usr/bin/uname");
        by_path.prints("by path\n");
        EXPECT_EQ(output_of("uname -s; /usr/bin/uname -s"), "by path\nby path\n");
        EXPECT_EQ(by_path.calls(), (Calls{{"-s"}, {"-s"}}));
    }
    EXPECT_EQ(output_of("uname -s; /usr/bin/uname -s"), before);
    StandIn new_place("/var/lib/new/place/program");
    EXPECT_EQ(status_of("/var/lib/new/place/program 1"), 0);
    EXPECT_EQ(new_place.calls(), (Calls{{"1"}}));
}

TEST(StandIn, RefusesASecondOfTheSameName) {
    const StandIn first("frobnicate");
    EXPECT_THROW(StandIn("/usr/bin/frobnicate"), std::runtime_error);
}

TEST(Files, ComeBackAsTheyWereWritten) {
    const std::string text("a\0b\n\xff", 5);
    write_file("/tmp/new/folder/file", text);
    EXPECT_EQ(read_file("/tmp/new/folder/file"), text);
    write_file("/tmp/new/folder/file", "");
    EXPECT_EQ(read_file("/tmp/new/folder/file"), "");
    EXPECT_TRUE(file_exists("/tmp/new/folder"));
    EXPECT_FALSE(file_exists("/tmp/new/other"));
    EXPECT_THROW(read_file("/tmp/new/other"), std::runtime_error);
    EXPECT_THROW(read_file("/tmp/new"), std::runtime_error);
    EXPECT_THROW(write_file("/proc/none", ""), std::runtime_error);
}

TEST(Files, FallIntoLines) {
    EXPECT_EQ(lines_of(""), Lines{});
    EXPECT_EQ(lines_of("\n"), Lines{""});
    EXPECT_EQ(lines_of("a\n\nb"), (Lines{"a", "", "b"}));
    EXPECT_EQ(lines_of("a\nb\n"), (Lines{"a", "b"}));
}

TEST(Log, IsReadWithoutItsTimes) {
    EXPECT_EQ(log_lines(), Lines{});
    write_file("/home/root/system.log", "2024-01-02 03:04:05 [ERROR] a 2024-01-02 03:04:05 b\n"
                                        "second line of the message\n"
                                        "2024-01-02 03:04:06 [INFO] \n");
    EXPECT_EQ(log_lines(),
              (Lines{"[ERROR] a 2024-01-02 03:04:05 b", "second line of the message", "[INFO] "}));
}

TEST(Waiting, EndsWhenTheConditionHoldsOrTheTimeIsUp) {
    int calls = 0;
    EXPECT_TRUE(wait_until([&] { return ++calls == 3; }));
    EXPECT_EQ(calls, 3);
    EXPECT_FALSE(wait_until([] { return false; }, std::chrono::milliseconds(20)));
}

TEST(Capture, HoldsWhatTheProgramAndItsCommandsPrint) {
    EXPECT_EQ(capture_stdout([] {
                  std::printf("from the program\n");
                  std::fflush(stdout);
                  (void)!std::system("echo from a command");
                  std::printf("again");
              }),
              "from the program\nfrom a command\nagain");
    EXPECT_EQ(capture_stderr([] { (void)!std::system("echo problem >&2; echo fine >/dev/null"); }),
              "problem\n");
}

class Golden : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("CI");
        unsetenv("QVTC_UPDATE_GOLDEN");
    }
    const std::string text_ = "line 1\n\tline 2\n";
};

TEST_F(Golden, AcceptsTheSameText) { expect_golden("support/example.txt", text_); }

TEST_F(Golden, ShowsBothTextsWhenTheyDiffer) {
    EXPECT_NONFATAL_FAILURE(expect_golden("support/example.txt", "line 1\n"),
                            "differs.\n--- expected\nline 1\n\tline 2\n\n--- now\nline 1\n\n"
                            "If the new text is right: QVTC_UPDATE_GOLDEN=1");
}

TEST_F(Golden, ShowsTheTextWhenThereIsNoFile) {
    EXPECT_NONFATAL_FAILURE(expect_golden("support/none.txt", "new text"),
                            "none.txt does not exist. The text is:\nnew text");
}

TEST_F(Golden, IsRewrittenOnRequestButNotInCi) {
    setenv("QVTC_UPDATE_GOLDEN", "1", 1);
    // Only this test's own file: where the folder is shared, the text must be the right one.
    expect_golden("support/example.txt", text_);
    setenv("CI", "true", 1);
    EXPECT_NONFATAL_FAILURE(expect_golden("support/example.txt", "other"), "no place in CI");
    unsetenv("CI");
    unsetenv("QVTC_UPDATE_GOLDEN");
    expect_golden("support/example.txt", text_);
}

TEST(Requirements, KnowTheProgramsInPath) {
    EXPECT_TRUE(has_program("bash"));
    EXPECT_FALSE(has_program("frobnicate"));
    const StandIn program("frobnicate");
    EXPECT_TRUE(has_program("frobnicate"));
}

} // namespace qvtc::test
