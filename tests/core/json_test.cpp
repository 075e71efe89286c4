#include "core/json.hpp"

#include <gtest/gtest.h>

#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Lines = std::vector<std::string>;

class JsonText : public testing::Test {
  protected:
    void SetUp() override { std::filesystem::remove("/home/root/system.log"); }
};

std::optional<std::string> text_of(const std::string& json, const char* key) {
    return json_plain_text(parse_json(json).get(), key);
}

} // namespace

TEST_F(JsonText, HasNeitherQuotesNorBackslashes) {
    const struct {
        std::string json, expected;
    } cases[] = {
        {R"({"k":"text"})", "text"},
        {R"({"k":""})", ""},
        {R"({"k":"a/b"})", "a/b"}, // printed with an escaped slash
        {R"({"k":"a\"b\\c"})", "abc"},
        {R"({"k":"a\nb"})", "anb"},
        {R"({"k":"\u00e4"})", "\u00e4"},
        {R"({"k":12})", "12"},
        {R"({"k":-1.5})", "-1.5"},
        {R"({"k":true})", "true"},
        {R"({"k":{"a":"b","c":1}})", "{ a: b, c: 1 }"},
        {R"({"k":["a","b"]})", "[ a, b ]"},
        {R"({"other":"x","k":"y"})", "y"},
    };
    for (const auto& c : cases) EXPECT_EQ(text_of(c.json, "k"), c.expected) << c.json;
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(JsonText, AbsentMemberIsNothingAndALineInTheLog) {
    EXPECT_EQ(text_of(R"({"a":"1"})", "key name"), std::nullopt);
    EXPECT_EQ(text_of(R"({"A":"1"})", "a"), std::nullopt);
    EXPECT_EQ(text_of(R"({"nothing":null})", "nothing"), std::nullopt);
    EXPECT_EQ(text_of(R"(["a"])", "array"), std::nullopt);
    EXPECT_EQ(text_of("1", "number"), std::nullopt);
    EXPECT_EQ(json_plain_text(nullptr, "none"), std::nullopt);
    // The message has a newline of its own.
    EXPECT_EQ(log_lines(), (Lines{"[ERROR] getJsonValue error! key = key name", "",
                                  "[ERROR] getJsonValue error! key = a", "",
                                  "[ERROR] getJsonValue error! key = nothing", "",
                                  "[ERROR] getJsonValue error! key = array", "",
                                  "[ERROR] getJsonValue error! key = number", "",
                                  "[ERROR] getJsonValue error! key = none", ""}));
}

TEST_F(JsonText, IsCutBeforeItsQuotesAreTaken) {
    // 1,023 bytes of the JSON text, of which the first is the opening quote.
    const auto text = [](std::size_t length) {
        return text_of("{\"k\":\"" + std::string(length, 'x') + "\"}", "k");
    };
    EXPECT_EQ(text(1021), std::string(1021, 'x'));
    EXPECT_EQ(text(1022), std::string(1022, 'x'));
    EXPECT_EQ(text(1023), std::string(1022, 'x'));
    EXPECT_EQ(text(100'000), std::string(1022, 'x'));
    EXPECT_EQ(text_of("{\"k\":\"" + std::string(2000, '/') + "\"}", "k"), std::string(511, '/'));
}

TEST(Json, TextsInSingleQuotesAreAccepted) {
    const Json settings = parse_json("{'vnc':'off','password':''}");
    EXPECT_STREQ(json_object_to_json_string(settings.get()), R"({ "vnc": "off", "password": "" })");
    for (const char* const refused : {"", "{", "{\"a\":}", "abc", "{'a':'b\"}"})
        EXPECT_EQ(parse_json(refused), nullptr) << refused;
}

TEST(Json, StringTakesBytesAsTheyAre) {
    const Json text(json_string(std::string_view("a\0\"b", 4)));
    EXPECT_EQ(json_object_get_string_len(text.get()), 4);
    EXPECT_STREQ(json_object_to_json_string(text.get()), R"("a\u0000\"b")");
}

} // namespace qvtc::test
