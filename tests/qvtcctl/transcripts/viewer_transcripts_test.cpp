// Launches of VNC and SPICE viewers as their user sees them, with stand-ins for the clients.
#include "clients_on_screen.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::add_office;
using test::Screen;
using test::StandIn;
using test::Transcript;
using test::write_file;

/// What TigerVNC's viewer writes at each start.
constexpr const char* viewer_banner = "echo; echo 'TigerVNC Viewer 64-bit v1.12.0'; ";
constexpr const char* viewer_connected = "echo ' CConn: Using pixel format depth 24'; sleep 100";
constexpr const char* add_lab = "qvtcctl connection add vnc name=lab serverAddress=10.0.0.7";

// Its window has a title by which nobody knows it, so its words count. The client-status file is
// everybody's: here it tells the failure of another launch, and is not believed.
TEST(QvtcctlTranscript, AViewerIsConnectedWhenItSaysSo) {
    const Screen screen("lab\": (\"TigerVNC Viewer\" \"TigerVNC Viewer\")", 1);
    StandIn client("vncviewer");
    client.runs(std::string(viewer_banner) +
                "until [[ -f /tmp/asked ]]; do sleep 0.05; done\n"
                "echo '0x00000001 connect failed' >/usr/local/vpclient/config/clientstatus\n" +
                viewer_connected);
    Transcript transcript;
    transcript.run(add_lab)
        .run("qvtcctl launch 224 --wait --json")
        .run("qvtcctl status 224")
        .run("qvtcctl status 224 --follow --json &\n"
             "until grep -q connected /tmp/transcript/output; do sleep 0.05; done\n"
             "killall vncviewer; wait $!");
    transcript.expect("viewer_connected");
}

// The viewer stays and shows what went wrong; what it wrote at its earlier starts is past.
TEST(QvtcctlTranscript, AViewerHasFailedWhenItSaysSo) {
    const Screen screen;
    StandIn client("vncviewer");
    client.runs(std::string(viewer_banner) +
                "echo ' CConn: unable to connect to socket: Connection refused (111)'; sleep 100");
    Transcript transcript;
    transcript.run(add_lab).run("qvtcctl launch 224 --wait >/dev/null").run("qvtcctl status 224");
    client.runs(std::string(viewer_banner) +
                "echo ' CVeNCrypt:   Choosing security type TLSVnc (258)'; sleep 100");
    transcript.run("qvtcctl launch 224 --wait --timeout 2 >/dev/null")
        .run("qvtcctl status 224")
        .run("qvtcctl cancel 224");
    transcript.expect("viewer_failed");
}

TEST(QvtcctlTranscript, AViewerThatDoesNotUnderstandTheCommandEnds) {
    const Screen screen;
    StandIn client("vncviewer");
    client.runs("cat >&2 <<'TEXT'\n"
                "TightVNC Viewer version 1.3.10\n"
                "\n"
                "Usage: vncviewer [<OPTIONS>] [<HOST>][:<DISPLAY#>]\n"
                "       vncviewer [<OPTIONS>] [<HOST>][::<PORT#>]\n"
                "       vncviewer [<OPTIONS>] -listen [<DISPLAY#>]\n"
                "       vncviewer -help\n"
                "TEXT\n"
                "exit 1");
    Transcript transcript;
    transcript.run(add_lab).run("qvtcctl launch 224 --wait >/dev/null").expect("viewer_usage");
}

TEST(QvtcctlTranscript, EveryVerdictBelongsToItsOwnLaunch) {
    const Screen screen("page\": (\"Navigator\" \"firefox-esr\")", 0);
    StandIn client("firefox");
    client.keeps_running();
    write_file("/tmp/asked", "");
    Transcript transcript;
    transcript.run("qvtcctl connection add web name=page serverAddress=http://10.0.0.9/")
        .run("qvtcctl connection add horizon name=pool serverAddress=10.0.0.9")
        .run("qvtcctl launch 288")
        .run("until grep -qs success /usr/local/vpclient/config/clientstatus; do sleep 0.05; done")
        .run("qvtcctl launch 160 --wait >/dev/null")
        .expect("own_verdict");
}

