// What the terminal keeps its commands from, and what it gives them.

#include "support/support.hpp"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/reboot.h>
#include <map>
#include <set>
#include <sys/reboot.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace qvtc::test {

namespace {

using Names = std::set<std::string>;

Names names_in(const fs::path& directory) {
    Names names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.insert(entry.path().filename());
    }
    return names;
}

std::map<std::string, std::string> own_status() {
    std::map<std::string, std::string> status;
    for (const std::string& line : lines_of(read_file("/proc/self/status"))) {
        const auto colon = line.find(":\t");
        status[line.substr(0, colon)] = line.substr(colon + 2);
    }
    return status;
}

/// The error of opening a file for writing, 0 when that succeeds.
int error_of_writing(const char* path) {
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) return errno;
    close(file);
    return 0;
}

} // namespace

TEST(Isolation, NoOtherProcessIsVisible) {
    Names processes;
    for (const std::string& name : names_in("/proc")) {
        if (name.find_first_not_of("0123456789") == std::string::npos) processes.insert(name);
    }
    EXPECT_EQ(processes, (Names{"1", std::to_string(getpid())}));
    EXPECT_EQ(getppid(), 1);
    EXPECT_EQ(read_file("/proc/1/cmdline"),
              (std::string("bash\0/run/disposable-terminal/init\0", 35)));
}

TEST(Isolation, ThereIsNoNetworkButLoopback) {
    EXPECT_EQ(names_in("/sys/class/net"), Names{"lo"});
    EXPECT_EQ(lines_of(read_file("/proc/net/route")).size(), 1U); // the heading

    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(listen(server, 1), 0); // takes a free port
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    ASSERT_EQ(getsockname(server, generic, &size), 0);
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(client, generic, size), 0) << "loopback is down";
    close(client);
    close(server);
}

TEST(Isolation, TheClockCannotBeSet) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    EXPECT_EQ(clock_settime(CLOCK_REALTIME, &now), -1);
    EXPECT_EQ(errno, EPERM);
    // To the time that it is: a terminal that let this through would do no harm.
    EXPECT_EQ(capture_stderr([] { (void)!std::system("date -s @$(date +%s) >/dev/null"); }),
              "date: cannot set date: Operation not permitted\n");
}

TEST(Isolation, TheMachineCannotBeRestarted) {
    // The mildest request; refused for lack of rights before its kind is looked at.
    EXPECT_EQ(reboot(LINUX_REBOOT_CMD_CAD_OFF), -1);
    EXPECT_EQ(errno, EPERM);
    // The emergency keys: absent, out of reach, or led into nothing.
    struct stat facts {};
    if (stat("/proc/sysrq-trigger", &facts) == 0 && facts.st_rdev != makedev(1, 3)) {
        EXPECT_EQ(error_of_writing("/proc/sysrq-trigger"), EACCES);
    }
    EXPECT_NE(error_of_writing("/sys/power/state"), 0);
}

TEST(Isolation, DroppedCapabilitiesAreGoneForGood) {
    constexpr std::array gone = {16, 17, 22, 25, 30, 32, 33, 34, 35, 36};
    auto status = own_status();
    for (const char* set : {"CapInh", "CapPrm", "CapEff", "CapBnd", "CapAmb"}) {
        const auto capabilities = std::stoull(status[set], nullptr, 16);
        for (const int number : gone) {
            EXPECT_EQ(capabilities >> number & 1U, 0U) << set << ", capability " << number;
        }
    }
    EXPECT_EQ(std::stoull(status["CapEff"], nullptr, 16) >> 21 & 1U, 1U) << "may not mount";
}

TEST(Isolation, OnlySettingsOfTheOwnNetworkCanBeWritten) {
    EXPECT_NE(error_of_writing("/proc/sys/kernel/panic"), 0);
    EXPECT_NE(error_of_writing("/proc/sys/vm/swappiness"), 0);
    EXPECT_EQ(error_of_writing("/proc/sys/net/ipv4/ip_forward"), 0);
}

