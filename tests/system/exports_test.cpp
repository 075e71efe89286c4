#include "system/exports.hpp"

#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"

#include <cstring>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

std::string released(json_object* object) {
    if (object == nullptr) return "null";
    std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

/// What a machine's kernel says of it, whatever file it is asked for.
class Machine {
  public:
    explicit Machine(const std::string& name) {
        const std::string folder = QVTC_CAPTURES_DIRECTORY "/machines/" + name;
        cat_.runs("exec /bin/cat " + folder + "/${1##*/}");
        // A terminal of this kind has its disk behind a memory card reader.
        if (!file_exists("/dev/mmcblk0")) write_file("/dev/mmcblk0", "");
    }
    ~Machine() { std::filesystem::remove("/dev/mmcblk0"); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

  private:
    StandIn cat_{"cat"};
};

} // namespace

TEST(SystemExports, ThePartsOfAMachineAreReadOneByOne) {
    const Machine machine("j4105-4gb-32gb-emmc");
    StandIn blockdev("blockdev");
    blockdev.prints("31268536320\n");
    StandIn ifconfig("ifconfig");
    ifconfig.prints("eth0: flags=4163<UP>\n        ether 00:e0:4c:68:01:02  txqueuelen 1000\n");

    char model[16];
    std::memset(model, '#', sizeof model);
    get_tc_type(model);
    EXPECT_EQ(std::string(model, 6), std::string("RX17\0#", 6));
    char processor[1024] = "";
    EXPECT_EQ(getcpuInfo(processor), processor);
    EXPECT_STREQ(processor, "Intel(R) Celeron(R) J4105 CPU @ 1.50GHz");
    EXPECT_EQ(CPUType(), 22);
    EXPECT_EQ(getmemCap(), 4);
    EXPECT_EQ(gethardCap(), 32);
    char address[64] = "";
    EXPECT_EQ(getmac(address, "eth0"), 0);
    EXPECT_STREQ(address, "00:e0:4c:68:01:02");
    EXPECT_EQ(ifconfig.calls(), (StandIn::Calls{{"eth0"}}));
}

TEST(SystemExports, WhatAMachineDoesNotTellStaysAsItWas) {
    const Machine machine("n4020c-1gb-unreadable-disk");
    const StandIn blockdev("blockdev");
    const StandIn ifconfig("ifconfig");
    EXPECT_EQ(gethardCap(), -1);
    char address[] = "as it was";
    EXPECT_EQ(getmac(address, "eth9"), 0);
    EXPECT_STREQ(address, "as it was");
}

TEST(SystemExports, BothNamesDescribeTheMachine) {
    const Machine machine("j4105-4gb-32gb-emmc");
    StandIn blockdev("blockdev");
    blockdev.prints("31268536320\n");
    const std::string description = released(getSysInfo());
    EXPECT_EQ(released(qvgetsysinfo()), description);
    EXPECT_NE(description.find(R"("productKey":"RX17")"), std::string::npos) << description;
    EXPECT_NE(description.find(R"("hardCap":"32GB")"), std::string::npos) << description;
    EXPECT_EQ(getsysinfo2(), nullptr);
    forget_commands();
    sysinfo_init();
    EXPECT_EQ(recorded_commands(), Texts{});
    EXPECT_EQ(released(getSysInfo()), description);
}

TEST(SystemExports, BothNamesResetTheTerminal) {
    const StandIn display("/var/lib/ralo/display.sh");
    const StandIn aplay("aplay");
    const StandIn pulseaudio("/usr/bin/pulseaudio");
    const StandIn pacmd("pacmd");
    for (int (*const reset)() : {qvresetsysconf, resetsysconf}) {
        const StandIn reboot("reboot");
        std::filesystem::remove("/home/root/system.log");
        store::store_setting(store::keys::connect_delay, "9");
        EXPECT_EQ(reset(), 0);
        EXPECT_EQ(store::setting(store::keys::connect_delay), "3");
        EXPECT_EQ(reboot.calls().size(), 1U);
    }
}

TEST(SystemExports, AHostNameGoesIntoABufferOf128Bytes) {
    for (int (*const get)(char*) : {qvgethostname, get_tc_hostname}) {
        char name[129];
        std::memset(name, '#', sizeof name);
        EXPECT_EQ(get(name), 0);
        EXPECT_STREQ(name, "ThinClient");
        store::store_setting(store::keys::host_name, std::string(300, 'h'));
        EXPECT_EQ(get(name), 0);
        EXPECT_EQ(std::string(name), std::string(127, 'h'));
        EXPECT_EQ(name[128], '#');
        store::store_setting(store::keys::host_name, "");
    }
}

TEST(SystemExports, SettersOfTheHostNameGiveZero) {
    for (int (*const set)(const char*) : {qvsethostname, set_tc_hostname}) {
        EXPECT_EQ(set("desk"), 0);
        EXPECT_EQ(set(""), 0);
        EXPECT_EQ(set(nullptr), 0);
    }
    EXPECT_EQ(recorded_commands(),
              (Texts{"echo \"desk\" > /etc/hostname", "echo \"desk\" > /etc/hostname"}));
}

TEST(SystemExports, ThePasswordIsWholeWhereverItLies) {
    // A heap that lies above what a 32-bit number can address.
    const std::string large(64UL << 20, 'x');
    EXPECT_EQ(qvsetmgrpwd("password=one"), 0);
    EXPECT_EQ(released(qvgetmgrpwd()), R"({"password":"one"})");
    EXPECT_EQ(setmgrpwd("password=two"), 0);
    EXPECT_EQ(released(getmgrpwd()), R"({"password":"two"})");
}

TEST(SystemExports, ADownloadTellsWhetherThePackageIsThere) {
    StandIn wget("wget");
    EXPECT_EQ(download("http://127.0.0.1/update.qvtc"), -1);
    wget.runs("mkdir -p /tmp/nfs; touch /tmp/nfs/update.qvtc");
    EXPECT_EQ(download("http://127.0.0.1/update.qvtc"), 0);
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] download update file failed."}));
}

