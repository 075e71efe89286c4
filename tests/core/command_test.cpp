#include "core/command.hpp"

#include <climits>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/exports.hpp"
#include "core/faults/descriptors.hpp"
#include "core/faults/guarded_buffer.hpp"
#include "core/pipe_stream.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

/// What systemex leaves in a buffer of `size` bytes; "#" where it wrote nothing.
struct Captured {
    explicit Captured(const std::string& command, std::size_t size) {
        GuardedBuffer buffer(size);
        result = systemex(command.c_str(), buffer.data(), static_cast<int>(size));
        bytes = buffer.bytes();
        EXPECT_TRUE(buffer.guards_are_whole()) << command;
    }
    int result;
    std::string bytes;
};

std::string padded(std::string text, std::size_t size) {
    text.resize(size, '\0');
    return text;
}

/// What execmd leaves in a buffer of 64 bytes, or nothing.
std::optional<std::string> executed(const std::string& command) {
    GuardedBuffer buffer(64);
    const int result = execmd(command.c_str(), buffer.data());
    EXPECT_TRUE(buffer.guards_are_whole());
    if (result == 0) return std::string(buffer.data());
    EXPECT_EQ(result, -1);
    EXPECT_EQ(buffer.bytes(), std::string(64, '#')); // untouched
    return std::nullopt;
}

void forget_log() { std::filesystem::remove("/home/root/system.log"); }

} // namespace

TEST(Capture, FillsTheBufferWithOutputAndZeroBytes) {
    const struct {
        const char* command;
        std::string expected;
    } cases[] = {
        {"echo abc", "abc\n"},
        {"printf abc", "abc"},
        {"echo a; echo; echo '  b '", "a\n\n  b \n"},
        {"printf 'a\\0b'", std::string("a\0b", 3)},
        {"printf 123456789012345", "123456789012345"},
        {"printf 1234567890123456", "1234567890123456"}, // full, and not terminated
        {"printf 12345678901234567", "1234567890123456"},
        {"sleep 0.05; echo late", "late\n"},
        {"echo a; sleep 0.05; echo b", "a\nb\n"},
        {"true", ""},
        {"false", ""},
        {"echo abc; exit 3", "abc\n"},
        {"echo abc; kill -9 $$", "abc\n"},
        {"exec 2>/dev/null; no_such_program", ""},
        {"", ""},
    };
    for (const auto& c : cases) {
        const Captured captured(c.command, 16);
        EXPECT_EQ(captured.bytes, padded(c.expected, 16)) << c.command;
        EXPECT_EQ(captured.result, -1) << c.command; // Deliberate: a reaped shell is -1.
    }
}

TEST(Capture, GivesMinusOneAlsoForACommandWithoutOutputOnceItHasEnded) {
    const Captured captured("touch /tmp/done", 4);
    EXPECT_EQ(captured.result, -1);
    EXPECT_EQ(captured.bytes, std::string(4, '\0'));
    EXPECT_TRUE(file_exists("/tmp/done"));
}

TEST(Capture, WaitsUntilTheShellHasEnded) {
    // Its output ends long before it does.
    Captured("exec >/dev/null; sleep 0.2; touch /tmp/ended", 4);
    EXPECT_TRUE(file_exists("/tmp/ended"));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1); // nothing is left to be waited for
}

