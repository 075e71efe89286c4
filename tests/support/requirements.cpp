#include "support/requirements.hpp"

#include <cstdlib>
#include <sstream>
#include <unistd.h>

namespace qvtc::test {

bool has_program(const std::string& name) {
    const char* path = std::getenv("PATH");
    std::istringstream directories(path == nullptr ? "" : path);
    for (std::string directory; std::getline(directories, directory, ':');) {
        if (access((directory + '/' + name).c_str(), X_OK) == 0) return true;
    }
    return false;
}

bool skipping_is_forbidden() {
    const char* ci = std::getenv("CI");
    return ci != nullptr && *ci != '\0';
}

} // namespace qvtc::test
