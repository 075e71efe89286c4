#include "store/exports.hpp"

#include "core/text.hpp"
#include "store/document.hpp"

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
    if (item == nullptr || key == nullptr || output == nullptr) return -1;
    return guard(-1, [&] {
        const auto value = Document::load().get(item, key);
        if (!value) return -1;
        copy_out_whole(output, *value);
        return 0;
    });
}

int xmlwrite(const char* item, const char* key, char* value) {
    if (item == nullptr || key == nullptr || value == nullptr) return -1;
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
    return change_existing([&](Document& document) { return document.remove_item(item); });
}

int xml_del_grandsonNode(const char* item, const char* key) {
    return change_existing([&](Document& document) { return document.remove_key(item, key); });
}
}
