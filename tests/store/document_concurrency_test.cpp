// Several writers and readers of the document at once.

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "core/faults/os_calls.hpp"
#include "store/document.hpp"
#include "store/settings_document.hpp"

namespace qvtc::test {

namespace {

using Clock = std::chrono::steady_clock;

class DocumentConcurrency : public SettingsDocument {
  protected:
    void SetUp() override {
        SettingsDocument::SetUp();
        write_file(document_path, document_of("configItem", "k", "first"));
    }
};

/// Runs `body` in a process of its own; its exit status is 0 when that returns true.
pid_t started(const std::function<bool()>& body) {
    const pid_t child = fork();
    if (child == 0) _exit(body() ? 0 : 1);
    return child;
}

int status_of(pid_t child) {
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

std::string key_of(int writer, int number) {
    return "k" + std::to_string(writer) + "_" + std::to_string(number);
}

bool write_keys(int writer, int count) {
    for (int number = 0; number < count; ++number) {
        const std::string item = number % 2 == 0 ? "configItem" : "item_" + std::to_string(writer);
        if (written(item, key_of(writer, number), std::to_string(number)) != 0) return false;
    }
    return true;
}

void expect_keys(int writers, int count) {
    const store::Document document = store::Document::load();
    for (int writer = 0; writer < writers; ++writer) {
        for (int number = 0; number < count; ++number) {
            const std::string item =
                number % 2 == 0 ? "configItem" : "item_" + std::to_string(writer);
            EXPECT_EQ(document.get(item, key_of(writer, number)), std::to_string(number))
                << writer << " " << number;
        }
    }
    EXPECT_EQ(document.get("configItem", "k"), "first");
}

} // namespace

TEST_F(DocumentConcurrency, ThreeProcessesThatWrite200KeysEachLoseNothing) {
    std::vector<pid_t> writers;
    for (int writer = 0; writer < 3; ++writer)
        writers.push_back(started([writer] { return write_keys(writer, 200); }));
    for (const pid_t writer : writers) EXPECT_EQ(status_of(writer), 0);
    expect_keys(3, 200);
    EXPECT_EQ(names_in("/home/root"), Lines{"vpclientData.xml"});
}

TEST_F(DocumentConcurrency, FourThreadsThatWrite100KeysEachLoseNothing) {
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer)
        writers.emplace_back([writer] { EXPECT_TRUE(write_keys(writer, 100)); });
    for (std::thread& writer : writers) writer.join();
    expect_keys(4, 100);
}

TEST_F(DocumentConcurrency, WriterAndDeleterLoseNothing) {
    std::thread deleter([] {
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(written("temporary", "t", "x"), 0);
            EXPECT_EQ(xml_del_grandsonNode("temporary", "t"), 0);
            EXPECT_EQ(xml_del_itemNode("temporary"), 0);
        }
    });
    EXPECT_TRUE(write_keys(0, 200));
    deleter.join();
    expect_keys(1, 200);
    EXPECT_EQ(value_read("temporary", "t"), std::nullopt);
}

TEST_F(DocumentConcurrency, ReaderSeesTheOldDocumentOrTheNewOneOnly) {
    const std::string values[] = {"short", std::string(30'000, 'x')};
    const std::set<std::string> whole = {document_of("configItem", "k", values[0]),
                                         document_of("configItem", "k", values[1])};
    written("configItem", "k", values[0]);
    std::atomic<bool> done = false;
    std::set<std::string> seen;
    std::thread raw_reader([&] {
        while (!done) seen.insert(document_text());
    });
    std::thread reader([&] {
        while (!done) {
            const auto value = value_read("configItem", "k");
            EXPECT_TRUE(value == values[0] || value == values[1]) << value.value_or("nothing");
        }
    });
    for (int i = 1; i <= 500; ++i) EXPECT_EQ(written("configItem", "k", values[i % 2]), 0);
    done = true;
    raw_reader.join();
    reader.join();
    EXPECT_EQ(seen, whole);
}

TEST_F(DocumentConcurrency, StoppedWriterHoldsOthersUpForTenSecondsAndReadersNotAtAll) {
    const pid_t stopped = started([] {
        OsCalls calls;
        calls.before("fsync", [] { raise(SIGSTOP); });
        return written("configItem", "of_the_stopped", "x") == 0;
    });
    int status = 0;
    ASSERT_EQ(waitpid(stopped, &status, WUNTRACED), stopped);
    ASSERT_TRUE(WIFSTOPPED(status));

    const auto start = Clock::now();
    EXPECT_EQ(value_read("configItem", "k"), "first");
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(8));
    std::vector<std::thread> writers;
    writers.emplace_back([] { EXPECT_EQ(written("configItem", "k", "second"), -1); });
    writers.emplace_back([] { EXPECT_EQ(xml_del_itemNode("configItem"), -1); });
    writers.emplace_back([] { EXPECT_EQ(xml_del_grandsonNode("configItem", "k"), -1); });
    for (std::thread& writer : writers) writer.join();
    EXPECT_GE(Clock::now() - start, std::chrono::seconds(10));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(document_text(), document_of("configItem", "k", "first"));
    const std::string line = "[ERROR] @xmlwrite /home/root/vpclientData.xml not locked: another "
                             "writer holds it";
    EXPECT_EQ(log_lines(), (Lines{line, line, line}));

    kill(stopped, SIGCONT);
    EXPECT_EQ(status_of(stopped), 0);
    EXPECT_EQ(written("configItem", "k", "second"), 0);
    EXPECT_EQ(value_read("configItem", "of_the_stopped"), "x");
    EXPECT_EQ(value_read("configItem", "k"), "second");
}

TEST_F(DocumentConcurrency, KilledWriterHoldsNobodyUp) {
    const pid_t killed = started([] {
        OsCalls calls;
        calls.before("fsync", [] { raise(SIGKILL); });
        return written("configItem", "of_the_killed", "x") == 0;
    });
    EXPECT_TRUE(WIFSIGNALED(status_of(killed)));
    const auto start = Clock::now();
    EXPECT_EQ(written("configItem", "k", "second"), 0);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(8));
    EXPECT_EQ(document_text(), document_of("configItem", "k", "second"));
}

} // namespace qvtc::test
