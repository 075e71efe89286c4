#include "qvtcctl/verb/settings_document.hpp"

#include "support/support.hpp"

#include <climits>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace qvtc::qvtcctl {
namespace {

long kilobytes_used() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// The terminal has less memory than such a file would take.
TEST(QvtcctlSettingsDocument, ThatIsTooLargeIsNotReadFirst) {
    constexpr long megabyte = 1024;
    const std::string document(settings_document);
    test::write_file(document, "");
    std::filesystem::resize_file(document, INT_MAX + 1UL);
    const long before = kilobytes_used();
    const auto fault = fault_in_settings_document();
    ASSERT_TRUE(fault);
    EXPECT_NE(fault->what.find("it is too large"), std::string::npos) << fault->what;
    EXPECT_LT(kilobytes_used() - before, 100 * megabyte);
}

} // namespace
} // namespace qvtc::qvtcctl
