#include "qvtcctl/connections/record.hpp"

#include <algorithm>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlRecord, ParametersHoldAllFieldsInTheirOrder) {
    Record record;
    record.set_identity(33, *find_type("rdp"));
    record[field_index("name")] = "office";
    record[field_index("useGFX")] = "on";
    const std::string parameters = to_parameters(record);
    EXPECT_TRUE(parameters.starts_with("id=33&type=1&name=office&serverAddress=&port=&"))
        << parameters;
    EXPECT_TRUE(parameters.ends_with("&usbRedirection=&multiTouch=&useGFX=on")) << parameters;
    EXPECT_EQ(std::count(parameters.begin(), parameters.end(), '='), 51);
    EXPECT_EQ(std::count(parameters.begin(), parameters.end(), '&'), 50);
}

TEST(QvtcctlRecord, AmpersandsTravelAsPercentSigns) {
    Record record;
    record[field_index("serverAddress")] = "http://a/?b&c";
    EXPECT_NE(to_parameters(record).find("&serverAddress=http://a/?b%c&"), std::string::npos);
}

TEST(QvtcctlRecord, NewOnesHaveNoId) {
    Record record;
    record.set_identity(std::nullopt, *find_type("web"));
    EXPECT_EQ(record.id(), std::nullopt);
    EXPECT_TRUE(to_parameters(record).starts_with("id=&type=9&"));
}

TEST(QvtcctlRecord, LabelsNameThem) {
    Record record;
    EXPECT_EQ(label_of(33, record), "33");
    record[field_index("name")] = "off\x1b"
                                  "ice";
    EXPECT_EQ(label_of(33, record), "33 (off\\x1bice)");
}

} // namespace
} // namespace qvtc::qvtcctl
