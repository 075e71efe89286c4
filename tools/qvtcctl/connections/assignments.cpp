#include "qvtcctl/connections/assignments.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/validation.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

Assignment parse_assignment(const std::string& word) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw UsageError(fmt::format("expected FIELD=VALUE, got \"{}\".", printable(word)));
    }
    const std::size_t field = require_field(std::string_view(word).substr(0, equals));
    return {field, word.substr(equals + 1)};
}

std::string_view password_option(std::size_t field) {
    return field == field_index("rdGatewayPassword") ? "gateway-password" : "password";
}

void require_settable(const Assignment& assignment) {
    const Field& field = fields[assignment.field];
    if (field.kind == Kind::identity) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("{} cannot be changed. Remove the connection and add a new one "
                                  "instead.",
                                  field.name));
    }
    if (field.kind == Kind::password && !assignment.value.empty()) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("{0} is not taken from the command line, which everybody on the "
                                  "machine can read. Use --{1}, which asks for it, or "
                                  "--{1}-stdin.",
                                  field.name, password_option(assignment.field)));
    }
}

} // namespace

std::vector<Assignment> parse_assignments(const std::vector<std::string>& words) {
    std::vector<Assignment> assignments;
    for (const std::string& word : words) {
        Assignment assignment = parse_assignment(word);
        require_settable(assignment);
        const bool twice = std::any_of(assignments.begin(), assignments.end(),
                                       [&](const auto& a) { return a.field == assignment.field; });
        if (twice) {
            throw UsageError(fmt::format("{} is given twice.", fields[assignment.field].name));
        }
        assignments.push_back(std::move(assignment));
    }
    return assignments;
}

void apply(const std::vector<Assignment>& assignments, const ConnectionType& type, Record& record) {
    for (const Assignment& assignment : assignments) {
        require_value(fields[assignment.field], type, assignment.value, Strictness::whole);
        record[assignment.field] = assignment.value;
    }
}

void require_carried(const Record& record) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string fault = fault_in_carrying(record[i]);
        if (fault.empty()) continue;
        // Of the sentences on what is wrong and what to do only the first holds here.
        std::string rule = fault.substr(0, fault.find(". "));
        if (rule.ends_with('.')) rule.pop_back();
        const bool secret = fields[i].kind == Kind::password;
        throw Refusal(
            ExitCode::bad_usage,
            fmt::format("a change would lose the stored {}{}, which {}. Give it a new value "
                        "in the same command: {}.",
                        fields[i].name, secret ? "" : fmt::format(" \"{}\"", printable(record[i])),
                        rule,
                        secret ? fmt::format("--{}", password_option(i))
                               : fmt::format("{}=VALUE", fields[i].name)));
    }
}

} // namespace qvtc::qvtcctl
