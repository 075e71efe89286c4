#include "qvtcctl/clients/client_words.hpp"

#include "qvtcctl/base/text.hpp"
#include "qvtcctl/clients/client_log.hpp"
#include "qvtcctl/clients/failure_reasons.hpp"
#include "qvtcctl/connections/server_address.hpp"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t nowhere = std::string_view::npos;

constexpr TalkRequest spice_request{"G_MESSAGES_DEBUG", "virt-viewer"};
// The browser's report on its pages: events and error names, which are the same in every language,
// where the titles of its error pages are not.
constexpr TalkRequest web_request{"MOZ_LOG", "BCWebProgress:3"};

bool holds(std::string_view text, std::string_view words) { return text.find(words) != nowhere; }

/// Where the last of the table's words for the type begins; nowhere when none is there.
template <typename Table>
std::size_t last_of(const Table& table, const ConnectionType& type, std::string_view text) {
    std::size_t last = nowhere;
    for (const ClientWords& row : table) {
        const std::size_t at = contains(row.types, type) ? text.rfind(row.words) : nowhere;
        if (at != nowhere && (last == nowhere || at > last)) last = at;
    }
    return last;
}

bool talks(const ConnectionType& type, std::string_view words, bool asked) {
    switch (type.number) {
    case QVTC_TYPE_SPICE: // a vendor's own viewer may not heed the request
        return holds(words, "virt-viewer-DEBUG");
    case QVTC_TYPE_VNC:
        return holds(words, "TigerVNC Viewer");
    case QVTC_TYPE_WEB:
        return asked;
    default:
        return false;
    }
}

// ------------------------------------------------------------------ the browser's report

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

/// What stands between these two; empty when they are not there.
std::string_view between(std::string_view line, std::string_view begin, std::string_view ends) {
    const std::size_t at = line.find(begin);
    if (at == nowhere) return "";
    line.remove_prefix(at + begin.size());
    return line.substr(0, line.find_first_of(ends));
}

/// The browser's process and its tab, as far as the line is about one.
std::string tab_in(std::string_view line) {
    const std::string_view process = between(line, "[Parent ", ":,");
    const std::string_view tab = between(line, "{top:1, id:", ",}");
    return process.empty() || tab.empty() ? "" : fmt::format("{}/{}", process, tab);
}

/// Whether a page of the host begins to be loaded. The browser writes a name with other letters
/// than English ones in a form of its own; then the first page counts.
bool opens_page(std::string_view line, const std::string& host, bool first) {
    const std::string_view address = between(line, "originalURI:", ",}");
    if (!holds(line, "STATE_START") || !address.starts_with("http")) return false;
    if (!is_ascii(host)) return first;
    std::string_view authority = between(address, "://", "/?#");
    authority.remove_prefix(std::min(authority.rfind('@') + 1, authority.size()));
    if (authority.starts_with('[')) authority.remove_prefix(1);
    if (!lower(authority).starts_with(lower(host))) return false;
    const std::string_view rest = authority.substr(host.size());
    return rest.empty() || rest.front() == ':' || rest.front() == ']';
}

bool tells_of_page(std::string_view line) {
    return (holds(line, "OnStateChange(") && holds(line, "STATE_STOP")) ||
           (holds(line, "OnLocationChange(") && holds(line, "originalURI:"));
}

std::string page_words(std::string_view log, const std::string& host) {
    std::string words;
    std::string tab;
    for (const std::string_view line : split_lines(log)) {
        if (!holds(line, "/BCWebProgress ")) continue;
        if (opens_page(line, host, tab.empty())) {
            tab = tab_in(line);
            words.clear();
        } else if (!tab.empty() && tab_in(line) == tab && tells_of_page(line)) {
            words += fmt::format("{}\n", line);
        }
    }
    return words;
}

} // namespace

const TalkRequest* talk_request(const ConnectionType& type) {
    if (type.number == QVTC_TYPE_SPICE) return &spice_request;
    return type.number == QVTC_TYPE_WEB ? &web_request : nullptr;
}

bool asked_to_talk(const ConnectionType& type, const std::vector<Process>& clients) {
    const TalkRequest* request = talk_request(type);
    if (request == nullptr) return false;
    const std::string start = std::string(request->variable) + "=";
    return std::any_of(clients.begin(), clients.end(), [&](const Process& client) {
        return std::any_of(client.environment.begin(), client.environment.end(),
                           [&](const std::string& entry) {
                               return entry.starts_with(start) && holds(entry, request->value);
                           });
    });
}

std::string without_words_of(const std::vector<Process>& others, std::string_view log) {
    std::string kept;
    for (const std::string_view line : split_lines(log)) {
        const bool foreign = std::any_of(others.begin(), others.end(), [&](const Process& process) {
            return holds(line, fmt::format(":{}): ", process.pid));
        });
        if (!foreign) kept += fmt::format("{}\n", line);
    }
    return kept;
}

std::string report_of(const std::vector<Process>& browsers, std::string_view log) {
    std::string report;
    for (const std::string_view line : split_lines(log)) {
        const std::string_view writer = between(line, "[Parent ", ":,");
        const bool theirs =
            std::any_of(browsers.begin(), browsers.end(), [&](const Process& browser) {
                return writer == std::to_string(browser.pid);
            });
        if (theirs) report += fmt::format("{}\n", line);
    }
    return report;
}

std::string words_about(const ConnectionType& type, const Record& record, std::string_view log) {
    const auto server = type.number == QVTC_TYPE_WEB ? server_of(type, record) : std::nullopt;
    return server ? page_words(log, server->host) : std::string(log);
}

Said said_in(const ConnectionType& type, std::string_view words, bool asked) {
    if (names_failure(type, words)) return Said::failed;
    const std::size_t connected = last_of(success_words, type, words);
    const std::size_t asking = last_of(asking_words, type, words);
    if (connected != nowhere && (asking == nowhere || asking < connected)) return Said::connected;
    if (asking != nowhere) return Said::asking;
    return talks(type, words, asked) ? Said::connecting : Said::nothing;
}

} // namespace qvtc::qvtcctl
