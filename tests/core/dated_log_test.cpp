#include "core/dated_log.hpp"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <map>

#include "core/exports.hpp"
#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "support/support.hpp"

extern "C" {
extern log_setting logsetting;
extern log_record loging;
extern char LogLevelText[4][10];
}

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

constexpr std::time_t november_15 = 1'794'727'689; // 2026-11-15 09:28:09 local time
constexpr std::time_t one_day = 24 * 3600L;

/// Each test works in an empty directory, at home in another, two hours ahead of UTC, and as if
/// it were the first to log.
class DatedLog : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* const directory : {"/tmp/dated", "/tmp/dated/work", "/tmp/dated/home"}) {
            if (std::string_view(directory) == "/tmp/dated") std::filesystem::remove_all(directory);
            std::filesystem::create_directory(directory);
        }
        std::filesystem::current_path("/tmp/dated/work");
        setenv("HOME", "/tmp/dated/home", 1);
        setenv("TZ", "EET-2", 1);
        calls_.set_time(november_15);
        logsetting = {};
        loging = {};
    }
    void TearDown() override {
        std::filesystem::current_path("/");
        setenv("HOME", "/home/root", 1);
        unsetenv("TZ");
    }

    /// All files below the test's directories with their content.
    static std::map<std::string, std::string> files() {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator("/tmp/dated")) {
            if (entry.is_regular_file() && entry.path().filename() != "log.conf")
                found[entry.path().string().substr(11)] = read_file(entry.path());
        }
        return found;
    }
    using Files = std::map<std::string, std::string>;

    OsCalls calls_;
};

} // namespace

TEST_F(DatedLog, WritesTagTimeAndMessageIntoTheFileOfTheDayAtHome) {
    EXPECT_EQ(LogWrite(4, "x"), 0);
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", "[ERROR] [2026-11-15 09:28:09] x\n"}}));
}

TEST_F(DatedLog, EveryLevelHasItsTagAndNoneIsFiltered) {
    write_file("log.conf", "path=/tmp/dated\nlevel=WARN\n");
    for (int level = 1; level <= 4; ++level) EXPECT_EQ(LogWrite(level, "%d", level), 0);
    EXPECT_EQ(logsetting.loglevel, 3);
    EXPECT_EQ(files(), (Files{{"2026-11-15.log", "[INFO] [2026-11-15 09:28:09] 1\n"
                                                 "[DEBUG] [2026-11-15 09:28:09] 2\n"
                                                 "[WARN] [2026-11-15 09:28:09] 3\n"
                                                 "[ERROR] [2026-11-15 09:28:09] 4\n"}}));
}

TEST_F(DatedLog, OtherLevelsAreRefusedAndTouchNoFile) {
    std::strcpy(loging.timestr, "of former write");
    for (const int level : {0, 5, -1, 100, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(capture_stderr([level] {
                      EXPECT_EQ(LogWrite(level, "x"), -1);
                      EXPECT_EQ(initlog(level), -1);
                  }),
                  "");
    }
    EXPECT_EQ(files(), Files{});
    EXPECT_STREQ(logsetting.logpath, "");
    EXPECT_STREQ(loging.timestr, "of former write");
}

TEST_F(DatedLog, ConversionsAreTheBareLetters) {
    const struct {
        int (*write)();
        const char* expected;
    } cases[] = {
        {[] { return LogWrite(1, "%d", -12); }, "-12"},
        {[] { return LogWrite(1, "d", 12); }, "12"},
        {[] { return LogWrite(1, "%s%c", "text", 'x'); }, "textx"},
        {[] { return LogWrite(1, "sc", "text", 'x'); }, "textx"},
        {[] { return LogWrite(1, "a\nb%%\n"); }, "ab"},
        {[] { return LogWrite(1, ""); }, ""},
        // One argument more than a reader would expect: "failed" holds a d.
        {[] { return LogWrite(1, "%s failed %d", "login", 7, 8); }, "login faile7 8"},
        {[] { return LogWrite(1, "%05d", 7); }, "057"},
        {[] { return LogWrite(1, "%x"); }, "x"},
        {[] { return LogWrite(1, "%s", "100%"); }, "100%"},
        {[] { return LogWrite(1, "%s", "a\nb"); }, "a\nb"},
        {[] { return LogWrite(1, "D S C \xc3\xa4"); }, "D S C \xc3\xa4"},
        {[] { return LogWrite(1, "%d", std::numeric_limits<int>::min()); }, "-2147483648"},
    };
    std::string expected;
    for (const auto& c : cases) {
        EXPECT_EQ(c.write(), 0);
        expected += std::string("[INFO] [2026-11-15 09:28:09] ") + c.expected + "\n";
    }
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", expected}}));
}

TEST_F(DatedLog, WithoutAConfigurationTheFileKeepsTheDayOfTheFirstWrite) {
    LogWrite(1, "a");
    calls_.set_time(november_15 + one_day);
    setenv("HOME", "/tmp/dated", 1);
    LogWrite(1, "b");
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", "[INFO] [2026-11-15 09:28:09] a\n"
                                                      "[INFO] [2026-11-16 09:28:09] b\n"}}));
    EXPECT_EQ(logsetting.loglevel, 1);
    EXPECT_EQ(logsetting.maxsize, 4096U);
}

