#include "api/start.hpp"

#include "audio/start.hpp"
#include "core/log.hpp"
#include "core/log_rotation.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/process.hpp"
#include "core/text.hpp"
#include "display/brightness.hpp"
#include "display/power_saving.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::api {

namespace {

constexpr std::size_t setting_limit = 1023;
constexpr std::size_t shortest_remote_view = 16;
constexpr const char* remote_view_server = "x11vnc";

constexpr const char* picture_commands[] = {
    "rm -rf /usr/local/vpclient/bin/image/background-*.png",
    "rm -rf /usr/local/vpclient/bin/image/connection-list-titlebar-*.png",
    "cp -f /var/lib/ralo/image/base/background-*.png /usr/local/vpclient/bin/image/",
    "cp -f /var/lib/ralo/image/base/connection-list-titlebar-*.png /usr/local/vpclient/bin/image/",
};

void apply_brightness() {
    const std::string percent = cut(store::setting(store::keys::brightness), setting_limit);
    if (!percent.empty()) display::set_brightness(textf("brightness=%s", percent.c_str()));
}

void serve_remote_view() {
    const auto command =
        remote_view_command(cut(store::setting(store::keys::remote_view), setting_limit));
    if (command && !process_runs(remote_view_server)) os().run(*command);
}

void refresh_pictures() {
    for (const char* const command : picture_commands) os().run(command);
}

} // namespace

std::optional<std::string> remote_view_command(std::string_view setting) {
    if (setting.size() < shortest_remote_view || !contains(setting, "'vnc':'on'"))
        return std::nullopt;
    if (contains(setting, "'password':''"))
        return "x11vnc -display :0 -forever -bg -rfbport 5900 >/dev/null 2>&1 &";
    return "x11vnc -display :0 -forever -bg -rfbport 5900 -rfbauth /etc/x11vnc.pass "
           ">/dev/null 2>&1 &";
}

void start() {
    if (os().exists(paths::hdmi_audio)) audio::start();
    rotate_logs();
    display::start();
    apply_brightness();
    serve_remote_view();
    refresh_pictures();
    log(Level::info, "%s", "init api");
}

} // namespace qvtc::api
