#pragma once

#include "qvtcctl/base/exit_codes.hpp"

#include <stdexcept>
#include <string>

namespace qvtc::qvtcctl {

/// Why a verb stops: one message for a person, and the exit status that goes with it.
class Refusal : public std::runtime_error {
  public:
    Refusal(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

/// The words themselves are wrong: the message is followed by a pointer to --help.
class UsageError : public Refusal {
  public:
    explicit UsageError(const std::string& message) : Refusal(ExitCode::bad_usage, message) {}
};

} // namespace qvtc::qvtcctl
