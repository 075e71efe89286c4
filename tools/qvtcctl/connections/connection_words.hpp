#pragma once

#include <string>
#include <vector>

namespace qvtc::qvtcctl {

// What completion offers where a connection, its type or its fields are to be typed.

/// The numbers of the stored connections; none where they cannot be read.
std::vector<std::string> connection_words(const std::string& word);

std::vector<std::string> type_words(const std::string& word);

/// "FIELD=", and once the word holds "=", the values that the field can have.
std::vector<std::string> assignment_words(const std::string& word);

} // namespace qvtc::qvtcctl
