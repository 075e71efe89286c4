#include "clients/exports.hpp"

#include <pthread.h>
#include <string>

#include "clients/client_switches.hpp"
#include "clients/diagnosis.hpp"
#include "clients/horizon.hpp"
#include "clients/launch.hpp"
#include "clients/rdp.hpp"
#include "clients/spice.hpp"
#include "clients/vnc.hpp"
#include "clients/watcher.hpp"
#include "clients/web.hpp"
#include "core/text.hpp"

using namespace qvtc;

namespace {

template <typename Launch>
int started(Launch launch, std::uint32_t id) {
    return guard(-1, [&] {
        // The client need not wait for the setting that notes its start.
        const LockWait at_most(std::chrono::seconds(1));
        return launch(id) ? 0 : -1;
    });
}

[[noreturn]] void run_watch(clients::Watch watch, void* pattern) {
    if (given(pattern)) guard_void([&] { watch(static_cast<const char*>(pattern)); });
    pthread_exit(nullptr);
}

} // namespace

extern "C" {

int qvlaunchclient(unsigned id) { return started(clients::launch, id); }

int launchclient(std::uint32_t id) { return started(clients::launch, id); }

int rdpclient(std::uint32_t id) { return started(clients::launch_rdp, id); }

int launch_spice_connection(std::uint32_t id) { return started(clients::launch_spice, id); }

int vmwareclient(std::uint32_t id) { return started(clients::launch_horizon, id); }

int launch_vnc_connection(std::uint32_t id) { return started(clients::launch_vnc, id); }

int launch_firefox_connection(std::uint32_t id) { return started(clients::launch_web, id); }

int qvvelopanelaunchclient(const char* arguments) {
    if (!given(arguments)) return -1;
    return guard(-1, [&] { return clients::run_rdp_client(arguments); });
}

int qvcancelconnect() {
    return guard(-1, [] { return clients::cancel_rdp_clients() ? 0 : -1; });
}

int cancelconnect() {
    return guard(-1, [] { return clients::cancel_rdp_clients() ? 0 : -1; });
}

void* connectstatus_thread(void* pattern) { run_watch(clients::watch_for_outcome, pattern); }

void* freerdp_thread(void* pattern) { run_watch(clients::watch_rdp_window, pattern); }

void* launchclient_thread(void* command) {
    const long status = guard(-1L, [&] {
        if (!given(command)) return -1L;
        switch (clients::run_with_status_file(static_cast<const char*>(command))) {
        case clients::CommandRun::ended:
            return 0L;
        case clients::CommandRun::no_status_file:
            return -2L;
        case clients::CommandRun::not_started:
            break;
        }
        return -1L;
    });
    return reinterpret_cast<void*>(status); // NOLINT(performance-no-int-to-ptr): the contract
}

int addstatusitem(json_object* object, const char* text) {
    if (!given(object, text)) return 0;
    guard_void([&] { add_member(Json(json_object_get(object)), "status", json_string(text)); });
    return 0;
}

json_object* qvgetclientstatus(unsigned id) {
    return guard<json_object*>(nullptr, [&] { return clients::client_status(id).release(); });
}

json_object* getclientstatus(std::uint32_t id) {
    return guard<json_object*>(nullptr, [&] { return clients::client_status(id).release(); });
}

char* xfreerdp_status(char* out) {
    if (!given(out)) return out;
    return guard(out, [&] {
        copy_out_whole(out, clients::earlier_rdp_status());
        return out;
    });
}

// Deliberate: only the low byte decides.
int qvsetvmwaretoolbar(int on) {
    return guard(-1, [&] { return clients::show_horizon_menu_bar((on & 0xff) != 0) ? 0 : -1; });
}

json_object* qvgetvmwaretoolbar() {
    return guard<json_object*>(nullptr, [] { return clients::horizon_menu_bar().release(); });
}

int qvsethdxcamera(int on) {
    return guard(-1, [&] { return clients::redirect_camera(on != 0); });
}

json_object* qvgethdxcamera() {
    return guard<json_object*>(nullptr, [] { return clients::camera_redirection().release(); });
}
}
