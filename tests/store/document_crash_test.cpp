// Writers that are killed in the middle.

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/faults/os_calls.hpp"
#include "store/document.hpp"
#include "store/settings_document.hpp"

namespace qvtc::test {

namespace {

class DocumentCrash : public SettingsDocument {};

/// A process that counts up in the document, and tells each number once it is stored.
class Counter {
  public:
    explicit Counter(int start) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        process_ = fork();
        if (process_ == 0) count_from(start, ends[1]);
        close(ends[1]);
        numbers_ = ends[0];
    }

    /// Kills it after that time; gives the last number that it told, or `otherwise`.
    int killed_after(std::chrono::microseconds time, int otherwise) const {
        std::this_thread::sleep_for(time);
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        int last = otherwise;
        while (read(numbers_, &last, sizeof last) > 0) {
        }
        close(numbers_);
        return last;
    }

  private:
    [[noreturn]] static void count_from(int start, int told) {
        for (int number = start + 1;; ++number) {
            if (written("configItem", "counter", std::to_string(number)) != 0) _exit(1);
            if (write(told, &number, sizeof number) < 0) _exit(1);
        }
    }

    pid_t process_;
    int numbers_;
};

} // namespace

TEST_F(DocumentCrash, AtEachStepLeavesTheOldDocumentOrTheNewOne) {
    const std::string old_text = document_of("configItem", "k", "old");
    const std::string new_text = document_of("configItem", "k", "new");
    const struct {
        const char* step;
        int steps_before;
        std::string expected;
    } cases[] = {
        {"write", 0, old_text},
        {"fsync", 0, old_text}, // of the new file
        {"rename", 0, old_text},
        {"fsync", 1, new_text}, // of the directory
    };
    for (const auto& c : cases) {
        write_file(document_path, old_text);
        const pid_t writer = fork();
        if (writer == 0) {
            OsCalls calls;
            calls.before(
                c.step, [] { raise(SIGKILL); }, c.steps_before);
            written("configItem", "k", "new");
            _exit(0);
        }
        int status = 0;
        waitpid(writer, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << c.step;
        EXPECT_EQ(document_text(), c.expected) << c.step;
    }
}

TEST_F(DocumentCrash, AtTwoHundredRandomMomentsLosesNoWriteThatWasConfirmed) {
    for (int i = 0; i < 20; ++i)
        capture_stderr([i] { written("configItem", "key_" + std::to_string(i), "kept"); });
    std::mt19937 random(20261115);
    std::uniform_int_distribution<int> microseconds(0, 6000);
    int stored = 0;
    int drafts_left = 0;
    for (int kill_number = 0; kill_number < 200; ++kill_number) {
        const Counter counter(stored);
        const int told =
            counter.killed_after(std::chrono::microseconds(microseconds(random)), stored);
        const store::Document document = store::Document::load();
        ASSERT_EQ(document.state(), store::Document::State::loaded);
        stored = std::stoi(document.get("configItem", "counter").value_or("0"));
        // It may have died between storing and telling.
        ASSERT_TRUE(stored == told || stored == told + 1) << stored << " " << told;
        for (int i = 0; i < 20; ++i)
            ASSERT_EQ(document.get("configItem", "key_" + std::to_string(i)), "kept");
        ASSERT_TRUE(document_text().ends_with("</ThinClientConfig>\n"));
        const std::size_t files = names_in("/home/root").size();
        ASSERT_LE(files, 2U);
        if (files == 2) ++drafts_left;
    }
    // It was killed while it wrote, and not only between writes.
    EXPECT_GT(stored, 100);
    EXPECT_GT(drafts_left, 0);
    EXPECT_EQ(written("configItem", "counter", "0"), 0);
    EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
}

} // namespace qvtc::test
