#include "network/wireless_scan.hpp"

#include "core/json.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>
#include <json-c/json.h>

namespace qvtc::network {

namespace {

using Texts = std::vector<std::string>;

struct Entry {
    std::string ssid, connected, encryption, signal;
    bool operator==(const Entry&) const = default;
};
void PrintTo(const Entry& entry, std::ostream* stream) {
    *stream << entry.ssid << '|' << entry.connected << '|' << entry.encryption << '|'
            << entry.signal;
}
using Entries = std::vector<Entry>;

std::string member(json_object* object, const char* key) {
    return json_object_get_string(json_object_object_get(object, key));
}

Entries entries_of(const std::string& listing) {
    const Json object = parse_json(network_list_json(listing));
    EXPECT_NE(object, nullptr) << network_list_json(listing);
    json_object* const list = json_object_object_get(object.get(), "list");
    Entries entries;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        json_object* const each = json_object_array_get_idx(list, i);
        entries.push_back({member(each, "ssid"), member(each, "connected"),
                           member(each, "encryptType"), member(each, "sigStrength")});
    }
    return entries;
}

const std::string header = "IN-USE  SSID  MODE  CHAN  RATE  SIGNAL  BARS  SECURITY\n";
const std::string new_header = "IN-USE  BSSID  SSID  MODE  CHAN  RATE  SIGNAL  BARS  SECURITY\n";
const std::string behind = "  Infra  6     130 Mbit/s  59      ▂▄▆_  WPA2\n";

std::string captured(const char* name) {
    return test::read_file(std::string(QVTC_CAPTURES_DIRECTORY) + "/nmcli/" + name);
}

} // namespace

TEST(ScanFields, AreThoseOfAwk) {
    EXPECT_EQ(scan_fields("", 64), Texts{});
    EXPECT_EQ(scan_fields(" \t \n", 64), Texts{});
    EXPECT_EQ(scan_fields("a", 64), Texts{"a"});
    EXPECT_EQ(scan_fields("  a\tb \n c  ", 64), (Texts{"a", "b", "c"}));
    EXPECT_EQ(scan_fields("a\rb\vc\fd", 64), Texts{"a\rb\vc\fd"}); // no separators to awk
    EXPECT_EQ(scan_fields("a b c", 2), (Texts{"a", "b"}));
    EXPECT_EQ(scan_fields("a b c", 0), Texts{});
    EXPECT_EQ(scan_fields("▂▄▆_ \xc2\xa0 x", 9), (Texts{"▂▄▆_", "\xc2\xa0", "x"}));
    EXPECT_EQ(scan_fields("$(touch /tmp/owned) `x` \"y\" '", 9),
              (Texts{"$(touch", "/tmp/owned)", "`x`", "\"y\"", "'"}));
    const std::string longest(127, 'x');
    EXPECT_EQ(scan_fields(longest + " b", 9), (Texts{longest, "b"}));
    EXPECT_EQ(scan_fields(longest + "yz b", 9), (Texts{longest, "b"}));
}

TEST(ScanFields, AgreeWithTheRealAwk) {
    const std::string line = "*       Guest\tWiFi   Infra  6 ▂▄▆_  \x01 \r --  ";
    const std::vector<std::string> fields = scan_fields(line, 64);
    test::write_file("/tmp/line", line + "\n");
    test::write_file("/tmp/script", "awk '{for (i = 1; i <= NF; ++i) print $i}' /tmp/line");
    EXPECT_EQ(
        test::lines_of(test::capture_stdout([] { EXPECT_EQ(std::system("bash /tmp/script"), 0); })),
        fields);
}

TEST(Encryptions, GoByTheFirstMarkThatIsFound) {
    const std::pair<const char*, Encryption> cases[] = {
        {"802.1X", Encryption::enterprise},
        {"WPA2", Encryption::wpa2},
        {"WPA1", Encryption::wpa},
        {"--", Encryption::open},
        {"WEP", Encryption::wep},
        {"", Encryption::wep},
        {"WPA3", Encryption::wep},
        {"WPA1WPA2", Encryption::wpa2},
        {"WPA2802.1X", Encryption::enterprise},
    };
    for (const auto& [security, expected] : cases)
        EXPECT_EQ(encryption_of(security), expected) << security;
    const char* const names[] = {"open", "wpa", "wpa2", "802.1X", "wep"};
    for (int i = 0; i < 5; ++i) EXPECT_STREQ(name_of(Encryption{i}), names[i]);
}

