#include "core/process.hpp"

#include <cstdlib>

#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc {

bool process_runs(const std::string& name) {
    const std::string count = os().capture(
        textf("ps -ef|grep '%s'|grep -v grep|wc -l", shell::in_single(name).c_str()), 512);
    return std::atoi(count.c_str()) > 0;
}

} // namespace qvtc
