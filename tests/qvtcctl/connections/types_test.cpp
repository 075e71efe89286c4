#include "qvtcctl/connections/types.hpp"

#include "refusals.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::refusal_of;

TEST(QvtcctlTypes, EachOwns32Ids) {
    struct Case {
        std::string_view name;
        unsigned first, last;
    };
    constexpr Case cases[] = {{"broker", 0, 31},  {"rdp", 32, 63},      {"spice", 64, 95},
                              {"ovirt", 96, 127}, {"citrix", 128, 159}, {"horizon", 160, 191},
                              {"vnc", 224, 255},  {"hdp", 256, 287},    {"web", 288, 319}};
    ASSERT_EQ(std::size(cases), connection_types.size());
    for (const Case& c : cases) {
        const ConnectionType* type = find_type(c.name);
        ASSERT_NE(type, nullptr) << c.name;
        EXPECT_EQ(first_id(*type), c.first);
        EXPECT_EQ(last_id(*type), c.last);
        EXPECT_EQ(type_of_id(c.first), type);
        EXPECT_EQ(type_of_id(c.last), type);
        EXPECT_EQ(find_type(std::to_string(type->number)), type);
    }
}

TEST(QvtcctlTypes, SixIsNone) {
    EXPECT_EQ(find_type("6"), nullptr);
    EXPECT_EQ(type_of_id(192), nullptr);
    EXPECT_EQ(type_of_id(223), nullptr);
    EXPECT_EQ(type_of_id(320), nullptr);
}

TEST(QvtcctlTypes, CaseOfTheNameDoesNotMatter) { EXPECT_EQ(find_type("VNC"), find_type("7")); }

TEST(QvtcctlTypes, UnknownOnesAreRefusedWithASuggestion) {
    EXPECT_EQ(refusal_of([] { require_type("rpd"); }),
              "\"rpd\" is not a connection type (did you mean \"rdp\"?): give one of broker, rdp, "
              "spice, ovirt, citrix, horizon, vnc, hdp, web.");
    EXPECT_EQ(refusal_of([] { require_type("6"); }),
              "\"6\" is not a connection type: give one of broker, rdp, spice, ovirt, citrix, "
              "horizon, vnc, hdp, web.");
}

TEST(QvtcctlTypes, IdsAreNumbersInABlock) {
    EXPECT_EQ(require_id("32"), 32U);
    EXPECT_EQ(require_id("0"), 0U);
    EXPECT_EQ(refusal_of([] { require_id("200"); }),
              "200 is not a connection id: no type has it. \"qvtcctl connection types\" shows the "
              "ids of each type.");
    for (const std::string_view bad : {"", "x", "-1", "1.5", "32 ", "9999999999"}) {
        EXPECT_EQ(refusal_of([&] { require_id(bad); }),
                  "\"" + std::string(bad) +
                      "\" is not a connection id: give a number, as \"qvtcctl connection list\" "
                      "shows it.");
    }
}

} // namespace
} // namespace qvtc::qvtcctl
