#include "store/document.hpp"

#include "store/settings_document.hpp"

namespace qvtc::test {

namespace {

using store::Document;

constexpr const char* mixed = R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  text
  <!-- a comment -->
  <item><c>3</c><!-- a comment --><a>1</a><empty/><b>x%y|z</b>text<a>second</a><empty>later</empty>
  <d>a<x>b</x></d></item>
  <item><e>of the second</e></item>
</ThinClientConfig>
)";

class DocumentTest : public SettingsDocument {};

Document quietly_loaded() {
    std::optional<Document> document;
    capture_stderr([&] { document = Document::load(); });
    return std::move(*document);
}

} // namespace

TEST(StoredForm, SwapsTwoCharactersAndBack) {
    EXPECT_EQ(store::stored_form(R"(a&b\c%d|e)"), "a%b|c%d|e");
    EXPECT_EQ(store::value_form("a%b|c&d\\e"), R"(a&b\c&d\e)");
    EXPECT_EQ(store::value_form(store::stored_form(R"(&&\\&\)")), R"(&&\\&\)");
    EXPECT_EQ(store::stored_form(""), "");
}

TEST(ElementNames, AreThoseThatXmlTakes) {
    for (const std::string name :
         {"a", "_", "configItem", "tc_config_param_8", "com.valmora.thinclient.para_10_0",
          "rdpItem_id_33", "a-b.c", "\u00e4\u4e2d", "xml"})
        EXPECT_TRUE(store::is_element_name(name)) << name;
    for (const std::string name :
         {"",      " ",        "a b",          " a",        "a ",  "1a",   "-a",   ".a",    "a:b",
          "a&b",   "a<b",      "a>b",          "a/b",       "a'b", "a\"b", "a\nb", "a\x01", "\xff",
          "a\xc3", "\xc0\x80", "\xe0\x81\x81", "a\xc1\x81", "a=b", "a;b",  "{a}",  "a%b",   "a\\b"})
        EXPECT_FALSE(store::is_element_name(name)) << name;
    EXPECT_TRUE(store::is_element_name(std::string(1024, 'a')));
    EXPECT_FALSE(store::is_element_name(std::string(1025, 'a')));
}

TEST(XmlText, DropsWhatXmlCannotHold) {
    using namespace std::string_literals;
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"plain <&>\"'", "plain <&>\"'"},
        {"a\tb\nc\rd", "a\tb\nc\rd"},
        {"a\x01\x02\x08\x0b\x0c\x0e\x1f\x7f"
         "b",
         "a\x7f"
         "b"},
        {"a\0b"s, "ab"},
        {"\u00e4\u20ac\U0001f600", "\u00e4\u20ac\U0001f600"},
        // Bytes that are no UTF-8: alone, cut short, too long, surrogates, beyond the last.
        {"a\x80\xbf\xff\xfe"
         "b",
         "ab"},
        {"a\xc3", "a"},
        {"a\xe2\x82", "a"},
        {"a\xf0\x9f\x98", "a"},
        {"a\xe2\x82"
         "b",
         "ab"},
        {"\xc0\x80\xc1\xbf", ""},
        {"\xe0\x80\x80\xe0\x9f\xbf", ""},
        {"\xf0\x80\x80\x80\xf0\x8f\xbf\xbf", ""},
        {"\xed\xa0\x80\xed\xbf\xbf", ""},
        {"\xf4\x90\x80\x80\xf8\x88\x80\x80\x80", ""},
        {"\xef\xbf\xbe\xef\xbf\xbf", ""}, // U+FFFE and U+FFFF
        {"\xef\xbf\xbd\xee\x80\x80\xf4\x8f\xbf\xbf", "\xef\xbf\xbd\xee\x80\x80\xf4\x8f\xbf\xbf"},
        {"\xc2\x80\xe0\xa0\x80\xf0\x90\x80\x80", "\xc2\x80\xe0\xa0\x80\xf0\x90\x80\x80"},
    };
    for (const auto& [text, kept] : cases)
        EXPECT_EQ(store::xml_text(text), kept) << testing::PrintToString(text);
}

TEST_F(DocumentTest, HasAStateForEachKindOfFile) {
    using State = Document::State;
    EXPECT_EQ(quietly_loaded().state(), State::absent);
    const std::pair<std::string, State> cases[] = {
        {"", State::absent},
        {std::string(100, '\0'), State::absent},
        {"<ThinClientConfig/>", State::loaded},
        {"\n<ThinClientConfig/>", State::loaded},
        {"<ThinClientConfig><", State::loaded},
        {"<Other/>", State::foreign},
        {"<ThinClientConfi", State::foreign},
        {"garbage", State::rootless},
        {"<?xml version=\"1.0\"?>", State::rootless},
    };
    for (const auto& [text, state] : cases) {
        write_file(document_path, text);
        EXPECT_EQ(quietly_loaded().state(), state) << text;
    }
    std::filesystem::remove(document_path);
    std::filesystem::create_directory(document_path);
    EXPECT_EQ(quietly_loaded().state(), State::unreadable);
}

