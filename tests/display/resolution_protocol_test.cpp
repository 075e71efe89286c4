#include "display/resolution_protocol.hpp"

#include "display/exports.hpp"
#include "display_terminal.hpp"

#include <gtest/gtest.h>

namespace qvtc::display {

namespace {

using test::stored_setting;
using test::Texts;

/// The settings of the protocol.
struct State {
    std::string applied;
    std::string requested;
    std::string waits;

    bool operator==(const State&) const = default;
};

void PrintTo(const State& state, std::ostream* stream) {
    *stream << "applied \"" << state.applied << "\", requested \"" << state.requested
            << "\", waits \"" << state.waits << '"';
}

State stored_state() {
    return {stored_setting(test::applied_key), stored_setting(test::requested_key),
            stored_setting(test::waits_key)};
}

class ResolutionProtocol : public test::DisplayTerminal {
  protected:
    static void store(const State& state) {
        store_settings({{test::applied_key, state.applied},
                        {test::requested_key, state.requested},
                        {test::waits_key, state.waits}});
        test::forget_commands();
    }

    const test::StandIn script{"/var/lib/ralo/display.sh"};
};

} // namespace

TEST_F(ResolutionProtocol, AChangeStoresTheRequestAndPutsItIntoForce) {
    struct Case {
        State before;
        const char* request;
        State after;
        const char* name;
    };
    const Case cases[] = {
        {{"1", "1", "0"}, "1024x768", {"1", "1", "0"}, "1024x768"},
        {{"1", "5", "1"}, "1024x768", {"1", "1", "0"}, "1024x768"},
        {{"1", "1", "0"}, "1920x1080", {"1", "5", "1"}, "1920x1080"},
        {{"1", "1", "0"}, "800x600", {"1", "0", "1"}, "auto"},
        {{"1", "1", "0"}, "auto", {"1", "10", "1"}, "auto"},
        {{"", "1", "1"}, "1920x1080", {"", "5", "0"}, "1920x1080"},
        {{"1", "1", "0"}, "res=12", {"1", "", "1"}, "auto"},
        {{"", "", ""}, "res=12", {"", "", "0"}, "auto"},
        {{"1", "1", "0"}, "res=9", {"1", "9", "1"}, "1280x800"},
        {{"1", "1", "0"}, "res=9&force=1", {"9", "9", "0"}, "1280x800"},
        {{"1", "1", "0"}, "res=9&force=", {"9", "9", "0"}, "1280x800"},
        {{"1", "5", "1"}, "force=0&res=7", {"7", "7", "0"}, "1366x768"},
        {{"1", "5", "1"}, "res=12&force=1", {"", "", "0"}, "auto"},
        {{"1", "1", "0"}, "res=9&force", {"1", "9", "1"}, "1280x800"}, // no pair
        {{"1", "1", "0"}, "auto&force=1", {"10", "10", "0"}, "auto"},
        {{"1", "1", "0"}, "res=9&enforce=1", {"1", "9", "1"}, "1280x800"},
        {{"1", "1", "0"}, "x", {"1", "", "1"}, "auto"},
    };
    for (const Case& each : cases) {
        store(each.before);
        EXPECT_EQ(setdispconf(each.request), 0);
        EXPECT_EQ(stored_state(), each.after) << each.request;
        EXPECT_EQ(test::recorded_commands(), test::written(each.name)) << each.request;
        EXPECT_EQ(test::read_file("/var/lib/ralo/res"), std::string(each.name) + "\n");
    }
}

TEST_F(ResolutionProtocol, AChangeIsLogged) {
    EXPECT_EQ(setdispconf("res=5&x=%s"), 0);
    EXPECT_EQ(test::log_lines(), Texts{"[DEBUG] @setdispconf disp=res=5&x=%s"});
}

TEST_F(ResolutionProtocol, AnEmptyRequestDoesNothing) {
    store({"1", "5", "1"});
    EXPECT_EQ(setdispconf(""), -1);
    EXPECT_EQ(stored_state(), (State{"1", "5", "1"}));
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_EQ(test::log_lines(), Texts{"[DEBUG] @setdispconf disp="});
}

TEST_F(ResolutionProtocol, KeepingMakesTheRequestTheAppliedOneAndLeavesTheScreen) {
    for (int (*const keep)() : {qvapplydispconf, applydispconf}) {
        store({"1", "5", "1"});
        EXPECT_EQ(keep(), 0);
        EXPECT_EQ(stored_state(), (State{"5", "5", "0"}));
        EXPECT_EQ(test::recorded_commands(), Texts{});
        EXPECT_EQ(script.calls(), test::StandIn::Calls{});
    }
}

TEST_F(ResolutionProtocol, RevertingGoesBackToTheAppliedOne) {
    for (int (*const revert)() : {qvrestoredispconf, restoredispconf}) {
        store({"1", "5", "1"});
        EXPECT_EQ(revert(), 0);
        EXPECT_EQ(stored_state(), (State{"1", "1", "0"}));
        EXPECT_EQ(test::recorded_commands(), test::written("1024x768"));
        EXPECT_EQ(test::read_file("/var/lib/ralo/res"), "1024x768\n");
    }
}

TEST_F(ResolutionProtocol, WithoutAnAppliedOneKeepingAndRevertingEndInAutomatic) {
    test::capture_stderr([] { EXPECT_EQ(restoredispconf(), 0); });
    EXPECT_EQ(stored_state(), (State{"", "", "0"}));
    EXPECT_EQ(test::recorded_commands(), test::written("auto"));
    EXPECT_EQ(applydispconf(), 0);
    EXPECT_EQ(stored_state(), (State{"", "", "0"}));
}

TEST_F(ResolutionProtocol, AChangeWaitsFromTheRequestUntilItIsKeptOrReverted) {
    store({"1", "1", "0"});
    EXPECT_EQ(qvisdispchanged(), 0);
    setdispconf("1920x1080");
    EXPECT_EQ(qvisdispchanged(), 1);
    EXPECT_EQ(test::text_of(qvgetdispconf()), R"({"res":"5"})");
    qvrestoredispconf();
    EXPECT_EQ(qvisdispchanged(), 0);
    EXPECT_EQ(test::text_of(qvgetdispconf()), R"({"res":"1"})");
    setdispconf("1920x1080");
    qvapplydispconf();
    EXPECT_EQ(qvisdispchanged(), 0);
    qvrestoredispconf();
    EXPECT_EQ(test::text_of(getdispconf()), R"({"res":"5"})");
}

TEST_F(ResolutionProtocol, OnlyAnEmptyTextAndZeroMeanThatNothingWaits) {
    const std::pair<const char*, int> cases[] = {{"", 0},   {"0", 0},  {"1", 1},  {"2", 1},
                                                 {"00", 1}, {"no", 1}, {" 0", 1}, {"-", 1}};
    for (const auto& [stored, waits] : cases) {
        store({"1", "1", stored});
        EXPECT_EQ(qvisdispchanged(), waits) << stored;
        EXPECT_EQ(isdispchanged(), waits) << stored;
    }
}

TEST_F(ResolutionProtocol, TheRequestedResolutionIsWhatIsStoredAndElseAutomatic) {
    EXPECT_EQ(test::text_of(qvgetdispconf()), R"({"res":"10"})");
    for (const char* const stored : {"0", "7", "10", "it's", "a\"b", "{"}) {
        store({"1", stored, "0"});
        const Json object(qvgetdispconf());
        EXPECT_STREQ(json_object_get_string(json_object_object_get(object.get(), "res")), stored);
        EXPECT_EQ(test::text_of(getdispconf()), test::text_of(object));
    }
}

TEST_F(ResolutionProtocol, ADocumentThatIsNotOursIsLeftAloneAndTheScreenChanges) {
    test::write_file(test::document_path, "<Other/>");
    EXPECT_EQ(setdispconf("1920x1080"), 0);
    EXPECT_EQ(test::recorded_commands(), test::written("1920x1080"));
    EXPECT_EQ(test::read_file(test::document_path), "<Other/>");
    std::filesystem::remove(test::document_path);
}

} // namespace qvtc::display
