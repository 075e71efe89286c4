#pragma once

#include "qvtcctl/verb/argument.hpp"

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

// What completion offers where a connection, its type or its fields are to be typed.

/// The numbers of the stored connections; none where they cannot be read.
std::vector<std::string> connection_words(const std::string& word);

std::vector<std::string> type_words(const std::string& word);

/// "FIELD=", and once the word holds "=", the values that the field can have.
std::vector<std::string> assignment_words(const std::string& word);

/// The connection that a command is about.
inline const Argument id_argument =
    required_argument("ID", "number of the connection").completed_by(connection_words);

/// The type to which a list of connections is limited.
inline const Argument only_type_argument =
    optional_argument("TYPE", "only connections of this type").completed_by(type_words);

} // namespace qvtc::qvtcctl
