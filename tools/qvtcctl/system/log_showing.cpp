#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/followed_file.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/log_lines.hpp"
#include "qvtcctl/verb/log_passwords.hpp"
#include "qvtcctl/verb/system_log.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <chrono>
#include <thread>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

constexpr unsigned default_lines = 20;
constexpr unsigned most_lines = 100000;
constexpr std::uintmax_t bytes_looked_at = 16UL << 20;

/// Which lines are shown, and how.
struct View {
    LogLevel least;
    std::size_t most;
    bool show_passwords;
};

Json json_of(const LogLine& line) {
    Json map = json_map();
    add(map, "time", line.time);
    add(map, "level", name_of(line.level));
    add(map, "message", line.message);
    return map;
}

/// Those of a level or above it, at most the last "most".
std::vector<LogLine> chosen(std::string_view text, const View& view) {
    std::vector<LogLine> lines = parse_log(text);
    std::erase_if(lines, [&](const LogLine& line) { return line.level < view.least; });
    if (lines.size() > view.most)
        lines.erase(lines.begin(), lines.end() - static_cast<long>(view.most));
    if (view.show_passwords) return lines;
    for (LogLine& line : lines) line.message = without_passwords(line.message);
    return lines;
}

/// The end of the log without a line that has lost its beginning: nobody could tell that the rest
/// of it is a password.
std::string whole_lines(std::string text) {
    if (text.size() >= bytes_looked_at) text.erase(0, text.find('\n') + 1);
    return text;
}

void write_line(const LogLine& line, bool as_json) {
    write_out(as_json ? to_line(json_of(line)) : text_of(line));
}

/// Writes what is added to the log, until a signal ends the program or nobody takes the output.
void follow(View view, bool as_json) {
    FollowedFile file(std::string(system_log), bytes_looked_at);
    while (lost_output().empty()) {
        for (const LogLine& line : chosen(whole_lines(file.lines()), view))
            write_line(line, as_json);
        view.most = most_lines;
        std::this_thread::sleep_for(100ms);
    }
}

unsigned require_count(const std::string& text) {
    const std::optional<unsigned> count = parse_number(text);
    if (count && *count <= most_lines) return *count;
    throw Refusal(ExitCode::bad_usage, fmt::format("--lines \"{}\" must be a number from 0 to {}.",
                                                   printable(text), most_lines));
}

const Argument level_option = option("--level", "LEVEL",
                                     "only lines of this level or a higher one: debug, "
                                     "info, error (default: debug)")
                                  .completed_by(one_of({"debug", "info", "error"}));
const Argument lines_option =
    option("--lines", "N", fmt::format("how many of the last lines (default: {})", default_lines));
const Argument follow_flag = flag("--follow", "keep showing what is added, until Ctrl+C");
const Argument show_passwords_flag =
    flag("--show-passwords", "show the passwords of client command lines");

Answer run_log(const Request& request) {
    const View view{
        request.has(level_option) ? require_level(request.text(level_option)) : LogLevel::debug,
        request.has(lines_option) ? require_count(request.text(lines_option)) : default_lines,
        request.has(show_passwords_flag)};
    require_terminal();
    const std::vector<LogLine> lines =
        chosen(whole_lines(file_tail(std::string(system_log), bytes_looked_at)), view);
    if (request.has(follow_flag)) {
        follow(view, request.json);
        return Answer{};
    }
    Answer answer;
    Json list = json_list();
    for (const LogLine& line : lines) {
        answer.text += text_of(line);
        append(list, json_of(line));
    }
    if (lines.empty()) answer.text = "There are no such lines in the log.\n";
    answer.json = json_map();
    add(answer.json, "lines", std::move(list));
    return answer;
}

} // namespace

const Verb verbs::log{
    .name = "log",
    .summary = "Show the library's log",
    .description = "Shows the last lines of the log, or follows it until you press Ctrl+C. The "
                   "passwords of client command lines are masked unless --show-passwords is "
                   "given.",
    .examples = {"qvtcctl log", "qvtcctl log --level error --lines 100", "qvtcctl log --follow"},
    .arguments = {level_option, lines_option, follow_flag, show_passwords_flag},
    .settings = Settings::not_needed,
    .run = run_log,
};

} // namespace qvtc::qvtcctl
