#include "clients/spice.hpp"

#include "clients/records.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class SpiceLaunch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

const std::string usb_filters = " --spice-usbredir-auto-redirect-filter="
                                "\"0x03,0x1bc0,0x1001,-1,1|0x03,-1,-1,-1,0|-1,-1,-1,-1,1\""
                                " --spice-usbredir-redirect-on-connect="
                                "\"0x03,0x1bc0,0x1001,-1,1|0x03,-1,-1,-1,0|-1,-1,-1,-1,1\"";

} // namespace

TEST(SpiceCommandLine, HasEachOptionInItsPlace) {
    struct Case {
        FieldValues values;
        std::string line;
    };
    const Case cases[] = {
        {{}, "remote-viewer -f --spice-disable-usbredir"},
        {{{Field::serverAddress, "10.0.0.7"}, {Field::port, "5930"}},
         "remote-viewer -f --spice-disable-usbredir spice://10.0.0.7:5930"},
        {{{Field::serverAddress, "10.0.0.7"}},
         "remote-viewer -f --spice-disable-usbredir spice://10.0.0.7"},
        {{{Field::port, "5930"}}, "remote-viewer -f --spice-disable-usbredir:5930"},
        {{{Field::desktopBackground, "off"}},
         "remote-viewer -f --spice-disable-effects=\"wallpaper\" --spice-disable-usbredir"},
        {{{Field::fontSmooth, "off"}},
         "remote-viewer -f --spice-disable-effects=\"font-smooth,animation\" "
         "--spice-disable-usbredir"},
        {{{Field::desktopBackground, "off"}, {Field::fontSmooth, "off"}},
         "remote-viewer -f --spice-disable-effects=\"wallpaper,font-smooth,animation\" "
         "--spice-disable-usbredir"},
        {{{Field::widgetAnimate, "off"}}, "remote-viewer -f --spice-disable-usbredir"},
        {{{Field::useRedirect, "on"}}, "remote-viewer -f" + usb_filters},
        {{{Field::useRedirect, "off"}}, "remote-viewer -f --spice-disable-usbredir"},
        {{{Field::useRedirect, "ON"}}, "remote-viewer -f --spice-disable-usbredir"},
        {{{Field::desktopBackground, "off"},
          {Field::fontSmooth, "off"},
          {Field::useRedirect, "on"},
          {Field::serverAddress, "h"},
          {Field::port, "1"}},
         "remote-viewer -f --spice-disable-effects=\"wallpaper,font-smooth,animation\"" +
             usb_filters + " spice://h:1"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(spice_command_line({record_of(each.values)}), each.line);
    }
}

TEST(SpiceCommandLine, OnlyExactlyOffTurnsAnEffectOff) {
    for (const char* const value : {"", "on", "Off", "OFF", "off ", "0", "no"}) {
        EXPECT_EQ(spice_command_line(
                      {record_of({{Field::desktopBackground, value}, {Field::fontSmooth, value}})}),
                  "remote-viewer -f --spice-disable-usbredir")
            << value;
    }
}

TEST(SpiceCommandLine, UsbStaysHereWhereItIsDenied) {
    SpiceFacts facts;
    facts.record = record_of({{Field::useRedirect, "on"}});
    facts.usb_denied = true;
    EXPECT_EQ(spice_command_line(facts), "remote-viewer -f --spice-disable-usbredir");
}

TEST(SpiceCommandLine, AllEffectsOffTakesThePlaceOfTheList) {
    SpiceFacts facts;
    facts.record = record_of({{Field::desktopBackground, "off"}});
    facts.all_effects_off = true;
    EXPECT_EQ(spice_command_line(facts),
              "remote-viewer -f --spice-disable-effects=\"all\" --spice-disable-usbredir");
}

TEST(SpiceCommandLine, NoOtherFieldIsUsed) {
    SpiceFacts facts;
    for (std::string& value : facts.record.values) value = "on";
    facts.record[Field::serverAddress] = "h";
    facts.record[Field::port] = "1";
    EXPECT_EQ(spice_command_line(facts), "remote-viewer -f" + usb_filters + " spice://h:1");
}

TEST_F(SpiceLaunch, RunsItsCommandsInOrder) {
    test::store_items({test::record_item(
        "spiceItem_id_70", {{"id", "70"}, {"serverAddress", "10.0.0.7"}, {"port", "5930"}})});
    test::ScriptedOs system;
    system.time = 1000;
    system.clock_step = 1; // the second turns between the two markers
    EXPECT_TRUE(launch_spice(70));
    const std::string command = "remote-viewer -f --spice-disable-usbredir spice://10.0.0.7:5930 "
                                ">>/home/root/spicec.log 2>&1 &";
    EXPECT_EQ(system.record,
              (Texts{"run echo '[1000]start to connect...'>>/home/root/spicec.log",
                     "run rm -rf /root/.config/spice/known_hosts", "run killall spicec",
                     "run killall spicy", "run killall remote-view", "run " + command, "thread"}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] spice connection params:" + command});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1001]start to connect...");

    system.record.clear();
    system.outputs = {"a window\n"};
    system.threads.at(0)();
    EXPECT_EQ(system.record.at(1),
              "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep remote-view");
    EXPECT_EQ(system.record.at(2), "run echo \"0x00000000 connect success\" > "
                                   "/usr/local/vpclient/config/clientstatus");
}

TEST_F(SpiceLaunch, UsesTheMarkerFileOfDeniedUsb) {
    test::store_items(
        {test::record_item("spiceItem_id_64", {{"id", "64"}, {"useRedirect", "on"}})});
    {
        test::ScriptedOs system;
        EXPECT_TRUE(launch_spice(64));
        EXPECT_EQ(system.record.at(5),
                  "run remote-viewer -f" + usb_filters + " >>/home/root/spicec.log 2>&1 &");
    }
    test::ScriptedOs system;
    system.files = {"/home/root/usbdenied"};
    EXPECT_TRUE(launch_spice(64));
    EXPECT_EQ(system.record.at(5),
              "run remote-viewer -f --spice-disable-usbredir >>/home/root/spicec.log 2>&1 &");
}

TEST_F(SpiceLaunch, DeliberatelyAsksForTheKeyThatRecordsSpellOtherwise) {
    test::Item item = test::record_item("spiceItem_id_64", {{"id", "64"}, {"disableAll", "on"}});
    test::store_items({item});
    {
        test::ScriptedOs system;
        EXPECT_TRUE(launch_spice(64));
        EXPECT_EQ(system.record.at(5),
                  "run remote-viewer -f --spice-disable-usbredir >>/home/root/spicec.log 2>&1 &");
    }
    item.values.emplace_back("disableall", "on");
    test::store_items({item});
    test::ScriptedOs system;
    EXPECT_TRUE(launch_spice(64));
    EXPECT_EQ(system.record.at(5), "run remote-viewer -f --spice-disable-effects=\"all\" "
                                   "--spice-disable-usbredir >>/home/root/spicec.log 2>&1 &");
}

TEST_F(SpiceLaunch, OfAnAbsentRecordStartsTheClientAllTheSame) {
    test::ScriptedOs system;
    EXPECT_TRUE(launch_spice(64));
    EXPECT_EQ(system.record.at(5),
              "run remote-viewer -f --spice-disable-usbredir >>/home/root/spicec.log 2>&1 &");
}

TEST_F(SpiceLaunch, WithoutAThreadFailsWhenTheClientRuns) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(launch_spice(64));
    EXPECT_EQ(system.record.back(), "thread");
    EXPECT_EQ(system.record.at(5),
              "run remote-viewer -f --spice-disable-usbredir >>/home/root/spicec.log 2>&1 &");
    EXPECT_EQ(test::log_lines().back(), "[ERROR] @launchclient thread create fail");
}

