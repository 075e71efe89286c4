#include "store/document.hpp"

#include <algorithm>
#include <climits>
#include <cstring>
#include <libxml/chvalid.h>
#include <libxml/parser.h>
#include <libxml/xmlstring.h>

#include "core/log.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc::store {

namespace {

constexpr const char* root_name = "ThinClientConfig";
constexpr const char* encoding = "UTF-8";
constexpr const char* foreign_root = "check root element failed. \n";
constexpr int lock_seconds = 10;
constexpr int parse_options = XML_PARSE_RECOVER | XML_PARSE_NOBLANKS | XML_PARSE_NONET;

struct FreeXml {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, FreeXml>;

const xmlChar* xml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

bool is_named(const xmlNode* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE && name == reinterpret_cast<const char*>(node->name);
}

xmlNode* first_child(const xmlNode* parent, std::string_view name) {
    xmlNode* child = parent->children;
    while (child != nullptr && !is_named(child, name)) child = child->next;
    return child;
}

/// Deliberate: what is wrong with a document goes to the log without a level,
/// so that it writes no line; only the result tells.
bool fail(const char* text) {
    log_message(no_level, text);
    return false;
}

std::string content_of(const xmlNode* node) {
    const xmlNode* const only = node->children;
    if (only == nullptr) return {};
    if (only->next == nullptr && only->type == XML_TEXT_NODE)
        return reinterpret_cast<const char*>(only->content);
    const XmlText content(xmlNodeGetContent(node));
    return content != nullptr ? reinterpret_cast<const char*>(content.get()) : "";
}

void remove_children(xmlNode* parent, const std::string& name) {
    for (xmlNode* child = parent->children; child != nullptr;) {
        xmlNode* const next = child->next;
        if (is_named(child, name)) {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
        }
        child = next;
    }
}

/// Length of the UTF-8 character that `text` begins with; 0 when it is none
/// that XML can hold.
std::size_t xml_character(std::string_view text) {
    // libxml2 would take a byte from the middle of a character for a first one.
    if ((static_cast<unsigned char>(text.front()) & 0xC0U) == 0x80U) return 0;
    int length = static_cast<int>(std::min<std::size_t>(text.size(), 4));
    const int code = xmlGetUTF8Char(reinterpret_cast<const unsigned char*>(text.data()), &length);
    if (code < 0) return 0;
    const auto point = static_cast<unsigned>(code);
    const int shortest = point < 0x80 ? 1 : point < 0x800 ? 2 : point < 0x10000 ? 3 : 4;
    const bool valid = length == shortest && xmlIsCharQ(point);
    return valid ? static_cast<std::size_t>(length) : 0;
}

bool can_be_stored(const std::string& item, const std::string& key, const std::string& value) {
    const bool named = is_element_name(item) && is_element_name(key);
    if (!named)
        log(Level::error, "@xmlwrite not an element name: %.128s / %.128s", item.c_str(),
            key.c_str());
    const bool fits = value.size() <= value_limit;
    if (!fits)
        log(Level::error, "@xmlwrite value of %.128s too long: %zu bytes", key.c_str(),
            value.size());
    return named && fits;
}

bool append_key(xmlNode* parent, const std::string& key, const std::string& stored) {
    const xmlChar* const content = stored.empty() ? nullptr : xml(stored);
    return xmlNewTextChild(parent, nullptr, xml(key), content) != nullptr;
}

bool is_plain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace

std::string stored_form(std::string value) {
    return replace_all(replace_all(std::move(value), '&', '%'), '\\', '|');
}

std::string value_form(std::string stored) {
    return replace_all(replace_all(std::move(stored), '%', '&'), '|', '\\');
}

bool is_element_name(const std::string& name) {
    // libxml2's own check of names takes characters in longer forms than UTF-8's.
    return name.size() <= name_limit && xml_text(name) == name &&
           xmlValidateNCName(xml(name), 0) == 0;
}

std::string xml_text(std::string_view text) {
    if (is_plain(text)) return std::string(text);
    std::string kept;
    while (!text.empty()) {
        const std::size_t length = xml_character(text);
        kept.append(text, 0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return kept;
}

Document Document::load() {
    Document result;
    std::string content;
    const FileState file = read_file(paths::settings_document, content);
    if (file == FileState::unreadable) {
        result.state_ = State::unreadable;
        return result;
    }
    // A missing file goes through libxml2 as well, which reports it.
    result.document_.reset(file == FileState::missing || content.size() > INT_MAX
                               ? xmlReadFile(paths::settings_document, encoding, parse_options)
                               : xmlReadMemory(content.data(), static_cast<int>(content.size()),
                                               paths::settings_document, encoding, parse_options));
    if (result.document_ == nullptr) return result;
    const xmlNode* const root = result.root();
    if (root == nullptr) {
        result.state_ = State::rootless;
    } else {
        result.state_ = is_named(root, root_name) ? State::loaded : State::foreign;
    }
    return result;
}

std::optional<std::string> Document::get(const std::string& item, const std::string& key) const {
    if (!is_loaded(foreign_root)) return std::nullopt;
    const xmlNode* const found = first_child(root(), item);
    if (found == nullptr) return std::nullopt;
    for (const xmlNode* child = found->children; child != nullptr; child = child->next) {
        if (!is_named(child, key)) continue;
        std::string content = content_of(child);
        if (!content.empty()) return value_form(std::move(content));
    }
    return std::nullopt;
}

std::vector<std::string> Document::get_all(const std::string& item,
                                           std::span<const char* const> keys) const {
    std::vector<std::string> values(keys.size());
    const xmlNode* const found = is_loaded(foreign_root) ? first_child(root(), item) : nullptr;
    if (found == nullptr) return values;
    std::size_t expected = 0; // keys mostly stand in the order in which they are asked for
    for (const xmlNode* child = found->children; child != nullptr; child = child->next) {
        for (std::size_t tried = 0; tried < keys.size(); ++tried) {
            const std::size_t at = (expected + tried) % keys.size();
            if (!is_named(child, keys[at])) continue;
            if (values[at].empty()) values[at] = value_form(content_of(child));
            expected = at + 1;
            break;
        }
    }
    return values;
}

bool Document::is_loaded(const char* foreign_root_text) const {
    switch (state_) {
    case State::loaded:
        return true;
    case State::rootless:
        return fail("get root node failed. \n");
    case State::foreign:
        return fail(foreign_root_text);
    case State::absent:
    case State::unreadable:
        break;
    }
    return fail("open xml file failed. \n");
}

bool Document::begin() {
    document_.reset(xmlNewDoc(xml("1.0")));
    if (document_ == nullptr) return fail("create xml doc failed. \n");
    xmlDocSetRootElement(document_.get(), xmlNewNode(nullptr, xml(root_name)));
    if (root() == nullptr) return fail("create root_node failed. \n");
    state_ = State::loaded;
    return true;
}

bool Document::set(const std::string& item, const std::string& key, const std::string& value) {
    const char* const name = key.c_str();
    return set_all(item, {&name, 1}, {&value, 1});
}

bool Document::set_all(const std::string& item, std::span<const char* const> keys,
                       std::span<const std::string> values) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!can_be_stored(item, keys[i], values[i])) return false;
    }
    const bool fresh = state_ == State::absent;
    if (fresh && !begin()) return false;
    if (!is_loaded("check root_node element failed. \n")) return false;
    xmlNode* parent = first_child(root(), item);
    if (parent == nullptr) parent = xmlNewChild(root(), nullptr, xml(item), nullptr);
    if (parent == nullptr) return fail("create son_node failed. \n");
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::string stored = xml_text(stored_form(values[i]));
        xmlNode* const child = first_child(parent, keys[i]);
        if (child != nullptr) {
            xmlNodeSetContent(child, xml(stored));
        } else if (!append_key(parent, keys[i], stored)) {
            return fail(fresh ? "create grandson_node failed. \n"
                              : "Created grandson_node failed. \n");
        }
    }
    return true;
}

bool Document::remove_item(const std::string& item) {
    if (!is_loaded(foreign_root)) return false;
    remove_children(root(), item);
    return true;
}

bool Document::remove_key(const std::string& item, const std::string& key) {
    if (!is_loaded(foreign_root)) return false;
    for (xmlNode* child = root()->children; child != nullptr; child = child->next) {
        if (is_named(child, item)) remove_children(child, key);
    }
    return true;
}

bool Document::save() const {
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document_.get(), &bytes, &size, encoding, 1);
    const XmlText text(bytes);
    const int error =
        text == nullptr
            ? ENOMEM
            : replace_file(paths::settings_document,
                           {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)});
    if (error != 0)
        log(Level::error, "@xmlwrite %s not saved: %s", paths::settings_document,
            std::strerror(error));
    return error == 0;
}

namespace detail {

WriteLock::WriteLock()
    : lock_(directory_of(resolve_links(paths::settings_document)), lock_seconds) {
    if (!lock_.acquired()) {
        log(Level::error, "@xmlwrite %s not locked: another writer holds it, or none can",
            paths::settings_document);
    }
}

} // namespace detail

} // namespace qvtc::store
