// A software update from a real server on loopback, fetched with the real wget.
#include "desktop.hpp"
#include "support/support.hpp"

#include <qvtcapi/update.h>

namespace qvtc::test {
namespace {

constexpr std::size_t package_size = 3'000'000;
constexpr const char* package = "/tmp/nfs/update.qvtc";

class UpdateJourney : public testing::Test {
  protected:
    void SetUp() override {
        QVTC_NEED_PROGRAM("wget");
        QVTC_NEED_PROGRAM("python3");
        ASSERT_EQ(output_of("python3 " QVTC_UPDATE_SERVER " " + std::to_string(package_size) +
                            " /tmp/requests >/tmp/port 2>/tmp/server-errors &")
                      .status,
                  0);
        ASSERT_TRUE(wait_until([] { return !read_file("/tmp/port").empty(); }, patience));
        url_ = "http://127.0.0.1:" + lines_of(read_file("/tmp/port")).at(0);
    }

    int fetch(const std::string& path) { return download((url_ + path).c_str()); }

    static std::vector<std::string> requests() { return lines_of(read_file("/tmp/requests")); }

  private:
    std::string url_;
};

std::string package_bytes() {
    std::string bytes(package_size, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 % 251);
    return bytes;
}

TEST_F(UpdateJourney, ThePackageComesWhole) {
    write_file(package, "a former one");
    ASSERT_EQ(fetch("/update.qvtc"), 0);
    EXPECT_EQ(read_file(package), package_bytes());
    EXPECT_EQ(requests(), std::vector<std::string>{"/update.qvtc whole"});
}

TEST_F(UpdateJourney, ATransferThatBreaksOffIsTakenUpWhereItBroke) {
    ASSERT_EQ(fetch("/cut/update.qvtc"), 0);
    EXPECT_EQ(read_file(package), package_bytes());
    EXPECT_EQ(requests(), (std::vector<std::string>{"/cut/update.qvtc whole",
                                                    "/cut/update.qvtc bytes=1500000-"}));
}

TEST_F(UpdateJourney, AnotherFileIsFetchedAndRefused) {
    EXPECT_EQ(fetch("/other.qvtc"), -1);
    EXPECT_EQ(log_lines(), std::vector<std::string>{"[ERROR] download update file failed."});
    EXPECT_FALSE(file_exists(package));
}

TEST_F(UpdateJourney, TheScriptOfThePackageRunsToItsEnd) {
    write_file("/tmp/nfs/qvupdate.sh", "#!/bin/sh\nsleep 0.2\necho done >/tmp/updated\n");
    std::filesystem::permissions("/tmp/nfs/qvupdate.sh", std::filesystem::perms::owner_all);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(read_file("/tmp/updated"), "done\n");
    EXPECT_EQ(updating(), 0);
}

} // namespace
} // namespace qvtc::test
