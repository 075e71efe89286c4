#pragma once

#include "qvtcctl/base/refusal.hpp"

#include <string>

#include <gtest/gtest.h>

namespace qvtc::test {

/// The message with which the call refuses; empty when it does not. Any other code than the one
/// given fails the test.
template <typename Call>
std::string refusal_of(Call call, qvtcctl::ExitCode code = qvtcctl::ExitCode::bad_usage) {
    try {
        call();
    } catch (const qvtcctl::Refusal& refusal) {
        EXPECT_EQ(refusal.code(), code);
        return refusal.what();
    }
    return "";
}

} // namespace qvtc::test
