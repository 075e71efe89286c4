#include "qvtcctl/base/server_probe.hpp"

#include <algorithm>
#include <array>
#include <future>
#include <memory>
#include <thread>

#include <netdb.h>
#include <sys/socket.h>

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

} // namespace

HostAddresses resolve(const std::string& host, std::chrono::milliseconds longest) {
    HostAddresses found;
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
    return ServerSocket(address, port, longest).answer();
}

} // namespace qvtc::qvtcctl
