#pragma once

#include <filesystem>
#include <string>

namespace qvtc::test {

/// Compares `text` with the file tests/golden/PATH, for instance "display/xorg_conf_3.txt". A
/// difference fails the test and prints both. With QVTC_UPDATE_GOLDEN=1 in the environment the
/// file is rewritten instead, for review; where CI is set, that is refused.
void expect_golden(const std::filesystem::path& path, const std::string& text,
                   const char* caller_file = __builtin_FILE(), int caller_line = __builtin_LINE());

} // namespace qvtc::test
