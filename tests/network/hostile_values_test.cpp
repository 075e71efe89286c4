// Values that would like to be more than values: whatever stands in whichever parameter, nothing
// runs but the documented programs, and what the system's scripts read is the value itself.

#include "network/exports.hpp"

#include "connections/documents.hpp"
#include "core/text.hpp"
#include "network/network_commands.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace qvtc::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* scripts = "/etc/sysconfig/network-scripts";

std::vector<std::string> hostile_values() {
    std::vector<std::string> values = {
        "$(touch /tmp/owned)",
        "`touch /tmp/owned`",
        "'; touch /tmp/owned; '",
        "\"; touch /tmp/owned; \"",
        "x; touch /tmp/owned",
        "x | touch /tmp/owned",
        "x\ntouch /tmp/owned\n",
        "x\n$(touch /tmp/owned)\n",
        "\ntouch /tmp/owned",
        "> /tmp/owned",
        "1>/tmp/owned",
        "5",
        "*",
        "~root",
        "#x",
        "-n",
        "-rf /",
        "../../../tmp/owned",
        "/tmp/owned",
        "..",
        "a;b;c;d;e;f;g",
        "a\\nb\\tc\\",
        "a'b\"c",
        "','conf':'1",
        "%s%n%d",
        " leading and trailing ",
        "Zoë €5 😀",
        "\xff\xfe\x80",
        "\x01\x1b[31m",
        std::string(10'239, 'x'),
        std::string(10'240, '\''),
        std::string(100'000, '$'),
        "",
    };
    return values;
}

std::string hex_of(const std::string& value) {
    std::string hex;
    for (const char c : value) hex += textf("%02x", static_cast<unsigned>(c) & 255U);
    return hex;
}

/// A terminal with stand-ins for all that the network's setters run.
class HostileNetwork : public FreshTerminal {
  protected:
    HostileNetwork() {
        fs::create_directories("/tmp/working-directory");
        fs::current_path("/tmp/working-directory");
    }
    ~HostileNetwork() override {
        EXPECT_FALSE(file_exists("/tmp/owned"));
        EXPECT_TRUE(fs::is_empty("/tmp/working-directory"));
        for (const auto& entry : fs::recursive_directory_iterator("/etc/sysconfig")) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(name == "network" || name == "network-scripts" ||
                        (name.starts_with("ifcfg-") && entry.path().parent_path() == scripts))
                << entry.path();
        }
        EXPECT_EQ(lines_of(read_file("/etc/passwd")).size(), users);
    }

    const std::size_t users = lines_of(read_file("/etc/passwd")).size();
    StandIn ifconfig{"ifconfig"};
    StandIn ip{"ip"};
    StandIn route{"route"};
    StandIn nmcli{"nmcli"};
    StandIn ifup{"ifup"};
    StandIn ifdown{"ifdown"};
    StandIn killall{"killall"};
    StandIn dhclient{"dhclient"};
    StandIn systemctl{"systemctl"};
};

/// What a script that sources the file finds in a variable.
std::string sourced(const std::string& file, const std::string& name) {
    write_file("/tmp/source", ". '" + file + "'\nprintf '<%s>' \"$" + name + "\"\n");
    return capture_stdout([] { EXPECT_EQ(std::system("bash /tmp/source"), 0); });
}

int call(int (*setter)(const char*), std::string params) { return setter(params.data()); }

} // namespace

TEST_F(HostileNetwork, AddressesRunNothing) {
    for (const std::string& value : hostile_values()) {
        std::string keys;
        for (const char* const key : {"mask", "gateway", "dns1", "dns2", "ip"})
            keys += std::string("&") + key + "=" + value;
        const std::string ssid = "&ssid=" + hex_of("Office");
        for (const std::string& params :
             {"conf=1" + keys + ssid, "conf=" + value + "&ip=10.0.0.2&gateway=10.0.0.1" + ssid}) {
            call(qvsetwiredconf, params);
            call(qvsetexwiredconf, params);
            call(qvsetwirelessconf, params);
        }
        // The scripts that bring the interfaces up read these files.
        sourced("/etc/sysconfig/network-scripts/ifcfg-eth0", "BOOTPROTO");
        sourced("/etc/sysconfig/network-scripts/ifcfg-Office", "BOOTPROTO");
        sourced("/etc/sysconfig/network", "GATEWAY");
        ASSERT_FALSE(file_exists("/tmp/owned")) << value.substr(0, 50);
    }
}

TEST_F(HostileNetwork, AddressesReachTheFilesAsTheyAre) {
    for (const std::string& value : hostile_values()) {
        // What a parameter string can carry, and what a field holds.
        if (value.empty() || value.size() > 60 || contains(value, ";")) continue;
        const std::string line = one_line(value);
        const std::string expected = "<" + line + ">";
        if (line == "-n") continue; // refused
        call(qvsetwiredconf, "conf=1&ip=10.0.0.2&mask=" + value + "&gateway=" + value);
        EXPECT_EQ(sourced(std::string(scripts) + "/ifcfg-eth0", "NETMASK"), expected);
        EXPECT_EQ(sourced("/etc/sysconfig/network", "GATEWAY"), expected);
        EXPECT_EQ(read_file("/tmp/abcd-eth0"), line + "\n");
        fs::remove(std::string(scripts) + "/ifcfg-Office");
        call(qvsetwirelessconf,
             "conf=1&ip=10.0.0.2&gateway=" + value + "&ssid=" + hex_of("Office"));
        EXPECT_EQ(sourced(std::string(scripts) + "/ifcfg-Office", "GATEWAY"),
                  remove_all(expected, '\\'));
    }
}

