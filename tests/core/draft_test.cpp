#include "core/draft.hpp"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/faults/os_calls.hpp"
#include "core/file_lock.hpp"
#include "core/files.hpp"
#include "support/support.hpp"

namespace qvtc::test {

namespace {

using Names = std::vector<std::string>;

const std::string base = "/tmp/draft_test";
const std::string path = base + "/settings.xml";

class ADraft : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::remove_all(base);
        std::filesystem::create_directory(base);
    }
    void TearDown() override { std::filesystem::remove_all(base); }

    static Names names() {
        Names found;
        for (const auto& entry : std::filesystem::directory_iterator(base))
            found.push_back(entry.path().filename());
        std::sort(found.begin(), found.end());
        return found;
    }
};

} // namespace

TEST_F(ADraft, MatchesNoPatternAndTheNextWriterRemovesIt) {
    write_file(base + "/ifcfg-eth0", "old");
    const std::string leftover = ".ifcfg-eth0.qvtc-draft";
    for (int killed = 0; killed < 3; ++killed) {
        const pid_t writer = fork();
        if (writer == 0) {
            OsCalls calls;
            calls.before("rename", [] { raise(SIGKILL); });
            replace_file(base + "/ifcfg-eth0", "password");
            _exit(0);
        }
        waitpid(writer, nullptr, 0);
        EXPECT_EQ(names(), (Names{leftover, "ifcfg-eth0"}));
    }
    EXPECT_EQ(replace_file(base + "/ifcfg-eth0", "new", 0644), 0);
    EXPECT_EQ(names(), Names{"ifcfg-eth0"});
    // Whatever bears the name: nothing of it gets into the new file.
    write_file("/tmp/other", "other");
    std::filesystem::create_hard_link("/tmp/other", base + "/" + leftover);
    EXPECT_EQ(replace_file(base + "/ifcfg-eth0", "newer", 0644), 0);
    EXPECT_EQ(read_file("/tmp/other"), "other");
    EXPECT_EQ(names(), Names{"ifcfg-eth0"});
}

TEST_F(ADraft, IsThatOfOneWriterAtATime) {
    std::vector<std::thread> writers;
    std::set<std::string> whole;
    for (const char c : {'a', 'b', 'c'}) whole.insert(std::string(20'000, c));
    for (const std::string& content : whole) {
        writers.emplace_back([&content] {
            for (int i = 0; i < 30; ++i) EXPECT_EQ(replace_file(path, content), 0);
        });
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_TRUE(whole.contains(read_file(path)));
    EXPECT_EQ(names(), Names{"settings.xml"});
}

TEST_F(ADraft, ThatWasLeftIsRemovedAndNothingElse) {
    for (const char* const name :
         {".a.qvtc-draft", ".b.qvtc-kept", "c.qvtc-draft", ".d", "ifcfg-e"})
        write_file(base + "/" + name, "x");
    const FileLock at_work(base + "/.f.qvtc-draft");
    remove_leftovers(base);
    remove_leftovers(base + "/none");
    EXPECT_EQ(names(), (Names{".d", ".f.qvtc-draft", "c.qvtc-draft", "ifcfg-e"}));
}

TEST_F(ADraft, HasANameThatIsNeverTooLong) {
    EXPECT_EQ(draft_name("/etc/resolv.conf"), "/etc/.resolv.conf.qvtc-draft");
    EXPECT_EQ(kept_copies("/etc/resolv.conf"),
              (std::array<std::string, 2>{"/etc/.resolv.conf.qvtc-kept",
                                          "/run/.etc!resolv.conf.qvtc-kept"}));
    const std::string longest = base + "/" + std::string(255, 'x');
    EXPECT_EQ(replace_file(longest, "new"), 0);
    EXPECT_EQ(read_file(longest), "new");
}

} // namespace qvtc::test
