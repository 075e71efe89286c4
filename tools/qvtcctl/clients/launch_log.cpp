#include "qvtcctl/clients/launch_log.hpp"

#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/system_log.hpp"

#include <string>
#include <vector>

namespace qvtc::qvtcctl {
namespace {

/// The connections that the log says were launched, in this order.
std::vector<unsigned> launches_in(std::string_view log) {
    constexpr std::string_view words = "[INFO] @launchclient id = ";
    std::vector<unsigned> ids;
    for (const std::string_view line : split_lines(log)) {
        const std::size_t at = line.find(words);
        if (at == std::string_view::npos) continue;
        const std::optional<unsigned> id = parse_number(trimmed(line.substr(at + words.size())));
        if (id) ids.push_back(*id);
    }
    return ids;
}

std::string whole_system_log() {
    constexpr std::uintmax_t most = 2UL * 1024 * 1024; // it is begun anew after one megabyte
    return file_tail(std::string(system_log), most);
}

} // namespace

std::optional<unsigned> last_launched(const ConnectionType& type, std::string_view log) {
    std::optional<unsigned> last;
    for (const unsigned id : launches_in(log)) {
        if (type_of_id(id) == &type) last = id;
    }
    return last;
}

std::optional<unsigned> last_launched(const ConnectionType& type) {
    return last_launched(type, whole_system_log());
}

std::size_t launches_since(const ConnectionType& type, const ConnectionType& other,
                           std::string_view log) {
    std::size_t count = 0;
    for (const unsigned id : launches_in(log)) {
        if (type_of_id(id) == &type) count = 0;
        if (type_of_id(id) == &other) ++count;
    }
    return count;
}

std::size_t launches_since(const ConnectionType& type, const ConnectionType& other) {
    return launches_since(type, other, whole_system_log());
}

} // namespace qvtc::qvtcctl
