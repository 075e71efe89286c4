#include "display/power_saving.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

using test::stored_setting;
using test::Texts;

class PowerSaving : public test::DisplayTerminal {
  protected:
    const test::StandIn xset{"xset"};
};

const Texts off = {"xset dpms 0 0 0 >/dev/null 2>&1", "xset s off >/dev/null 2>&1"};

Texts on(const std::string& seconds) {
    return {"xset s off >/dev/null 2>&1", "xset dpms force on >/dev/null 2>&1",
            "xset dpms 0 0 " + seconds + " >/dev/null 2>&1"};
}

/// The document's form of a parameter string.
std::string as_stored(std::string params) {
    std::replace(params.begin(), params.end(), '&', '%');
    return params;
}

struct Case {
    std::string params;
    Texts commands;
};

/// What texts of 9 and more characters put into force.
const std::vector<Case> cases = {
    {"monitorPowerSave=on&monitorPowerSaveMins=10", on("600")},
    {"monitorPowerSaveMins=1&monitorPowerSave=on", on("60")},
    {"monitorPowerSave=on&monitorPowerSaveMins=abc", on("0")},
    {"monitorPowerSave=on&monitorPowerSaveMins=0", on("0")},
    {"monitorPowerSave=on&monitorPowerSaveMins=-1", on("-60")},
    {"monitorPowerSave=on&monitorPowerSaveMins=5m", on("300")},
    {"monitorPowerSave=on&monitorPowerSaveMins=2147483647", on("2147483647")},
    {"monitorPowerSave=on&monitorPowerSaveMins=$(reboot)", on("0")},
    {"monitorPowerSave=on", {}},
    {"monitorPowerSave=on&monitorPowerSaveMins=", {}},
    {"monitorPowerSave=off", off},
    {"monitorPowerSave=off&monitorPowerSaveMins=5", off},
    {"monitorPowerSave=On&monitorPowerSaveMins=5", off},
    {"monitorPowerSave=on &monitorPowerSaveMins=5", off},
    {"monitorPowerSave=1&monitorPowerSaveMins=5", off},
    {"monitorPowerSave=&monitorPowerSaveMins=5", {}},
    {"monitorPowerSaveMins=5", {}},
    {"123456789", {}},
};

} // namespace

TEST_F(PowerSaving, IsPutIntoForceAndStoredWhole) {
    for (int (*const set)(const char*) : {qvsetidle, setidle}) {
        for (const Case& each : cases) {
            test::forget_commands();
            test::capture_stderr([&] { EXPECT_EQ(set(each.params.c_str()), 0); });
            EXPECT_EQ(test::recorded_commands(), each.commands) << each.params;
            EXPECT_EQ(stored_setting(test::power_saving_key), each.params);
        }
    }
}

TEST_F(PowerSaving, ATextOfFewerThanNineCharactersIsIgnored) {
    for (const char* const params : {"", "a=b", "12345678"}) {
        EXPECT_EQ(qvsetidle(params), 0);
    }
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_FALSE(test::file_exists(test::document_path));
}

TEST_F(PowerSaving, AtTheStartIsThatOfTheStoredText) {
    for (const Case& each : cases) {
        store_settings({{test::power_saving_key, as_stored(each.params)}});
        test::forget_commands();
        EXPECT_EQ(display_init(), 0);
        EXPECT_EQ(test::recorded_commands(), each.commands) << each.params;
    }
    // There even a shorter one counts, if it says something; none of ours can.
    store_settings({{test::power_saving_key, "a=b"}});
    test::forget_commands();
    EXPECT_EQ(display_init(), 0);
    EXPECT_EQ(test::recorded_commands(), Texts{});
}

TEST_F(PowerSaving, AtTheStartIsOffWhereNoneIsStored) {
    test::capture_stderr([] { EXPECT_EQ(display_init(), 0); });
    EXPECT_EQ(test::recorded_commands(), off);
    for (const char* const document : {"", "<Other/>", "no document"}) {
        test::write_file(test::document_path, document);
        test::forget_commands();
        test::capture_stderr([] { EXPECT_EQ(display_init(), 0); });
        EXPECT_EQ(test::recorded_commands(), off) << document;
    }
    store_settings({{test::power_saving_key, ""}});
    test::forget_commands();
    start();
    EXPECT_EQ(test::recorded_commands(), off);
}

TEST_F(PowerSaving, IsToldAsItIsStored) {
    const std::pair<const char*, const char*> told[] = {
        {"monitorPowerSave=on%monitorPowerSaveMins=10",
         R"({"monitorPowerSave":"on","monitorPowerSaveMins":"10"})"},
        {"monitorPowerSave=off%monitorPowerSaveMins=5",
         R"({"monitorPowerSave":"off","monitorPowerSaveMins":"5"})"},
        {"monitorPowerSave=off", R"({"monitorPowerSave":"off","monitorPowerSaveMins":"5"})"},
        {"monitorPowerSaveMins=7", R"({"monitorPowerSave":"on","monitorPowerSaveMins":"7"})"},
        {"monitorPowerSave=%monitorPowerSaveMins=",
         R"({"monitorPowerSave":"on","monitorPowerSaveMins":"5"})"},
        {"123456789", R"({"monitorPowerSave":"on","monitorPowerSaveMins":"5"})"},
        {"monitorPowerSave=it's", R"({"monitorPowerSave":"it's","monitorPowerSaveMins":"5"})"},
        {"monitorPowerSave=a\"b", R"({"monitorPowerSave":"a\"b","monitorPowerSaveMins":"5"})"},
        {"monitorPowerSave=a|b", R"({"monitorPowerSave":"a\\b","monitorPowerSaveMins":"5"})"},
    };
    for (const auto& [stored, object] : told) {
        store_settings({{test::power_saving_key, stored}});
        EXPECT_EQ(test::text_of(qvgetidle()), object);
        EXPECT_EQ(test::text_of(getidle()), object);
    }
    EXPECT_EQ(test::recorded_commands(), Texts{});
}

TEST_F(PowerSaving, IsOffAndFiveMinutesWhereNoneIsStored) {
    test::capture_stderr([] {
        EXPECT_EQ(test::text_of(qvgetidle()),
                  R"({"monitorPowerSave":"off","monitorPowerSaveMins":"5"})");
    });
}

TEST_F(PowerSaving, IsNullForAStoredTextOfUpToEightCharacters) {
    for (const char* const stored : {"x", "x=1", "12345678"}) {
        store_settings({{test::power_saving_key, stored}});
        EXPECT_EQ(qvgetidle(), nullptr) << stored;
        EXPECT_EQ(getidle(), nullptr) << stored;
    }
}

} // namespace qvtc::display
