#include "qvtcctl/connections/validation.hpp"

#include "qvtcctl/base/hexadecimal.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/password.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

// "&" is not among them: it travels as "%", which is read back as "&".
constexpr std::string_view uncarried = "=\"\\%|";

bool has_blank(std::string_view text) {
    return text.find_first_of(" \t") != std::string_view::npos;
}

bool has_control(std::string_view text) {
    while (!text.empty()) {
        const std::optional<Utf8Character> next = first_character(text);
        if (next && is_control(next->code)) return true;
        text.remove_prefix(next ? next->bytes : 1);
    }
    return false;
}

bool is_choice(std::string_view choices, std::string_view value) {
    while (!choices.empty()) {
        const std::size_t end = std::min(choices.find('|'), choices.size());
        if (choices.substr(0, end) == value) return true;
        choices.remove_prefix(std::min(end + 1, choices.size()));
    }
    return false;
}

std::string fault_in_address(std::string_view value) {
    if (value.size() < shortest_address) {
        return fmt::format("has {} characters, and an address needs at least {}. Give the "
                           "server's full name or its IP address.",
                           value.size(), shortest_address);
    }
    if (value.front() == '-') return "begins with \"-\", which an address must not.";
    if (has_blank(value)) return "contains a blank, which an address must not. Leave it out.";
    return "";
}

std::string fault_in_hex(std::string_view value) {
    if (text_of_hexadecimal(value)) return "";
    return fmt::format("is not hexadecimal text. For a desktop of this name, write {}.",
                       hexadecimal_of(value));
}

std::string fault_in_stored_password(const ConnectionType& type, std::string_view value) {
    if (readable_password(type, value)) return "";
    return "is not in the stored form (base64 with \"+\" for \"=\" and \"-\" for \"+\"). "
           "Give the password with \"qvtcctl connection set\" instead.";
}

std::string fault_of_kind(const Field& field, const ConnectionType& type, std::string_view value) {
    switch (field.kind) {
    case Kind::identity:
    case Kind::text:
        return "";
    case Kind::address:
        return fault_in_address(value);
    case Kind::on_off:
        if (value == "on" || value == "off") return "";
        return "must be on or off.";
    case Kind::port: {
        const std::optional<unsigned> port = parse_number(value);
        if (port && *port >= 1 && *port <= 65535 && value.front() != '0') return "";
        return "is not a valid port. Give a number from 1 to 65535.";
    }
    case Kind::password:
        return fault_in_stored_password(type, value);
    case Kind::hex:
        return fault_in_hex(value);
    case Kind::choice: {
        if (is_choice(field.choices, value)) return "";
        std::string choices(field.choices);
        for (std::size_t at = 0; (at = choices.find('|', at)) != std::string::npos;) {
            choices.replace(at, 1, ", ");
        }
        return fmt::format("must be one of {}.", choices);
    }
    }
    return "";
}

/// The text that the client gets for a value.
std::string as_the_client_gets_it(const Field& field, const ConnectionType& type,
                                  std::string_view value) {
    if (field.kind == Kind::hex) return text_of_hexadecimal(value).value_or("");
    if (field.kind == Kind::password) return readable_password(type, value).value_or("");
    return std::string(value);
}

std::string fault_for_unquoted_use(const Field& field, const ConnectionType& type,
                                   std::string_view text) {
    if (!contains(field.used_by & field.bare_in, type) || !has_blank(text)) return "";
    return fmt::format("contains a blank, and the {} client, which gets it unquoted, would take it "
                       "for two options. Choose one without blanks.",
                       type.title);
}

std::string fault_in_password(const Field& field, const ConnectionType& type,
                              std::string_view password) {
    const std::size_t longest = longest_password(type);
    if (password.empty()) {
        return fmt::format("is empty. To remove a stored one, give {}= instead.", field.name);
    }
    if (password.size() > longest) {
        return fmt::format(
            "has {} bytes, and the limit for the type {} is {}. Choose a shorter one.",
            password.size(), type.name, longest);
    }
    if (!is_utf8(password)) return "is not valid UTF-8.";
    if (has_control(password)) return "contains a control character. Choose one without.";
    std::string fault = fault_in_carrying(stored_password(type, password));
    if (!fault.empty()) return fault;
    return fault_for_unquoted_use(field, type, password);
}

} // namespace

std::string fault_in_carrying(std::string_view value) {
    if (value.size() > longest_value) {
        return fmt::format("has {} bytes, and the limit is {}. Shorten it.", value.size(),
                           longest_value);
    }
    if (!is_utf8(value)) return "is not valid UTF-8.";
    if (has_control(value)) return "contains a control character. Leave it out.";
    const std::size_t at = value.find_first_of(uncarried);
    if (at != std::string_view::npos) {
        return fmt::format("contains {}, which cannot be stored. Leave it out.",
                           value[at] == '"' ? "a double quote" : fmt::format("\"{}\"", value[at]));
    }
    if (!value.empty() && is_blank(value)) return "contains only blanks, which are not kept.";
    return "";
}

std::string fault_in_value(const Field& field, const ConnectionType& type, std::string_view value) {
    if (value.empty()) return "";
    std::string fault = fault_of_kind(field, type, value);
    if (!fault.empty()) return fault;
    return fault_for_unquoted_use(field, type, as_the_client_gets_it(field, type, value));
}

void require_value(const Field& field, const ConnectionType& type, std::string_view value,
                   Strictness strictness) {
    std::string fault = fault_in_carrying(value);
    if (fault.empty() && strictness == Strictness::whole)
        fault = fault_in_value(field, type, value);
    if (fault.empty()) return;
    const std::string shown =
        field.kind == Kind::password ? "" : fmt::format(" \"{}\"", printable(value));
    throw Refusal(ExitCode::bad_usage, fmt::format("{}{} {}", field.name, shown, fault));
}

void require_password(const Field& field, const ConnectionType& type, std::string_view password) {
    const std::string fault = fault_in_password(field, type, password);
    if (fault.empty()) return;
    throw Refusal(ExitCode::bad_usage, fmt::format("{} {}", field.name, fault));
}

void require_usable(const ConnectionType& type, const Record& record) {
    if (record.address().empty()) {
        throw Refusal(ExitCode::bad_usage,
                      "serverAddress is missing: give it as serverAddress=ADDRESS.");
    }
    const auto is_on = [&](std::size_t field) { return record[field] == "on"; };
    constexpr std::size_t depth = field_index("colorDepth");
    if (type.number == QVTC_TYPE_RDP && record[depth].empty() && !is_on(field_index("useGFX")) &&
        !is_on(field_index("useRemoteFX"))) {
        throw Refusal(ExitCode::bad_usage,
                      "colorDepth is missing: without useGFX=on or useRemoteFX=on the RDP client "
                      "loses the session at once. Give one, for example colorDepth=32.");
    }
}

unsigned require_seconds(const std::string& text, std::string_view what, unsigned least,
                         unsigned most) {
    const std::optional<unsigned> seconds = parse_number(text);
    if (seconds && *seconds >= least && *seconds <= most) return *seconds;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("{} \"{}\" must be a number of seconds from {} to {}.", what,
                              printable(text), least, most));
}

} // namespace qvtc::qvtcctl
