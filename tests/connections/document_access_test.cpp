// How often the operations touch the document: each is one load, and one save if it changes it,
// as a terminal's flash memory and a waiting user would have it.

#include "connections/list.hpp"

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>
#include <map>
#include <stdexcept>
#include <sys/inotify.h>
#include <unistd.h>

namespace qvtc::connections {

namespace {

class DocumentAccess : public test::FreshTerminal {};

/// Counts what happens to the document between its making and its being asked.
class DocumentWatch {
  public:
    DocumentWatch() : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (inotify_add_watch(descriptor_, "/home/root", IN_OPEN | IN_CLOSE | IN_MOVED_TO) < 0)
            throw std::runtime_error("the directory of the document cannot be watched");
    }
    ~DocumentWatch() { close(descriptor_); }
    DocumentWatch(const DocumentWatch&) = delete;
    DocumentWatch& operator=(const DocumentWatch&) = delete;

    struct Counts {
        int loads = 0;
        int saves = 0;
        bool operator==(const Counts&) const = default;
    };
    Counts counts() {
        Counts counts;
        alignas(inotify_event) char events[65536];
        const ssize_t length = read(descriptor_, events, sizeof events);
        for (ssize_t at = 0; at < length;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(events + at);
            const std::string_view name = event->len > 0 ? event->name : "";
            if (name == "vpclientData.xml") {
                if ((event->mask & IN_OPEN) != 0) ++counts.loads;
                if ((event->mask & IN_MOVED_TO) != 0) ++counts.saves;
            }
            at += static_cast<ssize_t>(sizeof *event + event->len);
        }
        return counts;
    }

  private:
    int descriptor_;
};

std::ostream& operator<<(std::ostream& stream, const DocumentWatch::Counts& counts) {
    return stream << counts.loads << " loads, " << counts.saves << " saves";
}

} // namespace

TEST_F(DocumentAccess, EveryOperationLoadsOnceAndSavesOnceIfItChangesSomething) {
    test::Items items;
    for (int id = 32; id < 60; ++id) {
        items.push_back(test::record_item("rdpItem_id_" + std::to_string(id),
                                          {{"id", std::to_string(id)}, {"name", "Office"}}));
    }
    for (const test::Item& item : test::full_block(2, "spiceItem")) items.push_back(item);
    test::store_items(items);

    struct Case {
        const char* what;
        std::function<void()> operation;
        DocumentWatch::Counts expected;
    };
    const Case cases[] = {
        {"add", [] { store_connection(1, "name=new"); }, {1, 1}},
        {"modify", [] { store_connection(1, "id=35&name=new"); }, {1, 1}},
        {"refuse", [] { store_connection(1, "no pair"); }, {0, 0}},
        {"refuse for a full block", [] { store_connection(2, "name=new"); }, {1, 0}},
        {"one record", [] { connection(1, 35); }, {1, 0}},
        {"no such record", [] { connection(1, 62); }, {1, 0}},
        {"list", [] { connections_of(1); }, {1, 0}},
        {"free id", [] { free_id(1); }, {1, 0}},
        {"delete", [] { delete_connection(1, 0); }, {1, 1}},
        {"delay", [] { connect_delay(); }, {1, 0}},
        {"set delay", [] { store_connect_delay("delay=7"); }, {1, 1}},
    };
    for (const Case& each : cases) {
        DocumentWatch watch;
        each.operation();
        EXPECT_EQ(watch.counts(), each.expected) << each.what;
    }
}

} // namespace qvtc::connections
