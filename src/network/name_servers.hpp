#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc::network {

struct NameServers {
    std::string first;
    std::string second;
};

/// The first two name servers that the text of a resolv.conf names; empty where
/// it names fewer. Anything after a blank behind an address is not part of it.
NameServers name_servers_in(std::string_view text);

/// Those of the terminal; nothing, and a word on standard error, when its file
/// cannot be read.
std::optional<NameServers> name_servers();

} // namespace qvtc::network
