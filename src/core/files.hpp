#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvtc {

/// What reading a file has come to.
enum class FileState { read, missing, unreadable };

/// Reads a whole file. `missing` only when there is no such file: whoever means
/// to replace a file must know that from one that could not be read, or is larger
/// than 2 GiB.
FileState read_file(const std::string& path, std::string& content);

/// Replaces a file's content: a reader, or a power cut, meets the old content
/// or the new one, never a part. The new file is flushed before it takes the
/// old one's place, and keeps its mode, owner and extended attributes; a file that
/// was missing gets `mode`. A link stays a link: its target is replaced.
/// What cannot be replaced is written in place: devices and pipes, and a file that
/// is itself a mount point or lies in a read-only directory. For a file, the room
/// is reserved first, and a complete copy is kept until all of it has arrived.
/// Gives 0, or the errno for which the old content still stands; after an error in
/// the middle of rewriting, read_replaceable_file gives the new content.
int replace_file(const std::string& path, std::string_view content, unsigned mode = 0600);

/// As read_file, for a file that replace_file writes: prefers the complete copy
/// while the file is, or was when its writer died, being rewritten in place.
FileState read_replaceable_file(const std::string& path, std::string& content);

/// Brings to an end what a writer that died had begun. No other may be at work.
void finish_rewriting(const std::string& path);

/// The path behind a chain of links, also when nothing exists there yet.
std::string resolve_links(std::string path);

/// The folder part of a path ("." without one).
std::string directory_of(const std::string& path);

} // namespace qvtc