TEST(QvtcctlTranscript, AnotherConnectionsFailureIsNotThisOnes) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs("echo 'ERRCONNECT_DNS_NAME_NOT_FOUND'");
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl connection add rdp name=other serverAddress=10.0.0.6")
        .run("qvtcctl launch 32; while pgrep -x xfreerdp >/dev/null; do sleep 0.05; done")
        .run("qvtcctl status 33")
        .run("qvtcctl status 33 --json")
        .run("qvtcctl status 32")
        .expect("own_failure");
}

// Its launcher writes a mark of the start into the log of SPICE's viewer.
TEST(QvtcctlTranscript, AVncLaunchDoesNotEndTheWordsOfASpiceViewer) {
    const Screen screen("machine\": (\"remote-viewer\" \"Remote-viewer\")", 0);
    write_file("/tmp/asked", "");
    StandIn spice("remote-viewer");
    spice.runs("echo 'virt-viewer-DEBUG: main channel: auth failure (wrong password?)'; sleep 100");
    StandIn vnc("vncviewer");
    vnc.keeps_running();
    Transcript transcript;
    transcript.run("qvtcctl connection add spice name=machine serverAddress=10.0.0.7 port=5930")
        .run(add_lab)
        .run("qvtcctl launch 64 --wait >/dev/null 2>&1")
        .run("qvtcctl launch 224; qvtcctl launch 224")
        .run("qvtcctl status 64")
        .run("qvtcctl cancel 64; qvtcctl status 64")
        .run("grep -c start /home/root/spicec.log");
    transcript.expect("spice_beside_vnc");
}

// SPICE's viewer is asked to talk, and its window is there before the connection is. What
// is told meanwhile goes by the looks that fall in between, and is left out here.
TEST(QvtcctlTranscript, ASpiceViewerIsBelievedWhenItSpeaks) {
    const Screen screen("lab\": (\"remote-viewer\" \"Remote-viewer\")", 2);
    StandIn client("remote-viewer");
    client.runs("echo \"$G_MESSAGES_DEBUG-DEBUG: Opening display\"\n"
                "until [[ -f /tmp/asked ]]; do sleep 0.05; done\n"
                "until (($(wc -l </tmp/asked) >= 4)); do sleep 0.05; done\n"
                "echo 'main channel: opened'; sleep 100");
    Transcript transcript;
    transcript.run("qvtcctl connection add spice name=lab serverAddress=10.0.0.7 port=5930")
        .run("qvtcctl launch 64 --wait --json")
        .run("tail -n 2 /home/root/spicec.log");
    transcript.expect("spice_connected");
}

TEST(QvtcctlTranscript, ASpiceViewerThatReachesNobodyHasFailedAlthoughItShowsAWindow) {
    const Screen screen("lab\": (\"remote-viewer\" \"Remote-viewer\")", 2);
    StandIn client("remote-viewer");
    client.runs("echo 'virt-viewer-DEBUG: main channel: failed to connect Could not connect to "
                "10.0.0.7: Connection "
                "refused'; sleep 100");
    Transcript transcript;
    transcript.run("qvtcctl connection add spice name=lab serverAddress=10.0.0.7 port=5930")
        .run("qvtcctl launch 64 --wait >/dev/null");
    transcript.expect("spice_failed");
}

TEST(QvtcctlTranscript, ASpiceViewerThatGoesOnTryingHasNoOutcome) {
    const Screen screen("lab\": (\"remote-viewer\" \"Remote-viewer\")", 2);
    StandIn client("remote-viewer");
    client.runs("echo 'virt-viewer-DEBUG: Opening display'; sleep 100");
    Transcript transcript;
    transcript.run("qvtcctl connection add spice name=lab serverAddress=10.0.0.7 port=5930")
        .run("qvtcctl launch 64 --wait --timeout 8 >/dev/null");
    transcript.expect("spice_trying");
}

} // namespace
} // namespace qvtc::qvtcctl
