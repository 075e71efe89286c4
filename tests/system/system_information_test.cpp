#include "system/system_information.hpp"

#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/support.hpp"
#include "system/machine.hpp"

#include <gtest/gtest.h>
#include <sys/mount.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;

std::string shown() {
    return json_object_to_json_string_ext(system_information().get(), JSON_C_TO_STRING_PLAIN);
}

std::string member(const Json& object, const char* name) {
    return json_object_get_string(json_object_object_get(object.get(), name));
}

/// What a machine tells of itself, and what is to be made of it.
struct Machine {
    const char* name;
    const char* product_key;
    const char* storage;
    const char* memory;
    const char* processor;
    int processor_class;
    const char* device_type;
};

void PrintTo(const Machine& machine, std::ostream* stream) { *stream << machine.name; }

// clang-format off
constexpr Machine machines[] = {
    {"j1900-2gb-8gb-flash",        "RX10",  "8GB",   "2GB", "Intel(R) Celeron(R) CPU  J1900  @ 1.99GHz", 0,  "x86"},
    {"j3355-4gb-64gb-emmc",        "RX15",  "64GB",  "4GB", "Intel(R) Celeron(R) CPU J3355 @ 2.00GHz",   21, "x86"},
    {"1037u-4gb-120gb-disk",       "RX210", "128GB", "4GB", "Intel(R) Celeron(R) CPU 1037U @ 1.80GHz",   0,  "x86"},
    {"j3160-2gb-16gb-disk",        "RX220", "16GB",  "2GB", "Intel(R) Celeron(R) CPU  J3160  @ 1.60GHz", 0,  "x86"},
    {"n5095-8gb-240gb-disk",       "RX16",  "223GB", "8GB", "Intel(R) Celeron(R) N5095 @ 2.00GHz",       20, "x86RX16"},
    {"j4105-4gb-32gb-emmc",        "RX17",  "32GB",  "4GB", "Intel(R) Celeron(R) J4105 CPU @ 1.50GHz",   22, "x86"},
    {"n4020c-1gb-unreadable-disk", "RX19",  "8GB",   "1GB", "Intel(R) Celeron(R) N4020C CPU @ 1.10GHz",  23, "x86"},
    {"i5-16gb-no-disk",            "RX10",  "8GB",   "2GB", "Intel(R) Core(TM) i5-8250U CPU @ 1.60GHz",  0,  "x86"},
};
// clang-format on

/// The value of "name=VALUE" in the lines of a file.
std::string value_in(const std::string& path, const std::string& name) {
    for (const std::string& line : test::lines_of(test::read_file(path))) {
        if (line.starts_with(name + "=")) return line.substr(name.size() + 1);
    }
    return "";
}

class SystemInformationOf : public testing::TestWithParam<Machine> {
  protected:
    void SetUp() override {
        const std::string folder =
            std::string(QVTC_CAPTURES_DIRECTORY "/machines/") + GetParam().name;
        for (const std::string file : {"cpuinfo", "meminfo"}) {
            ASSERT_EQ(mount((folder + "/" + file).c_str(), ("/proc/" + file).c_str(), nullptr,
                            MS_BIND, nullptr),
                      0);
        }
        const std::string disk = value_in(folder + "/machine", "disk");
        if (!disk.empty()) test::write_file("/dev/" + disk, "");
        const std::string bytes = value_in(folder + "/machine", "bytes");
        blockdev_.prints(bytes.empty() ? "" : bytes + "\n");
        uname_.prints(value_in(folder + "/machine", "kernel") + "\n");
        ifconfig_.prints("eth0: flags=4163<UP>\n        ether 52:54:00:12:34:56  (Ethernet)\n");
    }

    test::StandIn blockdev_{"blockdev"};
    test::StandIn uname_{"uname"};
    test::StandIn ifconfig_{"ifconfig"};
    test::StandIn ip_{"ip"};
};

} // namespace

