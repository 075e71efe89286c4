#include "qvtcctl/connections/password.hpp"

#include "qvtcctl/base/base64.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

bool is_stored_as_text(const ConnectionType& type) { return type.number == QVTC_TYPE_VNC; }

} // namespace

std::size_t longest_password(const ConnectionType& type) {
    return is_stored_as_text(type) ? longest_value : longest_value / 4 * 3;
}

std::string stored_password(const ConnectionType& type, std::string_view password) {
    if (is_stored_as_text(type)) return std::string(password);
    std::string text = base64_encoded(password);
    std::replace(text.begin(), text.end(), '+', '-');
    std::replace(text.begin(), text.end(), '=', '+');
    return text;
}

std::optional<std::string> readable_password(const ConnectionType& type, std::string_view stored) {
    if (is_stored_as_text(type)) return std::string(stored);
    std::string text(stored);
    std::replace(text.begin(), text.end(), '+', '=');
    std::replace(text.begin(), text.end(), '-', '+');
    std::replace(text.begin(), text.end(), '_', '/');
    return base64_decoded(text);
}

} // namespace qvtc::qvtcctl
