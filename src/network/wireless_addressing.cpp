#include "network/wireless_addressing.hpp"

#include <cstdio>
#include <vector>

#include "core/line_file.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "network/addressing.hpp"
#include "network/devices.hpp"
#include "network/name_servers.hpp"
#include "network/wireless.hpp"
#include "store/settings.hpp"

namespace qvtc::network {

namespace {

constexpr std::size_t shortest_params = 4;
constexpr std::size_t longest_reset_object = 10;
constexpr std::size_t object_limit = 255;

/// The keys of the addresses in a profile, in the order in which they go.
constexpr const char* address_keys[] = {"IPADDR", "GATEWAY", "NETMASK", "DNS1", "DNS2"};

void fill(std::string& field, const std::string& value) {
    if (!value.empty()) field = value.substr(0, field_limit);
}

/// NAME=value at the end of a profile, where the system's scripts read shell.
/// Without backslashes, which no address has: some shells' echo would turn them
/// into line breaks, and half a value would be left behind by the next edit.
void append_assignment(const char* name, const std::string& value, const std::string& profile) {
    const std::string plain = shell::assigned(remove_all(value, '\\'));
    os().run(textf("echo \"%s=%s\" >> %s", name, shell::in_double(plain).c_str(), profile.c_str()));
}

void write_supplicant_conf() {
    write_lines(paths::wpa_supplicant_conf,
                std::vector<std::string>{"# allow frontend (e.g., wpa_cli) to be used by all users "
                                         "in 'wheel' group",
                                         "ctrl_interface=/var/run/wpa_supplicant",
                                         "ctrl_interface_group=wheel", ""});
}

/// Whether the list of networks shows this one, with no encryption.
bool is_open(const std::string& name) {
    return contains(os().capture(textf("env LANG=en_US.UTF8 nmcli dev wifi|grep %s "
                                       "|awk '{print $9}'",
                                       shell::grep_pattern(name).c_str()),
                                 1024),
                    "--");
}

void set_boot_protocol(const char* protocol, const std::string& profile) {
    os().run(
        textf("sed -i \"/BOOTPROTO/ s/\\(BOOTPROTO=\\).*/\\1%s/\" %s", protocol, profile.c_str()));
}

int apply_static(const NetConf& conf, const std::string& profile) {
    set_boot_protocol("static", profile);
    append_assignment("IPADDR", conf.ip, profile);
    append_assignment("GATEWAY", conf.gateway, profile);
    append_assignment("NETMASK", conf.mask, profile);
    append_assignment("DNS1", conf.dns1, profile);
    append_assignment("DNS2", conf.dns2, profile);
    os().run("killall dhclient");
    os().run("nmcli r wifi off");
    os().run("nmcli r wifi on");
    return os().run("systemctl restart network");
}

int apply_dhcp(const std::string& profile) {
    set_boot_protocol("dhcp", profile);
    os().run("killall dhclient");
    return os().run("dhclient wlan0");
}

} // namespace

NetConf wireless_conf() {
    const std::string stored = store::setting("networkconf-wlan0").substr(0, object_limit);
    NetConf conf;
    if (stored.size() > longest_reset_object && contains(stored, "'conf':'1'")) conf.conf = "1";
    fill(conf.ip, address_of(wireless_link).value_or(""));
    std::string mask;
    read_mask(wireless_link, mask);
    fill(conf.mask, mask);
    fill(conf.gateway, gateway_of(wireless_link).value_or(""));
    const NameServers servers = name_servers().value_or(NameServers{});
    fill(conf.dns1, servers.first);
    fill(conf.dns2, servers.second);
    std::fprintf(stderr, "value=%s\n", object_text(conf).c_str());
    return conf;
}

bool set_wireless_conf(const std::string& params) {
    if (params.size() < shortest_params) {
        log(Level::error, "set wireless config error");
        return false;
    }
    const auto request = address_request(params, Link::wireless);
    if (!request) return false;
    store_object(wireless_link, request->object);
    apply_wireless_conf(request->list.c_str());
    return true;
}

int apply_wireless_conf(const char* list) {
    const Addressing wanted = addressing_of(list);
    const std::string name = network_name(wanted.ssid);
    const std::string profile = shell::word(interface_file(name));
    write_supplicant_conf();
    if (is_open(name)) {
        std::printf("open................");
    } else {
        os().run(textf("echo \"KEY_MGMT=WPA-PSK\" >> %s", profile.c_str()));
    }
    for (const char* const key : address_keys)
        os().run(textf("sed -i \"/%s=/d\" %s", key, profile.c_str()));
    return wanted.dhcp ? apply_dhcp(profile) : apply_static(wanted.conf, profile);
}

} // namespace qvtc::network