TEST(SignalLevels, GoFromZeroToSix) {
    const std::pair<int, int> cases[] = {{-5, 0}, {0, 0},   {10, 0},        {11, 0},
                                         {18, 0}, {19, 1},  {35, 3},        {59, 5},
                                         {60, 6}, {100, 6}, {2147483647, 6}};
    for (const auto& [value, level] : cases) EXPECT_EQ(signal_level(value, 7), level) << value;
    EXPECT_EQ(signal_level(59, 2147483647), 2104533973);
    EXPECT_EQ(signal_level(35, 1), 0);
}

TEST(NetworkList, HoldsOneObjectForEachNetwork) {
    EXPECT_EQ(network_list_json(header + "        Guest WiFi  Infra  6     130 Mbit/s  59      "
                                         "▂▄▆_  --\n"
                                         "*       Office      Infra  11    54 Mbit/s   100     "
                                         "▂▄▆█  WPA1 WPA2\n"),
              R"({"list":[{"ssid":"Guest WiFi","connected":"off","encryptType":"open",)"
              R"("sigStrength":"5"},{"ssid":"Office","connected":"on","encryptType":"wpa2",)"
              R"("sigStrength":"6"}]})");
}

TEST(NetworkList, OfNothingIsEmpty) {
    for (const std::string& listing :
         {std::string(), header, std::string("\n"), header + "\n\n", std::string("x"),
          std::string("Error: NetworkManager is not running.\n"),
          header + "Fehler: kein Gerät gefunden\n"}) {
        EXPECT_EQ(network_list_json(listing), "{\"list\":[]}") << listing;
    }
}

TEST(NetworkList, DropsTheFirstLineWhateverItIs) {
    EXPECT_EQ(entries_of("a" + behind + "b" + behind), (Entries{{"b", "off", "wpa2", "5"}}));
}

TEST(NetworkList, SkipsWhatIsNoNetworkOrHidden) {
    EXPECT_EQ(entries_of(header + "Corner  Ad-Hoc  6  54 Mbit/s  80  ▂▄▆█  --\n" + "--" + behind +
                         "just words\n" + "   \n" + "x" + behind),
              (Entries{{"x", "off", "wpa2", "5"}}));
}

TEST(NetworkList, ListsANameOfOneWordOnce) {
    EXPECT_EQ(entries_of(header + "Office" + behind + "Office" + behind),
              (Entries{{"Office", "off", "wpa2", "5"}}));
}

TEST(NetworkList, DeliberatelyListsANameOfSeveralWordsForEachAccessPoint) {
    EXPECT_EQ(entries_of(header + "Guest WiFi" + behind + "Guest WiFi" + behind),
              (Entries{{"Guest WiFi", "off", "wpa2", "5"}, {"Guest WiFi", "off", "wpa2", "5"}}));
    // And a name of several words that begins with a listed one not at all.
    EXPECT_EQ(entries_of(header + "Guest" + behind + "Guest WiFi" + behind),
              (Entries{{"Guest", "off", "wpa2", "5"}}));
}

TEST(NetworkList, NeverSkipsTheNetworkInUse) {
    EXPECT_EQ(entries_of(header + "Office" + behind + "* Office" + behind + "Office" + behind),
              (Entries{{"Office", "off", "wpa2", "5"}, {"Office", "on", "wpa2", "5"}}));
}

TEST(NetworkList, KeepsQuotesAndBackslashesOfAName) {
    EXPECT_EQ(entries_of(header + R"(Bob's)" + behind + R"("AP")" + behind + R"(a\nb\)" + behind),
              (Entries{{"Bob's", "off", "wpa2", "5"},
                       {"\"AP\"", "off", "wpa2", "5"},
                       {R"(a\nb\)", "off", "wpa2", "5"}}));
}

TEST(NetworkList, TakesTheFirstInfraForTheMode) {
    EXPECT_EQ(entries_of(header + "Infra" + behind), (Entries{{"", "off", "wpa2", "0"}}));
    EXPECT_EQ(entries_of(header + "* Infra" + behind), (Entries{{"", "on", "wpa2", "0"}}));
    EXPECT_EQ(entries_of(header + "My Infra Net" + behind), (Entries{{"My", "off", "wpa2", "6"}}));
}

