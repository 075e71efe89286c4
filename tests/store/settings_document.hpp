#pragma once

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "store/exports.hpp"
#include "support/support.hpp"

namespace qvtc::test {

inline const std::string document_path = "/home/root/vpclientData.xml";

inline std::string document_text() { return read_file(document_path); }

/// The bytes of a document in which one item holds one key.
inline std::string document_of(const std::string& item, const std::string& key,
                               const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ThinClientConfig>\n  <" + item +
           ">\n    <" + key + ">" + content + "</" + key + ">\n  </" + item +
           ">\n</ThinClientConfig>\n";
}

/// xmlwrite, on a copy of the value.
inline int written(const std::string& item, const std::string& key, std::string value) {
    return xmlwrite(item.c_str(), key.c_str(), value.data());
}

/// What xmlread gives; nothing when it refuses, and then its buffer must be untouched.
inline std::optional<std::string> value_read(const std::string& item, const std::string& key) {
    static std::vector<char> buffer(16UL * 1024 * 1024);
    std::memset(buffer.data(), '#', 64);
    const int result = xmlread(item.c_str(), key.c_str(), buffer.data());
    if (result == 0) return std::string(buffer.data());
    EXPECT_EQ(result, -1);
    EXPECT_EQ(std::string(buffer.data(), 64), std::string(64, '#'));
    return std::nullopt;
}

/// What lies in a directory.
inline std::vector<std::string> names_in(const std::filesystem::path& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

/// Starts without a document and without a log; keeps what libxml2 says out of the output.
class SettingsDocument : public testing::Test {
  protected:
    void SetUp() override {
        for (const auto& entry : std::filesystem::directory_iterator("/home/root"))
            std::filesystem::remove_all(entry.path());
    }

    using Value = std::optional<std::string>;
    using Lines = std::vector<std::string>;
};

} // namespace qvtc::test
