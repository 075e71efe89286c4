#include "qvtcctl/display/resolutions.hpp"

#include "refusals.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlResolutions, HaveAnIndexEach) {
    for (const Resolution& each : resolutions) {
        EXPECT_EQ(require_resolution(each.name).index, each.index);
        EXPECT_EQ(resolution_name(each.index), each.name);
    }
}

TEST(QvtcctlResolutions, WhatIsNoneIsRefused) {
    const std::string choices = ": give one of auto, 800x600, 1024x768, 1280x720, 1280x800, "
                                "1280x1024, 1366x768, 1440x900, 1600x900, 1600x1200, 1920x1080.";
    EXPECT_EQ(test::refusal_of([] { require_resolution("1024x786"); }),
              "unknown resolution \"1024x786\" (did you mean \"1024x768\"?)" + choices);
    EXPECT_EQ(test::refusal_of([] { require_resolution("\n"); }),
              "unknown resolution \"\\x0a\"" + choices);
}

TEST(QvtcctlResolutions, AnIndexOfNoneIsShown) {
    EXPECT_EQ(resolution_name("12"), "auto (the stored index \"12\" is not valid)");
    EXPECT_EQ(resolution_name("\x1b"), "auto (the stored index \"\\x1b\" is not valid)");
}

} // namespace
} // namespace qvtc::qvtcctl
