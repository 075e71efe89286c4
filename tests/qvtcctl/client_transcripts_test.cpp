// qvtcctl as its user sees it, against the real library and stand-ins for the clients.
#include "journeys/faulty_server.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::FaultyServer;
using test::StandIn;
using test::Transcript;
using test::write_file;

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
std::string ending_client(const std::string& says) {
    return "until [[ -f /tmp/asked ]]; do sleep 0.05; done; cat <<'LOG'\n" + says + "LOG\n";
}

constexpr const char* add_office =
    "qvtcctl connection add rdp name=office serverAddress=10.0.0.5 username=anna";

TEST(QvtcctlTranscript, LaunchUntilConnected) {
    const Screen screen("office\": (\"xfreerdp\" \"xfreerdp\")", 2);
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl status 32")
        .run("qvtcctl launch 32 --wait")
        .run("qvtcctl status 32")
        .run("qvtcctl status 32 --json")
        .run("qvtcctl connection add rdp name=other serverAddress=10.0.0.6")
        .run("qvtcctl status 33")
        .run("qvtcctl cancel")
        .run("qvtcctl status 32")
        .run("qvtcctl cancel");
    transcript.expect("launch_connected");
    ASSERT_EQ(client.calls().size(), 1U);
    EXPECT_EQ(client.calls().front().front(), "/t:office");
}

// Whether it does, only its answer to a negotiation tells: the client's log is empty either way.
TEST(QvtcctlTranscript, LaunchToAServerThatAsksForTheLogonItself) {
    constexpr int tls = 1;
    constexpr int nla = 2;
    const Screen screen("xfreerdp", 2);
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=office serverAddress=127.0.0.1 username=anna");
    {
        const FaultyServer server(test::negotiate_security(tls, true), 3389);
        transcript.run("qvtcctl launch 32 --wait")
            .run("qvtcctl status 32")
            .run("qvtcctl status 32 --json");
    }
    const FaultyServer server(test::negotiate_security(tls | nla, true), 3389);
    transcript.run("qvtcctl status 32").run("qvtcctl status 32 --json");
    transcript.expect("launch_asked_by_server");
}

// The client's log stays empty there, so that nothing else would tell.
TEST(QvtcctlTranscript, LaunchOnAFullDisk) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs(ending_client("ERRCONNECT_LOGON_FAILURE\n"));
    Transcript transcript;
    transcript.run("mount -t tmpfs -o size=192k none /home/root")
        .run(add_office)
        .run("head -c 1M /dev/zero >/home/root/filler 2>/tmp/full || echo full")
        .run("qvtcctl launch 32")
        .run("qvtcctl launch 32 --wait >/dev/null")
        .run("qvtcctl status 32")
        .run("qvtcctl doctor 32 | grep -A 1 storage");
    transcript.expect("launch_disk_full");
}

// Where its log cannot be opened, the shell does not start the client at all; the log still holds
// the words of an earlier one.
TEST(QvtcctlTranscript, LaunchOnAReadOnlyDisk) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl connection add web name=page serverAddress=http://10.0.0.9/")
        .run("echo '[1]start to connect...' >/home/root/freerdp.log; "
             "echo 'ERRCONNECT_LOGON_FAILURE' >>/home/root/freerdp.log")
        .run("qvtcctl connection add horizon name=pool serverAddress=10.0.0.9")
        .run("mount --bind /home/root /home/root && mount -o remount,bind,ro /home/root")
        .run("qvtcctl launch 32")
        .run("qvtcctl launch 32 --json")
        .run("qvtcctl launch 32 --wait")
        .run("qvtcctl status 32")
        .run("qvtcctl status 32 --json")
        .run("qvtcctl launch 288 --wait --json");
    EXPECT_EQ(client.calls(), StandIn::Calls{});
    transcript.run("umount /home/root; echo '[INFO] @launchclient id = 32' >/home/root/system.log")
        .run("mount --bind /home/root /home/root && mount -o remount,bind,ro /home/root")
        .run("qvtcctl status 32")
        .run("qvtcctl launch 160 --wait");
    transcript.expect("launch_disk_read_only");
}

