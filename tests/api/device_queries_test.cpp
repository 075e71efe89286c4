#include "api/device_queries.hpp"

#include "connections/documents.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::api {

namespace {

using Texts = std::vector<std::string>;
namespace keys = store::keys;

constexpr const char* capacity = "/sys/class/power_supply/BAT0/capacity";
const std::string chinese_picture =
    "run \\cp -f /usr/share/plymouth/themes/darwin/background-zh_CN.png "
    "/usr/share/plymouth/themes/darwin/logo.png";
const std::string english_picture =
    "run \\cp -f /usr/share/plymouth/themes/darwin/background-en_US.png "
    "/usr/share/plymouth/themes/darwin/logo.png";

class DeviceQueries : public test::FreshTerminal {
  protected:
    static std::string language_of(const std::string& stored) {
        store::store_setting(keys::language, stored);
        return language();
    }

    test::ScriptedOs system;
};

} // namespace

// --- Language --------------------------------------------------------------------------------

TEST_F(DeviceQueries, LanguageIsOneOfThreeOrAsStored) {
    EXPECT_EQ(language(), "");
    EXPECT_EQ(language_of("zh_CN.UTF-8"), "zh_CN");
    EXPECT_EQ(language_of("en_US"), "en_US");
    EXPECT_EQ(language_of("LANG=ko_KR"), "ko_KR");
    EXPECT_EQ(language_of("en_US ko_KR"), "ko_KR"); // by their own order
    EXPECT_EQ(language_of("ko_KR zh_CN"), "zh_CN");
    EXPECT_EQ(language_of("de_DE.UTF-8"), "de_DE.UTF-8");
    EXPECT_EQ(language_of("x"), "x");
    EXPECT_EQ(language_of("zh_cn"), "zh_cn");
    EXPECT_EQ(system.record, Texts{});
}

TEST_F(DeviceQueries, LanguageHas127BytesAtMost) {
    EXPECT_EQ(language_of(std::string(200, 'x')), std::string(127, 'x'));
    EXPECT_EQ(language_of(std::string(122, 'x') + "zh_CN"), "zh_CN");
    EXPECT_EQ(language_of(std::string(123, 'x') + "zh_CN"), std::string(123, 'x') + "zh_C");
    EXPECT_EQ(language_of(std::string(100'000, 'x')), std::string(127, 'x'));
}

TEST_F(DeviceQueries, SettingALanguageCopiesItsPicture) {
    const std::pair<const char*, std::string> cases[] = {
        {"zh_CN", chinese_picture}, {"zh_CN.UTF-8", chinese_picture}, {"en_US", english_picture},
        {"ko_KR", english_picture}, {"$(touch x)", english_picture},  {"'; x", english_picture},
        {"\xff", english_picture},  {"a\nb", english_picture},
    };
    for (const auto& [language, picture] : cases) {
        system.record.clear();
        EXPECT_EQ(set_language((std::string("language=") + language).c_str()), 0);
        EXPECT_EQ(system.record, Texts{picture}) << language;
    }
    EXPECT_EQ(set_language("x=1&language=ko_KR&y=2"), 0);
    EXPECT_EQ(store::setting(keys::language), "ko_KR");
    EXPECT_EQ(test::log_lines().back(), "[INFO] qvsetlanguage language=ko_KR");
}

TEST_F(DeviceQueries, WithoutALanguageNothingChanges) {
    store::store_setting(keys::language, "en_US");
    for (const char* const params : {"", "language", "language=", "Language=zh_CN", "x=zh_CN"}) {
        EXPECT_EQ(set_language(params), 0) << params;
    }
    EXPECT_EQ(set_language(""), 0);
    EXPECT_EQ(store::setting(keys::language), "en_US");
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::log_lines(), Texts(6, "[INFO] qvsetlanguage language=(null)"));
}

TEST_F(DeviceQueries, LockedPictureStaysAndTheLanguageIsStored) {
    for (const char* const locked : {"{'value':'1'}", "{'a':'b','value':'1'}", "'value':'1'"}) {
        store::store_setting(keys::boot_picture, locked);
        store::store_setting(keys::language, "en_US");
        EXPECT_EQ(set_language("language=zh_CN"), -1) << locked;
        EXPECT_EQ(store::setting(keys::language), "zh_CN");
        EXPECT_EQ(system.record, Texts{}) << locked;
    }
}

TEST_F(DeviceQueries, PictureIsLockedByJustThatText) {
    for (const std::string& open :
         {std::string("{'value':'0'}"), std::string("{\"value\":\"1\"}"), std::string("1"),
          std::string("{'value': '1'}"), std::string(120, ' ') + "'value':'1'"}) {
        store::store_setting(keys::boot_picture, open);
        system.record.clear();
        EXPECT_EQ(set_language("language=zh_CN"), 0) << open;
        EXPECT_EQ(system.record, Texts{chinese_picture}) << open;
    }
}

TEST_F(DeviceQueries, LongLanguageIsStoredAsFarAsAParameterHoldsIt) {
    for (const std::size_t size : {255UL, 10'239UL, 10'240UL, 100'000UL}) {
        system.record.clear();
        EXPECT_EQ(set_language(("language=" + std::string(size, 'x')).c_str()), 0);
        EXPECT_EQ(system.record, Texts{english_picture});
        EXPECT_EQ(language(), std::string(127, 'x'));
    }
}

// --- Battery ---------------------------------------------------------------------------------

TEST_F(DeviceQueries, BatteryIsAskedWhenThereIsOne) {
    EXPECT_EQ(battery_charge(), -1);
    EXPECT_EQ(system.record, Texts{});
    system.files = {capacity};
    const std::pair<const char*, int> cases[] = {
        {"87\n", 87},  {"100\n", 100}, {"0\n", 0}, {"", -1},
        {"x", 0},      {" 5", 5},      {"-3", -3}, {"cat: Permission denied\n", -1},
        {"5 cat", -1},
    };
    for (const auto& [output, charge] : cases) {
        system.outputs = {output};
        EXPECT_EQ(battery_charge(), charge) << output;
    }
    EXPECT_EQ(system.record, Texts(9, std::string("capture 128 cat ") + capacity));
}

} // namespace qvtc::api
