#include "qvtcctl/network/network.hpp"

#include "qvtcctl/base/hexadecimal.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/suggest.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/child.hpp"
#include "qvtcctl/verb/system_log.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

struct PortRow {
    Port port;
    std::string_view name;
    json_object* (*get)();
};
constexpr std::array<PortRow, ports.size()> port_table{{
    {Port::main, "eth0", qvgetwiredconf},
    {Port::extra, "eth1", qvgetexwiredconf},
    {Port::wireless, "wlan0", qvgetwirelessconf},
}};

const PortRow& row_of(Port port) { return port_table[static_cast<std::size_t>(port)]; }

/// The library's zeroes stand for nothing.
std::string address_member(json_object* object, const char* key) {
    std::string value = text_member(object, key);
    return value == "0.0.0.0" ? "" : value;
}

/// What the library's log has complained of since the mark, as the end of a message.
std::string complaint_since(const LogMark& log) {
    const std::string complaint = last_complaint(log.added());
    return complaint.empty() ? "" : fmt::format(" The library's log says: \"{}\".", complaint);
}

/// "ssid" travels as hexadecimal digits, so a name can hold anything.
std::string ssid_parameter(const std::string& network) { return "ssid=" + hexadecimal_of(network); }

/// A name server that is not wanted must be named by something short, or the library would write
/// one of zeroes. A profile takes no such word.
std::string address_parameters(Mode mode, const WantedAddresses& wanted, bool wired) {
    std::string parameters = mode == Mode::dhcp ? "conf=0" : "conf=1";
    const auto give = [&](std::string_view name, const std::string& value,
                          std::string_view otherwise) {
        const std::string_view given = value.empty() ? otherwise : std::string_view(value);
        if (!given.empty()) parameters += fmt::format("&{}={}", name, given);
    };
    give("ip", wanted.address, "");
    give("mask", wanted.mask, "");
    give("gateway", wanted.gateway, "");
    give("dns1", wanted.dns1, wired ? "0" : "");
    give("dns2", wanted.dns2, wired ? "0" : "");
    return parameters;
}

/// Lets the library work in a process and a session of its own, and waits for it. What it does goes
/// on when the tty that this program was typed on is closed, as when the network is restarted over
/// which somebody has logged on; and so does what it has started in the background.
template <typename Work>
void work_in_own_session(Chatter chatter, const std::string& waits_for, Work work) {
    run_in_child(
        [&] {
            setsid();
            work();
            return 0;
        },
        chatter, said_after_a_moment(waits_for));
}

std::string for_addresses(std::string_view name, Mode mode) {
    if (mode != Mode::dhcp) return fmt::format("Waiting until {} is set up.", name);
    return fmt::format("Waiting until a DHCP server gives {} an address; it can take a minute.",
                       name);
}

void require_in_use(Port port, Mode mode, const WantedAddresses& wanted, const PortState& state,
                    const LogMark& log) {
    std::string fault;
    if (mode == Mode::servers) {
        if (state.dns1 != wanted.dns1 || state.dns2 != wanted.dns2)
            fault = "the name servers are not in use";
    } else if (state.is_static != (mode == Mode::fixed)) {
        fault =
            fmt::format("it is still set up for {}", state.is_static ? "a static address" : "DHCP");
    } else if (mode == Mode::fixed &&
               (state.address != wanted.address || state.mask != wanted.mask)) {
        fault = fmt::format(
            "it has {}", state.address.empty()
                             ? "no address"
                             : fmt::format("the address {}, mask {}", state.address, state.mask));
    } else if (state.address.empty()) {
        fault = "no server on its network has given it an address";
    }
    if (fault.empty()) return;
    std::string_view advice = "Check its cable and \"qvtcctl network show\"";
    if (port == Port::wireless) {
        advice = "Check with \"qvtcctl network scan\" that the network is in use";
    } else if (Network::is_managed_elsewhere(port)) {
        advice = "NetworkManager manages it too, and may have replaced the addresses";
    }
    throw Refusal(ExitCode::not_done,
                  fmt::format("{} was set up, but {}. {}; --debug shows the output of the "
                              "system's programs.{}",
                              name_of(port), fault, advice, complaint_since(log)));
}

} // namespace

std::string_view name_of(Port port) { return row_of(port).name; }

Port require_port(const std::string& name, bool with_wireless) {
    std::vector<std::string_view> names;
    for (const PortRow& row : port_table) {
        if (row.port == Port::wireless && !with_wireless) continue;
        if (row.name == name) return row.port;
        names.push_back(row.name);
    }
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown port \"{}\"{}: give one of {}.", printable(name),
                              did_you_mean(name, names), fmt::join(names, ", ")));
}

Network::Network(Chatter chatter) : chatter_(chatter) { require_terminal(); }

bool Network::is_online() const {
    const Quiet quiet(chatter_);
    return qvgetwiredstatus() == 1;
}

std::optional<PortState> Network::state(Port port) const {
    Json answer;
    {
        const Quiet quiet(chatter_);
        answer.reset(row_of(port).get());
    }
    if (!answer || text_member(answer.get(), "conf") == "none") return std::nullopt;
    PortState state;
    state.is_static = text_member(answer.get(), "conf") == "1";
    state.address = address_member(answer.get(), "ip");
    state.mask = address_member(answer.get(), "mask");
    state.gateway = address_member(answer.get(), "gateway");
    state.dns1 = address_member(answer.get(), "dns1");
    state.dns2 = address_member(answer.get(), "dns2");
    return state;
}

