// The program as its user sees it.

#include "qvplugin/program.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>

namespace qvtc::test {

namespace {

class QvpluginCommandLine : public testing::Test {
  protected:
    const InstalledProgram program{QVPLUGIN_PROGRAM};
};

const std::string key_rule = " is not a valid key: expected a number from 0 to 4294967295, "
                             "without a sign or leading zeros.\n";
const std::string text_rule =
    " is not valid base64. Encode the value first: printf %s VALUE | base64 -w 0\n";

mode_t mode_of(const char* path) {
    struct stat status {};
    EXPECT_EQ(stat(path, &status), 0) << path;
    return status.st_mode & 07777U;
}

} // namespace

TEST_F(QvpluginCommandLine, GivesBackWhatWasStored) {
    EXPECT_EQ(run("qvplugin 1 90 YWJj"), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{0, "YWJj", ""}));
    EXPECT_EQ(run("qvplugin 1 90 eA=="), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{0, "eA==", ""}));
    EXPECT_EQ(run("qvplugin 1 4294967295 ////; qvplugin 1 0 ++++; qvplugin list"),
              (Outcome{0, "0\t++++\n90\teA==\n4294967295\t////\n", ""}));
}

TEST_F(QvpluginCommandLine, TellsTheEmptyValueFromNone) {
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{1, "", ""}));
    EXPECT_EQ(run("qvplugin list"), (Outcome{0, "", ""}));
    EXPECT_FALSE(file_exists("/var/lib/qvplugin")); // asking makes nothing
    EXPECT_EQ(run("qvplugin 1 90 "), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin 1 91 ''; qvplugin list"), (Outcome{0, "90\t\n91\t\n", ""}));
    EXPECT_EQ(run("qvplugin 0 9"), (Outcome{1, "", ""}));
}

TEST_F(QvpluginCommandLine, Deletes) {
    const Outcome none{1, "", "qvplugin: nothing is stored under 90.\n"};
    EXPECT_EQ(run("qvplugin delete 90"), none);
    run("qvplugin 1 90 YWJj; qvplugin 1 91 YWJj");
    EXPECT_EQ(run("qvplugin delete 90"), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin delete 90"), none);
    EXPECT_EQ(run("qvplugin list"), (Outcome{0, "91\tYWJj\n", ""}));
}

TEST_F(QvpluginCommandLine, KeepsItsFileToItself) {
    EXPECT_EQ(run("umask 0; qvplugin 1 90 YWJj").status, 0);
    EXPECT_EQ(mode_of(database_path), 0600U);
    EXPECT_EQ(mode_of("/var/lib/qvplugin"), 0700U);
    EXPECT_EQ(run("ls -A /var/lib/qvplugin").output, "values.db\n");
    EXPECT_EQ(run("chmod 640 /var/lib/qvplugin/values.db; qvplugin 1 90 YQ==").status, 0);
    EXPECT_EQ(mode_of(database_path), 0640U); // what an administrator wants stays
}

TEST_F(QvpluginCommandLine, UsesAnotherFileOnRequest) {
    const std::string other = "export QVPLUGIN_DATABASE=/tmp/other/deep/v.db; ";
    EXPECT_EQ(run(other + "qvplugin 0 1"), (Outcome{1, "", ""}));
    EXPECT_EQ(run(other + "qvplugin 1 1 YWJj; qvplugin 0 1"), (Outcome{0, "YWJj", ""}));
    EXPECT_FALSE(file_exists(database_path));
    EXPECT_EQ(mode_of("/tmp/other/deep/v.db"), 0600U);
    EXPECT_EQ(run("QVPLUGIN_DATABASE= qvplugin 1 1 YWJj; qvplugin list").output, "1\tYWJj\n");
}

TEST_F(QvpluginCommandLine, WordsOfItsOwnAreTextsAndKeysToo) {
    EXPECT_EQ(run("qvplugin 1 0 list; qvplugin 1 1 1111; qvplugin 0 0; qvplugin 0 1"),
              (Outcome{0, "list1111", ""}));
    EXPECT_EQ(run("qvplugin delete 0; qvplugin delete 1; qvplugin list"), (Outcome{0, "", ""}));
}

TEST_F(QvpluginCommandLine, RefusesWhatIsNoKey) {
    const std::pair<const char*, const char*> keys[] = {
        {"''", "\"\""},
        {"-1", "\"-1\""},
        {"+1", "\"+1\""},
        {"01", "\"01\""},
        {"00", "\"00\""},
        {"1x", "\"1x\""},
        {"' 1'", "\" 1\""},
        {"0x1", "\"0x1\""},
        {"1.0", "\"1.0\""},
        {"../90", "\"../90\""},
        {"4294967296", "\"4294967296\""},
        {"99999999999999999999", "\"99999999999999999999\""},
        {"\"'; drop table numbered_values; --\"", "\"'; drop table numbered_values; --\""},
        {"$'a\\n\\e[31m\\xff'", "\"a??[31m?\""},
    };
    run("qvplugin 1 1 YWJj");
    for (const auto& [key, shown] : keys) {
        const Outcome refused{2, "", std::string("qvplugin: ") + shown + key_rule};
        EXPECT_EQ(run(std::string("qvplugin 0 ") + key), refused);
        EXPECT_EQ(run(std::string("qvplugin 1 ") + key + " YWJj"), refused);
        EXPECT_EQ(run(std::string("qvplugin delete ") + key), refused);
    }
    EXPECT_EQ(run("qvplugin list").output, "1\tYWJj\n");
}

TEST_F(QvpluginCommandLine, RefusesWhatIsNoBase64) {
    run("qvplugin 1 1 kept");
    const std::pair<const char*, const char*> texts[] = {
        {"a", "\"a\""},           {"ab", "\"ab\""},
        {"abc", "\"abc\""},       {"abcde", "\"abcde\""},
        {"a===", "\"a===\""},     {"====", "\"====\""},
        {"ab=c", "\"ab=c\""},     {"=abc", "\"=abc\""},
        {"abc-", "\"abc-\""},     {"abc_", "\"abc_\""},
        {"'abc '", "\"abc \""},   {"$'abc\\n'", "\"abc?\""},
        {"'a b='", "\"a b=\""},   {"$'\\xff\\xfe\\xfd\\xfc'", "\"????\""},
        {"\"';x'\"", "\"';x'\""},
    };
    for (const auto& [text, shown] : texts) {
        EXPECT_EQ(run(std::string("qvplugin 1 1 ") + text),
                  (Outcome{2, "", std::string("qvplugin: ") + shown + text_rule}));
    }
    EXPECT_EQ(run("qvplugin 1 1 \"$(printf '%0.s!' {1..100})\"").errors,
              "qvplugin: \"" + std::string(40, '!') + "\"..." + text_rule);
    EXPECT_EQ(run("qvplugin list").output, "1\tkept\n");
}

TEST_F(QvpluginCommandLine, TakesTextsThatTheLibraryCanReadBack) {
    const std::string largest(102'400, 'A');
    EXPECT_EQ(run("qvplugin 1 1 " + largest).status, 0);
    EXPECT_TRUE(run("qvplugin 0 1").output == largest);
    EXPECT_EQ(run("qvplugin 1 1 AAAA" + largest),
              (Outcome{2, "",
                       "qvplugin: the text has 102404 characters; at most 102400 are allowed.\n"}));
    EXPECT_TRUE(run("qvplugin 0 1").output == largest);
}

TEST_F(QvpluginCommandLine, WrongCommandsAreExplained) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "no command given"},
        {"2 90", "unknown command \"2\""},
        {"-x", "unknown command \"-x\""},
        {"0", "KEY is required"},
        {"1", "KEY is required"},
        {"delete", "KEY is required"},
        {"0 90 YWJj", "The following argument was not expected: YWJj"},
        {"1 90 YWJj YWJj", "The following argument was not expected: YWJj"},
        {"1 90 -x", "The following argument was not expected: -x"},
        {"list 90", "The following argument was not expected: 90"},
    };
    for (const auto& [words, reason] : cases) {
        EXPECT_EQ(
            run(std::string("qvplugin ") + words),
            (Outcome{2, "", std::string("qvplugin: ") + reason + ". Try \"qvplugin --help\".\n"}));
    }
    EXPECT_FALSE(file_exists(database_path));
}

