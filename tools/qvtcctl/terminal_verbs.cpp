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
     "Shows whether the front-end's manager screens are protected by a password, sets that password "
     "or removes it. A new one is asked for, or read from standard input; it is not an argument, as "
     "everybody on the machine can read a command line.",
     "qvtcctl manager-password\n"
     "qvtcctl manager-password --password\n"
     "qvtcctl manager-password --remove",
     define_manager_password},
    {"time", "Show or set the clock, time zone and time server",
     "Shows the time, the time zone and the time server, or changes them. What is not named stays as "
     "it is; setting the clock turns off time synchronisation. A time server is asked in the "
     "background, by the terminal's program ntpdate-sync.",
     "qvtcctl time\n"
     "qvtcctl time --zone Europe/Vienna --ntp pool.ntp.org\n"
     "qvtcctl time --set \"2026-12-31 23:59\"",
     define_time},
    {"info", "Show what this terminal is",
     "Shows the terminal's name, model, processor, memory, storage, hardware addresses, the dates of "
     "its updates, and which clients are installed. What cannot be looked up is unknown. With --json "
     "there is also \"fixed\", the texts that the library gives for every terminal, whatever is on "
     "it.",
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
    {"download", "Download an update package",
     "Downloads an update package in place of a former one. The URL must name a file called "
     "update.qvtc. Only root may be able to write to /tmp/nfs, where it is put.",
     "qvtcctl update download http://server/terminals/update.qvtc",
     define_update_download, Settings::not_needed},
    {"run", "Run the update script",
     "Runs /tmp/nfs/qvupdate.sh, the script of an update package, and waits until it has finished. "
     "It runs as root: the script and its directory must belong to root, and nobody else may be able "
     "to write to them. The script may restart the terminal, so you are asked first.",
     "qvtcctl update run\n"
     "qvtcctl update run --yes",
     define_update_run, Settings::not_needed},
    {"status", "Show whether an update is running",
     "Shows whether the update script is running, and whether a package has been downloaded.",
     "qvtcctl update status",
     define_update_status, Settings::not_needed},
});
// clang-format on

} // namespace

std::span<const Verb> terminal_verbs() { return terminal_table; }

std::span<const Verb> update_verbs() { return update_table; }

} // namespace qvtc::qvtcctl
