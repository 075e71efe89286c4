#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What kind of machine the terminal is, told by its processor, memory and disk.
namespace qvtc::system {

/// The model code of the machine with such a line in /proc/cpuinfo.
std::string_view model_of(std::string_view processor_line);

/// The size classes, in GB, of what /proc/meminfo and blockdev tell.
int memory_class(std::int64_t kilobytes);
std::int64_t storage_class(std::int64_t bytes);

std::string model_code();
/// The processor's number in the classes of newer machines; 0 for all others.
int processor_class();
std::string processor_name();
int memory_capacity();
/// Nothing when the size cannot be read.
std::optional<std::int64_t> storage_capacity();
/// The address of an interface's hardware, when there is one.
std::optional<std::string> hardware_address(const std::string& device);

} // namespace qvtc::system