TEST(QvtcctlTranscript, LaunchOnATerminal) {
    const Screen screen("xfreerdp", 2);
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office).run_on_terminal("qvtcctl launch 32 --wait");
    transcript.expect("launch_on_terminal");
}

// A line that goes on in the next one cannot be painted over, and would be there twice a second.
TEST(QvtcctlTranscript, LaunchOnANarrowTerminal) {
    const Screen screen("xfreerdp", 2);
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office).run_on_terminal("stty cols 44; qvtcctl launch 32 --wait");
    transcript.expect("launch_on_narrow_terminal");
}

TEST(QvtcctlTranscript, LaunchWithoutWaiting) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl launch 32")
        .run("qvtcctl launch 32 --json")
        .run("qvtcctl launch 33")
        .run("qvtcctl status 32");
    transcript.expect("launch");
}

// Whoever launches it from wherever: a client belongs on the terminal's own screen, and where it
// asks for a password nobody must have to answer.
TEST(QvtcctlTranscript, AClientGetsTheTerminalsScreenAndNoPlaceToAsk) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs("echo \"$DISPLAY $(ps -o tty= -p $$) $(readlink /proc/$$/fd/0)\" >/tmp/seen.new; "
                "mv /tmp/seen.new /tmp/seen; sleep 100");
    Transcript transcript;
    transcript.run(add_office).run_on_terminal("DISPLAY=far:10 qvtcctl launch 32");
    ASSERT_TRUE(test::wait_until([] { return test::file_exists("/tmp/seen"); }));
    EXPECT_EQ(test::read_file("/tmp/seen"), ":0 ? /dev/null\n");
}

TEST(QvtcctlTranscript, LaunchThatIsRefused) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs(ending_client(
        "[09:00:02:100] [21:22] [ERROR][com.freerdp.core] - SPNEGO received NTSTATUS: "
        "STATUS_LOGON_FAILURE [0xC000006D]\n"
        "[09:00:02:100] [21:22] [ERROR][com.freerdp.core] - nla_recv_pdu:freerdp_set_last_error_ex "
        "ERRCONNECT_LOGON_FAILURE [0x00020014]\n"));
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl launch 32 --wait")
        .run("qvtcctl status 32")
        .run("qvtcctl launch 32 --wait --json")
        .run("qvtcctl status 32 --json")
        .run("qvtcctl doctor 32 | grep -A 1 'last launch'");
    transcript.expect("launch_refused");
}

TEST(QvtcctlTranscript, LaunchWithAReasonThatTheLibraryKnows) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs(ending_client("transport: BIO_read returned a system error 104: Connection reset "
                              "by peer\n"));
    Transcript transcript;
    transcript.run(add_office).run("qvtcctl launch 32 --wait").expect("launch_reset");
}

TEST(QvtcctlTranscript, LaunchOfAClientThatSaysNothingUseful) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.runs(ending_client("something unheard of\n"));
    Transcript transcript;
    transcript.run(add_office).run("qvtcctl launch 32 --wait").expect("launch_unexplained");
}

// The client's own account counts, and neither how long it took nor whether a look fell into the
// session: the first start here was long ago, the second one just now.
TEST(QvtcctlTranscript, ASessionThatHasEndedIsKnownByTheClientsAccount) {
    const Screen screen;
    StandIn client("xfreerdp");
    const std::string end =
        "[09:00:02:100] [21:22] [INFO][com.freerdp.core] - ERRINFO_LOGOFF_BY_USER (0x0000000C)\n";
    client.runs(ending_client(end));
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl launch 32 --wait >/dev/null")
        .run("sed -i '1s/[0-9]*]/1]/' /home/root/freerdp.log; qvtcctl status 32");
    client.runs(ending_client(
        "[09:00:01:100] [21:22] [INFO][com.freerdp.gdi] - Local framebuffer format  BGRX32\n" +
        end));
    transcript.run("qvtcctl launch 32 --wait >/dev/null").run("qvtcctl status 32");
    transcript.expect("session_ended");
}