PortState Network::require_state(Port port) const {
    if (const auto found = state(port)) return *found;
    throw Refusal(ExitCode::not_possible,
                  fmt::format("this terminal has no {} {}.",
                              port == Port::wireless ? "link" : "port", name_of(port)));
}

PortState Network::set_wired(Port port, Mode mode, const WantedAddresses& wanted) const {
    require_state(port);
    const LogMark log{std::string(system_log)};
    std::string parameters = address_parameters(mode, wanted, true);
    work_in_own_session(chatter_, for_addresses(name_of(port), mode), [&] {
        // The extra port's status is not returned; reading it back decides for both.
        if (port == Port::main) {
            qvsetwiredconf(parameters.data());
        } else {
            qvsetexwiredconf(parameters.data());
        }
    });
    PortState now = require_state(port);
    require_in_use(port, mode, wanted, now, log);
    return now;
}

bool Network::is_managed_elsewhere(Port port) {
    const auto answer = run_program(
        {"nmcli", "-g", "GENERAL.NM-MANAGED", "device", "show", std::string(name_of(port))},
        "LC_ALL=C");
    return answer && answer->succeeded && trimmed(answer->text) == "yes";
}

PortState Network::set_wireless(const std::string& network, Mode mode,
                                const WantedAddresses& wanted) const {
    const LogMark log{std::string(system_log)};
    std::string parameters =
        address_parameters(mode, wanted, false) + "&" + ssid_parameter(network);
    work_in_own_session(chatter_, for_addresses(name_of(Port::wireless), mode),
                        [&] { qvsetwirelessconf(parameters.data()); });
    PortState now = require_state(Port::wireless);
    require_in_use(Port::wireless, mode, wanted, now, log);
    return now;
}

bool Network::has_wifi() const {
    Json answer;
    const Quiet quiet(chatter_);
    answer.reset(qvgetwifi());
    return answer && text_member(answer.get(), "status") == "1";
}

bool Network::wifi_is_on() const {
    Json answer;
    const Quiet quiet(chatter_);
    answer.reset(qvgetwifionoff());
    return answer && text_member(answer.get(), "useWifi") == "on";
}

void Network::switch_wifi(bool on) const {
    const LogMark log{std::string(system_log)};
    std::string parameters = on ? "useWifi=on" : "useWifi=off";
    {
        const Quiet quiet(chatter_);
        qvsetwifionoff(parameters.data());
    }
    if (wifi_is_on() != on) throw not_taken("the Wi-Fi switch was not stored", log);
}

void Network::require_wifi() const {
    if (!has_wifi()) {
        throw Refusal(ExitCode::not_possible, "this terminal has no Wi-Fi hardware, or it is "
                                              "disabled by /home/root/disablewifi.");
    }
    if (!wifi_is_on()) {
        throw Refusal(ExitCode::not_done,
                      "Wi-Fi is switched off. \"qvtcctl network wifi on\" switches it on.");
    }
}

std::vector<NetworkInRange> Network::scan() const {
    Json answer;
    {
        const Quiet quiet(chatter_);
        answer.reset(qvgetwifilist());
    }
    json_object* list = nullptr;
    if (!answer || json_object_object_get_ex(answer.get(), "list", &list) == 0) {
        throw Refusal(
            ExitCode::not_done,
            fmt::format("the list of networks could not be read. {} says why.", system_log));
    }
    std::vector<NetworkInRange> networks;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        json_object* const each = json_object_array_get_idx(list, i);
        networks.push_back({text_member(each, "ssid"), text_member(each, "connected") == "on",
                            text_member(each, "encryptType"),
                            std::min(parse_number(text_member(each, "sigStrength")).value_or(0),
                                     strongest_signal)});
    }
    return networks;
}

void Network::join(const std::string& network, Encryption encryption, const std::string& user,
                   const std::string& password) const {
    std::string parameters = ssid_parameter(network);
    if (encryption == Encryption::open) parameters += "&encryptType=open";
    if (encryption == Encryption::personal) parameters += "&encryptType=wpa2";
    if (encryption == Encryption::enterprise) parameters += "&encryptType=802.1X&username=" + user;
    if (!password.empty()) parameters += "&password=" + password;
    work_in_own_session(chatter_, "Waiting until the previously joined networks are removed.",
                        [&] { qvsetwifiauth(parameters.data()); });
}

PortState Network::set_default_route(Port port) const {
    require_state(port);
    std::string parameters = fmt::format("default={}", name_of(port));
    run_in_child([&] { return qvsetdefaultroute(parameters.data()); }, chatter_,
                 said_after_a_moment("Waiting for the name server: it is asked for the gateways' "
                                     "names."));
    PortState now = require_state(port);
    if (!now.gateway.empty()) return now;
    throw Refusal(ExitCode::not_done,
                  fmt::format("no default route through {0} was added: the routing table names no "
                              "gateway for it. Give {0} an address with a gateway first, see "
                              "\"qvtcctl network set --help\".",
                              name_of(port)));
}

} // namespace qvtc::qvtcctl
