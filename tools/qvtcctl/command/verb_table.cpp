#include "qvtcctl/verb/verbs.hpp"

namespace qvtc::qvtcctl {

std::span<const Group> groups() {
    using namespace verbs;
    static const std::vector<Group> table{
        {"connection",
         "The stored connections",
         {&connection_list, &connection_show, &connection_add, &connection_set, &connection_remove,
          &connection_import, &connection_export, &connection_fields, &connection_types}},
        {"", "", {&launch, &status, &cancel, &doctor, &delay}},
        {"display",
         "The screens",
         {&display_show, &display_list, &display_set, &display_keep, &display_revert, &display_mode,
          &display_order, &display_brightness, &display_screens, &display_refresh}},
        {"network",
         "The wired and wireless network",
         {&network_show, &network_set, &network_wifi, &network_scan, &network_join,
          &network_wireless, &network_route}},
        {"", "", {&volume}},
        {"sound", "The sound cards", {&sound_show, &sound_configure}},
        {"power",
         "Power saving, restarting, switching off, repair",
         {&power_idle, &power_reboot, &power_shutdown, &power_network_repair}},
        {"",
         "",
         {&host_name, &manager_password, &verbs::time, &info, &factory_reset, &init, &language,
          &battery, &oem, &verbs::log, &portal, &demo_mode}},
        {"update", "The software update", {&update_download, &update_run, &update_status}},
    };
    return table;
}

} // namespace qvtc::qvtcctl
