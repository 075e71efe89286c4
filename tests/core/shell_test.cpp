#include "core/shell.hpp"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <vector>

#include "core/shells.hpp"
#include "core/text.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

/// Values that would do something in a shell that sees them unquoted, or in the wrong quotes.
const std::string hostile_values[] = {
    "plain",
    "$(touch /tmp/owned)",
    "`touch /tmp/owned`",
    "${IFS}",
    "$HOME",
    "$((1+1))",
    "$'\\x41'",
    "$\"x\"",
    "$$ $? $! $# $@ $* $- $0 $1",
    "'; touch /tmp/owned; '",
    "\"; touch /tmp/owned; \"",
    "'\"'\"'",
    "\"'\"'\"",
    "'",
    "\"",
    "''",
    "a'b\"c",
    "\\",
    "\\\\",
    "\\'",
    "\\\"",
    "a\\",
    "a\\\nb",
    "a\nb",
    "\n",
    "\n\n",
    "a\n",
    "\na",
    "a\ntouch /tmp/owned",
    "a\n#b\n~c",
    "a\r\nb",
    "*",
    "?",
    "[a-z]*",
    "/*",
    "{a,b}",
    "{1..3}",
    "a{b",
    ">pwned",
    "<pwned",
    ">>pwned",
    "2>pwned",
    "2>&1",
    "<<x",
    "<(touch /tmp/owned)",
    "a;touch /tmp/owned",
    ";",
    ";;",
    "a&touch /tmp/owned",
    "&&touch /tmp/owned",
    "a|touch /tmp/owned",
    "||",
    "(touch /tmp/owned)",
    ")",
    "{ touch /tmp/owned; }",
    "~",
    "~root",
    "a~",
    "a ~ b",
    "~ ~",
    "#",
    "#a",
    "a#b",
    "a #b",
    "a\t#b",
    "!",
    "!!",
    "!x",
    "a!b",
    "=",
    "a=b",
    "%",
    "%s%n",
    "^a^b",
    "-",
    "-n",
    "--",
    ",",
    "@",
    "a:b",
    "x y",
    " a  b ",
    "\ta\tb\t",
    " ",
    "  \t ",
    "a \n b",
    "if",
    "while true; do :; done",
    "function",
    "e\u0301\u00e4\u20ac\U0001f600",
    "\xff\xfe\x80",
    "p&ss'w\"o$r`d\\1 #~*",
};

/// Every single byte that a value can hold, between others and alone.
std::vector<std::string> all_values() {
    std::vector<std::string> values(std::begin(hostile_values), std::end(hostile_values));
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        values.emplace_back(1, c);
        values.push_back(std::string("a") + c + "b" + c);
    }
    return values;
}

std::vector<std::string> split_at_blanks(const std::string& value) {
    std::vector<std::string> fields;
    for (std::size_t start = value.find_first_not_of(" \t"); start != std::string::npos;) {
        const std::size_t end = value.find_first_of(" \t", start);
        fields.push_back(value.substr(start, end - start));
        start = value.find_first_not_of(" \t", end);
    }
    return fields;
}

using Names = std::vector<std::string>;

Names names_in(const std::filesystem::path& directory) {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

/// A directory with two files for patterns to match, and a watch for what should not run.
class Shell : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove("/tmp/owned");
        std::filesystem::create_directories(directory_);
        write_file(directory_ + "/a", "content of a\n");
        write_file(directory_ + "/b", "content of b\n");
        std::filesystem::current_path(directory_);
    }
    void TearDown() override {
        EXPECT_FALSE(file_exists("/tmp/owned"));
        EXPECT_EQ(names_in(directory_), (Names{"a", "b"}));
        std::filesystem::current_path("/");
    }

    /// Asks both shells for each value; `text_for` puts it into a command text, and
    /// `expected_for` is what that prints.
    template <typename TextFor, typename ExpectedFor>
    static void expect_for_all(TextFor text_for, ExpectedFor expected_for) {
        for (const char* const shell : shells) {
            for (const std::string& value : all_values()) {
                EXPECT_EQ(output_of(shell, text_for(value)), expected_for(value))
                    << shell << " for the value: " << testing::PrintToString(value);
            }
        }
    }

    static std::string line_of(const std::string& value) { return value + "\n"; }

  private:
    const std::string directory_ = "/tmp/shell_test";
};

} // namespace

TEST_F(Shell, ReceivesAWordAsItIs) {
    expect_for_all([](const std::string& value) { return "printf '%s\\n' " + shell::word(value); },
                   line_of);
}

