#include "qvtcctl/command_line.hpp"

#include "qvtcctl/fields.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::vector<const CLI::Option*> arguments_of(const CLI::App& app) {
    std::vector<const CLI::Option*> arguments;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional()) arguments.push_back(option);
    }
    return arguments;
}

/// The words of "a|b|c", each behind the same start.
std::vector<std::string> split_choices(std::string_view choices, const std::string& start = "") {
    std::vector<std::string> words;
    while (!choices.empty()) {
        const std::size_t end = std::min(choices.find('|'), choices.size());
        words.push_back(start + std::string(choices.substr(0, end)));
        choices.remove_prefix(std::min(end + 1, choices.size()));
    }
    return words;
}

/// Arguments that are one of a few words.
struct Choices {
    std::string_view argument;
    std::string_view words;
};
constexpr Choices choices_of_arguments[] = {
    {"STATE", "on|off"},
    {"MODE", "clone|extend|vertical"},
    {"ORDER", "usual|reverse"},
    {"RESOLUTION", "auto|800x600|1024x768|1280x720|1280x800|1280x1024|1366x768|1440x900|1600x900|"
                   "1600x1200|1920x1080"},
};

std::vector<std::string> values_after(const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    const std::optional<std::size_t> index = find_field(assignment.substr(0, equals));
    if (!index) return {};
    const Field& field = fields[*index];
    const std::string start = assignment.substr(0, equals + 1);
    if (field.kind == Kind::on_off) return {start + "on", start + "off"};
    return split_choices(field.choices, start);
}

std::vector<std::string> assignments(const std::string& word) {
    if (word.find('=') != std::string::npos) return values_after(word);
    std::vector<std::string> words;
    for (const Field& field : fields) {
        if (field.kind == Kind::identity || field.kind == Kind::password) continue;
        words.push_back(fmt::format("{}=", field.name));
    }
    return words;
}

std::vector<std::string> argument_words(const CLI::App& app, std::size_t given,
                                        const std::string& word) {
    const std::vector<const CLI::Option*> arguments = arguments_of(app);
    if (arguments.empty()) return {};
    const std::string name = arguments[std::min(given, arguments.size() - 1)]->get_name(true);
    if (name == "FIELD") return assignments(word);
    std::vector<std::string> words;
    if (given >= arguments.size()) return words;
    for (const Choices& each : choices_of_arguments) {
        if (name == each.argument) return split_choices(each.words);
    }
    if (name != "TYPE") return words;
    for (const ConnectionType& type : connection_types) words.emplace_back(type.name);
    return words;
}

std::vector<std::string> option_words(const CLI::App& app) {
    std::vector<std::string> words;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) words.push_back("--" + name);
    }
    return words;
}

std::vector<std::string> command_words(const CLI::App& app) {
    std::vector<std::string> words;
    for (const CLI::App* sub : app.get_subcommands(nullptr)) words.push_back(sub->get_name());
    return words;
}

const CLI::App* find_command(const CLI::App& app, const std::string& name) {
    for (const CLI::App* sub : app.get_subcommands(nullptr)) {
        if (sub->get_name() == name) return sub;
    }
    return nullptr;
}

} // namespace

std::vector<std::string> completions(const CLI::App& root, const std::vector<std::string>& words) {
    if (words.empty()) return command_words(root);
    const CLI::App* app = &root;
    std::size_t given = 0;
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        if (const CLI::App* sub = find_command(*app, words[i])) {
            app = sub;
        } else if (!words[i].starts_with("-")) {
            ++given;
        }
    }
    const std::string& last = words.back();
    std::vector<std::string> candidates = last.starts_with("-") ? option_words(*app)
                                          : app->get_subcommands(nullptr).empty()
                                              ? argument_words(*app, given, last)
                                              : command_words(*app);
    std::erase_if(candidates, [&](const std::string& word) { return !word.starts_with(last); });
    return candidates;
}

} // namespace qvtc::qvtcctl
