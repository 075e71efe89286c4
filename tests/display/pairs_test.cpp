#include "display/pairs.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

using Value = std::optional<std::string>;

TEST(Pairs, AValueIsReadWherePairsHaveOne) {
    EXPECT_EQ(value_of("a=1&b=2", "b"), Value("2"));
    EXPECT_EQ(value_of("a=1&b=", "b"), Value());
    EXPECT_EQ(value_of("a=1&b", "b"), Value());
    EXPECT_EQ(value_of("", "b"), Value());
    EXPECT_EQ(value_of("a=1", "b"), Value());
}

TEST(Pairs, DeliberatelyAValueKeepsWhatFollowsItsLastEqualsSign) {
    EXPECT_EQ(value_of("a=xy=z", "a"), Value("zy"));
    EXPECT_EQ(value_or_empty_of("a=xy=z", "a"), Value("zy"));
}

TEST(Pairs, APairWithoutAValueIsSeenWhereItsPresenceCounts) {
    EXPECT_EQ(value_or_empty_of("b=", "b"), Value(""));
    EXPECT_EQ(value_or_empty_of("a=1&b=", "b"), Value(""));
    EXPECT_EQ(value_or_empty_of("b=&a=1", "b"), Value(""));
    EXPECT_EQ(value_or_empty_of("b=&b=2", "b"), Value("2"));
    EXPECT_EQ(value_or_empty_of("a=1&&b=", "b"), Value(""));
    EXPECT_EQ(value_or_empty_of("a=1&b=2", "b"), Value("2"));
}

TEST(Pairs, AWordThatIsNoPairOfThatNameIsNotSeen) {
    for (const char* const params :
         {"", "b", "a=1&b", "bb=", "ab=", "a=b", "a=b&c=", "B=", "&", "=", "&&=b"}) {
        EXPECT_EQ(value_or_empty_of(params, "b"), Value()) << params;
    }
}

TEST(Pairs, AValueThatTheParserCannotReachIsMissingAndNotEmpty) {
    const std::string many = "a=" + std::string(300, 'x') + "&";
    std::string pairs;
    for (int i = 0; i < 64; ++i) pairs += "a=1&";
    for (const std::string& params :
         {std::string("x&b=1"), std::string("&a=1&b=1"), many + "b=1", pairs + "b=1"}) {
        EXPECT_EQ(value_or_empty_of(params, "b").value_or("missing"),
                  value_of(params, "b").value_or("missing"))
            << params;
    }
    EXPECT_EQ(value_or_empty_of("x&b=1", "b"), Value());
    EXPECT_EQ(value_or_empty_of("x&b=", "b"), Value(""));
    EXPECT_EQ(value_or_empty_of("b==", "b"), Value(""));
}

TEST(Pairs, APairIsThereWhateverItsValue) {
    for (const char* const params : {"b=", "b=1", "x&b=1", "a=1&b=", "b==", "&&b="})
        EXPECT_TRUE(has_pair(params, "b")) << params;
    for (const char* const params : {"", "b", "x&b", "bb=", "ab=1", "a=b=", "&", "="})
        EXPECT_FALSE(has_pair(params, "b")) << params;
}

} // namespace qvtc::display
