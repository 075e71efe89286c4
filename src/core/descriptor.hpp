#pragma once

#include <unistd.h>
#include <utility>

namespace qvtc {

/// A file descriptor, closed at the end of its scope.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    bool is_open() const { return number_ >= 0; }
    int get() const { return number_; }
    /// Gives it away: it is no longer closed here.
    int release() { return std::exchange(number_, -1); }
    /// False, with errno set, when what was written may not have arrived.
    bool close() {
        const int number = release();
        return number < 0 || ::close(number) == 0;
    }

  private:
    int number_;
};

} // namespace qvtc
