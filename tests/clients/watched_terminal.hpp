#pragma once

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <string>
#include <vector>

/// What the tests of launches under the recorder have in common.
namespace qvtc::test {

using Texts = std::vector<std::string>;

inline constexpr const char* status_file = "/usr/local/vpclient/config/clientstatus";
inline constexpr const char* clear_status = "echo \"\" > /usr/local/vpclient/config/clientstatus";
inline constexpr const char* write_success =
    "echo \"0x00000000 connect success\" > /usr/local/vpclient/config/clientstatus";
inline constexpr const char* write_failure =
    "echo \"0x00000001 connect failed\" > /usr/local/vpclient/config/clientstatus";

/// The command with which a watch looks for a window.
inline std::string look_for(const std::string& pattern) {
    return "DISPLAY=:0.0 xwininfo -root -tree |grep " + pattern;
}

/// The marker of the last launch, as the settings hold it.
inline std::string stored_marker() { return stored_setting("com.valmora.thinclient.para_10_0"); }

/// A terminal with stand-ins for what every launch calls.
class WatchedTerminal : public FreshTerminal {
  protected:
    StandIn xwininfo{"xwininfo"};
    StandIn killall{"killall"};
    StandIn qvplugin{"qvplugin"};
    StandIn reset_usb{"/usr/bin/resetusb.sh"};

    /// Lets a window of that description be seen from the given poll on; each poll also keeps
    /// what the status file holds at that moment.
    void show_window(const std::string& line, int from_poll) {
        xwininfo.runs("cat " + std::string(status_file) +
                      " >>/tmp/statuses; echo x >>/tmp/polls; "
                      "[ $(wc -l </tmp/polls) -lt " +
                      std::to_string(from_poll) + " ] || echo '" + line + "'");
    }
};

} // namespace qvtc::test
