#include "qvtcctl/clients/launch_log.hpp"

#include <initializer_list>
#include <string>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlLaunchLog, TheLastLaunchOfAKindIsNamed) {
    constexpr const char* log = "2026-11-21 12:00:00 [INFO] @launchclient id = 33\n"
                                "2026-11-21 12:00:01 [INFO] @launchclient id = 32\n"
                                "2026-11-21 12:00:02 [INFO] @launchclient id = 64\n"
                                "2026-11-21 12:00:03 [INFO] @launchclient id = x\n";
    EXPECT_EQ(last_launched(*find_type("rdp"), log), 32U);
    EXPECT_EQ(last_launched(*find_type("spice"), log), 64U);
    EXPECT_EQ(last_launched(*find_type("vnc"), log), std::nullopt);
}

TEST(QvtcctlLaunchLog, TheLaunchesOfAnotherKindSinceTheLastAreCounted) {
    const auto since = [](std::initializer_list<int> ids) {
        std::string log;
        for (const int id : ids)
            log += "2026-11-21 12:00:00 [INFO] @launchclient id = " + std::to_string(id) + "\n";
        return launches_since(*find_type("spice"), *find_type("vnc"), log);
    };
    EXPECT_EQ(since({224, 64, 225, 32, 224}), 2U);
    EXPECT_EQ(since({224, 64}), 0U);
    EXPECT_EQ(since({225}), 1U); // the log has been begun anew since
}

} // namespace
} // namespace qvtc::qvtcctl
