// qvtcctl as its user sees it, against the real library: the stored connections.
#include "qvtcctl/command/command_line.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::Transcript;
using test::write_file;

constexpr const char* settings = "/home/root/vpclientData.xml";

TEST(QvtcctlTranscript, HelpOfEveryCommand) {
    Transcript transcript;
    transcript.run("qvtcctl --help");
    for (const Group& group : groups()) {
        if (!group.name.empty()) transcript.run(Place{&group}.full_name() + " --help");
        for (const Verb* verb : group.verbs) {
            transcript.run(Place{&group, verb}.full_name() + " --help");
        }
    }
    transcript.run("qvtcctl --version");
    transcript.expect("help");
}

TEST(QvtcctlTranscript, BadUsage) {
    Transcript()
        .run("qvtcctl")
        .run("qvtcctl connection")
        .run("qvtcctl conection list")
        .run("qvtcctl connection lst")
        .run("qvtcctl connection list --jsno")
        .run("qvtcctl connection list rdp vnc")
        .run("qvtcctl connection list rpd")
        .run("qvtcctl connection show")
        .run("qvtcctl connection show office")
        .run("qvtcctl connection show 200")
        .run("qvtcctl connection add rdp")
        .run("qvtcctl launch 32 --timeout")
        .run("qvtcctl launch 32 --wait --timeout soon")
        .run("qvtcctl launch 100")
        .run("qvtcctl status 130")
        .run("qvtcctl delay soon")
        .run("qvtcctl connection lst --json")
        .expect("bad_usage");
    EXPECT_FALSE(test::file_exists(settings));
}

TEST(QvtcctlTranscript, AddListShowSetAndRemove) {
    Transcript()
        .run("qvtcctl connection list")
        .run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5 username=anna")
        .run(
            "qvtcctl connection add rdp name=lab serverAddress=10.0.0.6 colorDepth=16 domain='R&D'")
        .run("qvtcctl connection add web name='Shop \xE4\xB8\xAD\xE6\x96\x87' "
             "serverAddress='http://shop/?a&b'")
        .run("qvtcctl connection list")
        .run("qvtcctl connection list 1")
        .run("qvtcctl connection list vnc")
        .run("qvtcctl connection show 33")
        .run("qvtcctl connection set 33 domain= redirectAudio=on")
        .run("qvtcctl connection show 33")
        .run("qvtcctl connection show 33 --json")
        .run("qvtcctl connection remove 33 99")
        .run("qvtcctl connection remove 33 288")
        .run("qvtcctl connection list --json")
        .run("qvtcctl connection remove 33")
        .expect("connections");
}

TEST(QvtcctlTranscript, EveryVerbAnswersInJson) {
    Transcript()
        .run("qvtcctl connection add vnc name=lab serverAddress=10.0.0.7 port=5901 --json")
        .run("qvtcctl connection set 224 name=lab2 --json")
        .run("qvtcctl connection remove 224 --json")
        .run("qvtcctl connection show 224 --json")
        .run("qvtcctl connection export --json")
        .run("qvtcctl connection types --json")
        .run("qvtcctl connection fields web --json")
        .run("qvtcctl cancel --json")
        .run("qvtcctl delay --json")
        .run("qvtcctl delay 5 --json")
        .expect("json");
}

TEST(QvtcctlTranscript, RefusedValuesChangeNothing) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5");
    const std::string before = test::read_file(settings);
    transcript.run("qvtcctl connection add rdp name='my office' serverAddress=10.0.0.5")
        .run("qvtcctl connection add rdp name=x")
        .run("qvtcctl connection add rdp name=x serverAddress=abc")
        .run("qvtcctl connection add rdp name=x serverAddress=10.0.0.5 colorDepth=")
        .run("qvtcctl connection add rdp nam=x serverAddress=10.0.0.5")
        .run("qvtcctl connection add rdp name=x serverAddress=10.0.0.5 password=secret")
        .run("qvtcctl connection set 32 rdpPort=70000")
        .run("qvtcctl connection set 32 useNLA=yes")
        .run("qvtcctl connection set 32 domain='50%'")
        .run("qvtcctl connection set 32 domain=$'a\\nb'")
        .run("qvtcctl connection set 32 domain=" + std::string(64, 'x'))
        .run("qvtcctl connection set 32 id=33")
        .run("qvtcctl connection set 32")
        .run("qvtcctl connection set 33 name=x")
        .run("qvtcctl connection set 32 domain='a|b' --json")
        .run("qvtcctl connection set 32 --password --password-stdin", "x\n");
    transcript.expect("refused");
    EXPECT_EQ(test::read_file(settings), before);
}

