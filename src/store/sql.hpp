#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Statements on the one SQLite database that the library has open at a time. The
/// connection is the whole library's and guarded by nothing: two threads must not
/// use it at once. Each function gives 0, or the status that it names and a line
/// in the log.
namespace qvtc::store::sql {

/// Opens a database in place of the one that is open; -1 when it cannot be.
int open_database(const char* path);
void close_database();

/// Creates a table unless the question whether it exists fails, which alone is no
/// failure. Its answer is not looked at: -2 also for a table that is there already.
/// Name and columns are SQL text: "main.t", "[two words]", "if not exists t".
int create_table(const char* name, const char* columns);

// Whole statements, as their callers wrote them; -1 when they fail.
int execute(const char* statement);
int execute_insert(const char* statement);
int execute_update(const char* statement);

/// Deletes the rows whose column "id" has that text; -1 when that fails. The table is
/// SQL text, as above; the id is a value.
int delete_rows(const char* table, const char* id);

/// The outcome of a statement as SQLite lays it out: names of the columns, then
/// row after row, all in one array of texts (null where the database has null).
struct Table {
    char** cells = nullptr; ///< to be released with sqlite3_free_table
    int rows = 0;           ///< without the names
    int columns = 0;
};

/// Runs a statement and fetches its rows; -1, and an empty table, when that fails.
/// Deliberate: it runs twice, so one that changes something does so twice.
int query(const char* statement, Table& table);

// --- Values in statements ----------------------------------------------------------------

/// Between the single quotes of a statement.
std::string in_single(std::string_view value);

/// Where a statement has a value without quotes: a number, or a text that is in single
/// quotes already, stays as it is; anything else becomes a text in quotes.
std::string literal(std::string_view value);

} // namespace qvtc::store::sql
