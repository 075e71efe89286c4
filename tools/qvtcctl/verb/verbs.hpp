#pragma once

#include "qvtcctl/verb/verb.hpp"

/// The rows of all verbs, each defined beside its code. verb_table.cpp puts them into groups.
namespace qvtc::qvtcctl::verbs {

extern const Verb connection_list;
extern const Verb connection_show;
extern const Verb connection_add;
extern const Verb connection_set;
extern const Verb connection_remove;
extern const Verb connection_import;
extern const Verb connection_export;
extern const Verb connection_fields;
extern const Verb connection_types;

extern const Verb launch;
extern const Verb status;
extern const Verb cancel;
extern const Verb doctor;
extern const Verb delay;

extern const Verb display_show;
extern const Verb display_list;
extern const Verb display_set;
extern const Verb display_keep;
extern const Verb display_revert;
extern const Verb display_mode;
extern const Verb display_order;
extern const Verb display_brightness;
extern const Verb display_screens;
extern const Verb display_refresh;

extern const Verb network_show;
extern const Verb network_set;
extern const Verb network_wifi;
extern const Verb network_scan;
extern const Verb network_join;
extern const Verb network_wireless;
extern const Verb network_route;

extern const Verb volume;
extern const Verb sound_show;
extern const Verb sound_configure;

extern const Verb power_idle;
extern const Verb power_reboot;
extern const Verb power_shutdown;
extern const Verb power_network_repair;

extern const Verb host_name;
extern const Verb manager_password;
extern const Verb time;
extern const Verb info;
extern const Verb factory_reset;

extern const Verb init;
extern const Verb language;
extern const Verb battery;
extern const Verb oem;
extern const Verb log;
extern const Verb portal;
extern const Verb demo_mode;

extern const Verb update_download;
extern const Verb update_run;
extern const Verb update_status;

} // namespace qvtc::qvtcctl::verbs
