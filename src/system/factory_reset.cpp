#include "system/factory_reset.hpp"

#include <cstdlib>
#include <qvtcapi/factory_defaults.h>
#include <span>
#include <string>
#include <string_view>

#include "audio/sound_config.hpp"
#include "connections/types.hpp"
#include "core/draft.hpp"
#include "core/files.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"
#include "display/configuration_writer.hpp"
#include "display/modes.hpp"
#include "display/resolution_protocol.hpp"
#include "network/wired.hpp"
#include "network/wireless.hpp"
#include "store/document.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "system/host_name.hpp"
#include "system/machine.hpp"

namespace qvtc::system {

namespace {

namespace keys = store::keys;
using store::Document;

/// The table's rows from one key to another, both included.
std::span<const qvtc_factory_default> defaults(std::string_view first, std::string_view last) {
    const std::span<const qvtc_factory_default> table = qvtc_factory_defaults;
    std::size_t begin = 0;
    while (table[begin].key != first) ++begin;
    std::size_t end = begin;
    while (table[end].key != last) ++end;
    return table.subspan(begin, end - begin + 1);
}

void store_defaults(Document& document, std::string_view first, std::string_view last) {
    for (const qvtc_factory_default& each : defaults(first, last))
        document.set(keys::device_item, each.key, each.value);
}

/// Deliberate: VNC connections stay, and with them all ids from 192 to 255.
void forget_connections(Document& document) {
    for (connections::ConnectionId slot = 0; slot < connections::ids_per_type; ++slot) {
        for (const connections::Type& type : connections::types) {
            if (type.number == connections::type_number::vnc) continue;
            document.remove_item(connections::item_name(
                type.prefix, type.number * connections::ids_per_type + slot));
        }
    }
}

/// Lets `change` work on the document, and saves it whatever came of that.
template <typename Change>
void change_settings(Change change) {
    store::change_document([&](Document& document) {
        change(document);
        return true;
    });
}

void rename_after_identity() {
    const std::string identity = store::setting(keys::device_identity);
    if (identity.size() > 1) set_host_name(textf("TC%s", identity.c_str()));
}

void reset_screens() {
    display::write_configuration("10");
    // Once more: the change of the resolution may have written them otherwise.
    change_settings([](Document& document) {
        store_defaults(document, keys::applied_resolution, keys::resolution_change_waits);
    });
}

unsigned first_card_off_usb() {
    const std::string card =
        os().capture("aplay -l|grep card|grep -v USB|awk 'NR==1'|awk -F ':' {print'$1'}|"
                     "awk -F ' ' {print'$2'}",
                     256);
    return static_cast<unsigned>(std::atoi(card.c_str()));
}

void reset_sound() {
    const unsigned card = first_card_off_usb();
    if (model_code() == "RX16") {
        os().run("rm -rf /home/root/enable_hdmi_audio");
        os().run("sed -i \"/load-module module-alsa-sink device/ s/\\(load-module "
                 "module-alsa-sink device=\\).*/\\1dmixer mmap=0/\" /etc/pulse/default.pa");
    }
    audio::configure_card(card);
}

/// What writers that were killed have left: it holds passwords too.
void remove_drafts() {
    for (const char* const path :
         {paths::settings_document, paths::xorg_conf, paths::asound_conf_draft, paths::resolv_conf,
          paths::network_conf, paths::wpa_supplicant_conf, "/etc/default/ntpdate",
          paths::settings_lock})
        remove_leftovers(directory_of(resolve_links(path)));
    remove_leftovers(paths::network_scripts);
}

} // namespace

void reset_to_factory_settings() {
    log(Level::info, "@%s", "resetsysconf");
    change_settings([](Document& document) {
        forget_connections(document);
        // Deliberate: an item of that name; the setting of that name stays.
        document.remove_item(keys::date_and_time);
        store_defaults(document, keys::connect_delay, keys::resolution_change_waits);
    });
    display::set_resolution("auto");
    change_settings(
        [](Document& document) { store_defaults(document, keys::language, "networkconf-wlan0"); });
    network::forget_wireless_profiles();
    os().run("rm -rf /root/tclog.txt");
    change_settings([](Document& document) {
        store_defaults(document, keys::brightness, keys::brightness);
        document.remove_key(keys::device_item, keys::manager_password);
        store_defaults(document, keys::remote_view, keys::remote_view);
    });
    rename_after_identity();
    reset_screens();
    network::reset_wired("eth0");
    network::reset_wired("eth1");
    for (const char* const logs : {"/root/*.log", "/home/root/*.log", "/root/*.txt"})
        os().run(textf("rm -rf %s", logs));
    reset_sound();
    display::set_mode("displayMode=clone");
    remove_drafts();
    os().run("reboot > /dev/null 2>&1");
}

} // namespace qvtc::system
