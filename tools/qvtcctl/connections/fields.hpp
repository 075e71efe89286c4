#pragma once

#include "qvtcctl/connections/types.hpp"

#include <array>
#include <optional>
#include <string_view>

namespace qvtc::qvtcctl {

/// What may stand in a field.
enum class Kind {
    identity, ///< the id or the type: given by the command, not as a field
    text,
    address,
    on_off,
    port,
    password, ///< asked for, never typed on the command line
    hex,      ///< text written as hexadecimal digits, two a byte
    choice,
};

/// A set of connection types, one bit each.
using TypeSet = unsigned;
constexpr TypeSet set_of(unsigned type) { return 1U << type; }
constexpr bool contains(TypeSet set, const ConnectionType& type) {
    return (set & set_of(type.number)) != 0;
}

/// One of the fields that every connection has.
struct Field {
    std::string_view name;
    Kind kind;
    TypeSet used_by;          ///< the types whose client gets the value
    TypeSet bare_in;          ///< of these, the ones that get it unquoted, so that a blank cuts it
    std::string_view choices; ///< the values of a choice, joined by "|"
    std::string_view meaning;
};

namespace field_sets {
inline constexpr TypeSet none = 0;
inline constexpr TypeSet rdp = set_of(QVTC_TYPE_RDP);
inline constexpr TypeSet spice = set_of(QVTC_TYPE_SPICE);
inline constexpr TypeSet horizon = set_of(QVTC_TYPE_HORIZON);
inline constexpr TypeSet vnc = set_of(QVTC_TYPE_VNC);
inline constexpr TypeSet web = set_of(QVTC_TYPE_WEB);
inline constexpr TypeSet any = ~0U;
} // namespace field_sets

inline constexpr std::size_t field_count = 51;

/// Bytes that a field can hold.
inline constexpr std::size_t longest_value = QVTC_FIELD_SIZE - 1;

// The library's fields, in its order. "Front-end" marks what no client is given.
// clang-format off
inline constexpr auto fields = [] {
    using namespace field_sets;
    using enum Kind;
    return std::array<Field, field_count>{{
        {"id",                        identity, any,           none,          "", "number of the connection"},
        {"type",                      identity, any,           none,          "", "number of its type"},
        {"name",                      text,     any,           rdp,           "", "name shown in lists; title of an RDP window"},
        {"serverAddress",             address,  any,           spice | horizon | vnc | web,           "", "server name or address; web: the page"},
        {"port",                      port,     spice,         spice,         "", "port of a SPICE server"},
        {"sport",                     port,     none,          none,          "", "front-end: secure port"},
        {"password",                  password, rdp | horizon | vnc, horizon | vnc, "", "password of the user"},
        {"selectCertificate",         text,     none,          none,          "", "front-end: certificate file"},
        {"downloadUrl",               text,     none,          none,          "", "front-end: where to download from"},
        {"autoConnect",               on_off,   none,          none,          "", "front-end: connect after start-up"},
        {"rememberMe",                on_off,   none,          none,          "", "front-end: remember the user"},
        {"username",                  text,     rdp | horizon, horizon,       "", "user name"},
        {"disconnectRetry",           text,     none,          none,          "", "front-end: retry when disconnected"},
        {"redirectAudio",             on_off,   rdp,           none,          "", "sound and microphone of the terminal"},
        {"useCompress",               on_off,   rdp,           none,          "", "compression"},
        {"domain",                    text,     rdp | horizon, horizon,       "", "logon domain"},
        {"isConnectStart",            on_off,   rdp,           none,          "", "start a program at logon"},
        {"appFullpath",               text,     rdp,           none,          "", "the program to start"},
        {"workDir",                   text,     rdp,           none,          "", "its working directory"},
        {"colorDepth",                choice,   rdp,           rdp,          "8|15|16|24|32", "colour depth in bits"},
        {"desktopBackground",         on_off,   rdp | spice,   none,          "", "wallpaper"},
        {"fontSmooth",                on_off,   rdp | spice,   none,          "", "font smoothing"},
        {"desktopLayout",             text,     none,          none,          "", "front-end: desktop layout"},
        {"visualStyle",               on_off,   rdp,           none,          "", "themes"},
        {"persistBitmap",             on_off,   rdp,           none,          "", "bitmap cache"},
        {"rdpPort",                   port,     rdp,           rdp,          "", "RDP port, with useCustomRDPPort=on"},
        {"dragShowContent",           on_off,   rdp,           none,          "", "show a window while it is dragged"},
        {"widgetAnimate",             on_off,   rdp,           none,          "", "menu animations"},
        {"useRemoteFX",               on_off,   rdp,           none,          "", "RemoteFX"},
        {"localStorage",              on_off,   rdp,           none,          "", "drives of the terminal"},
        {"useNLA",                    on_off,   none,          none,          "", "front-end: network level authentication"},
        {"useSport",                  on_off,   none,          none,          "", "front-end: use the secure port"},
        {"useCustomRDPPort",          on_off,   rdp,           none,          "", "use rdpPort"},
        {"useRedirect",               on_off,   spice,         none,          "", "USB devices of the terminal (SPICE)"},
        {"disableAll",                on_off,   none,          none,          "", "front-end: switch effects off"},
        {"desktop",                   hex,      horizon,       horizon,       "", "desktop name, as hexadecimal text"},
        {"audioPlayOnServer",         on_off,   rdp,           none,          "", "leave sound on the server"},
        {"useRdGateway",              on_off,   rdp,           none,          "", "use the gateway"},
        {"rdGatewayAddress",          address,  rdp,           none,          "", "address of the gateway"},
        {"rdGatewayUseRemoteAccount", on_off,   none,          none,          "", "front-end: same account at the gateway"},
        {"rdGatewayUsername",         text,     rdp,           none,          "", "gateway user name; replaces username"},
        {"rdGatewayPassword",         password, rdp,           none,          "", "password at the gateway"},
        {"rdGatewayDomain",           text,     rdp,           none,          "", "domain at the gateway"},
        {"monitorSelect",             choice,   rdp | horizon, none,          "extend|vga|hdmi", "screens to use"},
        {"multimedia",                on_off,   rdp,           none,          "", "video redirection"},
        {"printer",                   text,     none,          none,          "", "front-end: printer"},
        {"vmwareProtocol",            choice,   horizon,       none,          "PCOIP|BLAST|RDP", "display protocol"},
        {"isUseSGW",                  on_off,   none,          none,          "", "front-end: use a security gateway"},
        {"usbRedirection",            on_off,   rdp,           none,          "", "USB devices of the terminal (RDP)"},
        {"multiTouch",                on_off,   rdp,           none,          "", "touch screen"},
        {"useGFX",                    on_off,   rdp,           none,          "", "graphics pipeline"},
    }};
}();
// clang-format on

/// The place of a field in the table. A name that is in no row does not compile.
consteval std::size_t field_index(std::string_view name) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].name == name) return i;
    }
    throw "no such field";
}

/// The place of a field in the table, or nothing for a name that is in no row.
std::optional<std::size_t> find_field(std::string_view name);

/// As find_field(), but refuses an unknown name with a message that suggests one.
std::size_t require_field(std::string_view name);

/// How the values of a field are described: "on or off", "a port", ...
std::string_view describe(Kind kind);

} // namespace qvtc::qvtcctl