TEST_F(HostileNetwork, AProfileIsTheSameUnderAPlainShell) {
    QVTC_NEED_PROGRAM("dash");
    const std::string profile = std::string(scripts) + "/ifcfg-Office";
    for (const std::string& value : hostile_values()) {
        if (value.size() > 60 || contains(value, ";")) continue; // it shifts the list
        fs::remove(profile);
        forget_commands();
        call(qvsetwirelessconf,
             "conf=1&ip=10.0.0.2&gateway=" + value + "&dns1=" + value + "&ssid=4f6666696365");
        std::string lines;
        for (const std::string& command : recorded_commands()) {
            if (command.starts_with("echo ")) lines += command + "\n";
        }
        const std::string expected = read_file(profile);
        fs::remove(profile);
        write_file("/tmp/lines", lines);
        ASSERT_EQ(std::system("dash /tmp/lines"), 0);
        EXPECT_EQ(read_file(profile), expected) << value;
    }
}

TEST_F(HostileNetwork, AnEditedProfileSetsNoCommandFree) {
    // The first call's lines are removed by the second one's: no half of a value may stay.
    for (const std::string& value : hostile_values()) {
        const std::string ssid = "&ssid=" + hex_of("Office");
        call(qvsetwirelessconf, "conf=1&ip=10.0.0.2&gateway=" + value + ssid);
        call(qvsetwirelessconf, "conf=0" + ssid);
        EXPECT_EQ(sourced(std::string(scripts) + "/ifcfg-Office", "GATEWAY"), "<>");
        EXPECT_FALSE(file_exists("/tmp/owned"));
    }
}

TEST_F(HostileNetwork, NamesOfNetworksReachNmcliAsTheyAre) {
    for (std::string value : hostile_values()) {
        if (value.empty() || value.size() > 127) continue;
        nmcli.forget_calls();
        call(qvsetwifiauth, "ssid=" + hex_of(value) + "&encryptType=open");
        ASSERT_TRUE(wait_until([&] { return nmcli.calls().size() == 3; })) << value;
        EXPECT_EQ(nmcli.calls().back(),
                  (StandIn::Arguments{"d", "wifi", "connect", value, "password", "", "wlan0"}));
        call(qvsetwirelessconf, "conf=1&ip=10.0.0.2&ssid=" + hex_of(value));
        const std::string file = std::string(scripts) + "/ifcfg-" + replace_all(value, '/', '-');
        EXPECT_EQ(sourced(replace_all(std::string_view(file), "'", "'\\''"), "IPADDR"),
                  "<10.0.0.2>")
            << value;
        // Only this network's files go.
        write_file(std::string(scripts) + "/ifcfg-zz", "");
        call(qvsetwifiauth, "ssid=" + hex_of(value) + "&password=x");
        EXPECT_FALSE(file_exists(file)) << value;
        EXPECT_TRUE(file_exists(std::string(scripts) + "/ifcfg-zz")) << value;
        ASSERT_TRUE(wait_until([&] { return nmcli.calls().size() >= 9; }));
    }
}

TEST_F(HostileNetwork, PasswordsAndUsersReachNmcliAsTheyAre) {
    for (std::string value : hostile_values()) {
        if (value.empty() || value.size() > 127) continue;
        nmcli.forget_calls();
        call(qvsetwifiauth,
             "ssid=436f7270&encryptType=802.1X&username=" + value + "&password=" + value);
        if (value.ends_with('\n')) value.pop_back();
        ASSERT_TRUE(wait_until([&] { return nmcli.calls().size() == 3; })) << value;
        const StandIn::Arguments arguments = nmcli.calls().back();
        ASSERT_EQ(arguments.size(), 21U) << value;
        EXPECT_EQ(arguments[18], value);
        EXPECT_EQ(arguments[20], value);
    }
}

TEST_F(HostileNetwork, DevicesRunNothingAndStayInTheDirectory) {
    ifconfig.prints("<UP,BROADCAST,RUNNING,MULTICAST>\n");
    std::array<char, 1024> text{};
    netconf record;
    for (const std::string& value : hostile_values()) {
        call(qvsetdefaultroute, "default=" + value);
        if (value.size() > 200) continue;
        wiredconf_init(&record);
        json_object_put(getwiredconf(value.c_str()));
        getnetconf(value.c_str(), &record);
        getgateway(value.c_str(), text.data());
        networkstatus(value.c_str());
        savenetconf(value.c_str(), "1;10.0.0.2;255.0.0.0;10.0.0.1", 0);
        resetnetwork(value.c_str());
        network_restart(value.c_str());
        if (value.empty()) continue;
        EXPECT_EQ(ifup.calls().back(), StandIn::Arguments{value});
        ASSERT_FALSE(file_exists("/tmp/owned")) << value;
    }
}

TEST_F(HostileNetwork, SwitchesRunNothing) {
    for (const std::string& value : hostile_values()) {
        call(qvsetwifionoff, "useWifi=" + value);
        json_object_put(qvgetwifionoff());
        json_object_put(qvgetwifilist());
    }
}

} // namespace qvtc::test
