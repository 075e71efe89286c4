#pragma once

#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// Keeps the numbers of standard streams that the caller has closed from going to the next files
/// that are opened, which would then receive the answer. To be called before anything is opened.
void hold_standard_descriptors();

/// The program's own two streams.
void write_out(std::string_view text);
void write_error(std::string_view text);

/// Why something that was written to standard output did not arrive; empty while everything did.
std::string lost_output();

/// Shows the progress of a longer operation: on a tty one line that is rewritten, cut where it does
/// not fit; elsewhere one line for each new stage; and nothing at all when it is switched off.
class Progress {
  public:
    explicit Progress(bool switched_on);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// "stage" is a line without newline; "seconds" is shown on a tty only.
    void show(const std::string& stage, long seconds);

    /// Removes the line from the tty, so that something else can be written.
    void clear();

  private:
    bool switched_on_;
    bool on_tty_;
    std::string stage_;
    std::size_t columns_ = 0; // of the line that the tty shows
};

} // namespace qvtc::qvtcctl
