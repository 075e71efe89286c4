#include "display/portal.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

class Portal : public test::DisplayTerminal {};

} // namespace

TEST_F(Portal, IsOffWhereTheStoredTextSaysSoAndElseOn) {
    test::capture_stderr(
        [] { EXPECT_EQ(test::text_of(qvgetuserportal()), R"({"useUserportal":"on"})"); });
    const std::pair<const char*, const char*> cases[] = {
        {"off", "off"}, {"on", "on"}, {"turned off", "off"}, {"", "on"},
        {"OFF", "on"},  {"0", "on"},  {"it's", "on"},        {"'off\"", "off"},
    };
    for (const auto& [stored, told] : cases) {
        store_settings({{test::portal_key, stored}});
        const std::string object = std::string(R"({"useUserportal":")") + told + R"("})";
        EXPECT_EQ(test::text_of(qvgetuserportal()), object) << stored;
        EXPECT_EQ(test::text_of(getuserportal()), object) << stored;
    }
}

TEST_F(Portal, IsStoredFromOnePairWhateverItsName) {
    const std::pair<const char*, const char*> cases[] = {
        {"useUserportal=off", "off"}, {"x=on=1", "on"},   {"x=on", "on"},
        {"a=b&c=d", "b&c"},           {"a&b=off", "off"}, {"x= ", " "},
    };
    for (int (*const set)(const char*) : {qvsetuserportal, setuserportal}) {
        for (const auto& [params, stored] : cases) {
            test::capture_stderr([&, p = params] { EXPECT_EQ(set(p), 0); });
            EXPECT_EQ(test::stored_setting(test::portal_key), stored) << params;
        }
    }
    EXPECT_EQ(test::recorded_commands(), test::Texts{});
}

TEST_F(Portal, ATextThatIsNoPairStoresNothing) {
    store_settings({{test::portal_key, "off"}});
    for (const char* const params : {"", "on", "=on", "x=", "x==on"}) {
        EXPECT_EQ(qvsetuserportal(params), 0);
        EXPECT_EQ(test::stored_setting(test::portal_key), "off") << params;
    }
}

} // namespace qvtc::display
