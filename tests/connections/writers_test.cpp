// Several writers at once: processes, and threads of one process.

#include "connections/exports.hpp"

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <json-c/json.h>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qvtc::test {

namespace {

class Writers : public FreshTerminal {};

constexpr int writers = 3;
constexpr int records = 10;

/// Adds records that tell who added them. The search for ids is talkative.
bool add_records(int writer) {
    bool all = true;
    for (int i = 0; i < records; ++i) {
        std::string params = "name=" + std::to_string(writer) + "." + std::to_string(i);
        all = setconnections(1, params.data()) == 0 && all;
    }
    return all;
}

pid_t start_writer(int writer) {
    const pid_t child = fork();
    if (child != 0) return child;
    const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nothing, STDOUT_FILENO);
    _exit(add_records(writer) ? 0 : 1);
}

void expect_all_records() {
    std::set<std::string> ids;
    std::set<std::string> names;
    json_object* const list = getconnections(1);
    json_object* const array = json_object_object_get(list, "list");
    ASSERT_EQ(json_object_array_length(array), std::size_t{writers * records});
    for (std::size_t i = 0; i < writers * records; ++i) {
        json_object* const record = json_object_array_get_idx(array, i);
        ids.insert(json_object_get_string(json_object_object_get(record, "id")));
        names.insert(json_object_get_string(json_object_object_get(record, "name")));
    }
    json_object_put(list);
    std::set<std::string> expected_ids;
    std::set<std::string> expected_names;
    for (int i = 0; i < writers * records; ++i) {
        expected_ids.insert(std::to_string(32 + i));
        expected_names.insert(std::to_string(i / records) + "." + std::to_string(i % records));
    }
    EXPECT_EQ(ids, expected_ids);
    EXPECT_EQ(names, expected_names);
}

} // namespace

TEST_F(Writers, ThreeProcessesLoseNothingOfEachOthers) {
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) children.push_back(start_writer(writer));
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    expect_all_records();
}

TEST_F(Writers, ThreeThreadsLoseNothingOfEachOthers) {
    capture_stdout([] {
        std::vector<std::thread> threads;
        for (int writer = 0; writer < writers; ++writer) {
            threads.emplace_back([writer] { EXPECT_TRUE(add_records(writer)); });
        }
        for (std::thread& thread : threads) thread.join();
    });
    expect_all_records();
}

TEST_F(Writers, AReaderMeetsWholeRecordsOnly) {
    // Every record is stored with one name in two fields; a torn one would differ.
    std::atomic<bool> written = false;
    std::thread writer([&] {
        for (int i = 0; i < 50; ++i) {
            const std::string value = std::to_string(i);
            std::string params = "id=32&name=" + value + "&domain=" + value;
            EXPECT_EQ(setconnections(1, params.data()), 0);
        }
        written = true;
    });
    int met = 0;
    std::string last;
    for (bool all = false; !all;) {
        all = written;
        json_object* const record = getconnection(1, 32);
        ASSERT_NE(record, nullptr);
        if (json_object_object_length(record) == 51) {
            last = json_object_get_string(json_object_object_get(record, "name"));
            EXPECT_EQ(json_object_get_string(json_object_object_get(record, "domain")), last);
            ++met;
        } else {
            EXPECT_EQ(met, 0) << "a record that was there is gone";
        }
        json_object_put(record);
    }
    writer.join();
    EXPECT_EQ(last, "49");
}

} // namespace qvtc::test
