#include "qvtcctl/command_line.hpp"

#include "qvtcctl/types.hpp"
#include "refusals.hpp"

#include "support/support.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

using Words = std::vector<std::string>;
using test::refusal_of;

/// All verbs of the program.
std::vector<const CLI::App*> verbs(const CLI::App& app) {
    const auto below = app.get_subcommands(nullptr);
    if (below.empty()) return {&app};
    std::vector<const CLI::App*> all;
    for (const CLI::App* sub : below) {
        for (const CLI::App* verb : verbs(*sub)) all.push_back(verb);
    }
    return all;
}

std::string refusal(const Words& words) {
    CommandLine line;
    return refusal_of([&] { line.parse(words); });
}

TEST(QvtcctlCommandLine, WrongWordsAreRefused) {
    struct Case {
        Words words;
        std::string_view message;
    };
    const Case cases[] = {
        {{}, "no command given."},
        {{"connection"}, "no command given."},
        {{"conection", "list"}, "unknown command \"conection\" (did you mean \"connection\"?)."},
        {{"connection", "lst"}, "unknown command \"lst\" (did you mean \"list\"?)."},
        {{"list"}, "unknown command \"list\"."},
        {{"connection", "list", "--jsno"}, "unknown option \"--jsno\" (did you mean \"--json\"?)."},
        {{"connection", "list", "--xyz"}, "unknown option \"--xyz\"."},
        {{"connection", "list", "rdp", "vnc"}, "unexpected argument \"vnc\"."},
        {{"connection", "show"}, "ID is missing."},
        {{"connection", "add", "rdp"}, "FIELD=VALUE is missing."},
        {{"launch", "32", "--timeout"}, "--timeout needs a value."},
        {{"launch", "--waitt"}, "unknown option \"--waitt\" (did you mean \"--wait\"?)."},
    };
    for (const Case& c : cases) EXPECT_EQ(refusal(c.words), c.message);
}

TEST(QvtcctlCommandLine, CommonOptionsStandAnywhere) {
    for (const Words& words : {Words{"--json", "connection", "list"},
                               {"connection", "--json", "list"},
                               {"connection", "list", "--json"}}) {
        CommandLine line;
        const CommandLine::Call call = line.parse(words);
        EXPECT_TRUE(call.context.json);
        EXPECT_FALSE(call.context.debug);
    }
}

TEST(QvtcctlCommandLine, EveryVerbHasHelpWithExamplesOfItself) {
    const CommandLine line;
    for (const CLI::App* verb : verbs(line.root())) {
        const std::string help = help_of(*verb);
        const std::string name = full_name(*verb);
        EXPECT_TRUE(help.starts_with("Usage: " + name + " [OPTION]...")) << help;
        const std::size_t examples = help.find("\nExamples:\n");
        ASSERT_NE(examples, std::string::npos) << name;
        for (const std::string& example : test::lines_of(help.substr(examples + 11))) {
            EXPECT_NE(example.find(name), std::string::npos) << example;
        }
    }
}

TEST(QvtcctlCommandLine, EveryVerbAnswersInJson) {
    const CommandLine line;
    for (const CLI::App* verb : verbs(line.root())) {
        EXPECT_NE(verb->get_option_no_throw("--json"), nullptr) << full_name(*verb);
    }
}

/// The man page as it is read: without the marks of its language.
std::string man_page() {
    std::string page = test::read_file(QVTCCTL_SOURCES "/qvtcctl.1");
    for (std::size_t at = 0; (at = page.find("\\-", at)) != std::string::npos;) page.erase(at, 1);
    return page;
}

std::string section(const std::string& page, const std::string& heading) {
    const std::size_t start = page.find(heading);
    if (start == std::string::npos) return "";
    return page.substr(start, page.find("\n.S", start + heading.size()) - start);
}

bool holds_option(const std::string& text, const std::string& option) {
    const std::size_t at = text.find("--" + option);
    return at != std::string::npos;
}

TEST(QvtcctlManPage, HasEveryVerbWithItsOptionsAndArguments) {
    const std::string page = man_page();
    const std::string common = section(page, ".SH COMMON OPTIONS");
    const CommandLine line;
    for (const CLI::App* verb : verbs(line.root())) {
        const std::string name = full_name(*verb);
        std::string text = section(page, ".SS \"" + name + " ");
        if (text.empty()) text = section(page, ".SS \"" + name + "\"");
        ASSERT_FALSE(text.empty()) << name << " is not in the man page";
        for (const CLI::Option* option : verb->get_options()) {
            for (const std::string& word : option->get_lnames()) {
                EXPECT_TRUE(holds_option(text, word) || holds_option(common, word))
                    << name << " --" << word;
            }
            if (option->get_positional()) {
                EXPECT_NE(text.find(option->get_name(true)), std::string::npos)
                    << name << " " << option->get_name(true);
            }
        }
    }
}

TEST(QvtcctlManPage, HasNoOptionAndNoVerbThatTheProgramHasNot) {
    const CommandLine line;
    std::vector<std::string> known{"version"};
    std::vector<std::string> names;
    for (const CLI::App* verb : verbs(line.root())) {
        names.push_back(full_name(*verb));
        for (const CLI::Option* option : verb->get_options()) {
            for (const std::string& name : option->get_lnames()) known.push_back(name);
        }
    }
    const std::string page = man_page();
    for (std::size_t at = 0; (at = page.find("--", at)) != std::string::npos; at += 2) {
        const std::size_t end = page.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-", at);
        const std::string option = page.substr(at + 2, end - at - 2);
        EXPECT_NE(std::find(known.begin(), known.end(), option), known.end()) << option;
    }
    for (const std::string& row : test::lines_of(page)) {
        if (!row.starts_with(".SS \"qvtcctl ")) continue;
        const std::string title = row.substr(5, row.find_first_of("\\\"", 5) - 5);
        const std::string name = title.substr(0, title.find_last_not_of(' ') + 1);
        EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
    }
}

TEST(QvtcctlManPage, HasTheProgramsExitStatusesAndTypes) {
    const std::string page = man_page();
    std::string expected = ".SH EXIT STATUS\n";
    for (const ExitCodeRow& row : exit_codes) {
        expected += ".TP\n.BR " + std::to_string(static_cast<int>(row.code)) + " \" (\" " +
                    std::string(row.name) + " )\n" + std::string(row.meaning) + "\n";
    }
    EXPECT_EQ(section(page, ".SH EXIT STATUS") + "\n", expected);
    for (const ConnectionType& type : connection_types) {
        const std::string row =
            "\n" + std::to_string(type.number) + "\t" + std::string(type.name) + "\t" +
            std::to_string(first_id(type)) + "-" + std::to_string(last_id(type)) + "\t" +
            (can_be_launched(type) ? std::string(type.process) : "started by the front-end only") +
            "\n";
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
}

TEST(QvtcctlExitCodes, StandInTheOrderOfTheirNumbers) {
    for (std::size_t i = 0; i < exit_codes.size(); ++i) {
        EXPECT_EQ(static_cast<std::size_t>(exit_codes[i].code), i);
    }
}

} // namespace
} // namespace qvtc::qvtcctl
