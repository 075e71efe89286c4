#include "display/modes.hpp"

#include <algorithm>
#include <cstdlib>

#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"
#include "display/configuration_writer.hpp"
#include "display/pairs.hpp"
#include "display/resolutions.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

namespace {

constexpr std::size_t product_limit = 128;
constexpr std::size_t outputs_limit = 1024;
constexpr int most_screens = 2;

void mark_clone() {
    os().run("touch /etc/X11/clone");
    os().run("rm -rf /etc/xdg/openbox/rc.xml");
    os().run("cp /etc/xdg/openbox/rc.xml.clone /etc/xdg/openbox/rc.xml");
    os().run("rm -rf /home/root/hdmi");
}

void mark_extend(bool vertically) {
    os().run("rm -rf /etc/X11/clone");
    os().run("rm -rf /etc/xdg/openbox/rc.xml");
    os().run("cp /etc/xdg/openbox/rc.xml.extend /etc/xdg/openbox/rc.xml");
    os().run(vertically ? "touch /home/root/hdmi" : "rm -rf /home/root/hdmi");
}

/// The index in the stored text of the applied resolution; automatic if it
/// begins with none. An index may stand in single quotes' company.
std::string applied_index() {
    const std::string stored = store::setting(store::keys::applied_resolution);
    if (stored.empty() || stored[0] < '0' || stored[0] > '9')
        return std::to_string(resolution_number::automatic);
    return stored.substr(0, stored.size() > 1 && stored[1] == '\'' ? 1 : 2);
}

bool prints(const char* command, std::string_view text) {
    return contains(os().capture(command, outputs_limit), text);
}

} // namespace

int set_mode(const std::string& params) {
    const auto mode = value_or_empty_of(params, "displayMode");
    if (!mode) return 1;
    if (*mode == "clone") {
        mark_clone();
    } else {
        mark_extend(contains(*mode, "extendverticalscreen"));
    }
    write_configuration(applied_index());
    return 1;
}

void set_mode_of_real_machine(const std::string& params) {
    if (contains(os().capture("dmidecode -s system-product-name", product_limit), "Virtual"))
        return;
    set_mode(params);
}

Json mode() {
    if (os().exists(paths::screens_cloned)) return json_pair("displayMode", "clone");
    if (os().exists(paths::split_hdmi)) return json_pair("displayMode", "extendverticalscreen");
    return json_pair("displayMode", "extend");
}

Json vertical_split() {
    if (os().exists(paths::split_hdmi)) return json_pair("splitVerticallyMode", "hdmi");
    if (os().exists(paths::split_vga)) return json_pair("splitVerticallyMode", "vga");
    return json_pair("splitVerticallyMode", "");
}

void set_order(const std::string& params) {
    const auto order = value_or_empty_of(params, "displayOrder");
    if (order)
        os().run(contains(*order, "Reverse") ? "touch /etc/X11/reverse" : "rm -f /etc/X11/reverse");
    run_display_script();
}

Json order() {
    return json_pair("displayOrder", os().exists(paths::screens_reversed) ? "Reverse" : "Positive");
}

bool has_vga_and_hdmi() {
    return prints("xrandr |grep VGA", "VGA") && prints("xrandr |grep HDMI", "HDMI");
}

bool has_display_interfaces() {
    // Deliberate: the pattern is not the name that is looked for.
    return prints("xrandr |grep VGA", "VGA") && prints("xrandr |grep HMDI", "HDMI");
}

int connected_screens() {
    const std::string count =
        os().capture("xrandr |grep -v disconnected|grep connected|wc -l", outputs_limit);
    return std::min(std::atoi(count.c_str()), most_screens);
}

} // namespace qvtc::display
