#include "clients/watcher.hpp"

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

namespace {

constexpr int polls = 10;
constexpr std::size_t window_tree_limit = 10240;
constexpr std::size_t shortest_window_line = 6;

void clear_status() { os().run(textf("echo \"\" > %s", paths::client_status)); }

bool window_shows(const std::string& pattern) {
    const std::string command =
        textf("DISPLAY=:0.0 xwininfo -root -tree |grep %s", shell::bare(pattern).c_str());
    return os().capture(command, window_tree_limit).size() >= shortest_window_line;
}

bool window_appears(const std::string& pattern) {
    for (int missed = 0;;) {
        if (window_shows(pattern)) return true;
        if (++missed == polls) return false;
        os().sleep(1);
    }
}

} // namespace

void watch_for_outcome(const std::string& pattern) {
    clear_status();
    const char* const outcome =
        window_appears(pattern) ? "0x00000000 connect success" : "0x00000001 connect failed";
    const std::string command = textf("echo \"%s\" > %s", outcome, paths::client_status);
    os().run(command);
    log(Level::info, "%s:%s", "connectstatus_thread", command.c_str());
}

void watch_rdp_window(const std::string& pattern) {
    clear_status();
    for (int seen = 0, missed = 0;;) {
        if (window_shows(pattern)) {
            if (++seen == polls) {
                os().run("/usr/bin/resetusb.sh");
                return;
            }
        } else if (++missed == polls) {
            return;
        }
        os().sleep(1);
    }
}

bool start_watch(Watch watch, const char* pattern) {
    const bool started =
        os().start_thread([watch, pattern = std::string(pattern)] { watch(pattern); });
    if (!started) log(Level::error, "@launchclient thread create fail");
    return started;
}

} // namespace qvtc::clients
