#pragma once

#include "support/support.hpp"

namespace qvtc::test {

/// What a factory reset runs.
struct ResetPrograms {
    StandIn display{"/var/lib/ralo/display.sh"};
    StandIn nmcli{"nmcli"};
    StandIn aplay{"aplay"};
    StandIn reboot{"reboot"};
    StandIn killall{"killall"};
    StandIn pulseaudio{"/usr/bin/pulseaudio"};
    StandIn pacmd{"pacmd"};
};

} // namespace qvtc::test
