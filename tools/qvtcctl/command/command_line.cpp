// The only file that knows CLI11: including it takes a compiler longer than all the rest of a verb.
#include "qvtcctl/command/command_line.hpp"

#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <deque>
#include <map>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* program = "qvtcctl";

const Argument json_flag = flag("--json", "answer in JSON");
const Argument debug_flag =
    flag("--debug", "show on standard error what the library and its commands print");
const Argument version_flag = flag("--version", "show the version");
const Argument help_flag = {.name = "--help", .help = "show this help", .letter = "h"};

/// CLI11's name of an argument: "FIELD=VALUE" would be none.
std::string parser_name(const Argument& argument) {
    return std::string(argument.name.substr(0, argument.name.find('=')));
}

std::vector<std::string_view> command_names(const Place& place) {
    std::vector<std::string_view> names;
    for (const Group& group : groups()) {
        if (place.group == nullptr && !group.name.empty()) {
            names.push_back(group.name);
        } else if (place.group == nullptr || place.group == &group) {
            for (const Verb* verb : group.verbs) names.push_back(verb->name);
        }
    }
    return names;
}

std::vector<std::string_view> option_names(const Place& place) {
    std::vector<std::string_view> names;
    for (const std::vector<Argument> all = arguments_of(place); const Argument& each : all) {
        if (each.is_option()) names.push_back(each.name);
    }
    return names;
}

std::string unexpected(const Place& place, const std::string& word) {
    const std::string shown = printable(word);
    if (word.starts_with("-") && word.size() > 1) {
        return fmt::format("unknown option \"{}\"{}.", shown,
                           did_you_mean(word, option_names(place)));
    }
    if (place.verb != nullptr) return fmt::format("unexpected argument \"{}\".", shown);
    return fmt::format("unknown command \"{}\"{}.", shown,
                       did_you_mean(word, command_names(place)));
}

/// The program's commands as CLI11 knows them, built from the rows of the verbs.
class Parser {
  public:
    Parser() : root_("", program) {
        root_.set_version_flag(std::string(version_flag.name), version_text());
        add_arguments(root_, {});
        for (const Group& group : groups()) add_group(group);
    }

    CommandLine parse(std::vector<std::string> words);

  private:
    /// Where CLI11 puts what was given for an argument.
    struct Slot {
        const CLI::App* command;
        Argument argument;
        const CLI::Option* option = nullptr;
        bool is_on = false;
        std::vector<std::string> words = {};

        bool is_given() const { return argument.is_flag() ? is_on : option->count() > 0; }
    };

    void add_group(const Group& group);
    void add_arguments(CLI::App& command, const Place& place);
    void add_argument(CLI::App& command, const Argument& argument);
    const CLI::App& chosen() const;
    std::string fault_in_rest() const;
    std::string fault_in_values() const;
    std::string fault_of(const CLI::ParseError& error) const;
    Request request() const;

    CLI::App root_;
    std::map<const CLI::App*, Place> places_;
    std::deque<Slot> slots_; // CLI11 keeps references to them
};

void Parser::add_group(const Group& group) {
    CLI::App* parent = &root_;
    if (!group.name.empty()) {
        parent = root_.add_subcommand(std::string(group.name));
        add_arguments(*parent, {&group, nullptr});
    }
    for (const Verb* verb : group.verbs) {
        add_arguments(*parent->add_subcommand(std::string(verb->name)), {&group, verb});
    }
}

void Parser::add_arguments(CLI::App& command, const Place& place) {
    places_.emplace(&command, place);
    command.set_help_flag("-h,--help");
    command.allow_extras(); // reported by unexpected(), with suggestions
    for (const Argument& argument : arguments_of(place)) {
        if (argument.name != help_flag.name && argument.name != version_flag.name) {
            add_argument(command, argument);
        }
    }
}

