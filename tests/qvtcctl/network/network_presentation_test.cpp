#include "qvtcctl/network/network_presentation.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlNetwork, SignalsAreSixBars) {
    EXPECT_EQ(signal_bars(0), "------");
    EXPECT_EQ(signal_bars(4), "####--");
    EXPECT_EQ(signal_bars(6), "######");
}

TEST(QvtcctlNetwork, ScansAreATableWithTheNetworkInUse) {
    const std::vector<NetworkInRange> networks = {{"Corp", false, "802.1X", 6},
                                                  {"Guest WiFi", true, "open", 1},
                                                  {"Zo\u00eb\x1b[2J", false, "wep", 0},
                                                  {"", false, "wpa2", 3}};
    EXPECT_EQ(scan_text(networks), "   NAME        SIGNAL  ENCRYPTION\n"
                                   "   Corp        ######  802.1X\n"
                                   "*  Guest WiFi  #-----  open\n"
                                   "   Zo\u00eb\\x1b[2J  ------  wep\n"
                                   "               ###---  wpa2\n");
    EXPECT_EQ(scan_text({}), "No networks are in range.\n");
    EXPECT_EQ(to_line(scan_json({networks[1]})),
              "{ \"networks\": [ { \"name\": \"Guest WiFi\", \"inUse\": true, \"signal\": 1, "
              "\"encryption\": \"open\" } ] }\n");
}

TEST(QvtcctlNetwork, PortsAreASentence) {
    EXPECT_EQ(port_sentence(Port::main, {}), "eth0 has no address.\n");
    EXPECT_EQ(port_sentence(Port::extra,
                            {true, "10.0.0.2", "255.0.0.0", "10.0.0.1", "9.9.9.9", "1.1.1.1"}),
              "eth1 has the address 10.0.0.2, mask 255.0.0.0, gateway 10.0.0.1, name servers "
              "9.9.9.9 and 1.1.1.1.\n");
    EXPECT_EQ(to_line(port_json(Port::wireless, std::nullopt)),
              "{ \"port\": \"wlan0\", \"present\": false }\n");
}

} // namespace
} // namespace qvtc::qvtcctl