TEST(Capture, NeverWritesBeyondTheSize) {
    for (const std::size_t size : {1U, 2U, 16U, 4095U, 4096U, 65536U, 131072U, 200'000U}) {
        const Captured captured("head -c 1000000 /dev/zero | tr '\\0' x", size);
        EXPECT_EQ(captured.bytes, std::string(size, 'x')) << size;
        EXPECT_EQ(captured.result, -1);
    }
}

TEST(Capture, TakesALargeOutputWhole) {
    const Captured captured("seq 1 150000", 1'024'000);
    std::string expected;
    for (int i = 1; i <= 150'000; ++i) expected += std::to_string(i) + "\n";
    EXPECT_EQ(captured.bytes, padded(expected, 1'024'000));
}

TEST(Capture, EndsACommandThatWouldPrintForEver) {
    const Captured captured("yes", 8);
    EXPECT_EQ(captured.bytes, "y\ny\ny\ny\n");
}

TEST(Capture, IntoNoRoomRunsTheCommandAndWritesNothing) {
    EXPECT_EQ(Captured("touch /tmp/ran; echo abc", 0).result, -1);
    EXPECT_TRUE(file_exists("/tmp/ran"));
}

TEST(Capture, RefusesANegativeSizeAndNullPointers) {
    GuardedBuffer buffer(4);
    for (const int size : {-1, -4, INT_MIN})
        EXPECT_EQ(systemex("touch /tmp/refused", buffer.data(), size), -1);
    EXPECT_EQ(systemex("touch /tmp/refused", nullptr, 4), -1);
    EXPECT_EQ(buffer.bytes(), "####");
    EXPECT_FALSE(file_exists("/tmp/refused"));
    EXPECT_EQ(systemex(nullptr, buffer.data(), 4), -1);
    EXPECT_EQ(buffer.bytes(), std::string(4, '\0'));
    EXPECT_TRUE(buffer.guards_are_whole());
}

TEST(Capture, LeavesStandardErrorToTheCaller) {
    std::string bytes;
    const std::string errors =
        capture_stderr([&] { bytes = Captured("echo out; echo err >&2", 16).bytes; });
    EXPECT_EQ(bytes, padded("out\n", 16));
    EXPECT_EQ(errors, "err\n");
    EXPECT_EQ(Captured("(echo out; echo err >&2) 2>&1", 16).bytes, padded("out\nerr\n", 16));
}

TEST(Capture, LeavesStandardInputToTheCommand) {
    write_file("/tmp/input", "typed\n");
    const int kept = dup(STDIN_FILENO);
    std::FILE* const input = std::fopen("/tmp/input", "r");
    dup2(fileno(input), STDIN_FILENO);
    EXPECT_EQ(Captured("cat", 16).bytes, padded("typed\n", 16));
    dup2(kept, STDIN_FILENO);
    close(kept);
    std::fclose(input);
}

TEST(Capture, HandsTheShellTheTextUnchanged) {
    const Texts texts = {"echo  \"a  b\" '$HOME' \\t", ": \xff\xc3\xa4\n:\n",
                         ": " + std::string(100'000, 'x'), " true "};
    std::vector<RecordedCommand> expected;
    for (const std::string& text : texts) {
        Captured(text, 16);
        expected.push_back({text, true});
    }
    EXPECT_EQ(recorded_command_details(), expected);
}

TEST(Capture, GivesTheCommandNoDescriptorOfItsOwn) {
    ASSERT_EQ(std::system("ls /proc/self/fd >/tmp/without"), 0);
    EXPECT_EQ(Captured("ls /proc/self/fd", 256).bytes, padded(read_file("/tmp/without"), 256));
}

TEST(Capture, LeavesNoDescriptorBehind) {
    const std::size_t before = open_descriptors();
    for (int i = 0; i < 50; ++i) {
        Captured("echo abc", 16);
        Captured("yes", 16);
        Captured("echo abc", 0);
        executed("echo abc");
        executed("true");
        executed("yes");
        output_lines("echo abc");
    }
    EXPECT_EQ(open_descriptors(), before);
}

TEST(FirstLine, HasNoBlanksAndLosesItsLastCharacter) {
    const struct {
        std::string command;
        std::string expected;
    } cases[] = {
        {"echo ' 1 2 3 '", "123"},
        {"echo abc; echo def", "abc"},
        {"printf 'a\\tb c\\n'", "a\tbc"}, // tabs are no blanks
        {"printf abc", "ab"},             // no newline to lose
        {"echo", ""},
        {"echo '   '", ""},
        {"printf '   '", ""},
        {"printf 'a  '", ""},
        {"printf 'a\\r\\n'", "a\r"},
        {"printf 'ab\\0cd\\n'", "a"}, // ends at the NUL
        {"echo " + std::string(62, 'x'), std::string(62, 'x')},
        {"echo " + std::string(63, 'x'), std::string(62, 'x')},
        {"echo " + std::string(64, 'x'), std::string(62, 'x')},
        {"head -c 100000 /dev/zero | tr '\\0' x", std::string(62, 'x')},
        {"printf '%0.s ' $(seq 60); echo abcdef", "ab"}, // of 63 bytes, blanks included
        {"yes", "y"},
        {"echo abc; exit 3", "abc"},
    };
    for (const auto& c : cases) EXPECT_EQ(executed(c.command), c.expected) << c.command;
    EXPECT_EQ(recorded_command_details().front(), (RecordedCommand{"echo ' 1 2 3 '", true}));
}

TEST(FirstLine, IsNothingWithoutOutputAndTheLogSaysSo) {
    forget_log();
    EXPECT_EQ(executed("true"), std::nullopt);
    EXPECT_EQ(executed("exec 2>/dev/null; no_such_program"), std::nullopt);
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] @execmd fgets error:Success",
                                  "[ERROR] @execmd fgets error:Success"}));
}

TEST(FirstLine, WaitsUntilTheCommandHasEnded) {
    EXPECT_EQ(executed("echo abc; exec >/dev/null; sleep 0.2; touch /tmp/waited"), "abc");
    EXPECT_TRUE(file_exists("/tmp/waited"));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(OutputLines, AreAllLinesWithoutTheirNewlines) {
    const struct {
        const char* command;
        Texts expected;
    } cases[] = {
        {"printf 'a\\nb\\n'", {"a", "b"}},
        {"printf 'a\\n\\n b \\nc'", {"a", "", " b ", "c"}},
        {"echo", {""}},
        {"true", {}},
        {"exec 2>/dev/null; no_such_program", {}},
        {"printf 'ab\\0cd\\nef\\n'", {"ab", "ef"}}, // as a C reader sees them
    };
    for (const auto& c : cases) EXPECT_EQ(output_lines(c.command), c.expected) << c.command;
    EXPECT_EQ(output_lines("head -c 300000 /dev/zero | tr '\\0' x; echo; echo y"),
              (Texts{std::string(300'000, 'x'), "y"}));
    EXPECT_EQ(recorded_command_details().front(), (RecordedCommand{"printf 'a\\nb\\n'", true}));
}

TEST(PipeStream, IsWaitedForWhenItCloses) {
    {
        PipeStream stream("sleep 0.1; touch /tmp/closed");
        EXPECT_TRUE(stream.is_open());
        stream.close();
        EXPECT_FALSE(stream.is_open());
        EXPECT_EQ(stream.get(), nullptr);
        EXPECT_TRUE(file_exists("/tmp/closed"));
        stream.close(); // once is enough
    }
    { const PipeStream stream("sleep 0.1; touch /tmp/destroyed"); }
    EXPECT_TRUE(file_exists("/tmp/destroyed"));
}

} // namespace qvtc::test
