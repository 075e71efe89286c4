#include "network/wireless.hpp"

#include <optional>

#include "core/encodings.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/params.hpp"
#include "core/process.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "network/addressing.hpp"
#include "network/devices.hpp"
#include "network/interface.hpp"
#include "network/wireless_scan.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::network {

namespace {

constexpr std::size_t shortest_switched_on = 8;
constexpr std::size_t text_limit = 127; ///< of a network's name and its password

/// A value without the newline that some front-ends send behind it.
std::optional<std::string> line_value(const ParamTable& params, const char* name) {
    const char* const value = params.find(name);
    if (value == nullptr) return std::nullopt;
    std::string text = value;
    if (text.ends_with('\n')) text.pop_back();
    return text;
}

void connect(const std::string& name, const std::string& password) {
    os().run(textf("env LANG=en_US.UTF8 nmcli d wifi connect \"%s\" password \"%s\" wlan0 "
                   ">/dev/null 2>&1 &",
                   shell::in_double(name).c_str(), shell::in_double(password).c_str()));
}

/// NetworkManager brings such a profile up by itself.
void add_enterprise_profile(const std::string& name, const std::string& user,
                            const std::string& password) {
    const std::string ssid = shell::in_double(name);
    os().run(
        textf("env LANG=en_US.UTF8 nmcli connection add type wifi con-name \"%s\" ifname wlan0 "
              "ssid \"%s\" -- wifi-sec.key-mgmt wpa-eap 802-1x.eap PEAP 802-1x.phase2-auth "
              "mschapv2 802-1x.identity \"%s\" 802-1x.password \"%s\" >/dev/null 2>&1 &",
              ssid.c_str(), ssid.c_str(), shell::in_double(user).c_str(),
              shell::in_double(password).c_str()));
}

} // namespace

std::string wifi_switch() { return store::setting(store::keys::wifi_switch); }

bool is_switched_on(const std::string& wifi_switch) { return contains(wifi_switch, "on"); }

void switch_wifi(const std::string& params) {
    store::store_setting(store::keys::wifi_switch, params);
    os().run(is_switched_on(params) ? "ifconfig wlan0 up" : "ifconfig wlan0 down");
}

int restart_supplicant() {
    os().run("killall dhclient");
    os().run("killall wpa_supplicant 2>/dev/null");
    // Deliberate: the configuration's name is spelled "supicant".
    os().run("/usr/sbin/wpa_supplicant -u -f /var/log/wpa_supplicant.log "
             "-c /etc/wpa_supplicant/wpa_supicant.conf -P /var/run/wpa_supplicant.pid -B");
    os().run("ifconfig wlan0 up");
    return os().run("dhclient wlan0 &");
}

Json wifi_list() {
    const std::string state = wifi_switch();
    if (state.size() < shortest_switched_on || contains(state, "off"))
        return parse_json("{'list':[]}");
    if (!process_runs("wpa_supplicant")) restart_supplicant();
    return parse_json(network_list_json(os().capture("env LANG=en_US.UTF8 nmcli dev wifi", 10240)));
}

void join_network(const std::string& params) {
    ParamTable table;
    table.parse(params);
    const std::string name = network_name(line_value(table, "ssid").value_or(""));
    if (name.empty()) {
        // Without a name the profiles of all interfaces would be the network's.
        log(Level::error, "@setwifiauth no ssid");
        return;
    }
    store_object(wireless_link, "0");
    forget_wireless_profiles();
    if (contains(params, "encryptType=open")) {
        connect(name, "");
        return;
    }
    const std::string password = line_value(table, "password").value_or("").substr(0, text_limit);
    os().run(textf("rm -f %s*", shell::word(interface_file(name)).c_str()));
    if (contains(params, "encryptType=802.1X")) {
        add_enterprise_profile(name, line_value(table, "username").value_or(""), password);
    } else {
        connect(name, password);
    }
}

void forget_wireless_profiles() {
    // Deliberate: the last verb is cut short, which nmcli accepts.
    os().run("nmcli connect|grep wlan|awk '{print $2}' |xargs nmcli c delet");
}

std::string network_name(std::string_view hexadecimal) {
    return c_text(digits_to_bytes(hexadecimal)).substr(0, text_limit);
}

} // namespace qvtc::network
