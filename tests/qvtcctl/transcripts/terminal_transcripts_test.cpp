// Power, host name, manager password and update, as a person sees them who types the commands.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

TEST(QvtcctlTranscript, Power) {
    const StandIn systemctl("systemctl");
    const StandIn shutdown("shutdown");
    const StandIn killall("killall");
    StandIn dhclient("dhclient");
    const StandIn networking("/etc/init.d/networking");
    Transcript transcript;
    transcript.run("qvtcctl power reboot");
    EXPECT_TRUE(systemctl.calls().empty());
    transcript.run("qvtcctl power reboot --yes");
    EXPECT_EQ(systemctl.calls(), (StandIn::Calls{{"--force", "reboot"}}));
    transcript.run("qvtcctl power shutdown --json").run("qvtcctl power shutdown --yes --json");
    EXPECT_EQ(shutdown.calls(), (StandIn::Calls{{"now"}}));
    transcript.run("qvtcctl power network-repair");
    EXPECT_TRUE(dhclient.calls().empty());
    dhclient.runs("ip link add eth0 type veth peer name far0; "
                  "ifconfig eth0 192.168.77.51 netmask 255.255.255.0");
    transcript.run("qvtcctl power network-repair --yes")
        .run("qvtcctl power network-repair --yes --json");
    EXPECT_EQ(dhclient.calls(), (StandIn::Calls{{}, {}}));
    transcript.run("qvtcctl power").run("qvtcctl power reboot now");
    transcript.expect("power");
}

TEST(QvtcctlTranscript, ANetworkThatWasNotRepairedIsNotClaimedToBe) {
    Transcript transcript;
    {
        const StandIn killall("killall");
        const StandIn dhclient("dhclient");
        transcript.run("qvtcctl power network-repair --yes");
        EXPECT_EQ(dhclient.calls().size(), 1U);
    }
    transcript.run(
        "PATH=$(dirname $(realpath $(command -v qvtcctl))) qvtcctl power network-repair --yes");
    transcript.expect("power_not_repaired");
}

TEST(QvtcctlTranscript, PowerAsksOnATerminal) {
    const StandIn systemctl("systemctl");
    Transcript transcript;
    transcript.run_on_terminal("echo n | script -qec 'qvtcctl power reboot' /dev/null");
    EXPECT_TRUE(systemctl.calls().empty());
    transcript.run_on_terminal("echo y | script -qec 'qvtcctl power reboot' /dev/null");
    EXPECT_EQ(systemctl.calls(), (StandIn::Calls{{"--force", "reboot"}}));
    transcript.expect("power_asked");
}

TEST(QvtcctlTranscript, HostName) {
    Transcript transcript;
    transcript.run("qvtcctl host-name")
        .run("qvtcctl host-name reception-2")
        .run("cat /etc/hostname")
        .run("qvtcctl host-name --json")
        .run("stat -c %y-%i /etc/hostname /home/root/vpclientData.xml >/tmp/before; "
             "qvtcctl host-name reception-2; qvtcctl host-name reception-2 --json; "
             "stat -c %y-%i /etc/hostname /home/root/vpclientData.xml | diff /tmp/before -")
        .run("echo other >/etc/hostname; qvtcctl host-name reception-2; cat /etc/hostname")
        .run("qvtcctl host-name reception_2")
        .run("qvtcctl host-name ''")
        .run("qvtcctl host-name")
        .run("chmod 000 /home/root; mv /home/root /home/away; qvtcctl host-name desk");
    transcript.expect("host_name");
}

TEST(QvtcctlTranscript, ManagerPassword) {
    Transcript transcript;
    transcript.run("qvtcctl manager-password")
        .run("qvtcctl manager-password --password-stdin", "first word\n")
        .run("qvtcctl manager-password")
        .run("qvtcctl manager-password --show-password")
        .run("qvtcctl manager-password --show-password --json")
        .run("qvtcctl manager-password --json")
        .run("qvtcctl manager-password --password-stdin", "")
        .run("qvtcctl manager-password --password-stdin", "\n")
        .run("qvtcctl manager-password --password-stdin", "a&b\n")
        .run("qvtcctl manager-password --password-stdin", "one\ntwo\n")
        .run("qvtcctl manager-password --password-stdin", std::string(256, 'p') + "\n")
        .run("qvtcctl manager-password --password")
        .run("qvtcctl manager-password --password --remove")
        .run("qvtcctl manager-password secret")
        .run("qvtcctl manager-password --show-password")
        .run_on_terminal("qvtcctl manager-password --password", "it's\nit's\n")
        .run("qvtcctl manager-password --show-password")
        .run_on_terminal("qvtcctl manager-password --password", "one\nother\n")
        .run("qvtcctl manager-password --remove")
        .run("qvtcctl manager-password --show-password");
    transcript.expect("manager_password");
}

