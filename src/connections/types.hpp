#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Connection types and the numbering of connections.
namespace qvtc::connections {

/// The absolute number of a connection, over all types.
using ConnectionId = std::uint32_t;

/// Ids that each type owns: type t has the ids t x 32 to t x 32 + 31. The place
/// of an id in its block is its slot.
inline constexpr ConnectionId ids_per_type = 32;

struct Type {
    std::uint32_t number;
    const char* prefix; ///< of the item names under which its records are stored
};

namespace type_number {
inline constexpr std::uint32_t broker = 0;
inline constexpr std::uint32_t rdp = 1;
inline constexpr std::uint32_t spice = 2;
inline constexpr std::uint32_t horizon = 5;
inline constexpr std::uint32_t vnc = 7;
inline constexpr std::uint32_t hdp = 8;
inline constexpr std::uint32_t web = 9;
} // namespace type_number

// 6 is no type: the number is left unassigned. The web prefix has no "Item".
// clang-format off
inline constexpr Type types[] = {
    {type_number::broker,  "velopaneItem"},
    {type_number::rdp,     "rdpItem"},
    {type_number::spice,   "spiceItem"},
    {3,                    "ovirtItem"},
    {4,                    "citrixItem"},
    {type_number::horizon, "vmwareItem"},
    {type_number::vnc,     "vncItem"},
    {type_number::hdp,     "hdpItem"},
    {type_number::web,     "firefox"},
};
// clang-format on

/// The prefix of a type's item names; null for a number that is no type.
constexpr const char* prefix_of(std::uint32_t number) {
    for (const Type& type : types) {
        if (type.number == number) return type.prefix;
    }
    return nullptr;
}

/// The name under which a record is stored, from the id's text as it is given.
inline std::string item_name(const char* prefix, const std::string& id) {
    return std::string(prefix) + "_id_" + id;
}
inline std::string item_name(const char* prefix, ConnectionId id) {
    return item_name(prefix, std::to_string(id));
}

} // namespace qvtc::connections
