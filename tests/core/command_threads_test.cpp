// Commands from several threads at once.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <unistd.h>

#include "core/command.hpp"
#include "core/exports.hpp"
#include "core/faults/descriptors.hpp"
#include "core/faults/os_calls.hpp"
#include "core/os.hpp"
#include "core/pipe_stream.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

constexpr const char* start_client = "sleep 1000 >/dev/null 2>&1 & echo $! >/tmp/client";

std::string client() { return lines_of(read_file("/tmp/client")).at(0); }

bool client_runs() { return file_exists("/proc/" + client()); }

void end_client() { os().run("kill " + client()); }

/// The reading ends of pipes that this process has open.
std::set<int> pipes() {
    std::set<int> numbers;
    for (int number = 0; number < 1024; ++number) {
        if (fcntl(number, F_GETPIPE_SZ) > 0 && (fcntl(number, F_GETFL) & O_ACCMODE) == O_RDONLY)
            numbers.insert(number);
    }
    return numbers;
}

} // namespace

TEST(CommandThreads, EightCaptureAtOnceAndEachGetsItsOwnOutput) {
    const std::size_t descriptors = open_descriptors();
    std::vector<std::thread> threads;
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([number] {
            for (int i = 0; i < 25; ++i) {
                const std::string own = std::to_string(number) + "/" + std::to_string(i);
                std::string output(5000, '#');
                const std::string command =
                    "printf '" + own + "'; head -c 4000 /dev/zero | tr '\\0' x; exit " + own[0];
                EXPECT_EQ(systemex(command.c_str(), output.data(), 5000), -1);
                EXPECT_EQ(std::string(output.c_str()), own + std::string(4000, 'x'));
                char line[64] = {};
                EXPECT_EQ(execmd(("echo " + own).c_str(), line), 0);
                EXPECT_EQ(line, own);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(open_descriptors(), descriptors);
    EXPECT_EQ(recorded_commands().size(), 8U * 25 * 2);
}

TEST(CommandThreads, ClientStartedMeanwhileDoesNotKeepACaptureWaiting) {
    OsCalls calls;
    // Between the pipe and the shell: the client inherits whatever it can.
    calls.before("posix_spawn", [] { std::thread([] { os().run(start_client); }).join(); });
    char output[16] = {};
    EXPECT_EQ(systemex("echo abc", output, sizeof output), -1);
    EXPECT_STREQ(output, "abc\n");
    EXPECT_TRUE(client_runs());
    end_client();
}

TEST(CommandThreads, ClientStartedMeanwhileDoesNotKeepALineWaiting) {
    PipeStream endless("yes");
    os().run(start_client);
    // "yes" ends once nobody can read what it prints.
    endless.close();
    EXPECT_TRUE(client_runs());
    end_client();
}

TEST(CommandThreads, CaptureRaisesThePipesCapacityBeforeTheShellStarts) {
    const std::set<int> before = pipes();
    std::vector<int> capacities;
    OsCalls calls;
    calls.before("posix_spawn", [&] {
        for (const int number : pipes()) {
            if (!before.contains(number)) capacities.push_back(fcntl(number, F_GETPIPE_SZ));
        }
    });
    char output[16];
    systemex("true", output, sizeof output);
    EXPECT_EQ(capacities, std::vector<int>{131072});
}

TEST(CommandThreads, CaptureThatFinishedLeavesItsBackgroundClientRunning) {
    char output[16] = {};
    systemex(start_client, output, sizeof output);
    EXPECT_TRUE(client_runs());
    end_client();
}

} // namespace qvtc::test
