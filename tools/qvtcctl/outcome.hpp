#pragma once

#include "qvtcctl/types.hpp"
#include "qvtcctl/windows.hpp"

#include <chrono>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// How a launched connection stands.
enum class State {
    starting,    ///< no sign of the client yet
    waiting,     ///< the client runs, its window is not there
    ended,       ///< the client was there and has gone; it is not sure yet that it failed
    connecting,  ///< its window is there, and it says that the connection is not
    window_open, ///< its window is there, but has not stayed long enough to be trusted
    connected,
    failed,
    not_running
};

/// For people, after "Connection 33 (office): "; and for programs, as in JSON.
std::string_view words_of(State state);
std::string_view name_of(State state);

/// What the library's watcher has written into the client-status file since the launch.
enum class WatcherVerdict { none, connected, failed };

/// The verdict in the file's text.
WatcherVerdict verdict_in(std::string_view file_text);

/// All that can be seen of a launched client at one moment.
struct Look {
    std::chrono::milliseconds since_launch{0};
    std::string status; ///< the library's answer: "0", "1" or a base64 reason
    bool client_runs = false;
    Sight window = Sight::unknown;
    WatcherVerdict verdict = WatcherVerdict::none;
    bool log_names_failure = false; ///< as names_failure() has it
    bool client_talks = false;      ///< it tells in its log how its connection stands
};

/// How long a window must have been there, and how long a client that still runs may contradict
/// its failure: a client that loses its session at once still shows a window for 1.8 seconds.
inline constexpr std::chrono::milliseconds trusted_after{2000};

/// Judges a launch from one look after the other.
///
/// The library's diagnosis of RDP says "connected" at every sixth question while the client runs,
/// so that word is not believed: what counts is the client's window. For the other clients the
/// watcher's verdict counts, unless the client's log names a failure, or says (as SPICE's viewer
/// does, whose window is there from the start) that the connection is not there yet.
class LaunchJudge {
  public:
    explicit LaunchJudge(const ConnectionType& type) : type_(type) {}

    State judge(const Look& look);

  private:
    using Time = std::chrono::milliseconds;

    /// For how long something has held without a break, this look included.
    class Lasting {
      public:
        Time update(bool holds, Time now);

      private:
        bool held_ = false;
        Time since_{0};
    };

    State judge_by_window(const Look& look);
    State judge_by_verdict(const Look& look);

    State state_without_outcome(const Look& look);

    const ConnectionType& type_;
    bool has_run_ = false;
    Lasting window_there_;
    Lasting failure_told_;
    Lasting client_gone_;
    Lasting verdict_good_;
};

/// What one single look tells about a connection, with no launch to compare it with.
State state_of(const ConnectionType& type, const Look& look);

} // namespace qvtc::qvtcctl
