#include "qvtcctl/connections/validation.hpp"

#include "refusals.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::string_literals;

using test::refusal_of;

std::string verdict(std::string_view type, std::string_view field, std::string_view value) {
    return refusal_of([&] {
        require_value(fields[require_field(field)], *find_type(type), value, Strictness::whole);
    });
}

std::string password_verdict(std::string_view type, std::string_view password) {
    return refusal_of(
        [&] { require_password(fields[field_index("password")], *find_type(type), password); });
}

struct Case {
    std::string_view type, field;
    std::string value;
    std::string_view message;
};

TEST(QvtcctlValidation, GoodValuesPass) {
    for (const Case& c : {
             Case{"rdp", "name", "office", ""},
             {"rdp", "name", "", ""},
             {"vnc", "name", "my office", ""},
             {"rdp", "username", "Anna Maria", ""},
             {"rdp", "serverAddress", "10.0.0.5", ""},
             {"web", "serverAddress", "http://intranet/?a&b", ""},
             {"rdp", "rdpPort", "1", ""},
             {"rdp", "rdpPort", "65535", ""},
             {"rdp", "redirectAudio", "on", ""},
             {"rdp", "redirectAudio", "off", ""},
             {"rdp", "colorDepth", "24", ""},
             {"rdp", "monitorSelect", "hdmi", ""},
             {"horizon", "vmwareProtocol", "BLAST", ""},
             {"horizon", "desktop", "57696e3130", ""},
             {"rdp", "desktop", "57206e", ""},
             {"rdp", "password", "c2VjcmV0", ""},
             {"rdp", "domain", "M\xC3\xA4rz<>'`$(x);&", ""},
             {"rdp", "appFullpath", std::string(63, 'x'), ""},
         }) {
        EXPECT_EQ(verdict(c.type, c.field, c.value), c.message) << c.field << " " << c.value;
    }
}

TEST(QvtcctlValidation, WhatCannotBeStoredIsRefused) {
    for (const Case& c : {
             Case{"rdp", "domain", "a=b",
                  "domain \"a=b\" contains \"=\", which cannot be stored. Leave it out."},
             {"rdp", "domain", "a\"b",
              "domain \"a\"b\" contains a double quote, which cannot be stored. Leave it out."},
             {"rdp", "domain", "a\\b",
              "domain \"a\\b\" contains \"\\\", which cannot be stored. Leave it out."},
             {"rdp", "domain", "50%",
              "domain \"50%\" contains \"%\", which cannot be stored. Leave it out."},
             {"rdp", "domain", "a|b",
              "domain \"a|b\" contains \"|\", which cannot be stored. Leave it out."},
             {"rdp", "domain", "a\nb",
              "domain \"a\\x0ab\" contains a control character. Leave it out."},
             {"rdp", "domain", "a\x7F",
              "domain \"a\\x7f\" contains a control character. Leave it out."},
             {"rdp", "domain", "\xFF", "domain \"\\xff\" is not valid UTF-8."},
             {"rdp", "domain", "  ", "domain \"  \" contains only blanks, which are not kept."},
         }) {
        EXPECT_EQ(verdict(c.type, c.field, c.value), c.message);
    }
    EXPECT_EQ(verdict("rdp", "domain", std::string(64, 'x')),
              "domain \"" + std::string(64, 'x') +
                  "\" has 64 bytes, and the limit is 63. Shorten "
                  "it.");
}

TEST(QvtcctlValidation, WhatBreaksTheRuleOfItsFieldIsRefused) {
    for (const Case& c : {
             Case{"rdp", "rdpPort", "0",
                  "rdpPort \"0\" is not a valid port. Give a number from 1 to 65535."},
             {"rdp", "rdpPort", "65536",
              "rdpPort \"65536\" is not a valid port. Give a number from 1 to 65535."},
             {"spice", "port", "5900x",
              "port \"5900x\" is not a valid port. Give a number from 1 to 65535."},
             {"spice", "port", "0590",
              "port \"0590\" is not a valid port. Give a number from 1 to 65535."},
             {"rdp", "redirectAudio", "yes", "redirectAudio \"yes\" must be on or off."},
             {"rdp", "redirectAudio", "ON", "redirectAudio \"ON\" must be on or off."},
             {"rdp", "colorDepth", "33", "colorDepth \"33\" must be one of 8, 15, 16, 24, 32."},
             {"rdp", "colorDepth", "8|15",
              "colorDepth \"8|15\" contains \"|\", which cannot be stored. Leave it out."},
             {"rdp", "monitorSelect", "both",
              "monitorSelect \"both\" must be one of extend, vga, hdmi."},
             {"horizon", "vmwareProtocol", "Blast",
              "vmwareProtocol \"Blast\" must be one of PCOIP, BLAST, RDP."},
             {"horizon", "desktop", "Win10",
              "desktop \"Win10\" is not hexadecimal text. For a desktop of this name, write "
              "57696e3130."},
             {"rdp", "serverAddress", "abc",
              "serverAddress \"abc\" has 3 characters, and an address needs at least 4. Give the "
              "server's full name or its IP address."},
             {"vnc", "serverAddress", "-listen",
              "serverAddress \"-listen\" begins with \"-\", which an address must not."},
             {"web", "serverAddress", "http://a b",
              "serverAddress \"http://a b\" contains a blank, which an address must not. Leave it "
              "out."},
         }) {
        EXPECT_EQ(verdict(c.type, c.field, c.value), c.message);
    }
}

