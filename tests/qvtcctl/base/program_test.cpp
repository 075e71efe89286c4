#include "qvtcctl/base/program.hpp"

#include "support/support.hpp"

#include <cstdlib>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;

TEST(QvtcctlProgram, GetsItsWordsAndItsVariable) {
    StandIn program("program");
    program.runs("printf '%s\\n' \"$#\" \"$@\" \"$VARIABLE\" \"$VARIABLE_2\" \"$OTHER\"");
    setenv("VARIABLE", "former", 1);
    setenv("VARIABLE_2", "kept", 1);
    const auto output = run_program({"program", "a b", ""}, "VARIABLE=new");
    ASSERT_TRUE(output);
    EXPECT_EQ(output->text, "2\na b\n\nnew\nkept\n\n");
    EXPECT_TRUE(output->succeeded);
}

TEST(QvtcctlProgram, TellsThatItFailed) {
    StandIn program("program");
    program.prints("said\n").exits_with(1);
    const auto output = run_program({"program"}, "A=b");
    ASSERT_TRUE(output);
    EXPECT_EQ(output->text, "said\n");
    EXPECT_FALSE(output->succeeded);
}

TEST(QvtcctlProgram, IsGivenUpWhenItTakesTooLong) {
    StandIn program("program");
    program.keeps_running();
    EXPECT_FALSE(run_program({"program"}, "A=b"));
    // Nothing of it is left.
    EXPECT_NE(std::system("pgrep -x program >/dev/null"), 0);
}

TEST(QvtcctlProgram, ThatIsMissingGivesNothing) {
    EXPECT_FALSE(run_program({"no-such-program"}, "A=b"));
}

} // namespace
} // namespace qvtc::qvtcctl
