#include "qvtcctl/system/zones.hpp"

#include "qvtcctl/base/refusal.hpp"
#include "refusals.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace qvtc::qvtcctl {

namespace {

using Names = std::vector<std::string>;

const Names known = {"America/Argentina/Buenos_Aires",
                     "America/New_York",
                     "Asia/Seoul",
                     "Asia/Tokyo",
                     "Etc/UTC",
                     "Europe/Paris",
                     "Europe/Vienna"};

} // namespace

TEST(QvtcctlZones, TheNearestComeFirst) {
    const std::pair<const char*, Names> cases[] = {
        {"Asia/Tokio", {"Asia/Tokyo"}},
        {"asia/tokyo", {"Asia/Tokyo"}},
        {"Tokyo", {"Asia/Tokyo"}},
        {"Europe/Tokyo", {"Asia/Tokyo"}},
        {"America/Buenos_Aires", {"America/Argentina/Buenos_Aires"}},
        {"UTC", {"Etc/UTC"}},
        {"Mars/Olympus_Mons", {}},
    };
    for (const auto& [wrong, nearest] : cases) {
        const Names found = nearest_zones(wrong, known);
        ASSERT_LE(found.size(), 3U);
        EXPECT_EQ(Names(found.begin(),
                        found.begin() + static_cast<long>(std::min(found.size(), nearest.size()))),
                  nearest)
            << wrong;
    }
    EXPECT_EQ(nearest_zones("Mars/Olympus_Mons", known), Names{});
    EXPECT_EQ(nearest_zones("", {}), Names{});
}

TEST(QvtcctlZones, AreThoseOfTheTerminal) {
    for (const char* const zone : {"Asia/Tokyo", "Europe/Vienna", "America/Argentina/Salta"})
        test::write_file(std::string("/usr/share/zoneinfo/posix/") + zone, "TZif2");
    const Names zones = known_zones();
    EXPECT_TRUE(std::is_sorted(zones.begin(), zones.end()));
    EXPECT_TRUE(std::binary_search(zones.begin(), zones.end(), "America/Argentina/Salta"));
    // A file that is in no region is no zone of this kind.
    EXPECT_TRUE(std::all_of(zones.begin(), zones.end(),
                            [](const auto& zone) { return zone.find('/') != std::string::npos; }));
    const Zone salta = require_zone("America/Argentina/Salta");
    EXPECT_EQ(salta.region, "America");
    EXPECT_EQ(salta.city, "Argentina/Salta");
}

TEST(QvtcctlZones, OneThatIsNotThereIsRefused) {
    for (const char* const wrong :
         {"", "/", "Asia", "Asia/", "../../etc/passwd", "Asia/../Asia/Tokyo", "a\nb"})
        EXPECT_THROW(require_zone(wrong), Refusal) << wrong;
}

} // namespace qvtc::qvtcctl
