#include "qvtcctl/clients/running_clients.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlRunningClients, AClientServesTheConnectionInItsArguments) {
    Record record;
    record[field_index("name")] = "office";
    record[field_index("serverAddress")] = "10.0.0.5";
    const ConnectionType& rdp = *find_type("rdp");
    const ConnectionType& spice = *find_type("spice");
    const ConnectionType& vnc = *find_type("vnc");
    const auto is_served_by = [&](const ConnectionType& type, std::vector<std::string> arguments) {
        return serves({1, std::move(arguments), {}}, type, record);
    };
    EXPECT_TRUE(is_served_by(rdp, {"xfreerdp", "/t:office", "/v:10.0.0.5", "/f"}));
    EXPECT_FALSE(is_served_by(rdp, {"xfreerdp", "/t:other", "/v:10.0.0.5", "/f"}));
    EXPECT_FALSE(is_served_by(rdp, {"xfreerdp", "/t:office", "/v:10.0.0.55", "/f"}));
    EXPECT_TRUE(is_served_by(spice, {"remote-viewer", "-f", "spice://10.0.0.5"}));
    EXPECT_FALSE(is_served_by(spice, {"remote-viewer", "-f", "spice://10.0.0.55"}));
    EXPECT_FALSE(is_served_by(spice, {"remote-viewer", "-f", "spice://10.0.0.5:5930"}));
    EXPECT_TRUE(is_served_by(vnc, {"vncviewer", "FullScreen", "10.0.0.5"}));
    EXPECT_FALSE(is_served_by(vnc, {"vncviewer", "FullScreen", "10.0.0.5::5901"}));
    record[field_index("port")] = "5930";
    record[field_index("password")] = "secret";
    EXPECT_TRUE(is_served_by(spice, {"remote-viewer", "-f", "spice://10.0.0.5:5930"}));
    EXPECT_TRUE(is_served_by(vnc, {"vncviewer", "FullScreen", "passwd", "secret10.0.0.5"}));
}

} // namespace
} // namespace qvtc::qvtcctl
