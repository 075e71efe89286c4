#include "qvplugin/values.hpp"

#include "qvplugin/failure.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvplugin {

namespace {

/// How long a process waits for others that use the file.
constexpr int busy_milliseconds = 10000;

class Database;

/// One statement with its values; runs row by row.
class Statement {
  public:
    Statement(const Database& database, const char* sql);
    Statement& bind(std::uint32_t key);
    Statement& bind(const std::string& text);
    /// False when there is no further row.
    bool step();
    std::uint32_t key(int column) const {
        return static_cast<std::uint32_t>(sqlite3_column_int64(statement_.get(), column));
    }
    std::string text(int column) const;

  private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    const Database& database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int bound_ = 0;
};

class Database {
  public:
    Database(const std::string& path, int flags) : path_(path) {
        sqlite3* opened = nullptr;
        const int status = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
        handle_.reset(opened);
        if (status != SQLITE_OK) fail();
        sqlite3_busy_timeout(opened, busy_milliseconds);
        // The end of a transaction is on the disk before the program says so.
        run("pragma synchronous=extra");
    }

    sqlite3* handle() const { return handle_.get(); }
    void run(const char* sql) const {
        Statement statement(*this, sql);
        while (statement.step()) {
        }
    }
    [[noreturn]] void fail() const {
        throw Failure(ExitCode::store_failed,
                      path_ + ": " + sqlite3_errmsg(handle_.get()) + reason_of_system());
    }

    /// There is no table in a file whose first writer was killed.
    bool has_table() const {
        return Statement(*this, "select 1 from sqlite_master where name='numbered_values'").step();
    }

  private:
    std::string reason_of_system() const {
        const int error = sqlite3_system_errno(handle_.get());
        return error != 0 ? std::string(" (") + std::strerror(error) + ')' : "";
    }

    struct Close {
        void operator()(sqlite3* handle) const { sqlite3_close(handle); }
    };
    std::string path_;
    std::unique_ptr<sqlite3, Close> handle_;
};

Statement::Statement(const Database& database, const char* sql) : database_(database) {
    sqlite3_stmt* prepared = nullptr;
    const int status = sqlite3_prepare_v2(database.handle(), sql, -1, &prepared, nullptr);
    statement_.reset(prepared);
    if (status != SQLITE_OK) database.fail();
}

Statement& Statement::bind(std::uint32_t key) {
    if (sqlite3_bind_int64(statement_.get(), ++bound_, key) != SQLITE_OK) database_.fail();
    return *this;
}

Statement& Statement::bind(const std::string& text) {
    if (sqlite3_bind_text64(statement_.get(), ++bound_, text.data(), text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8) != SQLITE_OK) {
        database_.fail();
    }
    return *this;
}

bool Statement::step() {
    const int status = sqlite3_step(statement_.get());
    if (status != SQLITE_ROW && status != SQLITE_DONE) database_.fail();
    return status == SQLITE_ROW;
}

std::string Statement::text(int column) const {
    const auto* const bytes =
        static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return bytes != nullptr ? std::string(bytes, static_cast<std::size_t>(size)) : "";
}

void make_directory_of(const std::string& path) {
    const std::filesystem::path directory = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!directory.empty()) std::filesystem::create_directories(directory, error);
    if (error) throw Failure(ExitCode::store_failed, directory.string() + ": " + error.message());
}

} // namespace

bool Values::exists() const { return access(path_.c_str(), F_OK) == 0 || errno != ENOENT; }

std::optional<std::string> Values::find(std::uint32_t key) const {
    if (!exists()) return std::nullopt;
    const Database database(path_, SQLITE_OPEN_READWRITE);
    if (!database.has_table()) return std::nullopt;
    Statement search(database, "select text from numbered_values where key=?");
    if (!search.bind(key).step()) return std::nullopt;
    return search.text(0);
}

std::vector<Value> Values::all() const {
    if (!exists()) return {};
    const Database database(path_, SQLITE_OPEN_READWRITE);
    if (!database.has_table()) return {};
    std::vector<Value> values;
    Statement search(database, "select key, text from numbered_values order by key");
    while (search.step()) values.push_back({search.key(0), search.text(1)});
    return values;
}

void Values::store(std::uint32_t key, const std::string& text) {
    umask(077); // for the directory, the file and its journal
    make_directory_of(path_);
    const Database database(path_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.run("begin immediate");
    database.run("create table if not exists numbered_values"
                 "(key integer primary key, text text not null)");
    Statement(database, "insert or replace into numbered_values(key, text) values(?, ?)")
        .bind(key)
        .bind(text)
        .step();
    database.run("commit");
}

bool Values::remove(std::uint32_t key) {
    if (!exists()) return false;
    const Database database(path_, SQLITE_OPEN_READWRITE);
    if (!database.has_table()) return false;
    Statement(database, "delete from numbered_values where key=?").bind(key).step();
    return sqlite3_changes(database.handle()) > 0;
}

} // namespace qvtc::qvplugin