TEST(QvtcctlTranscript, Update) {
    StandIn wget("wget");
    Transcript transcript;
    transcript.run("qvtcctl update status")
        .run("qvtcctl update download")
        .run("qvtcctl update download --post-file=/etc/passwd")
        .run("qvtcctl update download file:///update.qvtc")
        .run("qvtcctl update download http://127.0.0.1/other.qvtc")
        .run("qvtcctl update download http://127.0.0.1/update.qvtc?x=1");
    EXPECT_TRUE(wget.calls().empty());
    transcript.run("qvtcctl update download http://127.0.0.1/update.qvtc");
    wget.runs("mkdir -p /tmp/nfs; head -c 2500000 /dev/zero >/tmp/nfs/update.qvtc");
    transcript.run("qvtcctl update download http://127.0.0.1/update.qvtc")
        .run("qvtcctl update status")
        .run("qvtcctl update status --json")
        .run("qvtcctl update run --yes")
        .run("printf '#!/bin/sh\\necho updated >/tmp/updated\\n' >/tmp/nfs/qvupdate.sh; "
             "chmod +x /tmp/nfs/qvupdate.sh")
        .run("qvtcctl update run")
        .run("ls /tmp/updated")
        .run("qvtcctl update run --yes")
        .run("cat /tmp/updated");
    transcript.expect("update");
}

// Everybody may write to /tmp, and the script runs as root.
TEST(QvtcctlTranscript, AnUpdateThatOthersCouldHaveWrittenIsNotRun) {
    QVTC_NEED(test::terminal_mode() == test::TerminalMode::root, "there is no second user here");
    const StandIn wget("wget");
    const std::string script = "/tmp/nfs/qvupdate.sh";
    const std::string run = "; qvtcctl update run --yes";
    Transcript()
        .run("mkdir -m 755 /tmp/nfs; printf '#!/bin/sh\ntouch /tmp/owned\n' >" + script +
             "; chmod 755 " + script + "; chown 1000 /tmp/nfs" + run)
        .run("qvtcctl update download http://127.0.0.1/update.qvtc")
        .run("chown 0 /tmp/nfs; chmod 775 /tmp/nfs" + run)
        .run("chmod 755 /tmp/nfs; chown 1000 " + script + run)
        .run("chown 0 " + script + "; chmod 757 " + script + run)
        .run("chmod 755 " + script + "; mv " + script + " /tmp/other; ln -s /tmp/other " + script +
             run)
        .run("rm " + script + "; mv /tmp/other " + script +
             "; mv /tmp/nfs /tmp/elsewhere; "
             "ln -s /tmp/elsewhere /tmp/nfs" +
             run)
        .run("rm /tmp/nfs; mv /tmp/elsewhere /tmp/nfs; chmod 777 /tmp" + run)
        .run("ls /tmp/owned")
        .run("chmod 1777 /tmp" + run + "; ls /tmp/owned")
        .expect("update_not_roots");
    EXPECT_EQ(wget.calls(), StandIn::Calls{});
}

// A shell may be replaced by the last program that it runs, so that there is one process only.
TEST(QvtcctlTranscript, ARunningUpdateIsSeen) {
    Transcript()
        .run("mkdir /tmp/nfs; printf '#!/bin/bash\nwhile [ ! -e /tmp/enough ]; do sleep 0.05; "
             "done\n' >/tmp/nfs/qvupdate.sh; chmod +x /tmp/nfs/qvupdate.sh")
        .run("/tmp/nfs/qvupdate.sh & qvtcctl update status; qvtcctl update run --yes; "
             "touch /tmp/enough; wait")
        .expect("update_running");
}

} // namespace
} // namespace qvtc::qvtcctl
