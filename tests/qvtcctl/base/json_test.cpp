#include "qvtcctl/base/json.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlJson, MembersKeepTheirOrder) {
    Json map = json_map();
    add(map, "b", "text / \"quoted\"");
    add_number(map, "a", 7);
    add_flag(map, "c", true);
    add(map, "d", Json());
    Json list = json_list();
    append(list, json_text("x"));
    add(map, "e", std::move(list));
    EXPECT_EQ(to_text(map), "{\n"
                            "  \"b\": \"text / \\\"quoted\\\"\",\n"
                            "  \"a\": 7,\n"
                            "  \"c\": true,\n"
                            "  \"d\": null,\n"
                            "  \"e\": [\n"
                            "    \"x\"\n"
                            "  ]\n"
                            "}\n");
    EXPECT_EQ(to_line(map), "{ \"b\": \"text / \\\"quoted\\\"\", \"a\": 7, \"c\": true, \"d\": "
                            "null, \"e\": [ \"x\" ] }\n");
}

TEST(QvtcctlJson, IsUtf8AndNothingThatATtyActsUpon) {
    const auto shown = [](const char* text) {
        Json map = json_map();
        add(map, "a", text);
        return to_line(map);
    };
    EXPECT_EQ(shown("M\u00E4rz \u4E2D\U0001F600"), "{ \"a\": \"M\u00E4rz \u4E2D\U0001F600\" }\n");
    EXPECT_EQ(shown("caf\xE9"), "{ \"a\": \"caf\uFFFD\" }\n");
    EXPECT_EQ(shown("\xFF\x9B"
                    "31m"),
              "{ \"a\": \"\uFFFD\uFFFD31m\" }\n");
    EXPECT_EQ(shown("\x1b[2J\x7f"), "{ \"a\": \"\\u001b[2J\\u007f\" }\n");
    EXPECT_EQ(shown("\xC2\x9B"
                    "31m"),
              "{ \"a\": \"\\u009b31m\" }\n");
    EXPECT_EQ(shown("a\u202Eb"), "{ \"a\": \"a\\u202eb\" }\n");
    EXPECT_EQ(shown("\U000E0041"), "{ \"a\": \"\\udb40\\udc41\" }\n");
}

TEST(QvtcctlJson, WhatIsEscapedIsReadBackAsItWas) {
    const std::string value = "\x1b\x7f\u009B\u202E\uFEFF\U000E0041\u4E2D";
    Json map = json_map();
    add(map, "a", value);
    const Json read(json_tokener_parse(to_text(map).c_str()));
    EXPECT_EQ(text_member(read.get(), "a"), value);
}

TEST(QvtcctlJson, AMissingMemberIsAnEmptyText) {
    const Json map = json_map();
    add(map, "a", "x");
    EXPECT_EQ(text_member(map.get(), "a"), "x");
    EXPECT_EQ(text_member(map.get(), "b"), "");
}

} // namespace
} // namespace qvtc::qvtcctl
