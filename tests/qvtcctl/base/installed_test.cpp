#include "qvtcctl/base/installed.hpp"

#include "support/support.hpp"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlInstalled, IsWhatCanBeFoundAndRun) {
    EXPECT_FALSE(is_installed("vmware-view"));
    const test::StandIn client("vmware-view");
    EXPECT_TRUE(is_installed("vmware-view"));
    EXPECT_TRUE(is_installed("sh"));
    EXPECT_FALSE(is_installed("no-such-program"));
}

TEST(QvtcctlInstalled, IsNoDirectoryAndNoFileThatCannotBeRun) {
    test::write_file("/usr/local/bin/file-only", "");
    std::filesystem::create_directories("/usr/local/bin/directory-only");
    EXPECT_FALSE(is_installed("file-only"));
    EXPECT_FALSE(is_installed("directory-only"));
    EXPECT_FALSE(is_installed(""));
}

TEST(QvtcctlInstalled, IsLookedForInEveryDirectoryOfThePath) {
    test::write_file("/opt/a/program", "#!/bin/sh\n");
    std::filesystem::permissions("/opt/a/program", std::filesystem::perms::all);
    EXPECT_FALSE(is_installed("program"));
    setenv("PATH", "/nowhere:/opt/a", 1);
    EXPECT_TRUE(is_installed("program"));
    EXPECT_FALSE(is_installed("sh"));
    setenv("PATH", "/nowhere:", 1); // nothing stands for the working directory
    std::filesystem::current_path("/opt/a");
    EXPECT_TRUE(is_installed("program"));
}

} // namespace
} // namespace qvtc::qvtcctl