TEST(Isolation, ThereAreNoDisks) {
    for (const auto& entry : fs::directory_iterator("/dev")) {
        const std::string name = entry.path().filename();
        EXPECT_TRUE(!entry.is_block_file() || name.starts_with("loop")) << name;
    }
}

TEST(Terminal, LeavesNoSignalIgnored) {
    struct sigaction action {};
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGCHLD, SIGPIPE}) {
        ASSERT_EQ(sigaction(signal, nullptr, &action), 0);
        EXPECT_EQ(action.sa_handler, SIG_DFL) << "signal " << signal;
    }
}

TEST(Terminal, WaitsForOrphans) {
    ASSERT_EQ(std::system("(true & echo $! >/tmp/orphan)"), 0);
    const fs::path orphan = "/proc/" + lines_of(read_file("/tmp/orphan")).at(0);
    EXPECT_TRUE(wait_until([&] { return !file_exists(orphan); })) << read_file(orphan / "status");
}

TEST(Terminal, HasTheDirectoriesOfAnImage) {
    for (const char* directory :
         {"/home/root", "/usr/local/vpclient/config", "/etc/X11", "/var/lib/ralo", "/etc/default",
          "/etc/sysconfig/network-scripts", "/etc/wpa_supplicant", "/etc/xdg/openbox", "/var/log",
          "/etc/pulse", "/tmp/.X11-unix"}) {
        EXPECT_TRUE(fs::is_directory(directory)) << directory;
        const fs::path probe = fs::path(directory) / "probe";
        write_file(probe, "text");
        EXPECT_EQ(read_file(probe), "text");
        fs::remove(probe);
    }
    EXPECT_EQ(fs::status("/tmp/.X11-unix").permissions(), fs::perms::all | fs::perms::sticky_bit);
    write_file("/usr/bin/probe", "text");
    EXPECT_EQ(read_file("/usr/bin/probe"), "text");
}

TEST(Terminal, HasANameAndNoNameServer) {
    std::array<char, 65> name{};
    ASSERT_EQ(gethostname(name.data(), name.size()), 0);
    EXPECT_STREQ(name.data(), "terminal");
    EXPECT_EQ(read_file("/etc/hostname"), "terminal\n");
    EXPECT_EQ(read_file("/etc/hosts"), "127.0.0.1\tlocalhost terminal\n::1\tlocalhost\n");
    EXPECT_EQ(read_file("/etc/resolv.conf"), "");
}

TEST(Terminal, HasTheEnvironmentOfATerminal) {
    const std::map<std::string, std::string> expected = {
        {"PATH", "/usr/local/bin:/usr/local/sbin:/usr/sbin:/usr/bin:/sbin:/bin"},
        {"HOME", "/home/root"},
        {"USER", "root"},
        {"LOGNAME", "root"},
        {"SHELL", "/bin/bash"},
        {"DISPLAY", ":0"},
        {"LANG", "C.UTF-8"}};
    const Names may_vary = {"TERM", "PWD", "SHLVL", "_", "PS1", "CI", "LLVM_PROFILE_FILE"};
    std::map<std::string, std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('='));
        const bool steers = name.starts_with("QVTC_") || name.starts_with("GTEST_") ||
                            name.starts_with("CTEST_") || name.starts_with("GCOV_") ||
                            name.ends_with("SAN_OPTIONS") || may_vary.contains(name);
        if (!steers) environment[name] = text.substr(name.size() + 1);
    }
    EXPECT_EQ(environment, expected);
    EXPECT_EQ(fs::path(getenv("HOME")), "/home/root");
}

TEST(Terminal, HasItsOwnAccountOfRoot) {
    EXPECT_EQ(getuid(), 0U);
    EXPECT_EQ(capture_stdout([] { (void)!std::system("echo ~root"); }), "/home/root\n");
}

} // namespace qvtc::test