TEST(QvtcctlTranscript, AStoredValueThatAChangeWouldLoseIsNotLost) {
    Transcript()
        .run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5 workDir=C:/Users")
        .run("sed -i 's#C:/Users#C:|Users#' /home/root/vpclientData.xml")
        .run("qvtcctl connection set 32 name=desk")
        .run("qvtcctl connection set 32 name=desk workDir=C:/Users")
        .expect("stored_value");
}

TEST(QvtcctlTranscript, NotesOnValuesWithoutEffect) {
    Transcript()
        .run("qvtcctl connection add rdp name=x serverAddress=10.0.0.5 port=3390 rdpPort=3390")
        .run("qvtcctl connection set 32 useRdGateway=on rdGatewayAddress=gw.example")
        .run("qvtcctl connection add vnc name=x serverAddress=10.0.0.5 port=5901 useGFX=on")
        .expect("notes");
}

TEST(QvtcctlTranscript, FieldsAndTypes) {
    Transcript()
        .run("qvtcctl connection types")
        .run("qvtcctl connection fields")
        .run("qvtcctl connection fields spice")
        .expect("fields");
}

TEST(QvtcctlTranscript, PasswordsFromStandardInput) {
    Transcript()
        .run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5 username=u --password-stdin",
             "p~~~\xC3\xA4=\"|%&\\\n")
        .run("qvtcctl connection add vnc name=b serverAddress=10.0.0.7 --password-stdin", "a&b+c")
        .run("qvtcctl connection list")
        .run("qvtcctl connection list --show-passwords")
        .run(
            "qvtcctl connection set 32 rdGatewayDomain=g --password-stdin --gateway-password-stdin",
            "one\ntwo\n")
        .run("qvtcctl connection show 32")
        .run("qvtcctl connection show 32 --show-passwords")
        .run("qvtcctl connection set 32 password= ")
        .run("qvtcctl connection list --show-passwords --json | grep '\"password\"'")
        .run("qvtcctl connection set 32 --password-stdin", "")
        .run("qvtcctl connection set 32 --password-stdin", "\n")
        .run("qvtcctl connection set 32 --password-stdin", "one\ntwo\n")
        .run("qvtcctl connection set 32 --password-stdin", std::string(46, 'x') + "\n")
        .run("qvtcctl connection set 224 --password-stdin", "a|b\n")
        .run("qvtcctl connection set 224 --password-stdin", "a b\n")
        .run("qvtcctl connection set 99 --password-stdin", "x\n")
        .expect("passwords");
}

TEST(QvtcctlTranscript, PasswordsFromTheTerminal) {
    Transcript()
        .run_on_terminal("qvtcctl connection add rdp name=a serverAddress=10.0.0.5 --password "
                         "--gateway-password",
                         "secret\nsecret\ngate\ngate\n")
        .run_on_terminal("qvtcctl connection set 32 --password", "one\ntwo\n")
        .run("qvtcctl connection list --show-passwords")
        .run("setsid -w qvtcctl connection set 32 --password")
        // Ctrl-C at the prompt leaves a terminal that still echoes.
        .run_on_terminal(
            "trap : INT; qvtcctl connection set 32 --password; echo; stty -a | grep -o ' echo '",
            "sec\x03")
        .expect("passwords_asked");
}

TEST(QvtcctlTranscript, ExportAndImport) {
    Transcript transcript;
    transcript
        .run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5 --password-stdin",
             "secret\n")
        .run("qvtcctl connection add web name=b serverAddress='http://b/?x&y'")
        .run("qvtcctl connection export --show-passwords | tee /tmp/all.json")
        .run("qvtcctl connection export rdp")
        .run("qvtcctl connection import /tmp/all.json")
        .run("qvtcctl connection set 32 username=u")
        .run("qvtcctl connection import --dry-run /tmp/all.json")
        .run("qvtcctl connection import --replace /tmp/all.json")
        .run("qvtcctl connection set 32 username=u")
        .run("qvtcctl connection import - </tmp/all.json")
        .run("qvtcctl connection remove 32 33 288")
        .run("qvtcctl connection import /tmp/all.json --json")
        .run("qvtcctl connection export --show-passwords | cmp - /tmp/all.json")
        // A password that was left out is not taken away either.
        .run("qvtcctl connection export 2>&1 | sed s/10.0.0.5/10.0.0.9/ | sed /^Note/d "
             ">/tmp/bare.json")
        .run("qvtcctl connection import --replace /tmp/bare.json")
        .run("qvtcctl connection list --show-passwords");
    transcript.expect("transfer");
}

