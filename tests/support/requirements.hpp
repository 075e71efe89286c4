#pragma once

#include <gtest/gtest.h>
#include <string>

namespace qvtc::test {

/// Whether a program of this name can be found in PATH.
bool has_program(const std::string& name);

/// Whether a test that cannot run here must fail instead of being skipped: in CI.
bool skipping_is_forbidden();

} // namespace qvtc::test

// For tests of the real thing: each ends the test, with a reason, as failed in CI and skipped
// elsewhere. They are macros because only the test's own body can end the test.
#define QVTC_NEED(condition, reason)                                                               \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            if (qvtc::test::skipping_is_forbidden()) FAIL() << (reason);                           \
            GTEST_SKIP() << (reason);                                                              \
        }                                                                                          \
    } while (false)

#define QVTC_NEED_PROGRAM(name)                                                                    \
    QVTC_NEED(qvtc::test::has_program(name), std::string(name) + " is not installed")
