// The exported text functions, as a caller in C sees them.
#include "core/exports.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>

#include "core/base64.hpp"
#include "core/faults/guarded_buffer.hpp"
#include "core/json.hpp"
#include "support/support.hpp"

extern "C" {
extern urlparam urlparams[64];
extern char* __mystrtok;
extern char* base64_decoding_table;
extern char base64_encoding_table[64];
extern std::int32_t mod_table[3];
}

namespace qvtc::test {

namespace {

using Texts = std::vector<std::string>;
using Freed = std::unique_ptr<char, decltype(&std::free)>;

Freed freed(char* text) { return {text, std::free}; }

/// A text in a buffer of its own, as callers hand it over to be changed.
class Editable {
  public:
    explicit Editable(const std::string& text, std::size_t room = 64) : buffer_(room) {
        std::memcpy(buffer_.data(), text.c_str(), text.size() + 1);
    }
    char* data() { return buffer_.data(); }
    std::string text() {
        EXPECT_TRUE(buffer_.guards_are_whole());
        return buffer_.data();
    }

  private:
    GuardedBuffer buffer_;
};

} // namespace

TEST(Exports, UrlValuePointsIntoTheExportedTable) {
    const char* const value = geturlvalue("language=en_US&x=1", "x");
    EXPECT_STREQ(value, "1");
    EXPECT_EQ(value, urlparams[1].value);
    EXPECT_STREQ(urlparams[0].name, "language");
    EXPECT_STREQ(urlparams[0].value, "en_US");
    EXPECT_STREQ(urlparams[1].name, "x");
    EXPECT_STREQ(urlparams[2].name, "");
    EXPECT_EQ(geturlvalue("language=en_US&x=1", "y"), nullptr);
    EXPECT_EQ(geturlvalue("", "x"), nullptr);
    EXPECT_STREQ(urlparams[0].name, "language"); // an empty text changes nothing
    EXPECT_EQ(geturlvalue(nullptr, "x"), nullptr);
    EXPECT_EQ(geturlvalue("x=1", nullptr), nullptr);
    EXPECT_EQ(sizeof urlparams, 18432U);
}

TEST(Exports, StrtojsonWritesTheWholeTextAndNoMore) {
    Editable text("ip=10.0.0.2&dns=");
    GuardedBuffer output(40);
    EXPECT_EQ(strtojson(text.data(), output.data()), 0);
    EXPECT_EQ(output.bytes(),
              R"({"ip":"10.0.0.2","dns":""})" + std::string(1, '\0') + std::string(13, '#'));
    const Json object = parse_json(output.data());
    EXPECT_STREQ(json_object_to_json_string(object.get()), R"({ "ip": "10.0.0.2", "dns": "" })");
    EXPECT_EQ(strtojson(nullptr, output.data()), -1);
    EXPECT_EQ(strtojson(text.data(), nullptr), -1);
}

TEST(Exports, MystrtokGoesOnFromTheExportedPosition) {
    Editable text("a,b;;c;");
    EXPECT_EQ(mystrtok(text.data(), ",;"), text.data());
    EXPECT_EQ(__mystrtok, text.data() + 2);
    EXPECT_STREQ(mystrtok(nullptr, ",;"), "b");
    EXPECT_STREQ(mystrtok(nullptr, ",;"), "c");
    EXPECT_STREQ(mystrtok(nullptr, ",;"), "");
    EXPECT_EQ(__mystrtok, nullptr);
    EXPECT_EQ(mystrtok(nullptr, ",;"), nullptr);
}

TEST(Exports, JsonValueIsOverwrittenByTheNextCall) {
    std::filesystem::remove("/home/root/system.log");
    const Json object = parse_json(R"({"a":"x/y","b":12,"c":{"d":"e"},"long":")" +
                                   std::string(100'000, 'l') + "\"}");
    char* const value = getJsonValue(object.get(), "a");
    EXPECT_STREQ(value, "x/y");
    EXPECT_EQ(getJsonValue(object.get(), "b"), value);
    EXPECT_STREQ(value, "12");
    EXPECT_STREQ(getJsonValue(object.get(), "c"), "{ d: e }");
    EXPECT_STREQ(getJsonValue(object.get(), "long"), std::string(1022, 'l').c_str());
    char* const none = getJsonValue(object.get(), "absent");
    EXPECT_STREQ(none, "");
    EXPECT_NE(none, value);
    EXPECT_STREQ(value, ""); // cleared all the same
    EXPECT_STREQ(getJsonValue(nullptr, "k"), "");
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] getJsonValue error! key = absent", "",
                                  "[ERROR] getJsonValue error! key = k", ""}));
}

