// Writers at the same time, writers that are killed, and disks that are full.

#include "qvplugin/program.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <thread>

#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

constexpr int writers = 8;

class QvpluginChanges : public testing::Test {
  protected:
    const InstalledProgram program{QVPLUGIN_PROGRAM};
};

/// All that is stored, by the program's own list.
std::map<std::string, std::string> stored() {
    std::map<std::string, std::string> values;
    for (const std::string& line : lines_of(run("qvplugin list").output)) {
        const auto tab = line.find('\t');
        values[line.substr(0, tab)] = line.substr(tab + 1);
    }
    return values;
}

std::string text_of(int number) {
    std::string digits = std::to_string(number);
    return std::string(8 - digits.size(), 'A') + digits;
}

/// A process that runs `body` and is successful when that is.
template <typename Body>
pid_t in_process(Body&& body) {
    const pid_t process = fork();
    if (process == 0) _exit(body() ? 0 : 1);
    return process;
}

/// Moments within the life of a writer, and a little behind it, on this machine and in this build.
class Moments {
  public:
    Moments() {
        using namespace std::chrono;
        const auto begin = steady_clock::now();
        for (int i = 0; i < 5; ++i) EXPECT_EQ(ended(start("1", "99", "YWJj")), 0);
        const auto life = duration_cast<microseconds>(steady_clock::now() - begin) / 5;
        microseconds_ = std::uniform_int_distribution<long>(0, life.count() * 5 / 4);
    }

    /// Kills a writer at one of them; its status.
    int kill_at_one(pid_t writer) {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds_(random_)));
        kill(writer, SIGKILL);
        return ended(writer);
    }

  private:
    std::mt19937 random_{20261121};
    std::uniform_int_distribution<long> microseconds_;
};

/// A file system of its own for the store, for as long as it lives.
class SmallDisk {
  public:
    explicit SmallDisk(const char* options) {
        std::filesystem::create_directories(directory);
        EXPECT_EQ(mount("none", directory, "tmpfs", 0, options), 0);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() { EXPECT_EQ(umount2(directory, MNT_DETACH), 0); }

    /// Leaves room for so many bytes.
    static void fill_up_to(std::size_t room) {
        run("dd if=/dev/zero of=/var/lib/qvplugin/fill bs=4096 status=none 2>/dev/null; "
            "truncate -s -" +
            std::to_string(room) + " /var/lib/qvplugin/fill");
    }

  private:
    static constexpr const char* directory = "/var/lib/qvplugin";
};

} // namespace

TEST_F(QvpluginChanges, EightProcessesThatWriteAtOnceLoseNothing) {
    constexpr int keys = 25;
    std::vector<pid_t> processes;
    for (int writer = 0; writer < writers; ++writer) {
        processes.push_back(in_process([writer] {
            for (int key = writer * keys; key < (writer + 1) * keys; ++key) {
                if (ended(start("1", std::to_string(key), text_of(key))) != 0) return false;
            }
            return true;
        }));
    }
    for (const pid_t process : processes) EXPECT_EQ(ended(process), 0);
    std::map<std::string, std::string> expected;
    for (int key = 0; key < writers * keys; ++key) expected[std::to_string(key)] = text_of(key);
    EXPECT_EQ(stored(), expected);
}

TEST_F(QvpluginChanges, EightProcessesThatMakeTheStoreAtOnceAllSucceed) {
    for (int round = 0; round < 20; ++round) {
        std::filesystem::remove_all("/var/lib/qvplugin");
        std::vector<pid_t> processes;
        for (int key = 0; key < writers; ++key) {
            processes.push_back(start("1", std::to_string(key), text_of(key)));
        }
        for (const pid_t process : processes) EXPECT_EQ(ended(process), 0);
        EXPECT_EQ(stored().size(), std::size_t{writers});
    }
}

