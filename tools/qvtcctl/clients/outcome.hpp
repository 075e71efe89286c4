#pragma once

#include "qvtcctl/clients/client_words.hpp"
#include "qvtcctl/verb/windows.hpp"

#include <chrono>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// How a launched connection stands.
enum class State {
    starting,    ///< no sign of the client yet
    waiting,     ///< the client runs, its window is not there
    ended,       ///< the client was there and has gone; it is not sure yet that it failed
    connecting,  ///< the client says that its connection is not there yet
    asking,      ///< the client asks for a password on the screen
    window_open, ///< its window is there, but has not stayed long enough to be trusted
    connected,
    failed,
    not_running
};

/// For people, after "Connection 33 (office): "; and for programs, as in JSON.
std::string_view words_of(State state);
std::string_view name_of(State state);

/// All that can be seen of a launched client at one moment.
struct Look {
    std::chrono::milliseconds since_launch{0};
    bool client_runs = false;
    Sight window = Sight::unknown;
    bool library_tells_failure = false; ///< its answer is a reason; asked for RDP only
    Said said = Said::nothing;          ///< by the client itself, in its log
};

/// How long a window must have been there, and how long a client that still runs may contradict
/// its failure: a client that loses its session at once still shows a window for 1.8 seconds.
inline constexpr std::chrono::milliseconds trusted_after{2000};

/// Judges a launch from one look after the other.
///
/// A client that talks is judged by what it says: a viewer's window may be there from the start, or
/// have a title by which nobody knows it. A silent one is judged by its window, which must stay,
/// since the library's diagnosis of RDP says "connected" at every sixth question while the client
/// runs. What the library's watcher writes into the client-status file is not looked at: it gives
/// up after ten seconds, however slow the server is, and another launch's watcher writes there too.
/// So the only failures are a client that has gone and one whose words name the failure.
class LaunchJudge {
  public:
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

    State state_without_outcome(const Look& look);

    bool has_run_ = false;
    Lasting window_there_;
    Lasting connection_told_;
    Lasting failure_told_;
    Lasting client_gone_;
};

/// What one single look tells about a connection, with no launch to compare it with.
State state_of(const Look& look);

} // namespace qvtc::qvtcctl
