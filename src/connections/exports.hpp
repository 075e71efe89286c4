#pragma once

#include <cstdint>

#include "connections/fields.hpp"
#include "core/edge.hpp"
#include "qvtcapi/qvtcapi.h"

/// The exported names of this folder that the public header leaves out.
extern "C" {

/// A record in fixed buffers, in the order of the field table.
struct conn_info {
    char fields[qvtc::connections::field_count][QVTC_FIELD_SIZE];
};

/// The prefix of a type's item names, at most 13 bytes with its NUL. -1, and
/// the buffer untouched, for a number that is no type.
QVTC_EXPORT int getConnectItemName(std::uint32_t type, char* prefix);
/// The lowest free id of a type, or -1.
QVTC_EXPORT int getfreeid(std::uint32_t type);
/// Fills fields 1 to 50. Always 0.
QVTC_EXPORT int getconnparams(conn_info* record, json_object* json);

/// 0, or -1 when nothing was stored.
QVTC_EXPORT int setconnections(std::uint32_t type, char* params);
QVTC_EXPORT json_object* getconnection(std::uint32_t type, std::uint32_t id);
QVTC_EXPORT json_object* getconnections(std::uint32_t type);
QVTC_EXPORT int delconnection(std::uint32_t type, std::uint32_t slot);
QVTC_EXPORT json_object* connectdelay();
QVTC_EXPORT int setconnectdelay(const char* params);
}
