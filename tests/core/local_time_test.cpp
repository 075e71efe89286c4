#include "core/local_time.hpp"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "core/exports.hpp"
#include "core/faults/os_calls.hpp"
#include "qvtcapi/qvtcapi.h"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

constexpr std::time_t moment = 1'794'780'489; // 2026-11-15 22:08:09 UTC, the next day in Asia

void use_zone(const std::string& name) {
    std::filesystem::remove("/etc/localtime");
    std::filesystem::create_symlink("/usr/share/zoneinfo/posix/" + name, "/etc/localtime");
}

std::string now_text() {
    const std::tm now = local_now();
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &now);
    return text;
}

/// On a terminal of the zone UTC, in a process that has been told nothing of zones.
class LocalTime : public testing::Test {
  protected:
    void SetUp() override {
        unsetenv("TZ");
        use_zone("Etc/UTC");
        calls_.set_time(moment);
    }

  private:
    OsCalls calls_;
};

} // namespace

TEST_F(LocalTime, FollowsAChangeOfTheZone) {
    EXPECT_EQ(now_text(), "2026-11-15 22:08:09");
    use_zone("Asia/Shanghai");
    EXPECT_EQ(now_text(), "2026-11-16 06:08:09");
    use_zone("America/New_York");
    EXPECT_EQ(now_text(), "2026-11-15 17:08:09");
    setenv("TZ", "EET-2", 1);
    EXPECT_EQ(now_text(), "2026-11-16 00:08:09");
}

TEST_F(LocalTime, OfTheLogFollowsAChangeOfTheZone) {
    qvlog(1, "before");
    use_zone("Asia/Shanghai");
    qvlog(1, "behind");
    EXPECT_EQ(read_file("/home/root/system.log"), "2026-11-15 22:08:09 [INFO] before\n"
                                                  "2026-11-16 06:08:09 [INFO] behind\n");
}

TEST_F(LocalTime, OfTheDatedLogFollowsAChangeOfTheZone) {
    std::filesystem::create_directory("/tmp/dated");
    std::filesystem::current_path("/tmp/dated");
    write_file("log.conf", "path=/tmp/dated\nlevel=INFO\n");
    LogWrite(1, "before");
    use_zone("Asia/Shanghai");
    LogWrite(1, "behin%s", "d");
    EXPECT_EQ(read_file("2026-11-15.log"), "[INFO] [2026-11-15 22:08:09] before\n");
    EXPECT_EQ(read_file("2026-11-16.log"), "[INFO] [2026-11-16 06:08:09] behind\n");
    char today[11];
    EXPECT_STREQ(qvtc_getdate(today), "2026-11-16");
}

} // namespace qvtc::test
