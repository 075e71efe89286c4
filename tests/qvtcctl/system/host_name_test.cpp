#include "qvtcctl/system/host_name.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

TEST(QvtcctlHostName, PlainNamesAreRight) {
    for (const std::string name :
         {"a", "7", "reception-2", "TC123456", "desk.office.example", "a--b"})
        EXPECT_EQ(fault_in_host_name(name), "") << name;
    EXPECT_EQ(fault_in_host_name(std::string(63, 'a')), "");
}

TEST(QvtcctlHostName, WhatIsWrongIsSaid) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "is empty"},
        {std::string(64, 'a'), "has 64 characters"},
        {std::string(100000, 'a'), "has 100000 characters"},
        {"-a", "hyphen"},
        {"a-", "hyphen"},
        {"a.-b", "hyphen"},
        {".a", "dot"},
        {"a.", "dot"},
        {"a..b", "dot"},
        {"a_b", "may contain only"},
        {"a b", "may contain only"},
        {"büro", "may contain only"},
        {"$(reboot)", "may contain only"},
        {"a\nb", "may contain only"},
    };
    for (const auto& [name, part] : cases)
        EXPECT_NE(fault_in_host_name(name).find(part), std::string::npos) << name;
}

} // namespace qvtc::qvtcctl
