#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/secrets.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/network/addresses.hpp"
#include "qvtcctl/network/network.hpp"
#include "qvtcctl/network/network_presentation.hpp"
#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/change_lock.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

const Argument address_option = option("--address", "ADDRESS", "its IPv4 address");
const Argument mask_option = option("--mask", "MASK", "the mask of its network");
const Argument gateway_option = option("--gateway", "ADDRESS", "the router of its network");
const Argument dns1_option = option("--dns1", "ADDRESS", "the first name server");
const Argument dns2_option = option("--dns2", "ADDRESS", "the second name server");

WantedAddresses wanted_addresses(const Request& request) {
    return {.address = request.text(address_option),
            .mask = request.text(mask_option),
            .gateway = request.text(gateway_option),
            .dns1 = request.text(dns1_option),
            .dns2 = request.text(dns2_option)};
}

Answer changed_answer(Port port, const PortState& state) {
    Answer answer;
    answer.text = port_sentence(port, state);
    answer.json = port_json(port, state);
    // The wireless link is NetworkManager's by right: it joins the networks.
    const bool managed = port != Port::wireless && Network::is_managed_elsewhere(port);
    add_notes(answer, managed ? std::vector{note_on_manager(port)} : std::vector<std::string>());
    return answer;
}

struct JoinOptions {
    std::string name;
    std::string user;
    bool open = false;
    bool enterprise = false;
    bool password_stdin = false;
};

Encryption require_encryption(const JoinOptions& options) {
    if (options.open && options.enterprise)
        throw UsageError("--open and --enterprise cannot be used together.");
    if (options.enterprise) {
        if (options.user.empty()) throw UsageError("--user is missing: --enterprise needs it.");
        require_wifi_user(options.user);
        return Encryption::enterprise;
    }
    if (!options.user.empty()) throw UsageError("--user can be used only with --enterprise.");
    if (!options.open) return Encryption::personal;
    if (options.password_stdin)
        throw UsageError("an open network needs no password: --open and --password-stdin cannot be "
                         "used together.");
    return Encryption::open;
}

std::string collect_password(const JoinOptions& options, Encryption encryption) {
    if (encryption == Encryption::open) return "";
    std::string password;
    if (options.password_stdin) {
        password = read_password_line("password");
        require_end_of_input();
    } else {
        password = ask_for_password("password", "--password-stdin");
    }
    require_wifi_password(encryption, password);
    return password;
}

bool require_switch(const std::string& word) {
    if (word == "on" || word == "off") return word == "on";
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("\"{}\" is not valid: give on or off.", printable(word)));
}

Answer routes_answer(const Network& network) {
    Answer answer;
    Json list = json_list();
    for (const Port port : ports) {
        const std::optional<PortState> state = network.state(port);
        if (!state || state->gateway.empty()) continue;
        answer.text +=
            fmt::format("{} carries a default route via {}.\n", name_of(port), state->gateway);
        Json row = json_map();
        add(row, "port", name_of(port));
        add(row, "gateway", state->gateway);
        append(list, std::move(row));
    }
    if (answer.text.empty()) answer.text = "No port carries a default route.\n";
    answer.json = json_map();
    add(answer.json, "routes", std::move(list));
    return answer;
}

const Argument port_argument =
    required_argument("PORT", "eth0 or eth1").completed_by(one_of({"eth0", "eth1"}));
const Argument mode_argument = required_argument("MODE", "dhcp, static or dns")
                                   .completed_by(one_of({"dhcp", "static", "dns"}));
const Argument name_argument = required_argument("NAME", "name of the network");
const Argument wireless_mode_argument =
    required_argument("MODE", "dhcp or static").completed_by(one_of({"dhcp", "static"}));
const Argument switch_argument =
    optional_argument("SWITCH", "on or off").completed_by(one_of({"on", "off"}));
const Argument open_flag = flag("--open", "the network has no encryption");
const Argument enterprise_flag = flag("--enterprise", "log on as a user (802.1X)");
const Argument user_option = option("--user", "USER", "the user to log on as, with --enterprise");
const Argument password_stdin_flag =
    flag("--password-stdin", "read the password from standard input");
const Argument route_port_argument = optional_argument("PORT", "eth0, eth1 or wlan0")
                                         .completed_by(one_of({"eth0", "eth1", "wlan0"}));

Answer run_network_set(const Request& request) {
    const WantedAddresses wanted = wanted_addresses(request);
    const Port port = require_port(request.text(port_argument), false);
    const Mode mode = require_mode(request.text(mode_argument), true);
    require_addresses(mode, wanted);
    const Network network(request.chatter());
    const ChangeLock lock;
    return changed_answer(port, network.set_wired(port, mode, wanted));
}

Answer run_network_wireless(const Request& request) {
    const WantedAddresses wanted = wanted_addresses(request);
    require_network_name(request.text(name_argument));
    const Mode mode = require_mode(request.text(wireless_mode_argument), false);
    require_addresses(mode, wanted);
    const Network network(request.chatter());
    network.require_wifi();
    const ChangeLock lock;
    return changed_answer(Port::wireless,
                          network.set_wireless(request.text(name_argument), mode, wanted));
}

