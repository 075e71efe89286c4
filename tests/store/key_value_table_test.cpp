#include "store/key_value_table.hpp"

#include <sqlite3.h>
#include <sys/stat.h>

#include "core/faults/descriptors.hpp"
#include "core/faults/guarded_buffer.hpp"
#include "store/exports.hpp"
#include "store/working_directory.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Lines = std::vector<std::string>;
using Rows = std::vector<std::pair<std::string, std::string>>;

constexpr const char* database = "data/vpclientconfigure.db";
const std::string find_failed = "[ERROR] @sql_cmd sqlite3_exec error no such column: name";

class KeyValueTable : public WorkingDirectory {};

/// All rows, as another program sees them.
Rows rows() {
    Rows found;
    EXPECT_EQ(sql_open(database), 0);
    sql_result result{};
    EXPECT_EQ(sql_query("select key, value from vpclientconfigure", &result), 0);
    for (int row = 1; row <= result.rows; ++row) {
        found.emplace_back(result.cells[2 * row], result.cells[2 * row + 1]);
    }
    sqlite3_free_table(result.cells);
    sql_close();
    return found;
}

std::string printed_by_write(const std::string& key, const std::string& value) {
    return capture_stdout([&] { EXPECT_EQ(writedata(key.c_str(), value.c_str()), 0); });
}

struct Found {
    int status;
    std::string text;
    std::string printed;

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
    *stream << found.status << ' ' << testing::PrintToString(found.text) << ' '
            << testing::PrintToString(found.printed);
}

Found found(const std::string& key) {
    GuardedBuffer output(300);
    Found found{};
    found.printed = capture_stdout([&] { found.status = readdata(key.c_str(), output.data()); });
    EXPECT_TRUE(output.guards_are_whole());
    const std::string bytes = output.bytes();
    found.text = bytes == std::string(300, '#') ? "untouched" : output.data();
    return found;
}

} // namespace

TEST_F(KeyValueTable, IsMadeInTheWorkingDirectory) {
    const mode_t former = umask(0);
    EXPECT_EQ(db_init(), 0);
    umask(former);
    struct stat status {};
    ASSERT_EQ(stat("data", &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0666U); // Deliberate: no right to enter it
    EXPECT_EQ(rows(), Rows{});
    EXPECT_EQ(log_lines(), Lines{});
    sql_open(database);
    sql_result result{};
    sql_query("select sql from sqlite_master", &result);
    ASSERT_EQ(result.rows, 1);
    EXPECT_STREQ(result.cells[1], "CREATE TABLE vpclientconfigure(key text,value text)");
    sqlite3_free_table(result.cells);
    sql_close();
}

TEST_F(KeyValueTable, IsMadeOnce) {
    EXPECT_EQ(db_init(), 0);
    printed_by_write("a", "b");
    std::filesystem::remove("/home/root/system.log");
    EXPECT_EQ(create_table(), 0);
    EXPECT_EQ(db_init(), 0);
    EXPECT_EQ(log_lines(),
              Lines(2, "[ERROR] create table error table vpclientconfigure already exists"));
    EXPECT_EQ(rows(), (Rows{{"a", "b"}}));
}

TEST_F(KeyValueTable, WhatCannotBeMadeIsLoggedOnly) {
    EXPECT_EQ(create_table(), 0); // no directory
    write_file("data", "a file");
    EXPECT_EQ(db_init(), 0);
    const Lines expected = {"[ERROR] @sql_open error",
                            "[ERROR] @sql_createtable bad parameter or other API misuse"};
    EXPECT_EQ(log_lines(), (Lines{expected[0], expected[1], expected[0], expected[1]}));
    EXPECT_EQ(printed_by_write("a", "b"),
              "select * from vpclientconfigure where name = 'a'\n"
              "insert into vpclientconfigure(key, value) values('a', 'b')\n");
    EXPECT_EQ(found("a"), (Found{-1, "untouched", ""}));
}

TEST_F(KeyValueTable, DeliberateEachWriteAddsARow) {
    db_init();
    const std::string printed =
        "select * from vpclientconfigure where name = 'olddisplay'\n"
        "insert into vpclientconfigure(key, value) values('olddisplay', '1440x900')\n";
    EXPECT_EQ(printed_by_write("olddisplay", "1440x900"), printed);
    EXPECT_EQ(printed_by_write("olddisplay", "1440x900"), printed);
    EXPECT_EQ(rows(), (Rows{{"olddisplay", "1440x900"}, {"olddisplay", "1440x900"}}));
    EXPECT_EQ(log_lines(), Lines(2, find_failed));
}

TEST_F(KeyValueTable, DeliberateReadingGoesByPosition) {
    EXPECT_EQ(found("a"), (Found{-1, "untouched", ""})); // no table
    db_init();
    EXPECT_EQ(found("a"), (Found{-1, "untouched", ""})); // no rows
    printed_by_write("a", "1");
    // One row: only the name "key" is looked at; one row further lies the first row's key.
    EXPECT_EQ(found("a"), (Found{0, "untouched", ""}));
    EXPECT_EQ(found("key"), (Found{0, "a", "value:a\n"}));
    EXPECT_EQ(found("value"), (Found{0, "untouched", ""}));
    printed_by_write("b", "2");
    EXPECT_EQ(found("value"), (Found{0, "1", "value:1\n"}));
    EXPECT_EQ(found("a"), (Found{0, "untouched", ""}));
    printed_by_write("c", "3");
    // Three rows: the third cell is the first row's key; one row further, the second row's.
    EXPECT_EQ(found("a"), (Found{0, "b", "value:b\n"}));
    EXPECT_EQ(found("1"), (Found{0, "untouched", ""}));
    printed_by_write("d", "4");
    EXPECT_EQ(found("1"), (Found{0, "2", "value:2\n"}));
    EXPECT_EQ(found("none"), (Found{0, "untouched", ""}));
}

TEST_F(KeyValueTable, CellThatIsNullIsNoKeyAndAnEmptyValue) {
    db_init();
    sql_open(database);
    for (int i = 0; i < 3; ++i) sql_insert("insert into vpclientconfigure values(null, null)");
    EXPECT_EQ(found("").status, 0);
    EXPECT_EQ(found(""), (Found{0, "untouched", ""}));
    EXPECT_EQ(found("key"), (Found{0, "", "value:\n"}));
}

TEST_F(KeyValueTable, KeyIsNeverFoundByItsName) {
    db_init();
    printed_by_write("a", "1");
    std::filesystem::remove("/home/root/system.log");
    sql_open(database);
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(is_exsit_key("a"), -1); }),
              "select * from vpclientconfigure where name = 'a'\n");
    EXPECT_EQ(log_lines(), Lines{find_failed});
    // In a table that has the column it would be.
    sql_cmd("alter table vpclientconfigure add column name text");
    capture_stdout([] { EXPECT_EQ(is_exsit_key("a"), 0); });
    sql_close();
    EXPECT_EQ(printed_by_write("1", "changed"),
              "select * from vpclientconfigure where name = '1'\n"
              "update vpclientconfigure set value='changed' where key=1\n");
}