TEST(QvtcctlTranscript, LaunchWhoseTimeIsOver) {
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    transcript.run(add_office);
    {
        const Screen screen;
        transcript.run("qvtcctl launch 32 --wait --timeout 2")
            .run("qvtcctl launch 32 --wait --timeout 2 --json");
    }
    StandIn no_screen("xwininfo");
    no_screen.exits_with(1);
    transcript.run("qvtcctl launch 32 --wait --timeout 2").run("qvtcctl status 32");
    transcript.expect("launch_timeout");
}

// The library gives such a launch up before it starts the client and touches the client's log,
// which still holds the words of an earlier one.
TEST(QvtcctlTranscript, LaunchThatTheLibraryDoesNotBegin) {
    const Screen screen;
    StandIn client("xfreerdp");
    client.keeps_running();
    write_file("/home/root/freerdp.log", "[1]start to connect...\nERRCONNECT_DNS_NAME_NOT_FOUND\n");
    Transcript transcript;
    transcript.run(add_office)
        .run("sed -i 's#<password/>#<password>abcde</password>#' /home/root/vpclientData.xml")
        .run("qvtcctl launch 32 --wait");
    StandIn horizon("vmware-view");
    transcript.run("qvtcctl connection add horizon name=pool serverAddress=10.0.0.9")
        .run("sed -i 's#<password/>#<password>abcde</password>#' /home/root/vpclientData.xml")
        .run("qvtcctl launch 160 --wait --json");
    transcript.expect("launch_not_begun");
    EXPECT_EQ(client.calls(), StandIn::Calls{});
}

TEST(QvtcctlTranscript, LaunchOfARecordWithoutAddress) {
    Transcript transcript;
    transcript.run(add_office)
        .run("sed -i 's#<serverAddress>.*<#<serverAddress>x<#' /home/root/vpclientData.xml")
        .run("qvtcctl launch 32 --wait")
        .expect("launch_no_address");
}

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

/// Lines of the browser's report on its page.
std::string page_event(const std::string& what) {
    return "echo '[Parent 1: Main Thread]: I/BCWebProgress " + what +
           " on {top:1, id:3, url:about:blank}'\n";
}
const std::string page_state =
    "OnStateChange({isTopLevel:1, isLoadingDocument:1}, {URI:http://10.0.0.9/, "
    "originalURI:http://10.0.0.9/}, ";
const std::string page_location =
    "OnLocationChange({isTopLevel:1, isLoadingDocument:1}, {URI:http://10.0.0.9/, "
    "originalURI:http://10.0.0.9/}, http://10.0.0.9/, ";

TEST(QvtcctlTranscript, ABrowser) {
    StandIn client("firefox");
    client.runs("echo 'Error: cannot open display: :0'; exit 1");
    Transcript transcript;
    transcript.run("qvtcctl connection add web name=page serverAddress=http://10.0.0.9/");
    {
        const Screen screen;
        transcript.run("qvtcctl launch 288 --wait >/dev/null");
    }
    const Screen screen("firefox-esr", 1);
    client.runs(page_event(page_state + "STATE_START, NS_OK)") +
                page_event(page_state + "STATE_STOP|STATE_IS_NETWORK, NS_ERROR_UNKNOWN_HOST)") +
                page_event(page_location + "LOCATION_CHANGE_ERROR_PAGE)") + "sleep 100");
    transcript.run("qvtcctl launch 288 --wait >/dev/null")
        .run("qvtcctl status 288")
        .run("killall firefox");
    client.runs(page_event(page_state + "STATE_START, NS_OK)") + page_event(page_location + "0)") +
                "sleep 100");
    transcript.run("qvtcctl launch 288 --wait --json").run("qvtcctl status 288");
    transcript.expect("browser");
}

