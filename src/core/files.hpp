#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc {

/// What reading a file has come to.
enum class FileState { read, missing, unreadable };

/// Reads a whole file. `missing` only when there is no such file: whoever means
/// to replace a file must know that from one that could not be read.
FileState read_file(const std::string& path, std::string& content);

/// Replaces a file's content: a reader, or a power cut, meets the old content
/// or the new one, never a part. The new file is flushed before it takes the
/// old one's place, and keeps its mode and owner; a file that was missing gets
/// `mode`. A link stays a link: its target is replaced. A file that is itself
/// a mount point cannot be replaced and is rewritten in place.
/// Gives 0, or the errno for which the old content still stands.
int replace_file(const std::string& path, std::string_view content, unsigned mode = 0600);

/// The path behind a chain of links, also when nothing exists there yet.
std::string resolve_links(std::string path);

/// The folder part of a path ("." without one).
std::string directory_of(const std::string& path);

/// A lock on a directory, held for a scope by one thread of one process at a
/// time. It is advisory, leaves no file behind and ends with its holder.
class DirectoryLock {
  public:
    /// Waits for at most `seconds`.
    DirectoryLock(const std::string& directory, int seconds);
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;
    ~DirectoryLock();

    /// False when another holder kept it for all that time, or the directory
    /// cannot be opened. A missing one has nothing in it to be guarded.
    bool acquired() const { return acquired_; }

  private:
    int directory_;
    bool acquired_;
};

} // namespace qvtc
