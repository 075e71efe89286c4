#pragma once

#include <array>
#include <string>
#include <string_view>

#include "core/descriptor.hpp"

namespace qvtc {

/// Where a file's next content is written. The name is hidden, as readers take
/// whatever matches their pattern (ifcfg-*) for theirs, and always the same: what a
/// killed writer has left is met, and removed, by the next one.
std::string draft_name(const std::string& target);

/// The same for a target whose directory is read-only.
std::string remote_draft_name(const std::string& target);

/// Where the complete content is kept while its file is rewritten in place, under
/// either name of the draft.
std::string kept_copy_name(const std::string& draft);
std::array<std::string, 2> kept_copies(const std::string& target);

/// Removes what killed writers have left in a directory.
void remove_leftovers(const std::string& directory);

/// A new, empty file that one writer has to itself until it is renamed; removed at
/// the end of its scope if it was not.
class Draft {
  public:
    explicit Draft(std::string path);
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    ~Draft();

    // Each gives 0 or an errno.
    int error() const { return error_; }
    /// Writes and flushes the content, with all else that `former` has.
    int fill(std::string_view content, const std::string& former, unsigned mode_of_new);
    /// Renames it; `flush` the directory to make that last.
    int move_to(const std::string& path);

  private:
    std::string path_;
    Descriptor file_;
    int error_;
};

/// Writes all of it; false with errno set.
bool write_all(int descriptor, std::string_view content);

} // namespace qvtc
