#include "qvtcctl/connections/fields.hpp"

#include "qvtcctl/base/refusal.hpp"

#include <set>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlFields, NamesAndMeaningsAreThereAndNoNameIsTwice) {
    std::set<std::string_view> names;
    for (const Field& field : fields) {
        EXPECT_FALSE(field.meaning.empty()) << field.name;
        EXPECT_TRUE(names.insert(field.name).second) << field.name;
    }
    EXPECT_EQ(names.size(), 51U);
}

TEST(QvtcctlFields, OnlyChoicesHaveChoices) {
    for (const Field& field : fields) {
        EXPECT_EQ(field.kind == Kind::choice, !field.choices.empty()) << field.name;
    }
}

TEST(QvtcctlFields, UnknownOnesAreRefusedWithASuggestion) {
    EXPECT_EQ(require_field("useGFX"), field_index("useGFX"));
    try {
        require_field("serveraddres");
        FAIL();
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.code(), ExitCode::bad_usage);
        EXPECT_STREQ(refusal.what(), "\"serveraddres\" is not a field (did you mean "
                                     "\"serverAddress\"?): \"qvtcctl connection fields\" lists "
                                     "them.");
    }
}

} // namespace
} // namespace qvtc::qvtcctl
