#include "qvtcctl/base/table.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlTable, ColumnsAreAsWideAsTheirLongestCell) {
    EXPECT_EQ(layout({{"ID", "NAME", "ADDRESS"}, {"32", "office", "10.0.0.5"}, {"288", "x", "-"}}),
              "ID   NAME    ADDRESS\n"
              "32   office  10.0.0.5\n"
              "288  x       -\n");
}

TEST(QvtcctlTable, WideCharactersKeepTheColumnsStraight) {
    EXPECT_EQ(layout({{"NAME", "A"}, {"\xE4\xB8\xAD\xE6\x96\x87\xE6\xA1\x8C", "1"}, {"ab", "2"}}),
              "NAME    A\n"
              "\xE4\xB8\xAD\xE6\x96\x87\xE6\xA1\x8C  1\n"
              "ab      2\n");
}

TEST(QvtcctlTable, NoLineEndsInBlanks) {
    EXPECT_EQ(layout({{"A", "B", "C"}, {"long", "", ""}}), "A     B  C\nlong\n");
}

TEST(QvtcctlTable, ControlCharactersAreMadeVisible) {
    EXPECT_EQ(layout({{"A", "B"}, {"\x1b[2J", "x"}}), "A        B\n\\x1b[2J  x\n");
}

TEST(QvtcctlTable, NothingGivesNothing) { EXPECT_EQ(layout({}), ""); }

} // namespace
} // namespace qvtc::qvtcctl
