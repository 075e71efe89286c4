#include "network/name_servers.hpp"

#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <utility>

namespace qvtc::network {

namespace {

using Pair = std::pair<std::string, std::string>;

Pair named(const std::string& text) {
    const NameServers servers = name_servers_in(text);
    return {servers.first, servers.second};
}

constexpr const char* resolv_conf = "/etc/resolv.conf";

} // namespace

TEST(NameServers, AreTheFirstTwoThatAreNamed) {
    const std::pair<std::string, Pair> cases[] = {
        {"", {"", ""}},
        {"search lan\n", {"", ""}},
        {"nameserver 10.0.0.1\n", {"10.0.0.1", ""}},
        {"nameserver 10.0.0.1", {"10.0.0.1", ""}},
        {"nameserver 10.0.0.1\nnameserver 10.0.0.2\n", {"10.0.0.1", "10.0.0.2"}},
        {"nameserver 10.0.0.1\nnameserver 10.0.0.2\nnameserver 10.0.0.3\n",
         {"10.0.0.1", "10.0.0.2"}},
        {"# Created by NetworkManager\nsearch lan\nnameserver 10.0.0.1\n", {"10.0.0.1", ""}},
        {"nameserver 10.0.0.1 # the first\nnameserver 10.0.0.2 \n", {"10.0.0.1", "10.0.0.2"}},
        {"nameserver 10.0.0.1\n# a long comment between the two of them\nnameserver 10.0.0.2\n",
         {"10.0.0.1", "10.0.0.2"}},
        {"nameserver\t10.0.0.1\n", {"10.0.0.1", ""}},
        {"nameserver 10.0.0.1\t# tab\n", {"10.0.0.1\t#", ""}},
        {"nameserver fe80::1%eth0\n", {"fe80::1%eth0", ""}},
        {"nameserver", {"", ""}},
        {"nameserver ", {"", ""}},
        {"nameserver\n10.0.0.1\n", {"10.0.0.1", ""}},
        {"nameserver  10.0.0.1\n", {"", ""}}, // one separator, and no more
        {std::string("nameserver 10.0.0.1\0nameserver 10.0.0.2\n", 40), {"10.0.0.1", ""}},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(named(text), expected) << text;
}

TEST(NameServers, DeliberatelyCountCommentsToo) {
    EXPECT_EQ(named("#nameserver 10.0.0.9\nnameserver 10.0.0.1\n"), (Pair{"10.0.0.9", "10.0.0.1"}));
}

TEST(NameServers, AreReadFromTheTerminal) {
    test::write_file(resolv_conf, "nameserver 10.0.0.1\n");
    EXPECT_EQ(name_servers()->first, "10.0.0.1");
    test::write_file(resolv_conf, "");
    EXPECT_EQ(name_servers()->first, "");
    test::write_file(resolv_conf,
                     "nameserver 10.0.0.1\n" + std::string(993, '#') + "nameserver 10.0.0.2\n");
    EXPECT_EQ(name_servers()->second, ""); // only 1,024 bytes are read
    test::write_file(resolv_conf,
                     "nameserver 10.0.0.1\n" + std::string(990, '#') + "nameserver 10.0.0.2\n");
    EXPECT_EQ(name_servers()->second, "10.");
}

TEST(NameServers, OfAFileThatCannotBeReadAreNone) {
    std::filesystem::remove(resolv_conf);
    EXPECT_EQ(test::capture_stderr([] { EXPECT_FALSE(name_servers()); }), "getdns open error \n");
    std::filesystem::create_directory(resolv_conf);
    EXPECT_EQ(test::capture_stderr([] { EXPECT_FALSE(name_servers()); }),
              "getdns read file len error \n");
}

} // namespace qvtc::network
