// Time, information and factory reset, as a person sees them who types the commands.
#include "reset_programs.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

/// A clock that can be set, as the tests' terminals have no right to set theirs.
class Clock {
  public:
    Clock() : date_("date") {
        date_.runs("if [[ $1 == -s ]]; then /bin/date -d \"$2\" +%s >/tmp/clock; exit; fi\n"
                   "cat /tmp/clock 2>/dev/null || echo 1750000000");
    }

  private:
    StandIn date_;
    StandIn hwclock_{"hwclock"};
    StandIn clock_{"clock"};
    StandIn synchronise_{"ntpdate-sync"};
};

TEST(QvtcctlTranscript, Time) {
    QVTC_NEED(test::file_exists("/usr/share/zoneinfo/posix/Asia/Tokyo"), "no zone data");
    const Clock clock;
    Transcript transcript;
    transcript.run("qvtcctl time")
        .run("qvtcctl time --zone Asia/Tokyo")
        .run("cat /etc/timezone; readlink /etc/localtime")
        .run("qvtcctl time --ntp pool.example.org")
        .run("grep NTPSERVERS /etc/default/ntpdate")
        .run("qvtcctl time --json")
        .run("qvtcctl time --set '2026-12-31 23:59'")
        .run("qvtcctl time --no-ntp --zone Europe/Vienna")
        .run("qvtcctl time --zone Asia/Tokio")
        .run("qvtcctl time --zone Mars/Olympus")
        .run("qvtcctl time --set tomorrow")
        .run("qvtcctl time --set '2026-02-30 12:00'")
        .run("qvtcctl time --ntp 'a b'")
        .run("qvtcctl time --ntp a.example --no-ntp")
        .run("qvtcctl time --ntp a.example --set '2026-12-31 23:59'")
        .run("qvtcctl time");
    transcript.expect("time");
}

TEST(QvtcctlTranscript, ATimeServerThatTheClockCannotFollow) {
    QVTC_NEED(test::file_exists("/usr/share/zoneinfo/posix/Etc/UTC"), "no zone data");
    Transcript transcript;
    {
        const Clock clock;
        StandIn getent("getent");
        getent.runs("[ $2 = time.example ]");
        transcript.run("qvtcctl time --ntp time.example")
            .run("qvtcctl time --ntp no-such-host.example")
            .run("qvtcctl time --ntp no-such-host.example --json")
            .run("qvtcctl time");
    }
    transcript.run("rm -f /usr/local/bin/ntpdate-sync /usr/sbin/ntpdate-sync")
        .run("qvtcctl time --ntp time.example 2>&1 | tail -n 2")
        .run("qvtcctl time 2>&1 | tail -n 2");
    transcript.expect("time_not_followed");
}

TEST(QvtcctlTranscript, TimeThatTheSystemDoesNotTake) {
    QVTC_NEED(test::file_exists("/usr/share/zoneinfo/posix/Etc/UTC"), "no zone data");
    Transcript transcript;
    transcript.run("qvtcctl time --set '2001-12-31 23:59' | head -1");
    transcript.expect("time_not_set");
}

TEST(QvtcctlTranscript, Information) {
    StandIn cat("cat");
    cat.runs(
        "case $1 in /proc/cpuinfo) echo 'model name\t: Intel(R) Celeron(R) N5095 @ 2.00GHz' ;; "
        "/proc/meminfo) echo 'MemTotal:        7929316 kB' ;; *) /bin/cat \"$@\" ;; esac");
    StandIn ifconfig("ifconfig");
    ifconfig.prints("        ether 52:54:00:12:34:56  txqueuelen 1000\n");
    StandIn uname("uname");
    uname.prints("Linux terminal 5.14.3 x86_64\n");
    StandIn blockdev("blockdev");
    blockdev.prints("62537072640\n");
    test::write_file("/dev/sda", "");
    const StandIn rdp_client("xfreerdp");
    Transcript transcript;
    // Whether the others are installed is the machine's affair.
    transcript.run("qvtcctl info | grep -v 'SPICE\\|VNC\\|Web'").run("qvtcctl info x");
    test::write_file("/home/root/lastupdate", "20260301120000\n");
    transcript.run("qvtcctl host-name desk")
        .run("qvtcctl info --json | grep -v 'remote-viewer\\|vncviewer\\|firefox'");
    transcript.expect("info");
}

TEST(QvtcctlTranscript, InformationThatCannotBeLookedUpIsUnknown) {
    StandIn cat("cat");
    cat.runs("case $1 in /proc/cpuinfo) echo 'model name\t: Other' ;; "
             "/proc/meminfo) echo 'MemTotal:        7929316 kB' ;; esac");
    StandIn blockdev("blockdev");
    blockdev.runs("exit 1");
    StandIn uname("uname");
    uname.prints("Linux terminal 6.1 x86_64\n");
    Transcript transcript;
    transcript.run("qvtcctl info | head -n 11").run("qvtcctl info --json | head -n 11");
    transcript.expect("info_unknown");
}

TEST(QvtcctlTranscript, FactoryReset) {
    const test::ResetPrograms programs;
    Transcript transcript;
    transcript.run("qvtcctl factory-reset --plan")
        .run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5")
        .run("qvtcctl connection add vnc name=lab serverAddress=10.0.0.6")
        .run("qvtcctl delay 20")
        .run("qvtcctl factory-reset --plan --json")
        .run("qvtcctl factory-reset");
    EXPECT_TRUE(programs.reboot.calls().empty());
    transcript.run("qvtcctl manager-password --password-stdin", "secret\n")
        .run("sed -i 's#</configItem>#<tc_config_param_11>4711</tc_config_param_11>"
             "<tc_config_param_9>useNTP=off</tc_config_param_9>"
             "<networkconf-eth1>x</networkconf-eth1>&#' /home/root/vpclientData.xml; "
             "ip link add eth1 type veth peer name far1")
        .run("qvtcctl factory-reset --plan | head -n 13");
    transcript.run("qvtcctl delay").run("qvtcctl factory-reset --yes --json");
    EXPECT_EQ(programs.reboot.calls().size(), 1U);
    transcript.run("qvtcctl connection list").run("qvtcctl delay");
    transcript.expect("factory_reset");
}

TEST(QvtcctlTranscript, AFactoryResetThatCannotBeStoredIsReported) {
    const test::ResetPrograms programs;
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5")
        .run("mount --bind /home/root /home/root && mount -o remount,bind,ro /home/root")
        .run("qvtcctl factory-reset --yes | tail -n 1; exit ${PIPESTATUS[0]}");
    transcript.expect("factory_reset_not_stored");
}

} // namespace
} // namespace qvtc::qvtcctl
