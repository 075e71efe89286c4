// "qvtcctl doctor" as its user sees it.
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

constexpr const char* add_office = "qvtcctl connection add rdp name=office serverAddress=127.0.0.1 "
                                   "username=anna --password-stdin";

/// A terminal on which a connection can come up: a screen that answers and sound.
class Doctor : public testing::Test {
  protected:
    Doctor() {
        xwininfo.prints("  0x200001 \"x\"\n");
        pulseaudio.keeps_running();
        EXPECT_EQ(std::system("pulseaudio &"), 0);
        EXPECT_TRUE(test::wait_until([&] { return pulseaudio.calls().size() == 1; }));
    }

    StandIn xwininfo{"xwininfo"};
    StandIn pulseaudio{"pulseaudio"};
};

TEST_F(Doctor, FindsNothingWrong) {
    const StandIn client("xfreerdp");
    const FaultyServer server(test::negotiate_security(3, true), 3389);
    Transcript transcript;
    transcript.run(add_office, "secret\n").run("qvtcctl doctor 32").run("qvtcctl doctor 32 --json");
    transcript.expect("doctor_healthy");
    EXPECT_EQ(client.calls(), StandIn::Calls{}); // nothing was started
}

TEST_F(Doctor, FindsWhatIsWrong) {
    xwininfo.exits_with(1);
    EXPECT_EQ(std::system("killall -q pulseaudio"), 0);
    const StandIn client("xfreerdp");
    write_file("/home/root/usbdenied", "");
    Transcript transcript;
    transcript
        .run("qvtcctl connection add rdp name=office serverAddress=127.0.0.1 username=anna "
             "useCustomRDPPort=on rdpPort=3390 redirectAudio=on usbRedirection=on "
             "useRdGateway=on rdGatewayAddress=no-such-gateway.lan domain=D appFullpath=calc")
        .run("sed -i 's#<password/>#<password>abcde</password>#' /home/root/vpclientData.xml")
        .run("qvtcctl doctor 32")
        .run("qvtcctl doctor 32 --json");
    transcript.expect("doctor_ill");
}

TEST_F(Doctor, LooksAtEachKindOfConnection) {
    const StandIn viewer("vncviewer");
    const StandIn browser("firefox");
    const StandIn spice("remote-viewer");
    write_file("/etc/hosts", "127.0.0.1 localhost\n127.0.0.1 pages.lan\n");
    write_file("/home/root/remote-viewer", "");
    const FaultyServer server(
        test::show_certificate({"pages.lan",
                                "NotAfter: Jan  1 00:00:00 2099 GMT Verify return code: 0 (ok)",
                                "20150101000000Z", "20191231235959Z"}),
        8443);
    Transcript transcript;
    transcript.run("qvtcctl connection add vnc name=lab serverAddress=127.0.0.1::8443 port=5901")
        .run("qvtcctl connection set 224 --password-stdin", "secret\n")
        .run("qvtcctl doctor 224")
        .run("qvtcctl connection add web name=page serverAddress=https://pages.lan:8443/x")
        .run("qvtcctl doctor 288")
        .run("qvtcctl connection add web name=file serverAddress=file:///usr/share/a.html")
        .run("qvtcctl doctor 289")
        .run("qvtcctl connection add spice name=machine serverAddress=no-such-server.lan")
        .run("qvtcctl doctor 64")
        .run("qvtcctl connection add horizon name=pool serverAddress=10.9.9.9")
        .run("qvtcctl doctor 160")
        .run("qvtcctl connection add hdp name=box serverAddress=127.0.0.1")
        .run("qvtcctl doctor 256");
    transcript.expect("doctor_kinds");
}

// Whichever way it is asked, and whether the connection can be read or not.
TEST_F(Doctor, SaysThatTheSettingsDocumentIsDamaged) {
    const StandIn client("xfreerdp");
    const FaultyServer server(test::negotiate_security(3, true), 3389);
    Transcript transcript;
    transcript.run(add_office, "secret\n")
        .run("qvtcctl connection add rdp name=other serverAddress=127.0.0.1")
        .run("sed -i 's#</rdpItem_id_33>##' /home/root/vpclientData.xml")
        .run("qvtcctl doctor 32")
        .run("qvtcctl doctor 32 --json | grep -v -e ok -e advice")
        .run("qvtcctl doctor 34")
        .run("qvtcctl doctor")
        .run("echo garbage >/home/root/vpclientData.xml; qvtcctl doctor 32")
        .run("qvtcctl doctor 32 --json")
        .run("qvtcctl doctor")
        .run("qvtcctl doctor --json");
    transcript.expect("doctor_document_damaged");
}

// A terminal without IPv6 is the usual case, and names with an address of each kind are, too.
TEST_F(Doctor, JudgesAServerByTheAddressThatHasARoute) {
    const StandIn client("xfreerdp");
    write_file("/etc/hosts", "127.0.0.1 localhost\n127.0.0.1 both.lan\n2001:db8::1 both.lan\n");
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=office serverAddress=both.lan")
        .run("qvtcctl doctor 32 | grep -A 1 -e name -e port");
    transcript.expect("doctor_two_addresses");
}

// To be slow is not to speak something else.
TEST_F(Doctor, WaitsForACertificateOnlySoLong) {
    const StandIn browser("firefox");
    const FaultyServer silent(test::say_nothing, 8443);
    Transcript transcript;
    transcript.run("qvtcctl connection add web name=page serverAddress=https://127.0.0.1:8443/")
        .run("qvtcctl doctor 288 | grep -A 1 -e port -e certificate");
    transcript.expect("doctor_silent");
}

TEST_F(Doctor, WantsAConnection) {
    Transcript transcript;
    transcript.run("qvtcctl doctor 33").run("qvtcctl doctor x").run("qvtcctl doctor --help");
    transcript.expect("doctor_refused");
}

} // namespace
} // namespace qvtc::qvtcctl
