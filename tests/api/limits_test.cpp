#include "connections/documents.hpp"
#include "connections/fields.hpp"
#include "core/base64.hpp"
#include "core/log.hpp"
#include "core/params.hpp"
#include "display/brightness.hpp"
#include "network/wireless.hpp"
#include "qvtcapi/qvtcapi.h"
#include "store/numbered_store.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"
#include "system/host_name.hpp"

#include <gtest/gtest.h>
#include <limits>

/// The limits that the public header has names for are those that hold.
namespace qvtc {

namespace {

class Limits : public test::FreshTerminal {};

std::string letters(std::size_t count) { return std::string(count, 'x'); }

} // namespace

TEST_F(Limits, OfParameterStringsFieldsAndTexts) {
    EXPECT_EQ(QVTC_PARAMS_MAX, ParamTable::entry_count);
    EXPECT_EQ(QVTC_PARAM_NAME_MAX_BYTES, ParamTable::name_size - 1);
    EXPECT_EQ(QVTC_PARAM_VALUE_MAX_BYTES, ParamTable::value_size - 1);
    EXPECT_EQ(QVTC_FIELD_SIZE, connections::field_limit + 1);
    EXPECT_EQ(QVTC_VNC_PASSWORD_MAX_BYTES, connections::field_limit);
    EXPECT_EQ(QVTC_LOG_MESSAGE_MAX_BYTES, log_message_limit);
    EXPECT_EQ(QVTC_HOST_NAME_SIZE, system::host_name_size);
    EXPECT_EQ(QVTC_IDLE_MINUTES_MAX, std::numeric_limits<std::uint16_t>::max() / 60);
}

TEST_F(Limits, OfAPasswordIsTheLongestThatAFieldHoldsWhole) {
    EXPECT_LE(base64::encode(letters(QVTC_PASSWORD_MAX_BYTES)).size(), connections::field_limit);
    EXPECT_GT(base64::encode(letters(QVTC_PASSWORD_MAX_BYTES + 1)).size(),
              connections::field_limit);
}

TEST_F(Limits, OfANumberedTextHoldsForEveryKey) {
    test::ScriptedOs system;
    const unsigned longest_key = std::numeric_limits<int>::max();
    EXPECT_EQ(store::write_numbered(longest_key, letters(QVTC_NUMBERED_VALUE_MAX_BYTES).c_str()),
              0);
    EXPECT_EQ(
        store::write_numbered(longest_key, letters(QVTC_NUMBERED_VALUE_MAX_BYTES + 1).c_str()), -1);
}

TEST_F(Limits, OfANetworksPassword) {
    test::ScriptedOs system;
    const std::string longest = letters(QVTC_WIFI_PASSWORD_MAX_BYTES);
    network::join_network("ssid=61&encryptType=wpa2&password=" + longest + "y");
    EXPECT_EQ(system.record.back(),
              "run env LANG=en_US.UTF8 nmcli d wifi connect \"a\" password \"" + longest +
                  "\" wlan0 >/dev/null 2>&1 &");
}

TEST_F(Limits, OfBrightness) {
    test::ScriptedOs system;
    system.outputs = {"HDMI1\n"};
    display::set_brightness("brightness=1");
    EXPECT_EQ(system.record.back(), "run DISPLAY=:0.0 xrandr --output HDMI1 --brightness 0." +
                                        std::to_string(QVTC_BRIGHTNESS_MIN) + "0000");
}

} // namespace qvtc