TEST_F(KeyValueTable, RowsAreInsertedAndChanged) {
    db_init();
    sql_open(database);
    const std::string printed = capture_stdout([] {
        EXPECT_EQ(do_insert("7", "old"), 0);
        EXPECT_EQ(do_insert("8", "old"), 0);
        EXPECT_EQ(do_modify("7", "new"), 0);
    });
    EXPECT_EQ(printed, "insert into vpclientconfigure(key, value) values('7', 'old')\n"
                       "insert into vpclientconfigure(key, value) values('8', 'old')\n"
                       "update vpclientconfigure set value='new' where key=7\n");
    sql_close();
    EXPECT_EQ(rows(), (Rows{{"7", "new"}, {"8", "old"}}));
}

TEST_F(KeyValueTable, KeyInQuotesStandsAsItIs) {
    db_init();
    sql_open(database);
    const std::string printed = capture_stdout([] {
        do_insert("olddisplay", "old");
        do_insert("o'clock", "old");
        EXPECT_EQ(do_modify("'olddisplay'", "new"), 0);
        EXPECT_EQ(do_modify("'o''clock'", "newer"), 0);
        EXPECT_EQ(do_modify("olddisplay", "newest"), 0);
    });
    EXPECT_EQ(printed, "insert into vpclientconfigure(key, value) values('olddisplay', 'old')\n"
                       "insert into vpclientconfigure(key, value) values('o''clock', 'old')\n"
                       "update vpclientconfigure set value='new' where key='olddisplay'\n"
                       "update vpclientconfigure set value='newer' where key='o''clock'\n"
                       "update vpclientconfigure set value='newest' where key='olddisplay'\n");
    sql_close();
    EXPECT_EQ(rows(), (Rows{{"olddisplay", "newest"}, {"o'clock", "newer"}}));
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(KeyValueTable, ValuesStayValues) {
    const std::string hostile[] = {"'",
                                   "'''",
                                   "x'); drop table vpclientconfigure; --",
                                   "x', 'y'), ('z",
                                   "' or '1'='1",
                                   "1 or 1=1",
                                   "1; delete from vpclientconfigure",
                                   "key",
                                   "value",
                                   "rowid",
                                   "key--",
                                   "\"key\"",
                                   "\\'",
                                   "%s%n",
                                   "a\nb",
                                   "$(touch /tmp/owned)",
                                   "\xff\xfe",
                                   "",
                                   std::string(10'239, '\''),
                                   std::string(10'240, ' '),
                                   std::string(99'999, '\'')};
    for (const std::string& value : hostile) {
        std::filesystem::remove_all("data");
        db_init();
        printed_by_write("kept", "kept");
        printed_by_write(value, value);
        EXPECT_TRUE(rows() == (Rows{{"kept", "kept"}, {value, value}})) << value.substr(0, 99);
        sql_open(database);
        capture_stdout([&] { do_modify(value.c_str(), (value + "!").c_str()); });
        sql_close();
        EXPECT_TRUE(rows() == (Rows{{"kept", "kept"}, {value, value + "!"}}))
            << value.substr(0, 99);
    }
}

TEST_F(KeyValueTable, NullIsNothing) {
    db_init();
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(writedata(nullptr, nullptr), 0); }), "");
    EXPECT_EQ(rows(), Rows{});
    char output = 'x';
    EXPECT_EQ(readdata(nullptr, &output), -1);
    EXPECT_EQ(readdata("key", nullptr), -1);
    EXPECT_EQ(output, 'x');
}

TEST_F(KeyValueTable, NothingStaysOpen) {
    const std::size_t before = open_descriptors();
    for (int i = 0; i < 50; ++i) {
        db_init();
        printed_by_write("a", "b");
        found("key");
    }
    EXPECT_EQ(open_descriptors(), before);
}

} // namespace qvtc::test