TEST_P(SystemInformationOf, IsRight) {
    const Machine& machine = GetParam();
    store::store_setting(store::keys::device_identity, "123456");
    const Json facts = system_information();
    EXPECT_STREQ(
        json_object_to_json_string_ext(facts.get(), JSON_C_TO_STRING_PLAIN),
        (std::string(R"({"hostname":"TC123456","productName":"TC123456","productKey":")") +
         machine.product_key + R"(","hardCap":")" + machine.storage + R"(","memCap":")" +
         machine.memory + R"(","cpuInfo":")" + machine.processor +
         R"(","wiredMac":"52:54:00:12:34:56","wirelessMac":"N\/A","updateDate":"20170801175612",)"
         R"("logoDate":"20170801175612","osInfo":"2.0","rdpVersion":"10.0",)"
         R"("spiceVersion":"0.12.14","velopaneVersion":"2.0.0","vmwareViewVersion":"2111.1",)"
         R"("citrixReceiverVersion":"21.4.0.11","hdpVersion":"1.8.10007",)"
         R"("hardwareVersion":"2.0.0","deviceType":")" +
         machine.device_type + "\"}")
            .c_str());
    EXPECT_EQ(processor_class(), machine.processor_class);
}

INSTANTIATE_TEST_SUITE_P(Machines, SystemInformationOf, testing::ValuesIn(machines),
                         [](const auto& test) {
                             std::string name = test.param.name;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(SystemInformation, AsksInOrder) {
    const test::StandIn ip("ip");
    const test::StandIn ifconfig("ifconfig");
    test::write_file("/home/root/lastupdate", "20260102030405\n");
    test::write_file("/home/root/logoupdate", "none\n20260203040506\n");
    shown();
    Texts commands = test::recorded_commands();
    // Whether the machine has a disk is its own affair.
    std::erase_if(commands, [](const auto& text) { return text.starts_with("blockdev"); });
    EXPECT_EQ(commands,
              (Texts{"cat /proc/cpuinfo |grep \"model name\" |awk -F': ' '{print $2}'|sed -n 1p",
                     "cat /proc/meminfo |grep \"MemTotal\" |awk -F' ' '{print$2}'",
                     "ifconfig eth0 |grep ether |awk -F' ' '{print$2}'", "ip addr |grep wlan0",
                     "cat /proc/cpuinfo |grep \"model name\" |sed -n 1p",
                     "cat /home/root/lastupdate |grep [0-9]",
                     "cat /home/root/logoupdate |grep [0-9]", "uname -a"}));
}

TEST(SystemInformation, ReadsTheDatesThatToolsLeave) {
    test::write_file("/home/root/lastupdate", "20260102030405\n");
    test::write_file("/home/root/logoupdate", "none\n");
    const Json facts = system_information();
    EXPECT_EQ(member(facts, "updateDate"), "20260102030405");
    EXPECT_EQ(member(facts, "logoDate"), "");
    test::write_file("/home/root/lastupdate", std::string(500, '7') + "\n");
    EXPECT_EQ(member(system_information(), "updateDate"), std::string(63, '7'));
}

TEST(SystemInformation, TellsTheWirelessAddressWhereThereIsSuchHardware) {
    test::StandIn ip("ip");
    test::StandIn ifconfig("ifconfig");
    ip.prints("4: wlan0: <BROADCAST> mtu 1500\n");
    ifconfig.prints("        ether 52:54:00:00:00:07  txqueuelen 1000\n");
    EXPECT_EQ(member(system_information(), "wirelessMac"), "52:54:00:00:00:07");
    ifconfig.prints("");
    const Json facts = system_information();
    EXPECT_EQ(member(facts, "wirelessMac"), "N/A");
    EXPECT_EQ(member(facts, "wiredMac"), "N/A");
}

TEST(SystemInformation, CarriesTheHostNameTwiceAsFarAsItFits) {
    EXPECT_EQ(member(system_information(), "hostname"), "ThinClient");
    store::store_setting(store::keys::host_name, std::string(100, 'h'));
    const Json facts = system_information();
    EXPECT_EQ(member(facts, "hostname"), std::string(63, 'h'));
    EXPECT_EQ(member(facts, "productName"), std::string(63, 'h'));
}

TEST(SystemInformation, SurvivesProgramsThatSayTooMuch) {
    for (const std::string name : {"cat", "uname", "ifconfig", "ip", "blockdev"}) {
        test::StandIn program(name);
        program.prints(std::string(300'000, 'x'));
        EXPECT_NE(system_information(), nullptr) << name;
        program.prints("\xff\xfe \"'\\ \n");
        EXPECT_NE(system_information(), nullptr) << name;
    }
}

} // namespace qvtc::system