TEST(SpiceCommandLine, DeliberatelyTiesAnimationToFontSmoothing) {
    const std::pair<FieldValues, const char*> cases[] = {
        {{{Field::fontSmooth, "off"}, {Field::widgetAnimate, "on"}},
         " --spice-disable-effects=\"font-smooth,animation\""},
        {{{Field::fontSmooth, "on"}, {Field::widgetAnimate, "off"}}, ""},
        {{{Field::desktopBackground, "off"}, {Field::widgetAnimate, "off"}},
         " --spice-disable-effects=\"wallpaper\""},
    };
    for (const auto& [values, option] : cases) {
        EXPECT_EQ(spice_command_line({record_of(values)}),
                  std::string("remote-viewer -f") + option + " --spice-disable-usbredir");
    }
}

TEST_F(SpiceLaunch, NeverNamesTheSecurePortNorACertificateNorAPassword) {
    test::store_items({test::record_item("spiceItem_id_64", {{"serverAddress", "h"},
                                                             {"port", "1"},
                                                             {"sport", "2"},
                                                             {"useSport", "on"},
                                                             {"selectCertificate", "ca.pem"},
                                                             {"username", "u"},
                                                             {"password", "not base64"}})});
    test::ScriptedOs system;
    EXPECT_TRUE(launch_spice(64));
    EXPECT_EQ(system.record.at(5), "run remote-viewer -f --spice-disable-usbredir spice://h:1 "
                                   ">>/home/root/spicec.log 2>&1 &");
}

} // namespace qvtc::clients
