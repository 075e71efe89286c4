// The start sequence, language, battery, vendor data and log, as a person sees them.
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>
#include <sys/mount.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::Transcript;

TEST(QvtcctlTranscript, Init) {
    const StandIn xset("xset");
    StandIn xrandr("xrandr");
    xrandr.runs(
        "[[ $1 == --verbose ]] && echo '\tBrightness: 0.80' || echo 'VGA1 connected 10x10'");
    StandIn server("x11vnc");
    server.keeps_running();
    const StandIn sink("/usr/bin/set_default_sink");
    const StandIn aplay("aplay");
    test::write_file("/var/lib/ralo/image/base/background-1.png", "p");
    std::filesystem::create_directories("/usr/local/vpclient/bin/image");
    Transcript transcript;
    transcript.run("qvtcctl init");
    test::write_file("/home/root/freerdp.log", std::string(600'000, 'x'));
    test::write_file("/home/root/enable_hdmi_audio", "");
    test::write_file("/home/root/vpclientData.xml",
                     "<ThinClientConfig><configItem><tc_config_param_18>{'vnc':'on','password':''}"
                     "</tc_config_param_18><com.valmora.thinclient.para_77>"
                     "monitorPowerSave=on%monitorPowerSaveMins=10</com.valmora.thinclient.para_77>"
                     "</configItem></ThinClientConfig>");
    transcript.run("qvtcctl init").run("qvtcctl init --json").run("qvtcctl init now");
    transcript.expect("init");
}

TEST(QvtcctlTranscript, Language) {
    Transcript transcript;
    transcript.run("qvtcctl language")
        .run("qvtcctl language zh_CN.UTF-8")
        .run("qvtcctl language")
        .run("qvtcctl language ko_KR --json")
        .run("qvtcctl language english")
        .run("qvtcctl language en_us")
        .run("qvtcctl language en_US.")
        .run("qvtcctl language en_US.x/y")
        .run("qvtcctl language ''")
        .run("qvtcctl language 'en_US&x=1'")
        .run("sed -i \"s|</configItem>|<com.valmora.thinclient.para_23>{'value':'1'}"
             "</com.valmora.thinclient.para_23></configItem>|\" /home/root/vpclientData.xml")
        .run("qvtcctl language en_US")
        .run("qvtcctl language");
    transcript.expect("language");
}

TEST(QvtcctlTranscript, Battery) {
    Transcript transcript;
    transcript.run("qvtcctl battery").run("qvtcctl battery --json");
    ASSERT_EQ(mount("tmpfs", "/sys/class/power_supply", "tmpfs", 0, nullptr), 0);
    test::write_file("/sys/class/power_supply/BAT0/capacity", "87\n");
    transcript.run("qvtcctl battery").run("qvtcctl battery --json");
    transcript.expect("battery");
}

TEST(QvtcctlTranscript, VendorData) {
    StandIn qvplugin("qvplugin");
    Transcript transcript;
    transcript.run("qvtcctl oem");
    qvplugin.runs("case $2 in 23) printf %s \"{'value':'1'}\" | base64 -w0 ;; "
                  "50) printf %s '{\"vendor\":\"example\"}' | base64 -w0 ;; "
                  "42) echo 'no base64' ;; esac");
    transcript.run("qvtcctl oem").run("qvtcctl oem --json");
    transcript.expect("oem");
}

TEST(QvtcctlTranscript, Log) {
    Transcript transcript;
    transcript.run("qvtcctl log");
    test::write_file("/home/root/system.log", "2026-11-21 12:00:00 [DEBUG] one\n"
                                              "2026-11-21 12:00:01 [INFO] two\nand more\n"
                                              "2026-11-21 12:00:02 [ERROR] three\n");
    transcript.run("qvtcctl log")
        .run("qvtcctl log --level info --lines 1")
        .run("qvtcctl log --level error --json")
        .run("qvtcctl log --level loud")
        .run("qvtcctl log --lines many")
        .run("qvtcctl log --follow --level error >/tmp/out & until [ -s /tmp/out ]; do sleep 0.05; "
             "done; echo '2026-11-21 12:00:03 [INFO] four' >>/home/root/system.log; "
             "echo '2026-11-21 12:00:04 [ERROR] five' >>/home/root/system.log; "
             "until grep -q five /tmp/out; do sleep 0.05; done; kill $!; cat /tmp/out");
    transcript.expect("log");
}

TEST(QvtcctlTranscript, PasswordsInTheLogAreMasked) {
    test::write_file(
        "/home/root/system.log",
        "2026-11-21 12:00:00 [INFO] xfreerdp params:xfreerdp /v:'h' /u:'u' /p:'se cret' "
        "/gp:'other' >>/home/root/freerdp.log 2>&1 &\n");
    Transcript transcript;
    transcript.run("qvtcctl log")
        .run("qvtcctl log --json")
        .run("qvtcctl log --show-passwords")
        .run(
            "qvtcctl log --follow >/tmp/out & until [ -s /tmp/out ]; do sleep 0.05; done; kill $!; "
            "cat /tmp/out");
    transcript.expect("log_passwords");
}

TEST(QvtcctlTranscript, ALogThatIsNoRegularFileIsNotWaitedFor) {
    Transcript transcript;
    transcript.run("qvtcctl connection add rdp name=a serverAddress=10.0.0.5")
        .run("rm -f /home/root/system.log /home/root/freerdp.log; mkfifo /home/root/freerdp.log")
        .run("timeout 10 qvtcctl status 32")
        .run("mkfifo /home/root/system.log; timeout 10 qvtcctl log")
        .run("timeout 10 qvtcctl log --follow")
        .run("rm /home/root/system.log; mkdir /home/root/system.log; qvtcctl log --json");
    transcript.expect("log_not_regular");
}

} // namespace
} // namespace qvtc::qvtcctl
