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

} // namespace

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
    EXPECT_EQ(qvsetmgrpwd(nullptr), 0);
    EXPECT_EQ(released(qvgetmgrpwd()), R"({"password":""})");
}

TEST(SystemExports, ADownloadTellsWhetherThePackageIsThere) {
    StandIn wget("wget");
    EXPECT_EQ(download("http://127.0.0.1/update.qvtc"), -1);
    wget.runs("mkdir -p /tmp/nfs; touch /tmp/nfs/update.qvtc");
    EXPECT_EQ(download("http://127.0.0.1/update.qvtc"), 0);
    EXPECT_EQ(download(nullptr), -1);
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] download update file failed.", "[ERROR] url error!"}));
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
