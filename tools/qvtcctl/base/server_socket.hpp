#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// In the order of how much it tells: of a host with several addresses, the first of these counts.
enum class PortAnswer {
    answered,
    refused,
    silent,     ///< nothing came back in time
    unreachable ///< there is no route to the address
};

/// A TCP connection with one deadline for all that is done with it.
class ServerSocket {
  public:
    /// Connects to an address, which is not a name.
    ServerSocket(const std::string& address, unsigned port, std::chrono::milliseconds longest);
    ~ServerSocket();
    ServerSocket(const ServerSocket&) = delete;
    ServerSocket& operator=(const ServerSocket&) = delete;

    PortAnswer answer() const { return answer_; }

    /// False when the server has hung up or takes no more before the deadline.
    bool send(std::string_view bytes);

    /// What has arrived, at most so many bytes; waits for the first one. Empty when the server has
    /// hung up or the deadline has passed.
    std::string receive(std::size_t most);

    /// Exactly so many bytes, or fewer for the same reasons.
    std::string receive_exactly(std::size_t count);

    /// Whether the deadline has passed before the server did what was waited for.
    bool timed_out() const { return timed_out_; }

  private:
    using Clock = std::chrono::steady_clock;

    PortAnswer connect_to(const std::string& address, unsigned port);
    bool wait_for(short events);

    Clock::time_point end_;
    bool timed_out_ = false;
    int descriptor_ = -1;
    PortAnswer answer_;
};

} // namespace qvtc::qvtcctl
