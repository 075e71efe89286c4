#include "qvtcctl/base/server_probe.hpp"

#include "support/support.hpp"

#include <chrono>
#include <thread>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

using namespace std::chrono_literals;

/// A port of 127.0.0.1 that is listened at.
class Listener {
  public:
    explicit Listener(int backlog = 5) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(socket_, any, size), 0);
        EXPECT_EQ(listen(socket_, backlog), 0);
        EXPECT_EQ(getsockname(socket_, any, &size), 0);
        port_ = ntohs(address.sin_port);
    }
    ~Listener() { close(socket_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    unsigned port() const { return port_; }

  private:
    int socket_;
    unsigned port_ = 0;
};

TEST(QvtcctlServerProbe, AnAddressIsNoName) {
    const HostAddresses four = resolve("10.1.2.3", 5s);
    EXPECT_FALSE(four.was_name);
    EXPECT_EQ(four.addresses, std::vector<std::string>{"10.1.2.3"});
    const HostAddresses six = resolve("fd00::5", 5s);
    EXPECT_FALSE(six.was_name);
    EXPECT_EQ(six.addresses, std::vector<std::string>{"fd00::5"});
}

TEST(QvtcctlServerProbe, ANameIsAskedForWhereTheTerminalAsks) {
    test::write_file("/etc/hosts",
                     "127.0.0.1 localhost\n10.4.5.6 office.lan\n10.4.5.7 office.lan\n");
    const HostAddresses found = resolve("office.lan", 5s);
    EXPECT_TRUE(found.was_name);
    EXPECT_EQ(found.addresses, (std::vector<std::string>{"10.4.5.6", "10.4.5.7"}));
    const HostAddresses unknown = resolve("no-such-server.lan", 20s);
    EXPECT_TRUE(unknown.was_name);
    EXPECT_FALSE(unknown.timed_out);
    EXPECT_TRUE(unknown.addresses.empty());
}

// A name server that takes the question and says nothing.
TEST(QvtcctlServerProbe, ASilentNameServerIsNotWaitedFor) {
    test::write_file("/etc/resolv.conf", "nameserver 127.0.0.1\noptions timeout:30\n");
    const int socket_of_nobody = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(53);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(bind(socket_of_nobody, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    const auto start = std::chrono::steady_clock::now();
    const HostAddresses nothing = resolve("office.lan", 300ms);
    EXPECT_TRUE(nothing.timed_out);
    EXPECT_TRUE(nothing.addresses.empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST(QvtcctlServerProbe, APortAnswersOrRefuses) {
    unsigned port = 0;
    {
        const Listener listener;
        port = listener.port();
        EXPECT_EQ(try_port("127.0.0.1", port, 5s), PortAnswer::answered);
    }
    EXPECT_EQ(try_port("127.0.0.1", port, 5s), PortAnswer::refused);
    EXPECT_EQ(try_port("::1", port, 5s), PortAnswer::refused);
}

TEST(QvtcctlServerProbe, ThereMayBeNoWay) {
    EXPECT_EQ(try_port("10.9.9.9", 3389, 5s), PortAnswer::unreachable);
    EXPECT_EQ(try_port("no address", 3389, 5s), PortAnswer::unreachable);
}

// A queue that is full takes no further connection, and says nothing.
TEST(QvtcctlServerProbe, ASilentPortIsNotWaitedFor) {
    const Listener listener(0);
    std::vector<int> waiting;
    for (int i = 0; i < 4; ++i) {
        waiting.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<in_port_t>(listener.port()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        connect(waiting.back(), reinterpret_cast<sockaddr*>(&address), sizeof address);
    }
    EXPECT_TRUE(test::wait_until(
        [&] { return try_port("127.0.0.1", listener.port(), 200ms) == PortAnswer::silent; }));
    for (const int each : waiting) close(each);
}

} // namespace
} // namespace qvtc::qvtcctl
