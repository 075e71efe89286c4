#pragma once

#include <json-c/json.h>

#include "core/edge.hpp"

/// The exported names of this folder: what needs several folders, and what
/// reads small facts for a front-end.
extern "C" {

/// The start of the front-end. Always 0.
QVTC_EXPORT int qvtcinitapi();

/// Changes the resolution and restarts the terminal.
QVTC_EXPORT int qvsetdispconf(const char* params);

// Entry points that once served a client which terminals no longer ship; they
// touch nothing.
QVTC_EXPORT int qvsetcitrixtoolbar(int on);
QVTC_EXPORT json_object* qvgetcitrixtoolbar();
QVTC_EXPORT int qvsetcitrixprinter(int on);
QVTC_EXPORT json_object* qvgetcitrixprinter();

// Getters whose objects the caller releases with json_object_put(); null when
// nothing is stored, or no JSON.
QVTC_EXPORT json_object* qvisoem();
QVTC_EXPORT json_object* qvoemdata();
QVTC_EXPORT json_object* qvoeminfo();
QVTC_EXPORT json_object* qvoemfeature();

/// {"language": text}, never null.
QVTC_EXPORT json_object* qvgetlanguage();
/// -1 when the start screen's picture is locked; the language is stored also then.
QVTC_EXPORT int qvsetlanguage(const char* params);
/// In percent; -1 without a battery.
QVTC_EXPORT int qvgetbattery();

/// Runs the printer dialog and waits; the status of system().
QVTC_EXPORT int qvcentos_printer();
}
