#include "clients/horizon.hpp"

#include "clients/records.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class HorizonLaunch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

std::string environment(const std::string& language) {
    return "env GTK2_RC_FILES=/usr/lib/vmware/gtkrc LANG=\"" + language +
           ".UTF-8\" LD_LIBRARY_PATH=$LD_LIBRARY_PATH:/usr/lib/vmware "
           "vmware-view -q --once --enableMMR ";
}

const std::string english = environment("en_US");
const std::string rdp_protocol =
    " --protocol=RDP --rdpclient=xfreerdp --xfreerdpOptions=' +auto-reconnect  /rfx "
    "/sound:sys:pulse /microphone:sys:pulse //multimedia:decoder:gstreamer -compression +fonts "
    "+wallpaper +themes +bitmap-cache -window-drag -menu-anims /f ' ";

} // namespace

TEST(HorizonCommandLine, HasEachOptionInItsPlace) {
    struct Case {
        FieldValues values;
        const char* options;
    };
    const Case cases[] = {
        {{}, " --monitors=2 -s   --nomenubar  --protocol=PCOIP &"},
        {{{Field::serverAddress, "view.lan"}},
         " --monitors=2 -s view.lan  --nomenubar  --protocol=PCOIP &"},
        {{{Field::serverAddress, "view.lan"}, {Field::username, "u1"}},
         " --monitors=2 -s view.lan  -u u1  -p secret  --nomenubar  --protocol=PCOIP &"},
        {{{Field::serverAddress, "view.lan"}, {Field::domain, "D"}},
         " --monitors=2 -s view.lan  -d D  --nomenubar  --protocol=PCOIP &"},
        {{{Field::serverAddress, "view.lan"}, {Field::desktop, "57696e3131"}},
         " --monitors=2 -s view.lan  -n Win11  --nomenubar  --protocol=PCOIP &"},
        {{{Field::serverAddress, "view.lan"},
          {Field::username, "u1"},
          {Field::domain, "D"},
          {Field::desktop, "4d7920504321"}},
         " --monitors=2 -s view.lan  -u u1  -p secret  -d D  -n My PC!  --nomenubar  "
         "--protocol=PCOIP &"},
        {{{Field::desktop, "4"}}, " --monitors=2 -s   -n   --nomenubar  --protocol=PCOIP &"},
        {{{Field::desktop, "4d-0"}}, " --monitors=2 -s   -n M  --nomenubar  --protocol=PCOIP &"},
        {{{Field::desktop, "4d0050"}}, " --monitors=2 -s   -n M  --nomenubar  --protocol=PCOIP &"},
        {{{Field::monitorSelect, "extend"}},
         " --allmonitors --monitors=1,2 -s   --nomenubar  --protocol=PCOIP &"},
        {{{Field::monitorSelect, "vga"}}, " --monitors=1 -s   --nomenubar  --protocol=PCOIP &"},
        {{{Field::monitorSelect, "hdmi"}}, " --monitors=2 -s   --nomenubar  --protocol=PCOIP &"},
    };
    for (const Case& each : cases) {
        HorizonFacts facts;
        facts.record = record_of(each.values);
        facts.password = "secret";
        EXPECT_EQ(horizon_command_line(facts), english + each.options);
    }
}

TEST(HorizonCommandLine, DeliberatelyHasAPasswordOptionWithoutAPassword) {
    HorizonFacts facts;
    facts.record = record_of({{Field::serverAddress, "view.lan"}, {Field::username, "u1"}});
    EXPECT_EQ(horizon_command_line(facts),
              english + " --monitors=2 -s view.lan  -u u1  -p   --nomenubar  --protocol=PCOIP &");
}

TEST(HorizonCommandLine, IsChineseForExactlyThatLanguage) {
    const std::pair<const char*, const char*> cases[] = {
        {"zh_CN", "zh_CN"}, {"zh_TW", "en_US"},  {"en_US", "en_US"}, {"", "en_US"},
        {"zh", "en_US"},    {"zh_CN ", "en_US"}, {"ZH_CN", "en_US"},
    };
    for (const auto& [setting, language] : cases) {
        HorizonFacts facts;
        facts.language = setting;
        EXPECT_EQ(horizon_command_line(facts),
                  environment(language) + " --monitors=2 -s   --nomenubar  --protocol=PCOIP &");
    }
}

