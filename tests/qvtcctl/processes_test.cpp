#include "qvtcctl/processes.hpp"

#include "support/support.hpp"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

pid_t start(const test::StandIn& program, const char* argument) {
    const pid_t child = fork();
    if (child == 0) {
        execl(program.path().c_str(), "name-of-its-own", argument, nullptr);
        _exit(127);
    }
    return child;
}

TEST(QvtcctlProcesses, AreFoundByTheBeginningOfTheirNameUntilTheyEnd) {
    test::StandIn program("xfreerdp-test");
    program.keeps_running();
    const pid_t child = start(program, "/v:10.0.0.5");
    const auto found = [] { return running_processes("xfreerdp"); };
    ASSERT_TRUE(test::wait_until([&] { return !found().empty(); }));
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found().front().pid, child);
    EXPECT_EQ(found().front().arguments,
              (std::vector<std::string>{"name-of-its-own", "/v:10.0.0.5"}));
    EXPECT_TRUE(running_processes("freerdp").empty());
    kill(child, SIGKILL);
    // It is a zombie now, because nobody has asked for its status yet.
    EXPECT_TRUE(test::wait_until([&] { return found().empty(); }));
    EXPECT_EQ(kill(child, 0), 0);
    waitpid(child, nullptr, 0);
}

TEST(QvtcctlProcesses, AClientServesTheConnectionInItsArguments) {
    Record record;
    record[field_index("name")] = "office";
    record[field_index("serverAddress")] = "10.0.0.5";
    const ConnectionType& rdp = *find_type("rdp");
    const ConnectionType& spice = *find_type("spice");
    EXPECT_TRUE(serves({1, {"xfreerdp", "/t:office", "/v:10.0.0.5", "/f"}}, rdp, record));
    EXPECT_FALSE(serves({1, {"xfreerdp", "/t:other", "/v:10.0.0.5", "/f"}}, rdp, record));
    EXPECT_FALSE(serves({1, {"xfreerdp", "/t:office", "/v:10.0.0.55", "/f"}}, rdp, record));
    EXPECT_TRUE(serves({1, {"remote-viewer", "-f", "spice://10.0.0.5:5930"}}, spice, record));
    EXPECT_FALSE(serves({1, {"remote-viewer", "-f", "spice://10.0.0.6:5930"}}, spice, record));
}

} // namespace
} // namespace qvtc::qvtcctl
