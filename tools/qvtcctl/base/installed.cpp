#include "qvtcctl/base/installed.hpp"

#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

bool is_program(const std::string& path) {
    struct stat file {};
    return stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace

bool is_installed(std::string_view program) {
    const char* const value = std::getenv("PATH");
    std::string_view directories = value == nullptr ? "/usr/local/bin:/usr/bin:/bin" : value;
    while (true) {
        const std::size_t end = directories.find(':');
        const std::string directory(directories.substr(0, end));
        if (is_program((directory.empty() ? "." : directory) + "/" + std::string(program))) {
            return true;
        }
        if (end == std::string_view::npos) return false;
        directories.remove_prefix(end + 1);
    }
}

} // namespace qvtc::qvtcctl
