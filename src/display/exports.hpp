#pragma once

#include <json-c/json.h>

#include "core/edge.hpp"

/// The exported names of this folder. The names without "qv" are the older form
/// of the same functions. The public header describes those that front-ends use.
extern "C" {

// Resolutions.
QVTC_EXPORT json_object* qvgetdisplist();
QVTC_EXPORT json_object* getdisplist();
/// 1 to 10 for exactly "1" to "10", else 0.
QVTC_EXPORT unsigned GetDispIndex(const char* index);
/// Writes WIDTHxHEIGHT, or nothing, into 256 bytes. -1 when it could not ask.
QVTC_EXPORT int getcurrentdisp(char* out);

// The configuration of the X server.
/// The wait status of the display script.
QVTC_EXPORT int savedispconf(const char* index);
/// Always 0.
QVTC_EXPORT int savedispconf_bak(const char* index);

// Change, keep, revert.
/// As qvsetdispconf(), on every machine and without a restart.
QVTC_EXPORT int setdispconf(const char* params);
QVTC_EXPORT json_object* qvgetdispconf();
QVTC_EXPORT json_object* getdispconf();
QVTC_EXPORT int qvisdispchanged();
QVTC_EXPORT int isdispchanged();
QVTC_EXPORT int qvapplydispconf();
QVTC_EXPORT int applydispconf();
QVTC_EXPORT int qvrestoredispconf();
QVTC_EXPORT int restoredispconf();

// Modes, order and outputs.
QVTC_EXPORT json_object* qvdisplaymode();
QVTC_EXPORT int qvsetdisplaymode(const char* params);
/// As qvsetdisplaymode(), on every machine. Always 1.
QVTC_EXPORT int setdisplaymode(const char* params);
QVTC_EXPORT json_object* qvgetdisplayorder();
QVTC_EXPORT int qvsetdisplayorder(const char* params);
QVTC_EXPORT int setdisplayorder(const char* params);
QVTC_EXPORT int qvissupportextendscreen();
/// 0 or -1; always -1 on a machine as it should be.
QVTC_EXPORT int check_display_device_interface();
QVTC_EXPORT json_object* qvsplitverticallymode();
QVTC_EXPORT int qvgetmonitornum();

// Brightness and refresh.
QVTC_EXPORT json_object* qvgetmonitor();
QVTC_EXPORT int qvsetmonitor(const char* params);
QVTC_EXPORT json_object* qvdisplayrefresh();
QVTC_EXPORT int qvsetdisplayrefresh(const char* text);

// Idle and power saving.
/// Puts the stored power saving into force. Always 0.
QVTC_EXPORT int display_init();
QVTC_EXPORT json_object* qvgetidle();
QVTC_EXPORT json_object* getidle();
QVTC_EXPORT int qvsetidle(const char* params);
QVTC_EXPORT int setidle(const char* params);

// User portal and demo mode.
QVTC_EXPORT json_object* qvgetuserportal();
QVTC_EXPORT json_object* getuserportal();
QVTC_EXPORT int qvsetuserportal(const char* params);
QVTC_EXPORT int setuserportal(const char* params);
QVTC_EXPORT int qvdemomode();
QVTC_EXPORT int demomode();
QVTC_EXPORT int qvsetdemomode(int on);
QVTC_EXPORT int setdemomode(int on);
}
