#include "qvtcctl/clients/client_log.hpp"

#include "qvtcctl/base/base64.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/clients/failure_reasons.hpp"
#include "qvtcctl/verb/log_passwords.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view start_words = "]start to connect...";
constexpr std::string_view viewer_banner = "\nTigerVNC Viewer ";
constexpr std::size_t most_lines = 3;

std::size_t last_start(std::string_view log, std::size_t foreign) {
    const std::size_t banner = log.rfind(viewer_banner);
    if (banner != std::string_view::npos) return banner;
    std::size_t words = log.rfind(start_words);
    for (; foreign > 0 && words != std::string_view::npos; --foreign) {
        const std::size_t earlier = log.substr(0, words).rfind(start_words);
        if (earlier == std::string_view::npos) break;
        words = earlier;
    }
    if (words == std::string_view::npos) return std::string_view::npos;
    return log.rfind('[', words);
}

/// The line without the time and the process that the RDP client puts before its words.
std::string_view without_stamp(std::string_view line) {
    for (int stamps = 0; stamps < 2 && line.starts_with('['); ++stamps) {
        const std::size_t end = line.find("] ");
        if (end == std::string_view::npos) break;
        line.remove_prefix(end + 2);
    }
    return line;
}

// The client that was running before writes its farewell behind the mark of the new start.
bool is_backtrace(std::string_view line) {
    return line.find("[com.freerdp.utils] - ") != std::string_view::npos;
}

/// At most three lines that the test accepts, none twice; the last ones when "from_end".
template <typename Test>
std::vector<std::string> pick_lines(std::string_view log, bool from_end, Test accepts) {
    std::vector<std::string> picked;
    for (const std::string_view raw : split_lines(log)) {
        std::string line = printable(without_url_passwords(trimmed(without_stamp(raw))));
        const bool twice = std::find(picked.begin(), picked.end(), line) != picked.end();
        if (line.empty() || twice || is_backtrace(line) || !accepts(line)) continue;
        picked.push_back(std::move(line));
    }
    if (picked.size() > most_lines) {
        const auto excess = static_cast<std::ptrdiff_t>(picked.size() - most_lines);
        if (from_end) picked.erase(picked.begin(), picked.begin() + excess);
        picked.resize(most_lines);
    }
    return picked;
}

bool holds(std::string_view text, std::string_view words) {
    return text.find(words) != std::string_view::npos;
}

/// The client's own name for it: the words of the row, and the rest of the words that these cut.
std::string own_name(std::string_view text, std::string_view words) {
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_0123456789";
    const std::size_t at = text.find(words);
    const std::size_t before = text.substr(0, at).find_last_not_of(letters);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    const std::size_t end = text.find_first_not_of(letters, at + words.size());
    return std::string(text.substr(begin, end - begin));
}

std::string with_id(std::string_view advice, unsigned id) {
    constexpr std::string_view place = "{id}";
    std::string text(advice);
    const std::size_t at = text.find(place);
    if (at != std::string::npos) text.replace(at, place.size(), std::to_string(id));
    return text;
}

Explanation meaning_of(const FailureReason& row, unsigned id) {
    Explanation told;
    told.means = row.means;
    told.advice = with_id(row.advice, id);
    told.known = true;
    told.ends_session = row.ends_session;
    return told;
}

Explanation explanation_from_log(const FailureReason& row, const ConnectionType& type, unsigned id,
                                 std::string_view log) {
    Explanation told = meaning_of(row, id);
    told.words = own_name(log, row.words);
    told.log = type.log;
    told.lines = pick_lines(log, false, [&](std::string_view line) {
        return holds(line, row.words) || (!row.also.empty() && holds(line, row.also));
    });
    return told;
}

bool fits(const FailureReason& row, const ConnectionType& type, std::string_view text) {
    return contains(row.types, type) && holds(text, row.words) && holds(text, row.also);
}

template <typename Table>
const FailureReason* find_reason_in(const Table& table, const ConnectionType& type,
                                    std::string_view text) {
    const auto found = std::find_if(table.begin(), table.end(), [&](const FailureReason& row) {
        return fits(row, type, text);
    });
    return found == table.end() ? nullptr : &*found;
}

const FailureReason* find_reason(const ConnectionType& type, std::string_view text) {
    return find_reason_in(failure_reasons, type, text);
}

Explanation unexplained(const ConnectionType& type, std::string_view log) {
    Explanation told;
    told.log = type.log;
    told.lines =
        pick_lines(log, true, [](std::string_view line) { return !holds(line, start_words); });
    if (type.log.empty()) {
        told.means =
            fmt::format("The {} client writes no log that would name a reason.", type.title);
        told.advice = "Look at the terminal's screen.";
    } else if (told.lines.empty()) {
        told.means = "The client wrote nothing that would name a reason.";
        told.advice = "Look at the terminal's screen.";
    } else {
        told.means = "The client's log names no reason that is known here.";
        told.advice = "The last lines of the log may tell more.";
    }
    return told;
}

} // namespace

std::string_view since_last_start(std::string_view log, std::size_t foreign) {
    const std::size_t start = last_start(log, foreign);
    return start == std::string_view::npos ? log : log.substr(start);
}

Explanation explain(const ConnectionType& type, unsigned id, std::string_view log,
                    std::string_view library_reason, Route route) {
    if (route == Route::gateway) {
        if (const FailureReason* row = find_reason_in(gateway_reasons, type, log)) {
            return explanation_from_log(*row, type, id, log);
        }
    }
    if (const FailureReason* row = find_reason(type, log)) {
        return explanation_from_log(*row, type, id, log);
    }
    if (const FailureReason* row = find_reason(type, library_reason)) return meaning_of(*row, id);
    return unexplained(type, log);
}

Explanation never_began(Explanation told) {
    if (!told.ends_session) return told;
    told.ends_session = false;
    told.means = "The server ended the session before it began.";
    told.advice = "Look at the server's log. An xrdp that is set to security_layer=rdp does this: "
                  "let it use TLS.";
    return told;
}

std::optional<bool> had_session(std::string_view log) {
    // The client keeps what is no error until its end, and then writes it all.
    if (!holds(log, "[INFO][com.freerdp.")) return std::nullopt;
    return holds(log, "framebuffer format"); // of the window that it makes for a session
}

bool names_failure(const ConnectionType& type, std::string_view log) {
    for (const ClientWords& success : success_words) {
        const std::size_t at = log.rfind(success.words);
        if (contains(success.types, type) && at != std::string_view::npos) log.remove_prefix(at);
    }
    return std::any_of(failure_reasons.begin(), failure_reasons.end(),
                       [&](const FailureReason& row) {
                           return row.types != field_sets::any && fits(row, type, log);
                       });
}

std::string reason_of(std::string_view status) {
    if (status == "0" || status == "1") return "";
    return base64_decoded(status).value_or("");
}

} // namespace qvtc::qvtcctl
