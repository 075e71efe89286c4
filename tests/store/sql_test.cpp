#include "store/sql.hpp"

#include <optional>

#include <sqlite3.h>

#include "core/faults/descriptors.hpp"
#include "store/exports.hpp"
#include "store/working_directory.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Lines = std::vector<std::string>;
using Cells = std::vector<std::optional<std::string>>;

class Sql : public WorkingDirectory {
  protected:
    Sql() { EXPECT_EQ(sql_open("test.db"), 0); }
    ~Sql() override { EXPECT_EQ(sql_close(), 0); }
};

/// All cells that a query gives, names of the columns first.
Cells queried(const char* statement) {
    sql_result result{};
    if (sql_query(statement, &result) != 0) return {"failed"};
    Cells cells;
    for (int i = 0; i < (result.rows + 1) * result.columns; ++i) {
        const char* const cell = result.cells[i];
        cells.push_back(cell != nullptr ? std::optional<std::string>(cell) : std::nullopt);
    }
    sqlite3_free_table(result.cells);
    return cells;
}

} // namespace

TEST_F(Sql, StatementsChangeTheDatabase) {
    EXPECT_EQ(sql_createtable("t", "id text,v int"), 0);
    EXPECT_EQ(sql_insert("insert into t values('a', 1)"), 0);
    EXPECT_EQ(sql_cmd("insert into t values('b', 2)"), 0);
    EXPECT_EQ(sql_modify("update t set v=7 where id='b'"), 0);
    EXPECT_EQ(queried("select * from t"), (Cells{"id", "v", "a", "1", "b", "7"}));
    EXPECT_EQ(sql_delete("t", "a"), 0);
    EXPECT_EQ(queried("select * from t"), (Cells{"id", "v", "b", "7"}));
    EXPECT_EQ(sql_delete("t", "not there"), 0);
    EXPECT_EQ(log_lines(), Lines{});
}

TEST_F(Sql, EachFailureHasItsWords) {
    EXPECT_EQ(sql_cmd("x"), -1);
    EXPECT_EQ(sql_insert("insert into t values(1)"), -1);
    EXPECT_EQ(sql_delete("t", "a"), -1);
    EXPECT_EQ(sql_modify("update t set v=1"), -1);
    EXPECT_EQ(queried("select * from t"), Cells{"failed"});
    EXPECT_EQ(sql_createtable("t", ""), -2);
    EXPECT_EQ(log_lines(), (Lines{"[ERROR] @sql_cmd sqlite3_exec error near \"x\": syntax error",
                                  "[ERROR] @sql_insert error no such table: t",
                                  "[ERROR] @sql_delete delete data failed",
                                  "[ERROR] @sql_modify sqlite3_exec error",
                                  "[ERROR] sqlite3_exec error :no such table: t", "",
                                  "[ERROR] create table error near \")\": syntax error"}));
}

TEST_F(Sql, TableThatIsThereCannotBeCreated) {
    EXPECT_EQ(sql_createtable("t", "id text"), 0);
    EXPECT_EQ(sql_createtable("t", "id text"), -2);
    EXPECT_EQ(log_lines(), Lines{"[ERROR] create table error table t already exists"});
}

TEST_F(Sql, OnlyTheQuestionWhetherATableExistsMayFail) {
    sql_close();
    write_file("broken.db", std::string(4096, 'x'));
    EXPECT_EQ(sql_open("broken.db"), 0);
    EXPECT_EQ(sql_createtable("t", "id text"), 0);
    EXPECT_EQ(log_lines(), Lines{"[ERROR] @sql_createtable file is not a database"});
}

TEST_F(Sql, DatabaseThatCannotBeOpened) {
    const std::size_t open_before = open_descriptors();
    EXPECT_EQ(sql_open("no/such/directory/test.db"), -1);
    EXPECT_EQ(sql_open("/"), -1);
    EXPECT_EQ(log_lines(), Lines(2, "[ERROR] @sql_open error"));
    // The one that was open is no more.
    EXPECT_EQ(open_descriptors(), open_before - 1);
    EXPECT_EQ(sql_cmd("select 1"), -1);
    EXPECT_EQ(log_lines().back(),
              "[ERROR] @sql_cmd sqlite3_exec error bad parameter or other API misuse");
}

