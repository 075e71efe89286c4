#include "api/resolution_change.hpp"

#include "api/exports.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;

class ResolutionChange : public FreshTerminal {
  protected:
    ResolutionChange() {
        store_items({{"configItem",
                      {{"tc_config_param_6_1", "1"},
                       {"tc_config_param_6_2", "1"},
                       {"tc_config_param_7", "0"}}}});
    }

    static Texts stored() {
        return {stored_setting("tc_config_param_6_1"), stored_setting("tc_config_param_6_2"),
                stored_setting("tc_config_param_7")};
    }

    StandIn dmidecode{"dmidecode"};
    StandIn systemctl{"systemctl"};
    StandIn script{"/var/lib/ralo/display.sh"};
};

constexpr const char* ask_product = "dmidecode -s system-product-name";
constexpr const char* ask_processor = "cat /proc/cpuinfo |grep \"model name\"";
constexpr const char* reboot = "systemctl --force reboot > /dev/null 2>&1";
constexpr const char* run_script = "/var/lib/ralo/display.sh >/dev/null 2>&1";

} // namespace

TEST_F(ResolutionChange, StoresAppliesAndRestarts) {
    dmidecode.prints("RX16\n");
    EXPECT_EQ(qvsetdispconf("1920x1080"), 0);
    EXPECT_EQ(
        recorded_command_details(),
        (std::vector<RecordedCommand>{
            {ask_product, true}, {ask_processor, true}, {run_script, false}, {reboot, false}}));
    EXPECT_EQ(read_file("/var/lib/ralo/res"), "1920x1080\n");
    EXPECT_EQ(stored(), (Texts{"1", "5", "1"}));
    EXPECT_EQ(systemctl.calls(), (StandIn::Calls{{"--force", "reboot"}}));
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] qvsetdispconf disp=1920x1080", "[DEBUG] @setdispconf disp=1920x1080",
                     "[INFO] thinclient reboot"}));
}

TEST_F(ResolutionChange, IsRefusedOnAVirtualMachine) {
    for (const char* const product : {"VirtualBox\n", "KVM Virtual Machine\n"}) {
        dmidecode.prints(product);
        forget_commands();
        EXPECT_EQ(qvsetdispconf("1920x1080"), -1);
        EXPECT_EQ(recorded_commands(), Texts{ask_product});
    }
    EXPECT_EQ(stored(), (Texts{"1", "1", "0"}));
    EXPECT_EQ(log_lines(), Texts{});
    EXPECT_EQ(systemctl.calls(), StandIn::Calls{});
}

TEST_F(ResolutionChange, DeliberatelyAnEmptyRequestRestartsToo) {
    EXPECT_EQ(qvsetdispconf(""), -1);
    EXPECT_EQ(recorded_commands(), (Texts{ask_product, ask_processor, reboot}));
    EXPECT_EQ(stored(), (Texts{"1", "1", "0"}));
    EXPECT_EQ(script.calls(), StandIn::Calls{});
}

TEST_F(ResolutionChange, AFailingScriptIsNotReported) {
    script.exits_with(3);
    systemctl.exits_with(1);
    EXPECT_EQ(qvsetdispconf("res=9&force="), 0);
    EXPECT_EQ(stored(), (Texts{"9", "9", "0"}));
}

TEST_F(ResolutionChange, AsksWithinItsLimits) {
    ScriptedOs system;
    EXPECT_EQ(api::change_resolution("auto"), 0);
    EXPECT_EQ(system.record,
              (Texts{std::string("capture 128 ") + ask_product,
                     std::string("capture 128 ") + ask_processor, std::string("run ") + run_script,
                     std::string("run ") + reboot}));
    EXPECT_EQ(read_file("/var/lib/ralo/res"), "auto\n");
}

TEST_F(ResolutionChange, ARequestIsNeverShellSyntax) {
    for (const std::string& request :
         {std::string("$(touch /tmp/owned)"), std::string("`touch /tmp/owned`"),
          std::string("res=\"; touch /tmp/owned; \""), std::string("'\n\xff"),
          std::string(10239, 'x'), std::string(10240, 'x'), std::string(100000, '\'')}) {
        EXPECT_EQ(qvsetdispconf(request.c_str()), 0);
        forget_commands();
    }
    EXPECT_FALSE(file_exists("/tmp/owned"));
}

} // namespace qvtc::test
