#include "store/document.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <libxml/chvalid.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlstring.h>
#include <new>
#include <utility>

#include "core/log.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"
#include "store/xml_watch.hpp"

namespace qvtc::store {

namespace {

constexpr const char* root_name = "ThinClientConfig";
constexpr const char* encoding = "UTF-8";
constexpr const char* foreign_root = "check root element failed. \n";
constexpr int parse_options = XML_PARSE_RECOVER | XML_PARSE_NOBLANKS | XML_PARSE_NONET;

struct FreeXml {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, FreeXml>;

struct FreeContext {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

/// Does what a parser begins with; false for want of memory. libxml2 would go on
/// without the buffer for what it converts, and end the process.
bool prepare(xmlParserCtxt* context) {
    if (context == nullptr) return false;
    xmlCtxtUseOptions(context, parse_options);
    context->encoding = xmlStrdup(reinterpret_cast<const xmlChar*>(encoding));
    xmlSwitchToEncoding(context, xmlFindCharEncodingHandler(encoding));
    if (context->input == nullptr || context->input->base == nullptr) return false;
    xmlParserInputGrow(context->input, INPUT_CHUNK);
    return context->input->base != nullptr;
}

const xmlChar* xml(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

bool is_named(const xmlNode* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE && node->name != nullptr &&
           name == reinterpret_cast<const char*>(node->name);
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

/// For want of memory; what was changed so far must not be saved.
[[noreturn]] void give_up(const char* text) {
    fail(text);
    throw std::bad_alloc();
}

std::string content_of(const xmlNode* node) {
    const xmlNode* const only = node->children;
    if (only == nullptr) return {};
    if (only->next == nullptr && only->type == XML_TEXT_NODE && only->content != nullptr)
        return reinterpret_cast<const char*>(only->content);
    const XmlWatch watch;
    const XmlText content(xmlNodeGetContent(node));
    if (content == nullptr || watch.ran_out_of_memory()) throw std::bad_alloc();
    return reinterpret_cast<const char*>(content.get());
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

xmlNode* append_key(xmlNode* parent, const std::string& key, const std::string& stored) {
    const xmlChar* const content = stored.empty() ? nullptr : xml(stored);
    return xmlNewTextChild(parent, nullptr, xml(key), content);
}

/// Whether the element has come out as it was asked for.
bool is_whole(const xmlNode* node, const std::string& key, const std::string& stored) {
    return node != nullptr && is_named(node, key) && content_of(node) == stored;
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
    const FileState file = read_replaceable_file(paths::settings_document, content);
    if (file == FileState::unreadable) {
        result.state_ = State::unreadable;
    } else if (content.empty()) {
        // Only read_file knows whether it is missing; libxml2 reports it.
        xmlFreeDoc(xmlReadFile(paths::settings_document, encoding, parse_options));
    } else {
        result.parse(content);
    }
    return result;
}

void Document::parse(const std::string& content) {
    const auto size = static_cast<int>(content.size());
    bool faulty = false;
    {
        const XmlWatch watch;
        const std::unique_ptr<xmlParserCtxt, FreeContext> context(
            xmlCreateMemoryParserCtxt(content.data(), size));
        const bool ready = prepare(context.get()) && !watch.ran_out_of_memory();
        if (ready) {
            xmlParseDocument(context.get());
            document_.reset(std::exchange(context->myDoc, nullptr));
        }
        state_ = ready && !watch.ran_out_of_memory() ? state_of_tree() : State::unreadable;
        faulty = watch.found_faults();
    }
    // Once more for what libxml2 has to say of it.
    if (faulty && state_ != State::unreadable)
        xmlFreeDoc(
            xmlReadMemory(content.data(), size, paths::settings_document, encoding, parse_options));
}

Document::State Document::state_of_tree() const {
    if (document_ == nullptr) return State::absent;
    if (root() == nullptr) return State::rootless;
    return is_named(root(), root_name) ? State::loaded : State::foreign;
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

void Document::begin() {
    document_.reset(xmlNewDoc(xml("1.0")));
    if (document_ == nullptr) give_up("create xml doc failed. \n");
    xmlDocSetRootElement(document_.get(), xmlNewNode(nullptr, xml(root_name)));
    if (root() == nullptr) give_up("create root_node failed. \n");
    state_ = State::loaded;
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
    const XmlWatch watch;
    const bool fresh = state_ == State::absent;
    if (fresh) begin();
    if (!is_loaded("check root_node element failed. \n")) return false;
    xmlNode* parent = first_child(root(), item);
    if (parent == nullptr) parent = xmlNewChild(root(), nullptr, xml(item), nullptr);
    if (parent == nullptr || !is_named(parent, item)) give_up("create son_node failed. \n");
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::string stored = xml_text(stored_form(values[i]));
        xmlNode* child = first_child(parent, keys[i]);
        if (child != nullptr) {
            xmlNodeSetContent(child, xml(stored));
        } else {
            child = append_key(parent, keys[i], stored);
        }
        if (!is_whole(child, keys[i], stored) || watch.ran_out_of_memory())
            give_up(fresh ? "create grandson_node failed. \n" : "Created grandson_node failed. \n");
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

std::string Document::text() const {
    const XmlWatch watch;
    xmlChar* bytes = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document_.get(), &bytes, &size, encoding, 1);
    const XmlText text(bytes);
    if (text == nullptr || watch.ran_out_of_memory()) throw std::bad_alloc();
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

bool Document::save() const {
    const char* reason = "there is none";
    // Of what could not be read, the tree may be a part.
    if (state_ == State::unreadable) {
        reason = "it could not be read";
    } else if (document_ != nullptr) {
        const int error = replace_file(paths::settings_document, text());
        if (error == 0) return true;
        reason = std::strerror(error);
    }
    log(Level::error, "@xmlwrite %s not saved: %s", paths::settings_document, reason);
    return false;
}

namespace detail {

WriteLock::WriteLock() : lock_(paths::settings_lock) {
    if (lock_.acquired()) {
        finish_rewriting(paths::settings_document);
    } else {
        log(Level::error, "@xmlwrite %s not locked: %s", paths::settings_document,
            lock_.error() == ETIMEDOUT ? "another writer holds it" : std::strerror(lock_.error()));
    }
}

} // namespace detail

} // namespace qvtc::store