TEST_F(Sql, OpeningClosesWhatWasOpen) {
    const std::size_t open_before = open_descriptors();
    for (int i = 0; i < 100; ++i) EXPECT_EQ(sql_open("test.db"), 0);
    EXPECT_EQ(open_descriptors(), open_before);
    EXPECT_EQ(sql_close(), 0);
    EXPECT_EQ(sql_close(), 0);
    EXPECT_EQ(open_descriptors(), open_before - 1);
}

TEST_F(Sql, NothingCanBeDoneWithoutADatabase) {
    sql_close();
    EXPECT_EQ(sql_cmd("select 1"), -1);
    EXPECT_EQ(sql_insert("select 1"), -1);
    EXPECT_EQ(sql_delete("t", "a"), -1);
    EXPECT_EQ(sql_modify("select 1"), -1);
    EXPECT_EQ(queried("select 1"), Cells{"failed"});
    EXPECT_EQ(sql_createtable("t", "id text"), 0); // the question fails
    EXPECT_EQ(
        log_lines(),
        (Lines{"[ERROR] @sql_cmd sqlite3_exec error bad parameter or other API misuse",
               "[ERROR] @sql_insert error bad parameter or other API misuse",
               "[ERROR] @sql_delete delete data failed", "[ERROR] @sql_modify sqlite3_exec error",
               "[ERROR] sqlite3_exec error :bad parameter or other API misuse", "",
               "[ERROR] @sql_createtable bad parameter or other API misuse"}));
}

TEST_F(Sql, NullIsAFailureAndNoCrash) {
    EXPECT_EQ(sql_cmd(nullptr), -1);
    EXPECT_EQ(sql_insert(nullptr), -1);
    EXPECT_EQ(sql_modify(nullptr), -1);
    EXPECT_EQ(sql_delete(nullptr, nullptr), -1);
    EXPECT_EQ(sql_createtable("t", nullptr), -2);
    EXPECT_EQ(sql_query("select 1", nullptr), -1);
    sql_result result{};
    EXPECT_EQ(sql_query(nullptr, &result), -1);
    EXPECT_EQ(result.cells, nullptr);
}

TEST_F(Sql, QueryGivesNamesThenRows) {
    sql_createtable("t", "a text,b text");
    EXPECT_EQ(queried("select * from t"), Cells{}); // no rows, no names
    sql_insert("insert into t values('1', null)");
    EXPECT_EQ(queried("select * from t"), (Cells{"a", "b", "1", std::nullopt}));
    sql_result result{};
    EXPECT_EQ(sql_query("select * from t", &result), 0);
    EXPECT_EQ(result.rows, 1);
    EXPECT_EQ(result.columns, 2);
    sqlite3_free_table(result.cells);
}

TEST_F(Sql, DeliberateAQueryRunsItsStatementTwice) {
    sql_createtable("t", "a text");
    EXPECT_EQ(queried("insert into t values('x')"), Cells{});
    EXPECT_EQ(queried("select a from t"), (Cells{"a", "x", "x"}));
}

TEST_F(Sql, FailedQueryLeavesAnEmptyResult) {
    char* other = nullptr;
    sql_result result{&other, 7, 7};
    EXPECT_EQ(sql_query("select * from nowhere", &result), -1);
    EXPECT_EQ(result.cells, nullptr);
    EXPECT_EQ(result.rows, 0);
    EXPECT_EQ(result.columns, 0);
}

