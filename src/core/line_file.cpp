#include "core/line_file.hpp"

#include <cstring>

#include "core/files.hpp"
#include "core/log.hpp"

namespace qvtc {

bool write_lines(const std::string& path, std::span<const std::string> lines) {
    constexpr unsigned readable_for_all = 0644;
    std::string content;
    for (const std::string& line : lines) content += line + '\n';
    const int error = replace_file(path, content, readable_for_all);
    if (error != 0) log(Level::error, "@write_lines %s: %s", path.c_str(), std::strerror(error));
    return error == 0;
}

} // namespace qvtc