TEST_F(DatedLog, WithAConfigurationTheFileFollowsTheCalendar) {
    write_file("log.conf", "path=/tmp/dated/home\nlevel=NONE\n");
    LogWrite(1, "a");
    calls_.set_time(november_15 + one_day);
    LogWrite(1, "b");
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", "[INFO] [2026-11-15 09:28:09] a\n"},
                              {"home/2026-11-16.log", "[INFO] [2026-11-16 09:28:09] b\n"}}));
    EXPECT_EQ(logsetting.loglevel, 0);
    EXPECT_EQ(logsetting.maxsize, 0U); // set only without a configuration
}

TEST_F(DatedLog, ShorterPathKeepsTheTailOfALongerOne) {
    write_file("log.conf", "path=/tmp/dated/home\nlevel=INFO\n");
    LogWrite(1, "a");
    write_file("log.conf", "path=/tmp/dated\nlevel=INFO\n");
    LogWrite(1, "b");
    LogWrite(1, "e");
    EXPECT_STREQ(logsetting.logpath, "/tmp/dated/2026-11-15.log5.log");
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", "[INFO] [2026-11-15 09:28:09] a\n"},
                              {"2026-11-15.log5.log", "[INFO] [2026-11-15 09:28:09] b\n"
                                                      "[INFO] [2026-11-15 09:28:09] e\n"}}));
}

TEST_F(DatedLog, ConfigurationIsReadAsFarAsItGoes) {
    const struct {
        const char *config, *path;
        int level;
    } cases[] = {
        {"path=/a\nlevel=INFO\n", "/a/2026-11-15.log", 1},
        {"path=/a\nlevel=DEBUG", "/a/2026-11-15.log", 2},
        {"path=/a level=WARN", "/a/2026-11-15.log", 3},
        {"path=  /a\n\n\nlevel= ERROR\n", "/a/2026-11-15.log", 4},
        {"path=/a b\nlevel=ERROR\n", "/a/2026-11-15.log", 255}, // a directory has no blanks
        {"path=/a\nlevel=NONE\n", "/a/2026-11-15.log", 0},
        {"path=/a\nlevel=warn\n", "/a/2026-11-15.log", 255},
        {"path=/a\nlevel=WARNING\n", "/a/2026-11-15.log", 255},
        {"path=/a\nlevel=\n", "/a/2026-11-15.log", 255},
        {"path=/a\n", "/a/2026-11-15.log", 255},
        {"path=INFO\n", "INFO/2026-11-15.log", 255}, // no level, though the path reads like one
        {"  level=WARN\n", "", 255},
        {"level=WARN\npath=/a\n", "", 3},
        {"", "", 255},
        {"nonsense", "", 255},
    };
    for (const auto& c : cases) {
        logsetting = {};
        write_file("log.conf", c.config);
        EXPECT_EQ(ReadConfig("log.conf"), 0);
        EXPECT_STREQ(logsetting.logpath, c.path) << c.config;
        EXPECT_EQ(logsetting.loglevel, c.level) << c.config;
        EXPECT_EQ(getlogset(), &logsetting);
    }
}

TEST_F(DatedLog, OverlongDirectoryIsCutAtThePathsSize) {
    const std::string directory(5000, 'x');
    write_file("log.conf", "path=" + directory + "\nlevel=INFO\n");
    EXPECT_EQ(ReadConfig("log.conf"), 0);
    EXPECT_EQ(std::string(logsetting.logpath), directory.substr(0, 511));
    EXPECT_EQ(logsetting.maxsize, 0U); // the member behind it
    EXPECT_EQ(logsetting.loglevel, 255);
    setenv("HOME", directory.c_str(), 1);
    logsetting = {};
    std::filesystem::remove("log.conf");
    EXPECT_EQ(capture_stderr([] { EXPECT_EQ(LogWrite(1, "x"), -1); }),
              "Open Log File Fail!: File name too long\n");
}

TEST_F(DatedLog, MissingConfigurationIsMinusOneAndChangesNothing) {
    EXPECT_EQ(ReadConfig("/tmp/dated/none"), -1);
    EXPECT_EQ(logsetting.loglevel, 0);
    EXPECT_EQ(getlogset(), &logsetting);
    EXPECT_EQ(logsetting.loglevel, 1);
    EXPECT_EQ(logsetting.maxsize, 4096U);
    EXPECT_STREQ(logsetting.logpath, "");
}