TEST_F(QvpluginCommandLine, ExplainsItself) {
    EXPECT_EQ(run("qvplugin --version").output.substr(0, 9), "qvplugin ");
    const Outcome help = run("qvplugin --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help, run("qvplugin -h"));
    const std::string page = read_file(QVPLUGIN_MAN_PAGE);
    for (const std::string command : {"0", "1", "list", "delete"}) {
        EXPECT_NE(help.output.find("\n  " + command + "  "), std::string::npos) << command;
        EXPECT_NE(page.find("qvplugin " + command), std::string::npos) << command;
    }
    for (const char* const fact : {database_path, "QVPLUGIN_DATABASE", "4294967295"}) {
        EXPECT_NE(help.output.find(fact), std::string::npos) << fact;
        EXPECT_NE(page.find(fact), std::string::npos) << fact;
    }
    EXPECT_NE(run("qvplugin 1 --help").output.find("qvplugin 1 [OPTIONS] KEY [TEXT]"),
              std::string::npos);
}

TEST_F(QvpluginCommandLine, ManPageIsWellFormed) {
    QVTC_NEED_PROGRAM("man");
    EXPECT_EQ(run(std::string("man --warnings=all -l ") + QVPLUGIN_MAN_PAGE + " >/dev/null"),
              (Outcome{0, "", ""}));
}

TEST_F(QvpluginCommandLine, StoreThatCannotBeUsedIsExplained) {
    write_file("/tmp/no.db", "this is no database, though it is long enough to look like one");
    const std::pair<const char*, const char*> cases[] = {
        {"/tmp/no.db", "/tmp/no.db: file is not a database"},
        {"/tmp", "/tmp: unable to open database file (Is a directory)"},
        {"/tmp/no.db/x/v.db", "/tmp/no.db/x: Not a directory"},
    };
    for (const auto& [path, reason] : cases) {
        const std::string use = std::string("export QVPLUGIN_DATABASE=") + path + "; ";
        EXPECT_EQ(run(use + "qvplugin 1 90 YWJj"),
                  (Outcome{3, "", std::string("qvplugin: ") + reason + "\n"}));
        EXPECT_EQ(run(use + "qvplugin 0 90").status, 3);
        EXPECT_EQ(run(use + "qvplugin list").status, 3);
        EXPECT_EQ(run(use + "qvplugin delete 90").status, 3);
    }
    run("qvplugin 1 90 YWJj");
    EXPECT_EQ(run("qvplugin 0 90 >/dev/full"),
              (Outcome{3, "", "qvplugin: the output could not be written.\n"}));
}

} // namespace qvtc::test
