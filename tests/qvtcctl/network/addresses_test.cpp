#include "qvtcctl/network/addresses.hpp"

#include "refusals.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::refusal_of;

std::string refusal(Mode mode, const WantedAddresses& wanted) {
    return refusal_of([&] { require_addresses(mode, wanted); });
}

const WantedAddresses sound = {"192.168.1.20", "255.255.255.0", "192.168.1.1", "9.9.9.9", ""};

WantedAddresses with(std::string WantedAddresses::*field, const std::string& value) {
    WantedAddresses wanted = sound;
    wanted.*field = value;
    return wanted;
}

TEST(QvtcctlAddresses, AreFourPlainNumbers) {
    EXPECT_EQ(parse_ipv4("0.0.0.0"), 0U);
    EXPECT_EQ(parse_ipv4("192.168.1.20"), 0xc0a80114U);
    EXPECT_EQ(parse_ipv4("255.255.255.255"), 0xffffffffU);
    for (const char* const text :
         {"",          ".",          "1.2.3",     "1.2.3.",    "1.2.3.4.",
          "1.2.3.4.5", ".1.2.3.4",   "1..2.3",    "256.1.1.1", "1.1.1.999999999999",
          "01.2.3.4",  "1.2.3.04",   "+1.2.3.4",  "-1.2.3.4",  "1.2.3.4 ",
          " 1.2.3.4",  "1.2.3.4\n",  "0x1.2.3.4", "a.b.c.d",   "1,2,3,4",
          "::1",       "1.2.3.4/24", "$(id)",     "1.2.3.4;x"}) {
        EXPECT_EQ(parse_ipv4(text), std::nullopt) << text;
    }
}

TEST(QvtcctlAddresses, ThatWorkTogetherAreTaken) {
    EXPECT_EQ(refusal(Mode::fixed, sound), "");
    EXPECT_EQ(refusal(Mode::fixed, with(&WantedAddresses::dns1, "")), "");
    EXPECT_EQ(refusal(Mode::fixed, {"10.0.0.1", "255.255.255.252", "10.0.0.2", "", ""}), "");
    EXPECT_EQ(refusal(Mode::fixed, {"10.200.3.4", "255.0.0.0", "10.0.0.1", "1.1.1.1", "8.8.8.8"}),
              "");
    EXPECT_EQ(refusal(Mode::dhcp, {}), "");
    EXPECT_EQ(refusal(Mode::servers, {"", "", "", "9.9.9.9", "1.1.1.1"}), "");
}

TEST(QvtcctlAddresses, ThatDoNotAreRefusedWithFieldValueAndRule) {
    constexpr std::string_view quad = " is not an IPv4 address. Give four numbers from 0 to 255 "
                                      "with dots between them, such as 192.168.1.20.";
    constexpr std::string_view host =
        " cannot be the address of a host: the first number must be from 1 to "
        "223, and not 127.";
    constexpr std::string_view mask =
        " is not a valid network mask. Its bits must be ones and then "
        "zeros, with room for two machines, such as 255.255.255.0.";
    constexpr std::string_view whole = " is the first or last address of its network, which "
                                       "stands for all of it. Choose one in between.";
    const std::pair<WantedAddresses, std::string> cases[] = {
        {with(&WantedAddresses::address, "192.168.1"), "address \"192.168.1\"" + std::string(quad)},
        {with(&WantedAddresses::address, "127.0.0.1"), "address \"127.0.0.1\"" + std::string(host)},
        {with(&WantedAddresses::address, "0.0.0.0"), "address \"0.0.0.0\"" + std::string(host)},
        {with(&WantedAddresses::address, "224.0.0.1"), "address \"224.0.0.1\"" + std::string(host)},
        {with(&WantedAddresses::address, "192.168.1.0"),
         "address \"192.168.1.0\"" + std::string(whole)},
        {with(&WantedAddresses::address, "192.168.1.255"),
         "address \"192.168.1.255\"" + std::string(whole)},
        {with(&WantedAddresses::mask, "255.0.255.0"), "mask \"255.0.255.0\"" + std::string(mask)},
        {with(&WantedAddresses::mask, "0.0.0.0"), "mask \"0.0.0.0\"" + std::string(mask)},
        {with(&WantedAddresses::mask, "255.255.255.255"),
         "mask \"255.255.255.255\"" + std::string(mask)},
        {with(&WantedAddresses::mask, "255.255.255.254"),
         "mask \"255.255.255.254\"" + std::string(mask)},
        {with(&WantedAddresses::mask, "24"), "mask \"24\"" + std::string(quad)},
        {with(&WantedAddresses::gateway, "192.168.2.1"),
         "gateway \"192.168.2.1\" is outside the network of address 192.168.1.20 and mask "
         "255.255.255.0, so it could not be reached."},
        {with(&WantedAddresses::gateway, "192.168.1.20"),
         "gateway \"192.168.1.20\" is this terminal's own address. Give the router's."},
        {with(&WantedAddresses::gateway, "router"), "gateway \"router\"" + std::string(quad)},
        {with(&WantedAddresses::dns1, "9.9.9"), "dns1 \"9.9.9\"" + std::string(quad)},
        {with(&WantedAddresses::dns2, "\x1b[2J"), "dns2 \"\\x1b[2J\"" + std::string(quad)},
        {with(&WantedAddresses::address, ""), "--address is required for a static address."},
        {with(&WantedAddresses::mask, ""), "--mask is required for a static address."},
        {with(&WantedAddresses::gateway, ""), "--gateway is required for a static address."},
    };
    for (const auto& [wanted, message] : cases) EXPECT_EQ(refusal(Mode::fixed, wanted), message);
    EXPECT_EQ(refusal(Mode::dhcp, sound),
              "--address cannot be used with dhcp, which gets the addresses from the "
              "network's DHCP server.");
    EXPECT_EQ(refusal(Mode::dhcp, {"", "", "", "9.9.9.9", ""}),
              "--dns1 cannot be used with dhcp, which gets the addresses from the network's "
              "DHCP server.");
    EXPECT_EQ(refusal(Mode::servers, {"", "255.0.0.0", "", "9.9.9.9", ""}),
              "--mask cannot be used with dns, which sets the name servers alone.");
    EXPECT_EQ(refusal(Mode::servers, {}), "--dns1 is required for setting name servers.");
    EXPECT_EQ(refusal(Mode::fixed, {"10.0.0.2", "255.0.0.0", "10.0.0.1", "", "9.9.9.9"}),
              "--dns1 is missing: give the first name server before the second.");
}

