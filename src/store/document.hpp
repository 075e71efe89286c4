#pragma once

#include <libxml/tree.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_lock.hpp"
#include "core/files.hpp"

/// The settings document: items (elements under the root) that hold keys
/// (their child elements), each with one text value.
namespace qvtc::store {

/// Longest value and name, in bytes, that are stored. Far beyond any setting,
/// far below what would make the parser refuse the document.
inline constexpr std::size_t value_limit = 1024UL * 1024UL;
inline constexpr std::size_t name_limit = 1024;

/// Values are stored with two characters swapped out, as "&" would start an
/// entity: "&" becomes "%", a backslash becomes "|". Reading maps them back.
/// A value's own "%" and "|" are therefore read back changed.
std::string stored_form(std::string value);
std::string value_form(std::string stored);

/// Whether XML takes `name` as an element's name, and it is short enough.
bool is_element_name(const std::string& name);

/// `text` without what XML cannot hold: control characters other than tab and
/// line breaks, and bytes that are no UTF-8.
std::string xml_text(std::string_view text);

/// The document in memory: loaded once, read and changed, saved once. When memory
/// runs out, what changes or saves it throws std::bad_alloc, and so does reading a
/// value that is made of several pieces.
class Document {
  public:
    enum class State {
        loaded,
        absent,     ///< missing, empty or damaged beyond recovery
        rootless,   ///< without a root element: not to be touched
        foreign,    ///< its root is not ours: not to be touched
        unreadable, ///< there, but it cannot be read, or memory ran out: not to be touched
    };

    /// Reads the document of the terminal. libxml2 says on standard error what
    /// is wrong with a missing or damaged one.
    static Document load();

    State state() const { return state_; }

    /// The value of a key in the first item of that name: the first of its name
    /// that is not empty.
    std::optional<std::string> get(const std::string& item, const std::string& key) const;

    /// The values of several keys of an item, as get() would give them one by one;
    /// empty where it gives nothing.
    std::vector<std::string> get_all(const std::string& item,
                                     std::span<const char* const> keys) const;

    /// Stores a value under the first item and first key of those names; new
    /// ones are appended. False for names that XML would refuse and for what is
    /// too long. In an absent document this begins a new one.
    bool set(const std::string& item, const std::string& key, const std::string& value);

    /// Stores several values of an item, as set() would one by one; false, with
    /// nothing stored, when it would refuse one of them.
    bool set_all(const std::string& item, std::span<const char* const> keys,
                 std::span<const std::string> values);

    /// Removes all items of that name, or that key from all of them; false when
    /// there is no document of ours.
    bool remove_item(const std::string& item);
    bool remove_key(const std::string& item, const std::string& key);

    /// Replaces the document on disk; false (and the reason in the log) when it
    /// could not be, and the former one still stands.
    bool save() const;

  private:
    struct Release {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };

    xmlNode* root() const { return xmlDocGetRootElement(document_.get()); }
    void parse(const std::string& content);
    State state_of_tree() const;
    void begin();
    /// The bytes of the document.
    std::string text() const;
    bool is_loaded(const char* foreign_root_text) const;

    State state_ = State::absent;
    std::unique_ptr<xmlDoc, Release> document_;
};

/// Loads the document and lets `change(document)` work on it while no other
/// writer, of this process or another, does; saves it if that returns true.
/// Returns false when the lock was not to be had, with the reason in the log;
/// a failed save is logged and no failure of the change.
template <typename Change>
bool change_document(Change&& change);

namespace detail {
/// The lock that all writers of the document take in turn.
class WriteLock {
  public:
    WriteLock();
    explicit operator bool() const { return lock_.acquired(); }

  private:
    FileLock lock_;
};
} // namespace detail

template <typename Change>
bool change_document(Change&& change) {
    const detail::WriteLock lock;
    if (!lock) return false;
    Document document = Document::load();
    if (change(document)) document.save();
    return true;
}

} // namespace qvtc::store