TEST(QvtcctlTranscript, ImportRefusesAllOrNothing) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5");
    const std::string before = test::read_file(settings);
    const std::string head = R"({"format": "qvtcctl-connections", "version": 1, "connections": [)"
                             R"({"type": "vnc", "serverAddress": "10.0.0.7"},)";
    transcript.run("qvtcctl connection import /tmp/none.json")
        .run("qvtcctl connection import", "")
        .run("qvtcctl connection import /tmp")
        .run("mkfifo /tmp/fifo; timeout 10 qvtcctl connection import /tmp/fifo")
        .run("qvtcctl connection import /dev/zero --json")
        .run("qvtcctl connection import </dev/zero")
        .run("head -c 5000000 /dev/zero >/tmp/long.json; qvtcctl connection import /tmp/long.json")
        .run("qvtcctl connection import </tmp")
        .run("qvtcctl connection import <&-")
        .run("qvtcctl connection import", R"({"connections": []})")
        .run("qvtcctl connection import",
             head + R"({"type": "rdp", "serverAddress": "10.0.0.5", "colorDepth": ""}]})")
        .run("qvtcctl connection import",
             head + R"({"type": "web", "serverAddress": "http://a=b"}]})")
        .run("qvtcctl connection import --unchecked",
             head + R"({"type": "web", "serverAddress": "http://a=b"}]})");
    EXPECT_EQ(test::read_file(settings), before);
    transcript.run("qvtcctl connection import --unchecked",
                   head + R"({"type": "rdp", "useNLA": "1"}]})");
    transcript.expect("import_refused");
}

TEST(QvtcctlTranscript, TimeoutWithoutWaitIsRefused) {
    Transcript transcript;
    transcript.run("qvtcctl launch 32 --timeout 5").expect("launch_timeout_only");
}

TEST(QvtcctlTranscript, ImportGivesTheSameDefaultsAndNotesAsAdd) {
    Transcript transcript;
    transcript
        .run("qvtcctl connection import",
             R"({"format": "qvtcctl-connections", "version": 1, "connections": [)"
             R"({"type": "rdp", "serverAddress": "10.0.0.5"},)"
             R"({"type": "vnc", "serverAddress": "10.0.0.7", "port": 5901, "name": "lab"}]})")
        .run("qvtcctl connection show 32")
        .run("qvtcctl connection add vnc name=lab serverAddress=10.0.0.7 port=5901")
        .expect("import_defaults");
}

TEST(QvtcctlTranscript, AFullType) {
    Transcript transcript;
    transcript
        .run("for i in {1..32}; do qvtcctl connection add hdp name=c$i serverAddress=10.0.0.$i; "
             "done | tail -n 1")
        .run("qvtcctl connection add hdp name=x serverAddress=10.0.0.5")
        .run("qvtcctl connection remove 270; qvtcctl connection add hdp name=x "
             "serverAddress=10.0.0.5")
        .expect("full_type");
}

TEST(QvtcctlTranscript, SeveralAtOnceLoseNothing) {
    Transcript()
        .run(
            "for i in {1..8}; do qvtcctl connection add hdp serverAddress=10.0.0.$i & done | sort; "
            "wait")
        .run("for i in {1..8}; do qvtcctl connection set 256 sport=$i & "
             "qvtcctl connection set 256 username=u$i & done | sort | uniq -c; wait")
        .run("qvtcctl connection show 256 --json | grep -c -e '\"sport\": \"[1-8]\"' "
             "-e '\"username\": \"u[1-8]\"'")
        .expect("several_at_once");
}

// The kernel's list of locks marks who waits for one with an arrow.
TEST(QvtcctlTranscript, AChangeWaitsForTheOneBeforeIt) {
    write_file("/tmp/hold", "flock -o /run/qvtcctl.lock bash -c 'touch /tmp/held; until [[ -f "
                            "/tmp/release ]]; do sleep 0.02; done'\n");
    Transcript()
        .run("qvtcctl connection add hdp name=a serverAddress=10.0.0.5")
        .run("bash /tmp/hold & until [[ -f /tmp/held ]]; do sleep 0.02; done\n"
             "qvtcctl connection set 256 username=u &\n"
             "until grep -q -e '->' /proc/locks; do sleep 0.02; done\n"
             "qvtcctl connection list; touch /tmp/release; wait; qvtcctl connection list")
        .expect("change_waits");
}

TEST(QvtcctlTranscript, WhatTheTerminalDoesNotTakeIsReported) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("qvtcctl connection export >/tmp/a.json")
        // A document of another kind is never changed by the library.
        .run("sed -i 's/ThinClientConfig/Other/' /home/root/vpclientData.xml")
        .run("qvtcctl connection list")
        .run("qvtcctl connection add rdp name=b serverAddress=10.0.0.6")
        .run("qvtcctl connection import /tmp/a.json")
        .run("qvtcctl delay 5")
        .run("qvtcctl delay 5 --json");
    transcript.expect("not_taken");
}

