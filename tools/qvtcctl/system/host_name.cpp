#include "qvtcctl/system/host_name.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/stored_setting.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t longest_name = 63;
constexpr const char* host_name_file = "/etc/hostname";

bool is_letter_or_digit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string fault_in_label(std::string_view label) {
    if (label.empty()) return "has a dot with nothing before or after it.";
    if (label.front() == '-' || label.back() == '-')
        return "has a part that begins or ends with a hyphen.";
    const bool plain = std::all_of(label.begin(), label.end(),
                                   [](char c) { return is_letter_or_digit(c) || c == '-'; });
    if (plain) return "";
    return "may contain only a-z, A-Z, 0-9, hyphens and dots.";
}

std::string host_name_now(Chatter chatter) {
    std::array<char, 128> name{};
    const Quiet quiet(chatter);
    qvgethostname(name.data());
    return name.data();
}

void set_host_name(const std::string& name, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter);
        qvsethostname(name.c_str());
    }
    if (host_name_now(chatter) != name) throw not_taken("the host name was not stored", log);
}

/// Whether that name is stored, and the system takes it at its next start.
bool is_set_to(const std::string& name, Chatter chatter) {
    return host_name_now(chatter) == name &&
           file_tail(host_name_file, name.size() + 2) == name + "\n";
}

} // namespace

std::string stored_host_name(Chatter chatter) {
    // Without a name the library makes one of the identity, and without that one up.
    const bool known = !stored_setting(setting_key::host_name, chatter).empty() ||
                       !stored_setting(setting_key::device_identity, chatter).empty();
    return known ? host_name_now(chatter) : "";
}

std::string fault_in_host_name(std::string_view name) {
    if (name.empty()) return "is empty. Give at least one letter or digit.";
    if (name.size() > longest_name) {
        return fmt::format("has {} characters, and a host name has at most {}.", name.size(),
                           longest_name);
    }
    for (;;) {
        const std::size_t dot = std::min(name.find('.'), name.size());
        if (std::string fault = fault_in_label(name.substr(0, dot)); !fault.empty()) return fault;
        if (dot == name.size()) return "";
        name.remove_prefix(dot + 1);
    }
}

namespace {

const Argument name_argument = optional_argument("NAME", "the new host name");

Answer run_host_name(const Request& request) {
    const std::string& name = request.text(name_argument);
    const bool set = request.has(name_argument);
    if (set) {
        if (const std::string fault = fault_in_host_name(name); !fault.empty()) {
            throw Refusal(ExitCode::bad_usage,
                          fmt::format("host name \"{}\" {}", printable(name), fault));
        }
    }
    require_terminal();
    const bool changes = set && !is_set_to(name, request.chatter());
    if (changes) set_host_name(name, request.chatter());
    const std::string now = stored_host_name(request.chatter());
    Answer answer;
    answer.text = changes       ? fmt::format("The host name is {} from the next start on.\n", now)
                  : set         ? fmt::format("Unchanged: the host name is {}.\n", now)
                  : now.empty() ? "No host name is set.\n"
                                : fmt::format("{}\n", printable(now));
    answer.json = json_map();
    add(answer.json, "hostName", now.empty() ? Json() : json_text(now));
    if (set) add_flag(answer.json, "changed", changes);
    return answer;
}

} // namespace

const Verb verbs::host_name{
    .name = "host-name",
    .summary = "Show or set the terminal's host name",
    .description = "Shows the host name, or sets it. A new name takes effect at the next start "
                   "of the terminal.",
    .examples = {"qvtcctl host-name", "qvtcctl host-name reception-2"},
    .arguments = {name_argument},
    .run = run_host_name,
};

} // namespace qvtc::qvtcctl
