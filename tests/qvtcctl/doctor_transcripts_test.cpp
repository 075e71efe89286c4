// "qvtcctl doctor" as its user sees it.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;
using test::write_file;

/// A terminal on which a connection can come up: a screen that answers, sound, and a server's
/// program at port 3389 of this terminal itself.
class Doctor : public testing::Test {
  protected:
    Doctor() {
        xwininfo.prints("  0x200001 \"x\"\n");
        pulseaudio.keeps_running();
        EXPECT_EQ(std::system("pulseaudio &"), 0);
        EXPECT_TRUE(test::wait_until([&] { return pulseaudio.calls().size() == 1; }));
    }

    /// Listens at a port, until the terminal is gone.
    static void listen_at(const std::string& port) {
        write_file("/tmp/listen.py",
                   "import socket, sys, time\n"
                   "server = socket.create_server(('127.0.0.1', int(sys.argv[1])))\n"
                   "open('/tmp/listens', 'w').close()\n"
                   "time.sleep(1000)\n");
        EXPECT_EQ(std::system(("python3 /tmp/listen.py " + port + " &").c_str()), 0);
        EXPECT_TRUE(test::wait_until([] { return test::file_exists("/tmp/listens"); }));
    }

    StandIn xwininfo{"xwininfo"};
    StandIn pulseaudio{"pulseaudio"};
};

constexpr const char* certificate =
    "-----BEGIN CERTIFICATE-----\n"
    "subject=CN = localhost\n"
    "   v:NotBefore: Nov 21 18:08:36 2016 GMT; NotAfter: Dec  1 18:08:36 2016 GMT\n"
    "Verify return code: 10 (certificate has expired)\n";

TEST_F(Doctor, FindsNothingWrong) {
    QVTC_NEED_PROGRAM("python3");
    const StandIn client("xfreerdp");
    listen_at("3389");
    Transcript transcript;
    transcript
        .run("qvtcctl connection add rdp name=office serverAddress=127.0.0.1 username=anna "
             "--password-stdin",
             "secret\n")
        .run("qvtcctl doctor 32")
        .run("qvtcctl doctor 32 --json");
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
    QVTC_NEED_PROGRAM("python3");
    const StandIn viewer("vncviewer");
    const StandIn browser("firefox");
    const StandIn spice("remote-viewer");
    StandIn openssl("openssl");
    openssl.prints(certificate);
    write_file("/etc/hosts", "127.0.0.1 localhost\n127.0.0.1 pages.lan\n");
    write_file("/home/root/remote-viewer", "");
    listen_at("8443");
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

TEST_F(Doctor, WantsAConnection) {
    Transcript transcript;
    transcript.run("qvtcctl doctor 33").run("qvtcctl doctor x").run("qvtcctl doctor --help");
    transcript.expect("doctor_refused");
}

} // namespace
} // namespace qvtc::qvtcctl
