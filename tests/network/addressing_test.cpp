#include "network/addressing.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::network {

namespace {

using test::Texts;

class AddressRequests : public test::FreshTerminal {};

} // namespace

TEST_F(AddressRequests, BecomeAnObjectAndAList) {
    const auto request =
        address_request("conf=1&ip=192.168.1.20&mask=255.255.255.0&gateway=192.168.1.1&"
                        "dns1=192.168.1.1",
                        Link::wired);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->object,
              "{'conf':'1','ip':'192.168.1.20','mask':'255.255.255.0','gateway':'192.168.1.1',"
              "'dns1':'192.168.1.1','dns2':''}");
    EXPECT_EQ(request->list, "1;192.168.1.20;255.255.255.0;192.168.1.1;192.168.1.1;0.0.0.0");
    EXPECT_FALSE(request->keep_file);
}

TEST_F(AddressRequests, HaveAFixedOrderAndLeaveOutOtherKeys) {
    const auto request =
        address_request("dns2=2&x=9&dns1=1&ssid=41&mask=m&ip=i&conf=0&gateway=g", Link::wired);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->object,
              "{'conf':'0','ip':'i','mask':'m','gateway':'g','dns1':'1','dns2':'2'}");
    EXPECT_EQ(request->list, "0;i;m;g;1;2");
}

TEST_F(AddressRequests, OfAWirelessLinkHaveTheNetworksName) {
    const auto request = address_request("conf=1&ssid=4f4b", Link::wireless);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->object,
              "{'conf':'1','ip':'','mask':'','gateway':'','dns1':'','dns2':'','ssid':'4f4b'}");
    EXPECT_EQ(request->list, "1;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;0.0.0.0;4f4b");
}

TEST_F(AddressRequests, KeepTheFileWhenTheyNameNoAddress) {
    const std::pair<const char*, bool> cases[] = {
        {"conf=1&dns1=8.8.8.8", true}, {"conf=1", true},
        {"conf=1&ip=0.0.0.0", false},  {"conf=1&mask=255.0.0.0", false},
        {"conf=1&gateway=1", false},   {"conf=0&dns1=8.8.8.8", false},
        {"conf=1&ip=", true},          {"conf=2", true},
    };
    for (const auto& [params, keeps] : cases)
        EXPECT_EQ(address_request(params, Link::wired)->keep_file, keeps) << params;
}

TEST_F(AddressRequests, WithoutAModeAreRefused) {
    for (const char* const params : {"ip=10.0.0.2&mask=255.0.0.0", "conf=", "conf", "CONF=1", ""})
        EXPECT_FALSE(address_request(params, Link::wireless)) << params;
    EXPECT_EQ(test::log_lines(), Texts(5, "[ERROR] @setnetworkconf no conf"));
}

TEST_F(AddressRequests, DropWhatDoesNotFit) {
    const std::string longest(255, '9');
    const auto request =
        address_request("conf=1&ip=" + longest + "&mask=" + longest + "&gateway=" + longest +
                            "&dns1=" + longest + "&dns2=" + longest,
                        Link::wired);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->list, "1;" + longest.substr(0, 125));
    EXPECT_EQ(request->object.size(), 1023U);
    EXPECT_EQ(addressing_of(request->list.c_str()).conf.ip, longest.substr(0, 63));
}

TEST_F(AddressRequests, OfAWirelessLinkKeepTheLongestName) {
    std::string name;
    for (int i = 0; i < 32; ++i) name += "e4";
    const std::string address = "255.255.255.255";
    const auto request =
        address_request("conf=1&ip=" + address + "&mask=" + address + "&gateway=" + address +
                            "&dns1=" + address + "&dns2=" + address + "&ssid=" + name,
                        Link::wireless);
    ASSERT_TRUE(request);
    EXPECT_EQ(addressing_of(request->list.c_str()).ssid, name);
}

TEST(Addressing, IsReadFromAList) {
    const Addressing wanted = addressing_of("1;2.2.2.2;3;4;5;6;4f4b");
    EXPECT_FALSE(wanted.dhcp);
    EXPECT_EQ(object_text(wanted.conf),
              "{'conf':'1','ip':'2.2.2.2','mask':'3','gateway':'4','dns1':'5','dns2':'6'}");
    EXPECT_EQ(wanted.ssid, "4f4b");
}

TEST(Addressing, OfWhatIsMissingIsZero) {
    const char* const zeros = "{'conf':'0.0.0.0','ip':'0.0.0.0','mask':'0.0.0.0',"
                              "'gateway':'0.0.0.0','dns1':'0.0.0.0','dns2':'0.0.0.0'}";
    for (const char* const list : {static_cast<const char*>(nullptr), "", ";", ";;;;;;;;;"}) {
        const Addressing wanted = addressing_of(list);
        EXPECT_EQ(object_text(wanted.conf), zeros);
        EXPECT_EQ(wanted.ssid, "0.0.0.0");
        EXPECT_TRUE(wanted.dhcp);
    }
    EXPECT_EQ(addressing_of("1;2.2.2.2").conf.mask, "0.0.0.0");
}

TEST(Addressing, IsDynamicForThreeReasons) {
    const std::pair<const char*, bool> cases[] = {
        {"0;2.2.2.2", true},  {"1;0", true},        {"1;0.0.0.0", true}, {"1;2.2.2.2", false},
        {"2;2.2.2.2", false}, {"x;2.2.2.2", false}, {"1;00", false},     {nullptr, true},
    };
    for (const auto& [list, dhcp] : cases)
        EXPECT_EQ(addressing_of(list).dhcp, dhcp) << (list != nullptr ? list : "none");
}

TEST_F(AddressRequests, AreStoredUnderTheDevicesKey) {
    store_object("eth1", "{'conf':'0'}");
    EXPECT_EQ(test::stored_document(),
              test::document_text({{"configItem", {{"networkconf-eth1", "{'conf':'0'}"}}}}));
}

} // namespace qvtc::network
