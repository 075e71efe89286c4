#pragma once

#include <optional>
#include <string>

#include "network/interface.hpp"

/// What a front-end asks for when it sets the addresses of an interface, and the
/// two texts in which that travels.
namespace qvtc::network {

struct AddressRequest {
    std::string object;    ///< as stored: {'conf':'1','ip':'192.168.1.20',...}
    std::string list;      ///< as applied: the values joined by ";", "0.0.0.0" for absent ones
    bool keep_file = true; ///< it names neither addresses nor DHCP, only name servers
};

enum class Link { wired, wireless };

/// Reads a parameter string; a wireless link has an "ssid" too. Nothing, and an
/// error in the log, without a "conf": whether the interface is to have a static
/// address must not be guessed.
std::optional<AddressRequest> address_request(const std::string& params, Link link);

/// What a list asks for.
struct Addressing {
    bool dhcp = true;
    NetConf conf;
    std::string ssid = "0.0.0.0"; ///< hexadecimal text
};

/// A missing list (null) and missing values mean "0.0.0.0".
Addressing addressing_of(const char* list);

/// A configuration as the stored object has it, without an ssid.
std::string object_text(const NetConf& conf);

/// Stores an interface's object.
void store_object(const std::string& device, const std::string& object);

} // namespace qvtc::network
