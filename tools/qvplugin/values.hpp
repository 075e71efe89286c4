#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace qvtc::qvplugin {

struct Value {
    std::uint32_t key;
    std::string text;
};

/// The values, in one SQLite file. Every change is one transaction: a reader, a power
/// cut or a full disk meets the old value or the new one. Processes that come at the
/// same time wait for each other. All functions throw a Failure when the file cannot
/// be used.
///
/// The journal is SQLite's ordinary one, not a write-ahead log: each process makes one
/// short transaction and ends, so a log would be folded back into the file every time,
/// and would leave two more files to be guarded, beside a file that may lie on any kind
/// of file system.
class Values {
  public:
    /// The file need not exist; only store() makes it, with mode 0600.
    explicit Values(std::string path) : path_(std::move(path)) {}

    std::optional<std::string> find(std::uint32_t key) const;
    std::vector<Value> all() const;
    void store(std::uint32_t key, const std::string& text);
    /// False when there is nothing under the key.
    bool remove(std::uint32_t key);

  private:
    bool exists() const;

    std::string path_;
};

} // namespace qvtc::qvplugin