TEST(QvtcctlAddresses, ModesAreThree) {
    EXPECT_EQ(require_mode("dhcp", false), Mode::dhcp);
    EXPECT_EQ(require_mode("static", false), Mode::fixed);
    EXPECT_EQ(require_mode("dns", true), Mode::servers);
    EXPECT_EQ(refusal_of([] { require_mode("dns", false); }),
              "unknown mode \"dns\": give one of dhcp, static.");
    EXPECT_EQ(refusal_of([] { require_mode("statik", true); }),
              "unknown mode \"statik\" (did you mean \"static\"?): give one of dhcp, static, "
              "dns.");
}

TEST(QvtcctlWifi, NamesHaveAtMostThirtyTwoBytes) {
    EXPECT_EQ(refusal_of([] { require_network_name(std::string(32, '\'')); }), "");
    EXPECT_EQ(refusal_of([] { require_network_name("$(touch /tmp/owned)"); }), "");
    EXPECT_EQ(refusal_of([] { require_network_name(""); }), "the network's name is empty.");
    EXPECT_EQ(refusal_of([] { require_network_name(std::string(33, 'x')); }),
              "name \"" + std::string(33, 'x') +
                  "\" has 33 bytes, and the limit for a network's name is 32.");
}

TEST(QvtcctlWifi, PasswordsAreWhatTheNetworkTakesAndAreNeverShown) {
    const auto fault = [](Encryption encryption, const std::string& password) {
        return refusal_of([&] { require_wifi_password(encryption, password); });
    };
    for (const std::string& password : {std::string("12345678"), std::string(63, 'x'),
                                        std::string(64, 'a'), std::string("wep05")}) {
        EXPECT_EQ(fault(Encryption::personal, password), "");
    }
    constexpr const char* rule = " bytes. A network's key has 8 to 63, or 64 hexadecimal digits; "
                                 "an old WEP key may have 5.";
    EXPECT_EQ(fault(Encryption::personal, "secret7"), std::string("the password has 7") + rule);
    EXPECT_EQ(fault(Encryption::personal, ""), std::string("the password has 0") + rule);
    EXPECT_EQ(fault(Encryption::personal, std::string(64, 'x')),
              std::string("the password has 64") + rule);
    EXPECT_EQ(fault(Encryption::personal, "secret=12"),
              "the password contains \"=\", which cannot be passed on. Choose one without.");
    EXPECT_EQ(fault(Encryption::enterprise, "a&b"),
              "the password contains \"&\", which cannot be passed on. Choose one without.");
    EXPECT_EQ(fault(Encryption::enterprise, "a\tb"),
              "the password contains a control character. Leave it out.");
    EXPECT_EQ(fault(Encryption::enterprise, ""), "the password is empty.");
    EXPECT_EQ(fault(Encryption::enterprise, "x"), "");
    EXPECT_EQ(fault(Encryption::enterprise, std::string(128, 'x')),
              "the password has 128 bytes, and the limit is 127.");
    EXPECT_EQ(refusal_of([] { require_wifi_user("anna"); }), "");
    EXPECT_EQ(refusal_of([] { require_wifi_user(""); }), "user is empty.");
    EXPECT_EQ(refusal_of([] { require_wifi_user("a=b"); }),
              "user \"a=b\" contains \"=\", which cannot be passed on. Choose one without.");
}

} // namespace
} // namespace qvtc::qvtcctl
