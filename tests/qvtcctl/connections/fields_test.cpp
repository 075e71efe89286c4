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

// The fields that each client gets, as its launcher reads them.
TEST(QvtcctlFields, EachClientGetsItsOwn) {
    struct Case {
        std::string_view type;
        std::set<std::string_view> names;
    };
    const std::set<std::string_view> all{"id", "type", "name", "serverAddress"};
    const Case cases[] = {
        {"rdp", {"password",
                 "username",
                 "redirectAudio",
                 "useCompress",
                 "domain",
                 "isConnectStart",
                 "appFullpath",
                 "workDir",
                 "colorDepth",
                 "desktopBackground",
                 "fontSmooth",
                 "visualStyle",
                 "persistBitmap",
                 "rdpPort",
                 "dragShowContent",
                 "widgetAnimate",
                 "useRemoteFX",
                 "localStorage",
                 "useCustomRDPPort",
                 "audioPlayOnServer",
                 "useRdGateway",
                 "rdGatewayAddress",
                 "rdGatewayUsername",
                 "rdGatewayPassword",
                 "rdGatewayDomain",
                 "monitorSelect",
                 "multimedia",
                 "usbRedirection",
                 "multiTouch",
                 "useGFX"}},
        {"spice", {"port", "desktopBackground", "fontSmooth", "useRedirect"}},
        {"horizon",
         {"password", "username", "domain", "desktop", "monitorSelect", "vmwareProtocol"}},
        {"vnc", {"password"}},
        {"web", {}},
    };
    for (const Case& c : cases) {
        std::set<std::string_view> names;
        for (const Field& field : fields) {
            if (contains(field.used_by, *find_type(c.type))) names.insert(field.name);
        }
        std::set<std::string_view> expected = c.names;
        expected.insert(all.begin(), all.end());
        EXPECT_EQ(names, expected) << c.type;
    }
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
