// The library's own "main": it can be called, and never is what runs.

#include <cstdlib>

#include <sqlite3.h>

#include "store/exports.hpp"
#include "store/working_directory.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

class TestEntry : public WorkingDirectory {};

std::string output_of(const std::string& command) {
    return capture_stdout([&] { EXPECT_EQ(std::system(command.c_str()), 0); });
}

} // namespace

TEST_F(TestEntry, HostOfTheLibraryRunsItsOwnMain) {
    EXPECT_EQ(output_of(QVTC_HOST_OF_LIBRARY), "the host's own main\n");
    EXPECT_FALSE(file_exists("data"));
}

TEST_F(TestEntry, HostWithItsMainInAnArchiveBehindTheLibrarysRunsItsOwn) {
    EXPECT_EQ(output_of(QVTC_HOST_OF_ARCHIVE), "the host's own main\n");
    EXPECT_FALSE(file_exists("data"));
}

TEST_F(TestEntry, MakesTheTableAndStoresARow) {
    EXPECT_EQ(output_of(QVTC_HOST_OF_LIBRARY " " QVTC_LIBRARY),
              "the host's own main\n"
              "hell world\n"
              "select * from vpclientconfigure where name = 'olddisplay'\n"
              "insert into vpclientconfigure(key, value) values('olddisplay', '1440x900')\n");
    EXPECT_EQ(sql_open("data/vpclientconfigure.db"), 0);
    sql_result result{};
    EXPECT_EQ(sql_query("select * from vpclientconfigure", &result), 0);
    ASSERT_EQ(result.rows, 1);
    EXPECT_STREQ(result.cells[2], "olddisplay");
    EXPECT_STREQ(result.cells[3], "1440x900");
    sqlite3_free_table(result.cells);
    sql_close();
}

} // namespace qvtc::test
