#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace qvtc::test {

/// Takes the place of a program for as long as it lives: notes the arguments of every call and
/// does what it was told, at first nothing, with success. The program it replaces comes back.
///
///     StandIn xrandr("xrandr");
///     xrandr.prints("Screen 0: ...\n");
///     ... EXPECT_EQ(xrandr.calls(), (StandIn::Calls{{"--output", "HDMI1", "--auto"}}));
class StandIn {
  public:
    using Arguments = std::vector<std::string>;
    using Calls = std::vector<Arguments>;

    /// A bare name goes to /usr/local/bin, which is first in PATH; a path goes exactly there.
    /// No two may share the last part of their names. Throws std::runtime_error.
    explicit StandIn(const std::filesystem::path& name);
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    /// One call after the other prints the next text; the last one is repeated.
    StandIn& prints(std::initializer_list<std::string> texts);
    StandIn& prints(const std::string& text) { return prints({text}); }
    StandIn& prints_errors(const std::string& text);
    StandIn& exits_with(int status);
    /// Every call runs until it is killed; its process has the name of the stand-in.
    StandIn& keeps_running();
    /// Every call runs this bash script, with the call's arguments, instead of all the above.
    StandIn& runs(const std::string& script);

    /// The arguments of each call, without the program's name, in the order of the calls.
    Calls calls() const;
    /// Forgets the calls and starts over with the first text.
    void forget_calls();

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    std::filesystem::path directory_;
    std::filesystem::path replaced_; ///< where the real program waits; empty if there was none
};

} // namespace qvtc::test
