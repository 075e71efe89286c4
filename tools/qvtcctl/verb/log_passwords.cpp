#include "qvtcctl/verb/log_passwords.hpp"

#include <algorithm>
#include <array>
#include <optional>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view mask = "***";
constexpr std::string_view blanks = " \t\n";
constexpr std::string_view scheme_end = "://";

/// Where the shell's word that begins there ends.
std::size_t end_of_word(std::string_view text, std::size_t at) {
    char quote = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (quote != '\'' && c == '\\') {
            ++at;
        } else if (quote != 0) {
            if (c == quote) quote = 0;
        } else if (c == '\'' || c == '"') {
            quote = c;
        } else if (blanks.find(c) != std::string_view::npos) {
            return at;
        }
    }
    return text.size();
}

/// Masks what stands behind "/p:" and "/gp:", word by word as the shell reads them, so that nothing
/// within another option's value is taken for one of these.
std::string without_rdp_passwords(std::string_view command) {
    constexpr std::array<std::string_view, 2> options{"/p:", "/gp:"};
    std::string result;
    for (std::size_t at = 0; at < command.size();) {
        if (blanks.find(command[at]) != std::string_view::npos) {
            result += command[at++];
            continue;
        }
        const std::size_t end = end_of_word(command, at);
        const std::string_view word = command.substr(at, end - at);
        const auto* const option =
            std::find_if(options.begin(), options.end(),
                         [word](std::string_view each) { return word.starts_with(each); });
        result += option == options.end() ? word : *option;
        if (option != options.end()) result += mask;
        at = end;
    }
    return result;
}

/// Masks everything from the end of "before" up to the last "behind". These clients get values
/// unquoted, so what stands between may hold blanks and cannot be told apart.
std::string without_between(std::string_view command, std::string_view before,
                            std::string_view behind) {
    const std::size_t found = command.find(before);
    if (found == std::string_view::npos) return std::string(command);
    const std::size_t begin = found + before.size();
    const std::size_t last = command.rfind(behind);
    const bool closed = last != std::string_view::npos && last >= begin;
    return std::string(command.substr(0, begin)) + std::string(mask) +
           std::string(closed ? command.substr(last) : "");
}

/// The text without the password of the URL's authority, "user:password@host", that it begins with.
std::string without_users_password(std::string_view text) {
    // Not "?" and "#", which end it too. A password typed with one is still a password.
    const std::string_view authority = text.substr(0, text.find_first_of(" \t\n/"));
    const std::size_t colon = authority.find(':');
    const std::size_t host = authority.rfind('@');
    if (host == std::string_view::npos || colon > host) return std::string(text);
    return std::string(text.substr(0, colon + 1)) + std::string(mask) +
           std::string(text.substr(host));
}

/// Masks the passwords of a text's URLs; "in_url" when it begins behind the scheme of one.
std::string without_passwords_in_urls(std::string_view text, bool in_url) {
    std::string result;
    for (;; in_url = true) {
        const std::size_t end = text.find(scheme_end);
        const std::string_view part = text.substr(0, end);
        result += in_url ? without_users_password(part) : std::string(part);
        if (end == std::string_view::npos) return result;
        result += scheme_end;
        text.remove_prefix(end + scheme_end.size());
    }
}

/// The browser takes an address without a scheme, too.
std::string without_web_password(std::string_view command) {
    const std::string_view address = command.substr(0, command.find(' '));
    const bool has_scheme = address.find(scheme_end) != std::string_view::npos;
    return without_passwords_in_urls(command, !has_scheme);
}

/// How the line begins on which the library logs a client's command.
struct CommandLine {
    std::string_view start;
    std::string (*masked)(std::string_view);
};

constexpr std::array<CommandLine, 4> command_lines{{
    {"xfreerdp params:", without_rdp_passwords},
    {"vmware cmdline:",
     [](std::string_view command) { return without_between(command, " -p ", " --protocol="); }},
    {"params:vncviewer ",
     [](std::string_view command) { return without_between(command, " passwd ", " >>"); }},
    {"params:firefox ", without_web_password},
}};

/// Where a value begins and ends.
struct Value {
    std::size_t begin;
    std::size_t end;
};

/// The value in NAME=VALUE&..., "NAME": "VALUE" and 'NAME': 'VALUE'.
std::optional<Value> value_behind(std::string_view text, std::size_t name_end) {
    const std::size_t sign = text.find_first_not_of(" \"'", name_end);
    if (sign == std::string_view::npos) return std::nullopt;
    if (text[sign] == '=') return Value{sign + 1, text.find_first_of("&\n", sign)};
    const std::size_t quote = text.find_first_not_of(' ', sign + 1);
    if (text[sign] != ':' || quote == std::string_view::npos) return std::nullopt;
    if (text[quote] != '"' && text[quote] != '\'') return std::nullopt;
    // A value that holds a quote is what makes such a text unusable, and is why it is logged.
    for (std::size_t end = quote + 1; end < text.size(); ++end) {
        if (text[end] == '\n') return Value{quote + 1, end};
        if (text[end] != text[quote]) continue;
        const std::size_t next = text.find_first_not_of(' ', end + 1);
        if (next == std::string_view::npos || text[next] == ',' || text[next] == '}')
            return Value{quote + 1, end};
    }
    return Value{quote + 1, text.size()};
}

std::string without_named_passwords(std::string_view text) {
    constexpr std::string_view tail = "assword"; // of "password" and "rdGatewayPassword"
    std::string result;
    while (true) {
        const std::size_t found = text.find(tail);
        if (found == std::string_view::npos) return result + std::string(text);
        const std::size_t name_end = found + tail.size();
        const std::optional<Value> value = value_behind(text, name_end);
        const std::size_t kept = value ? value->begin : name_end;
        const std::size_t end = value ? std::min(value->end, text.size()) : name_end;
        result += text.substr(0, kept);
        if (end > kept) result += mask;
        text.remove_prefix(end);
    }
}

} // namespace

std::string without_passwords(std::string_view message) {
    for (const CommandLine& line : command_lines) {
        const std::size_t found = message.find(line.start);
        if (found == std::string_view::npos) continue;
        const std::size_t begin = found + line.start.size();
        return std::string(message.substr(0, begin)) + line.masked(message.substr(begin));
    }
    return without_url_passwords(without_named_passwords(message));
}

std::string without_url_passwords(std::string_view text) {
    return without_passwords_in_urls(text, false);
}

} // namespace qvtc::qvtcctl
