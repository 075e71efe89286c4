// What nmcli, a resolv.conf and a list of addresses may hold.

#include <json-c/json.h>
#include <string>

#include "core/json.hpp"
#include "fuzzing.hpp"
#include "network/addressing.hpp"
#include "network/name_servers.hpp"
#include "network/wireless_scan.hpp"

using namespace qvtc;
using fuzz::require;

namespace {

void check_fields(std::string_view input) {
    const auto fields = network::scan_fields(input, 64);
    require(fields.size() <= 64, "at most as many as asked for");
    for (const std::string& field : fields) {
        require(!field.empty() && field.size() <= network::scan_field_limit, "a field's size");
        require(field.find_first_of(" \t\n") == std::string::npos, "no separator in a field");
    }
}

void check_list(std::string_view input) {
    const Json object = parse_json(network::network_list_json(input));
    require(object != nullptr, "a list is always whole");
    json_object* const list = json_object_object_get(object.get(), "list");
    require(json_object_object_length(object.get()) == 1, "one member");
    const std::size_t count = json_object_array_length(list);
    require(count <= 51, "at most 51");
    for (std::size_t i = 0; i < count; ++i)
        require(json_object_object_length(json_object_array_get_idx(list, i)) == 4, "four members");
}

void check_name_servers(std::string_view input) {
    const auto servers = network::name_servers_in(input);
    require((servers.first + servers.second).find_first_of("\n ") == std::string::npos,
            "an address is one word");
}

void check_addressing(const std::string& input) {
    const auto wanted = network::addressing_of(input.c_str());
    require(!wanted.conf.ip.empty() && wanted.conf.ip.size() <= network::field_limit,
            "a field's size");
    require(wanted.dhcp || wanted.conf.conf != "0", "a static address is asked for");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = fuzz::c_text_of(data, size);
    check_fields(input);
    check_list(input);
    check_name_servers(input);
    check_addressing(std::string(input));
    return 0;
}
