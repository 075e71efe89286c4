#pragma once

#include <optional>
#include <string>

/// The table of keys and values in the database "data/vpclientconfigure.db" below the
/// caller's working directory. It has no unique key: each write adds a row.
namespace qvtc::store {

/// Makes the directory and the table when they are missing; what goes wrong is in
/// the log. The first table operation of a program.
void prepare_table();
/// The same without the directory.
void create_key_value_table();

/// Adds a row; what goes wrong is in the log.
void write_row(const char* key, const char* value);

enum class Lookup { found, not_found, no_rows };

/// Deliberate: looks by position. Of the cells of the whole table in one line, the
/// names of the columns first, only as many are looked at as there are rows; found
/// is the cell that lies one row behind the first that is the key.
Lookup look_up(const char* key, std::string& value);

// --- With the database open --------------------------------------------------------------
// Each prints its statement and gives 0, or -1 when that failed.

/// Deliberate: always -1. It asks for a column "name", which the table does not have.
int find_key(const char* key);
int insert_row(const char* key, const char* value);
int change_rows(const char* key, const char* value);

} // namespace qvtc::store
