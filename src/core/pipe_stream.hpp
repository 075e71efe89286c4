#pragma once

#include <cstdio>
#include <utility>

namespace qvtc {

/// A command opened for reading with popen, and waited for when it closes.
/// Close-on-exec: a client that another thread starts meanwhile must not keep
/// the pipe open.
class PipeStream {
  public:
    explicit PipeStream(const char* command) : stream_(popen(command, "re")) {}
    PipeStream(const PipeStream&) = delete;
    PipeStream& operator=(const PipeStream&) = delete;
    ~PipeStream() { close(); }

    bool is_open() const { return stream_ != nullptr; }
    std::FILE* get() const { return stream_; }
    void close() {
        if (std::FILE* const stream = std::exchange(stream_, nullptr)) pclose(stream);
    }

  private:
    std::FILE* stream_;
};

} // namespace qvtc
