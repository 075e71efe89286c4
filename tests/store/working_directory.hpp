#pragma once

#include <filesystem>

#include <gtest/gtest.h>

namespace qvtc::test {

/// A new working directory, and an empty log.
class WorkingDirectory : public testing::Test {
  protected:
    WorkingDirectory() {
        std::filesystem::remove("/home/root/system.log");
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        std::filesystem::current_path(directory_);
    }
    ~WorkingDirectory() override { std::filesystem::current_path("/"); }

  private:
    const std::filesystem::path directory_ = "/tmp/working-directory";
};

} // namespace qvtc::test
