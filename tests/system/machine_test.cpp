#include "system/machine.hpp"

#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;

constexpr std::int64_t megabyte = 1024; // in kB
constexpr std::int64_t gigabyte = 1024LL * 1024 * 1024;

const std::string first_processor = "cat /proc/cpuinfo |grep \"model name\" |sed -n 1p";

} // namespace

TEST(Machine, AModelGoesByTheProcessor) {
    const std::pair<const char*, const char*> cases[] = {
        {"model name\t: Intel(R) Celeron(R) CPU  J1900  @ 1.99GHz", "RX10"},
        {"model name\t: Intel(R) Celeron(R) CPU  J1800  @ 2.41GHz", "RX10"},
        {"model name\t: Intel(R) Celeron(R) CPU J3355 @ 2.00GHz", "RX15"},
        {"model name\t: Intel(R) Celeron(R) CPU 1037U @ 1.80GHz", "RX210"},
        {"model name\t: Intel(R) Celeron(R) CPU  J3160  @ 1.60GHz", "RX220"},
        {"model name\t: Intel(R) Celeron(R) N5095 @ 2.00GHz", "RX16"},
        {"model name\t: Intel(R) Celeron(R) J4105 CPU @ 1.50GHz", "RX17"},
        {"model name\t: Intel(R) Celeron(R) N4020C CPU @ 1.10GHz", "RX19"},
        {"model name\t: Intel(R) Celeron(R) N4020 CPU @ 1.10GHz", "RX10"},
        {"J3160 J3355 N5095", "RX15"},
        {"N4020C 1037U", "RX210"},
        {"", "RX10"},
        {"j3355", "RX10"},
    };
    for (const auto& [line, code] : cases) EXPECT_EQ(model_of(line), code) << line;
}

TEST(Machine, TheModelIsReadFromTheFirstProcessor) {
    test::ScriptedOs os;
    os.outputs = {"model name\t: Intel(R) Celeron(R) N5095 @ 2.00GHz\n"};
    EXPECT_EQ(model_code(), "RX16");
    EXPECT_EQ(os.record, Texts{"capture 128 " + first_processor});
    // Its last character is taken for the newline.
    os.outputs = {"N4020C"};
    EXPECT_EQ(model_code(), "RX10");
    EXPECT_EQ(model_code(), "RX10");
}

TEST(Machine, AClassGoesByTheFirstProcessorThatIsFound) {
    auto count = [](const char* name) {
        return std::string("capture 1024 cat /proc/cpuinfo|grep '") + name + "' |wc -l";
    };
    struct Case {
        std::deque<std::string> outputs;
        int number;
        std::size_t questions;
    };
    const Case cases[] = {{{"4\n"}, 20, 1},
                          {{"0\n", "2\n"}, 21, 2},
                          {{"0\n", "0\n", "4\n"}, 22, 3},
                          {{"0\n", "0\n", "0\n", "1\n"}, 23, 4},
                          {{"0\n", "0\n", "0\n", "0\n"}, 0, 4},
                          {{"", "x", "-1\n", ""}, 0, 4}};
    const Texts all = {count("N5095"), count("J3355"), count("J4105"), count("N4020C")};
    for (const Case& each : cases) {
        test::ScriptedOs os;
        os.outputs = each.outputs;
        EXPECT_EQ(processor_class(), each.number);
        EXPECT_EQ(os.record, Texts(all.begin(), all.begin() + static_cast<long>(each.questions)));
    }
}

TEST(Machine, MemoryComesInClasses) {
    const std::pair<std::int64_t, int> cases[] = {
        {0, 2},    {512, 2},  {513, 1},  {1024, 1}, {1025, 2}, {1945, 2},  {2048, 2}, {2049, 4},
        {3800, 4}, {4096, 4}, {4097, 8}, {8192, 8}, {8193, 2}, {16000, 2}, {-1, 2}};
    for (const auto& [megabytes, gigabytes] : cases)
        EXPECT_EQ(memory_class(megabytes * megabyte), gigabytes) << megabytes;
    EXPECT_EQ(memory_class(513 * megabyte - 1), 2);
}

TEST(Machine, StorageComesInClassesWhereThereIsOne) {
    const std::pair<std::int64_t, std::int64_t> cases[] = {
        {0, 0},   {1, 1},   {2, 8},    {8, 8},     {9, 16},    {16, 16},   {17, 32},  {32, 32},
        {33, 64}, {64, 64}, {65, 128}, {111, 128}, {128, 128}, {129, 129}, {223, 223}};
    for (const auto& [size, stands_for] : cases)
        EXPECT_EQ(storage_class(size * gigabyte), stands_for) << size;
    EXPECT_EQ(storage_class(240'057'409'536), 223);
    EXPECT_EQ(storage_class(2 * gigabyte - 1), 1);
}

TEST(Machine, TheMemoryChipIsAskedBeforeTheDisk) {
    test::ScriptedOs os;
    EXPECT_EQ(storage_capacity(), 8);
    EXPECT_TRUE(os.record.empty());

    os.files = {"/dev/sda"};
    os.outputs = {"128035676160\n"};
    EXPECT_EQ(storage_capacity(), 128);
    os.files = {"/dev/sda", "/dev/mmcblk0"};
    os.outputs = {"31268536320\n"};
    EXPECT_EQ(storage_capacity(), 32);
    EXPECT_EQ(storage_capacity(), std::nullopt);
    EXPECT_EQ(os.record, (Texts{"capture 128 blockdev --getsize64 /dev/sda",
                                "capture 128 blockdev --getsize64 /dev/mmcblk0",
                                "capture 128 blockdev --getsize64 /dev/mmcblk0"}));
}

TEST(Machine, TheProcessorsNameIsWithoutItsNewline) {
    test::ScriptedOs os;
    os.outputs = {"Intel(R) Celeron(R) N5095 @ 2.00GHz\n"};
    EXPECT_EQ(processor_name(), "Intel(R) Celeron(R) N5095 @ 2.00GHz");
    EXPECT_EQ(processor_name(), "");
    EXPECT_EQ(os.record[0], "capture 1024 cat /proc/cpuinfo |grep \"model name\" |awk -F': ' "
                            "'{print $2}'|sed -n 1p");
}

TEST(Machine, ReadsThisMachinesMemory) {
    EXPECT_GE(memory_capacity(), 1);
    EXPECT_EQ(test::recorded_commands(),
              Texts{"cat /proc/meminfo |grep \"MemTotal\" |awk -F' ' '{print$2}'"});
}

TEST(Machine, AnAddressIsReadFromTheInterfacesDescription) {
    test::StandIn ifconfig("ifconfig");
    ifconfig.prints("eth0: flags=4163<UP>  mtu 1500\n"
                    "        ether 52:54:00:12:34:56  txqueuelen 1000  (Ethernet)\n");
    EXPECT_EQ(hardware_address("eth0"), "52:54:00:12:34:56");
    EXPECT_EQ(test::recorded_commands(), Texts{"ifconfig eth0 |grep ether |awk -F' ' '{print$2}'"});
    ifconfig.prints("");
    EXPECT_EQ(hardware_address("eth1"), std::nullopt);
    EXPECT_EQ(hardware_address("x; touch /tmp/owned"), std::nullopt);
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
}

} // namespace qvtc::system
