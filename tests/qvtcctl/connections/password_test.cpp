#include "qvtcctl/connections/password.hpp"

#include "qvtcctl/connections/validation.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

const ConnectionType& rdp = *find_type("rdp");
const ConnectionType& vnc = *find_type("vnc");

TEST(QvtcctlPassword, StoredFormIsBase64ThatAParameterStringCarries) {
    struct Case {
        std::string_view password, stored;
    };
    for (const Case& c : {Case{"secret", "c2VjcmV0"}, Case{"a", "YQ++"}, Case{"ab", "YWI+"},
                          Case{"\xFB\xEF\xBE", "----"}, Case{"\xFF\xFF\xFF", "////"}}) {
        EXPECT_EQ(stored_password(rdp, c.password), c.stored);
        EXPECT_EQ(readable_password(rdp, c.stored), c.password);
        EXPECT_EQ(fault_in_carrying(c.stored), "");
    }
}

TEST(QvtcctlPassword, VncStoresTheTextItself) {
    EXPECT_EQ(stored_password(vnc, "se+cret"), "se+cret");
    EXPECT_EQ(readable_password(vnc, "se+cret"), "se+cret");
}

TEST(QvtcctlPassword, BothOwnLettersForSlashAreRead) {
    EXPECT_EQ(readable_password(rdp, "____"), "\xFF\xFF\xFF");
}

TEST(QvtcctlPassword, WhatIsNotTheStoredFormIsNotReadable) {
    EXPECT_EQ(readable_password(rdp, "secret"), std::nullopt);
    EXPECT_EQ(readable_password(rdp, "(set)"), std::nullopt);
}

TEST(QvtcctlPassword, TheLongestOneFillsTheFieldAlmost) {
    const std::string longest(longest_password(rdp), 'x');
    EXPECT_EQ(longest.size(), 45U);
    EXPECT_EQ(stored_password(rdp, longest).size(), 60U);
    EXPECT_EQ(longest_password(vnc), 63U);
}

} // namespace
} // namespace qvtc::qvtcctl
