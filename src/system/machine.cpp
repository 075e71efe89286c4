#include "system/machine.hpp"

#include <cstdlib>

#include "core/command.hpp"
#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::system {

namespace {

struct Model {
    const char* processor;
    const char* code;
};
constexpr const char* oldest_model = "RX10";
// The first row that fits decides.
constexpr Model models[] = {
    {"J1900", oldest_model}, {"J1800", oldest_model}, {"J3355", "RX15"}, {"1037U", "RX210"},
    {"J3160", "RX220"},      {"N5095", "RX16"},       {"J4105", "RX17"}, {"N4020C", "RX19"},
};

struct ProcessorClass {
    const char* processor;
    int number;
};
constexpr ProcessorClass processor_classes[] = {
    {"N5095", 20}, {"J3355", 21}, {"J4105", 22}, {"N4020C", 23}};

struct SizeClass {
    std::int64_t from, to, stands_for;
};
constexpr SizeClass memory_classes[] = {{4097, 8192, 8}, {2049, 4096, 4}, {513, 1024, 1}}; // in MB
constexpr int other_memory = 2;
constexpr SizeClass storage_classes[] = {
    {65, 128, 128}, {33, 64, 64}, {17, 32, 32}, {9, 16, 16}, {2, 8, 8}}; // in GB
constexpr std::int64_t storage_without_disk = 8;

template <typename Classes>
std::int64_t class_of(const Classes& classes, std::int64_t size, std::int64_t otherwise) {
    for (const SizeClass& each : classes) {
        if (size >= each.from && size <= each.to) return each.stands_for;
    }
    return otherwise;
}

/// Without its last character, which is taken to be the newline.
std::string without_newline(std::string line) {
    if (!line.empty()) line.pop_back();
    return line;
}

} // namespace

std::string_view model_of(std::string_view processor_line) {
    for (const Model& model : models) {
        if (contains(processor_line, model.processor)) return model.code;
    }
    return oldest_model;
}

int memory_class(std::int64_t kilobytes) {
    // Deliberate: what fits no class, more than 8 GB included, counts as 2 GB.
    return static_cast<int>(class_of(memory_classes, kilobytes / 1024, other_memory));
}

std::int64_t storage_class(std::int64_t bytes) {
    const std::int64_t gigabytes = bytes / (1024LL * 1024 * 1024);
    return class_of(storage_classes, gigabytes, gigabytes);
}

std::string model_code() {
    const std::string line = os().capture("cat /proc/cpuinfo |grep \"model name\" |sed -n 1p", 128);
    return std::string(model_of(without_newline(line)));
}

int processor_class() {
    for (const ProcessorClass& each : processor_classes) {
        const std::string count =
            os().capture(textf("cat /proc/cpuinfo|grep '%s' |wc -l", each.processor), 1024);
        if (std::atoi(count.c_str()) > 0) return each.number;
    }
    return 0;
}

std::string processor_name() {
    return without_newline(os().capture(
        "cat /proc/cpuinfo |grep \"model name\" |awk -F': ' '{print $2}'|sed -n 1p", 1024));
}

int memory_capacity() {
    const auto kilobytes =
        first_line("cat /proc/meminfo |grep \"MemTotal\" |awk -F' ' '{print$2}'");
    return memory_class(kilobytes ? std::atoll(kilobytes->c_str()) : 0);
}

std::optional<std::int64_t> storage_capacity() {
    for (const char* const disk : {"/dev/mmcblk0", "/dev/sda"}) {
        if (!os().exists(disk)) continue;
        const std::string bytes = os().capture(textf("blockdev --getsize64 %s", disk), 128);
        if (bytes.empty()) return std::nullopt;
        return storage_class(std::atoll(bytes.c_str()));
    }
    return storage_without_disk;
}

std::optional<std::string> hardware_address(const std::string& device) {
    return first_line(
        textf("ifconfig %s |grep ether |awk -F' ' '{print$2}'", shell::word(device).c_str())
            .c_str());
}

} // namespace qvtc::system
