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

// Deliberate: records store "disableAll", which is never asked for. Only one that
// something else has written can hold this key.
constexpr const char* all_effects_off_key = "disableall";

std::string disabled_effects(const SpiceFacts& facts) {
    if (facts.all_effects_off) return " --spice-disable-effects=\"all\"";
    std::string list;
    for (const Effect& effect : effects) {
        if (facts.record[effect.field] != "off") continue;
        list += list.empty() ? " --spice-disable-effects=\"" : ",";
        list += effect.name;
    }
    return list.empty() ? "" : list + "\"";
}

std::string usb_redirection(const SpiceFacts& facts) {
    if (!is_on(facts.record[Field::useRedirect]) || facts.usb_denied)
        return " --spice-disable-usbredir";
    constexpr const char* filter = "0x03,0x1bc0,0x1001,-1,1|0x03,-1,-1,-1,0|-1,-1,-1,-1,1";
    return textf(
        " --spice-usbredir-auto-redirect-filter=\"%s\" --spice-usbredir-redirect-on-connect=\"%s\"",
        filter, filter);
}

} // namespace

std::string spice_command_line(const SpiceFacts& facts) {
    std::string line = "remote-viewer -f" + disabled_effects(facts) + usb_redirection(facts);
    const std::string& address = facts.record[Field::serverAddress];
    const std::string& port = facts.record[Field::port];
    if (!address.empty()) line += " spice://" + shell::bare(address, shell::At::inside_word);
    if (!port.empty()) line += ":" + shell::bare(port, shell::At::inside_word);
    return line;
}

bool launch_spice(connections::ConnectionId id) {
    begin_session(paths::spice_log);
    const store::Document document = store::Document::load();
    const std::string item =
        connections::item_name(connections::prefix_of(connections::type_number::spice), id);
    SpiceFacts facts;
    facts.record = connections::read_record(document, item, connections::field_limit);
    facts.all_effects_off = is_on(document.get(item, all_effects_off_key).value_or(""));
    facts.usb_denied = os().exists(paths::usb_denied);
    return start_session(session, spice_command_line(facts),
                         {"rm -rf /root/.config/spice/known_hosts", "killall spicec",
                          "killall spicy", "killall remote-view"});
}

} // namespace qvtc::clients
