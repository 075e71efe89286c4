#include "connections/exports.hpp"

#include <algorithm>
#include <cstddef>

#include "connections/list.hpp"
#include "connections/record.hpp"
#include "core/exported_data.hpp"
#include "core/text.hpp"

using namespace qvtc;

using FieldNames = decltype(connections::field_names);
QVTC_EXPORTED_DATA(FieldNames, conn_info_param, connections::field_names)

extern "C" {

int getConnectItemName(std::uint32_t type, char* prefix) {
    const auto known = connections::known_type(type);
    if (!known || !given(prefix)) return -1;
    copy_out_whole(prefix, known->prefix);
    return 0;
}

int getfreeid(std::uint32_t type) {
    return guard(-1, [&] {
        const auto id = connections::free_id(type);
        return id ? static_cast<int>(*id) : -1;
    });
}

int qvsort(int* values, int count) {
    if (given(values) && count > 1) std::sort(values, values + count);
    return 0;
}

int getconnparams(conn_info* record, json_object* json) {
    if (!given(record, json)) return 0;
    guard_void([&] {
        const connections::Record parsed = connections::record_from_json(json);
        for (std::size_t i = 1; i < connections::field_count; ++i) {
            copy_out(record->fields[i], QVTC_FIELD_SIZE, parsed.values[i]);
        }
    });
    return 0;
}

int setconnections(std::uint32_t type, char* params) {
    if (!given(params)) return -1;
    return guard(-1, [&] { return connections::store_connection(type, params) ? 0 : -1; });
}

int qvsetconnections(unsigned type, char* params) {
    if (given(params)) guard_void([&] { connections::store_connection(type, params); });
    return 0;
}

json_object* getconnection(std::uint32_t type, std::uint32_t id) {
    return guard<json_object*>(nullptr,
                               [&] { return connections::connection(type, id).release(); });
}

json_object* getconnections(std::uint32_t type) {
    return guard<json_object*>(nullptr,
                               [&] { return connections::connections_of(type).release(); });
}

json_object* qvgetconnections(unsigned type) {
    return guard<json_object*>(nullptr,
                               [&] { return connections::connections_of(type).release(); });
}

int delconnection(std::uint32_t type, std::uint32_t slot) {
    return guard(-1, [&] { return connections::delete_connection(type, slot) ? 0 : -1; });
}

int qvdelconnection(unsigned type, unsigned slot) {
    guard_void([&] { connections::delete_connection(type, slot); });
    return 0;
}

json_object* connectdelay() {
    return guard<json_object*>(nullptr, [] { return connections::connect_delay().release(); });
}

json_object* qvconnectdelay() {
    return guard<json_object*>(nullptr, [] { return connections::connect_delay().release(); });
}

int setconnectdelay(const char* params) {
    if (given(params)) guard_void([&] { connections::store_connect_delay(params); });
    return 1;
}

int qvsetconnectdelay(const char* params) {
    if (given(params)) guard_void([&] { connections::store_connect_delay(params); });
    return 1;
}
}
