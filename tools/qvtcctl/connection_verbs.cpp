#include "qvtcctl/connection_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 9> table{{
    {"list", "List the stored connections",
     "Lists the stored connections, all of them or those of one type.",
     "qvtcctl connection list\n"
     "qvtcctl connection list rdp --json",
     define_list},
    {"show", "Show one connection",
     "Shows the fields of one connection that are set, with their meaning.",
     "qvtcctl connection show 32\n"
     "qvtcctl connection show 32 --all --show-passwords",
     define_show},
    {"add", "Add a connection",
     "Adds a connection under the lowest free number of its type. It needs at least a "
     "serverAddress. An RDP connection gets colorDepth=32 when no other is given. Passwords "
     "are asked for or read from standard input, first the user's, then the gateway's.",
     "qvtcctl connection add rdp name=office serverAddress=10.0.0.5 username=anna --password\n"
     "qvtcctl connection add vnc name=lab serverAddress=10.0.0.7::5901\n"
     "qvtcctl connection add web name=intranet serverAddress=http://intranet/",
     define_add},
    {"set", "Change fields of a connection",
     "Changes the fields that are named and leaves all others unchanged. An empty value "
     "clears a field.",
     "qvtcctl connection set 32 username=berta --password\n"
     "qvtcctl connection set 32 domain= redirectAudio=on",
     define_set},
    {"remove", "Remove connections",
     "Removes the connections with these numbers. When one of them does not exist, none is "
     "removed.",
     "qvtcctl connection remove 32\n"
     "qvtcctl connection remove 32 224 288",
     define_remove},
    {"import", "Store connections from a file",
     "Stores the connections of a file that \"export\" has written, or of standard input for "
     "\"-\" or no file. At most 4 MB are read. Everything is checked first: when one value is "
     "refused, nothing is stored. A connection keeps its number when that is free, and gets a new "
     "one when it is taken; with --replace it replaces the connection that has the number, and a "
     "file without passwords leaves that one's passwords as they are. A connection that is stored "
     "already with the same values is left alone. When the settings document cannot be read, it "
     "is kept under another name, and a new one is begun.",
     "qvtcctl connection import connections.json\n"
     "ssh term1 qvtcctl connection export | qvtcctl connection import --replace",
     define_import, Settings::not_needed},
    {"export", "Write connections as JSON",
     "Writes the stored connections, all of them or those of one type, as JSON for \"import\". "
     "Passwords are left out unless --show-passwords is given; they are then written in the form "
     "in which they are stored, which is an encoding and not encryption.",
     "qvtcctl connection export > connections.json\n"
     "qvtcctl connection export rdp --show-passwords > backup.json",
     define_export},
    {"fields", "List the fields of a connection",
     "Lists the fields that a connection has, their values, and which clients get them. Every "
     "connection has all fields; a client ignores those that are not for it.",
     "qvtcctl connection fields\n"
     "qvtcctl connection fields spice",
     define_fields, Settings::not_needed},
    {"types", "List the types of connections",
     "Lists the types of connections, the numbers that connections of each type have, and "
     "the clients that \"launch\" starts.",
     "qvtcctl connection types",
     define_types, Settings::not_needed},
}};
// clang-format on

} // namespace

std::span<const Verb> connection_verbs() { return table; }

} // namespace qvtc::qvtcctl