Answer run_network_wifi(const Request& request) {
    std::optional<bool> wanted;
    if (!request.text(switch_argument).empty())
        wanted = require_switch(request.text(switch_argument));
    const Network network(request.chatter());
    if (wanted) {
        const ChangeLock lock;
        network.switch_wifi(*wanted);
    }
    const bool present = network.has_wifi();
    const bool on = network.wifi_is_on();
    Answer answer;
    answer.text = fmt::format("Wi-Fi is {}{}.\n", wanted ? "now " : "", on ? "on" : "off");
    if (!present) answer.notes.emplace_back("there is no Wi-Fi hardware, or it is disabled.");
    answer.json = wifi_json(present, on);
    return answer;
}

Answer run_network_join(const Request& request) {
    require_network_name(request.text(name_argument));
    const JoinOptions options{request.text(name_argument), request.text(user_option),
                              request.has(open_flag), request.has(enterprise_flag),
                              request.has(password_stdin_flag)};
    const Encryption encryption = require_encryption(options);
    const Network network(request.chatter());
    network.require_wifi();
    const std::string password = collect_password(options, encryption);
    const ChangeLock lock;
    network.join(options.name, encryption, options.user, password);
    Answer answer;
    answer.text = fmt::format("Joining \"{}\". \"qvtcctl network scan\" marks it once it is in "
                              "use.\n",
                              printable(request.text(name_argument)));
    answer.json = json_map();
    add(answer.json, "joining", request.text(name_argument));
    return answer;
}

Answer run_network_route(const Request& request) {
    std::optional<Port> port;
    if (!request.text(route_port_argument).empty())
        port = require_port(request.text(route_port_argument), true);
    const Network network(request.chatter());
    if (port) {
        const ChangeLock lock;
        network.set_default_route(*port);
    }
    return routes_answer(network);
}

} // namespace

const Verb verbs::network_set{
    .name = "set",
    .summary = "Set the addresses of a wired port",
    .description = "Sets the addresses of a wired port and restarts it: \"dhcp\" gets "
                   "them from the network's DHCP server, \"static\" needs an address, its "
                   "mask and the gateway, and \"dns\" sets only the name servers. "
                   "Everything is checked before anything is changed, and read back "
                   "afterwards. Whoever is logged on over this port loses the connection. "
                   "A NetworkManager that manages the port may replace the addresses "
                   "later; a note says so.",
    .examples = {"qvtcctl network set eth0 dhcp",
                 "qvtcctl network set eth0 static --address 192.168.1.20 --mask 255.255.255.0 "
                 "--gateway 192.168.1.1 --dns1 192.168.1.1",
                 "qvtcctl network set eth0 dns --dns1 9.9.9.9 --dns2 1.1.1.1"},
    .arguments = {port_argument, mode_argument, address_option, mask_option, gateway_option,
                  dns1_option, dns2_option},
    .run = run_network_set,
};

const Verb verbs::network_wireless{
    .name = "wireless",
    .summary = "Set the addresses of the wireless link",
    .description = "Sets how the wireless link gets its address in a network, and "
                   "restarts it: \"dhcp\" gets it from the network's DHCP server, "
                   "\"static\" needs an address, its mask and the gateway. The network "
                   "must have been joined before.",
    .examples = {"qvtcctl network wireless Office dhcp",
                 "qvtcctl network wireless \"Guest WiFi\" static --address 10.0.0.20 --mask "
                 "255.255.255.0 --gateway 10.0.0.1"},
    .arguments = {name_argument, wireless_mode_argument, address_option, mask_option,
                  gateway_option, dns1_option, dns2_option},
    .run = run_network_wireless,
};

const Verb verbs::network_wifi{
    .name = "wifi",
    .summary = "Show the Wi-Fi switch, or switch Wi-Fi on or off",
    .description = "Shows whether there is Wi-Fi hardware and whether Wi-Fi is on, or switches "
                   "it.",
    .examples = {"qvtcctl network wifi", "qvtcctl network wifi on"},
    .arguments = {switch_argument},
    .run = run_network_wifi,
};

const Verb verbs::network_join{
    .name = "join",
    .summary = "Join a wireless network",
    .description = "Starts joining a wireless network in the background; \"qvtcctl "
                   "network scan\" marks it once it is in use. All networks that were "
                   "joined before are removed, and the link gets its address by DHCP. The "
                   "password is asked for, or read from standard input; an open network "
                   "needs none.",
    .examples = {"qvtcctl network join Office", "qvtcctl network join \"Guest WiFi\" --open",
                 "qvtcctl network join Corp --enterprise --user anna --password-stdin < password"},
    .arguments = {name_argument, open_flag, enterprise_flag, user_option, password_stdin_flag},
    .run = run_network_join,
};

const Verb verbs::network_route{
    .name = "route",
    .summary = "Show the default routes, or choose their port",
    .description = "Shows which ports carry a default route, or adds one through a port, with "
                   "the gateway that the routing table names for it. Routes through other ports "
                   "stay.",
    .examples = {"qvtcctl network route", "qvtcctl network route eth1"},
    .arguments = {route_port_argument},
    .run = run_network_route,
};

} // namespace qvtc::qvtcctl
