#include "core/line_file.hpp"

#include "support/support.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <vector>

namespace qvtc {

namespace {

using Lines = std::vector<std::string>;

unsigned mode_of(const char* path) {
    struct stat info {};
    return stat(path, &info) == 0 ? info.st_mode & 07777U : 0;
}

} // namespace

TEST(LineFile, HoldsEachLineWithItsNewline) {
    EXPECT_TRUE(
        write_lines("/etc/example.conf", Lines{"", "# a comment ", "\tname \"value\"", ""}));
    EXPECT_EQ(test::read_file("/etc/example.conf"), "\n# a comment \n\tname \"value\"\n\n");
    EXPECT_EQ(mode_of("/etc/example.conf"), 0644U);
    EXPECT_TRUE(test::recorded_commands().empty());
}

TEST(LineFile, TakesThePlaceOfTheFormerFileAndKeepsItsMode) {
    test::write_file("/etc/example.conf", "a much longer former content\nof two lines\n");
    ASSERT_EQ(chmod("/etc/example.conf", 0600), 0);
    EXPECT_TRUE(write_lines("/etc/example.conf", Lines{"new"}));
    EXPECT_EQ(test::read_file("/etc/example.conf"), "new\n");
    EXPECT_EQ(mode_of("/etc/example.conf"), 0600U);
    EXPECT_TRUE(write_lines("/etc/example.conf", Lines{}));
    EXPECT_EQ(test::read_file("/etc/example.conf"), "");
}

TEST(LineFile, BackslashesAndShellTextStayAsTheyAre) {
    EXPECT_TRUE(write_lines("/etc/example.conf", Lines{"a\\tb", "$(touch /tmp/owned)", "-e"}));
    EXPECT_EQ(test::read_file("/etc/example.conf"), "a\\tb\n$(touch /tmp/owned)\n-e\n");
}

TEST(LineFile, AFailureIsLogged) {
    EXPECT_FALSE(write_lines("/no/such/directory/file", Lines{"a"}));
    EXPECT_EQ(test::log_lines(),
              Lines{"[ERROR] @write_lines /no/such/directory/file: No such file or directory"});
}

} // namespace qvtc
