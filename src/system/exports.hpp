#pragma once

#include <json-c/json.h>

#include "core/edge.hpp"

/// The exported names of this folder.
extern "C" {

// Host name: `out` holds at least 128 bytes. Always 0.
QVTC_EXPORT int qvgethostname(char* out);
QVTC_EXPORT int get_tc_hostname(char* out);
QVTC_EXPORT int qvsethostname(const char* name);
QVTC_EXPORT int set_tc_hostname(const char* name);

// The manager screens' password. The setters always give 0.
QVTC_EXPORT json_object* qvgetmgrpwd();
QVTC_EXPORT json_object* getmgrpwd();
QVTC_EXPORT int qvsetmgrpwd(const char* params);
QVTC_EXPORT int setmgrpwd(const char* params);

// The software update.
QVTC_EXPORT int download(const char* url);
QVTC_EXPORT void doupdate();
QVTC_EXPORT int updating();
QVTC_EXPORT int update();

// Clock and zone. qvsetdatetime always gives -1, setdatetime 1.
QVTC_EXPORT json_object* qvgetdatetime();
QVTC_EXPORT json_object* getdatetime();
QVTC_EXPORT int qvsetdatetime(const char* params);
QVTC_EXPORT int setdatetime(const char* params);

// What the terminal is.
QVTC_EXPORT json_object* qvgetsysinfo();
QVTC_EXPORT json_object* getSysInfo();
/// Always null.
QVTC_EXPORT json_object* getsysinfo2();
/// Every query starts from the defaults by itself; this touches nothing.
QVTC_EXPORT void sysinfo_init();
QVTC_EXPORT int CPUType();
QVTC_EXPORT int getmemCap();
/// -1 when the size cannot be read.
QVTC_EXPORT int gethardCap();
/// At most five characters and the NUL.
QVTC_EXPORT void get_tc_type(char* out);
/// Gives `out`, which the whole name is copied into.
QVTC_EXPORT char* getcpuInfo(char* out);
/// `out` stays as it is without such hardware. Always 0.
QVTC_EXPORT int getmac(char* out, const char* device);

// The factory reset, which ends in a restart. Always 0.
QVTC_EXPORT int qvresetsysconf();
QVTC_EXPORT int resetsysconf();

// Power and network repair. Always 0.
QVTC_EXPORT int qvreboot();
QVTC_EXPORT int qvshutdown();
QVTC_EXPORT int qvdiagnsys();
QVTC_EXPORT int diagnsys();
}
