#include "network/default_route.hpp"

#include "core/os.hpp"
#include "core/params.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "network/devices.hpp"
#include "network/interface.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::network {

namespace {

constexpr std::size_t shortest_params = 9;
constexpr std::size_t text_limit = 1023;

} // namespace

void set_default_route(const std::string& params) {
    if (params.size() < shortest_params) return;
    ParamTable table;
    table.parse(params);
    const char* const named = table.find("default");
    const std::string device = named != nullptr ? named : main_port;
    // Deliberate: what is stored is the route that was found, or the command that
    // was run, and not the interface's name. Routes through others stay.
    std::string outcome = os().capture("route |grep default", 1024);
    if (!contains(outcome, device)) {
        outcome = textf("route add default gw %s dev %s >/dev/null 2>&1",
                        shell::word(gateway_of(device).value_or("")).c_str(),
                        shell::word(device).c_str());
        os().run(outcome);
    }
    store::store_setting(store::keys::default_route, outcome);
}

std::string default_route_text() {
    return store::setting(store::keys::default_route).substr(0, text_limit);
}

Json default_route() {
    const std::string text = default_route_text();
    return text.empty() ? nullptr : parse_json(text);
}

} // namespace qvtc::network
