#include "qvtcctl/connections/advice.hpp"

#include "qvtcctl/connections/server_address.hpp"

#include <algorithm>
#include <array>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

using Fields = std::vector<std::size_t>;

bool is_on(const Record& record, std::size_t field) { return record[field] == "on"; }
bool is_set(const Record& record, std::size_t field) { return !record[field].empty(); }

constexpr std::size_t address = field_index("serverAddress");
constexpr std::size_t port = field_index("port");
constexpr std::size_t password = field_index("password");
constexpr std::size_t domain = field_index("domain");
constexpr std::size_t username = field_index("username");
constexpr std::size_t rdp_port = field_index("rdpPort");
constexpr std::size_t custom_port = field_index("useCustomRDPPort");
constexpr std::size_t program = field_index("appFullpath");
constexpr std::size_t start_program = field_index("isConnectStart");
constexpr std::size_t gateway = field_index("useRdGateway");
constexpr std::size_t gateway_address = field_index("rdGatewayAddress");
constexpr std::size_t gateway_user = field_index("rdGatewayUsername");
constexpr std::size_t gateway_password = field_index("rdGatewayPassword");
constexpr std::size_t gateway_domain = field_index("rdGatewayDomain");

bool lacks_spice_port(const Record& record) {
    const auto server = server_of(connection_types[QVTC_TYPE_SPICE], record);
    return server && server->port == 0;
}

/// Something that a record does not do although it looks like it; it is said only to who has just
/// named one of the fields.
struct Advice {
    unsigned type;
    std::array<std::size_t, 2> named;
    bool (*applies)(const Record&);
    std::string_view text;
};

// clang-format off
constexpr std::array<Advice, 8> advice_rows{{
    {QVTC_TYPE_RDP, {rdp_port, custom_port},
     [](const Record& r) { return is_set(r, rdp_port) && !is_on(r, custom_port); },
     "rdpPort is used only with useCustomRDPPort=on."},
    {QVTC_TYPE_RDP, {program, start_program},
     [](const Record& r) { return is_set(r, program) && !is_on(r, start_program); },
     "appFullpath is used only with isConnectStart=on."},
    {QVTC_TYPE_RDP, {gateway, gateway_address},
     [](const Record& r) { return is_on(r, gateway) && !is_set(r, domain); },
     "The gateway is used only when domain is set too."},
    {QVTC_TYPE_RDP, {gateway, gateway_address},
     [](const Record& r) { return is_on(r, gateway) && !is_set(r, gateway_address); },
     "useRdGateway is on, but there is no rdGatewayAddress."},
    {QVTC_TYPE_RDP, {gateway_user, username},
     [](const Record& r) { return is_set(r, gateway_user) && is_set(r, username); },
     "rdGatewayUsername takes the place of username when the client logs on."},
    {QVTC_TYPE_RDP, {gateway_password, gateway_password},
     [](const Record& r) { return is_set(r, gateway_password) && !is_set(r, gateway_domain); },
     "rdGatewayPassword is used only when rdGatewayDomain is set too."},
    {QVTC_TYPE_SPICE, {port, address}, lacks_spice_port,
     "The viewer opens no connection without a port: set port too."},
    {QVTC_TYPE_VNC, {password, address},
     [](const Record& r) { return is_set(r, password); },
     "The viewer takes a stored password for the beginning of the address, and finds no server."},
}};
// clang-format on

std::string unused_field(const ConnectionType& type, std::size_t field) {
    const std::string_view name = fields[field].name;
    if (field == port && type.number == QVTC_TYPE_RDP) {
        return "port is stored, but the RDP client does not get it: use rdpPort with "
               "useCustomRDPPort=on.";
    }
    if (field == port && type.number == QVTC_TYPE_VNC) {
        return "port is stored, but the VNC client does not get it: write "
               "serverAddress=ADDRESS::PORT.";
    }
    return fmt::format("{} is stored, but the {} client does not get it.", name, type.title);
}

bool is_front_end_field(const Field& field) { return field.used_by == field_sets::none; }

} // namespace

Record new_record(const ConnectionType& type) {
    Record record;
    if (type.number == QVTC_TYPE_RDP) record[field_index("colorDepth")] = "32";
    return record;
}

std::vector<std::string> advice_on(const ConnectionType& type, const Record& record,
                                   const Fields& named) {
    std::vector<std::string> advice;
    if (!can_be_launched(type)) return advice;
    for (const std::size_t field : named) {
        if (!is_set(record, field) || is_front_end_field(fields[field])) continue;
        if (!contains(fields[field].used_by, type)) advice.push_back(unused_field(type, field));
    }
    for (const Advice& row : advice_rows) {
        if (row.type != type.number) continue;
        const bool was_named = std::any_of(named.begin(), named.end(), [&](std::size_t field) {
            return field == row.named[0] || field == row.named[1];
        });
        if (was_named && row.applies(record)) advice.emplace_back(row.text);
    }
    return advice;
}

} // namespace qvtc::qvtcctl
