#pragma once

namespace qvtc::qvtcctl {

/// Where the library's debug lines, and the words of the commands that it runs, go.
enum class Chatter {
    dropped,
    to_standard_error ///< of this program, for --debug
};

/// While it lives, descriptors 1 and 2 lead to where the chatter goes, so that this program's own
/// output stays clean. Not to be nested; for one thread at a time.
class Quiet {
  public:
    explicit Quiet(Chatter chatter);
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

  private:
    int saved_output_ = -1;
    int saved_error_ = -1;
};

} // namespace qvtc::qvtcctl
