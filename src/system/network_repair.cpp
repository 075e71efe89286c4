#include "system/network_repair.hpp"

#include <string>

#include "core/line_file.hpp"
#include "core/os.hpp"

namespace qvtc::system {

void repair_network() {
    // Deliberate: the group is "0" here, and programs may change the file; joining
    // a network writes it otherwise.
    const std::string supplicant[] = {
        "# allow frontend (e.g., wpa_cli) to be used by all users in 'wheel' group",
        "ctrl_interface=/var/run/wpa_supplicant",
        "ctrl_interface_group=0",
        "update_config=1",
        "",
    };
    write_lines("/etc/wpa_supplicant.conf", supplicant);
    os().run("killall dhclient");
    os().run("echo \"\" > /etc/sysconfig/network");
    os().run("dhclient");
    os().run("/etc/init.d/networking restart &");
}

} // namespace qvtc::system
