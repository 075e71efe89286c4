#include "qvtcctl/verb/argument.hpp"

#include <utility>

namespace qvtc::qvtcctl {

Argument Argument::completed_by(Complete words) const {
    Argument copy = *this;
    copy.complete = std::move(words);
    return copy;
}

Argument required_argument(std::string_view name, std::string help) {
    return {.name = name, .help = std::move(help), .required = true};
}

Argument optional_argument(std::string_view name, std::string help) {
    return {.name = name, .help = std::move(help)};
}

Argument required_list(std::string_view name, std::string help) {
    return {.name = name, .help = std::move(help), .required = true, .repeated = true};
}

Argument optional_list(std::string_view name, std::string help) {
    return {.name = name, .help = std::move(help), .repeated = true};
}

Argument flag(std::string_view name, std::string help) {
    return {.name = name, .help = std::move(help)};
}

Argument option(std::string_view name, std::string_view value, std::string help) {
    return {.name = name, .help = std::move(help), .value = value};
}

Complete one_of(std::vector<std::string> words) {
    return [words = std::move(words)](const std::string&) { return words; };
}

const std::string& Request::text(const Argument& argument) const {
    static const std::string none;
    const std::vector<std::string>& values = texts(argument);
    return values.empty() ? none : values.front();
}

const std::vector<std::string>& Request::texts(const Argument& argument) const {
    static const std::vector<std::string> none;
    const auto found = given_.find(argument.name);
    return found == given_.end() ? none : found->second;
}

void Request::give(const Argument& argument, std::vector<std::string> values) {
    given_[argument.name] = std::move(values);
}

} // namespace qvtc::qvtcctl
