#include "qvtcctl/connections/assignments.hpp"

#include "refusals.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::refusal_of;

TEST(QvtcctlAssignments, AreSplitAtTheFirstEqualsSign) {
    const std::vector<Assignment> read = parse_assignments({"name=a=b", "domain=", "username=x"});
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0].field, field_index("name"));
    EXPECT_EQ(read[0].value, "a=b");
    EXPECT_EQ(read[1].field, field_index("domain"));
    EXPECT_EQ(read[1].value, "");
    EXPECT_EQ(read[2].field, field_index("username"));
    EXPECT_EQ(read[2].value, "x");
}

TEST(QvtcctlAssignments, WrongOnesAreRefused) {
    struct Case {
        std::vector<std::string> words;
        std::string_view message;
    };
    const Case cases[] = {
        {{"name"}, "expected FIELD=VALUE, got \"name\"."},
        {{"=x"}, "expected FIELD=VALUE, got \"=x\"."},
        {{"nam=x"},
         "\"nam\" is not a field (did you mean \"name\"?): \"qvtcctl connection fields\" lists "
         "them."},
        {{"name=a", "name=b"}, "name is given twice."},
        {{"id=33"}, "id cannot be changed. Remove the connection and add a new one instead."},
        {{"password=secret"},
         "password is not taken from the command line, which everybody on the machine can read. "
         "Use "
         "--password, which asks for it, or --password-stdin."},
        {{"rdGatewayPassword=secret"},
         "rdGatewayPassword is not taken from the command line, which everybody on the machine can "
         "read. Use --gateway-password, which asks for it, or --gateway-password-stdin."},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(refusal_of([&] { parse_assignments(c.words); }), c.message);
    }
}

TEST(QvtcctlAssignments, AnEmptyPasswordMayBeNamed) {
    EXPECT_EQ(parse_assignments({"password="}).front().value, "");
}

TEST(QvtcctlAssignments, AreCheckedWhenTheyAreApplied) {
    Record record;
    record[field_index("domain")] = "old";
    const ConnectionType& rdp = *find_type("rdp");
    apply(parse_assignments({"domain=", "name=office"}), rdp, record);
    EXPECT_EQ(record[field_index("domain")], "");
    EXPECT_EQ(record.name(), "office");
    EXPECT_EQ(refusal_of([&] { apply(parse_assignments({"rdpPort=x"}), rdp, record); }),
              "rdpPort \"x\" is not a valid port. Give a number from 1 to 65535.");
}

TEST(QvtcctlAssignments, AStoredValueThatWouldBeLostStopsTheChange) {
    Record record;
    EXPECT_EQ(refusal_of([&] { require_carried(record); }), "");
    record[field_index("workDir")] = "C:\\Users";
    EXPECT_EQ(refusal_of([&] { require_carried(record); }),
              "a change would lose the stored workDir \"C:\\Users\", which contains \"\\\", which "
              "cannot be stored. Give it a new value in the same command: workDir=VALUE.");
    record[field_index("workDir")] = "";
    record[field_index("password")] = "a\\b";
    EXPECT_EQ(
        refusal_of([&] { require_carried(record); }),
        "a change would lose the stored password, which contains \"\\\", which cannot be stored. "
        "Give it a new value in the same command: --password.");
}

} // namespace
} // namespace qvtc::qvtcctl
