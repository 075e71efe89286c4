#include "api/exports.hpp"

#include "connections/documents.hpp"
#include "core/base64.hpp"
#include "core/json.hpp"
#include "support/support.hpp"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/mount.h>

extern "C" {
extern char goemdata[102400];
extern char gfeature[102400];
}

namespace qvtc::test {

namespace {

using Details = std::vector<RecordedCommand>;

class ApiExports : public FreshTerminal {
  protected:
    ApiExports() {
        std::memset(goemdata, 0, sizeof goemdata);
        std::memset(gfeature, 0, sizeof gfeature);
    }
};

std::string text_of(json_object* object) {
    const Json owned(object);
    return owned ? json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN) : "null";
}

} // namespace

TEST_F(ApiExports, VendorsDataIsAskedForByItsNumbers) {
    StandIn program("qvplugin");
    const std::string features = R"({"list":")" + std::string(100, 'f') + "\"}";
    program.prints({base64::encode("{'a':'1'}"), base64::encode(base64::encode("{'b':'%32'}")),
                    base64::encode(R"({"c":3})"), base64::encode(features)});
    EXPECT_EQ(text_of(qvisoem()), R"({"a":"1"})");
    EXPECT_EQ(text_of(qvoemdata()), R"({"b":"2"})");
    EXPECT_EQ(text_of(qvoeminfo()), R"({"c":3})");
    EXPECT_EQ(text_of(qvoemfeature()), features);
    EXPECT_EQ(text_of(qvoemfeature()), features);
    EXPECT_EQ(recorded_command_details(), (Details{{"qvplugin 0 23", true},
                                                   {"qvplugin 0 56", true},
                                                   {"qvplugin 0 50", true},
                                                   {"qvplugin 0 42", true}}));
}

TEST_F(ApiExports, NoVendorIsNull) {
    const StandIn program("qvplugin");
    for (json_object* (*const getter)() : {qvisoem, qvoemdata, qvoeminfo, qvoemfeature}) {
        EXPECT_EQ(getter(), nullptr);
    }
}

TEST_F(ApiExports, LanguageIsStoredAndItsPictureCopied) {
    const std::string themes = "/usr/share/plymouth/themes/darwin/";
    write_file(themes + "background-zh_CN.png", "Chinese");
    write_file(themes + "background-en_US.png", "English");
    write_file(themes + "logo.png", "before");
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":""})");
    EXPECT_EQ(qvsetlanguage("language=ko_KR"), 0);
    EXPECT_EQ(read_file(themes + "logo.png"), "English");
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":"ko_KR"})");
    EXPECT_EQ(qvsetlanguage("language=zh_CN.UTF-8"), 0);
    EXPECT_EQ(read_file(themes + "logo.png"), "Chinese");
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":"zh_CN"})");
    EXPECT_EQ(
        recorded_command_details(),
        (Details{{"\\cp -f " + themes + "background-en_US.png " + themes + "logo.png", false},
                 {"\\cp -f " + themes + "background-zh_CN.png " + themes + "logo.png", false}}));
    forget_commands();
    store_items({{"configItem",
                  {{"com.valmora.thinclient.para_23", "{'value':'1'}"},
                   {"tc_config_param_8", "say \"so\""}}}});
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":"say \"so\""})");
    EXPECT_EQ(qvsetlanguage("language=en_US"), -1);
    EXPECT_EQ(recorded_commands(), std::vector<std::string>{});
    EXPECT_EQ(text_of(qvgetlanguage()), R"({"language":"en_US"})");
}

TEST_F(ApiExports, BatteryIsRead) {
    ASSERT_EQ(mount("none", "/sys/class", "tmpfs", 0, nullptr), 0);
    EXPECT_EQ(qvgetbattery(), -1);
    EXPECT_EQ(recorded_commands(), std::vector<std::string>{});
    write_file("/sys/class/power_supply/BAT0/capacity", "87\n");
    EXPECT_EQ(qvgetbattery(), 87);
    EXPECT_EQ(recorded_command_details(),
              (Details{{"cat /sys/class/power_supply/BAT0/capacity", true}}));
    // A file that cannot be read as one.
    std::filesystem::remove("/sys/class/power_supply/BAT0/capacity");
    std::filesystem::create_directory("/sys/class/power_supply/BAT0/capacity");
    capture_stderr([] { EXPECT_EQ(qvgetbattery(), -1); });
    EXPECT_EQ(umount2("/sys/class", MNT_DETACH), 0);
}

TEST_F(ApiExports, SwitchesOfAClientThatIsGoneTouchNothing) {
    for (const int on : {0, 1, -1}) {
        EXPECT_EQ(qvsetcitrixtoolbar(on), 0);
        EXPECT_EQ(qvsetcitrixprinter(on), 0);
    }
    EXPECT_EQ(qvgetcitrixtoolbar(), nullptr);
    EXPECT_EQ(qvgetcitrixprinter(), nullptr);
    EXPECT_EQ(recorded_commands(), std::vector<std::string>{});
    EXPECT_TRUE(std::filesystem::is_empty("/home/root"));
}

TEST_F(ApiExports, PrinterDialogIsWaitedFor) {
    StandIn dialog("system-config-printer");
    dialog.runs("echo \"$DISPLAY\" >/tmp/display; exit 3");
    EXPECT_EQ(qvcentos_printer(), 3 << 8);
    EXPECT_EQ(read_file("/tmp/display"), ":0.0\n");
    EXPECT_EQ(recorded_command_details(), (Details{{"DISPLAY=:0.0 system-config-printer", false}}));
}

} // namespace qvtc::test