TEST_F(Sql, IdStaysAValue) {
    sql_createtable("t", "id text");
    for (const char* const id : {"x' or '1'='1", "'; drop table t; --", "' or 1=1 --",
                                 "\\' or 1 --", "\"", "a\nb", "\xff"}) {
        sql_insert("insert into t values('kept')");
        EXPECT_EQ(sql_delete("t", id), 0) << id;
        EXPECT_EQ(queried("select * from t"), (Cells{"id", "kept"})) << id;
        sql_cmd("delete from t");
        sql_insert(("insert into t values('" + store::sql::in_single(id) + "')").c_str());
        EXPECT_EQ(queried("select * from t"), (Cells{"id", id}));
        EXPECT_EQ(sql_delete("t", id), 0);
        EXPECT_EQ(queried("select * from t"), Cells{}) << id;
    }
}

TEST_F(Sql, NameOfATableIsSql) {
    const Cells tables = {"name", "a", "b c", "d", "e"};
    EXPECT_EQ(sql_createtable("main.a", "id text"), 0);
    EXPECT_EQ(sql_createtable("[b c]", "id text"), 0);
    EXPECT_EQ(sql_createtable("\"d\"", "id text"), 0);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(sql_createtable("if not exists e", "id text"), 0);
    EXPECT_EQ(queried("select name from sqlite_master order by name"), tables);
    for (const char* const name : {"main.a", "[b c]", "\"d\"", "e"}) {
        sql_insert((std::string("insert into ") + name + " values('x')").c_str());
        EXPECT_EQ(sql_delete(name, "x"), 0) << name;
        EXPECT_EQ(queried((std::string("select * from ") + name).c_str()), Cells{}) << name;
    }
    EXPECT_EQ(log_lines(), Lines{});
    EXPECT_EQ(sql_createtable("a b", "id text"), -2);
    EXPECT_EQ(sql_createtable("1t", "id text"), -2);
    EXPECT_EQ(sql_createtable("", "id text"), -2);
    EXPECT_EQ(sql_delete("a b", "x"), -1);
    EXPECT_EQ(queried("select name from sqlite_master order by name"), tables);
    EXPECT_EQ(log_lines(), (Lines{"[ERROR] create table error near \"b\": syntax error",
                                  "[ERROR] create table error unrecognized token: \"1t\"",
                                  "[ERROR] create table error near \"(\": syntax error",
                                  "[ERROR] @sql_delete delete data failed"}));
}

TEST_F(Sql, QuoteInTheNameOfATableEndsNoValue) {
    EXPECT_EQ(sql_createtable("[o'clock]", "id text"), 0);
    EXPECT_EQ(queried("select name from sqlite_master"), (Cells{"name", "o'clock"}));
}

TEST_F(Sql, LargeStatementsAreWhole) {
    sql_createtable("t", "id text");
    for (const std::size_t size : {0UL, 10'239UL, 10'240UL, 100'000UL}) {
        const std::string value(size, '\'');
        sql_cmd("delete from t");
        EXPECT_EQ(
            sql_insert(("insert into t values('" + store::sql::in_single(value) + "')").c_str()),
            0);
        EXPECT_TRUE(queried("select * from t") == (Cells{"id", value})) << size;
    }
}

TEST(SqlValues, AreQuotedByTheirPosition) {
    using namespace store::sql;
    EXPECT_EQ(in_single("plain"), "plain");
    EXPECT_EQ(in_single("o'clock''"), "o''clock''''");
    const std::pair<const char*, const char*> literals[] = {
        {"1", "1"},
        {"007", "007"},
        {"'abc'", "'abc'"},
        {"''", "''"},
        {"'o''clock'", "'o''clock'"},
        {"olddisplay", "'olddisplay'"},
        {"", "''"},
        {"'", "''''"},
        {"'''", "''''''''"},
        {"'a' or 'b'", "'''a'' or ''b'''"},
        {"'a", "'''a'"},
        {"a'", "'a'''"},
        {"\"a\"", "'\"a\"'"},
        {"1 or 1=1", "'1 or 1=1'"},
        {"1e5", "'1e5'"},
        {"-1", "'-1'"},
        {"key", "'key'"},
        {"\xc3\xa4", "'\xc3\xa4'"},
    };
    for (const auto& [value, text] : literals) EXPECT_EQ(literal(value), text);
}

} // namespace qvtc::test
