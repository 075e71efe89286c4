#include "display/refresh.hpp"

#include "core/base64.hpp"
#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <gtest/gtest.h>

extern "C" char buffer[];

namespace qvtc::display {

namespace {

using test::Texts;

/// A store that keeps what it is given, as the image's does.
class Refresh : public test::DisplayTerminal {
  protected:
    Refresh() {
        std::filesystem::remove("/tmp/value");
        qvplugin.runs("if [[ $1 == 0 ]]; then cat /tmp/value 2>/dev/null; "
                      "else printf '%s' \"$3\" >/tmp/value; fi");
        buffer[0] = '\0';
    }

    test::StandIn qvplugin{"qvplugin"};
};

/// A JSON text of that many characters.
std::string json_of(std::size_t size) { return "{\"a\":\"" + std::string(size - 8, 'x') + "\"}"; }

} // namespace

TEST_F(Refresh, IsStoredUnderItsNumberAndReadBack) {
    EXPECT_EQ(qvsetdisplayrefresh(R"({"rate":60})"), 0);
    EXPECT_EQ(test::recorded_commands(), Texts{"qvplugin 1 87 eyJyYXRlIjo2MH0="});
    test::forget_commands();
    EXPECT_EQ(test::text_of(qvdisplayrefresh()), R"({"rate":60})");
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{{"qvplugin 0 87", true}}));
    EXPECT_STREQ(buffer, R"({"rate":60})");
}

TEST_F(Refresh, MayBeWrittenWithSingleQuotes) {
    EXPECT_EQ(qvsetdisplayrefresh("{'rate':'60'}"), 0);
    EXPECT_EQ(test::text_of(qvdisplayrefresh()), R"({"rate":"60"})");
}

TEST_F(Refresh, IsNullWithoutAStoredText) {
    EXPECT_EQ(qvdisplayrefresh(), nullptr);
    EXPECT_EQ(qvsetdisplayrefresh(""), 0);
    EXPECT_EQ(qvdisplayrefresh(), nullptr);
    EXPECT_EQ(test::recorded_commands(),
              (Texts{"qvplugin 0 87", "qvplugin 1 87 ", "qvplugin 0 87"}));
    test::write_file("/tmp/value", "no base64!");
    EXPECT_EQ(qvdisplayrefresh(), nullptr);
    EXPECT_STREQ(buffer, "");
}

TEST_F(Refresh, IsNullForATextThatIsNoJsonWhichStaysToBeSeen) {
    EXPECT_EQ(qvsetdisplayrefresh("{rate"), 0);
    EXPECT_EQ(qvdisplayrefresh(), nullptr);
    EXPECT_STREQ(buffer, "{rate");
}

TEST_F(Refresh, NullIsNoText) {
    EXPECT_EQ(qvsetdisplayrefresh(nullptr), -2);
    EXPECT_EQ(test::recorded_commands(), Texts{});
}

TEST_F(Refresh, IsReadBackUpToTenThousandTwoHundredAndThirtyNineCharacters) {
    const std::string longest = json_of(10239);
    EXPECT_EQ(qvsetdisplayrefresh(longest.c_str()), 0);
    EXPECT_EQ(test::text_of(qvdisplayrefresh()), longest);
    EXPECT_EQ(buffer, longest);
    const std::string too_long = json_of(10240);
    EXPECT_EQ(qvsetdisplayrefresh(too_long.c_str()), 0);
    EXPECT_EQ(base64::decode(test::read_file("/tmp/value")), too_long);
    EXPECT_EQ(qvdisplayrefresh(), nullptr);
    EXPECT_EQ(buffer, longest);
}

TEST_F(Refresh, ATextTooLongForACommandLineIsRefused) {
    test::forget_commands();
    EXPECT_EQ(qvsetdisplayrefresh(json_of(100000).c_str()), -1);
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @qvwritedb value of 87 too long: 100000 bytes"});
}

} // namespace qvtc::display
