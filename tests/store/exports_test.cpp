// The four functions that callers know, on documents compared to the byte.
#include "store/exports.hpp"

#include "core/faults/descriptors.hpp"
#include "core/faults/guarded_buffer.hpp"
#include "store/settings_document.hpp"

namespace qvtc::test {

namespace {

constexpr const char* two_items = R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <tc_config_param_17>100</tc_config_param_17>
    <tc_config_param_18>{'vnc':'off','password':''}</tc_config_param_18>
  </configItem>
  <rdpItem_id_33>
    <name>office</name>
  </rdpItem_id_33>
</ThinClientConfig>
)";

/// Two items and two keys of the same names, and others between them.
constexpr const char* twins = R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <a>first</a>
    <b>1</b>
    <a>second</a>
  </configItem>
  <other>
    <a>kept</a>
  </other>
  <configItem>
    <a>third</a>
    <c>3</c>
  </configItem>
</ThinClientConfig>
)";

class XmlFunctions : public SettingsDocument {};

} // namespace

TEST_F(XmlFunctions, ReadingWithoutADocumentFailsAndCreatesNothing) {
    capture_stderr([] { EXPECT_EQ(value_read("configItem", "tc_config_param_8"), std::nullopt); });
    EXPECT_FALSE(file_exists(document_path));
}

TEST_F(XmlFunctions, FirstWriteCreatesTheDocument) {
    capture_stderr([] { EXPECT_EQ(written("configItem", "tc_config_param_8", "en_US"), 0); });
    EXPECT_EQ(document_text(), document_of("configItem", "tc_config_param_8", "en_US"));
    EXPECT_EQ(value_read("configItem", "tc_config_param_8"), "en_US");
}

TEST_F(XmlFunctions, ItemsAndKeysStandInTheOrderInWhichTheyWereWritten) {
    capture_stderr([] {
        written("configItem", "tc_config_param_17", "100");
        written("rdpItem_id_33", "name", "office");
        written("configItem", "tc_config_param_18", "{'vnc':'off','password':''}");
    });
    EXPECT_EQ(document_text(), two_items);
    // Another value of a key that is there takes its place.
    EXPECT_EQ(written("configItem", "tc_config_param_17", "1"), 0);
    EXPECT_EQ(written("configItem", "tc_config_param_17", "100"), 0);
    EXPECT_EQ(document_text(), two_items);
}

TEST_F(XmlFunctions, ValueIsStoredWithTwoCharactersSwapped) {
    capture_stderr([] {
        std::string value = R"(a&b\c)";
        EXPECT_EQ(xmlwrite("configItem", "k", value.data()), 0);
        EXPECT_EQ(value, "a%b|c"); // the caller's own text, too
    });
    EXPECT_EQ(document_text(), document_of("configItem", "k", "a%b|c"));
    EXPECT_EQ(value_read("configItem", "k"), R"(a&b\c)");
    EXPECT_EQ(written("configItem", "k", "50%"), 0);
    EXPECT_EQ(value_read("configItem", "k"), "50&");
    EXPECT_EQ(written("configItem", "k", "a|b"), 0);
    EXPECT_EQ(value_read("configItem", "k"), R"(a\b)");
}

TEST_F(XmlFunctions, ValueTextIsChangedAlsoWhenNothingIsStored) {
    write_file(document_path, "<Other/>");
    std::string value = R"(a&b\c)";
    EXPECT_EQ(xmlwrite("configItem", "k", value.data()), -1);
    EXPECT_EQ(value, "a%b|c");
}

TEST_F(XmlFunctions, EmptyKeyCountsAsAbsent) {
    write_file(document_path, document_of("configItem", "k", ""));
    EXPECT_EQ(value_read("configItem", "k"), std::nullopt);
    EXPECT_EQ(written("configItem", "k", "v"), 0);
    EXPECT_EQ(written("configItem", "k", ""), 0);
    EXPECT_EQ(value_read("configItem", "k"), std::nullopt);
    // The walk goes on to a later key of the same name.
    write_file(document_path,
               "<ThinClientConfig><configItem><k/><k></k><j>x</j><k>later</k><k>last</k>"
               "</configItem></ThinClientConfig>");
    EXPECT_EQ(value_read("configItem", "k"), "later");
}

