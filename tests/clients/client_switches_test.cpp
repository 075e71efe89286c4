#include "clients/client_switches.hpp"

#include "clients/hostile_values.hpp"
#include "core/base64.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

using Texts = std::vector<std::string>;

std::string text_of(const Json& object) {
    return object ? json_object_to_json_string_ext(object.get(), JSON_C_TO_STRING_PLAIN) : "null";
}

std::string camera_when_stored(const std::string& stored) {
    test::ScriptedOs os;
    os.outputs = {base64::encode(stored)};
    return text_of(camera_redirection());
}

} // namespace

TEST(HorizonMenuBar, IsStoredAsAPair) {
    EXPECT_TRUE(show_horizon_menu_bar(true));
    EXPECT_EQ(store::setting(store::keys::horizon_menu_bar), "toolbar=on");
    EXPECT_EQ(text_of(horizon_menu_bar()), R"({"toolbar":"on"})");
    EXPECT_TRUE(show_horizon_menu_bar(false));
    EXPECT_EQ(store::setting(store::keys::horizon_menu_bar), "toolbar=off");
    EXPECT_EQ(text_of(horizon_menu_bar()), R"({"toolbar":"off"})");
    EXPECT_TRUE(test::recorded_commands().empty());
}

TEST(HorizonMenuBar, IsOnUnlessItWasSwitchedOff) {
    EXPECT_EQ(text_of(horizon_menu_bar()), R"({"toolbar":"on"})");
    const std::pair<const char*, const char*> cases[] = {{"off", R"({"toolbar":"off"})"},
                                                         {"", R"({"toolbar":"on"})"},
                                                         {"x", R"({"toolbar":"on"})"},
                                                         {"OFF", R"({"toolbar":"on"})"},
                                                         {"on off", R"({"toolbar":"off"})"}};
    for (const auto& [stored, shown] : cases) {
        store::store_setting(store::keys::horizon_menu_bar, stored);
        EXPECT_EQ(text_of(horizon_menu_bar()), shown) << stored;
    }
}

TEST(CameraRedirection, IsGivenToTheNumberedStore) {
    test::ScriptedOs os;
    EXPECT_EQ(redirect_camera(true), 0);
    EXPECT_EQ(redirect_camera(false), 0);
    EXPECT_EQ(os.record, (Texts{"run qvplugin 1 90 " + base64::encode("hdxcamera=on"),
                                "run qvplugin 1 90 " + base64::encode("hdxcamera=off")}));
    EXPECT_EQ(test::log_lines(),
              (Texts{"[INFO] qvsethdxcamera hdxcamera=on", "[INFO] qvsethdxcamera hdxcamera=off"}));
}

TEST(CameraRedirection, DeliberatelyDoesNotReadBackWhatItStored) {
    EXPECT_EQ(camera_when_stored("hdxcamera=on"), "null");
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] qvgethdxcamera buffer=hdxcamera=on"});
}

TEST(CameraRedirection, TellsWhatIsStoredAsJson) {
    EXPECT_EQ(camera_when_stored("{'hdxcamera':'on'}"), R"({"hdxcamera":"on"})");
    EXPECT_EQ(camera_when_stored("{\"a\": 1}"), R"({"a":1})");
}

TEST(CameraRedirection, IsNullWithoutAnythingUsable) {
    test::ScriptedOs os;
    EXPECT_EQ(text_of(camera_redirection()), "null");
    os.outputs = {"no base64"};
    EXPECT_EQ(text_of(camera_redirection()), "null");
    os.outputs = {base64::encode("{\"a\": \"" + std::string(1024, 'x') + "\"}")};
    EXPECT_EQ(text_of(camera_redirection()), "null");
    EXPECT_EQ(os.record, Texts(3, "capture 102400 qvplugin 0 90"));
    EXPECT_TRUE(test::log_lines().empty());
}

TEST(HorizonMenuBar, IsOnOrOffWhateverIsStored) {
    for (const std::string& text : hostile_values()) {
        store::store_setting(store::keys::horizon_menu_bar, text);
        const bool off = text.find("off") != std::string::npos;
        EXPECT_EQ(text_of(horizon_menu_bar()),
                  off ? R"({"toolbar":"off"})" : R"({"toolbar":"on"})");
    }
}

TEST(CameraRedirection, IsNullOrJsonWhateverIsStored) {
    for (const std::string& text : hostile_values()) {
        const std::string shown = camera_when_stored(text);
        const Json again = parse_json(shown);
        EXPECT_TRUE(shown == "null" || again) << text;
    }
    for (const std::size_t size : {1023U, 1024U, 10239U, 10240U, 100000U}) {
        EXPECT_EQ(camera_when_stored(std::string(size, '{')), "null") << size;
    }
    // Of a text that fits, what stands between its first two quotes; one that does not is none.
    EXPECT_EQ(camera_when_stored(std::string(1023, '\'')), "\"\"");
    EXPECT_EQ(camera_when_stored(std::string(1024, '\'')), "null");
}

} // namespace qvtc::clients
