#include "qvtcctl/client_verbs.hpp"

#include <array>

namespace qvtc::qvtcctl {

namespace {

// clang-format off
constexpr std::array<Verb, 5> table{{
    {"launch", "Start a connection's client",
     "Starts the client of a stored connection. A running RDP, Horizon or VNC client is ended "
     "first. SPICE and web clients go on running, with a note, unless --end-others is given: two "
     "SPICE windows lie one over the other, and a browser shows the new page in another tab. With "
     "--wait it shows the progress until the client is connected, has failed, or the time is over. "
     "\"Connected\" means that the client says so in its log or, where it says nothing, that its "
     "window is there and stays. A slow client has not failed: it has failed when it is gone or "
     "when its log names the failure.",
     "qvtcctl launch 32\n"
     "qvtcctl launch 32 --wait\n"
     "qvtcctl launch 32 --wait --timeout 60 --json\n"
     "qvtcctl launch 64 --end-others",
     define_launch},
    {"status", "Show how a connection stands",
     "Shows whether a connection's client runs and whether it is connected. What is said of a "
     "failure comes from the last launch of this connection. With --follow it shows every change, "
     "until the client has ended or failed.",
     "qvtcctl status 32\n"
     "qvtcctl status 32 --follow",
     define_status},
    {"cancel", "End running clients",
     "Ends the client of one connection, or all running clients: RDP, SPICE, Horizon, VNC and "
     "web. A browser is ended as a whole, with all its pages.",
     "qvtcctl cancel\n"
     "qvtcctl cancel 64",
     define_cancel, Settings::not_needed},
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
