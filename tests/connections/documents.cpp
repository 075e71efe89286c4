#include "connections/documents.hpp"

#include "connections/fields.hpp"
#include "store/document.hpp"
#include "support/commands.hpp"
#include "support/files.hpp"

#include <algorithm>
#include <filesystem>

namespace qvtc::test {

namespace {

std::string escaped(const std::string& value) {
    std::string text;
    for (const char c : value) {
        switch (c) {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        default:
            text += c;
        }
    }
    return text;
}

std::string element(const std::string& name, const std::string& value) {
    return value.empty() ? "<" + name + "/>"
                         : "<" + name + ">" + escaped(value) + "</" + name + ">";
}

} // namespace

FreshTerminal::FreshTerminal() {
    for (const char* const directory :
         {"/home/root", "/etc/X11", "/usr/local/vpclient/config", "/tmp"}) {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            if (!entry.is_directory()) std::filesystem::remove(entry.path());
        }
    }
    forget_commands();
}

std::string document_text(const Items& items) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (items.empty()) return text + "<ThinClientConfig/>\n";
    text += "<ThinClientConfig>\n";
    for (const Item& item : items) {
        text += "  <" + item.name + ">\n";
        for (const auto& [key, value] : item.values) text += "    " + element(key, value) + "\n";
        text += "  </" + item.name + ">\n";
    }
    return text + "</ThinClientConfig>\n";
}

void store_items(const Items& items) { write_file(document_path, document_text(items)); }

Values record_values(const Values& given) {
    Values values;
    for (const char* const field : connections::field_names) {
        const auto found = std::find_if(given.begin(), given.end(),
                                        [&](const auto& pair) { return pair.first == field; });
        values.emplace_back(field, found == given.end() ? "" : found->second);
    }
    return values;
}

Item record_item(const std::string& name, const Values& given) {
    return {name, record_values(given)};
}

std::string listed_record(const Values& given) {
    std::string text = "{";
    for (const auto& [name, value] : record_values(given)) {
        if (text.size() > 1) text += ",";
        text += "\"" + name + "\":\"" + value + "\"";
    }
    return text + "}";
}

Items full_block(unsigned type, const std::string& prefix) {
    Items items;
    for (unsigned id = type * 32; id < type * 32 + 32; ++id) {
        items.push_back(
            record_item(prefix + "_id_" + std::to_string(id), {{"id", std::to_string(id)}}));
    }
    return items;
}

std::string stored_document() {
    return file_exists(document_path) ? read_file(document_path) : std::string();
}

std::string stored_value(const std::string& item, const std::string& key) {
    return store::Document::load().get(item, key).value_or("");
}

std::string stored_setting(const std::string& key) { return stored_value("configItem", key); }

} // namespace qvtc::test
