#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/connections/presentation.hpp"
#include "qvtcctl/connections/validation.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// The text that "export" writes and "import" reads.
std::string exported_text(const std::vector<Record>& records, bool with_passwords);

/// A connection as a file names it. Its id may be missing.
struct Incoming {
    const ConnectionType* type;
    Record record;
    bool passwords_left_out = false; ///< it replaces no stored password by none
};

/// Reads such a text. Refuses what is no such text, unknown fields, values against the rules,
/// ids outside the type's block and ids given twice; a message names the connection and the field.
std::vector<Incoming> parse_import(std::string_view text, Strictness strictness);

enum class Action { add, replace, keep };

/// What is to be done with one connection of a file.
struct ImportStep {
    Action action;
    unsigned id;
    std::optional<unsigned> wished_id; ///< the file's id when the connection gets another one
    const ConnectionType* type;
    Record record;
    std::optional<Record> previous; ///< what is stored under the id now
};

/// Which id each connection gets: its own when it is free, when the same words are stored under it
/// already, or when "replace" lets it take the place; else the lowest free one of its type. Refuses
/// when a type has too few free ids.
std::vector<ImportStep> plan_import(const std::vector<Record>& stored,
                                    std::vector<Incoming> incoming, bool replace);

} // namespace qvtc::qvtcctl