TEST_F(DocumentTest, GivesTheValuesOfSeveralKeysAsOneByOne) {
    write_file(document_path, mixed);
    const Document document = Document::load();
    const std::vector<std::vector<const char*>> lists = {
        {"a", "b", "c", "d", "e", "empty", "none", "comment", "text", "x"},
        {"empty", "d", "c", "b", "a"},
        {"c", "a", "b"},
        {"a"},
        {},
    };
    for (const auto& keys : lists) {
        for (const char* const item : {"item", "none", "comment", "text"}) {
            std::vector<std::string> expected;
            for (const char* const key : keys)
                expected.push_back(document.get(item, key).value_or(""));
            EXPECT_EQ(document.get_all(item, keys), expected) << item;
        }
    }
    const std::vector<const char*> keys = {"a", "b", "c", "d", "e", "empty"};
    EXPECT_EQ(document.get_all("item", keys), (Lines{"1", "x&y\\z", "3", "ab", "", "later"}));
    EXPECT_EQ(quietly_loaded().get("text", "text"), std::nullopt);
}

TEST_F(DocumentTest, ThatIsNotOursHasNoValues) {
    write_file(document_path, "<Other><item><a>1</a></item></Other>");
    const std::vector<const char*> keys = {"a"};
    for (const bool exists : {true, false}) {
        if (!exists) std::filesystem::remove(document_path);
        const Document document = quietly_loaded();
        EXPECT_EQ(document.get("item", "a"), std::nullopt);
        EXPECT_EQ(document.get_all("item", keys), Lines{""});
    }
}

TEST_F(DocumentTest, ManyChangesAreSavedAtOnce) {
    capture_stderr([] {
        EXPECT_TRUE(store::change_document([](Document& document) {
            EXPECT_TRUE(document.set("item", "a", "1"));
            EXPECT_TRUE(document.set("item", "b", "2"));
            EXPECT_TRUE(document.set("other", "c", "3"));
            document.remove_key("item", "a");
            document.remove_item("other");
            EXPECT_EQ(document.get("item", "b"), "2");
            EXPECT_FALSE(file_exists(document_path)); // not yet
            return true;
        }));
    });
    EXPECT_EQ(document_text(), document_of("item", "b", "2"));
}

TEST_F(DocumentTest, ChangeThatGivesFalseIsNotSaved) {
    write_file(document_path, document_of("item", "a", "1"));
    EXPECT_TRUE(store::change_document([](Document& document) {
        document.set("item", "a", "2");
        return false;
    }));
    EXPECT_EQ(document_text(), document_of("item", "a", "1"));
}

TEST_F(DocumentTest, SeveralValuesAreStoredAsOneByOne) {
    const std::vector<const char*> keys = {"c", "a", "new", "b", "empty", "newer"};
    const Lines values = {"C", "A&", "", "B\\", "E", "\x01N"};
    for (const char* const item : {"item", "unknown"}) {
        std::string one_by_one;
        for (const bool at_once : {false, true}) {
            write_file(document_path, mixed);
            store::change_document([&](Document& document) {
                if (at_once) {
                    EXPECT_TRUE(document.set_all(item, keys, values));
                } else {
                    for (std::size_t i = 0; i < keys.size(); ++i)
                        EXPECT_TRUE(document.set(item, keys[i], values[i]));
                }
                return true;
            });
            if (at_once) {
                EXPECT_EQ(document_text(), one_by_one);
            }
            one_by_one = document_text();
        }
        const Lines read = {"C", "A&", "", "B\\", "E", "N"};
        EXPECT_EQ(Document::load().get_all(item, keys), read);
    }
}

TEST_F(DocumentTest, SeveralValuesAreStoredUnderTheFirstKeysOfTheirNames) {
    write_file(document_path, "<ThinClientConfig><item><a>first</a><b>1</b><a>second</a></item>"
                              "</ThinClientConfig>");
    store::change_document([](Document& document) {
        const std::vector<const char*> keys = {"b", "a", "c", "c"};
        return document.set_all("item", keys, Lines{"B", "A", "C", "CC"});
    });
    EXPECT_EQ(document_text(), R"(<?xml version="1.0" encoding="UTF-8"?>
<ThinClientConfig>
  <item>
    <a>A</a>
    <b>B</b>
    <a>second</a>
    <c>CC</c>
  </item>
</ThinClientConfig>
)");
}

TEST_F(DocumentTest, SeveralValuesAreStoredAllOrNone) {
    capture_stderr([] {
        EXPECT_TRUE(store::change_document([](Document& document) {
            EXPECT_TRUE(document.set("item", "a", "1"));
            const std::vector<const char*> keys = {"a", "b", "no name"};
            EXPECT_FALSE(document.set_all("item", keys, Lines{"2", "2", "2"}));
            const std::vector<const char*> named = {"a", "b"};
            const std::string overlong(store::value_limit + 1, 'x');
            EXPECT_FALSE(document.set_all("item", named, Lines{"2", overlong}));
            return true;
        }));
    });
    EXPECT_EQ(document_text(), document_of("item", "a", "1"));
}

TEST_F(DocumentTest, ThatWasNotLoadedTakesNoChange) {
    write_file(document_path, "<Other/>");
    Document foreign = quietly_loaded();
    EXPECT_FALSE(foreign.set("item", "a", "1"));
    EXPECT_FALSE(foreign.remove_item("item"));
    EXPECT_FALSE(foreign.remove_key("item", "a"));
    std::filesystem::remove(document_path);
    Document absent = quietly_loaded();
    EXPECT_FALSE(absent.remove_item("item"));
    EXPECT_FALSE(absent.remove_key("item", "a"));
    EXPECT_EQ(absent.state(), Document::State::absent);
    EXPECT_TRUE(absent.set("item", "a", "1"));
    EXPECT_EQ(absent.state(), Document::State::loaded);
}

} // namespace qvtc::test
