// Clock and zone, with the real zone data and the real date.
#include "desktop.hpp"
#include "support/support.hpp"

#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

/// The zone's short name as date tells it.
std::string zone_of_date() { return output_of("date +%Z").text; }

TEST(ClockJourney, AChangeOfTheZoneIsSeenByDate) {
    QVTC_NEED(file_exists("/usr/share/zoneinfo/posix/Asia/Tokyo"), "no zone data");
    ASSERT_EQ(qvsetdatetime("useNTP=off&region=Asia&city=Tokyo"), -1);
    EXPECT_EQ(zone_of_date(), "JST\n");
    EXPECT_EQ(read_file("/etc/timezone"), "Asia/Tokyo\n");
    ASSERT_EQ(qvsetdatetime("useNTP=off&region=Europe"), -1);
    EXPECT_EQ(zone_of_date(), "UTC\n");
}

TEST(ClockJourney, ATimeByHandIsOneThatDateUnderstands) {
    // The terminal may not set its clock: what date says of the text is what can be seen.
    const Output understood = output_of("date -s '2026-12-31 23:59' 2>/dev/null");
    EXPECT_EQ(understood.text.substr(0, 14), "Thu Dec 31 23:");
    forget_commands();
    ASSERT_EQ(qvsetdatetime("useNTP=off&systemTime=2026-12-31 23:59&region=Etc&city=UTC"), -1);
    EXPECT_EQ(recorded_commands().front(), "date -s \"2026-12-31 23:59\"");
}

} // namespace
} // namespace qvtc::test
