#pragma once

#include <cstdint>
#include <string>

namespace qvtc::qvtcctl {

/// A file opened for reading that may turn out to be anything: a FIFO is never waited for, and only
/// a regular file is read.
class InputFile {
  public:
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(InputFile&& other) noexcept;
    InputFile& operator=(InputFile&& other) noexcept;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool is_open() const { return descriptor_ >= 0; }

    /// Nothing has that name.
    bool is_missing() const { return missing_; }

    /// Why it is not open, to follow "cannot be read: "; empty when it is.
    const std::string& fault() const { return fault_; }

    int descriptor() const { return descriptor_; }

    /// Bytes that the file has now; 0 when it is not open.
    std::uintmax_t size() const;

    /// At most "limit" bytes, from that place on; empty when it is not open.
    std::string read_from(std::uintmax_t start, std::uintmax_t limit) const;

  private:
    int descriptor_ = -1;
    bool missing_ = false;
    std::string fault_;
};

/// Reads a descriptor to its end, but stops when it holds more than "limit" bytes: then the result
/// is longer than the limit. Leaves errno at 0, or at the error that ended it.
std::string read_up_to(int descriptor, std::size_t limit);

} // namespace qvtc::qvtcctl
