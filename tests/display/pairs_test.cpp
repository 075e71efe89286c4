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

} // namespace qvtc::display
