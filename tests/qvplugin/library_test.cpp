// The library with the real program, and with the stand-in of the disposable terminal: both must
// do the same for it.

#include "core/faults/guarded_buffer.hpp"
#include "qvplugin/program.hpp"
#include "store/exports.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

#include <thread>

namespace qvtc::test {

namespace {

class LibraryWithQvplugin : public testing::TestWithParam<const char*> {
  protected:
    const InstalledProgram program{GetParam()};
};

using Value = std::optional<std::string>;

/// What is read into a buffer of that size; nothing when that fails with -2.
Value read(unsigned key, unsigned size) {
    GuardedBuffer buffer(size);
    const std::string before = buffer.bytes();
    const int status = qvreaddb(key, buffer.data(), size);
    EXPECT_TRUE(buffer.guards_are_whole());
    if (status == 0) return std::string(buffer.data());
    EXPECT_EQ(status, -2);
    EXPECT_EQ(buffer.bytes(), before);
    return std::nullopt;
}

std::string name_of(const testing::TestParamInfo<const char*>& info) {
    return std::string(info.param) == QVPLUGIN_PROGRAM ? "Real" : "StandIn";
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Program, LibraryWithQvplugin,
                         testing::Values(QVPLUGIN_PROGRAM, QVPLUGIN_STAND_IN), name_of);

TEST_P(LibraryWithQvplugin, NothingStoredIsNothingRead) {
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{1, "", ""}));
    EXPECT_EQ(capture_stderr([] { EXPECT_EQ(read(90, 100), std::nullopt); }), "");
}

TEST_P(LibraryWithQvplugin, ValuesComeBackByteForByte) {
    std::string every_byte;
    for (int byte = 1; byte < 256; ++byte) every_byte += static_cast<char>(byte);
    const std::string values[] = {"hdxcamera=on",
                                  "{'value':'1'}",
                                  "'; touch /tmp/owned; '",
                                  "$(touch /tmp/owned)`touch /tmp/owned`",
                                  "a\nb\n",
                                  " ",
                                  "--help",
                                  "\xff\xfe",
                                  "Zoë €5 😀",
                                  every_byte};
    for (const std::string& value : values) {
        EXPECT_EQ(qvwritedb(90, value.c_str()), 0);
        EXPECT_EQ(read(90, 1000), value);
    }
    EXPECT_FALSE(file_exists("/tmp/owned"));
}

TEST_P(LibraryWithQvplugin, LengthsAtTheBoundaries) {
    for (const unsigned size : {1U, 2U, 3U, 10'239U, 10'240U, 76'000U, 76'782U}) {
        const std::string value(size, 'v');
        EXPECT_EQ(qvwritedb(87, value.c_str()), 0) << size;
        EXPECT_EQ(read(87, size), std::nullopt) << size;
        EXPECT_TRUE(read(87, size + 1) == value) << size;
    }
    EXPECT_EQ(qvwritedb(87, std::string(10'240, 'v').c_str()), 0);
    EXPECT_EQ(read(87, 10'240), std::nullopt);
    EXPECT_EQ(qvwritedb(87, std::string(10'239, 'v').c_str()), 0);
    EXPECT_TRUE(read(87, 10'240) == std::string(10'239, 'v'));
}

TEST_P(LibraryWithQvplugin, ValueThatCannotBeStoredLeavesTheOldOne) {
    EXPECT_EQ(qvwritedb(87, "old"), 0);
    EXPECT_EQ(qvwritedb(87, std::string(100'000, 'v').c_str()), -1);
    EXPECT_EQ(qvwritedb(87, nullptr), -2);
    EXPECT_EQ(read(87, 100), "old");
}

TEST_P(LibraryWithQvplugin, EmptyValueReadsAsNothing) {
    EXPECT_EQ(qvwritedb(90, "old"), 0);
    forget_commands();
    EXPECT_EQ(qvwritedb(90, ""), 0);
    EXPECT_EQ(recorded_commands(), (std::vector<std::string>{"qvplugin 1 90 "}));
    EXPECT_EQ(read(90, 100), std::nullopt);
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{0, "", ""}));
}

TEST_P(LibraryWithQvplugin, KeysDoNotMixUp) {
    for (const unsigned key : {0U, 1U, 10U, 87U, 2147483647U}) {
        EXPECT_EQ(qvwritedb(key, std::to_string(key).c_str()), 0);
    }
    for (const unsigned key : {0U, 1U, 10U, 87U, 2147483647U}) {
        EXPECT_EQ(read(key, 100), std::to_string(key));
    }
    // What would be written as a negative number is no key to either.
    capture_stderr([] {
        EXPECT_EQ(qvwritedb(4294967295U, "x"), 0);
        EXPECT_EQ(read(4294967295U, 100), std::nullopt);
    });
}

TEST_P(LibraryWithQvplugin, ThreadsMayReadAndWriteAtOnce) {
    std::vector<std::thread> threads;
    for (unsigned key = 0; key < 4; ++key) {
        threads.emplace_back([key] {
            for (int i = 0; i < 20; ++i) {
                const std::string value = std::to_string(i) + std::string(1000, 'v');
                EXPECT_EQ(qvwritedb(key, value.c_str()), 0);
                EXPECT_EQ(read(key, 2000), value);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

} // namespace qvtc::test