TEST_F(DatedLog, ConfigurationThatCannotBeOpenedCountsAsNone) {
    write_file("log.conf", "path=/tmp/dated\nlevel=WARN\n");
    const auto expect_defaults = [] {
        logsetting = {};
        EXPECT_EQ(getlogset(), &logsetting);
        EXPECT_STREQ(logsetting.logpath, "");
        EXPECT_EQ(logsetting.loglevel, 1);
        EXPECT_EQ(logsetting.maxsize, 4096U);
    };
    {
        const DescriptorLimit limit(0);
        expect_defaults();
    }
    // Nor is one looked for in a directory whose path is too long.
    for (int depth = 0; depth < 3; ++depth) {
        const std::string name(200, 'x');
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
    }
    write_file("log.conf", "path=/tmp/dated\nlevel=WARN\n");
    expect_defaults();
}

TEST_F(DatedLog, FileThatCannotBeOpenedIsReportedOnStandardError) {
    const struct {
        const char *home, *error;
    } cases[] = {
        {"/tmp/dated/nowhere", "Open Log File Fail!: No such file or directory\n"},
        {"/dev/null", "Open Log File Fail!: Not a directory\n"},
    };
    for (const auto& c : cases) {
        logsetting = {};
        setenv("HOME", c.home, 1);
        EXPECT_EQ(capture_stderr([] { EXPECT_EQ(LogWrite(4, "x"), -1); }), c.error);
        EXPECT_EQ(loging.logfile, nullptr);
    }
    logsetting = {};
    unsetenv("HOME");
    const std::string error = capture_stderr([] { EXPECT_EQ(LogWrite(4, "x"), -1); });
    EXPECT_TRUE(error.starts_with("Open Log File Fail!: ")) << error;
    EXPECT_EQ(files(), Files{});
}

TEST_F(DatedLog, StepsCanBeTakenOneByOne) {
    EXPECT_EQ(initlog(3), 0);
    EXPECT_NE(loging.logfile, nullptr);
    EXPECT_STREQ(loging.timestr, "2026-11-15 09:28:09");
    EXPECT_STREQ(loging.logpath, "/tmp/dated/home/2026-11-15.log");
    EXPECT_STREQ(logsetting.logpath, loging.logpath);
    dated_log::end_line();
    EXPECT_EQ(loging.logfile, nullptr);
    EXPECT_EQ(files(), (Files{{"home/2026-11-15.log", "[WARN] [2026-11-15 09:28:09] "}}));
}

TEST_F(DatedLog, NothingOfAnUnfinishedWriteIsLeftForTheNext) {
    EXPECT_EQ(initlog(3), 0);
    std::fclose(loging.logfile);
    logsetting = {};
    unsetenv("HOME");
    capture_stderr([] { EXPECT_EQ(initlog(3), -1); });
    EXPECT_EQ(loging.logfile, nullptr);
    EXPECT_STREQ(loging.logpath, "");
}

TEST_F(DatedLog, NoFileIsOpenBetweenWrites) {
    const std::size_t before = open_descriptors();
    write_file("log.conf", "path=/tmp/dated\nlevel=WARN\n");
    for (int i = 0; i < 20; ++i) LogWrite(1, "x");
    EXPECT_EQ(open_descriptors(), before);
    EXPECT_EQ(loging.logfile, nullptr);
    // A message without a file goes nowhere.
    std::va_list none{};
    PrintfLog("x", none);
}

TEST_F(DatedLog, DateAndTimeAreLocal) {
    char today[12];
    std::memset(today, '#', sizeof today);
    EXPECT_EQ(qvtc_getdate(today), today);
    EXPECT_EQ(std::string(today, sizeof today), std::string("2026-11-15\0#", 12));
    settime();
    EXPECT_STREQ(loging.timestr, "2026-11-15 09:28:09");
    calls_.set_time(november_15 + 14L * 3600);
    qvtc_getdate(today);
    EXPECT_STREQ(today, "2026-11-15");
    calls_.set_time(november_15 + 15L * 3600);
    qvtc_getdate(today);
    EXPECT_STREQ(today, "2026-11-16");
}

TEST_F(DatedLog, LevelsAreKnownByTheirExactNames) {
    const std::pair<const char*, int> cases[] = {
        {"NONE", 0}, {"INFO", 1},   {"DEBUG", 2},  {"WARN", 3},      {"ERROR", 4},
        {"", 255},   {"info", 255}, {"Warn", 255}, {"WARNING", 255}, {"ERROR ", 255}};
    for (const auto& [name, code] : cases) EXPECT_EQ(getcode(name), code) << name;
    const char* const tags[] = {"INFO", "DEBUG", "WARN", "ERROR"};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_STREQ(LogLevelText[i], tags[i]);
}

TEST_F(DatedLog, RecordsHaveTheSizesThatCallersKnow) {
    EXPECT_EQ(sizeof logsetting.logpath, 512U);
    EXPECT_EQ(sizeof logsetting.maxsize, 4U);
    EXPECT_EQ(sizeof logsetting.loglevel, 1U);
    EXPECT_EQ(sizeof loging.timestr, 20U);
    EXPECT_EQ(sizeof loging.logpath, 512U);
    EXPECT_EQ(sizeof LogLevelText, 40U);
}

} // namespace qvtc::test
