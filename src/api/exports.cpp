#include "api/exports.hpp"

#include "core/os.hpp"

using namespace qvtc;

extern "C" {

int qvsetcitrixtoolbar(int /*on*/) { return 0; }

json_object* qvgetcitrixtoolbar() { return nullptr; }

int qvsetcitrixprinter(int /*on*/) { return 0; }

json_object* qvgetcitrixprinter() { return nullptr; }

int qvcentos_printer() {
    return guard(-1, [] { return os().run("DISPLAY=:0.0 system-config-printer"); });
}
}