/// A browser as it is: while one runs, a second one hands its page over and ends. The page of the
/// host "nowhere" cannot be found.
constexpr const char* browser_with_tabs = R"bash(
tell() { echo "[Parent $browser: Main Thread]: I/BCWebProgress $1 on {top:1, id:$$, url:x}"; }
page="{isTopLevel:1, isLoadingDocument:1}, {URI:$1, originalURI:$1}"
browser=$(cat /tmp/browser 2>/dev/null)
if [[ -z $browser || ! -d /proc/$browser ]]; then browser=$$; echo $$ >/tmp/browser; fi
tell "OnStateChange($page, STATE_START, NS_OK)"
if [[ $1 == *nowhere* ]]; then
    tell "OnStateChange($page, STATE_STOP, NS_ERROR_UNKNOWN_HOST)"
    tell "OnLocationChange($page, $1, LOCATION_CHANGE_ERROR_PAGE)"
else
    tell "OnLocationChange($page, $1, 0)"
fi
[[ $browser != $$ ]] || sleep 100
)bash";

constexpr const char* add_pages =
    "qvtcctl connection add web name=one serverAddress=http://10.0.0.9/ >/dev/null; "
    "qvtcctl connection add web name=two serverAddress=http://10.0.0.8/ >/dev/null; "
    "qvtcctl connection add web name=lost serverAddress=http://nowhere/ >/dev/null";

// Its process is called otherwise than its program, by which the launch would end it.
TEST(QvtcctlTranscript, ABrowserShowsThePagesOfSeveralConnections) {
    const Screen screen("firefox-esr", 0);
    write_file("/tmp/asked", "");
    StandIn program("firefox");
    program.runs("exec firefox-esr \"$@\"");
    StandIn client("firefox-esr");
    client.runs(browser_with_tabs);
    Transcript transcript;
    const auto launch = [&](const std::string& words) {
        transcript.run("qvtcctl launch --wait " + words +
                       " 2>&1 | grep -e '^Note' -e '\"state' "
                       "-e means -e '(process' | sed 's/process [0-9]*/process N/'");
    };
    const auto show_all = [&] {
        for (const char* const id : {"288", "289", "290"})
            transcript.run("qvtcctl status " + std::string(id) + " | grep -v BCWebProgress");
    };
    transcript.run(add_pages);
    launch("288 --json");
    launch("289 --json");
    show_all();
    launch("290 --json");
    show_all();
    launch("289 --end-others --json");
    show_all();
    launch("288 --json");
    transcript.run("qvtcctl cancel 289");
    show_all();
    transcript.expect("browser_tabs");
}

TEST(QvtcctlTranscript, ABrowserThatTheLaunchEndsShowsItsPagesNoMore) {
    const Screen screen("firefox", 0);
    write_file("/tmp/asked", "");
    StandIn client("firefox");
    client.runs(browser_with_tabs);
    Transcript()
        .run(add_pages)
        .run("qvtcctl launch --wait 288 --json | grep state")
        .run("qvtcctl launch --wait 289 --json | grep -e state -A 4")
        .run("qvtcctl status 288")
        .run("qvtcctl status 289")
        .expect("browser_ended");
}

