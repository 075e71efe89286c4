#include "core/paths.hpp"
#include "qvtcctl/connections/types.hpp"
#include "qvtcctl/doctor/marker_files.hpp"
#include "qvtcctl/verb/settings_document.hpp"
#include "qvtcctl/verb/system_log.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <map>
#include <set>

#include <gtest/gtest.h>

namespace qvtc {
namespace {

TEST(FilesOfBoth, AreTheSame) {
    EXPECT_EQ(qvtcctl::settings_document, paths::settings_document);
    EXPECT_EQ(qvtcctl::system_log, paths::system_log);
    EXPECT_EQ(qvtcctl::hdmi_marker, paths::hdmi_audio);
}

TEST(FilesOfBoth, HoldTheClientsWords) {
    const std::map<unsigned, std::string_view> logs{{QVTC_TYPE_RDP, paths::rdp_log},
                                                    {QVTC_TYPE_SPICE, paths::spice_log},
                                                    {QVTC_TYPE_VNC, paths::vnc_log},
                                                    {QVTC_TYPE_WEB, paths::web_log}};
    for (const qvtcctl::ConnectionType& type : qvtcctl::connection_types) {
        const auto log = logs.find(type.number);
        EXPECT_EQ(type.log, log == logs.end() ? "" : log->second) << type.name;
    }
}

TEST(FilesOfBoth, MarkTheSameSettings) {
    std::set<std::string_view> of_tool;
    for (const qvtcctl::MarkerFile& file : qvtcctl::marker_files) of_tool.insert(file.path);
    // Those that change what a connection does; the others set screens, sound and network.
    const std::set<std::string_view> of_library{paths::usb_denied,     paths::custom_remote_viewer,
                                                paths::n5095_notebook, paths::j4105_notebook,
                                                paths::screens_cloned, paths::vga_left_of_hdmi};
    EXPECT_EQ(of_tool, of_library);
}

} // namespace
} // namespace qvtc
