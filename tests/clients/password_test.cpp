#include "clients/password.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

TEST(StoredPassword, IsBase64WithPlusForThePadding) {
    struct Case {
        const char* stored;
        std::optional<std::string> text;
    };
    const Case cases[] = {
        {"", std::nullopt},
        {"c2VjcmV0", "secret"},
        {"cGFzc3dvcmQ+", "password"}, // as the front-end stores it
        {"cGFzc3dvcmQ=", "password"}, // as it would be without parameter strings
        {"YQ++", "a"},
        {"YQ==", "a"},
        {"YWJj\n", "abc"},
        {"++++", ""},  // nothing but padding
        {"YQBi", "a"}, // a, NUL, b
        {"AGFi", ""},  // NUL, a, b
        {"w6TDtsO8", "äöü"},
        {"4pi6", "☺"},
        {"_-__", "\xff\xef\xff"},
        {"JChyZWJvb3Qp", "$(reboot)"},
    };
    for (const Case& each : cases) {
        const Password password = decode_password(each.stored);
        EXPECT_TRUE(password.decodable) << each.stored;
        EXPECT_EQ(password.text, each.text) << each.stored;
    }
}

TEST(StoredPassword, OfNoWholeGroupsOfFourIsNotDecodable) {
    for (const char* const stored : {"a", "ab", "abc", "secret", "c2VjcmV0cw", "YQ+", "abcde"}) {
        const Password password = decode_password(stored);
        EXPECT_FALSE(password.decodable) << stored;
        EXPECT_EQ(password.text, std::nullopt) << stored;
    }
}

} // namespace qvtc::clients
