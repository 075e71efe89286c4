#include "qvtcctl/connections/server_address.hpp"

#include <array>
#include <string_view>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned https_port = 443;
constexpr unsigned http_port = 80;
constexpr unsigned last_port = 65535;

struct Default {
    unsigned type;
    unsigned port; ///< 0: every server has its own
    bool tls;
};
constexpr std::array<Default, 9> defaults{{
    {QVTC_TYPE_BROKER, https_port, true},
    {QVTC_TYPE_RDP, 3389, false}, // encrypted too, but only after words of its own
    {QVTC_TYPE_SPICE, 0, false},  // the viewer opens no connection without a port
    {QVTC_TYPE_OVIRT, https_port, true},
    {QVTC_TYPE_CITRIX, https_port, true},
    {QVTC_TYPE_HORIZON, https_port, true},
    {QVTC_TYPE_VNC, 5900, false},
    {QVTC_TYPE_HDP, 0, false},
    {QVTC_TYPE_WEB, http_port, false},
}};

unsigned port_in(std::string_view text, unsigned otherwise) {
    const std::optional<unsigned> port = parse_number(text);
    return port && *port >= 1 && *port <= last_port ? *port : otherwise;
}

/// Takes "scheme://" off the front, and gives the scheme.
std::string_view take_scheme(std::string_view& text) {
    const std::size_t end = text.find("://");
    if (end == std::string_view::npos) return "";
    const std::string_view scheme = text.substr(0, end);
    text.remove_prefix(end + 3);
    return scheme;
}

/// "user@host:port/path?query" without all but host and port.
std::string_view authority(std::string_view text) {
    text = text.substr(0, text.find_first_of("/?#"));
    const std::size_t user = text.rfind('@');
    return user == std::string_view::npos ? text : text.substr(user + 1);
}

/// "host", "host:port" or "[host]:port". More than one colon without brackets is an IPv6 address.
ServerAddress split(std::string_view text, unsigned port) {
    if (text.starts_with('[')) {
        const std::size_t end = text.find(']');
        const std::string_view rest = end == std::string_view::npos ? "" : text.substr(end + 1);
        return {std::string(text.substr(1, end == std::string_view::npos ? end : end - 1)),
                rest.starts_with(':') ? port_in(rest.substr(1), port) : port};
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || text.find(':', colon + 1) != std::string_view::npos) {
        return {std::string(text), port};
    }
    return {std::string(text.substr(0, colon)), port_in(text.substr(colon + 1), port)};
}

/// "host::port", or "host:display".
ServerAddress vnc_server(std::string_view text, unsigned port) {
    constexpr unsigned displays = 100;
    const std::size_t colons = text.find("::");
    const bool only_these = colons == text.find(':') && colons + 1 == text.rfind(':');
    if (colons != std::string_view::npos && colons > 0 && only_these) {
        return {std::string(text.substr(0, colons)), port_in(text.substr(colons + 2), port)};
    }
    ServerAddress server = split(text, 0);
    if (server.port < displays) server.port += port; // it is a display's number
    return server;
}

/// The client is given address and port side by side, and each may hold options.
ServerAddress spice_server(const Record& record) {
    constexpr std::string_view secure = "tls-port=";
    std::string text = record.address();
    const std::string& port_field = record[field_index("port")];
    if (!port_field.empty()) text += ":" + port_field;
    ServerAddress server = split(authority(text), 0);
    const std::size_t option = text.find(secure);
    if (server.port == 0 && option != std::string::npos) {
        const std::string_view value = std::string_view(text).substr(option + secure.size());
        server.port = port_in(value.substr(0, value.find('&')), 0);
        server.tls = server.port != 0;
    }
    return server;
}

std::optional<ServerAddress> web_server(std::string_view text) {
    const std::string_view scheme = take_scheme(text);
    const bool tls = scheme == "https";
    if (text.starts_with("about:") || text.starts_with("data:")) return std::nullopt;
    if (!scheme.empty() && !tls && scheme != "http") return std::nullopt;
    ServerAddress server = split(authority(text), tls ? https_port : http_port);
    server.tls = tls;
    return server;
}

ServerAddress rdp_server(const Record& record, unsigned port) {
    ServerAddress server = split(record.address(), port);
    if (record[field_index("useCustomRDPPort")] == "on") {
        server.port = port_in(record[field_index("rdpPort")], server.port);
    }
    return server;
}

std::optional<ServerAddress> server_by_type(const ConnectionType& type, const Record& record,
                                            const Default& usual) {
    std::string_view text = record.address();
    switch (type.number) {
    case QVTC_TYPE_RDP:
        return rdp_server(record, usual.port);
    case QVTC_TYPE_SPICE:
        return spice_server(record);
    case QVTC_TYPE_VNC:
        return vnc_server(text, usual.port);
    case QVTC_TYPE_WEB:
        return web_server(text);
    default:
        break;
    }
    const bool plain = take_scheme(text) == "http";
    ServerAddress server = split(authority(text), plain ? http_port : usual.port);
    server.tls = usual.tls && !plain;
    return server;
}

} // namespace

std::optional<ServerAddress> server_of(const ConnectionType& type, const Record& record) {
    for (const Default& usual : defaults) {
        if (usual.type != type.number) continue;
        std::optional<ServerAddress> server = server_by_type(type, record, usual);
        if (server && server->host.empty()) return std::nullopt;
        return server;
    }
    return std::nullopt;
}

std::optional<ServerAddress> gateway_of(const ConnectionType& type, const Record& record) {
    const bool used = type.number == QVTC_TYPE_RDP && record[field_index("useRdGateway")] == "on" &&
                      !record[field_index("domain")].empty();
    const std::string& address = record[field_index("rdGatewayAddress")];
    if (!used || address.empty()) return std::nullopt;
    ServerAddress gateway = split(address, https_port);
    gateway.tls = true;
    return gateway;
}

Route route_of(const ConnectionType& type, const Record& record) {
    return gateway_of(type, record) ? Route::gateway : Route::direct;
}

} // namespace qvtc::qvtcctl
