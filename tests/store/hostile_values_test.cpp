// No value and no name makes the document unreadable, whatever it holds.

#include <libxml/parser.h>

#include "store/document.hpp"
#include "store/settings_document.hpp"

namespace qvtc::test {

namespace {

constexpr std::size_t mebibyte = 1024UL * 1024UL;

class HostileValues : public SettingsDocument {
  protected:
    void SetUp() override {
        SettingsDocument::SetUp();
        write_file(document_path, document_of("configItem", "first", "kept"));
    }
    void TearDown() override { EXPECT_EQ(value_read("configItem", "first"), "kept"); }
};

/// Whether a parser that recovers nothing takes the document without a complaint.
bool is_well_formed() {
    const std::string text = document_text();
    xmlDoc* const document = xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr,
                                           XML_PARSE_NONET | XML_PARSE_HUGE);
    xmlFreeDoc(document);
    return document != nullptr;
}

/// What a value comes back as: without what XML cannot hold, and less the characters for
/// which others are stored.
std::string as_read(const std::string& value) {
    return store::value_form(store::xml_text(store::stored_form(value)));
}

const std::string hostile_values[] = {
    "a&b<c>d\"e'f\\g",
    "&amp;",
    "&lt;",
    "&#65;",
    "&unknown;",
    "&",
    "<",
    "]]>",
    "<![CDATA[x]]>",
    "<!-- x -->",
    "-->",
    "<?xml version=\"1.0\"?>",
    "</k></configItem></ThinClientConfig>",
    "<first>forged</first>",
    "<!DOCTYPE x [<!ENTITY y \"z\">]>",
    " ",
    "   ",
    "\n",
    "\t",
    "\r",
    "\r\n",
    " leading and trailing ",
    "line\nbreak\r\nand\rtab\t",
    "{'vnc':'off','password':''}",
    "{\"a\":\"b\"}",
    "$(touch /tmp/owned)",
    "%s%n",
    "\u00e4\u20ac\U0001f600",
    "\xff",
    "a\xc3",
    "a\xc0\x80z",
    "\xed\xa0\x80",
    "a\xf0\x9f\x98z",
    "\x9f\x98",
    "\xbf\xbf\xbf\xbf",
    "\x01\x02\x03",
    "a\x01z",
    "\x7f",
};

} // namespace

TEST_F(HostileValues, ComeBackAsTheyAreButForWhatXmlCannotHold) {
    std::vector<std::string> values(std::begin(hostile_values), std::end(hostile_values));
    for (int byte = 1; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        values.emplace_back(1, c);
        values.push_back(std::string("a") + c + "z");
    }
    for (const std::string& value : values) {
        EXPECT_EQ(written("configItem", "k", value), 0);
        const std::string expected = as_read(value);
        const Value read = value_read("configItem", "k");
        EXPECT_EQ(read, expected.empty() ? Value() : Value(expected))
            << testing::PrintToString(value);
        EXPECT_TRUE(is_well_formed()) << testing::PrintToString(value);
        // A later write of another key leaves it as it is.
        EXPECT_EQ(written("configItem", "other", "x"), 0);
        EXPECT_EQ(value_read("configItem", "k"), read) << testing::PrintToString(value);
    }
}

TEST_F(HostileValues, AreStoredToTheByte) {
    const std::pair<std::string, std::string> cases[] = {
        {"a&b\\c", "a%b|c"},
        {"<>\"'", "&lt;&gt;\"'"},
        {"a\rb", "a&#13;b"},
        {"a\nb\tc", "a\nb\tc"},
        {"a\x01\xff"
         "b",
         "ab"},
        {"\u00e4\u20ac", "\u00e4\u20ac"},
    };
    for (const auto& [value, stored] : cases) {
        xml_del_itemNode("item");
        EXPECT_EQ(written("item", "k", value), 0);
        EXPECT_EQ(document_text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <first>kept</first>
  </configItem>
  <item>
    <k>)" + stored + R"(</k>
  </item>
</ThinClientConfig>
)") << stored;
    }
}

TEST_F(HostileValues, NamesThatXmlRefusesAreRefusedAndLogged) {
    const std::string before = document_text();
    for (const char* const name : {"", "a b", "1a", "a>b", "a/", "\xff", "a:b"}) {
        EXPECT_EQ(written(name, "k", "v"), -1) << name;
        EXPECT_EQ(written("configItem", name, "v"), -1) << name;
        EXPECT_EQ(log_lines(),
                  (Lines{std::string("[ERROR] @xmlwrite not an element name: ") + name + " / k",
                         std::string("[ERROR] @xmlwrite not an element name: ") + "configItem / " +
                             name}));
        std::filesystem::remove("/home/root/system.log");
        // Nothing has such a name, so there is nothing to be removed or read.
        EXPECT_EQ(xml_del_itemNode(name), 0);
        EXPECT_EQ(xml_del_grandsonNode("configItem", name), 0);
        EXPECT_EQ(value_read(name, "k"), std::nullopt);
        EXPECT_EQ(value_read("configItem", name), std::nullopt);
    }
    EXPECT_EQ(document_text(), before);
}

TEST_F(HostileValues, OverlongNamesAreRefused) {
    const std::string longest(1024, 'n');
    EXPECT_EQ(written(longest, longest, "v"), 0);
    EXPECT_EQ(value_read(longest, longest), "v");
    EXPECT_EQ(written(longest + "n", "k", "v"), -1);
    EXPECT_EQ(log_lines(),
              Lines{"[ERROR] @xmlwrite not an element name: " + std::string(128, 'n') + " / k"});
}

TEST_F(HostileValues, OneMebibyteIsStoredAndMoreIsRefused) {
    for (const char c : {'x', '<', '&', '\r', ' '}) {
        const std::string value(mebibyte, c);
        EXPECT_EQ(written("configItem", "k", value), 0);
        EXPECT_TRUE(value_read("configItem", "k") == value) << c;
    }
    const std::string before = document_text();
    EXPECT_EQ(written("configItem", "k", std::string(mebibyte + 1, 'x')), -1);
    EXPECT_EQ(written("configItem", "k", std::string(12 * mebibyte, 'x')), -1);
    EXPECT_TRUE(document_text() == before);
    EXPECT_EQ(log_lines(), (Lines{"[ERROR] @xmlwrite value of k too long: 1048577 bytes",
                                  "[ERROR] @xmlwrite value of k too long: 12582912 bytes"}));
}

TEST_F(HostileValues, DocumentOfManyLargeValuesLosesNone) {
    // Together more than the parser takes without a word about it.
    const auto value_of = [](int i) { return std::string(mebibyte, static_cast<char>('a' + i)); };
    const auto key_of = [](int i) { return "k" + std::to_string(i); };
    capture_stderr([&] {
        for (int i = 0; i < 12; ++i) EXPECT_EQ(written("configItem", key_of(i), value_of(i)), 0);
        for (int i = 0; i < 12; ++i)
            EXPECT_TRUE(value_read("configItem", key_of(i)) == value_of(i)) << i;
        EXPECT_EQ(value_read("configItem", "first"), "kept");
        EXPECT_EQ(xml_del_itemNode("configItem"), 0);
        EXPECT_EQ(written("configItem", "first", "kept"), 0);
    });
    EXPECT_TRUE(is_well_formed());
}

} // namespace qvtc::test
