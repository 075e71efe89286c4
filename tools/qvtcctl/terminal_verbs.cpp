#include "qvtcctl/terminal_verbs.hpp"

#include "qvtcctl/time_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr auto terminal_table = std::to_array<Verb>({
    {"host-name", "Show or set the terminal's host name",
     "Shows the host name, or sets it. A new name takes effect at the next start of the terminal.",
     "qvtcctl host-name\n"
     "qvtcctl host-name reception-2",
     define_host_name},
    {"manager-password", "Show, set or remove the password of the manager screens",
     "Tells whether the front-end's manager screens are guarded by a password, sets that password "
     "or removes it. A new one is asked for, or read from standard input; it is no argument, as a "
     "command line can be read by everybody on the machine.",
     "qvtcctl manager-password\n"
     "qvtcctl manager-password --password\n"
     "qvtcctl manager-password --remove",
     define_manager_password},
    {"time", "Show or set clock, time zone and time server",
     "Shows the time, the zone and the server that the clock follows, or changes them. What is not "
     "named stays as it is; a clock that is set by hand follows no server any more.",
     "qvtcctl time\n"
     "qvtcctl time --zone Europe/Vienna --ntp pool.ntp.org\n"
     "qvtcctl time --set \"2026-12-31 23:59\"",
     define_time},
    {"info", "Tell what this terminal is",
     "Tells the terminal's name, model, processor, memory, storage, hardware addresses and the "
     "versions of what it runs.",
     "qvtcctl info\n"
     "qvtcctl info --json",
     define_information},
    {"factory-reset", "Return the terminal to its factory state",
     "Shows what a factory reset does to this terminal, asks you, does it and restarts the "
     "terminal. With --plan it only shows it.",
     "qvtcctl factory-reset --plan\n"
     "qvtcctl factory-reset",
     define_factory_reset},
});

constexpr auto update_table = std::to_array<Verb>({
    {"download", "Fetch an update package",
     "Fetches an update package in place of a former one. The URL must name a file called "
     "update.qvtc.",
     "qvtcctl update download http://server/terminals/update.qvtc",
     define_update_download},
    {"run", "Run the update script",
     "Runs the script that an update package has brought, and waits until it has ended. The script "
     "may restart the terminal, so you are asked first.",
     "qvtcctl update run\n"
     "qvtcctl update run --yes",
     define_update_run},
    {"status", "Tell whether an update is running",
     "Tells whether the update script is running, and whether a package has been fetched.",
     "qvtcctl update status",
     define_update_status},
});
// clang-format on

} // namespace

std::span<const Verb> terminal_verbs() { return terminal_table; }

std::span<const Verb> update_verbs() { return update_table; }

} // namespace qvtc::qvtcctl
