#include "qvtcctl/addresses.hpp"
#include "qvtcctl/change_lock.hpp"
#include "qvtcctl/network_device.hpp"
#include "qvtcctl/network_presentation.hpp"
#include "qvtcctl/network_verbs.hpp"
#include "qvtcctl/notes.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/secrets.hpp"
#include "qvtcctl/text.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

void define_address_options(CLI::App& app, WantedAddresses& wanted) {
    app.add_option("--address", wanted.address, "its IPv4 address")->option_text("ADDRESS");
    app.add_option("--mask", wanted.mask, "the mask of its network")->option_text("MASK");
    app.add_option("--gateway", wanted.gateway, "the router of its network")
        ->option_text("ADDRESS");
    app.add_option("--dns1", wanted.dns1, "the first name server")->option_text("ADDRESS");
    app.add_option("--dns2", wanted.dns2, "the second name server")->option_text("ADDRESS");
}

Answer changed_answer(Port port, const PortState& state) {
    Answer answer;
    answer.text = port_sentence(port, state);
    answer.json = port_json(port, state);
    // The wireless link is NetworkManager's by right: it joins the networks.
    const bool managed = port != Port::wireless && NetworkDevice::is_managed_elsewhere(port);
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

Answer routes_answer(const NetworkDevice& device) {
    Answer answer;
    Json list = json_list();
    for (const Port port : ports) {
        const std::optional<PortState> state = device.state(port);
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

} // namespace

Run define_network_set(CLI::App& app) {
    struct Options {
        std::string port;
        std::string mode;
        WantedAddresses wanted;
    };
    auto options = std::make_shared<Options>();
    app.add_option("PORT", options->port, "eth0 or eth1")->required();
    app.add_option("MODE", options->mode, "dhcp, static or dns")->required();
    define_address_options(app, options->wanted);
    return [options](const Context& context) {
        const Port port = require_port(options->port, false);
        const Mode mode = require_mode(options->mode, true);
        require_addresses(mode, options->wanted);
        const NetworkDevice device(context.chatter());
        const ChangeLock lock;
        return changed_answer(port, device.set_wired(port, mode, options->wanted));
    };
}

Run define_network_wireless(CLI::App& app) {
    struct Options {
        std::string name;
        std::string mode;
        WantedAddresses wanted;
    };
    auto options = std::make_shared<Options>();
    app.add_option("NAME", options->name, "name of the network")->required();
    app.add_option("MODE", options->mode, "dhcp or static")->required();
    define_address_options(app, options->wanted);
    return [options](const Context& context) {
        require_network_name(options->name);
        const Mode mode = require_mode(options->mode, false);
        require_addresses(mode, options->wanted);
        const NetworkDevice device(context.chatter());
        device.require_wifi();
        const ChangeLock lock;
        return changed_answer(Port::wireless,
                              device.set_wireless(options->name, mode, options->wanted));
    };
}

Run define_network_wifi(CLI::App& app) {
    auto word = std::make_shared<std::string>();
    app.add_option("SWITCH", *word, "on or off");
    return [word](const Context& context) {
        std::optional<bool> wanted;
        if (!word->empty()) wanted = require_switch(*word);
        const NetworkDevice device(context.chatter());
        if (wanted) {
            const ChangeLock lock;
            device.switch_wifi(*wanted);
        }
        const bool present = device.has_wifi();
        const bool on = device.wifi_is_on();
        Answer answer;
        answer.text = fmt::format("Wi-Fi is {}{}.\n", wanted ? "now " : "", on ? "on" : "off");
        if (!present) answer.notes.emplace_back("there is no Wi-Fi hardware, or it is disabled.");
        answer.json = wifi_json(present, on);
        return answer;
    };
}

Run define_network_join(CLI::App& app) {
    auto options = std::make_shared<JoinOptions>();
    app.add_option("NAME", options->name, "name of the network")->required();
    app.add_flag("--open", options->open, "the network has no encryption");
    app.add_flag("--enterprise", options->enterprise, "log on as a user (802.1X)");
    app.add_option("--user", options->user, "the user to log on as, with --enterprise")
        ->option_text("USER");
    app.add_flag("--password-stdin", options->password_stdin,
                 "read the password from standard input");
    return [options](const Context& context) {
        require_network_name(options->name);
        const Encryption encryption = require_encryption(*options);
        const NetworkDevice device(context.chatter());
        device.require_wifi();
        const std::string password = collect_password(*options, encryption);
        const ChangeLock lock;
        device.join(options->name, encryption, options->user, password);
        Answer answer;
        answer.text = fmt::format("Joining \"{}\". \"qvtcctl network scan\" marks it once it is in "
                                  "use.\n",
                                  printable(options->name));
        answer.json = json_map();
        add(answer.json, "joining", options->name);
        return answer;
    };
}

Run define_network_route(CLI::App& app) {
    auto name = std::make_shared<std::string>();
    app.add_option("PORT", *name, "eth0, eth1 or wlan0");
    return [name](const Context& context) {
        std::optional<Port> port;
        if (!name->empty()) port = require_port(*name, true);
        const NetworkDevice device(context.chatter());
        if (port) {
            const ChangeLock lock;
            device.set_default_route(*port);
        }
        return routes_answer(device);
    };
}

} // namespace qvtc::qvtcctl
