#pragma once

#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// The program's own two streams.
void write_out(std::string_view text);
void write_error(std::string_view text);

/// Tells how a longer work is getting on: on a terminal one line that is rewritten, elsewhere one
/// line for each new stage, and nothing at all when it is switched off.
class Progress {
  public:
    explicit Progress(bool switched_on);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// "stage" is a line without newline; "seconds" is shown on a terminal only.
    void show(const std::string& stage, long seconds);

    /// Takes the line off a terminal's screen, so that something else can be written.
    void clear();

  private:
    bool switched_on_;
    bool on_terminal_;
    std::string stage_;
    std::size_t columns_ = 0; // of the line that stands on the terminal
};

} // namespace qvtc::qvtcctl
