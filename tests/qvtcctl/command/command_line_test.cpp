#include "qvtcctl/command/command_line.hpp"

#include "qvtcctl/connections/types.hpp"

#include "support/support.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

using Words = std::vector<std::string>;

/// Every command, and where it stands.
std::vector<Place> places() {
    std::vector<Place> all;
    for (const Group& group : groups()) {
        for (const Verb* verb : group.verbs) all.push_back({&group, verb});
    }
    return all;
}

std::string fault(const Words& words) { return parse_command_line(words).fault; }

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
        {{"launch", "32", "--timeout", "1", "--timeout", "2"}, "--timeout can be given only once."},
        {{"launch"}, "ID is missing."},
        {{"launch", "32", "--wait=no"}, "--wait takes no value."},
        {{"connection", "list", "--json=yes"}, "--json takes no value."},
        {{"network", "set", "eth0"}, "MODE is missing."},
        {{"launch", "--waitt"}, "unknown option \"--waitt\" (did you mean \"--wait\"?)."},
    };
    for (const Case& c : cases) EXPECT_EQ(fault(c.words), c.message);
}

TEST(QvtcctlCommandLine, CommonOptionsStandAnywhere) {
    for (const Words& words : {Words{"--json", "connection", "list"},
                               {"connection", "--json", "list"},
                               {"connection", "list", "--json"}}) {
        const CommandLine line = parse_command_line(words);
        EXPECT_EQ(line.fault, "");
        EXPECT_TRUE(line.request.json);
        EXPECT_FALSE(line.request.debug);
    }
}

TEST(QvtcctlCommandLine, GivesEachArgumentItsValues) {
    const CommandLine line =
        parse_command_line({"connection", "set", "32", "a=1", "--password-stdin", "b=2"});
    ASSERT_EQ(line.fault, "");
    ASSERT_EQ(line.place.full_name(), "qvtcctl connection set");
    const std::vector<Argument>& arguments = line.place.verb->arguments;
    const auto named = [&](std::string_view name) {
        return *std::find_if(arguments.begin(), arguments.end(),
                             [&](const Argument& each) { return each.name == name; });
    };
    EXPECT_EQ(line.request.text(named("ID")), "32");
    EXPECT_EQ(line.request.texts(named("FIELD=VALUE")), (Words{"a=1", "b=2"}));
    EXPECT_TRUE(line.request.has(named("--password-stdin")));
    EXPECT_FALSE(line.request.has(named("--password")));
}

TEST(QvtcctlCommandLine, AnEmptyValueIsGivenAllTheSame) {
    const CommandLine line = parse_command_line({"host-name", ""});
    ASSERT_EQ(line.fault, "");
    EXPECT_TRUE(line.request.has(line.place.verb->arguments.front()));
    EXPECT_EQ(line.request.text(line.place.verb->arguments.front()), "");
}

TEST(QvtcctlCommandLine, AsksForHelpOfWhatItNames) {
    const CommandLine line = parse_command_line({"connection", "--help"});
    EXPECT_EQ(line.wanted, CommandLine::Wanted::help);
    EXPECT_EQ(line.place.full_name(), "qvtcctl connection");
}

TEST(QvtcctlCommandLine, EveryVerbHasARunAndHelpWithExamplesOfItself) {
    for (const Place& place : places()) {
        const std::string name = place.full_name();
        EXPECT_NE(place.verb->run, nullptr) << name;
        EXPECT_TRUE(help_of(place).starts_with("Usage: " + name + " [OPTION]...")) << name;
        EXPECT_FALSE(place.verb->examples.empty()) << name;
        for (const std::string_view example : place.verb->examples) {
            EXPECT_NE(example.find(name), std::string_view::npos) << example;
        }
    }
}

TEST(QvtcctlCommandLine, NoVerbHasTwoArgumentsOfOneName) {
    for (const Place& place : places()) {
        std::vector<std::string_view> names;
        for (const Argument& argument : arguments_of(place)) names.push_back(argument.name);
        std::sort(names.begin(), names.end());
        EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end()) << place.full_name();
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

TEST(QvtcctlManPage, HasEveryVerbWithItsOptionsAndArguments) {
    const std::string page = man_page();
    const std::string common = section(page, ".SH COMMON OPTIONS");
    for (const Place& place : places()) {
        const std::string name = place.full_name();
        std::string text = section(page, ".SS \"" + name + " ");
        if (text.empty()) text = section(page, ".SS \"" + name + "\"");
        ASSERT_FALSE(text.empty()) << name << " is not in the man page";
        for (const Argument& argument : arguments_of(place)) {
            EXPECT_NE((text + common).find(argument.name), std::string::npos)
                << name << " " << argument.name;
        }
    }
}

TEST(QvtcctlManPage, HasNoOptionAndNoVerbThatTheProgramHasNot) {
    std::vector<std::string> known{"--version"};
    std::vector<std::string> names;
    for (const Place& place : places()) {
        names.push_back(place.full_name());
        for (const Argument& argument : arguments_of(place)) known.emplace_back(argument.name);
    }
    const std::string page = man_page();
    for (std::size_t at = 0; (at = page.find("--", at)) != std::string::npos; at += 2) {
        const std::size_t end = page.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-", at);
        const std::string option = page.substr(at, end - at);
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
