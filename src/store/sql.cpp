#include "store/sql.hpp"

#include <memory>

#include <sqlite3.h>

#include "core/log.hpp"
#include "core/text.hpp"

namespace qvtc::store::sql {

namespace {

struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct Release {
    void operator()(char* text) const { sqlite3_free(text); }
};
using Connection = std::unique_ptr<sqlite3, Close>;
using Message = std::unique_ptr<char, Release>;

Connection& connection() {
    static Connection open;
    return open;
}

/// What SQLite says of a statement: its status, and its words for a failure.
struct Outcome {
    int status = SQLITE_OK;
    Message message;

    bool failed() const { return status != SQLITE_OK; }
    /// A misuse, such as a statement with no database open, has no message of its own.
    const char* words() const { return message ? message.get() : sqlite3_errstr(status); }
};

Outcome outcome_of(int status, char* message) { return {status, Message(message)}; }

Outcome run(const char* statement) {
    if (statement == nullptr) return outcome_of(SQLITE_MISUSE, nullptr);
    char* message = nullptr;
    const int status = sqlite3_exec(connection().get(), statement, nullptr, nullptr, &message);
    return outcome_of(status, message);
}

Outcome fetch(const char* statement, Table& table) {
    char* message = nullptr;
    const int status = sqlite3_get_table(connection().get(), statement, &table.cells, &table.rows,
                                         &table.columns, &message);
    return outcome_of(status, message);
}

bool is_number(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// A text in single quotes, with every quote inside it doubled.
bool is_quoted(std::string_view text) {
    if (text.size() < 2 || text.front() != '\'' || text.back() != '\'') return false;
    return !contains(replace_all(text.substr(1, text.size() - 2), "''", ""), "'");
}

} // namespace

int open_database(const char* path) {
    close_database();
    sqlite3* opened = nullptr;
    const int status = path != nullptr ? sqlite3_open(path, &opened) : SQLITE_MISUSE;
    Connection database(opened); // there is one to be closed also when that failed
    if (status != SQLITE_OK) {
        log(Level::error, "%s", "@sql_open error");
        return -1;
    }
    connection() = std::move(database);
    return 0;
}

void close_database() { connection().reset(); }

int create_table(const char* name, const char* columns) {
    const std::string table = name != nullptr ? name : "";
    const Outcome question =
        run(textf("select * from sqlite_master where type='table' and name='%s'",
                  in_single(table).c_str())
                .c_str());
    if (question.failed()) {
        log(Level::error, "@sql_createtable %s", question.words());
        return 0;
    }
    const Outcome creation =
        run(textf("create table %s(%s)", table.c_str(), columns != nullptr ? columns : "").c_str());
    if (!creation.failed()) return 0;
    log(Level::error, "create table error %s", creation.words());
    return -2;
}

int execute(const char* statement) {
    const Outcome outcome = run(statement);
    if (!outcome.failed()) return 0;
    log(Level::error, "@sql_cmd sqlite3_exec error %s", outcome.words());
    return -1;
}

int execute_insert(const char* statement) {
    const Outcome outcome = run(statement);
    if (!outcome.failed()) return 0;
    log(Level::error, "@sql_insert error %s", outcome.words());
    return -1;
}

int execute_update(const char* statement) {
    if (!run(statement).failed()) return 0;
    log(Level::error, "%s", "@sql_modify sqlite3_exec error");
    return -1;
}

int delete_rows(const char* table, const char* id) {
    const std::string statement =
        textf("delete from %s where id='%s'", table != nullptr ? table : "",
              in_single(id != nullptr ? id : "").c_str());
    if (!run(statement.c_str()).failed()) return 0;
    log(Level::error, "%s", "@sql_delete delete data failed");
    return -1;
}

int query(const char* statement, Table& table) {
    table = {};
    Outcome outcome = run(statement);
    if (!outcome.failed()) outcome = fetch(statement, table);
    if (!outcome.failed()) return 0;
    log(Level::error, "sqlite3_exec error :%s\n", outcome.words());
    return -1;
}

std::string in_single(std::string_view value) { return replace_all(value, "'", "''"); }

std::string literal(std::string_view value) {
    if (is_number(value) || is_quoted(value)) return std::string(value);
    return "'" + in_single(value) + "'";
}

} // namespace qvtc::store::sql
