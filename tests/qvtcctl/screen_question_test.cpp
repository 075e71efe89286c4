#include "qvtcctl/screen_question.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlScreenQuestion, IsAskedOfTheTerminalsScreenAndAnsweredWhole) {
    test::StandIn program("ask");
    program.runs("echo \"$DISPLAY $*\"; head -c 100000 /dev/zero | tr '\\0' x; echo lost >&2");
    const std::optional<std::string> answer = ask_the_screen({"ask", "a b", "$c"});
    ASSERT_TRUE(answer);
    EXPECT_EQ(*answer, ":0.0 a b $c\n" + std::string(100000, 'x'));
    EXPECT_EQ(program.calls(), (test::StandIn::Calls{{"a b", "$c"}}));
}

TEST(QvtcctlScreenQuestion, HasNoAnswerWhereTheProgramFailsIsMissingOrHangs) {
    test::StandIn program("ask");
    program.prints("half an answer").exits_with(1);
    EXPECT_EQ(ask_the_screen({"ask"}), std::nullopt);
    EXPECT_EQ(ask_the_screen({"there-is-no-such-program"}), std::nullopt);
    program.keeps_running();
    EXPECT_EQ(ask_the_screen({"ask"}), std::nullopt);
}

} // namespace
} // namespace qvtc::qvtcctl
