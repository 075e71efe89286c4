#include "qvtcctl/verb/stored_setting.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlStoredSetting, IsWhatIsStoredAndNoDefault) {
    EXPECT_EQ(stored_setting(setting_key::applied_resolution, Chatter::dropped), "");
    EXPECT_TRUE(store_setting(setting_key::applied_resolution, "10", Chatter::dropped));
    EXPECT_EQ(stored_setting(setting_key::applied_resolution, Chatter::dropped), "10");
    EXPECT_EQ(stored_setting(setting_key::host_name, Chatter::dropped), "");
}

TEST(QvtcctlStoredSetting, MayBeOfAnyLength) {
    const std::string longest(256UL * 1024, 'x');
    EXPECT_TRUE(store_setting(setting_key::host_name, longest, Chatter::dropped));
    EXPECT_EQ(stored_setting(setting_key::host_name, Chatter::dropped), longest);
}

TEST(QvtcctlStoredSetting, IsNotClaimedWhereItCannotBeSaved) {
    test::write_file("/home/root/vpclientData.xml", "<Other/>");
    EXPECT_FALSE(store_setting(setting_key::host_name, "desk", Chatter::dropped));
    EXPECT_EQ(test::read_file("/home/root/vpclientData.xml"), "<Other/>");
}

} // namespace
} // namespace qvtc::qvtcctl