TEST(Exports, StrReplaceReplacesEveryOccurrenceInPlace) {
    const struct {
        const char *text, *find, *replacement, *expected;
    } cases[] = {
        {"a.b.c", ".", "::", "a::b::c"}, {"aaa", "aa", "b", "ba"}, {"abc", "x", "y", "abc"},
        {"aXa", "a", "aa", "aaXaa"},     {"abc", "abc", "", ""},   {"", "a", "b", ""},
    };
    for (const auto& c : cases) {
        Editable text(c.text);
        EXPECT_EQ(str_replace(text.data(), c.find, c.replacement), 0);
        EXPECT_EQ(text.text(), c.expected);
    }
    Editable large(std::string(50'000, 'a'), 100'001);
    EXPECT_EQ(str_replace(large.data(), "a", "bc"), 0);
    EXPECT_EQ(large.text().size(), 100'000U);
}

TEST(Exports, StrReplaceRefusesWhatHasNoResult) {
    std::filesystem::remove("/home/root/system.log");
    Editable text("abc");
    EXPECT_EQ(str_replace(nullptr, "a", "b"), -1);
    EXPECT_EQ(log_lines(), Texts{"[ERROR] str_replace str is NULL"});
    EXPECT_EQ(str_replace(text.data(), "", "b"), -1);
    EXPECT_EQ(str_replace(text.data(), nullptr, "b"), -1);
    EXPECT_EQ(str_replace(text.data(), "a", nullptr), -1);
    EXPECT_EQ(text.text(), "abc");
}

TEST(Exports, DelCharClosesTheGaps) {
    const struct {
        const char* text;
        char c;
        const char* expected;
    } cases[] = {{" 1 2 3 ", ' ', "123"},
                 {"abc", 'x', "abc"},
                 {"aaa", 'a', ""},
                 {"", 'a', ""},
                 {"abc", '\0', "abc"},
                 {"a\xff"
                  "b",
                  '\xff', "ab"}};
    for (const auto& c : cases) {
        Editable text(c.text);
        del_char(text.data(), c.c);
        EXPECT_EQ(text.text(), c.expected);
    }
    del_char(nullptr, 'a');
}

TEST(Exports, ThreeReplacersDoTheSame) {
    const struct {
        const char* text;
        char c, by;
        const char* expected;
    } cases[] = {{"a&b&c", '&', '%', "a%b%c"}, {"'a'", '\'', '"', "\"a\""},
                 {"abc", 'x', 'y', "abc"},     {"", 'a', 'b', ""},
                 {"abc", '\0', 'x', "abc"},    {"aXb", 'X', '\0', "a"}};
    for (const auto& c : cases) {
        Editable first(c.text);
        Editable second(c.text);
        Editable third(c.text);
        EXPECT_EQ(replace(first.data(), c.c, c.by), first.data());
        replacechar(second.data(), c.c, c.by);
        repspecchar(third.data(), c.c, c.by);
        EXPECT_EQ(first.text(), c.expected);
        EXPECT_EQ(second.text(), c.expected);
        EXPECT_EQ(third.text(), c.expected);
    }
    EXPECT_EQ(replace(nullptr, 'a', 'b'), nullptr);
    replacechar(nullptr, 'a', 'b');
    repspecchar(nullptr, 'a', 'b');
}

TEST(Exports, RtrimTakesTrailingWhiteSpaceOnly) {
    const std::pair<const char*, const char*> cases[] = {
        {"abc \t\r\n\v\f", "abc"}, {" a b ", " a b"}, {"abc", "abc"}, {" \n", ""}, {"", ""},
        {"a\xa0", "a\xa0"}};
    for (const auto& [before, after] : cases) {
        Editable text(before);
        EXPECT_EQ(rtrim(text.data()), text.data());
        EXPECT_EQ(text.text(), after);
    }
    EXPECT_EQ(rtrim(nullptr), nullptr);
    Editable text("ab  ");
    rtrim(text.data());
    EXPECT_EQ(std::string(text.data(), 5), std::string("ab\0\0\0", 5)); // all are overwritten
}

TEST(Exports, UrldecodersGiveBuffersOfTheirSizes) {
    const std::string long_text(200'000, 'x');
    EXPECT_EQ(std::string(freed(urldecode("a^41^zz^")).get(), 256),
              "aA^zz^" + std::string(250, '\0'));
    EXPECT_EQ(std::string(freed(urldecode2("a%41%zz%")).get(), 102'400),
              "aA%zz%" + std::string(102'394, '\0'));
    EXPECT_STREQ(freed(urldecode("a%41")).get(), "a%41");
    EXPECT_STREQ(freed(urldecode2("a^41")).get(), "a^41");
    EXPECT_STREQ(freed(urldecode(long_text.c_str())).get(), std::string(255, 'x').c_str());
    EXPECT_STREQ(freed(urldecode2(long_text.c_str())).get(), std::string(102'399, 'x').c_str());
    EXPECT_EQ(urldecode(nullptr), nullptr);
    EXPECT_EQ(urldecode2(nullptr), nullptr);
}

TEST(Exports, StringdecodeIsWhatEchoMakesOfIt) {
    GuardedBuffer output(1024);
    EXPECT_EQ(stringdecode(R"(a\\tb   'c  d\n' \\x41)", output.data()), -1);
    EXPECT_EQ(output.bytes(), "a\tb c  d\n A\n" + std::string(1012, '\0'));
    EXPECT_EQ(recorded_command_details(),
              (std::vector<RecordedCommand>{{R"(echo -e a\\tb   'c  d\n' \\x41)", true}}));
    const std::string long_text(5000, 'x');
    EXPECT_EQ(stringdecode(long_text.c_str(), output.data()), -1);
    EXPECT_EQ(output.bytes(), std::string(1024, 'x'));
    EXPECT_TRUE(output.guards_are_whole());
}

TEST(Exports, Base64GivesTextAndLength) {
    std::uint32_t length = 99;
    EXPECT_STREQ(freed(base64_encode("\x4d\x61", 2, &length)).get(), "TWE=");
    EXPECT_EQ(length, 4U);
    EXPECT_STREQ(freed(base64_encode("Ma", 2, nullptr)).get(), "TWE=");
    EXPECT_STREQ(freed(base64_encode("", 0, &length)).get(), "");
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(std::string(freed(base64_decode("TWE=\n", 5, &length)).get(), 3),
              std::string("Ma\0", 3));
    EXPECT_EQ(length, 2U);
    EXPECT_EQ(std::string(freed(base64_decode("AEEA", 4, &length)).get(), 4),
              std::string("\0A\0\0", 4));
    EXPECT_EQ(length, 3U);
    EXPECT_STREQ(freed(base64_decode("TWE=", 4, nullptr)).get(), "Ma");
    length = 99;
    EXPECT_EQ(base64_decode("TWE=x", 5, &length), nullptr);
    EXPECT_EQ(length, 99U);
    EXPECT_STREQ(freed(base64_decode("TWE=TWE=", 4, &length)).get(), "Ma"); // the length counts
}

TEST(Exports, Base64TablesAreExported) {
    base64_cleanup();
    EXPECT_EQ(base64_decoding_table, nullptr);
    base64_initialize();
    char* const table = base64_decoding_table;
    ASSERT_NE(table, nullptr);
    base64_initialize();
    EXPECT_EQ(base64_decoding_table, table);
    EXPECT_EQ(std::string_view(base64_encoding_table, 64), base64::alphabet);
    for (int position = 0; position < 64; ++position) {
        const auto letter = static_cast<unsigned char>(base64_encoding_table[position]);
        EXPECT_EQ(table[letter], position);
    }
    base64_cleanup();
    EXPECT_EQ(base64_decoding_table, nullptr);
    base64_cleanup();
    freed(base64_decode("TWE=", 4, nullptr));
    EXPECT_NE(base64_decoding_table, nullptr); // built on first use
    EXPECT_EQ(std::to_array(mod_table), (std::array<std::int32_t, 3>{0, 2, 1}));
}

TEST(Exports, HexToStrReportsWhatIsWrong) {
    const struct {
        const char* text;
        int result;
        std::string bytes;
    } cases[] = {
        {"4a4B", 0, std::string("JK\0###", 6)}, {"4x", 0, std::string("a\0####", 6)},
        {"", 0, std::string("\0#####", 6)},     {"4", -2, "######"},
        {"4-", -3, std::string("\0#####", 6)},  {"41424-", -3, std::string("AB\0###", 6)},
    };
    for (const auto& c : cases) {
        GuardedBuffer output(6);
        EXPECT_EQ(hexToStr(c.text, output.data()), c.result) << c.text;
        EXPECT_EQ(output.bytes(), c.bytes) << c.text;
    }
    char output[2];
    EXPECT_EQ(hexToStr(nullptr, output), -1);
    EXPECT_EQ(hexToStr("41", nullptr), -1);
    EXPECT_EQ(hexCharToValue('f'), 15);
    EXPECT_EQ(hexCharToValue('Z'), 35);
    EXPECT_EQ(hexCharToValue('-'), -1);
}

TEST(Exports, Str2hexGivesTheNumberOfBytes) {
    GuardedBuffer output(6);
    int length = -1;
    EXPECT_EQ(str2hex("414", output.data(), &length), 2);
    EXPECT_EQ(length, 2);
    EXPECT_EQ(output.bytes(), std::string("A\x04\0###", 6));
    EXPECT_EQ(str2hex("4A4b", output.data(), nullptr), 2);
    EXPECT_EQ(output.bytes(), std::string("JK\0###", 6));
    EXPECT_EQ(str2hex("", output.data(), &length), 0);
    EXPECT_EQ(length, 0);
}

TEST(Exports, LetterTransformGivesTextsOfTheCallers) {
    const Freed first = freed(encode("abc"));
    const Freed second = freed(encode("xyz"));
    EXPECT_STREQ(first.get(), "cfi");
    EXPECT_STREQ(second.get(), "twz");
    EXPECT_STREQ(freed(decode("cfi")).get(), "abc");
    EXPECT_STREQ(freed(encode("")).get(), "");
}

} // namespace qvtc::test
