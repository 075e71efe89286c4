#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

/// A way to draw, which takes the place of the others on the command line.
struct Drawing {
    const char* name;
    Fields fields;
    const char* options;
};

void PrintTo(const Drawing& drawing, std::ostream* stream) { *stream << drawing.name; }

// clang-format off
const Drawing drawings[] = {
    {"GraphicsPipeline", {{"useGFX", "on"}, {"useRemoteFX", "on"}}, "/gfx:AVC444 +async-update"},
    {"RemoteFx",         {{"useRemoteFX", "on"}},                   "/rfx /gdi:hw"},
    {"Colours32",        {{"colorDepth", "32"}},                    "/bpp:32"},
    {"Colours24",        {{"colorDepth", "24"}},                    "/bpp:24"},
    {"Colours16",        {{"colorDepth", "16"}},                    "/bpp:16"},
};

const Fields every_switch = {
    {"name", "desk"}, {"serverAddress", "127.0.0.1"}, {"username", "demo"},
    {"password", stored_password("password")}, {"domain", "D"}, {"usbRedirection", "on"},
    {"multiTouch", "on"}, {"redirectAudio", "on"}, {"multimedia", "on"}, {"useCompress", "on"},
    {"useCustomRDPPort", "on"}, {"rdpPort", "3391"}, {"fontSmooth", "on"},
    {"desktopBackground", "on"}, {"visualStyle", "on"}, {"persistBitmap", "on"},
    {"dragShowContent", "on"}, {"widgetAnimate", "on"}, {"audioPlayOnServer", "on"},
    {"localStorage", "on"}, {"isConnectStart", "on"}, {"appFullpath", "C:/Program Files/a.exe"},
    {"workDir", "C:/"},
};
// clang-format on

class Options : public Journey, public testing::WithParamInterface<Drawing> {};

TEST_P(Options, AllTogetherGiveASession) {
    start_remote_desktop("--port 3391");
    StandIn sound_server("pulseaudio");
    sound_server.keeps_running();
    ASSERT_EQ(output_of("pulseaudio >/dev/null 2>&1 &").status, 0);
    Fields fields = every_switch;
    fields.insert(fields.end(), GetParam().fields.begin(), GetParam().fields.end());

    ASSERT_EQ(qvlaunchclient(store_record(fields)), 0);

    EXPECT_EQ(launched_clients(),
              (std::vector<std::string>{
                  "xfreerdp /t:desk /v:'127.0.0.1' /size:1280x800 +auto-reconnect "
                  "/auto-reconnect-max-retries:5 /cert-ignore  /usb:auto +multitouch /u:'demo' "
                  "/p:'password' /d:'D' " +
                  std::string(GetParam().options) +
                  " /sound:sys:pulse,latency:100 /microphone:sys:pulse /video +compression "
                  "/port:3391 +fonts +wallpaper +themes +bitmap-cache +window-drag +menu-anims "
                  "/audio-mode:1 +drives /shell:\"C:/Program Files/a.exe\" /shell-dir:\"C:/\" "
                  "/monitors:1 /multimon >>/home/root/freerdp.log 2>&1 &"}));
    EXPECT_TRUE(wait_for_colour(20, 20, remote_ground)) << client_words();
    const std::vector<std::string> window = {
        "\"desk\": (\"xfreerdp\" \"xfreerdp\")  1280x800+0+0  +0+0"};
    EXPECT_EQ(client_windows_once(window), window);
}

INSTANTIATE_TEST_SUITE_P(Rdp, Options, testing::ValuesIn(drawings),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace qvtc::test
