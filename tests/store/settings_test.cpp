#include "store/settings.hpp"

#include "store/settings_document.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::test {

namespace {

class Settings : public SettingsDocument {};

} // namespace

TEST_F(Settings, LiveUnderTheDevicesItem) {
    capture_stderr([] {
        EXPECT_EQ(store::setting(store::keys::language), "");
        EXPECT_TRUE(store::store_setting(store::keys::language, "en_US"));
    });
    EXPECT_EQ(document_text(), document_of("configItem", "tc_config_param_8", "en_US"));
    EXPECT_EQ(store::setting("tc_config_param_8"), "en_US");
    EXPECT_EQ(store::setting("tc_config_param_9"), "");
}

TEST_F(Settings, HaveNoLimitOfACallersBuffer) {
    const std::string value = std::string(5000, 'x') + R"(&\)";
    capture_stderr([&] { EXPECT_TRUE(store::store_setting("k", value)); });
    EXPECT_EQ(store::setting("k"), value);
}

TEST_F(Settings, AreRefusedByADocumentThatIsNotOurs) {
    write_file(document_path, "<Other/>");
    EXPECT_FALSE(store::store_setting("k", "v"));
    EXPECT_EQ(store::setting("k"), "");
    EXPECT_EQ(document_text(), "<Other/>");
}

TEST_F(Settings, AreRefusedUnderAKeyThatIsNoName) {
    capture_stderr([] { EXPECT_FALSE(store::store_setting("no name", "v")); });
    EXPECT_FALSE(file_exists(document_path));
}

} // namespace qvtc::test
