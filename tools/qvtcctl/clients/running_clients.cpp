#include "qvtcctl/clients/running_clients.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

/// The word of a command line that holds the address, whole. A stored VNC password stands right
/// before it.
std::string address_argument(const ConnectionType& type, const Record& record) {
    const std::string& port = record[field_index("port")];
    switch (type.number) {
    case QVTC_TYPE_RDP:
        return "/v:" + record.address();
    case QVTC_TYPE_SPICE:
        return "spice://" + record.address() + (port.empty() ? "" : ":" + port);
    case QVTC_TYPE_VNC:
        return record[field_index("password")] + record.address();
    default:
        return record.address();
    }
}

} // namespace

std::vector<Process> running_clients(const ConnectionType& type) {
    return running_processes(type.process);
}

bool serves(const Process& client, const ConnectionType& type, const Record& record) {
    const auto has_argument = [&](const std::string& argument) {
        return std::find(client.arguments.begin(), client.arguments.end(), argument) !=
               client.arguments.end();
    };
    if (!has_argument(address_argument(type, record))) return false;
    return type.number != QVTC_TYPE_RDP || has_argument("/t:" + record.name());
}

} // namespace qvtc::qvtcctl
