#include "support/golden.hpp"

#include "support/files.hpp"

#include <cstdlib>
#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

bool is_set(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

} // namespace

void expect_golden(const std::filesystem::path& path, const std::string& text,
                   const char* caller_file, int caller_line) {
    const auto fail = [&](const std::string& message) {
        ADD_FAILURE_AT(caller_file, caller_line) << message;
    };
    const std::filesystem::path file = QVTC_GOLDEN_DIRECTORY / path;
    if (is_set("QVTC_UPDATE_GOLDEN")) {
        if (is_set("CI")) return fail("QVTC_UPDATE_GOLDEN has no place in CI");
        return write_file(file, text);
    }
    constexpr auto advice = "\nIf the new text is right: QVTC_UPDATE_GOLDEN=1 ctest ..., and "
                            "review the difference.";
    if (!file_exists(file)) {
        return fail(file.string() + " does not exist. The text is:\n" + text + advice);
    }
    if (const std::string expected = read_file(file); expected != text) {
        fail(file.string() + " differs.\n--- expected\n" + expected + "\n--- now\n" + text +
             advice);
    }
}

} // namespace qvtc::test
