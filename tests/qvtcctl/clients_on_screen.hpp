// Stand-ins for clients and the screen that they come up on.
#pragma once

#include "support/support.hpp"

#include <string>

namespace qvtc::test {

/// A screen whose windows depend on what qvtcctl itself has asked, so that each stage of a launch
/// is seen: the library's watcher asks too, and is told what qvtcctl was told last.
class Screen {
  public:
    /// The window is there from the given question of qvtcctl on.
    Screen(const std::string& window, int from_question) : program_("xwininfo") {
        program_.runs("if [[ $(ps -o comm= -p $PPID) == qvtcctl ]]; then echo >>/tmp/asked; fi\n"
                      "[[ -f /tmp/asked ]] || exit 0\n"
                      "(($(wc -l </tmp/asked) >= " +
                      std::to_string(from_question) + ")) && echo '  0x200001 \"" + window +
                      "\"'\nexit 0");
    }
    /// The window never comes.
    Screen() : Screen("none", 0) {}

  private:
    StandIn program_;
};

/// A client that says something and ends as soon as qvtcctl has seen it running.
inline std::string ending_client(const std::string& says) {
    return "until [[ -f /tmp/asked ]]; do sleep 0.05; done; cat <<'LOG'\n" + says + "LOG\n";
}

inline constexpr const char* add_office =
    "qvtcctl connection add rdp name=office serverAddress=10.0.0.5 username=anna";

} // namespace qvtc::test
