#include "qvtcctl/client_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 5> table{{
    {"launch", "Start a connection's client",
     "Starts the client of a stored connection. A client of the same kind that is still running "
     "is ended first. With --wait it tells how that is getting on, until the connection is "
     "there, has failed, or the time is over. \"Connected\" means that the client's window is "
     "there and stays.",
     "qvtcctl launch 32\n"
     "qvtcctl launch 32 --wait\n"
     "qvtcctl launch 32 --wait --timeout 60 --json",
     define_launch},
    {"status", "Tell how a connection stands",
     "Tells whether a connection's client runs and what is known of its success. With --follow "
     "it tells every change, until the client has ended or failed.",
     "qvtcctl status 32\n"
     "qvtcctl status 32 --follow",
     define_status},
    {"cancel", "End the running RDP clients",
     "Ends the RDP clients that are running. Clients of other kinds are ended when the next one "
     "of their kind is launched.",
     "qvtcctl cancel",
     define_cancel},
    {"doctor", "Check a connection without starting it",
     "Looks at everything that a stored connection needs, and starts nothing: its settings and "
     "passwords, its server's name, port and certificate, its client, the screen, the sound, and "
     "the marker files that change what it does. Each finding is ok, a warning or a problem, and "
     "says what to do.",
     "qvtcctl doctor 32\n"
     "qvtcctl doctor 32 --json",
     define_doctor},
    {"delay", "Show or set the delay before an automatic connection",
     "Shows the seconds that the terminal waits before it connects by itself, or sets them.",
     "qvtcctl delay\n"
     "qvtcctl delay 10",
     define_delay},
}};
// clang-format on

} // namespace

std::span<const Verb> client_verbs() { return table; }

} // namespace qvtc::qvtcctl
