#include "display/exports.hpp"

#include "display_terminal.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::test {

namespace {

class DisplayExports : public DisplayTerminal {};

} // namespace

TEST_F(DisplayExports, TheCurrentResolutionGoesIntoTheCallersBuffer) {
    char out[256];
    std::fill(std::begin(out), std::end(out), '#');
    {
        ScriptedOs system;
        system.printed_lines = {"1920x1080", "1x1"};
        EXPECT_EQ(getcurrentdisp(out), 0);
        EXPECT_STREQ(out, "1920x1080");
        system.printed_lines = Texts{};
        EXPECT_EQ(getcurrentdisp(out), 0);
        EXPECT_STREQ(out, "");
        system.printed_lines = {std::string(1000, 'x')};
        EXPECT_EQ(getcurrentdisp(out), 0);
        EXPECT_EQ(out, std::string(254, 'x'));
        EXPECT_EQ(out[255], '#');
    }
    ScriptedOs system;
    EXPECT_EQ(getcurrentdisp(out), -1);
    EXPECT_EQ(out, std::string(254, 'x'));
    EXPECT_EQ(log_lines(), Texts{"[DEBUG] execute command failed: No such file or directory"});
}

TEST_F(DisplayExports, TheOfferedListIsAnObjectOfItsOwnForEachCall) {
    for (json_object* (*const getter)() : {qvgetdisplist, getdisplist}) {
        json_object* const first = getter();
        json_object* const second = getter();
        EXPECT_NE(first, second);
        json_object* const list = json_object_object_get(first, "list");
        ASSERT_EQ(json_object_array_length(list), 10U);
        EXPECT_STREQ(json_object_to_json_string(json_object_array_get_idx(list, 9)),
                     R"({ "value": "1600x900" })");
        json_object_put(first);
        json_object_put(second);
    }
    EXPECT_EQ(recorded_commands(), Texts{});
    EXPECT_FALSE(file_exists(document_path));
}

TEST_F(DisplayExports, AnIndexHasItsNumber) {
    EXPECT_EQ(GetDispIndex("10"), 10U);
    EXPECT_EQ(GetDispIndex("1"), 1U);
    EXPECT_EQ(GetDispIndex("11"), 0U);
    EXPECT_EQ(GetDispIndex(""), 0U);
}

} // namespace qvtc::test
