#pragma once

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/display/outputs.hpp"
#include "qvtcctl/verb/quiet.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// What several screens can show, and the library's word for it.
struct ScreenMode {
    std::string_view name;
    std::string_view library_name;
    std::string_view meaning;
    Arrangement arrangement;
};

/// The connected screens, where they are known.
using Outputs = std::optional<std::vector<Output>>;

/// The meaning of a mode, with the connected screens of which it is not true.
std::string meaning_here(const ScreenMode& mode, const Outputs& outputs);

/// This terminal's screens, through the library. Its setters report next to nothing, so every
/// change is read back here, and one that failed is refused with ExitCode::not_done.
class Screens {
  public:
    /// Refuses (ExitCode::not_possible) to work without root's rights or without /home/root.
    explicit Screens(Chatter chatter);

    /// The names of the resolutions that users are offered.
    std::vector<std::string> offered_resolutions() const;

    std::string requested_index() const;
    bool change_waits() const;

    /// Requests a resolution and restarts the terminal. Unless it is kept at once there is always
    /// one to go back to. Refuses (ExitCode::not_possible) on a virtual machine.
    void request(std::string_view index, bool keep) const;
    void keep() const;
    void revert() const;

    const ScreenMode& mode() const;
    void set_mode(const ScreenMode& mode) const;

    bool reversed() const;
    void set_reversed(bool reversed) const;

    /// Of the first screen, in percent; empty when the X server does not report it.
    std::string brightness() const;
    void set_brightness(unsigned percent) const;

    bool can_be_extended() const;

    /// Null when none is stored.
    Json refresh() const;
    void set_refresh(const std::string& text) const;

  private:
    std::string member(json_object* (*getter)(), const char* name) const;
    void ensure_way_back() const;

    Chatter chatter_;
};

/// Refuses an unknown name.
const ScreenMode& require_mode(std::string_view name);

} // namespace qvtc::qvtcctl
