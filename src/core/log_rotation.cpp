#include "core/log_rotation.hpp"

#include <cstdlib>
#include <string>

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc {

namespace {

struct RotatedLog {
    const char* path;
    long limit; // bytes; one of just this size stays
    const char* message;
};

// clang-format off
constexpr RotatedLog rotated_logs[] = {
    {paths::system_log,  1024000, "system log size greater than 1M"},
    {paths::rdp_log,      512000, "freerdp log size greater than 512k"},
    {paths::spice_log,    512000, "spicec log size greater than 512k"},
    {paths::service_log,  512000, "qvservice log size greater than 512k"},
};
// clang-format on

void rotate(const RotatedLog& log_file) {
    const std::string size = os().capture(textf("wc -c %s | awk '$1'", log_file.path), 256);
    if (size.size() <= 3 || std::atol(size.c_str()) <= log_file.limit) return;
    // For the system log itself this becomes the last line of the old file.
    log(Level::info, "%s", log_file.message);
    os().run(textf("mv %s %s.old", log_file.path, log_file.path));
}

} // namespace

void rotate_logs() {
    for (const RotatedLog& log_file : rotated_logs) rotate(log_file);
}

} // namespace qvtc