TEST(HorizonCommandLine, OnClonedScreensIsFullScreenWhateverIsChosen) {
    for (const char* const choice : {"extend", "vga", "other", ""}) {
        HorizonFacts facts;
        facts.record = record_of({{Field::monitorSelect, choice}});
        facts.screens_cloned = true;
        EXPECT_EQ(horizon_command_line(facts),
                  english + " --fullscreen -s   --nomenubar  --protocol=PCOIP &");
    }
}

TEST(HorizonCommandLine, TheMenuBarStaysWhereTheSettingHoldsOn) {
    const std::pair<const char*, const char*> cases[] = {
        {"toolbar=on", ""},
        {"on", ""},
        {"toolbar=off", " --nomenubar "},
        {"", " --nomenubar "},
        {"toolbar=ON", " --nomenubar "},
    };
    for (const auto& [setting, option] : cases) {
        HorizonFacts facts;
        facts.menu_bar = setting;
        EXPECT_EQ(horizon_command_line(facts),
                  english + " --monitors=2 -s  " + option + " --protocol=PCOIP &");
    }
}

TEST(HorizonCommandLine, TheProtocolIsTheFirstThatTheFieldHolds) {
    const std::pair<const char*, std::string> cases[] = {
        {"", " --protocol=PCOIP"},         {"RD", " --protocol=PCOIP"},
        {"PCOIP", " --protocol=PCOIP"},    {"RDP", rdp_protocol},
        {"BLAST", " --protocol=BLAST"},    {"Blast", " --protocol=PCOIP"},
        {"rdp", " --protocol=PCOIP"},      {"RDP-BLAST", rdp_protocol},
        {"BLAST-RDP", rdp_protocol},       {"VMware BLAST", " --protocol=BLAST"},
        {"anything", " --protocol=PCOIP"},
    };
    for (const auto& [choice, option] : cases) {
        HorizonFacts facts;
        facts.record = record_of({{Field::vmwareProtocol, choice}});
        EXPECT_EQ(horizon_command_line(facts),
                  english + " --monitors=2 -s   --nomenubar " + option + " &");
    }
}

TEST_F(HorizonLaunch, RunsItsCommandsInOrder) {
    test::store_items(
        {test::record_item("vmwareItem_id_160", {{"id", "160"},
                                                 {"serverAddress", "view.lan"},
                                                 {"username", "u1"},
                                                 {"password", "cGFzc3dvcmQ+"}}),
         {"configItem", {{"tc_config_param_8", "zh_CN"}, {"tc_config_param_13", "toolbar=on"}}}});
    test::ScriptedOs system;
    EXPECT_TRUE(launch_horizon(160));
    const std::string command =
        environment("zh_CN") + " --monitors=2 -s view.lan  -u u1  -p password  --protocol=PCOIP &";
    EXPECT_EQ(system.record, (Texts{"run killall vmware-remotemks", "run killall vmware-view",
                                    "run killall vmware-view", "run " + command, "thread"}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] vmware cmdline:" + command});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"), "");

    system.record.clear();
    system.outputs = {"a window\n"};
    system.threads.at(0)();
    EXPECT_EQ(system.record.at(1),
              "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep vmware-view");
    EXPECT_EQ(system.record.at(2), "run echo \"0x00000000 connect success\" > "
                                   "/usr/local/vpclient/config/clientstatus");
}

TEST_F(HorizonLaunch, LooksForTheMarkerFileOfClonedScreens) {
    test::ScriptedOs system;
    system.files = {"/etc/X11/clone"};
    EXPECT_TRUE(launch_horizon(160));
    EXPECT_EQ(system.record.at(3),
              "run " + english + " --fullscreen -s   --nomenubar  --protocol=PCOIP &");
}

TEST_F(HorizonLaunch, DeliberatelyEndsTheFormerClientsAndInformsOfAnUndecodablePassword) {
    test::store_items({test::record_item(
        "vmwareItem_id_191", {{"id", "191"}, {"username", "u1"}, {"password", "abc"}})});
    test::ScriptedOs system;
    EXPECT_FALSE(launch_horizon(191));
    EXPECT_EQ(system.record, (Texts{"run killall vmware-remotemks", "run killall vmware-view",
                                    "run killall vmware-view"}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] @qvlaunchclient password decode error"});
}

TEST_F(HorizonLaunch, WithoutAThreadFailsWhenTheClientRuns) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(launch_horizon(160));
    EXPECT_EQ(system.record.size(), 5U);
    EXPECT_EQ(test::log_lines().back(), "[ERROR] @launchclient thread create fail");
}

