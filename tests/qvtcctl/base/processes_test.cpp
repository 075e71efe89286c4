#include "qvtcctl/base/processes.hpp"

#include "support/support.hpp"

#include <csignal>
#include <filesystem>

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

// A process may end between any two steps: its directory is empty then, or a file in it is there
// and cannot be read, as here where it is a directory.
TEST(QvtcctlProcesses, AreReadAlthoughSomeEndMeanwhile) {
    const std::filesystem::path proc = "/tmp/proc";
    const auto put = [&](const std::string& file, const std::string& text) {
        test::write_file(proc / file, text);
    };
    put("10/comm", "firefox-esr\n");
    put("10/stat", "10 (firefox) x) S 1");
    put("10/cmdline", std::string("firefox\0http://a/\0", 18));
    put("10/environ", std::string("A=1\0B=2\0", 8));
    std::filesystem::create_directories(proc / "11");
    std::filesystem::create_directories(proc / "12/comm");
    put("13/comm", "firefox\n");
    std::filesystem::create_directories(proc / "13/stat");
    put("14/comm", "firefox\n");
    put("14/stat", "14 (firefox) Z 1");
    put("15/comm", "firefox\n");
    put("15/stat", "15 (firefox) S 1");
    std::filesystem::create_directories(proc / "15/cmdline");
    put("self/comm", "firefox\n");
    const std::vector<Process> found{{10, {"firefox", "http://a/"}, {"A=1", "B=2"}}, {15, {}, {}}};
    EXPECT_EQ(running_processes("firefox", proc), found);
    EXPECT_EQ(running_processes("firefox", "/tmp/nowhere"), std::vector<Process>{});
}

} // namespace
} // namespace qvtc::qvtcctl
