#pragma once

#include <cstdint>

#include "core/edge.hpp"
#include "qvtcapi/qvtcapi.h"

/// The exported names of this folder that the public header leaves out. The
/// launchers take an absolute connection id and give 0 or -1.
extern "C" {

QVTC_EXPORT int launchclient(std::uint32_t id);
QVTC_EXPORT int rdpclient(std::uint32_t id);
QVTC_EXPORT int launch_spice_connection(std::uint32_t id);
QVTC_EXPORT int vmwareclient(std::uint32_t id);
QVTC_EXPORT int launch_vnc_connection(std::uint32_t id);
QVTC_EXPORT int launch_firefox_connection(std::uint32_t id);
QVTC_EXPORT int cancelconnect();

/// Thread bodies. The watches take a window pattern and end their thread; the
/// runner takes a shell command and gives 0, -1 or -2 as a pointer.
[[noreturn]] QVTC_EXPORT void* connectstatus_thread(void* pattern);
[[noreturn]] QVTC_EXPORT void* freerdp_thread(void* pattern);
QVTC_EXPORT void* launchclient_thread(void* command);

/// Adds the text under "status". Always 0.
QVTC_EXPORT int addstatusitem(json_object* object, const char* text);
QVTC_EXPORT json_object* getclientstatus(std::uint32_t id);
/// Writes the whole text, however long, and gives `out` back.
QVTC_EXPORT char* xfreerdp_status(char* out);
}
