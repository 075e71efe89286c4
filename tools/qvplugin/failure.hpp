#pragma once

#include <stdexcept>
#include <string>

namespace qvtc::qvplugin {

enum class ExitCode : int {
    done = 0,
    nothing_stored = 1,
    bad_usage = 2,   ///< also a key or a text that was refused; nothing was changed
    store_failed = 3 ///< it cannot be read or written; nothing was changed
};

/// Why a command could not be carried out, in words for a person.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& words) : std::runtime_error(words), code_(code) {}
    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

} // namespace qvtc::qvplugin
