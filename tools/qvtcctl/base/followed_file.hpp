#pragma once

#include "qvtcctl/base/input_file.hpp"

#include <cstdint>
#include <string>

namespace qvtc::qvtcctl {

/// Reads a file as it grows, also when it is moved aside or emptied, and begun anew.
class FollowedFile {
  public:
    /// Begins with the last "tail" bytes of what is there; a missing file is waited for.
    FollowedFile(std::string path, std::uintmax_t tail);

    /// The whole lines that have been added since the last call, with their newlines.
    std::string lines();

  private:
    bool is_current() const;
    bool was_cut() const;
    void read_rest();

    std::string path_;
    InputFile file_;
    std::string pending_; ///< what has been read and not yet been handed out
};

} // namespace qvtc::qvtcctl
