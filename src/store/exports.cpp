#include "store/exports.hpp"

#include "core/text.hpp"
#include "store/document.hpp"
#include "store/json_printers.hpp"
#include "store/key_value_table.hpp"
#include "store/numbered_store.hpp"
#include "store/sql.hpp"

using namespace qvtc;
using store::Document;

namespace {

/// Changes the document that is there; a missing or foreign one is a failure.
template <typename Change>
int change_existing(Change&& change) {
    return guard(-1, [&] {
        bool changed = false;
        const bool locked =
            store::change_document([&](Document& document) { return changed = change(document); });
        return locked && changed ? 0 : -1;
    });
}

} // namespace

extern "C" {

int xmlread(const char* item, const char* key, char* output) {
    if (!given(item, key, output)) return -1;
    return guard(-1, [&] {
        const auto value = Document::load().get(item, key);
        if (!value) return -1;
        copy_out_whole(output, *value);
        return 0;
    });
}

int xmlwrite(const char* item, const char* key, char* value) {
    if (!given(item, key, value)) return -1;
    return guard(-1, [&] {
        bool stored = false;
        const std::string text = value;
        copy_out_whole(value, store::stored_form(text));
        const bool locked = store::change_document(
            [&](Document& document) { return stored = document.set(item, key, text); });
        return locked && stored ? 0 : -1;
    });
}

int xml_del_itemNode(const char* item) {
    if (!given(item)) return -1;
    return change_existing([&](Document& document) { return document.remove_item(item); });
}

int xml_del_grandsonNode(const char* item, const char* key) {
    if (!given(item, key)) return -1;
    return change_existing([&](Document& document) { return document.remove_key(item, key); });
}

int qvreaddb(unsigned key, char* output, unsigned size) {
    if (!given(output)) return static_cast<int>(store::ReadOutcome::none_or_too_long);
    return guard(-1, [&] {
        std::string text;
        const auto outcome = store::read_numbered(key, size, text);
        if (outcome == store::ReadOutcome::read) copy_out(output, size, text);
        return static_cast<int>(outcome);
    });
}

int qvwritedb(unsigned key, const char* value) {
    return guard(-1, [&] { return store::write_numbered(key, value); });
}

int sql_open(const char* filename) {
    if (!given(filename)) return -1;
    return guard(-1, [&] { return store::sql::open_database(filename); });
}

int sql_createtable(const char* name, const char* columns) {
    if (!given(name, columns)) return -2;
    return guard(-2, [&] { return store::sql::create_table(name, columns); });
}

int sql_cmd(const char* sql) {
    if (!given(sql)) return -1;
    return guard(-1, [&] { return store::sql::execute(sql); });
}

int sql_insert(const char* sql) {
    if (!given(sql)) return -1;
    return guard(-1, [&] { return store::sql::execute_insert(sql); });
}

int sql_delete(const char* table, const char* id) {
    if (!given(table, id)) return -1;
    return guard(-1, [&] { return store::sql::delete_rows(table, id); });
}

int sql_modify(const char* sql) {
    if (!given(sql)) return -1;
    return guard(-1, [&] { return store::sql::execute_update(sql); });
}

int sql_query(const char* sql, sql_result* result) {
    if (!given(result)) return -1;
    *result = {};
    if (!given(sql)) return -1;
    return guard(-1, [&] {
        store::sql::Table table;
        const int status = store::sql::query(sql, table);
        *result = {table.cells, table.rows, table.columns};
        return status;
    });
}

int sql_close() {
    store::sql::close_database();
    return 0;
}

int db_init() {
    guard_void(store::prepare_table);
    return 0;
}

int create_table() {
    guard_void(store::create_key_value_table);
    return 0;
}

int writedata(const char* key, const char* value) {
    if (!given(key, value)) return 0;
    guard_void([&] { store::write_row(key, value); });
    return 0;
}

int readdata(const char* key, char* output) {
    if (!given(key, output)) return -1;
    return guard(-1, [&] {
        std::string value;
        const auto lookup = store::look_up(key, value);
        if (lookup == store::Lookup::found) copy_out_whole(output, value);
        return lookup == store::Lookup::no_rows ? -1 : 0;
    });
}

int is_exsit_key(const char* key) {
    if (!given(key)) return -1;
    return guard(-1, [&] { return store::find_key(key); });
}

int do_insert(const char* key, const char* value) {
    if (!given(key, value)) return -1;
    return guard(-1, [&] { return store::insert_row(key, value); });
}

int do_modify(const char* key, const char* value) {
    if (!given(key, value)) return -1;
    return guard(-1, [&] { return store::change_rows(key, value); });
}

void print_json_value(json_object* object, const char* name) { store::print_scalar(object, name); }

void json_parse(json_object* object) { store::print_members(object); }

void json_parse_array(json_object* array, const char* key) { store::print_elements(array, key); }
}
