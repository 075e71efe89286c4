#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "connections/fields.hpp"
#include "connections/types.hpp"
#include "core/json.hpp"
#include "store/document.hpp"

namespace qvtc::connections {

/// One connection: 51 texts, all of them at most `field_limit` bytes when it
/// was stored through this library. Switches are on when they hold "on".
struct Record {
    std::array<std::string, field_count> values;

    const std::string& operator[](Field field) const {
        return values[static_cast<std::size_t>(field)];
    }
    std::string& operator[](Field field) { return values[static_cast<std::size_t>(field)]; }
};

/// Fields 1 to 50 from the members of those names, cut to what a field holds;
/// a missing member gives an empty field (and an error in the log).
Record record_from_json(json_object* json);

/// All fields under an item name, empty where the document has none; each is cut
/// at `limit` bytes.
Record read_record(const store::Document& document, const std::string& item, std::size_t limit);

/// Writes all fields, empty ones too, in order; false when the document cannot
/// take the item's name.
bool write_record(store::Document& document, const std::string& item, const Record& record);

/// The record under the name that an id has among those of a type, for a client
/// that is to be started: empty fields where there is none.
Record stored_record(std::uint32_t type, ConnectionId id);

/// The search for a free id in a type's block.
struct FreeIdSearch {
    struct Taken {
        std::string text; ///< the record's own "id"
        ConnectionId in;  ///< the id in whose place it stands
    };
    std::vector<Taken> taken;
    std::optional<ConnectionId> free; ///< the lowest free id, unless all are in use

    /// The numbers of `taken`. A record whose "id" disagrees with its place
    /// blocks the number in its "id".
    std::vector<int> numbers() const;
};
FreeIdSearch find_free_id(const store::Document& document, const Type& type);

} // namespace qvtc::connections
