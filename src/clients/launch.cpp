#include "clients/launch.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "clients/horizon.hpp"
#include "clients/rdp.hpp"
#include "clients/spice.hpp"
#include "clients/vnc.hpp"
#include "clients/web.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/pipe_stream.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

namespace {

struct Launcher {
    std::uint32_t type;
    bool (*launch)(connections::ConnectionId);
};

constexpr Launcher launchers[] = {
    {connections::type_number::rdp, launch_rdp},
    {connections::type_number::spice, launch_spice},
    {connections::type_number::horizon, launch_horizon},
    {connections::type_number::vnc, launch_vnc},
    {connections::type_number::web, launch_web},
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

bool launch(connections::ConnectionId id) {
    log(Level::info, "@%s id = %d", "launchclient", static_cast<int>(id));
    for (const Launcher& launcher : launchers) {
        if (launcher.type != id / connections::ids_per_type) continue;
        launcher.launch(id); // its own log line tells what went wrong
        return true;
    }
    log(Level::error, "without the id, id error");
    return false;
}

int run_rdp_client(const char* arguments) { return os().run(textf("xfreerdp %s", arguments)); }

bool cancel_rdp_clients() {
    // Deliberate: the bracket keeps the search's own grep out of the list.
    const auto processes = os().lines("ps -au |grep '[^--color=auto]xfreerdp' |awk '{print$2}'");
    if (!processes) {
        log(Level::error, "@cancelconnect popen error:%s", std::strerror(errno));
        return false;
    }
    for (const std::string& process : *processes) {
        log(Level::info, "pid:%s", process.c_str());
        os().run(textf("kill %s", shell::bare(process).c_str()));
    }
    log(Level::info, "end cancelconnect");
    return true;
}

CommandRun run_with_status_file(const char* command) {
    const std::unique_ptr<std::FILE, CloseFile> status(std::fopen(paths::client_status, "wbe"));
    if (status == nullptr) {
        log(Level::error, "%s", "@launchclient fopen error");
        return CommandRun::no_status_file;
    }
    PipeStream client(command);
    if (!client.is_open()) {
        log(Level::error, "%s", "xfreerdp popen error:");
        return CommandRun::not_started;
    }
    log(Level::info, "%s", "@launchclient_thread freerdp exit...");
    client.close();
    return CommandRun::ended;
}

} // namespace qvtc::clients
