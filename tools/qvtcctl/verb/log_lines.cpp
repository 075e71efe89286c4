#include "qvtcctl/verb/log_lines.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

struct LevelName {
    LogLevel level;
    std::string_view name;
    std::string_view tag;
};

constexpr std::array<LevelName, 3> levels{{
    {LogLevel::debug, "debug", "[DEBUG] "},
    {LogLevel::info, "info", "[INFO] "},
    {LogLevel::error, "error", "[ERROR] "},
}};

constexpr std::string_view time_form = "dddd-dd-dd dd:dd:dd ";

bool begins_with_time(std::string_view line) {
    if (line.size() < time_form.size()) return false;
    return std::equal(time_form.begin(), time_form.end(), line.begin(), [](char form, char c) {
        return form == 'd' ? c >= '0' && c <= '9' : c == form;
    });
}

/// The line, when it begins as the library begins one.
std::optional<LogLine> parse_line(std::string_view line) {
    if (!begins_with_time(line)) return std::nullopt;
    const std::string_view rest = line.substr(time_form.size());
    for (const LevelName& each : levels) {
        if (!rest.starts_with(each.tag)) continue;
        return LogLine{std::string(line.substr(0, time_form.size() - 1)), each.level,
                       std::string(rest.substr(each.tag.size()))};
    }
    return std::nullopt;
}

} // namespace

LogLevel require_level(const std::string& name) {
    for (const LevelName& each : levels) {
        if (each.name == name) return each.level;
    }
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown level \"{}\": give debug, info or error.", printable(name)));
}

std::string_view name_of(LogLevel level) { return levels[static_cast<std::size_t>(level)].name; }

std::vector<LogLine> parse_log(std::string_view text) {
    std::vector<LogLine> lines;
    for (const std::string_view line : split_lines(text)) {
        if (auto parsed = parse_line(line)) {
            lines.push_back(std::move(*parsed));
        } else if (lines.empty()) {
            lines.push_back({"", LogLevel::info, std::string(line)});
        } else if (!line.empty()) {
            lines.back().message += fmt::format("\n{}", line);
        }
    }
    return lines;
}

std::string text_of(const LogLine& line) {
    std::string text =
        line.time.empty() ? "" : fmt::format("{} {:<5} ", line.time, name_of(line.level));
    bool first = true;
    for (const std::string_view part : split_lines(line.message)) {
        text += fmt::format("{}{}\n", first ? "" : "    ", printable(part));
        first = false;
    }
    return first ? text + "\n" : text;
}

} // namespace qvtc::qvtcctl
