#include "qvtcctl/terminal_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 2> terminal_table{{
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
}};

constexpr std::array<Verb, 3> update_table{{
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
}};
// clang-format on

} // namespace

std::span<const Verb> terminal_verbs() { return terminal_table; }

std::span<const Verb> update_verbs() { return update_table; }

} // namespace qvtc::qvtcctl