TEST(SystemExports, TheUpdateScriptRunsAsAsked) {
    doupdate();
    EXPECT_EQ(updating(), 0);
    EXPECT_EQ(update(), 0);
    const std::string count = "ps -ef|grep qvupdate.sh|grep -v grep |wc -l";
    EXPECT_EQ(recorded_commands(),
              (Texts{"cd /tmp/nfs/;./qvupdate.sh", count, "cd /tmp/nfs/; ./qvupdate.sh", count}));
}

TEST(SystemExports, PowerAndRepairGiveZeroAndALine) {
    const StandIn systemctl("systemctl");
    const StandIn shutdown("shutdown");
    const StandIn killall("killall");
    const StandIn dhclient("dhclient");
    const StandIn networking("/etc/init.d/networking");
    EXPECT_EQ(qvreboot(), 0);
    EXPECT_EQ(qvshutdown(), 0);
    EXPECT_EQ(diagnsys(), 0);
    EXPECT_EQ(qvdiagnsys(), 0);
    EXPECT_EQ(log_lines(), (Texts{"[INFO] thinclient reboot", "[INFO] thinclient shutdown",
                                  "[INFO] qvdiagnsys"}));
    EXPECT_EQ(recorded_commands().size(), 10U);
}

TEST(SystemExports, DateAndTimeGoThroughBothDoors) {
    EXPECT_EQ(setdatetime("region=Asia&city=Tokyo"), 1);
    EXPECT_EQ(qvsetdatetime("region=Asia&city=Seoul"), -1);
    EXPECT_EQ(qvsetdatetime(nullptr), -1);
    store::store_setting(store::keys::date_and_time, "region=Asia&city=Seoul");
    for (json_object* (*const get)() : {qvgetdatetime, getdatetime}) {
        json_object* object = get();
        EXPECT_STREQ(json_object_get_string(json_object_object_get(object, "city")), "Seoul");
        json_object_put(object);
    }
}

} // namespace qvtc::test
