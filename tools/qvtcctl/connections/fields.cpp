#include "qvtcctl/connections/fields.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"

#include <vector>

#include <fmt/format.h>

namespace qvtc::qvtcctl {

std::optional<std::size_t> find_field(std::string_view name) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].name == name) return i;
    }
    return std::nullopt;
}

std::size_t require_field(std::string_view name) {
    if (const std::optional<std::size_t> index = find_field(name)) return *index;
    std::vector<std::string_view> names;
    names.reserve(fields.size());
    for (const Field& field : fields) names.push_back(field.name);
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("\"{}\" is not a field{}: \"qvtcctl connection fields\" lists them.",
                              printable(name), did_you_mean(name, names)));
}

std::string_view describe(Kind kind) {
    switch (kind) {
    case Kind::identity:
        return "number";
    case Kind::text:
        return "text";
    case Kind::address:
        return "address";
    case Kind::on_off:
        return "on, off";
    case Kind::port:
        return "1-65535";
    case Kind::password:
        return "password";
    case Kind::hex:
        return "hex digits";
    case Kind::choice:
        return "choice";
    }
    return "";
}

} // namespace qvtc::qvtcctl