void Parser::add_argument(CLI::App& command, const Argument& argument) {
    Slot& slot = slots_.emplace_back(Slot{&command, argument});
    const std::string name = parser_name(argument);
    if (argument.is_flag()) {
        slot.option = command.add_flag(name, slot.is_on)->disable_flag_override();
        return;
    }
    CLI::Option* const option = command.add_option(name, slot.words)->required(argument.required);
    if (!argument.repeated) option->expected(1)->allow_extra_args(false);
    // An option that is given twice is reported by fault_in_values().
    if (argument.is_option()) option->take_all();
    slot.option = option;
}

CommandLine Parser::parse(std::vector<std::string> words) {
    std::reverse(words.begin(), words.end()); // as CLI11 wants them
    CommandLine line;
    try {
        root_.parse(words);
        line.fault = fault_in_rest();
        if (line.fault.empty()) line.fault = fault_in_values();
        line.wanted = CommandLine::Wanted::run;
    } catch (const CLI::CallForHelp&) {
        line.wanted = CommandLine::Wanted::help;
    } catch (const CLI::CallForVersion&) {
        line.wanted = CommandLine::Wanted::version;
    } catch (const CLI::ParseError& error) {
        // An unexpected argument often is the cause of what is missing, so it is reported first.
        line.fault = fault_in_rest();
        if (line.fault.empty()) line.fault = fault_of(error);
    }
    line.place = places_.at(&chosen());
    if (line.fault.empty() && line.wanted == CommandLine::Wanted::run && !line.place.verb)
        line.fault = "no command given.";
    line.request = request();
    return line;
}

const CLI::App& Parser::chosen() const {
    const CLI::App* command = &root_;
    while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
    return *command;
}

/// What is wrong with the words that fit nowhere.
std::string Parser::fault_in_rest() const {
    for (const CLI::App* each = &chosen(); each != nullptr; each = each->get_parent()) {
        if (!each->remaining().empty()) {
            return unexpected(places_.at(each), each->remaining().front());
        }
    }
    return "";
}

std::string Parser::fault_in_values() const {
    for (const Slot& slot : slots_) {
        if (slot.argument.is_option() && slot.words.size() > 1) {
            return fmt::format("{} can be given only once.", slot.argument.name);
        }
    }
    return "";
}

/// What CLI11 found wrong, in the words of the other messages. Its own begin with the argument,
/// with or without the dashes.
std::string Parser::fault_of(const CLI::ParseError& error) const {
    const std::string text = error.what();
    const std::string first = text.substr(0, text.find_first_of(": "));
    const bool is_missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    for (const Slot& slot : slots_) {
        const std::string name = parser_name(slot.argument);
        if (slot.command != &chosen() || (first != name && "--" + first != name)) continue;
        if (is_missing) return fmt::format("{} is missing.", slot.argument.name);
        if (slot.argument.is_flag()) return fmt::format("{} takes no value.", name);
        return fmt::format("{} needs a value.", name);
    }
    return text + ".";
}

Request Parser::request() const {
    Request request;
    for (const Slot& slot : slots_) {
        if (!slot.is_given()) continue;
        if (slot.argument.name == json_flag.name) request.json = true;
        if (slot.argument.name == debug_flag.name) request.debug = true;
        if (slot.command == &chosen()) request.give(slot.argument, slot.words);
    }
    return request;
}

} // namespace

std::string Place::full_name() const {
    std::string name = program;
    if (group != nullptr && !group->name.empty()) name += fmt::format(" {}", group->name);
    if (verb != nullptr) name += fmt::format(" {}", verb->name);
    return name;
}

std::string version_text() { return fmt::format("{} {}\n", program, QVTCCTL_VERSION); }

std::vector<Argument> arguments_of(const Place& place) {
    std::vector<Argument> all;
    if (place.verb != nullptr) all = place.verb->arguments;
    if (place.group == nullptr) all.push_back(version_flag);
    all.insert(all.end(), {json_flag, debug_flag, help_flag});
    return all;
}

CommandLine parse_command_line(std::vector<std::string> words) {
    return Parser().parse(std::move(words));
}

} // namespace qvtc::qvtcctl
