#include "store/json_printers.hpp"

#include <gtest/gtest.h>

#include "core/json.hpp"
#include "store/exports.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

std::string scalar(const std::string& json, const char* name) {
    const Json value = parse_json(json);
    return capture_stdout([&] { print_json_value(value.get(), name); });
}

std::string walked(const std::string& json) {
    const Json value = parse_json(json);
    return capture_stdout([&] { json_parse(value.get()); });
}

std::string walked_array(const std::string& json, const char* key) {
    const Json value = parse_json(json);
    return capture_stdout([&] { json_parse_array(value.get(), key); });
}

} // namespace

TEST(JsonPrinters, PrintAScalarByItsType) {
    EXPECT_EQ(scalar("1.5", "n"), "json_type_double          value: 1.500000\n");
    EXPECT_EQ(scalar("true", "n"), "json_type_booleanvalue: true\n");
    EXPECT_EQ(scalar("false", nullptr), "json_type_booleanvalue: false\n");
    EXPECT_EQ(scalar("-7", "n"), "json_type_int          value: -7\n");
    EXPECT_EQ(scalar("99999999999", "n"), "json_type_int          value: 2147483647\n");
    EXPECT_EQ(scalar("\"a%s\"", "n"), "json_type_string          name: n\n          value: a%s\n");
    EXPECT_EQ(scalar("\"\"", nullptr), "json_type_string          value: \n");
}

TEST(JsonPrinters, PrintNothingOfAnyOtherType) {
    EXPECT_EQ(scalar("{\"a\":1}", "n"), "");
    EXPECT_EQ(scalar("[1]", "n"), "");
    EXPECT_EQ(scalar("null", "n"), "");
}

TEST(JsonPrinters, WalkAnObjectInItsOrder) {
    EXPECT_EQ(walked(R"({"s":"x","o":{"i":1,"e":{}},"a":[2,[3],{"t":"y"},"z",null],"n":null,
                         "b":true})"),
              "json_type_string          name: s\n          value: x\n"
              "json_type_objectjson_type_int          value: 1\n"
              "json_type_object"
              "type: json_type_array, json_type_int          value: 2\n"
              "json_type_int          value: 3\n"
              "json_type_string          name: t\n          value: y\n"
              "json_type_string          value: z\n"
              "json_type_booleanvalue: true\n");
    EXPECT_EQ(walked("{}"), "");
}

TEST(JsonPrinters, WalkAnArrayOrTheOneOfThatName) {
    EXPECT_EQ(walked_array("[1,[2,[]]]", nullptr),
              "json_type_int          value: 1\njson_type_int          value: 2\n");
    EXPECT_EQ(walked_array(R"({"a":[1],"b":[2]})", "b"), "json_type_int          value: 2\n");
    EXPECT_EQ(walked_array("[]", nullptr), "");
}

TEST(JsonPrinters, PrintNothingOfWhatTheyCannotWalk) {
    EXPECT_EQ(walked("null"), "");
    EXPECT_EQ(walked("[1]"), "");
    EXPECT_EQ(walked("1"), "");
    EXPECT_EQ(walked_array("null", nullptr), "");
    EXPECT_EQ(walked_array("null", "a"), "");
    EXPECT_EQ(walked_array("{\"a\":1}", nullptr), "");
    EXPECT_EQ(walked_array("{\"a\":1}", "a"), "");
    EXPECT_EQ(walked_array("{\"a\":[1]}", "b"), "");
    EXPECT_EQ(walked_array("[1]", "a"), "");
}

} // namespace qvtc::test