TEST_F(XmlFunctions, NamesAreComparedExactly) {
    write_file(document_path, two_items);
    EXPECT_EQ(value_read("configItem", "tc_config_param_17"), "100");
    for (const char* const item : {"configitem", "ConfigItem", "configIte", "configItems", ""})
        EXPECT_EQ(value_read(item, "tc_config_param_17"), std::nullopt) << item;
    for (const char* const key : {"tc_config_param_1", "TC_config_param_17", "name", ""})
        EXPECT_EQ(value_read("configItem", key), std::nullopt) << key;
    EXPECT_EQ(value_read("ThinClientConfig", "configItem"), std::nullopt);
}

TEST_F(XmlFunctions, OnlyTheFirstOfTwoItemsIsReadAndWritten) {
    write_file(document_path, twins);
    EXPECT_EQ(value_read("configItem", "a"), "first");
    EXPECT_EQ(value_read("configItem", "c"), std::nullopt);
    EXPECT_EQ(written("configItem", "a", "new"), 0);
    EXPECT_EQ(written("configItem", "c", "added"), 0);
    EXPECT_EQ(document_text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <a>new</a>
    <b>1</b>
    <a>second</a>
    <c>added</c>
  </configItem>
  <other>
    <a>kept</a>
  </other>
  <configItem>
    <a>third</a>
    <c>3</c>
  </configItem>
</ThinClientConfig>
)");
}

TEST_F(XmlFunctions, DeletingAnItemRemovesAllOfItsName) {
    write_file(document_path, twins);
    EXPECT_EQ(xml_del_itemNode("configItem"), 0);
    EXPECT_EQ(document_text(), document_of("other", "a", "kept"));
    EXPECT_EQ(xml_del_itemNode("other"), 0);
    EXPECT_EQ(document_text(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ThinClientConfig/>\n");
    EXPECT_EQ(written("configItem", "k", "v"), 0);
    EXPECT_EQ(document_text(), document_of("configItem", "k", "v"));
}

TEST_F(XmlFunctions, DeletingAKeyRemovesAllOfItsNameFromAllItemsOfTheirs) {
    write_file(document_path, twins);
    EXPECT_EQ(xml_del_grandsonNode("configItem", "a"), 0);
    EXPECT_EQ(document_text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <b>1</b>
  </configItem>
  <other>
    <a>kept</a>
  </other>
  <configItem>
    <c>3</c>
  </configItem>
</ThinClientConfig>
)");
}

TEST_F(XmlFunctions, DeletingWhatIsNotThereStillRewritesTheDocument) {
    const std::string unformatted =
        "<ThinClientConfig><configItem><k>v</k></configItem></ThinClientConfig>";
    for (const auto& remove : {+[] { return xml_del_itemNode("none"); },
                               +[] { return xml_del_grandsonNode("configItem", "none"); },
                               +[] { return xml_del_grandsonNode("none", "k"); }}) {
        write_file(document_path, unformatted);
        EXPECT_EQ(remove(), 0);
        EXPECT_EQ(document_text(), document_of("configItem", "k", "v"));
    }
}

TEST_F(XmlFunctions, DeletingWithoutADocumentFailsAndCreatesNothing) {
    capture_stderr([] {
        EXPECT_EQ(xml_del_itemNode("configItem"), -1);
        EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1);
    });
    EXPECT_FALSE(file_exists(document_path));
}

TEST_F(XmlFunctions, ForeignDocumentIsNeverTouched) {
    const std::string foreign[] = {
        "<Other><configItem><k>v</k></configItem></Other>",
        "<thinclientconfig><configItem><k>v</k></configItem></thinclientconfig>\n\n",
        "<ThinClientConfigs/>",
        "<?xml version=\"1.0\"?>\n", // no root at all
        "<!-- a comment -->",
        "garbage",
    };
    capture_stderr([&] {
        for (const std::string& text : foreign) {
            write_file(document_path, text);
            EXPECT_EQ(value_read("configItem", "k"), std::nullopt) << text;
            EXPECT_EQ(written("configItem", "k", "v"), -1) << text;
            EXPECT_EQ(xml_del_itemNode("configItem"), -1) << text;
            EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1) << text;
            EXPECT_EQ(document_text(), text);
        }
    });
    // The failures have their texts, but no level: none of them is ever a line of the log.
    EXPECT_EQ(read_file("/home/root/system.log"), "");
}

TEST_F(XmlFunctions, DocumentDamagedBeyondRecoveryIsReplaced) {
    using namespace std::string_literals;
    const std::string damaged[] = {"", "\0"s, std::string(4096, '\0')};
    capture_stderr([&] {
        for (const std::string& text : damaged) {
            write_file(document_path, text);
            EXPECT_EQ(value_read("configItem", "k"), std::nullopt);
            EXPECT_EQ(xml_del_itemNode("configItem"), -1);
            EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1);
            EXPECT_EQ(document_text(), text);
            EXPECT_EQ(written("configItem", "k", "v"), 0);
            EXPECT_EQ(document_text(), document_of("configItem", "k", "v"));
        }
    });
}

