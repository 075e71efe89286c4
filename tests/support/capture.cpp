#include "support/capture.hpp"

#include <array>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

void flush_everything() {
    std::fflush(nullptr);
    std::cout.flush();
}

/// Lets a descriptor lead into a file in memory for as long as it lives.
class Redirection {
  public:
    explicit Redirection(int descriptor)
        : descriptor_(descriptor), file_(memfd_create("captured", MFD_CLOEXEC)),
          original_(fcntl(descriptor, F_DUPFD_CLOEXEC, 3)) {
        flush_everything();
        if (file_ < 0 || original_ < 0 || dup2(file_, descriptor_) < 0) {
            throw std::runtime_error("the output cannot be captured");
        }
    }
    ~Redirection() {
        flush_everything();
        dup2(original_, descriptor_);
        close(original_);
        close(file_);
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

    std::string text() const {
        flush_everything();
        std::string text;
        std::array<char, 65536> block{};
        ssize_t length = 0;
        while ((length = pread(file_, block.data(), block.size(),
                               static_cast<off_t>(text.size()))) > 0) {
            text.append(block.data(), static_cast<std::size_t>(length));
        }
        return text;
    }

  private:
    int descriptor_;
    int file_;
    int original_;
};

std::string capture(int descriptor, const std::function<void()>& action) {
    const Redirection redirection(descriptor);
    action();
    return redirection.text();
}

} // namespace

std::string capture_stdout(const std::function<void()>& action) {
    return capture(STDOUT_FILENO, action);
}

std::string capture_stderr(const std::function<void()>& action) {
    return capture(STDERR_FILENO, action);
}

} // namespace qvtc::test
