#include "qvtcctl/base/console.hpp"
#include "qvtcctl/verb/quiet.hpp"

#include "support/support.hpp"

#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

void chatter() {
    std::printf("from the library\n"); // stays in the stream's buffer
    if (std::system("echo from a command; echo trouble >&2") != 0) std::abort();
}

TEST(QvtcctlQuiet, WhatTheLibraryPrintsIsDropped) {
    std::string errors;
    const std::string output = test::capture_stdout([&] {
        errors = test::capture_stderr([] {
            write_out("before\n");
            {
                const Quiet quiet(Chatter::dropped);
                chatter();
            }
            write_out("after\n");
        });
        std::fflush(stdout);
    });
    EXPECT_EQ(output, "before\nafter\n");
    EXPECT_EQ(errors, "");
}

TEST(QvtcctlQuiet, ForDebuggingItGoesToStandardError) {
    std::string errors;
    const std::string output = test::capture_stdout([&] {
        errors = test::capture_stderr([] {
            const Quiet quiet(Chatter::to_standard_error);
            chatter();
        });
    });
    EXPECT_EQ(output, "");
    EXPECT_EQ(errors, "from a command\ntrouble\nfrom the library\n");
}

TEST(QvtcctlProgress, OffATerminalEachStageIsALine) {
    const auto shown = [](bool switched_on) {
        return test::capture_stdout([&] {
            Progress progress(switched_on);
            progress.show("one", 0);
            progress.show("one", 1);
            progress.show("two", 1);
        });
    };
    EXPECT_EQ(shown(true), "one\ntwo\n");
    EXPECT_EQ(shown(false), "");
}

} // namespace
} // namespace qvtc::qvtcctl
