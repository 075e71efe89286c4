#include "qvtcctl/base/suggest.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlSuggest, DistanceCountsSingleEdits) {
    struct Case {
        std::string_view left, right;
        std::size_t distance;
    };
    for (const Case& c :
         {Case{"", "", 0}, Case{"rdp", "rdp", 0}, Case{"RDP", "rdp", 0}, Case{"", "abc", 3},
          Case{"rpd", "rdp", 1}, Case{"list", "lst", 1}, Case{"lst", "list", 1},
          Case{"show", "shod", 1}, Case{"export", "import", 2}, Case{"abc", "xyz", 3}}) {
        EXPECT_EQ(edit_distance(c.left, c.right), c.distance) << c.left << " " << c.right;
        EXPECT_EQ(edit_distance(c.right, c.left), c.distance) << c.right << " " << c.left;
    }
}

TEST(QvtcctlSuggest, ClosestIsTheNearestWordThatIsNearEnough) {
    const std::vector<std::string_view> words{"list", "show", "remove", "serverAddress"};
    EXPECT_EQ(closest("lst", words), "list");
    EXPECT_EQ(closest("LIST", words), "list");
    EXPECT_EQ(closest("remvoe", words), "remove");
    EXPECT_EQ(closest("srverAdres", words), "serverAddress");
    EXPECT_EQ(closest("launch", words), "");
    EXPECT_EQ(closest("", words), "");
    EXPECT_EQ(closest("lst", {}), "");
}

TEST(QvtcctlSuggest, DidYouMeanIsEmptyWithoutANearWord) {
    EXPECT_EQ(did_you_mean("lst", {"list"}), " (did you mean \"list\"?)");
    EXPECT_EQ(did_you_mean("zzz", {"list"}), "");
}

} // namespace
} // namespace qvtc::qvtcctl
