#include "qvtcctl/client_status_file.hpp"

#include "support/support.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* success = "0x00000000 connect success\n";
constexpr const char* failure = "0x00000001 connect failed\n";

TEST(QvtcctlClientStatusFile, AnOldVerdictIsNotANewOne) {
    test::write_file(client_status_path, failure);
    const ClientStatusFile file;
    EXPECT_EQ(file.new_verdict(), WatcherVerdict::none);
    EXPECT_EQ(ClientStatusFile::verdict(), WatcherVerdict::failed);
}

TEST(QvtcctlClientStatusFile, TheSameVerdictWrittenAgainIsANewOne) {
    test::write_file(client_status_path, success);
    const ClientStatusFile file;
    const auto rewritten = [&] {
        test::write_file(client_status_path, success);
        return file.new_verdict() == WatcherVerdict::connected;
    };
    EXPECT_TRUE(test::wait_until(rewritten)); // the file system's clock has steps
}

TEST(QvtcctlClientStatusFile, AMissingFileHoldsNothing) {
    std::filesystem::remove(client_status_path);
    const ClientStatusFile file;
    EXPECT_EQ(file.new_verdict(), WatcherVerdict::none);
    test::write_file(client_status_path, "\n");
    EXPECT_EQ(file.new_verdict(), WatcherVerdict::none);
    test::write_file(client_status_path, failure);
    EXPECT_EQ(file.new_verdict(), WatcherVerdict::failed);
}

} // namespace
} // namespace qvtc::qvtcctl
