#include "clients/client_switches.hpp"

#include "core/log.hpp"
#include "core/text.hpp"
#include "store/numbered_store.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::clients {

namespace {

constexpr std::size_t camera_text_size = 1024;

const char* on_or_off(bool on) { return on ? "on" : "off"; }

} // namespace

bool show_horizon_menu_bar(bool on) {
    return store::store_setting(store::keys::horizon_menu_bar, textf("toolbar=%s", on_or_off(on)));
}

Json horizon_menu_bar() {
    const bool off = contains(store::setting(store::keys::horizon_menu_bar), "off");
    return json_pair("toolbar", on_or_off(!off));
}

int redirect_camera(bool on) {
    const std::string text = textf("hdxcamera=%s", on_or_off(on));
    log(Level::info, "%s %s", "qvsethdxcamera", text.c_str());
    return store::write_numbered(store::numbers::hdx_camera, text.c_str());
}

Json camera_redirection() {
    const std::string text = store::numbered_text(store::numbers::hdx_camera, camera_text_size);
    if (!text.empty()) log(Level::info, "%s buffer=%s", "qvgethdxcamera", text.c_str());
    // Deliberate: what redirect_camera() stores is no JSON, so it reads back as
    // null; only what another program stored as JSON is told.
    return parse_json(text);
}

} // namespace qvtc::clients
