#include "qvtcctl/base/base64.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlBase64, TextAndBytesBelongTogether) {
    struct Case {
        std::string_view bytes, text;
    };
    for (const Case& c :
         {Case{"", ""}, Case{"M", "TQ=="}, Case{"Ma", "TWE="}, Case{"Man", "TWFu"},
          Case{"any carnal pleas", "YW55IGNhcm5hbCBwbGVhcw=="}, Case{"\xFB\xEF\xBE", "++++"},
          Case{"\xFF\xFF\xFF", "////"}, Case{std::string_view("\0\0\0", 3), "AAAA"}}) {
        EXPECT_EQ(base64_encoded(c.bytes), c.text);
        EXPECT_EQ(base64_decoded(c.text), c.bytes);
    }
}

TEST(QvtcctlBase64, WhatIsNoBase64IsNotDecoded) {
    for (const std::string_view bad : {"T", "TW", "TWE", "TWFuT", "====", "T===", "TW=u", "TWF*",
                                       "TW E", "TWE=TWE=", "TWFu\n"}) {
        EXPECT_EQ(base64_decoded(bad), std::nullopt) << bad;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