// No process is called "remote-view", which is what the launch ends.
TEST(QvtcctlTranscript, AClientOfTheSameKindStaysUnlessItIsToBeEnded) {
    const Screen screen("machine\": (\"remote-viewer\" \"Remote-viewer\")", 0);
    write_file("/tmp/asked", "");
    StandIn client("remote-viewer");
    client.runs("echo 'virt-viewer-DEBUG: main channel: opened'; sleep 100");
    Transcript transcript;
    const auto run = [&](const std::string& command) {
        transcript.run(command + " 2>&1 | sed '/: the client runs/d; /: its window is open/d; "
                                 "s/process [0-9]*/process N/'");
    };
    run("qvtcctl connection add spice name=one serverAddress=10.0.0.7 port=5930");
    run("qvtcctl connection add spice name=two serverAddress=10.0.0.7 port=5931");
    run("qvtcctl launch 64 --wait");
    run("qvtcctl launch 65 --wait");
    run("qvtcctl status 64");
    run("qvtcctl status 65");
    run("qvtcctl cancel 64");
    run("qvtcctl status 64");
    run("qvtcctl launch 64 --wait --end-others --json");
    run("qvtcctl status 65");
    run("qvtcctl cancel");
    transcript.expect("same_kind");
}

TEST(QvtcctlTranscript, AClientThatIsNotInstalled) {
    const Screen screen;
    Transcript transcript;
    transcript.run("qvtcctl connection add horizon name=pool serverAddress=10.0.0.9")
        .run("qvtcctl launch 160 --wait")
        .expect("not_installed");
}

TEST(QvtcctlTranscript, FollowUntilTheClientEnds) {
    const Screen screen("xfreerdp", 4);
    StandIn client("xfreerdp");
    client.runs("touch /tmp/running; until [[ -f /tmp/end ]]; do sleep 0.05; done\n"
                "echo 'ERRINFO_LOGOFF_BY_USER (0x0000000C)'");
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl launch 32; until [[ -f /tmp/running ]]; do sleep 0.05; done")
        .run("qvtcctl status 32 --follow &\n"
             "until grep -q connected /tmp/transcript/output; do sleep 0.05; done\n"
             "touch /tmp/end; wait $!")
        .expect("status_follow");
}

TEST(QvtcctlTranscript, FollowingEndsWhenNobodyTakesTheOutput) {
    const Screen screen("xfreerdp", 0);
    StandIn client("xfreerdp");
    client.keeps_running();
    write_file("/tmp/asked", "");
    Transcript transcript;
    transcript.run(add_office)
        .run("qvtcctl launch 32 --wait >/dev/null")
        .run("timeout 10 qvtcctl status 32 --follow >/dev/full")
        .expect("status_follow_lost");
}

TEST(QvtcctlTranscript, Brokers) {
    StandIn curl("curl");
    curl.prints({"{\"isMe\":true}\n", "404\n"});
    Transcript transcript;
    transcript.run("qvtcctl connection add broker name=hq serverAddress=10.0.0.1")
        .run("qvtcctl status 0")
        .run("qvtcctl status 0")
        .run("qvtcctl status 0 --json")
        .run("qvtcctl launch 0");
    transcript.expect("broker");
}

// Nothing of what ran may be left: neither the watching process, nor a zombie of it.
TEST(QvtcctlTranscript, TheWatchingProcessEndsByItself) {
    StandIn reset("/usr/bin/resetusb.sh");
    const Screen screen("xfreerdp", 0);
    StandIn client("xfreerdp");
    client.keeps_running();
    Transcript transcript;
    write_file("/tmp/asked", "");
    transcript.run(add_office).run("qvtcctl launch 32");
    const auto watching = [] { return std::system("pgrep -x qvtcctl >/dev/null") == 0; };
    EXPECT_TRUE(watching());
    // It holds nothing of its caller, who may be waiting for the end of a pipe.
    EXPECT_EQ(test::capture_stdout(
                  [] { EXPECT_EQ(std::system("readlink /proc/$(pgrep -x qvtcctl)/fd/[0-2]"), 0); }),
              "/dev/null\n/dev/null\n/dev/null\n");
    EXPECT_TRUE(test::wait_until([&] { return !watching(); }, std::chrono::seconds(40)));
    EXPECT_EQ(reset.calls(), StandIn::Calls{{}});
}

} // namespace
} // namespace qvtc::qvtcctl
