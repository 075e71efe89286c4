#include "network/default_route.hpp"

#include "connections/documents.hpp"
#include "network/network_commands.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::network {

namespace {

using test::Texts;
using test::operator+;

class DefaultRoute : public test::FreshTerminal {};

constexpr const char* look = "route |grep default";
constexpr const char* found_line =
    "default         gateway         0.0.0.0         UG    0      0        0 eth1\n";

std::string stored() { return test::stored_setting("tc_config_param_16"); }

} // namespace

TEST_F(DefaultRoute, ThatIsThereAlreadyIsStoredAsItWasFound) {
    test::ScriptedOs system;
    system.replies[look] = found_line;
    set_default_route("default=eth1");
    EXPECT_EQ(system.record, Texts{std::string("capture 1024 ") + look});
    EXPECT_EQ(stored(), found_line);
}

TEST_F(DefaultRoute, DeliberatelyStoresTheCommandThatAddedIt) {
    test::ScriptedOs system;
    system.replies[look] = found_line;
    system.replies["ifconfig |grep eth0 "] = test::running_line;
    system.replies[test::gateway_command("wlan0")] = "192.168.1.1\n";
    set_default_route("x=1&default=wlan0");
    const std::string command = "route add default gw 192.168.1.1 dev wlan0 >/dev/null 2>&1";
    EXPECT_EQ(system.record,
              (Texts{std::string("capture 1024 ") + look} + test::status_commands +
               Texts{"capture 128 " + test::gateway_command("wlan0"), "run " + command}));
    EXPECT_EQ(stored(), command);
}

TEST_F(DefaultRoute, WithoutAGatewayIsTriedAllTheSame) {
    test::ScriptedOs system;
    set_default_route("default=eth1");
    const std::string command = "route add default gw  dev eth1 >/dev/null 2>&1";
    EXPECT_EQ(system.record, (Texts{std::string("capture 1024 ") + look} + test::status_commands +
                              Texts{"run " + command}));
    EXPECT_EQ(stored(), command);
}

TEST_F(DefaultRoute, OfNoInterfaceIsThatOfTheMainPort) {
    for (const char* const params : {"default=&x=1", "something=else", "123456789"}) {
        test::ScriptedOs system;
        set_default_route(params);
        EXPECT_EQ(system.record.back(), "run route add default gw  dev eth0 >/dev/null 2>&1");
        EXPECT_EQ(stored(), "route add default gw  dev eth0 >/dev/null 2>&1");
        system.record.clear();
        system.replies[look] = "default via eth0\n";
        set_default_route(params);
        EXPECT_EQ(system.record, Texts{std::string("capture 1024 ") + look});
        EXPECT_EQ(stored(), "default via eth0\n");
    }
}

TEST_F(DefaultRoute, FromFewerThanNineCharactersIsNone) {
    test::ScriptedOs system;
    for (const char* const params : {"", "default=", "12345678"}) set_default_route(params);
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(test::stored_document(), "");
}

TEST_F(DefaultRoute, IsReadAsJsonMakesOfIt) {
    EXPECT_EQ(default_route(), nullptr); // nothing stored
    const std::pair<std::string, const char*> cases[] = {
        {found_line, nullptr},
        {"route add default gw 10.0.0.1 dev eth1 >/dev/null 2>%1", nullptr},
        {"{'default':'eth0'}", "{ \"default\": \"eth0\" }"},
    };
    for (const auto& [text, expected] : cases) {
        test::store_items({{"configItem", {{"tc_config_param_16", text}}}});
        const Json object = default_route();
        EXPECT_EQ(object == nullptr, expected == nullptr) << text;
        if (object == nullptr) continue;
        EXPECT_STREQ(json_object_to_json_string(object.get()), expected);
    }
    test::store_items({{"configItem", {{"tc_config_param_16", std::string(2000, '1')}}}});
    EXPECT_EQ(default_route_text(), std::string(1023, '1'));
}

} // namespace qvtc::network
