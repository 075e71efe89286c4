#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Reading the list of wireless networks that `nmcli dev wifi` prints.
namespace qvtc::network {

/// Most bytes of one field of a line.
inline constexpr std::size_t scan_field_limit = 127;

/// The fields of a line as awk has them: what blanks, tabs and newlines
/// separate. At most `limit` of them, each cut at scan_field_limit bytes.
std::vector<std::string> scan_fields(std::string_view line, std::size_t limit);

/// The class of a network's encryption, from the last column of its line; the
/// index into the names of the classes.
enum class Encryption : int { open = 0, wpa = 1, wpa2 = 2, enterprise = 3, wep = 4 };
Encryption encryption_of(std::string_view security);

/// "open", "wpa", "wpa2", "802.1X" or "wep".
const char* name_of(Encryption encryption);

/// A signal in percent as a level from 0 to levels - 1.
int signal_level(int value, int levels);

/// The text of {"list": [{"ssid", "connected", "encryptType", "sigStrength"}, ...]}
/// for what `nmcli` printed, whose first line is the header.
std::string network_list_json(std::string_view listing);

} // namespace qvtc::network
