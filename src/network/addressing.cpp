#include "network/addressing.hpp"

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "core/log.hpp"
#include "core/params.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"

namespace qvtc::network {

namespace {

constexpr std::array<const char*, 7> keys = {"conf", "ip",   "mask", "gateway",
                                             "dns1", "dns2", "ssid"};
constexpr std::size_t wired_key_count = 6;
constexpr const char* absent_value = "0.0.0.0";

constexpr std::size_t object_limit = 1023;
// Of an interface whose addresses are no addresses, what is too long is dropped.
// A wireless list must hold the name of its network, which comes last, whole.
constexpr std::size_t wired_list_limit = 127;

std::string member(const char* key, std::string_view value) {
    return textf("'%s':'%.*s'", key, static_cast<int>(value.size()), value.data());
}

/// Whether a value for this key makes the interface file be written anew.
bool rewrites_file(std::string_view key, std::string_view value) {
    if (key == "conf") return value == "0";
    return key == "ip" || key == "mask" || key == "gateway";
}

std::vector<std::string> split(std::string_view list) {
    std::vector<std::string> values;
    for (;;) {
        const std::size_t end = list.find(';');
        values.emplace_back(list.substr(0, end));
        if (end == std::string_view::npos) return values;
        list.remove_prefix(end + 1);
    }
}

bool is_no_address(std::string_view ip) { return ip == "0" || ip == "0.0.0.0"; }

} // namespace

std::optional<AddressRequest> address_request(const std::string& params, Link link) {
    ParamTable table;
    table.parse(params);
    if (table.find("conf") == nullptr) {
        // Not the text itself: there may be a password in it.
        log(Level::error, "@setnetworkconf no conf");
        return std::nullopt;
    }
    AddressRequest request;
    const std::size_t count = link == Link::wireless ? keys.size() : wired_key_count;
    for (const char* const key : std::span(keys).first(count)) {
        const char* const value = table.find(key);
        const bool first = request.object.empty();
        request.object += (first ? "{" : ",") + member(key, value != nullptr ? value : "");
        request.list += (first ? "" : ";") + std::string(value != nullptr ? value : absent_value);
        if (value != nullptr && rewrites_file(key, value)) request.keep_file = false;
    }
    request.object = (request.object + "}").substr(0, object_limit);
    if (link == Link::wired) request.list = request.list.substr(0, wired_list_limit);
    return request;
}

Addressing addressing_of(const char* list) {
    Addressing wanted;
    wanted.conf.conf = absent_value;
    if (list == nullptr) return wanted;
    const std::vector<std::string> values = split(list);
    NetConf& conf = wanted.conf;
    // In the order of the keys.
    const std::array<std::string*, keys.size()> places = {
        &conf.conf, &conf.ip, &conf.mask, &conf.gateway, &conf.dns1, &conf.dns2, &wanted.ssid};
    for (std::size_t i = 0; i < places.size() && i < values.size(); ++i) {
        if (values[i].empty()) continue;
        *places[i] = places[i] == &wanted.ssid ? values[i] : values[i].substr(0, field_limit);
    }
    wanted.dhcp = conf.conf == "0" || is_no_address(conf.ip);
    return wanted;
}

std::string object_text(const NetConf& conf) {
    return "{" + member("conf", conf.conf) + "," + member("ip", conf.ip) + "," +
           member("mask", conf.mask) + "," + member("gateway", conf.gateway) + "," +
           member("dns1", conf.dns1) + "," + member("dns2", conf.dns2) + "}";
}

void store_object(const std::string& device, const std::string& object) {
    store::store_setting(textf("networkconf-%s", device.c_str()).c_str(), object);
}

} // namespace qvtc::network
