#include "system/manager_password.hpp"

#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

namespace {

std::string shown() {
    return json_object_to_json_string_ext(manager_password().get(), JSON_C_TO_STRING_PLAIN);
}

std::string shown_password() {
    return json_object_get_string(json_object_object_get(manager_password().get(), "password"));
}

} // namespace

TEST(ManagerPassword, IsEmptyWhenNoneIsSet) { EXPECT_EQ(shown(), R"({"password":""})"); }

TEST(ManagerPassword, ReadsBackAsItWasGiven) {
    set_manager_password("password=secret");
    EXPECT_EQ(shown(), R"({"password":"secret"})");
    EXPECT_EQ(store::setting(store::keys::manager_password), "secret");
    set_manager_password("other=1&password=second&password=third");
    EXPECT_EQ(shown(), R"({"password":"second"})");
    EXPECT_TRUE(test::recorded_commands().empty());
}

TEST(ManagerPassword, IsRemovedByAnAbsentOrEmptyOne) {
    const char* const cases[] = {"", "password=", "passwort=x", "password"};
    for (const char* const params : cases) {
        set_manager_password("password=secret");
        set_manager_password(params);
        EXPECT_EQ(shown(), R"({"password":""})") << params;
    }
}

TEST(ManagerPassword, KeepsItsQuotes) {
    for (const std::string password : {"it's", "say \"hi\"", "'", "', 'x': '", "a{b}", "\\n"}) {
        set_manager_password(("password=" + password).c_str());
        EXPECT_EQ(shown_password(), password);
    }
}

TEST(ManagerPassword, ShowsAtMost255Bytes) {
    for (const std::size_t length : {254U, 255U, 256U, 10240U, 100000U}) {
        store::store_setting(store::keys::manager_password, std::string(length, 'p'));
        EXPECT_EQ(shown_password(), std::string(std::min<std::size_t>(length, 255), 'p'));
    }
}

} // namespace qvtc::system