TEST(QvtcctlValidation, BlanksAreRefusedWhereAClientGetsTheValueUnquoted) {
    EXPECT_EQ(
        verdict("rdp", "name", "my office"),
        "name \"my office\" contains a blank, and the RDP client, which gets it unquoted, would "
        "take it for two options. Choose one without blanks.");
    EXPECT_EQ(
        verdict("horizon", "username", "a b"),
        "username \"a b\" contains a blank, and the Horizon client, which gets it unquoted, would "
        "take it for two options. Choose one without blanks.");
    EXPECT_EQ(
        verdict("horizon", "desktop", "57206e"),
        "desktop \"57206e\" contains a blank, and the Horizon client, which gets it unquoted, "
        "would take it for two options. Choose one without blanks.");
}

TEST(QvtcctlValidation, PasswordsAreNeverShown) {
    EXPECT_EQ(verdict("rdp", "password", "secret!"),
              "password is not in the stored form (base64 with \"+\" for \"=\" and \"-\" for "
              "\"+\"). Give the password with \"qvtcctl connection set\" instead.");
    EXPECT_EQ(password_verdict("rdp", ""),
              "password is empty. To remove a stored one, give password= instead.");
    EXPECT_EQ(password_verdict("rdp", std::string(46, 'x')),
              "password has 46 bytes, and the limit for the type rdp is 45. Choose a shorter one.");
    EXPECT_EQ(password_verdict("rdp", "a\tb"),
              "password contains a control character. Choose one without.");
    EXPECT_EQ(password_verdict("rdp", "\xFF"), "password is not valid UTF-8.");
    EXPECT_EQ(password_verdict("vnc", "a|b"),
              "password contains \"|\", which cannot be stored. Leave it out.");
    EXPECT_EQ(
        password_verdict("horizon", "a b"),
        "password contains a blank, and the Horizon client, which gets it unquoted, would take it "
        "for two options. Choose one without blanks.");
}

TEST(QvtcctlValidation, GoodPasswordsPass) {
    EXPECT_EQ(password_verdict("rdp", "p = \"a\" \\ %|&+ "), "");
    EXPECT_EQ(password_verdict("rdp", std::string(45, 'x')), "");
    EXPECT_EQ(password_verdict("vnc", std::string(63, 'x')), "");
}

TEST(QvtcctlValidation, CarryingOnlyForgetsTheRulesOfFields) {
    const auto verdict_on = [](std::string_view value) {
        return refusal_of([&] {
            require_value(fields[field_index("rdpPort")], *find_type("rdp"), value,
                          Strictness::carrying_only);
        });
    };
    EXPECT_EQ(verdict_on("many"), "");
    EXPECT_EQ(verdict_on("a|b"),
              "rdpPort \"a|b\" contains \"|\", which cannot be stored. Leave it out.");
}

TEST(QvtcctlValidation, ARecordNeedsWhatItsClientCannotDoWithout) {
    const auto usable = [](std::string_view type, const Record& record) {
        return refusal_of([&] { require_usable(*find_type(type), record); });
    };
    constexpr std::string_view no_depth =
        "colorDepth is missing: without useGFX=on or useRemoteFX=on the RDP client loses the "
        "session at once. Give one, for example colorDepth=32.";
    Record record;
    EXPECT_EQ(usable("vnc", record), "serverAddress is missing: give it as serverAddress=ADDRESS.");
    record[field_index("serverAddress")] = "10.0.0.5";
    EXPECT_EQ(usable("vnc", record), "");
    EXPECT_EQ(usable("rdp", record), no_depth);
    record[field_index("useGFX")] = "off";
    EXPECT_EQ(usable("rdp", record), no_depth);
    record[field_index("useGFX")] = "on";
    EXPECT_EQ(usable("rdp", record), "");
    record[field_index("useGFX")] = "";
    record[field_index("useRemoteFX")] = "on";
    EXPECT_EQ(usable("rdp", record), "");
    record[field_index("useRemoteFX")] = "";
    record[field_index("colorDepth")] = "16";
    EXPECT_EQ(usable("rdp", record), "");
}

} // namespace
} // namespace qvtc::qvtcctl
