#include "qvtcctl/command_line.hpp"

#include "qvtcctl/table.hpp"
#include "qvtcctl/text.hpp"

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

std::vector<const CLI::Option*> options_of(const CLI::App& app, bool positional) {
    std::vector<const CLI::Option*> options;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional() == positional) options.push_back(option);
    }
    return options;
}

bool takes_many(const CLI::Option& option) { return option.get_expected_max() > 1; }

/// "TYPE", "ID..." or "FIELD=VALUE..."
std::string argument_label(const CLI::Option& option) {
    std::string name = option.get_name(true);
    if (name == "FIELD") name = "FIELD=VALUE";
    return name + (takes_many(option) ? "..." : "");
}

/// "--timeout SECONDS", or "-h, --help"
std::string option_label(const CLI::Option& option) {
    std::string label;
    for (const std::string& name : option.get_snames()) label += fmt::format("-{}, ", name);
    for (const std::string& name : option.get_lnames()) label += fmt::format("--{}", name);
    if (!option.get_option_text().empty()) label += " " + option.get_option_text();
    return label;
}

std::string usage(const CLI::App& app) {
    std::string line = fmt::format("Usage: {}", full_name(app));
    if (!app.get_subcommands(nullptr).empty()) return line + " [OPTION]... COMMAND\n";
    line += " [OPTION]...";
    for (const CLI::Option* argument : options_of(app, true)) {
        const std::string label = argument_label(*argument);
        line += argument->get_required() ? " " + label : fmt::format(" [{}]", label);
    }
    return line + "\n";
}

std::string rows_under(std::string_view title, const std::vector<Row>& rows) {
    return rows.empty() ? "" : fmt::format("\n{}:\n{}", title, indented(layout(rows)));
}

std::string commands(const CLI::App& app) {
    std::vector<Row> rows;
    for (const CLI::App* sub : app.get_subcommands(nullptr)) {
        const auto below = sub->get_subcommands(nullptr);
        if (below.empty()) rows.push_back({sub->get_name(), sub->get_description()});
        for (const CLI::App* verb : below) {
            rows.push_back(
                {fmt::format("{} {}", sub->get_name(), verb->get_name()), verb->get_description()});
        }
    }
    return rows_under("Commands", rows);
}

std::string arguments(const CLI::App& app) {
    std::vector<Row> rows;
    for (const CLI::Option* argument : options_of(app, true)) {
        rows.push_back({argument_label(*argument), argument->get_description()});
    }
    return rows_under("Arguments", rows);
}

std::string options(const CLI::App& app) {
    std::vector<Row> rows;
    for (const CLI::Option* option : options_of(app, false)) {
        rows.push_back({option_label(*option), option->get_description()});
    }
    // The help option is the first that was defined, and the least of them.
    std::rotate(rows.begin(), rows.begin() + 1, rows.end());
    return rows_under("Options", rows);
}

std::string exit_status() {
    std::vector<Row> rows;
    rows.reserve(exit_codes.size());
    for (const ExitCodeRow& row : exit_codes) {
        rows.push_back({std::to_string(static_cast<int>(row.code)), std::string(row.meaning)});
    }
    return rows_under("Exit status", rows);
}

} // namespace

std::string full_name(const CLI::App& app) {
    if (app.get_parent() == nullptr) return app.get_name();
    return fmt::format("{} {}", full_name(*app.get_parent()), app.get_name());
}

std::string help_of(const CLI::App& app) {
    const bool is_verb = app.get_subcommands(nullptr).empty();
    if (!is_verb) {
        const std::string about =
            app.get_parent() == nullptr
                ? "Manages this terminal: its connections, their clients, and its settings."
                : app.get_description() + ".";
        std::string text =
            fmt::format("{}\n{}\n{}{}", usage(app), about, commands(app), options(app));
        if (app.get_parent() == nullptr) text += exit_status();
        return text + fmt::format("\n\"{} COMMAND --help\" explains a command.\n", full_name(app));
    }
    const std::string footer = app.get_footer();
    const std::size_t split = footer.find("\n\n");
    return fmt::format("{}\n{}{}{}\nExamples:\n{}", usage(app), wrapped(footer.substr(0, split)),
                       arguments(app), options(app), indented(footer.substr(split + 2)));
}

} // namespace qvtc::qvtcctl
