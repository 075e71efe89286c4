#include "clients/rdp.hpp"

#include "clients/records.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

/// The record on which the cases below build.
RdpFacts plain_facts(const FieldValues& changes = {}) {
    RdpFacts facts;
    facts.record = record_of({{Field::name, "Office"},
                              {Field::serverAddress, "10.0.0.5"},
                              {Field::colorDepth, "32"},
                              {Field::username, "u1"},
                              {Field::domain, "D"}});
    for (const auto& [field, value] : changes) facts.record[field] = value;
    return facts;
}

// The plain line in three parts, between which the cases put theirs.
const std::string head = "xfreerdp /t:Office /v:'10.0.0.5' /f +auto-reconnect "
                         "/auto-reconnect-max-retries:5 /cert-ignore ";
const std::string logon = " /u:'u1' /d:'D'";
const std::string tail =
    " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims /monitors:1 /multimon";

const Field switches[] = {
    Field::usbRedirection,    Field::multiTouch,
    Field::useRdGateway,      Field::useGFX,
    Field::useRemoteFX,       Field::redirectAudio,
    Field::multimedia,        Field::useCompress,
    Field::useCustomRDPPort,  Field::fontSmooth,
    Field::desktopBackground, Field::visualStyle,
    Field::persistBitmap,     Field::dragShowContent,
    Field::widgetAnimate,     Field::audioPlayOnServer,
    Field::localStorage,      Field::isConnectStart,
};

} // namespace

TEST(RdpCommandLine, OfAnEmptyRecordHoldsWhatIsAlwaysThere) {
    EXPECT_EQ(rdp_command_line(RdpFacts()),
              "xfreerdp /t: /v:'' /f +auto-reconnect /auto-reconnect-max-retries:5 /cert-ignore  "
              "/bpp: -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
              "/monitors:1 /multimon");
}

TEST(RdpCommandLine, WithEverythingOnHasAllOptionsInOrder) {
    RdpFacts facts = plain_facts({{Field::rdGatewayAddress, "G"},
                                  {Field::rdGatewayDomain, "GD"},
                                  {Field::rdpPort, "3390"},
                                  {Field::appFullpath, "C:/calc.exe"},
                                  {Field::workDir, "C:/work"},
                                  {Field::monitorSelect, "extend"}});
    for (const Field field : switches) facts.record[field] = "on";
    facts.password = "secret";
    facts.gateway_password = "gsecret";
    facts.screen_size = "1280x800";
    facts.audio_available = true;
    EXPECT_EQ(rdp_command_line(facts),
              "xfreerdp /t:Office /v:'10.0.0.5' /size:1280x800 +auto-reconnect "
              "/auto-reconnect-max-retries:5 /cert-ignore  /usb:auto +multitouch /u:'u1' "
              "/p:'secret' /d:'D' /g:'G' /gu:'' /gp:'gsecret' /gd:'GD' /gfx:AVC444 "
              "+async-update /sound:sys:pulse,latency:100 /microphone:sys:pulse /video "
              "+compression /port:3390 +fonts +wallpaper +themes +bitmap-cache +window-drag "
              "+menu-anims /audio-mode:1 +drives /shell:\"C:/calc.exe\" "
              "/shell-dir:\"C:/work\" /multimon /monitors:1,0");
}

