#include "qvtcctl/server_probe.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <future>
#include <memory>
#include <thread>

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

struct ReleaseAddresses {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, ReleaseAddresses>;

Addresses look_up(const std::string& host, int flags) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = flags;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &wanted, &list) != 0) return nullptr;
    return Addresses(list);
}

std::string number_of(const addrinfo& address) {
    std::array<char, NI_MAXHOST> text{};
    getnameinfo(address.ai_addr, address.ai_addrlen, text.data(), text.size(), nullptr, 0,
                NI_NUMERICHOST);
    return text.data();
}

std::vector<std::string> numbers_of(const Addresses& list) {
    std::vector<std::string> numbers;
    for (const addrinfo* each = list.get(); each != nullptr; each = each->ai_next) {
        const std::string number = number_of(*each);
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

/// A socket, as long as it lives.
class Socket {
  public:
    explicit Socket(int family)
        : number_(socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
    ~Socket() {
        if (number_ >= 0) close(number_);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    int number() const { return number_; }

  private:
    int number_;
};

void set_port(addrinfo& address, unsigned port) {
    const in_port_t number = htons(static_cast<in_port_t>(port));
    if (address.ai_family == AF_INET6) {
        reinterpret_cast<sockaddr_in6*>(address.ai_addr)->sin6_port = number;
    } else {
        reinterpret_cast<sockaddr_in*>(address.ai_addr)->sin_port = number;
    }
}

PortAnswer answer_of(int error) {
    if (error == 0) return PortAnswer::answered;
    if (error == ECONNREFUSED || error == ECONNRESET) return PortAnswer::refused;
    return error == ETIMEDOUT ? PortAnswer::silent : PortAnswer::unreachable;
}

PortAnswer wait_for_answer(int socket, std::chrono::milliseconds longest) {
    const auto end = std::chrono::steady_clock::now() + longest;
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        pollfd waiting{socket, POLLOUT, 0};
        const int ready = left.count() > 0 ? poll(&waiting, 1, static_cast<int>(left.count())) : 0;
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return PortAnswer::silent;
        int error = 0;
        socklen_t size = sizeof error;
        getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size);
        return answer_of(error);
    }
}

} // namespace

Resolution resolve(const std::string& host, std::chrono::milliseconds longest) {
    Resolution found;
    found.addresses = numbers_of(look_up(host, AI_NUMERICHOST));
    if (!found.addresses.empty()) return found;
    found.was_name = true;
    // On a thread of its own, which is left to itself when no name server answers.
    auto promise = std::make_shared<std::promise<std::vector<std::string>>>();
    std::future<std::vector<std::string>> answer = promise->get_future();
    std::thread([promise, host] { promise->set_value(numbers_of(look_up(host, 0))); }).detach();
    if (answer.wait_for(longest) == std::future_status::ready) {
        found.addresses = answer.get();
    } else {
        found.timed_out = true;
    }
    return found;
}

PortAnswer try_port(const std::string& address, unsigned port, std::chrono::milliseconds longest) {
    const Addresses list = look_up(address, AI_NUMERICHOST);
    if (!list) return PortAnswer::unreachable;
    set_port(*list, port);
    const Socket server(list->ai_family);
    if (server.number() < 0) return PortAnswer::unreachable;
    if (connect(server.number(), list->ai_addr, list->ai_addrlen) == 0) return PortAnswer::answered;
    return errno == EINPROGRESS ? wait_for_answer(server.number(), longest) : answer_of(errno);
}

} // namespace qvtc::qvtcctl
