#include "qvtcctl/command/command_line.hpp"

#include "qvtcctl/base/table.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t line_width = 80;
constexpr std::string_view indent = "  ";

std::string wrapped(std::string_view text) {
    std::string result;
    std::size_t column = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (column > 0 && column + 1 + end > line_width) {
            result += "\n";
            column = 0;
        }
        if (column > 0) result += " ", ++column;
        result += text.substr(0, end);
        column += end;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result + "\n";
}

std::string indented(std::string_view text) {
    std::string result;
    for (const std::string_view line : split_lines(text)) {
        result += fmt::format("{}{}\n", indent, line);
    }
    return result;
}

/// "TYPE", "ID...", "--timeout SECONDS" or "-h, --help"
std::string label_of(const Argument& argument) {
    std::string label;
    if (!argument.letter.empty()) label += fmt::format("-{}, ", argument.letter);
    label += argument.name;
    if (argument.repeated) label += "...";
    if (!argument.value.empty()) label += fmt::format(" {}", argument.value);
    return label;
}

std::string usage(const Place& place) {
    std::string line = fmt::format("Usage: {} [OPTION]...", place.full_name());
    if (place.verb == nullptr) return line + " COMMAND\n";
    for (const Argument& argument : place.verb->arguments) {
        if (argument.is_option()) continue;
        const std::string label = label_of(argument);
        line += argument.required ? " " + label : fmt::format(" [{}]", label);
    }
    return line + "\n";
}

std::string rows_under(std::string_view title, const std::vector<Row>& rows) {
    return rows.empty() ? "" : fmt::format("\n{}:\n{}", title, indented(layout(rows)));
}

/// The commands of a group by their names; of the program, all of them by their groups' too.
std::string commands(const Place& place) {
    std::vector<Row> rows;
    for (const Group& group : groups()) {
        if (place.group != nullptr && place.group != &group) continue;
        for (const Verb* verb : group.verbs) {
            const bool is_alone = place.group != nullptr || group.name.empty();
            rows.push_back(
                {is_alone ? std::string(verb->name) : fmt::format("{} {}", group.name, verb->name),
                 std::string(verb->summary)});
        }
    }
    return rows_under("Commands", rows);
}

std::string arguments(const Place& place, std::string_view title, bool options) {
    std::vector<Row> rows;
    for (const Argument& argument : arguments_of(place)) {
        if (argument.is_option() == options) rows.push_back({label_of(argument), argument.help});
    }
    return rows_under(title, rows);
}

std::string exit_status() {
    std::vector<Row> rows;
    rows.reserve(exit_codes.size());
    for (const ExitCodeRow& row : exit_codes) {
        rows.push_back({std::to_string(static_cast<int>(row.code)), std::string(row.meaning)});
    }
    return rows_under("Exit status", rows);
}

std::string examples(const Verb& verb) {
    std::string text = "\nExamples:\n";
    for (const std::string_view example : verb.examples) {
        text += fmt::format("{}{}\n", indent, example);
    }
    return text;
}

std::string help_of_commands(const Place& place) {
    const std::string about =
        place.group == nullptr
            ? "Manages this terminal: its connections, their clients, and its settings."
            : fmt::format("{}.", place.group->summary);
    return fmt::format("{}\n{}\n{}{}{}\n\"{} COMMAND --help\" explains a command.\n", usage(place),
                       about, commands(place), arguments(place, "Options", true),
                       place.group == nullptr ? exit_status() : "", place.full_name());
}

} // namespace

std::string help_of(const Place& place) {
    if (place.verb == nullptr) return help_of_commands(place);
    return fmt::format("{}\n{}{}{}{}", usage(place), wrapped(place.verb->description),
                       arguments(place, "Arguments", false), arguments(place, "Options", true),
                       examples(*place.verb));
}

} // namespace qvtc::qvtcctl
