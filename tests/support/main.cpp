// Every test program's main. The code under test rewrites /etc and stops other programs, so it
// runs in a disposable terminal or not at all.

#include "support/commands.hpp"
#include "support/terminal.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>

namespace {

/// When a whole program runs in one terminal, each test still sees its own commands only.
class FreshRecord : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { qvtc::test::forget_commands(); }
};

} // namespace

int main(int count, char** arguments) {
    testing::InitGoogleMock(&count, arguments);
    if (!GTEST_FLAG_GET(list_tests) && !qvtc::test::terminal_mode()) {
        std::cerr << "These tests rewrite system files and stop programs; they run only in a "
                     "disposable terminal:\n    terminal/disposable-terminal "
                  << arguments[0] << "\n";
        return 1;
    }
    testing::UnitTest::GetInstance()->listeners().Append(std::make_unique<FreshRecord>().release());
    return RUN_ALL_TESTS();
}