TEST(HorizonCommandLine, DeliberatelyGivesTheRdpClientADoubleBlankAndADoubleSlash) {
    HorizonFacts facts;
    facts.record = record_of({{Field::vmwareProtocol, "RDP"}});
    const std::string line = horizon_command_line(facts);
    EXPECT_NE(line.find("' +auto-reconnect  /rfx "), std::string::npos);
    EXPECT_NE(line.find(" //multimedia:decoder:gstreamer "), std::string::npos);
}

TEST(HorizonCommandLine, KeepsItsOrderInEveryCombination) {
    using Options = std::vector<std::pair<std::string, std::string>>;
    const Options languages{{"zh_CN", "zh_CN"}, {"en_US", "en_US"}};
    const Options screens{{"clone", " --fullscreen"},
                          {"extend", " --allmonitors --monitors=1,2"},
                          {"vga", " --monitors=1"},
                          {"hdmi", " --monitors=2"}};
    const Options users{{"", ""}, {"u1", " -u u1  -p secret "}};
    const Options domains{{"", ""}, {"D", " -d D "}};
    const Options desktops{{"", ""}, {"57696e", " -n Win "}};
    const Options menus{{"toolbar=on", ""}, {"toolbar=off", " --nomenubar "}};
    const Options protocols{
        {"PCOIP", " --protocol=PCOIP"}, {"RDP", rdp_protocol}, {"BLAST", " --protocol=BLAST"}};
    for (const auto& language : languages)
        for (const auto& screen : screens)
            for (const auto& user : users)
                for (const auto& domain : domains)
                    for (const auto& desktop : desktops)
                        for (const auto& menu : menus)
                            for (const auto& protocol : protocols) {
                                HorizonFacts facts;
                                facts.record = record_of({{Field::serverAddress, "h"},
                                                          {Field::monitorSelect, screen.first},
                                                          {Field::username, user.first},
                                                          {Field::domain, domain.first},
                                                          {Field::desktop, desktop.first},
                                                          {Field::vmwareProtocol, protocol.first}});
                                facts.password = "secret";
                                facts.language = language.first;
                                facts.menu_bar = menu.first;
                                facts.screens_cloned = screen.first == "clone";
                                EXPECT_EQ(horizon_command_line(facts),
                                          environment(language.second) + screen.second + " -s h " +
                                              user.second + domain.second + desktop.second +
                                              menu.second + protocol.second + " &");
                            }
}

TEST(HorizonCommandLine, NoOtherFieldIsUsed) {
    HorizonFacts facts;
    for (std::string& value : facts.record.values) value = "on";
    for (const Field field : {Field::username, Field::domain, Field::desktop}) {
        facts.record[field] = "";
    }
    facts.record[Field::serverAddress] = "h";
    EXPECT_EQ(horizon_command_line(facts),
              english + " --monitors=2 -s h  --nomenubar  --protocol=PCOIP &");
}

TEST_F(HorizonLaunch, APasswordIsDecodedAfterItsPlusSignsHaveBecomePadding) {
    const std::pair<const char*, const char*> cases[] = {
        {"cGFzc3dvcmQ+", "password"},
        {"cGFzc3dvcmQ=", "password"},
        {"c2VjcmV0cw++", "secrets"},
        {"c2VjcmV0", "secret"},
    };
    for (const auto& [stored, password] : cases) {
        test::store_items(
            {test::record_item("vmwareItem_id_160",
                               {{"serverAddress", "h"}, {"username", "u"}, {"password", stored}})});
        test::ScriptedOs system;
        EXPECT_TRUE(launch_horizon(160));
        EXPECT_EQ(system.record.at(3), "run " + english + " --monitors=2 -s h  -u u  -p " +
                                           password + "  --nomenubar  --protocol=PCOIP &");
    }
    for (const char* const stored : {"a+b", "abc", "a", "++++x"}) {
        test::store_items({test::record_item("vmwareItem_id_160", {{"password", stored}})});
        test::ScriptedOs system;
        EXPECT_FALSE(launch_horizon(160)) << stored;
        EXPECT_EQ(system.record.size(), 3U) << stored;
    }
}

} // namespace qvtc::clients
