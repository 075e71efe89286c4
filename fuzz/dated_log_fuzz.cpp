// The configuration file of the front-end's logger.

#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "core/dated_log.hpp"
#include "fuzzing.hpp"

using namespace qvtc;
using fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("log.conf", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) < 0) return 0;

    // Once over nothing, once over a longer path, whose tail may stay.
    log_setting& setting = dated_log::setting();
    for (const std::size_t former : {std::size_t{0}, sizeof setting.logpath - 1}) {
        setting = {};
        std::memset(setting.logpath, 'f', former);
        setting.maxsize = 0x23232323;
        require(dated_log::read_config(path.c_str()), "readable");
        const std::size_t length = strnlen(setting.logpath, sizeof setting.logpath);
        require(length < sizeof setting.logpath, "terminated");
        require(length >= former, "a tail stays");
        require(setting.maxsize == 0x23232323, "the size is not touched");
        require(setting.loglevel <= 4 || setting.loglevel == dated_log::unknown_level, "level");
        const bool has_path = fuzz::text_of(data, size).starts_with("path=");
        if (!has_path) require(length == former, "no path, no change");
    }
    return 0;
}