TEST_F(QvpluginChanges, ReadersSeeTheOldValueOrTheNewOne) {
    const std::string values[] = {std::string(4, 'A'), std::string(100'000, 'B')};
    run("qvplugin 1 90 " + values[0]);
    const pid_t writer = in_process([&] {
        for (int i = 1; i <= 100; ++i) {
            if (ended(start("1", "90", values[i % 2])) != 0) return false;
        }
        return true;
    });
    int reads = 0;
    for (int status = 0; waitpid(writer, &status, WNOHANG) == 0; ++reads) {
        const Outcome read = run("qvplugin 0 90");
        EXPECT_EQ(read.status, 0) << read.errors;
        EXPECT_TRUE(read.output == values[0] || read.output == values[1]) << read.output.size();
    }
    EXPECT_GT(reads, 0);
}

TEST_F(QvpluginChanges, WriterKilledAtAnyMomentLeavesTheOldValueOrTheNewOne) {
    // Long texts, so that there is something to be killed in.
    const auto text_of_round = [](int round) {
        std::string text(60'000, static_cast<char>('A' + round % 26));
        return text.replace(0, 8, text_of(round));
    };
    run("qvplugin 1 1 kept; qvplugin 1 90 " + text_of_round(0));
    Moments moments;
    std::string old_text = text_of_round(0);
    int killed = 0;
    int left_a_journal = 0;
    for (int round = 1; round <= 200; ++round) {
        const std::string new_text = text_of_round(round);
        const bool was_killed = moments.kill_at_one(start("1", "90", new_text)) == 128 + SIGKILL;
        killed += was_killed ? 1 : 0;
        left_a_journal += file_exists(std::string(database_path) + "-journal") ? 1 : 0;
        const Outcome read = run("qvplugin 0 90; qvplugin 0 1");
        ASSERT_EQ(read.errors, "");
        const std::string found = read.output.substr(0, 60'000);
        ASSERT_TRUE(found == new_text || (was_killed && found == old_text)) << round;
        ASSERT_EQ(read.output.substr(60'000), "kept");
        old_text = found;
    }
    EXPECT_LT(killed, 200);
    EXPECT_GT(left_a_journal, 0); // some were killed in the very middle
}

TEST_F(QvpluginChanges, FirstWriterKilledAtAnyMomentLeavesAStoreThatWorks) {
    Moments moments;
    for (int round = 0; round < 60; ++round) {
        std::filesystem::remove_all("/var/lib/qvplugin");
        moments.kill_at_one(start("1", "90", "YWJj"));
        const Outcome read = run("qvplugin 0 90");
        EXPECT_TRUE(read == (Outcome{0, "YWJj", ""}) || read == (Outcome{1, "", ""}))
            << testing::PrintToString(read);
        EXPECT_EQ(run("qvplugin 1 91 YWJj; qvplugin 0 91"), (Outcome{0, "YWJj", ""}));
    }
}

TEST_F(QvpluginChanges, EmptyFileIsAnEmptyStore) {
    write_file(database_path, "");
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{1, "", ""}));
    EXPECT_EQ(run("qvplugin list"), (Outcome{0, "", ""}));
    EXPECT_EQ(run("qvplugin delete 90").status, 1);
    EXPECT_EQ(run("qvplugin 1 90 YWJj; qvplugin 0 90"), (Outcome{0, "YWJj", ""}));
}

TEST_F(QvpluginChanges, FullDiskKeepsTheOldValueAndIsAnError) {
    const SmallDisk disk("size=400k,mode=700");
    const std::string old_text(40'000, 'A');
    const std::string new_text(80'000, 'B');
    ASSERT_EQ(run("qvplugin 1 90 " + old_text).status, 0);
    for (const std::size_t room : {0UL, 4096UL, 8192UL, 16'384UL, 32'768UL}) {
        SmallDisk::fill_up_to(room);
        const Outcome refused = run("qvplugin 1 90 " + new_text);
        EXPECT_EQ(refused.status, 3) << room;
        EXPECT_TRUE(refused.errors.starts_with("qvplugin: /var/lib/qvplugin/values.db: "))
            << refused.errors;
        const Outcome read = run("qvplugin 0 90");
        EXPECT_EQ(read.errors, "") << room;
        EXPECT_TRUE(read.output == old_text) << room << ' ' << read.output.size();
    }
    std::filesystem::remove("/var/lib/qvplugin/fill");
    EXPECT_EQ(run("qvplugin 1 90 " + new_text), (Outcome{0, "", ""}));
    EXPECT_TRUE(run("qvplugin 0 90").output == new_text);
}

TEST_F(QvpluginChanges, DiskThatIsFullFromTheStartIsAnError) {
    const SmallDisk disk("size=64k,mode=700");
    SmallDisk::fill_up_to(0);
    EXPECT_EQ(run("qvplugin 1 90 YWJj").status, 3);
    EXPECT_EQ(run("qvplugin 0 90"), (Outcome{1, "", ""}));
    std::filesystem::remove("/var/lib/qvplugin/fill");
    EXPECT_EQ(run("qvplugin 1 90 YWJj; qvplugin 0 90"), (Outcome{0, "YWJj", ""}));
}

TEST_F(QvpluginChanges, StoreThatOthersKeepLockedIsWaitedFor) {
    run("qvplugin 1 90 YWJj");
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(database_path, &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "begin exclusive", nullptr, nullptr, nullptr), SQLITE_OK);
    const pid_t patient = start("1", "90", "eA==");
    const pid_t impatient = start("1", "90", "eQ==");
    kill(impatient, SIGTERM);
    EXPECT_EQ(ended(impatient), 128 + SIGTERM);
    int status = 0;
    EXPECT_EQ(waitpid(patient, &status, WNOHANG), 0);
    ASSERT_EQ(sqlite3_exec(other, "commit", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    EXPECT_EQ(ended(patient), 0);
    EXPECT_EQ(run("qvplugin 0 90").output, "eA==");
}

} // namespace qvtc::test
