#include "qvtcctl/network/addresses.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t longest_name = 32;  // of a network, by the standard
constexpr std::size_t longest_text = 127; // that the library keeps of a password or a user
constexpr std::size_t shortest_key = 8;
constexpr std::size_t longest_key = 63;
constexpr std::size_t hexadecimal_key = 64;
constexpr std::size_t short_wep_key = 5;

[[noreturn]] void refuse(std::string_view field, std::string_view value, std::string_view rule) {
    throw Refusal(ExitCode::bad_usage, fmt::format("{} \"{}\" {}", field, printable(value), rule));
}

std::uint32_t require_quad(std::string_view field, const std::string& value) {
    const auto number = parse_ipv4(value);
    if (number) return *number;
    refuse(field, value,
           "is not an IPv4 address. Give four numbers from 0 to 255 with dots "
           "between them, such as 192.168.1.20.");
}

/// An address that a machine can have.
std::uint32_t require_host(std::string_view field, const std::string& value) {
    const std::uint32_t number = require_quad(field, value);
    const std::uint32_t first = number >> 24U;
    if (first == 0 || first == 127 || first >= 224) {
        refuse(field, value,
               "cannot be the address of a host: the first number must be from 1 to "
               "223, and not 127.");
    }
    return number;
}

std::uint32_t require_mask(const std::string& value) {
    const std::uint32_t mask = require_quad("mask", value);
    const std::uint32_t hosts = ~mask;
    if (mask == 0 || hosts < 3 || (hosts & (hosts + 1)) != 0) {
        refuse("mask", value,
               "is not a valid network mask. Its bits must be ones and then zeros, with "
               "room for two machines, such as 255.255.255.0.");
    }
    return mask;
}

void require_given(std::string_view field, const std::string& value, std::string_view mode) {
    if (!value.empty()) return;
    throw UsageError(fmt::format("--{} is required for {}.", field, mode));
}

void require_not_given(std::string_view field, const std::string& value, std::string_view why) {
    if (value.empty()) return;
    throw UsageError(fmt::format("--{} cannot be used with {}.", field, why));
}

void require_servers(const WantedAddresses& wanted) {
    if (!wanted.dns1.empty()) require_host("dns1", wanted.dns1);
    if (!wanted.dns2.empty()) require_host("dns2", wanted.dns2);
    if (wanted.dns1.empty() && !wanted.dns2.empty())
        throw UsageError("--dns1 is missing: give the first name server before the second.");
}

/// Not the first and not the last one of a network, which stand for all of it.
void require_single(std::string_view field, const std::string& value, std::uint32_t number,
                    std::uint32_t mask) {
    const std::uint32_t host = number & ~mask;
    if (host != 0 && host != ~mask) return;
    refuse(field, value,
           "is the first or last address of its network, which stands for all of it. "
           "Choose one in between.");
}

void require_static(const WantedAddresses& wanted) {
    require_given("address", wanted.address, "a static address");
    require_given("mask", wanted.mask, "a static address");
    require_given("gateway", wanted.gateway, "a static address");
    const std::uint32_t address = require_host("address", wanted.address);
    const std::uint32_t mask = require_mask(wanted.mask);
    const std::uint32_t gateway = require_host("gateway", wanted.gateway);
    require_single("address", wanted.address, address, mask);
    require_single("gateway", wanted.gateway, gateway, mask);
    if ((address & mask) != (gateway & mask)) {
        refuse("gateway", wanted.gateway,
               fmt::format("is outside the network of address {} and mask {}, so it could not be "
                           "reached.",
                           wanted.address, wanted.mask));
    }
    if (address == gateway)
        refuse("gateway", wanted.gateway, "is this terminal's own address. Give the router's.");
    require_servers(wanted);
}

/// What a parameter string cannot carry.
std::string fault_in_carrying(std::string_view value) {
    if (value.size() > longest_text)
        return fmt::format("has {} bytes, and the limit is {}.", value.size(), longest_text);
    for (const char c : value) {
        if (c == '&' || c == '=')
            return fmt::format("contains \"{}\", which cannot be passed on. Choose one without.",
                               c);
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f')
            return "contains a control character. Leave it out.";
    }
    return "";
}

bool is_key(std::string_view password) {
    const auto is_digit = [](char c) {
        return std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
    };
    if (password.size() == hexadecimal_key)
        return std::all_of(password.begin(), password.end(), is_digit);
    return password.size() == short_wep_key ||
           (password.size() >= shortest_key && password.size() <= longest_key);
}

} // namespace

std::optional<std::uint32_t> parse_ipv4(std::string_view text) {
    std::uint32_t address = 0;
    for (int part = 0; part < 4; ++part) {
        const std::string_view number = text.substr(0, text.find('.'));
        unsigned value = 0;
        const auto [end, error] =
            std::from_chars(number.data(), number.data() + number.size(), value);
        if (error != std::errc() || end != number.data() + number.size() || value > 255)
            return std::nullopt;
        if (number.size() > 1 && number.front() == '0') return std::nullopt; // octal to some
        address = address << 8U | value;
        text.remove_prefix(number.size());
        if (part == 3) break;
        if (text.empty()) return std::nullopt;
        text.remove_prefix(1);
    }
    if (!text.empty()) return std::nullopt;
    return address;
}

Mode require_mode(const std::string& word, bool can_keep_addresses) {
    if (word == "dhcp") return Mode::dhcp;
    if (word == "static") return Mode::fixed;
    if (word == "dns" && can_keep_addresses) return Mode::servers;
    const std::string modes = can_keep_addresses ? "dhcp, static, dns" : "dhcp, static";
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown mode \"{}\"{}: give one of {}.", printable(word),
                              did_you_mean(word, {"dhcp", "static"}), modes));
}

void require_addresses(Mode mode, const WantedAddresses& wanted) {
    if (mode == Mode::fixed) {
        require_static(wanted);
        return;
    }
    const std::string_view why =
        mode == Mode::dhcp ? "dhcp, which gets the addresses from the network's DHCP server"
                           : "dns, which sets the name servers alone";
    require_not_given("address", wanted.address, why);
    require_not_given("mask", wanted.mask, why);
    require_not_given("gateway", wanted.gateway, why);
    if (mode == Mode::servers) {
        require_given("dns1", wanted.dns1, "setting name servers");
        require_servers(wanted);
        return;
    }
    require_not_given("dns1", wanted.dns1, why);
    require_not_given("dns2", wanted.dns2, why);
}

void require_network_name(const std::string& name) {
    if (name.empty()) throw Refusal(ExitCode::bad_usage, "the network's name is empty.");
    if (name.size() <= longest_name) return;
    refuse("name", name,
           fmt::format("has {} bytes, and the limit for a network's name is {}.", name.size(),
                       longest_name));
}

void require_wifi_password(Encryption encryption, const std::string& password) {
    std::string fault = fault_in_carrying(password);
    if (fault.empty() && encryption == Encryption::personal && !is_key(password)) {
        fault = fmt::format("has {} bytes. A network's key has 8 to 63, or 64 hexadecimal digits; "
                            "an old WEP key may have 5.",
                            password.size());
    }
    if (fault.empty() && password.empty()) fault = "is empty.";
    if (!fault.empty()) throw Refusal(ExitCode::bad_usage, "the password " + fault);
}

void require_wifi_user(const std::string& user) {
    if (user.empty()) throw Refusal(ExitCode::bad_usage, "user is empty.");
    const std::string fault = fault_in_carrying(user);
    if (!fault.empty()) refuse("user", user, fault);
}

} // namespace qvtc::qvtcctl
