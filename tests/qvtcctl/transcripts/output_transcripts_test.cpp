// What every verb has in common: where its output goes, and what it never holds.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

constexpr const char* settings = "/home/root/vpclientData.xml";

TEST(QvtcctlTranscript, OutputThatCannotBeWrittenIsAFailure) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5 >/dev/full")
        .run("qvtcctl connection export >/dev/full")
        .run("qvtcctl connection export >&-")
        .run("qvtcctl connection list --json >/dev/full")
        .run("qvtcctl info --json >/dev/full")
        .run("qvtcctl connection types >/dev/full")
        .run("qvtcctl log >/dev/full")
        .run("timeout 10 qvtcctl log --follow >/dev/full")
        .run("qvtcctl --version >/dev/full")
        .run("qvtcctl --help >/dev/full")
        .run("qvtcctl complete '' >/dev/full")
        .run("qvtcctl connection show 33 --json >/dev/full");
    transcript.expect("output_lost");
}

// What is opened first would otherwise get the number of the closed stream, and the answer in it.
TEST(QvtcctlTranscript, AClosedStreamIsNoFileOfTheTerminals) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5 >&- 2>&- <&-")
        .run("qvtcctl connection set 32 name=b --json <&- >&-")
        .run("qvtcctl connection list 2>&- <&-");
    transcript.expect("output_closed");
}

TEST(QvtcctlTranscript, NoCharacterOfAValueReachesATty) {
    QVTC_NEED_PROGRAM("ip");
    StandIn qvplugin("qvplugin");
    qvplugin.runs(
        "case $2 in 50) printf '{\"vendor\":\"a\\302\\233\\342\\200\\256\\351\"}' | base64 -w0 "
        ";; 87) printf 'a\\302\\233b' | base64 -w0 ;; esac");
    StandIn route("route");
    route.runs("printf 'default 10.0.0.1\\033]0;x\\007 0.0.0.0 UG 0 0 0 eth0\\n'");
    // A name that is shown from right to left, a sequence that clears a screen, in 7 and 8 bits.
    test::write_file(settings,
                     "<ThinClientConfig>"
                     "<configItem><tc_config_param_1>5\u009B2J</tc_config_param_1>"
                     "</configItem><hdpItem_id_256><id>256</id><type>8</type>"
                     "<name>a\u202Efdp\u200B</name><serverAddress>h\u009B2J</serverAddress>"
                     "</hdpItem_id_256></ThinClientConfig>");
    Transcript transcript;
    transcript.run("ip link add eth0 type veth peer name far && ip link set eth0 up");
    for (const char* const command :
         {"connection list", "connection export", "connection remove 257", "delay", "delay --json",
          "oem", "oem --json", "display refresh", "display refresh --json", "network route",
          "network route --json"}) {
        transcript.run("qvtcctl " + std::string(command));
    }
    transcript.run("qvtcctl connection list --json | grep -e name -e Address -e error");
    transcript.expect("output_hostile");
    for (const char* const raw : {"\u009B", "\u202E", "\u200B", "\xE9", "\x1b"})
        EXPECT_EQ(transcript.text().find(raw), std::string::npos) << raw;
}

// The library takes a document that it cannot read for an empty one.
TEST(QvtcctlTranscript, ADocumentThatCannotBeReadIsNotAnEmptyOne) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("qvtcctl connection export >/tmp/backup.json")
        .run("echo garbage >/home/root/vpclientData.xml; qvtcctl connection list")
        .run("qvtcctl connection list --json")
        .run("qvtcctl delay 5")
        .run("qvtcctl log --lines 0")
        .run("qvtcctl battery --json")
        .run("echo '<Foo/>' >/home/root/vpclientData.xml; qvtcctl connection show 32")
        .run("rm /home/root/vpclientData.xml; mkdir /home/root/vpclientData.xml; qvtcctl delay")
        .run("rmdir /home/root/vpclientData.xml; mkfifo /home/root/vpclientData.xml; qvtcctl delay")
        .run("rm /home/root/vpclientData.xml; qvtcctl delay")
        .run(": >/home/root/vpclientData.xml; qvtcctl delay");
    transcript.expect("document_unreadable");
}

TEST(QvtcctlTranscript, ADamagedDocumentIsNotTakenForAWholeOne) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("qvtcctl connection add rdp name=b serverAddress=10.0.0.6")
        .run("head -c -80 /home/root/vpclientData.xml >/tmp/cut; cp /tmp/cut "
             "/home/root/vpclientData.xml; qvtcctl delay")
        .run("qvtcctl delay --json")
        .run("qvtcctl delay 5")
        .run("qvtcctl delay")
        .run("echo '<ThinClientConfig><rdpItem' >/home/root/vpclientData.xml; qvtcctl connection "
             "list rdp")
        .run("qvtcctl connection show 32");
    transcript.expect("document_damaged");
}

// An interrupted rewrite in place leaves half a document, and the whole one beside it or in /run.
TEST(QvtcctlTranscript, ADocumentThatIsBeingRewrittenIsNotDamaged) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("cd /home/root; cp vpclientData.xml .vpclientData.xml.qvtc-kept; "
             "echo half >vpclientData.xml; qvtcctl connection list")
        .run("mv /home/root/.vpclientData.xml.qvtc-kept "
             "'/run/.home!root!vpclientData.xml.qvtc-kept'; qvtcctl connection list")
        .run("mv /home/root/vpclientData.xml /home/root/half; mv "
             "'/run/.home!root!vpclientData.xml.qvtc-kept'"
             " /home/root/.half.qvtc-kept; ln -s half /home/root/vpclientData.xml; "
             "qvtcctl connection list")
        .run("qvtcctl connection set 32 name=b; rm -f /home/root/.half.qvtc-kept; "
             "qvtcctl connection list");
    transcript.expect("document_rewritten");
}

TEST(QvtcctlTranscript, AnImportRepairsTheDocument) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("qvtcctl connection export >/tmp/backup.json")
        .run("echo garbage >/home/root/vpclientData.xml")
        .run("qvtcctl connection import --dry-run /tmp/backup.json")
        .run("qvtcctl connection import /tmp/none.json")
        .run("cat /home/root/vpclientData.xml")
        .run("qvtcctl connection import /tmp/backup.json")
        .run("qvtcctl connection list")
        .run("cat /home/root/vpclientData.xml.damaged")
        .run("rm /home/root/vpclientData.xml; mkdir /home/root/vpclientData.xml")
        .run("qvtcctl connection import /tmp/backup.json --json")
        .run("ls /home/root");
    transcript.expect("document_repaired");
}

} // namespace
} // namespace qvtc::qvtcctl
