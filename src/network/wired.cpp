#include "network/wired.hpp"

#include <vector>

#include "core/line_file.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "network/addressing.hpp"
#include "network/devices.hpp"

namespace qvtc::network {

namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t shortest_params = 4;
constexpr std::size_t shortest_name_server = 6;

/// The interface file for DHCP, or the beginning of one with a static address.
Lines interface_lines(const std::string& device, const char* boot_protocol) {
    const std::string name = shell::assigned(device);
    // Every interface counts as Ethernet, the wireless one too.
    return {"",
            "TYPE=Ethernet",
            textf("NAME=%s", name.c_str()),
            textf("DEVICE=%s", name.c_str()),
            "ONBOOT=yes",
            textf("BOOTPROTO=%s", boot_protocol)};
}

void write_static_files(const std::string& device, const NetConf& conf) {
    Lines lines = interface_lines(device, "static");
    lines.push_back(textf("IPADDR=%s", shell::assigned(conf.ip).c_str()));
    lines.push_back(textf("NETMASK=%s", shell::assigned(conf.mask).c_str()));
    write_lines(interface_file(device), lines);
    write_lines(paths::network_conf,
                Lines{"", "# Created by anaconda",
                      textf("GATEWAY=%s", shell::assigned(conf.gateway).c_str())});
    os().run(textf("echo %s>/tmp/abcd-%s",
                   shell::before_redirection(one_line(conf.gateway)).c_str(),
                   shell::word(replace_all(device, '/', '-'), shell::At::inside_word).c_str()));
}

/// False when the configuration names no server. Deliberate: one that was not
/// asked for is named 0.0.0.0, and is written.
bool write_name_servers(const NetConf& conf) {
    Lines lines = {"# Created by NetworkManager"};
    for (const std::string* const server : {&conf.dns1, &conf.dns2}) {
        const std::string address = one_line(*server);
        if (address.size() < shortest_name_server) continue;
        lines.push_back(textf("nameserver %s", address.c_str()));
    }
    write_lines(paths::resolv_conf, lines);
    return lines.size() > 1;
}

} // namespace

bool has_interface(const std::string& device) {
    const std::string lines =
        os().capture(textf("ip addr |grep %s", shell::grep_pattern(device).c_str()), 1024);
    return contains(lines, device);
}

Json conf_object(const NetConf& conf) {
    Json object = json_map();
    add_member(object, "conf", json_string(conf.conf));
    add_member(object, "ip", json_string(conf.ip));
    add_member(object, "mask", json_string(conf.mask));
    add_member(object, "gateway", json_string(conf.gateway));
    add_member(object, "dns1", json_string(conf.dns1));
    add_member(object, "dns2", json_string(conf.dns2));
    return object;
}

Json wired_conf(const std::string& device) {
    NetConf conf;
    read_net_conf(device, conf);
    try {
        return conf_object(conf);
    } catch (const std::bad_alloc&) {
        log(Level::error, "@getwiredconf: json_object_new_object fail\n");
        return nullptr;
    }
}

Json main_port_conf() { return has_interface(main_port) ? wired_conf(main_port) : nullptr; }

Json extra_port_conf() {
    return has_interface(extra_port) ? wired_conf(extra_port)
                                     : conf_object({"none", "", "", "", "", ""});
}

int set_wired_conf(const std::string& device, const std::string& params) {
    if (params.size() < shortest_params) return -1;
    const auto request = address_request(params, Link::wired);
    if (!request) return -1;
    // It is noted by echo.
    if (shell::is_echo_option(one_line(addressing_of(request->list.c_str()).conf.gateway))) {
        log(Level::error, "@setnetworkconf not a gateway");
        return -1;
    }
    store_object(device, request->object);
    return apply_wired_conf(device, request->list.c_str(), request->keep_file);
}

int apply_wired_conf(const std::string& device, const char* list, bool keep_file) {
    const Addressing wanted = addressing_of(list);
    os().run("rm -rf /root/resolv.conf");
    if (!keep_file) {
        if (wanted.dhcp) {
            reset_wired(device);
        } else {
            write_static_files(device, wanted.conf);
        }
    }
    if (write_name_servers(wanted.conf)) {
        os().run("rm -rf /root/resolv.conf");
        os().run("cp /etc/resolv.conf /root/resolv.conf");
    }
    return restart_interface(device);
}

int restart_interface(const std::string& device) {
    const std::string name = shell::word(device);
    os().run(textf("ifdown %s", name.c_str()));
    return os().run(textf("ifup %s", name.c_str()));
}

bool reset_wired(const std::string& device) {
    return write_lines(interface_file(device), interface_lines(device, "dhcp"));
}

} // namespace qvtc::network
