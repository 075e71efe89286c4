#include "api/exports.hpp"

#include "api/resolution_change.hpp"
#include "api/start.hpp"
#include "core/os.hpp"

using namespace qvtc;

extern "C" {

int qvtcinitapi() {
    guard_void(api::start);
    return 0;
}

int qvsetdispconf(const char* params) {
    return guard(-1, [&] { return api::change_resolution(params); });
}

int qvsetcitrixtoolbar(int /*on*/) { return 0; }

json_object* qvgetcitrixtoolbar() { return nullptr; }

int qvsetcitrixprinter(int /*on*/) { return 0; }

json_object* qvgetcitrixprinter() { return nullptr; }

int qvcentos_printer() {
    return guard(-1, [] { return os().run("DISPLAY=:0.0 system-config-printer"); });
}
}
