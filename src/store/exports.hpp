#pragma once

#include <json-c/json.h>

#include "core/edge.hpp"

/// The exported names of this folder. All give 0 or -1 unless they say more.
extern "C" {

// --- The settings document ---------------------------------------------------------------

/// Copies a value whole, with its NUL: the buffer must be large enough. -1, and
/// the buffer untouched, when the key is absent or empty.
QVTC_EXPORT int xmlread(const char* item, const char* key, char* output);
/// Changes `value` to its stored form. 0 also when the save failed: the former
/// document then still stands, and the log has the reason.
QVTC_EXPORT int xmlwrite(const char* item, const char* key, char* value);
QVTC_EXPORT int xml_del_itemNode(const char* item);
QVTC_EXPORT int xml_del_grandsonNode(const char* item, const char* key);

// --- The numbered store ------------------------------------------------------------------

/// -1 for output that is no base64; -2, and the buffer untouched, when nothing is
/// stored or the text is not shorter than `size`.
QVTC_EXPORT int qvreaddb(unsigned key, char* output, unsigned size);
/// 0 once qvplugin was run, -1 for a text that no command line can hold, -2 for null.
QVTC_EXPORT int qvwritedb(unsigned key, const char* value);

// --- SQL ---------------------------------------------------------------------------------
// One connection for the whole process, which nothing guards: for one thread at a time.
// Every failure is in the log. Statements are SQL text, whole and as they stand.

/// What a query gives: the names of the columns, then row after row. The caller
/// releases `cells` with sqlite3_free_table(); after a failure there are none.
struct sql_result {
    char** cells;
    int rows; ///< without the names
    int columns;
};

QVTC_EXPORT int sql_open(const char* filename);
/// -2 when the table cannot be created, for instance because it is there already.
QVTC_EXPORT int sql_createtable(const char* name, const char* columns);
QVTC_EXPORT int sql_cmd(const char* sql);
QVTC_EXPORT int sql_insert(const char* sql);
QVTC_EXPORT int sql_delete(const char* table, const char* id);
QVTC_EXPORT int sql_modify(const char* sql);
/// Runs the statement twice: the second time for its result.
QVTC_EXPORT int sql_query(const char* sql, sql_result* result);
QVTC_EXPORT int sql_close();

// --- The table of keys and values --------------------------------------------------------
// In data/vpclientconfigure.db below the working directory.

QVTC_EXPORT int db_init();
QVTC_EXPORT int create_table();
/// Adds a row. Always 0.
QVTC_EXPORT int writedata(const char* key, const char* value);
/// -1 when there are no rows. 0 also when the key is not found: `output` then stays
/// as it was, otherwise it must have room for the whole text.
QVTC_EXPORT int readdata(const char* key, char* output);
// These three need the database open.
QVTC_EXPORT int is_exsit_key(const char* key);
QVTC_EXPORT int do_insert(const char* key, const char* value);
QVTC_EXPORT int do_modify(const char* key, const char* value);

// --- Printers of JSON --------------------------------------------------------------------

QVTC_EXPORT void print_json_value(json_object* object, const char* name);
QVTC_EXPORT void json_parse(json_object* object);
QVTC_EXPORT void json_parse_array(json_object* array, const char* key);
}
