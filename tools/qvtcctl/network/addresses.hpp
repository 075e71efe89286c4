#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// A dotted quad of plain decimal numbers; nothing for anything else.
std::optional<std::uint32_t> parse_ipv4(std::string_view text);

/// How an interface comes to its addresses, as typed.
enum class Mode { dhcp, fixed, servers };

/// What is to be set, as typed; empty for what was not given.
struct WantedAddresses {
    std::string address;
    std::string mask;
    std::string gateway;
    std::string dns1;
    std::string dns2;
};

/// "dhcp", "static" or "dns"; "dns" only where an interface can keep its addresses. Refuses other
/// words.
Mode require_mode(const std::string& word, bool can_keep_addresses);

/// Refuses addresses that do not go with the mode, that are none, or that could not work: the
/// message names the field, its value and the rule.
void require_addresses(Mode mode, const WantedAddresses& wanted);

/// Refuses a wireless network's name that is empty or longer than 32 bytes.
void require_network_name(const std::string& name);

/// How a network is joined.
enum class Encryption { open, personal, enterprise };

/// Refuses a password that the network, or the parameter string, cannot take; never shows it.
void require_wifi_password(Encryption encryption, const std::string& password);
void require_wifi_user(const std::string& user);

} // namespace qvtc::qvtcctl
