#include "display/resolutions.hpp"
#include "qvtcctl/display/resolutions.hpp"

#include <set>

#include <gtest/gtest.h>

namespace qvtc {
namespace {

TEST(ResolutionsOfBoth, HaveTheSameNumbers) {
    for (const qvtcctl::Resolution& resolution : qvtcctl::resolutions) {
        const unsigned number = display::number_of_index(resolution.index);
        EXPECT_EQ(std::to_string(number), resolution.index);
        const display::Resolution& of_library = display::resolutions[number];
        // What a user chooses goes by that name even where the display script is told another.
        EXPECT_EQ(of_library.choice ? of_library.choice : of_library.name, resolution.name);
    }
}

TEST(ResolutionsOfBoth, LackNoneThatAnIndexLeadsTo) {
    std::set<std::string_view> of_tool;
    for (const qvtcctl::Resolution& each : qvtcctl::resolutions) of_tool.insert(each.index);
    for (const display::Resolution& each : display::resolutions) {
        const std::string index = std::to_string(each.number);
        const bool is_reachable = display::number_of_index(index) == each.number;
        EXPECT_EQ(of_tool.contains(index), is_reachable) << index;
    }
}

} // namespace
} // namespace qvtc