// The document holds a damaged record that nobody lists: what is stored over it does not read back
// as it was written. So the last of three connections cannot be stored.
TEST(QvtcctlTranscript, AnImportThatIsNotTakenIsPutBack) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("sed -i "
             "'s#</ThinClientConfig>#<rdpItem_id_40><name/><name>ghost</name></rdpItem_id_40>&#' "
             "/home/root/vpclientData.xml")
        .run("qvtcctl connection import --replace",
             R"({"format": "qvtcctl-connections", "version": 1, "connections": [)"
             R"({"id": 32, "type": "rdp", "serverAddress": "10.0.0.6", "useGFX": "on"},)"
             R"({"id": 33, "type": "rdp", "serverAddress": "10.0.0.7", "useGFX": "on"},)"
             R"({"id": 40, "type": "rdp", "serverAddress": "10.0.0.8", "useGFX": "on"}]})")
        .run("qvtcctl connection list")
        .run("qvtcctl connection show 32");
    transcript.expect("import_put_back");
}

// A full disk takes neither the change nor its undoing.
TEST(QvtcctlTranscript, AnImportThatDoesNotFitIsReported) {
    Transcript transcript;
    transcript
        .run("for i in {1..20}; do qvtcctl connection add hdp name=c$i serverAddress=10.0.0.$i; "
             "done | tail -n 1")
        .run("qvtcctl connection export >/tmp/all.json")
        .run("rm /home/root/vpclientData.xml; mount -t tmpfs -o size=28k none /home/root")
        .run("qvtcctl connection import /tmp/all.json");
    transcript.expect("import_disk_full");
}

TEST(QvtcctlTranscript, WhatIsThereAlreadyIsNotStoredAgain) {
    const std::string state = "stat -c %y-%i /home/root/vpclientData.xml";
    Transcript()
        .run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5 domain=corp")
        .run(state + " >/tmp/before; qvtcctl connection set 32 domain=corp; " +
             "qvtcctl connection set 32 domain=corp --json | head -n 2; " + state +
             " | diff /tmp/before -")
        .run("qvtcctl connection set 32 domain=home --json | head -n 2")
        .expect("unchanged");
}

TEST(QvtcctlTranscript, Delay) {
    Transcript()
        .run("qvtcctl delay")
        .run("qvtcctl delay 7")
        .run("qvtcctl delay")
        .run("qvtcctl delay 0")
        .run("qvtcctl delay 86401")
        .expect("delay");
}

/// Other users cannot read a checkout below /root, so the program and its library are copied out.
void install_for_everybody() {
    std::filesystem::permissions(QVTC_PROJECT, std::filesystem::perms::owner_all);
    ASSERT_EQ(
        std::system("set -e; cd /usr/local\n"
                    "cp \"$(ldd bin/qvtcctl | sed -n 's/.*libqvtcapi.* => \\(.*\\) (.*/\\1/p')\" "
                    "lib/libqvtcapi.so.0\n"
                    "cp --remove-destination \"$(readlink bin/qvtcctl)\" bin/qvtcctl\n"
                    "ldconfig"),
        0);
}

TEST(QvtcctlTranscript, OnlyRootMayDoIt) {
    QVTC_NEED(test::terminal_mode() == test::TerminalMode::root, "there is no second user here");
    const std::string somebody = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    Transcript transcript;
    install_for_everybody();
    transcript.run(somebody + "qvtcctl connection list")
        .run(somebody + "qvtcctl connection add rdp name=x")
        .run(somebody + "qvtcctl connection types | head -n 2")
        .expect("only_root");
}

TEST(QvtcctlTranscript, AMachineThatIsNoTerminal) {
    Transcript()
        .run("mv /home/root /home/elsewhere; qvtcctl delay; status=$?; mv /home/elsewhere "
             "/home/root; exit $status")
        .expect("no_terminal");
}

TEST(QvtcctlTranscript, TheLibrarysChatterIsShownForDebuggingOnly) {
    Transcript()
        .run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("qvtcctl connection add rdp name=b serverAddress=10.0.0.6 --debug")
        .expect("debug");
}

} // namespace
} // namespace qvtc::qvtcctl
