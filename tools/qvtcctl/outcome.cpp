#include "qvtcctl/outcome.hpp"

#include "qvtcctl/client_log.hpp"

namespace qvtc::qvtcctl {
namespace {

using std::chrono::milliseconds;

// A client that has just been started may not be in the process list yet.
constexpr milliseconds believed_gone_after{1500};
constexpr milliseconds settled_after{500};

bool is_rdp(const ConnectionType& type) { return type.number == QVTC_TYPE_RDP; }

/// A viewer that talks, of which the library knows no outcome yet.
bool says_that_it_connects(const ConnectionType& type, const Look& look) {
    return !is_rdp(type) && look.client_talks && look.status == "0";
}

} // namespace

std::string_view words_of(State state) {
    switch (state) {
    case State::starting:
        return "starting the client";
    case State::waiting:
        return "the client runs, waiting for its window";
    case State::ended:
        return "the client has ended, looking for the reason";
    case State::connecting:
        return "its window is open, waiting for the connection";
    case State::window_open:
        return "its window is open, making sure that it stays";
    case State::connected:
        return "connected";
    case State::failed:
        return "failed";
    case State::not_running:
        return "not running";
    }
    return "";
}

std::string_view name_of(State state) {
    switch (state) {
    case State::starting:
        return "starting";
    case State::waiting:
        return "waiting";
    case State::ended:
        return "ended";
    case State::connecting:
        return "connecting";
    case State::window_open:
        return "window-open";
    case State::connected:
        return "connected";
    case State::failed:
        return "failed";
    case State::not_running:
        return "not-running";
    }
    return "";
}

WatcherVerdict verdict_in(std::string_view file_text) {
    if (file_text.starts_with("0x00000000")) return WatcherVerdict::connected;
    if (file_text.starts_with("0x00000001")) return WatcherVerdict::failed;
    return WatcherVerdict::none;
}

LaunchJudge::Time LaunchJudge::Lasting::update(bool holds, Time now) {
    if (!holds) {
        held_ = false;
        return Time{-1};
    }
    if (!held_) since_ = now;
    held_ = true;
    return now - since_;
}

State LaunchJudge::judge(const Look& look) {
    return is_rdp(type_) ? judge_by_window(look) : judge_by_verdict(look);
}

State LaunchJudge::judge_by_window(const Look& look) {
    const Time now = look.since_launch;
    const bool window_there = look.window == Sight::seen && look.client_runs;
    const Time there = window_there_.update(window_there, now);
    const Time failing =
        failure_told_.update(!window_there && !reason_of(look.status).empty(), now);
    const Time gone = client_gone_.update(!look.client_runs, now);
    if (there >= trusted_after) return State::connected;
    if (gone >= believed_gone_after) return State::failed;
    if (!look.client_runs && gone >= settled_after && failing >= settled_after) {
        return State::failed;
    }
    if (failing >= trusted_after) return State::failed;
    return state_without_outcome(look);
}

State LaunchJudge::judge_by_verdict(const Look& look) {
    const bool failure_told = !reason_of(look.status).empty() || look.log_names_failure;
    const bool still_connecting = says_that_it_connects(type_, look);
    const bool good =
        look.verdict == WatcherVerdict::connected && !failure_told && !still_connecting;
    const Time good_for = verdict_good_.update(good, look.since_launch);
    const Time failing = failure_told_.update(failure_told, look.since_launch);
    if (look.verdict == WatcherVerdict::failed) return State::failed;
    if (failing >= settled_after) return State::failed;
    if (good_for >= settled_after) return State::connected;
    const State state = state_without_outcome(look);
    const bool not_there = still_connecting || failure_told;
    return state == State::window_open && not_there ? State::connecting : state;
}

State LaunchJudge::state_without_outcome(const Look& look) {
    has_run_ = has_run_ || look.client_runs;
    if (!look.client_runs) return has_run_ ? State::ended : State::starting;
    return look.window == Sight::seen ? State::window_open : State::waiting;
}

State state_of(const ConnectionType& type, const Look& look) {
    if (!look.client_runs) return State::not_running;
    const bool failure_told = !reason_of(look.status).empty() || look.log_names_failure;
    if (failure_told && (!is_rdp(type) || look.window != Sight::seen)) return State::failed;
    if (look.window == Sight::seen) {
        return says_that_it_connects(type, look) ? State::connecting : State::connected;
    }
    if (!is_rdp(type) && look.verdict == WatcherVerdict::failed) return State::failed;
    return State::waiting;
}

} // namespace qvtc::qvtcctl
