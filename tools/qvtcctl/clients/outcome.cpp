#include "qvtcctl/clients/outcome.hpp"

namespace qvtc::qvtcctl {
namespace {

using std::chrono::milliseconds;

// A client that has just been started may not be in the process list yet.
constexpr milliseconds believed_gone_after{1500};
constexpr milliseconds settled_after{500};

bool shows_window(const Look& look) { return look.client_runs && look.window == Sight::seen; }

bool names_failure(const Look& look) {
    if (look.said != Said::nothing) return look.said == Said::failed;
    return look.library_tells_failure && !shows_window(look);
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
        return "the client runs, waiting for the connection";
    case State::asking:
        return "the client asks for the password on the terminal's screen";
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
    case State::asking:
        return "asking";
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
    const Time now = look.since_launch;
    const bool silent = look.said == Said::nothing;
    const Time shown = window_there_.update(silent && shows_window(look), now);
    const Time connected =
        connection_told_.update(look.client_runs && look.said == Said::connected, now);
    const Time failing = failure_told_.update(names_failure(look), now);
    const Time gone = client_gone_.update(!look.client_runs, now);
    if (shown >= trusted_after || connected >= settled_after) return State::connected;
    if (gone >= believed_gone_after) return State::failed;
    if (gone >= settled_after && failing >= settled_after) return State::failed;
    const bool in_doubt = silent || !look.client_runs; // the library may speak of a passing trouble
    if (failing >= (in_doubt ? trusted_after : settled_after)) return State::failed;
    return state_without_outcome(look);
}

State LaunchJudge::state_without_outcome(const Look& look) {
    has_run_ = has_run_ || look.client_runs;
    if (!look.client_runs) return has_run_ ? State::ended : State::starting;
    switch (look.said) {
    case Said::asking:
        return State::asking;
    case Said::nothing:
        return shows_window(look) ? State::window_open : State::waiting;
    default:
        return State::connecting;
    }
}

State state_of(const Look& look) {
    if (!look.client_runs) return State::not_running;
    if (names_failure(look)) return State::failed;
    switch (look.said) {
    case Said::connected:
        return State::connected;
    case Said::asking:
        return State::asking;
    case Said::nothing:
        return shows_window(look) ? State::connected : State::waiting;
    default:
        return State::connecting;
    }
}

} // namespace qvtc::qvtcctl
