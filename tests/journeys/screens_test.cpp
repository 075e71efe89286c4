#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* vga_is_left = "/etc/X11/vga_left_of_hdmi";
constexpr const char* screens_are_cloned = "/etc/X11/clone";

/// Where a session's window comes on two screens of 1280x1024, side by side or cloned. Its size is
/// that of the remote desktop in the end, as far as there is room.
struct Placement {
    const char* name;
    const char* marker;  ///< a file that exists, null for none
    const char* choice;  ///< the record's "monitorSelect"
    const char* options; ///< that the client gets
    const char* remote;  ///< options of the remote desktop
    const char* window;
};

void PrintTo(const Placement& placement, std::ostream* stream) { *stream << placement.name; }

// clang-format off
constexpr Placement placements[] = {
    {"ExtendWithVgaLeft",  vga_is_left,        "extend", "/multimon /monitors:0,1", "--two", "2560x1024+0+0  +0+0"},
    {"ExtendWithHdmiLeft", nullptr,            "extend", "/multimon /monitors:1,0", "--two", "2560x1024+0+0  +0+0"},
    {"VgaOnTheLeft",       vga_is_left,        "vga",    "/monitors:1 /multimon",   "",      "1280x800+1280+0  +1280+0"},
    {"VgaOnTheRight",      nullptr,            "vga",    "/monitors:0 /multimon",   "",      "1280x800+0+0  +0+0"},
    {"HdmiOnTheRight",     vga_is_left,        "hdmi",   "/monitors:0 /multimon",   "",      "1280x800+0+0  +0+0"},
    {"HdmiOnTheLeft",      nullptr,            "hdmi",   "/monitors:1 /multimon",   "",      "1280x800+1280+0  +1280+0"},
    {"Cloned",             screens_are_cloned, "extend", "/f",                      "--two", "1280x1024+0+0  +0+0"},
};
// clang-format on

class Screens : public Journey, public testing::WithParamInterface<Placement> {
  protected:
    Screens() : Journey("--two") {}
};

TEST_P(Screens, ShowTheSessionWhereItBelongs) {
    const Placement& placement = GetParam();
    const bool cloned = placement.marker == screens_are_cloned;
    start_remote_desktop(placement.remote);
    if (placement.marker != nullptr) write_file(placement.marker, "");
    if (cloned) {
        ASSERT_EQ(output_of("xrandr --output DUMMY1 --same-as DUMMY0").status, 0);
    }
    const unsigned id = store_record({{"name", "desk"},
                                      {"serverAddress", "127.0.0.1"},
                                      {"colorDepth", "32"},
                                      {"monitorSelect", placement.choice}});

    ASSERT_EQ(qvlaunchclient(id), 0);

    EXPECT_EQ(launched_clients(),
              (std::vector<std::string>{
                  std::string("xfreerdp /t:desk /v:'127.0.0.1' /size:") +
                  (cloned ? "1280x1024" : "2560x1024") +
                  " +auto-reconnect /auto-reconnect-max-retries:5 /cert-ignore  /bpp:32 "
                  "-compression -wallpaper -bitmap-cache -window-drag -menu-anims " +
                  placement.options + " >>/home/root/freerdp.log 2>&1 &"}));
    ASSERT_TRUE(wait_until(
        [] { return shows(20, 20, remote_ground) || shows(1300, 20, remote_ground); }, patience));
    const std::vector<std::string> window = {
        std::string("\"desk\": (\"xfreerdp\" \"xfreerdp\")  ") + placement.window};
    EXPECT_EQ(client_windows_once(window), window);
}

INSTANTIATE_TEST_SUITE_P(Rdp, Screens, testing::ValuesIn(placements),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace qvtc::test
