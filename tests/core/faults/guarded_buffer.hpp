#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace qvtc::test {

/// A caller's buffer with bytes before and behind it that nothing may touch.
class GuardedBuffer {
  public:
    explicit GuardedBuffer(std::size_t size) : bytes_(size + 2 * guard_size, mark), size_(size) {}

    char* data() { return bytes_.data() + guard_size; }
    std::size_t size() const { return size_; }
    /// All of the buffer's bytes; those that nothing has written are "#".
    std::string bytes() const { return {bytes_.begin() + guard_size, bytes_.end() - guard_size}; }
    bool guards_are_whole() const {
        const auto whole = [](char c) { return c == mark; };
        return std::all_of(bytes_.begin(), bytes_.begin() + guard_size, whole) &&
               std::all_of(bytes_.end() - guard_size, bytes_.end(), whole);
    }

  private:
    static constexpr char mark = '#';
    static constexpr std::ptrdiff_t guard_size = 4096;
    std::vector<char> bytes_;
    std::size_t size_;
};

} // namespace qvtc::test
