#include "core/log_rotation.hpp"

#include <gtest/gtest.h>

#include "core/exports.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

struct RotatedFile {
    const char* path;
    std::size_t limit;
    const char* message;
    const char* size_command;
    const char* move_command;
};

// clang-format off
constexpr RotatedFile rotated_files[] = {
    {"/home/root/system.log", 1024000, "system log size greater than 1M",
     "wc -c /home/root/system.log | awk '$1'",
     "mv /home/root/system.log /home/root/system.log.old"},
    {"/home/root/freerdp.log", 512000, "freerdp log size greater than 512k",
     "wc -c /home/root/freerdp.log | awk '$1'",
     "mv /home/root/freerdp.log /home/root/freerdp.log.old"},
    {"/home/root/spicec.log", 512000, "spicec log size greater than 512k",
     "wc -c /home/root/spicec.log | awk '$1'",
     "mv /home/root/spicec.log /home/root/spicec.log.old"},
    {"/home/root/qvservice.log", 512000, "qvservice log size greater than 512k",
     "wc -c /home/root/qvservice.log | awk '$1'",
     "mv /home/root/qvservice.log /home/root/qvservice.log.old"},
};
// clang-format on

std::string old_of(const char* path) { return std::string(path) + ".old"; }

class LogRotation : public testing::Test {
  protected:
    void SetUp() override {
        for (const RotatedFile& file : rotated_files) {
            std::filesystem::remove(file.path);
            std::filesystem::remove(old_of(file.path));
        }
    }
};

/// log_init, without what a missing file makes "wc" say.
void rotate_quietly() {
    capture_stderr([] { log_init(); });
}

} // namespace

TEST_F(LogRotation, AsksForTheFourSizesAndMovesNothingThatIsMissing) {
    EXPECT_EQ(capture_stdout([] { rotate_quietly(); }), "");
    Texts expected;
    for (const RotatedFile& file : rotated_files) expected.emplace_back(file.size_command);
    EXPECT_EQ(recorded_commands(), expected);
    EXPECT_FALSE(file_exists("/home/root/system.log"));
}

TEST_F(LogRotation, MovesEachFileAboveItsLimitOnly) {
    for (const RotatedFile& file : rotated_files) {
        for (const bool above : {false, true}) {
            SetUp();
            write_file(file.path, std::string(file.limit + (above ? 1 : 0), 'x'));
            forget_commands();
            rotate_quietly();
            EXPECT_EQ(file_exists(old_of(file.path)), above) << file.path;
            Texts expected;
            for (const RotatedFile& asked : rotated_files) {
                expected.emplace_back(asked.size_command);
                if (above && &asked == &file) expected.emplace_back(file.move_command);
            }
            EXPECT_EQ(recorded_commands(), expected);
            if (!above) {
                EXPECT_EQ(read_file(file.path), std::string(file.limit, 'x'));
            }
        }
    }
}

TEST_F(LogRotation, MovesAllFourInOrderAndSaysSoInTheSystemLog) {
    for (const RotatedFile& file : rotated_files)
        write_file(file.path, std::string(file.limit + 1, 'x') + "\n");
    rotate_quietly();
    Texts expected;
    for (const RotatedFile& file : rotated_files) {
        expected.emplace_back(file.size_command);
        expected.emplace_back(file.move_command);
        EXPECT_TRUE(file_exists(old_of(file.path))) << file.path;
    }
    EXPECT_EQ(recorded_commands(), expected);
    // The first message was the last line of what was then moved.
    EXPECT_EQ(log_lines(), (Texts{"[INFO] freerdp log size greater than 512k",
                                  "[INFO] spicec log size greater than 512k",
                                  "[INFO] qvservice log size greater than 512k"}));
    const Texts moved = lines_of(read_file("/home/root/system.log.old"));
    ASSERT_EQ(moved.size(), 2U);
    EXPECT_EQ(moved[0], std::string(1024001, 'x'));
    EXPECT_EQ(moved[1].substr(19), " [INFO] system log size greater than 1M");
}

TEST_F(LogRotation, KeepsOneOlderGeneration) {
    const char* const path = rotated_files[1].path;
    write_file(old_of(path), "first generation");
    write_file(path, std::string(512001, '2'));
    rotate_quietly();
    EXPECT_EQ(read_file(old_of(path)), std::string(512001, '2'));
    EXPECT_FALSE(file_exists(path));
}

TEST_F(LogRotation, EmptyAndSmallFilesStay) {
    for (const char* const content : {"", "x", "a line\n"}) {
        write_file("/home/root/system.log", content);
        rotate_quietly();
        EXPECT_EQ(read_file("/home/root/system.log"), content);
    }
}

TEST_F(LogRotation, LimitIsHeldAgainstTheLeadingNumber) {
    StandIn wc("wc");
    const struct {
        const char* printed;
        bool moves;
    } cases[] = {{"512000 x\n", false},  {"512001 x\n", true},
                 {"  512001 x\n", true}, {"99999999999 x\n", true},
                 {"x 512001\n", false},  {"-512001 x\n", false},
                 {"999", false},         {"", false}};
    for (const auto& c : cases) {
        wc.runs("[[ $2 != */freerdp.log ]] || printf '" + std::string(c.printed) + "'");
        forget_commands();
        rotate_quietly();
        Texts expected;
        for (const RotatedFile& file : rotated_files) {
            expected.emplace_back(file.size_command);
            if (c.moves && &file == &rotated_files[1]) expected.emplace_back(file.move_command);
        }
        EXPECT_EQ(recorded_commands(), expected) << c.printed;
    }
}

} // namespace qvtc::test
