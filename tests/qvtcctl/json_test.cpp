#include "qvtcctl/json.hpp"

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

TEST(QvtcctlJson, AMissingMemberIsAnEmptyText) {
    const Json map = json_map();
    add(map, "a", "x");
    EXPECT_EQ(text_member(map.get(), "a"), "x");
    EXPECT_EQ(text_member(map.get(), "b"), "");
}

} // namespace
} // namespace qvtc::qvtcctl
