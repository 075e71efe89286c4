#pragma once

#include <string>

namespace qvtc::test {

/// What a person sees who types commands: each command, what it printed on its two outputs, and
/// its exit status.
///
///     $ qvtcctl connection list
///     | No connections are stored.
///     = 0
///
/// Lines of standard error begin with "! ". The program that was built is found as "qvtcctl".
class Transcript {
  public:
    Transcript();

    /// Runs a bash command, with that text as its standard input.
    Transcript& run(const std::string& command, const std::string& input = "");

    /// As run(), on a terminal of its own. Each line of "typed" is typed when the program asks for
    /// it with the echo off. Lines that the program overwrites are shown as well.
    Transcript& run_on_terminal(const std::string& command, const std::string& typed = "");

    /// As run(), on a terminal of its own on which "typed" answers the question for consent.
    Transcript& run_with_answer(const std::string& command, const std::string& typed);

    const std::string& text() const { return text_; }

    /// Holds the text against tests/golden/qvtcctl/NAME.txt.
    void expect(const std::string& name) const;

  private:
    void add(const std::string& mark, const std::string& output);

    std::string text_;
};

} // namespace qvtc::test
