#pragma once

#include "qvtcctl/verb/quiet.hpp"

#include <string>

namespace qvtc::qvtcctl {

/// What the library does with the clients of stored connections.
class Launcher {
  public:
    explicit Launcher(Chatter chatter) : chatter_(chatter) {}

    /// Starts the client of a connection. The library watches it from a thread for up to half a
    /// minute and writes the outcome for all who wait for it; a process of its own, without a
    /// controlling terminal, lives on for that, so that this call returns at once. To be called
    /// while this program has one thread. Refuses (ExitCode::not_done) when the library did not
    /// start it.
    void launch(unsigned id) const;

    /// The library's answer on what has come of the last launch, as it stands.
    std::string status(unsigned id) const;

    /// Ends the RDP clients that the library can find.
    void cancel_rdp() const;

  private:
    Chatter chatter_;
};

} // namespace qvtc::qvtcctl
