// Clients of any kind as their user sees them, with stand-ins for the clients.
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