TEST(NetworkList, OfHostileNamesIsWhole) {
    const char* const names[] = {
        "x$(touch /tmp/owned)",
        "`touch /tmp/owned`",
        "';touch /tmp/owned;'",
        "\";touch /tmp/owned;\"",
        "','connected':'on",
        "\",\"connected\":\"on",
        "}]}",
        "{'a':'b'}",
        "Zoë €5 😀",
        "\xff\xfe\x80",
        "%s%n%d",
        "\\",
        "\\'",
        "\\\"",
        "*",
        "**",
        "-",
        "---",
    };
    for (const std::string name : names) {
        const bool star = name == "*";
        const Entries entries = entries_of(header + name + behind);
        ASSERT_EQ(entries.size(), 1U) << name;
        EXPECT_EQ(entries[0], (Entry{star ? "" : name, star ? "on" : "off", "wpa2", "5"}));
    }
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

TEST(NetworkList, OfAnyThirtyTwoBytesIsWhole) {
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const std::string name(32, c);
        const Entries entries = entries_of(header + name + behind);
        if (c == ' ' || c == '\t' || c == '\n') {
            EXPECT_EQ(entries, (Entries{{"", "off", "wpa2", "5"}})) << byte; // no name
        } else if (c == '\r') {                                              // comes out as a quote
            EXPECT_EQ(entries, (Entries{{std::string(32, '"'), "off", "wpa2", "5"}}));
        } else {
            EXPECT_EQ(entries, (Entries{{name, "off", "wpa2", "5"}})) << byte;
        }
    }
}

TEST(NetworkList, StopsWhenMoreThanFiftyAreListed) {
    std::string listing = header;
    for (int i = 0; i < 60; ++i) listing += "net" + std::to_string(i) + behind;
    const Entries entries = entries_of(listing);
    ASSERT_EQ(entries.size(), 51U);
    EXPECT_EQ(entries.back().ssid, "net50");
}

TEST(NetworkList, OfACutReplyKeepsWhatIsThere) {
    EXPECT_EQ(entries_of(header + "Office  Infra"), (Entries{{"Office", "off", "wep", "0"}}));
    EXPECT_EQ(entries_of(header + "Office  Infra  6  130 Mbit/s"),
              (Entries{{"Office", "off", "wep", "0"}}));
    EXPECT_EQ(entries_of(header + "Office  Infra  6  130 Mbit/s 6"),
              (Entries{{"Office", "off", "wep", "0"}}));
    EXPECT_EQ(entries_of(header + "Office  Inf"), Entries{});
    EXPECT_EQ(entries_of(header + "*"), Entries{});
}

TEST(NetworkList, OfHugeAndStrangeRepliesIsWhole) {
    const std::string huge(100'000, 'x');
    EXPECT_EQ(entries_of(huge), Entries{});
    EXPECT_EQ(entries_of(header + huge + behind),
              (Entries{{std::string(127, 'x'), "off", "wpa2", "5"}}));
    std::string words;
    for (int i = 0; i < 30; ++i) words += std::string(126, 'w') + " ";
    EXPECT_EQ(entries_of(header + words + behind).at(0).ssid.size(), 1023U);
    for (int i = 0; i < 40; ++i) words += "v ";
    EXPECT_EQ(entries_of(header + words + behind), Entries{}); // the mode is the 71st field
    EXPECT_EQ(entries_of(header + "x Infra 6 130 Mbit/s 99999999999 b WPA2\n").at(0).signal, "0");
    EXPECT_EQ(entries_of(header + "x Infra 6 130 Mbit/s +70 b WPA2\n").at(0).signal, "6");
}

TEST(NetworkList, PassesOverTheAccessPointsAddress) {
    const std::string address = "00:11:22:33:44:02  ";
    EXPECT_EQ(entries_of(new_header + "        " + address + "Guest WiFi" + behind + //
                         "*       " + address + "Office" + behind +                  //
                         "        " + address + "--" + behind +                      //
                         "        " + address + "Office" + behind +                  //
                         "        " + address + "*" + behind +                       //
                         "*       " + address + "Infra" + behind +                   //
                         "        " + address + "\n" + "*\n" + address + "x\n"),
              (Entries{{"Guest WiFi", "off", "wpa2", "5"},
                       {"Office", "on", "wpa2", "5"},
                       {"*", "off", "wpa2", "5"},
                       {"", "on", "wpa2", "0"}}));
}

TEST(NetworkList, WithoutSuchAColumnLeavesAddressesInTheName) {
    EXPECT_EQ(entries_of(header + "00:11:22:33:44:02 Office" + behind),
              (Entries{{"00:11:22:33:44:02 Office", "off", "wpa2", "5"}}));
    // A network may call itself so.
    EXPECT_EQ(entries_of(header + "BSSID" + behind), (Entries{{"BSSID", "off", "wpa2", "5"}}));
}

TEST(NetworkList, OfARealReplyIsTheSameInBothForms) {
    const Entries expected = {
        {"Corp", "off", "802.1X", "6"},
        {"Guest WiFi", "on", "open", "5"},
        {"mixed", "off", "wpa2", "0"},
        {"Bob's \"AP\"", "off", "wpa2", "0"},
    };
    EXPECT_EQ(entries_of(captured("dev_wifi.txt")), expected);
    EXPECT_EQ(entries_of(captured("dev_wifi_with_bssid.txt")), expected);
}

} // namespace qvtc::network
