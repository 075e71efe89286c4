#include "qvtcctl/base/server_socket.hpp"

#include <cerrno>
#include <memory>

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

struct ReleaseAddress {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

std::unique_ptr<addrinfo, ReleaseAddress> place_of(const std::string& address, unsigned port) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &list) != 0) return {};
    return std::unique_ptr<addrinfo, ReleaseAddress>(list);
}

PortAnswer answer_of(int error) {
    if (error == 0) return PortAnswer::answered;
    if (error == ECONNREFUSED || error == ECONNRESET) return PortAnswer::refused;
    return error == ETIMEDOUT ? PortAnswer::silent : PortAnswer::unreachable;
}

int pending_error(int descriptor) {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

} // namespace

ServerSocket::ServerSocket(const std::string& address, unsigned port,
                           std::chrono::milliseconds longest)
    : end_(Clock::now() + longest), answer_(connect_to(address, port)) {}

ServerSocket::~ServerSocket() {
    if (descriptor_ >= 0) close(descriptor_);
}

PortAnswer ServerSocket::connect_to(const std::string& address, unsigned port) {
    const auto place = place_of(address, port);
    if (!place) return PortAnswer::unreachable;
    descriptor_ = socket(place->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor_ < 0) return PortAnswer::unreachable;
    if (connect(descriptor_, place->ai_addr, place->ai_addrlen) == 0) return PortAnswer::answered;
    if (errno != EINPROGRESS) return answer_of(errno);
    return wait_for(POLLOUT) ? answer_of(pending_error(descriptor_)) : PortAnswer::silent;
}

bool ServerSocket::wait_for(short events) {
    while (true) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
        pollfd waiting{descriptor_, events, 0};
        const int ready = left.count() > 0 ? poll(&waiting, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) continue;
        timed_out_ = ready == 0;
        return ready > 0;
    }
}

bool ServerSocket::send(std::string_view bytes) {
    while (!bytes.empty()) {
        if (answer_ != PortAnswer::answered || !wait_for(POLLOUT)) return false;
        const ssize_t sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR && errno != EAGAIN) return false;
        if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string ServerSocket::receive(std::size_t most) {
    std::string bytes(most, '\0');
    while (answer_ == PortAnswer::answered && wait_for(POLLIN)) {
        const ssize_t count = recv(descriptor_, bytes.data(), bytes.size(), 0);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return bytes;
    }
    return "";
}

std::string ServerSocket::receive_exactly(std::size_t count) {
    std::string bytes;
    while (bytes.size() < count) {
        const std::string more = receive(count - bytes.size());
        if (more.empty()) break;
        bytes += more;
    }
    return bytes;
}

} // namespace qvtc::qvtcctl