TEST(RdpCommandLine, EachOptionStandsInItsPlace) {
    struct Case {
        FieldValues changes;
        std::string line;
    };
    const std::string graphics = " -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
                                 "/monitors:1 /multimon";
    const std::string screens = " /monitors:1 /multimon";
    const Case cases[] = {
        {{}, head + logon + tail},
        {{{Field::usbRedirection, "on"}}, head + " /usb:auto" + logon + tail},
        {{{Field::multiTouch, "on"}}, head + " +multitouch" + logon + tail},
        {{{Field::username, ""}}, head + " /d:'D'" + tail},
        {{{Field::username, "u 2"}}, head + " /u:'u 2' /d:'D'" + tail},
        {{{Field::domain, ""}}, head + " /u:'u1'" + tail},
        {{{Field::domain, "Other Domain"}}, head + " /u:'u1' /d:'Other Domain'" + tail},
        {{{Field::useGFX, "on"}}, head + logon + " /gfx:AVC444 +async-update" + graphics},
        {{{Field::useRemoteFX, "on"}}, head + logon + " /rfx /gdi:hw" + graphics},
        {{{Field::useGFX, "on"}, {Field::useRemoteFX, "on"}},
         head + logon + " /gfx:AVC444 +async-update" + graphics},
        {{{Field::colorDepth, ""}}, head + logon + " /bpp:" + graphics},
        {{{Field::colorDepth, "16"}}, head + logon + " /bpp:16" + graphics},
        {{{Field::multimedia, "on"}}, head + logon + " /bpp:32 /video" + graphics},
        {{{Field::useCompress, "on"}},
         head + logon + " /bpp:32 +compression -wallpaper -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::useCustomRDPPort, "on"}, {Field::rdpPort, "3390"}},
         head + logon +
             " /bpp:32 -compression /port:3390 -wallpaper -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::useCustomRDPPort, "on"}},
         head + logon +
             " /bpp:32 -compression /port: -wallpaper -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::rdpPort, "3390"}}, head + logon + tail},
        {{{Field::fontSmooth, "on"}},
         head + logon +
             " /bpp:32 -compression +fonts -wallpaper -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::desktopBackground, "on"}},
         head + logon + " /bpp:32 -compression +wallpaper -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::visualStyle, "on"}},
         head + logon +
             " /bpp:32 -compression -wallpaper +themes -bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::persistBitmap, "on"}},
         head + logon + " /bpp:32 -compression -wallpaper +bitmap-cache -window-drag -menu-anims" +
             screens},
        {{{Field::dragShowContent, "on"}},
         head + logon + " /bpp:32 -compression -wallpaper -bitmap-cache +window-drag -menu-anims" +
             screens},
        {{{Field::widgetAnimate, "on"}},
         head + logon + " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag +menu-anims" +
             screens},
        {{{Field::audioPlayOnServer, "on"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
             "/audio-mode:1" +
             screens},
        {{{Field::localStorage, "on"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims +drives" +
             screens},
        {{{Field::appFullpath, "calc"}, {Field::workDir, "work"}}, head + logon + tail},
        {{{Field::isConnectStart, "on"}}, head + logon + tail},
        {{{Field::isConnectStart, "on"}, {Field::appFullpath, "C:/Program Files/calc.exe"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
             "/shell:\"C:/Program Files/calc.exe\"" +
             screens},
        {{{Field::isConnectStart, "on"},
          {Field::appFullpath, "C:\\Windows\\notepad.exe"},
          {Field::workDir, "C:\\"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
             "/shell:\"C:\\Windows\\notepad.exe\" /shell-dir:\"C:\\\\\"" +
             screens},
        {{{Field::isConnectStart, "on"}, {Field::workDir, "work"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
             "/shell-dir:\"work\"" +
             screens},
        {{{Field::isConnectStart, "on"}, {Field::appFullpath, "calc"}, {Field::workDir, "work"}},
         head + logon +
             " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims "
             "/shell:\"calc\" /shell-dir:\"work\"" +
             screens},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(rdp_command_line(plain_facts(each.changes)), each.line);
    }
}

TEST(RdpCommandLine, ANameIsPlainTextBehindItsOption) {
    const std::pair<const char*, const char*> cases[] = {
        {"#1 Server", "/t:#1 Server"}, {"~home", "/t:~home"}, {"a ~ #", "/t:a \\~ \\#"}};
    for (const auto& [name, option] : cases) {
        const std::string start = std::string("xfreerdp ") + option + " /v:";
        EXPECT_EQ(rdp_command_line(plain_facts({{Field::name, name}})).substr(0, start.size()),
                  start);
    }
}

TEST(RdpCommandLine, FieldsThatAreReadAndNotUsedChangeNothing) {
    for (const Field field :
         {Field::id, Field::type, Field::port, Field::sport, Field::useNLA, Field::password,
          Field::rdGatewayPassword, Field::rdGatewayUseRemoteAccount, Field::desktopLayout,
          Field::printer, Field::useRedirect, Field::disableAll, Field::desktop,
          Field::vmwareProtocol, Field::isUseSGW, Field::useSport}) {
        EXPECT_EQ(rdp_command_line(plain_facts({{field, "on"}})), head + logon + tail)
            << connections::name_of(field);
    }
}

TEST(RdpCommandLine, ASwitchIsSetByExactlyOn) {
    for (const Field field : switches) {
        for (const char* const value : {"off", "On", "ON", "on ", " on", "1", "true", "yes", "o"}) {
            EXPECT_EQ(rdp_command_line(plain_facts({{field, value}})), head + logon + tail)
                << connections::name_of(field) << " = '" << value << "'";
        }
    }
}

TEST(RdpCommandLine, UsbAndDrivesAreLeftOutWhereUsbIsDenied) {
    RdpFacts facts = plain_facts({{Field::usbRedirection, "on"}, {Field::localStorage, "on"}});
    EXPECT_EQ(rdp_command_line(facts),
              head + " /usb:auto" + logon +
                  " /bpp:32 -compression -wallpaper -bitmap-cache -window-drag -menu-anims +drives "
                  "/monitors:1 /multimon");
    facts.usb_denied = true;
    EXPECT_EQ(rdp_command_line(facts), head + logon + tail);
}

TEST(RdpCommandLine, SoundNeedsTheSwitchAndAnAudioServer) {
    RdpFacts facts = plain_facts();
    facts.audio_available = true;
    EXPECT_EQ(rdp_command_line(facts), head + logon + tail);
    facts.record[Field::redirectAudio] = "on";
    EXPECT_EQ(rdp_command_line(facts),
              head + logon +
                  " /bpp:32 /sound:sys:pulse,latency:100 /microphone:sys:pulse -compression "
                  "-wallpaper -bitmap-cache -window-drag -menu-anims /monitors:1 /multimon");
    facts.audio_available = false;
    EXPECT_EQ(rdp_command_line(facts), head + logon + tail);
}

TEST(RdpCommandLine, APasswordIsGivenWhenOneIsStored) {
    RdpFacts facts = plain_facts();
    facts.password = "secret";
    EXPECT_EQ(rdp_command_line(facts), head + " /u:'u1' /p:'secret' /d:'D'" + tail);
    facts.password = ""; // stored, but of no characters
    EXPECT_EQ(rdp_command_line(facts), head + " /u:'u1' /p:'' /d:'D'" + tail);
    facts.record[Field::username] = "";
    facts.record[Field::domain] = "";
    facts.password = "it's";
    EXPECT_EQ(rdp_command_line(facts), head + R"( /p:'it'\''s')" + tail);
}

TEST(RdpCommandLine, TheGatewayIsNestedUnderTheDomainAndItsLogonUnderItsOwn) {
    struct Case {
        FieldValues changes;
        std::string options;
    };
    const Case cases[] = {
        {{{Field::useRdGateway, "on"}, {Field::rdGatewayAddress, "G"}}, " /u:'u1' /d:'D' /g:'G' "},
        {{{Field::useRdGateway, "on"}}, " /u:'u1' /d:'D' /g:'' "},
        {{{Field::useRdGateway, "on"},
          {Field::rdGatewayAddress, "G"},
          {Field::rdGatewayDomain, "GD"}},
         " /u:'u1' /d:'D' /g:'G' /gu:'' /gp:'gsecret' /gd:'GD'"},
        {{{Field::useRdGateway, "on"},
          {Field::rdGatewayAddress, "G"},
          {Field::rdGatewayDomain, "GD"},
          {Field::rdGatewayUsername, "g1"}},
         " /u:'g1' /d:'D' /g:'G' /gu:'' /gp:'gsecret' /gd:'GD'"},
        {{{Field::useRdGateway, "on"},
          {Field::rdGatewayAddress, "G"},
          {Field::rdGatewayDomain, "GD"},
          {Field::domain, ""}},
         " /u:'u1'"},
        {{{Field::rdGatewayAddress, "G"}, {Field::rdGatewayDomain, "GD"}}, " /u:'u1' /d:'D'"},
        {{{Field::useRdGateway, "off"},
          {Field::rdGatewayAddress, "G"},
          {Field::rdGatewayDomain, "GD"}},
         " /u:'u1' /d:'D'"},
        // Deliberate: the gateway's user name logs on even where no gateway is used.
        {{{Field::rdGatewayUsername, "g1"}}, " /u:'g1' /d:'D'"},
        {{{Field::rdGatewayUsername, "g1"}, {Field::username, ""}, {Field::domain, ""}},
         " /u:'g1'"},
    };
    for (const Case& each : cases) {
        RdpFacts facts = plain_facts(each.changes);
        facts.gateway_password = "gsecret";
        EXPECT_EQ(rdp_command_line(facts), head + each.options + tail);
    }
}

TEST(RdpCommandLine, AGatewayWithoutAPasswordGetsAnEmptyOne) {
    EXPECT_EQ(rdp_command_line(plain_facts({{Field::useRdGateway, "on"},
                                            {Field::rdGatewayAddress, "G"},
                                            {Field::rdGatewayDomain, "GD"}})),
              head + " /u:'u1' /d:'D' /g:'G' /gu:'' /gp:'' /gd:'GD'" + tail);
}

TEST(RdpCommandLine, TheSizeTakesThePlaceOfFullScreen) {
    RdpFacts facts = plain_facts();
    facts.screen_size = "2560x1024";
    EXPECT_EQ(rdp_command_line(facts),
              "xfreerdp /t:Office /v:'10.0.0.5' /size:2560x1024 +auto-reconnect "
              "/auto-reconnect-max-retries:5 /cert-ignore " +
                  logon + tail);
}

TEST(RdpCommandLine, ABlankInTheTitleSeparatesItsWords) {
    EXPECT_EQ(rdp_command_line(plain_facts({{Field::name, "my office"}})),
              "xfreerdp /t:my office /v:'10.0.0.5' /f +auto-reconnect "
              "/auto-reconnect-max-retries:5 /cert-ignore " +
                  logon + tail);
}

TEST(RdpScreenSize, IsTheOutputWithoutItsNewlineFromFiveCharactersOn) {
    const std::pair<const char*, const char*> cases[] = {
        {"1280x800\n", "1280x800"},
        {"2560x1024\n", "2560x1024"},
        {"80x6\n", "80x6"},
        {"8x60\n", "8x60"},
        {"8x6\n", ""},
        {"\n", ""},
        {"", ""},
    };
    for (const auto& [output, size] : cases) EXPECT_EQ(screen_size_in(output), size) << output;
}

} // namespace qvtc::clients
