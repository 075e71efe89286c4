#include "api/exports.hpp"

#include "api/device_queries.hpp"
#include "api/resolution_change.hpp"
#include "api/start.hpp"
#include "api/vendor_data.hpp"
#include "core/json.hpp"
#include "core/os.hpp"

using namespace qvtc;

namespace {

/// Hands an object over to a caller in C.
template <typename Make>
json_object* handed_over(Make&& make) {
    return guard<json_object*>(nullptr, [&] { return make().release(); });
}

Json language_object() { return json_pair("language", api::language()); }

} // namespace

extern "C" {

int qvtcinitapi() {
    guard_void(api::start);
    return 0;
}

int qvsetdispconf(const char* params) {
    if (!given(params)) return -1;
    return guard(-1, [&] { return api::change_resolution(params); });
}

int qvsetcitrixtoolbar(int /*on*/) { return 0; }

json_object* qvgetcitrixtoolbar() { return nullptr; }

int qvsetcitrixprinter(int /*on*/) { return 0; }

json_object* qvgetcitrixprinter() { return nullptr; }

json_object* qvisoem() { return handed_over(api::vendor_marker); }

json_object* qvoemdata() { return handed_over(api::vendor_data); }

json_object* qvoeminfo() { return handed_over(api::vendor_info); }

json_object* qvoemfeature() { return handed_over(api::vendor_features); }

json_object* qvgetlanguage() { return handed_over(language_object); }

int qvsetlanguage(const char* params) {
    if (!given(params)) return 0;
    return guard(-1, [&] { return api::set_language(params); });
}

int qvgetbattery() { return guard(-1, api::battery_charge); }

int qvcentos_printer() {
    return guard(-1, [] { return os().run("DISPLAY=:0.0 system-config-printer"); });
}
}