TEST_F(Shell, ReceivesAValueInSingleQuotesAsItIs) {
    expect_for_all(
        [](const std::string& value) { return "printf '%s\\n' '" + shell::in_single(value) + "'"; },
        line_of);
}

TEST_F(Shell, ReceivesAValueInDoubleQuotesAsItIs) {
    expect_for_all(
        [](const std::string& value) {
            return "printf '%s\\n' \"" + shell::in_double(value) + "\"";
        },
        line_of);
}

TEST_F(Shell, ReceivesABareValueAsItsFields) {
    expect_for_all([](const std::string& value) { return "printf '<%s>' " + shell::bare(value); },
                   [](const std::string& value) {
                       std::string expected;
                       for (const std::string& field : split_at_blanks(value))
                           expected += "<" + field + ">";
                       return expected.empty() ? "<>" : expected;
                   });
}

TEST_F(Shell, ReceivesAValueBeforeARedirection) {
    expect_for_all(
        [](const std::string& value) {
            return "printf '%s\\n' " + shell::before_redirection(value) + ">/tmp/redirected; " +
                   "cat /tmp/redirected";
        },
        line_of);
    for (const char* const shell : shells) {
        for (const char* const number : {"1", "2", "42", "0"}) {
            EXPECT_EQ(output_of(shell, "echo " + shell::before_redirection(number) +
                                           ">/tmp/redirected; cat /tmp/redirected"),
                      line_of(number));
        }
    }
}

TEST_F(Shell, ReadsAnAssignedValueFromAFileAsItIs) {
    expect_for_all(
        [](const std::string& value) {
            write_file("/tmp/assignments", "A=" + shell::assigned(value) + "\nB=b\n");
            return std::string(". /tmp/assignments; printf '%s%s\\n' \"$A\" \"$B\"");
        },
        [](const std::string& value) { return one_line(value) + "b\n"; });
}

TEST_F(Shell, KeepsAnAssignedValueOnOneLine) {
    // Scripts remove such lines with sed: no part of a value may be left behind.
    for (const std::string& value : all_values()) {
        EXPECT_EQ(shell::assigned(value).find('\n'), std::string::npos);
    }
}

TEST_F(Shell, SearchesForAPatternThatIsTheValue) {
    const auto printable_lines = [](const std::string& value) {
        return value.find('\n') == std::string::npos;
    };
    for (const char* const shell : shells) {
        for (const std::string& value : all_values()) {
            if (value.empty() || !printable_lines(value)) continue;
            write_file("/tmp/lines", "before\n<" + value + ">\nbehind\n");
            EXPECT_EQ(output_of(shell, "LC_ALL=C grep -a -c " +
                                           shell::grep_pattern("<" + value + ">") + " </tmp/lines"),
                      "1\n")
                << shell << " for the value: " << testing::PrintToString(value);
            write_file("/tmp/lines", value + "\n");
            EXPECT_EQ(output_of(shell, "LC_ALL=C grep -a -c " + shell::grep_pattern(value) +
                                           " </tmp/lines 2>&1"),
                      "1\n")
                << shell << " for the value: " << testing::PrintToString(value);
        }
    }
    EXPECT_EQ(output_of("/bin/bash", "echo abc | grep -c " + shell::grep_pattern("a.c")), "0\n");
    EXPECT_EQ(output_of("/bin/bash", "echo abc | grep -c " + shell::grep_pattern("x\n")), "0\n");
}

TEST_F(Shell, ReceivesAValueWithinAWord) {
    expect_for_all(
        [](const std::string& value) {
            return "printf '%s\\n' https://" + shell::word(value, shell::At::inside_word) + "/x";
        },
        [](const std::string& value) { return "https://" + value + "/x\n"; });
}

TEST_F(Shell, RunsTheValuesOfTheCorpusWhereTheyAreNotQuoted) {
    // Or the tests above could not fail.
    output_of("/bin/bash", "printf '%s\\n' $(touch /tmp/owned)");
    EXPECT_TRUE(file_exists("/tmp/owned"));
    std::filesystem::remove("/tmp/owned");
}

