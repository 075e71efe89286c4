#include "core/log.hpp"

#include <cstdarg>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "core/local_time.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc {

namespace {

const char* tag_of(Level level) {
    switch (level) {
    case Level::debug:
        return "[DEBUG]";
    case Level::info:
        return "[INFO]";
    case Level::error:
        return "[ERROR]";
    }
    return nullptr;
}

std::string line_of(Level level, std::string_view message) {
    const char* const tag = tag_of(level);
    if (tag == nullptr) return {};
    const std::tm local = local_now();
    std::string line =
        textf("%04d-%02d-%02d %02d:%02d:%02d %s ", local.tm_year + 1900, local.tm_mon + 1,
              local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, tag);
    return line.append(message.substr(0, log_message_limit)).append("\n");
}

} // namespace

void log_message(Level level, std::string_view message) {
    const std::string line = line_of(level, message);
    // The log holds passwords (whole client command lines): private when new.
    const int log_file = open(paths::system_log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (log_file < 0) return;
    [[maybe_unused]] const ssize_t written = write(log_file, line.data(), line.size());
    close(log_file);
}

void log_arguments(Level level, const char* format, std::va_list arguments) {
    std::string message(log_message_limit + 1, '\0');
    vsnprintf(message.data(), message.size(), format, arguments);
    log_message(level, c_text(std::move(message)));
}

void log(Level level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    log_arguments(level, format, arguments);
    va_end(arguments);
}

} // namespace qvtc
