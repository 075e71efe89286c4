// Launches of RDP clients as their user sees them, with stand-ins for the clients.
#include "clients_on_screen.hpp"
#include "journeys/faulty_server.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::add_office;
using test::ending_client;
using test::FaultyServer;
using test::Screen;
using test::StandIn;
using test::Transcript;
using test::write_file;

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

} // namespace
} // namespace qvtc::qvtcctl