TEST(ShellText, OfOrdinaryValuesIsTheValue) {
    const char* const ordinary[] = {
        "",
        "plain",
        "192.168.1.10",
        "https://example.test:8443/path/page.html",
        "user@example.test",
        "1920x1080",
        "/bpp:32",
        "+fonts",
        "-u",
        "a_b-c.d,e:f%g^h!i=j@k",
        "a~b#c",
        "\u00e4\u20ac",
    };
    for (const char* const value : ordinary) {
        EXPECT_EQ(shell::bare(value), value);
        EXPECT_EQ(shell::word(value), value);
        EXPECT_EQ(shell::in_single(value), value);
        EXPECT_EQ(shell::in_double(value), value);
        EXPECT_EQ(shell::before_redirection(value), value);
    }
    for (const char* const value : {"", "192.168.1.10", "eth0", "wlan0", "0.0.0.0", "fe80::1%eth0",
                                    "a#b", "#1", "a~", "[::1]"})
        EXPECT_EQ(shell::assigned(value), value);
    for (const char* const value : {"#1 Server", "~home", "1#2", "a ]} b"})
        EXPECT_EQ(shell::bare(value, shell::At::inside_word), value);
    EXPECT_EQ(shell::in_double("C:\\Windows\\notepad.exe"), "C:\\Windows\\notepad.exe");
    for (const char* const value : {"", "eth0", "wlan0", "Office", "a_b-c"})
        EXPECT_EQ(shell::grep_pattern(value), value);
}

TEST(ShellText, OfAPatternOrAnAssignmentIsReadableToo) {
    EXPECT_EQ(shell::assigned("a b"), "'a b'");
    EXPECT_EQ(shell::assigned("it's"), "'it'\\''s'");
    EXPECT_EQ(shell::assigned("a\nb"), "'a b'");
    EXPECT_EQ(shell::assigned("$(x)"), "'$(x)'");
    EXPECT_EQ(shell::assigned("~a"), "'~a'");
    for (const char* const value : {"10.0.0.5\n", "10.0.0.5 ", "10.0.0.5\r\n", "10.0.0.5\t \n\n"})
        EXPECT_EQ(shell::assigned(value), "10.0.0.5");
    EXPECT_EQ(shell::assigned(" \n"), "");
    EXPECT_EQ(shell::grep_pattern("Guest WiFi"), "Guest\\ WiFi");
    EXPECT_EQ(shell::grep_pattern("-v"), "\\[-]v");
    EXPECT_EQ(shell::grep_pattern("a.b"), "a\\\\.b");
    EXPECT_EQ(shell::before_redirection("5"), "\\5");
}

TEST(ShellText, IsReadableWhereSomethingIsQuoted) {
    const struct {
        std::string_view value, bare, word, in_single, in_double;
    } cases[] = {
        {"a b", "a b", "a\\ b", "a b", "a b"},
        {"a\tb", "a\tb", "a\\\tb", "a\tb", "a\tb"},
        {"it's", "it\\'s", "it\\'s", "it'\\''s", "it's"},
        {"a\"b", "a\\\"b", "a\\\"b", "a\"b", "a\\\"b"},
        {"$x", "\\$x", "\\$x", "$x", "\\$x"},
        {"a&b", "a\\&b", "a\\&b", "a&b", "a&b"},
        {"a\\b", "a\\\\b", "a\\\\b", "a\\b", "a\\b"},
        {"a\\", "a\\\\", "a\\\\", "a\\", "a\\\\"},
        {"a\\\\b", "a\\\\\\\\b", "a\\\\\\\\b", "a\\\\b", "a\\\\\\b"},
        {"[::1]", "\\[::1]", "\\[::1]", "[::1]", "[::1]"},
        {"`a`", "\\`a\\`", "\\`a\\`", "`a`", "\\`a\\`"},
        {"~a ~b", "\\~a \\~b", "\\~a\\ \\~b", "~a ~b", "~a ~b"},
        {"a\nb", "a'\n'b", "a'\n'b", "a\nb", "a\nb"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(shell::bare(c.value), c.bare);
        EXPECT_EQ(shell::word(c.value), c.word);
        EXPECT_EQ(shell::in_single(c.value), c.in_single);
        EXPECT_EQ(shell::in_double(c.value), c.in_double);
    }
}

TEST(ShellText, NamesWhatEchoTakesForAnOption) {
    for (const char* const option : {"-n", "-e", "-E", "-ne", "-nnEe"}) {
        EXPECT_TRUE(shell::is_echo_option(option)) << option;
        EXPECT_EQ(output_of("/bin/bash", std::string("echo \"") + option + "\"").find('-'),
                  std::string::npos);
    }
    for (const char* const name : {"", "-", "--", "-x", "-nx", "n", "-n x", "-n1", "TC-n"}) {
        EXPECT_FALSE(shell::is_echo_option(name)) << name;
        for (const char* const shell : shells)
            EXPECT_EQ(output_of(shell, std::string("echo \"") + name + "\""),
                      std::string(name) + "\n");
    }
}

} // namespace qvtc::test
