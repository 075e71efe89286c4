#include "system/host_name.hpp"

#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;
namespace keys = store::keys;

} // namespace

TEST(HostName, IsTheChosenOne) {
    store::store_setting(keys::device_identity, "123456");
    store::store_setting(keys::host_name, "reception");
    EXPECT_EQ(host_name(), "reception");
}

TEST(HostName, IsMadeOfTheIdentityWhenNoneIsChosen) {
    store::store_setting(keys::device_identity, "123456");
    EXPECT_EQ(host_name(), "TC123456");
    store::store_setting(keys::host_name, "");
    EXPECT_EQ(host_name(), "TC123456");
}

TEST(HostName, HasAPlaceholderWhenThereIsNeither) { EXPECT_EQ(host_name(), "ThinClient"); }

TEST(HostName, FitsItsBuffer) {
    store::store_setting(keys::device_identity, std::string(500, '1'));
    EXPECT_EQ(host_name(), "TC" + std::string(125, '1'));
    store::store_setting(keys::host_name, std::string(128, 'a'));
    EXPECT_EQ(host_name(), std::string(127, 'a'));
    store::store_setting(keys::host_name, std::string(127, 'b'));
    EXPECT_EQ(host_name(), std::string(127, 'b'));
}

TEST(HostName, IsStoredAndWrittenForTheNextStart) {
    set_host_name("reception");
    EXPECT_EQ(store::setting(keys::host_name), "reception");
    EXPECT_EQ(test::recorded_commands(), Texts{"echo \"reception\" > /etc/hostname"});
    EXPECT_EQ(test::read_file("/etc/hostname"), "reception\n");
}

TEST(HostName, AnEmptyOneChangesNothing) {
    set_host_name("reception");
    test::forget_commands();
    set_host_name("");
    EXPECT_EQ(store::setting(keys::host_name), "reception");
    EXPECT_TRUE(test::recorded_commands().empty());
    EXPECT_EQ(test::read_file("/etc/hostname"), "reception\n");
}

TEST(HostName, OneThatEchoTakesForAnOptionChangesNothing) {
    set_host_name("reception");
    test::forget_commands();
    Texts log;
    for (const char* const name : {"-n", "-e", "-E", "-neE"}) {
        set_host_name(name);
        log.push_back(std::string("[ERROR] @set_tc_hostname not a host name: ") + name);
    }
    EXPECT_EQ(store::setting(keys::host_name), "reception");
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_EQ(test::read_file("/etc/hostname"), "reception\n");
    EXPECT_EQ(test::log_lines(), log);
    set_host_name("-nx");
    EXPECT_EQ(test::read_file("/etc/hostname"), "-nx\n");
}

TEST(HostName, NoValueIsACommand) {
    for (const std::string name :
         {"$(touch /tmp/owned)", "`touch /tmp/owned`", "\"; touch /tmp/owned; \"", "a\\\"b",
          "' > /tmp/owned '", "$HOME", "a\\", "two words", "*"}) {
        set_host_name(name);
        EXPECT_EQ(test::read_file("/etc/hostname"), name + "\n");
        EXPECT_FALSE(test::file_exists("/tmp/owned")) << name;
    }
}

TEST(HostName, IsTakenAtAnyLength) {
    for (const std::size_t length : {10239U, 10240U, 100000U}) {
        const std::string name(length, 'n');
        set_host_name(name);
        EXPECT_EQ(store::setting(keys::host_name), name);
        EXPECT_EQ(test::read_file("/etc/hostname"), name + "\n");
        EXPECT_EQ(host_name(), name.substr(0, 127));
    }
}

} // namespace qvtc::system
