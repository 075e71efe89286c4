#include "clients/spice.hpp"

#include "clients/session.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

namespace {

using connections::Field;

constexpr Session session = {paths::spice_log, "spice connection", "remote-view"};

struct Effect {
    Field field; ///< turned off by the exact value "off"
    const char* name;
};
// Deliberate: animation goes by font smoothing, not by widgetAnimate.
constexpr Effect effects[] = {{Field::desktopBackground, "wallpaper"},
                              {Field::fontSmooth, "font-smooth"},
                              {Field::fontSmooth, "animation"}};

std::string disabled_effects(const connections::Record& record) {
    // Deliberate: no record stores the "disableall" that would turn all of them
    // off at once (the field is "disableAll"), so it never does.
    std::string list;
    for (const Effect& effect : effects) {
        if (record[effect.field] != "off") continue;
        list += list.empty() ? " --spice-disable-effects=\"" : ",";
        list += effect.name;
    }
    return list.empty() ? "" : list + "\"";
}

std::string usb_redirection(const connections::Record& record, bool usb_denied) {
    if (!is_on(record[Field::useRedirect]) || usb_denied) return " --spice-disable-usbredir";
    constexpr const char* filter = "0x03,0x1bc0,0x1001,-1,1|0x03,-1,-1,-1,0|-1,-1,-1,-1,1";
    return textf(
        " --spice-usbredir-auto-redirect-filter=\"%s\" --spice-usbredir-redirect-on-connect=\"%s\"",
        filter, filter);
}

} // namespace

std::string spice_command_line(const connections::Record& record, bool usb_denied) {
    std::string line =
        "remote-viewer -f" + disabled_effects(record) + usb_redirection(record, usb_denied);
    const std::string& address = record[Field::serverAddress];
    const std::string& port = record[Field::port];
    if (!address.empty()) line += " spice://" + shell::bare(address);
    if (!port.empty()) line += ":" + shell::bare(port);
    return line;
}

bool launch_spice(connections::ConnectionId id) {
    begin_session(paths::spice_log);
    const connections::Record record =
        connections::stored_record(connections::type_number::spice, id);
    return start_session(session, spice_command_line(record, os().exists(paths::usb_denied)),
                         {"rm -rf /root/.config/spice/known_hosts", "killall spicec",
                          "killall spicy", "killall remote-view"});
}

} // namespace qvtc::clients
