#pragma once

#include "qvtcctl/base/console.hpp"
#include "qvtcctl/clients/client_log.hpp"
#include "qvtcctl/clients/launcher.hpp"
#include "qvtcctl/clients/logon.hpp"
#include "qvtcctl/clients/outcome.hpp"

#include <chrono>
#include <functional>

namespace qvtc::qvtcctl {

/// What came of a launch that was waited for.
struct LaunchOutcome {
    State state = State::starting;
    bool timed_out = false;
    Sight window = Sight::unknown; ///< at the last look
    std::chrono::milliseconds took{0};
    Explanation explanation; ///< of a failure
};

/// Starts the client and looks every half second what has come of it, until it is connected, has
/// failed, or the time is over.
LaunchOutcome launch_and_follow(const Launcher& launcher, const ConnectionType& type,
                                const Record& record, std::chrono::seconds timeout,
                                Progress& progress);

/// The running clients that serve the connection.
std::vector<Process> clients_of(const ConnectionType& type, const Record& record);

/// How a connection stands at this moment.
struct Standing {
    State state = State::not_running;
    bool other_runs = false;                  ///< a client of this kind runs for another connection
    Sight window = Sight::unknown;            ///< looked for only while the client runs
    Logon logon = Logon::unknown;             ///< asked for only when it is shown
    std::optional<std::string> storage_fault; ///< looked for only while no client runs
    /// Of its last launch; empty when another one of its kind was later, unless a browser's report
    /// tells of its page.
    Explanation last_words;
};
Standing standing_of(const Launcher& launcher, const ConnectionType& type, const Record& record);

/// Tells every change of a connection's standing, the first included, until its client has ended,
/// its failure is known, or nobody takes the output; returns that last one.
Standing follow_standing(const Launcher& launcher, const ConnectionType& type, const Record& record,
                         const std::function<void(const Standing&)>& tell);

} // namespace qvtc::qvtcctl
