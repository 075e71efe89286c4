#include "core/params.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <vector>

namespace qvtc::test {

namespace {

using Found = std::optional<std::string>;

/// On the heap, so that a sanitizer sees each byte beyond it.
std::unique_ptr<ParamTable> table_of(std::string_view text) {
    auto table = std::make_unique<ParamTable>();
    table->parse(text);
    return table;
}

Found found_in(const ParamTable& table, std::string_view name) {
    const char* const value = table.find(name);
    return value != nullptr ? Found(value) : std::nullopt;
}

Found value_of(std::string_view text, std::string_view name) {
    return found_in(*table_of(text), name);
}

std::string pairs(std::size_t count, const std::string& last_value = "v") {
    std::string text;
    for (std::size_t i = 0; i + 1 < count; ++i) text += "n" + std::to_string(i) + "=v&";
    return text + "n" + std::to_string(count - 1) + "=" + last_value;
}

std::vector<std::optional<std::string>> tokens_of(std::string text, const char* delimiters) {
    std::vector<std::optional<std::string>> tokens;
    char* position = nullptr;
    char* token = next_token(text.data(), delimiters, position);
    for (; token != nullptr; token = next_token(nullptr, delimiters, position))
        tokens.emplace_back(token);
    return tokens;
}

} // namespace

TEST(Params, FindsValuesByExactName) {
    const struct {
        std::string_view text, name;
        Found expected;
    } cases[] = {
        {"language=en_US&x=1", "language", "en_US"},
        {"language=en_US&x=1", "x", "1"},
        {"language=en_US&x=1", "y", std::nullopt},
        {"language=en_US&x=1", "Language", std::nullopt},
        {"language=en_US&x=1", "lang", std::nullopt},
        {"language=en_US&x=1", "language=", std::nullopt},
        {"a=1&a=2", "a", "1"},
        {"a=1&b=2&c=3", "c", "3"},
        {"a=1 2\t3\n4", "a", "1 2\t3\n4"},
        {"a=1", "", std::nullopt},
        {"=1", "", std::nullopt},
        {"=1&a=2", "a", "2"},
        {"a", "a", std::nullopt},
        {"&&a=1&b=2", "a", std::nullopt},
        {"=&=&a=1", "a", "1"},
        {"a=\xc3\xa4\xff", "a", "\xc3\xa4\xff"},
    };
    for (const auto& c : cases) EXPECT_EQ(value_of(c.text, c.name), c.expected) << c.text;
}

TEST(Params, PairWithEmptyValueIsNeverFound) {
    EXPECT_EQ(value_of("a=&b=2", "a"), std::nullopt);
    EXPECT_EQ(value_of("a=&b=2", "b"), "2");
    // Not even before a pair of the same name that has a value: that one is found.
    EXPECT_EQ(value_of("a=&a=2", "a"), "2");
}

TEST(Params, ValueWithEqualsSignKeepsWhatFollowsTheLastOverWhatCameBefore) {
    EXPECT_EQ(value_of("a=xy=z", "a"), "zy");
    EXPECT_EQ(value_of("a=x=yz", "a"), "yz");
    EXPECT_EQ(value_of("a=xyz=", "a"), "xyz");
    EXPECT_EQ(value_of("a=1==2", "a"), "2");
}

TEST(Params, PairIsSeenOnlyWithAsManyEqualsSignsAsPairsUpToIt) {
    EXPECT_EQ(value_of("a&b=1", "b"), std::nullopt);
    EXPECT_EQ(value_of("a&b=1", "a"), std::nullopt);
    EXPECT_EQ(value_of("a&b=1&c=2", "b"), "1");
    EXPECT_EQ(value_of("a&b=1&c=2", "c"), std::nullopt);
    EXPECT_EQ(value_of("a&b=1=1", "b"), "1");
    EXPECT_EQ(value_of("b=1&a", "b"), "1");
}

TEST(Params, EmptyTextLeavesTheFormerPairs) {
    const auto table = table_of("a=1");
    table->parse("");
    EXPECT_EQ(found_in(*table, "a"), "1");
}

TEST(Params, NewTextClearsTheFormerPairs) {
    const auto table = table_of("a=12345&b=2");
    table->parse("a=6");
    EXPECT_EQ(found_in(*table, "a"), "6");
    EXPECT_EQ(found_in(*table, "b"), std::nullopt);
}

TEST(Params, NameOf31BytesIsWholeAndALongerOneRunsOnIntoItsValue) {
    const std::string name31(31, 'n');
    EXPECT_EQ(value_of(name31 + "=v", name31), "v");

    // 32 bytes: no end of the name is left before the value.
    const std::string name32(32, 'n');
    EXPECT_EQ(value_of(name32 + "=v", name32), std::nullopt);
    EXPECT_EQ(value_of(name32 + "=v", name32 + "v"), "v");

    // 40 bytes: eight of them lie where the value begins, which overwrites the first.
    const std::string text = name32 + "abcdefgh=v";
    EXPECT_EQ(value_of(text, name32 + "abcdefgh"), std::nullopt);
    EXPECT_EQ(value_of(text, name32 + "vbcdefgh"), "vbcdefgh");
}

TEST(Params, LongValueRunsOnIntoTheNextPair) {
    const std::string value255(255, 'v');
    EXPECT_EQ(value_of("a=" + value255 + "&b=1", "a"), value255);
    EXPECT_EQ(value_of("a=" + value255 + "&b=1", "b"), "1");

    // 256 bytes reach the next name.
    EXPECT_EQ(value_of("a=" + value255 + "v&b=1", "a"), value255 + "vb");
    EXPECT_EQ(value_of("a=" + value255 + "v&b=1", "b"), "1");

    // 260 bytes: "b" overwrites the first of the four in the next name.
    EXPECT_EQ(value_of("a=" + value255 + "vwxyz&b=1", "a"), value255 + "vbxyz");
    EXPECT_EQ(value_of("a=" + value255 + "vwxyz&b=1", "b"), std::nullopt);
    EXPECT_EQ(value_of("a=" + value255 + "vwxyz&b=1", "bxyz"), "1");

    // 300 bytes without a next pair: whole, and no pair of its own.
    EXPECT_EQ(value_of("a=" + std::string(300, 'v'), "a"), std::string(300, 'v'));
    EXPECT_EQ(value_of("a=" + std::string(300, 'v'), std::string(44, 'v')), std::nullopt);
}

TEST(Params, LastOf64PairsIsFoundAndNoneBeyond) {
    EXPECT_EQ(value_of(pairs(64), "n63"), "v");
    EXPECT_EQ(value_of(pairs(65), "n63"), "v");
    EXPECT_EQ(value_of(pairs(65), "n64"), std::nullopt);
    EXPECT_EQ(value_of(pairs(5000), "n0"), "v");
    EXPECT_EQ(value_of(pairs(5000), "n4999"), std::nullopt);
}

TEST(Params, NothingIsStoredPastTheTablesEnd) {
    // The last value is cut where the table ends, and still terminated.
    EXPECT_EQ(value_of(pairs(64, std::string(255, 'x')), "n63"), std::string(255, 'x'));
    EXPECT_EQ(value_of(pairs(64, std::string(1000, 'x')), "n63"), std::string(255, 'x'));
    // A first value that fills the table from its start to its end.
    const std::size_t room = ParamTable::table_size - ParamTable::name_size - 1;
    EXPECT_EQ(value_of("a=" + std::string(100'000, 'x'), "a"), std::string(room, 'x'));
    EXPECT_EQ(value_of(std::string(100'000, 'x') + "=1", "x"), std::nullopt);
}

TEST(Params, TableHas64EntriesOf288Bytes) {
    EXPECT_EQ(ParamTable::entry_count, 64U);
    EXPECT_EQ(ParamTable::name_size, 32U);
    EXPECT_EQ(ParamTable::value_size, 256U);
    EXPECT_EQ(ParamTable::table_size, 18432U);
}

TEST(Tokens, AreSplitAtRunsOfDelimiters) {
    using Tokens = std::vector<std::optional<std::string>>;
    const struct {
        const char *text, *delimiters;
        Tokens expected;
    } cases[] = {
        {"a&b&c", "&", {"a", "b", "c"}},
        {"a&&&b", "&", {"a", "b"}},
        {"&&a", "&", {"a"}},
        {"abc", "&", {"abc"}},
        // What is left behind a delimiter is a token even when empty.
        {"a&", "&", {"a", ""}},
        {"a&&", "&", {"a", ""}},
        {"&", "&", {""}},
        {"", "&", {""}},
        {"a, b;c", ", ;", {"a", "b", "c"}},
        {"abc", "", {"abc"}},
    };
    for (const auto& c : cases) EXPECT_EQ(tokens_of(c.text, c.delimiters), c.expected) << c.text;
}

TEST(Tokens, NothingFollowsTheTokenWithoutADelimiterBehindIt) {
    std::string text = "a&b";
    char* position = nullptr;
    EXPECT_EQ(next_token(nullptr, "&", position), nullptr);
    EXPECT_STREQ(next_token(text.data(), "&", position), "a");
    EXPECT_EQ(position, text.data() + 2);
    EXPECT_STREQ(next_token(nullptr, "&", position), "b");
    EXPECT_EQ(position, nullptr);
    EXPECT_EQ(next_token(nullptr, "&", position), nullptr);
}

TEST(SinglePair, HasTheValueBetweenItsFirstTwoEqualsSigns) {
    const std::pair<const char*, const char*> cases[] = {
        {"a=b", "b"}, {"a=b=c", "b"}, {"a=b&c=d", "b&c"}, {"a&b=c", "c"}, {"a= ", " "},
        {"", ""},     {"a", ""},      {"=b", ""},         {"a=", ""},     {"a==b", ""},
    };
    for (const auto& [text, value] : cases) EXPECT_EQ(single_pair_value(text), value) << text;
}

TEST(ParamsToJson, WrapsEachPieceInQuotes) {
    const struct {
        std::string text, expected;
    } cases[] = {
        {"a=1&b=2", R"({"a":"1","b":"2"})"},
        {"a=", R"({"a":""})"},
        {"ip=10.0.0.2&dns=", R"({"ip":"10.0.0.2","dns":""})"},
        {"a", R"({"a"})"},
        {"", R"({""})"},
        {"a=b=c", R"({"a":"b":"c"})"},
        {"=b", R"({"b"})"},
        {"=", R"({""})"},
        {"a==b", R"({"a":"b"})"},
        {"a=1&", R"({"a":"1",""})"},
        {"&&a=1&&b=2", R"({"a":"1","b":"2"})"},
        // Nothing is escaped.
        {"a=\"x\"", R"({"a":""x""})"},
        {"a=\\", R"({"a":"\"})"},
    };
    for (const auto& c : cases) {
        std::string text = c.text;
        EXPECT_EQ(params_to_json(text.data()), c.expected);
    }
}

TEST(ParamsToJson, HasNoLimit) {
    const std::string value(100'000, 'v');
    std::string text = "a=" + value;
    EXPECT_EQ(params_to_json(text.data()), "{\"a\":\"" + value + "\"}");
    std::string expected = "{";
    for (int i = 0; i < 5000; ++i) {
        expected += (i > 0 ? ",\"n" : "\"n") + std::to_string(i) + "\":\"v\"";
    }
    text = pairs(5000);
    EXPECT_EQ(params_to_json(text.data()), expected + "}");
}

} // namespace qvtc::test