TEST_F(XmlFunctions, DocumentThatBreaksOffIsRecoveredAsFarAsItGoes) {
    write_file(document_path, "<ThinClientConfig><configItem><a>1</a><b>2");
    capture_stderr([] {
        EXPECT_EQ(value_read("configItem", "b"), "2");
        EXPECT_EQ(written("configItem", "c", "3"), 0);
    });
    EXPECT_EQ(document_text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <configItem>
    <a>1</a>
    <b>2</b>
    <c>3</c>
  </configItem>
</ThinClientConfig>
)");
}

TEST_F(XmlFunctions, ContentOfOtherMakersIsReadAsText) {
    const std::pair<const char*, const char*> cases[] = {
        {"<![CDATA[a<b]]>", "a<b"}, {"a&lt;b&gt;&quot;&apos;", "a<b>\"'"},
        {"a&amp;b", "a&b"},         {"&#228;&#x20ac;", "\u00e4\u20ac"},
        {"a<x>b</x>c", "abc"},      {"a<!-- c -->b", "ab"},
        {"  a\n b ", "  a\n b "},   {"<x>only</x>", "only"},
    };
    for (const auto& [content, value] : cases) {
        write_file(document_path, document_of("configItem", "k", content));
        EXPECT_EQ(value_read("configItem", "k"), value) << content;
        EXPECT_EQ(written("configItem", "k", "plain"), 0);
        EXPECT_EQ(document_text(), document_of("configItem", "k", "plain"));
    }
}

TEST_F(XmlFunctions, NullPointersAreRefused) {
    write_file(document_path, two_items);
    char text[8] = "a&b";
    EXPECT_EQ(xmlread(nullptr, "k", text), -1);
    EXPECT_EQ(xmlread("configItem", nullptr, text), -1);
    EXPECT_EQ(xmlread("configItem", "tc_config_param_17", nullptr), -1);
    EXPECT_EQ(xmlwrite(nullptr, "k", text), -1);
    EXPECT_EQ(xmlwrite("configItem", nullptr, text), -1);
    EXPECT_EQ(xmlwrite("configItem", "k", nullptr), -1);
    EXPECT_EQ(xml_del_itemNode(nullptr), -1);
    EXPECT_EQ(xml_del_grandsonNode(nullptr, "k"), -1);
    EXPECT_EQ(xml_del_grandsonNode("configItem", nullptr), -1);
    EXPECT_STREQ(text, "a&b");
    EXPECT_EQ(document_text(), two_items);
}

TEST_F(XmlFunctions, ValueIsCopiedWithItsNulAndNoMore) {
    write_file(document_path, document_of("configItem", "k", "value"));
    GuardedBuffer buffer(8);
    EXPECT_EQ(xmlread("configItem", "k", buffer.data()), 0);
    EXPECT_EQ(buffer.bytes(), std::string("value\0##", 8));
    EXPECT_TRUE(buffer.guards_are_whole());
}

TEST_F(XmlFunctions, MissingDocumentIsReportedOnStandardErrorByTheParser) {
    const std::string errors = capture_stderr([] { value_read("configItem", "k"); });
    EXPECT_NE(errors.find(document_path), std::string::npos) << errors;
    EXPECT_EQ(read_file("/home/root/system.log"), "");
}

TEST_F(XmlFunctions, SuccessAndAnAbsentKeyDoNotTouchTheLog) {
    write_file(document_path, two_items);
    EXPECT_EQ(value_read("configItem", "none"), std::nullopt);
    EXPECT_EQ(value_read("none", "none"), std::nullopt);
    EXPECT_EQ(written("configItem", "k", "v"), 0);
    EXPECT_EQ(xml_del_itemNode("none"), 0);
    EXPECT_FALSE(file_exists("/home/root/system.log"));
}

TEST_F(XmlFunctions, NoDescriptorIsLeftOpen) {
    write_file(document_path, two_items);
    const std::size_t before = open_descriptors();
    for (int i = 0; i < 20; ++i) {
        value_read("configItem", "tc_config_param_17");
        written("configItem", "k", "v");
        xml_del_grandsonNode("configItem", "k");
        xml_del_itemNode("none");
    }
    EXPECT_EQ(open_descriptors(), before);
}

} // namespace qvtc::test
