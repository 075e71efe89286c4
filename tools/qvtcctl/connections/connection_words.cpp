#include "qvtcctl/connections/connection_words.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/connections/fields.hpp"
#include "qvtcctl/connections/stored_connections.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

/// The words of "a|b|c", each behind the same start.
std::vector<std::string> split_choices(std::string_view choices, const std::string& start) {
    std::vector<std::string> words;
    while (!choices.empty()) {
        const std::size_t end = std::min(choices.find('|'), choices.size());
        words.push_back(start + std::string(choices.substr(0, end)));
        choices.remove_prefix(std::min(end + 1, choices.size()));
    }
    return words;
}

std::vector<std::string> values_after(const std::string& assignment) {
    const std::size_t equals = assignment.find('=');
    const std::optional<std::size_t> index = find_field(assignment.substr(0, equals));
    if (!index) return {};
    const Field& field = fields[*index];
    const std::string start = assignment.substr(0, equals + 1);
    if (field.kind == Kind::on_off) return {start + "on", start + "off"};
    return split_choices(field.choices, start);
}

} // namespace

std::vector<std::string> connection_words(const std::string&) {
    try {
        std::vector<std::string> words;
        for (const Record& record : StoredConnections(Chatter::dropped).records()) {
            words.push_back(std::to_string(record.id().value_or(0)));
        }
        return words;
    } catch (const Refusal&) {
        return {}; // whoever presses Tab is shown no error
    }
}

std::vector<std::string> type_words(const std::string&) {
    std::vector<std::string> words;
    for (const ConnectionType& type : connection_types) words.emplace_back(type.name);
    return words;
}

std::vector<std::string> assignment_words(const std::string& word) {
    if (word.find('=') != std::string::npos) return values_after(word);
    std::vector<std::string> words;
    for (const Field& field : fields) {
        if (field.kind == Kind::identity || field.kind == Kind::password) continue;
        words.push_back(fmt::format("{}=", field.name));
    }
    return words;
}

} // namespace qvtc::qvtcctl
