#include "core/dated_log.hpp"

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <unistd.h>

#include "core/edge.hpp"
#include "core/exported_data.hpp"
#include "core/local_time.hpp"
#include "core/text.hpp"

QVTC_EXPORTED_DATA(log_setting, logsetting, {});
QVTC_EXPORTED_DATA(log_record, loging, {});
QVTC_EXPORTED_ARRAY(char, LogLevelText, [qvtc::dated_log::level_count][10],
                    { "INFO", "DEBUG", "WARN", "ERROR" });

namespace qvtc::dated_log {

namespace {

struct NamedLevel {
    const char* name;
    std::uint8_t code;
};
constexpr NamedLevel named_levels[] = {
    {"NONE", 0}, {"INFO", 1}, {"DEBUG", 2}, {"WARN", 3}, {"ERROR", 4}};

std::string file_of_today(std::string_view directory) {
    char today[11];
    write_date(today);
    return std::string(directory) + "/" + today + ".log";
}

/// Deliberate: without its NUL, so that a shorter path keeps the tail of a
/// longer one before it.
void overwrite_path(const std::string& path) {
    char* const stored = setting().logpath;
    if (path == stored) return;
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result)
    std::memcpy(stored, path.data(), std::min(path.size(), sizeof setting().logpath - 1));
}

bool set_default_path() {
    const char* const home = std::getenv("HOME");
    if (home == nullptr) return false;
    copy_out(setting().logpath, sizeof setting().logpath, file_of_today(home));
    return true;
}

} // namespace

log_setting& setting() { return qvtc_storage_logsetting; }

log_record& record() { return qvtc_storage_loging; }

void write_date(char* today) {
    const std::tm local = local_now();
    std::strftime(today, 11, "%Y-%m-%d", &local);
}

void write_time() {
    const std::tm local = local_now();
    std::strftime(record().timestr, sizeof record().timestr, "%Y-%m-%d %H:%M:%S", &local);
}

std::uint8_t code_of_level(const char* name) {
    for (const NamedLevel& level : named_levels) {
        if (std::strcmp(name, level.name) == 0) return level.code;
    }
    return unknown_level;
}

bool read_config(const char* path) {
    std::FILE* const config = std::fopen(path, "re");
    if (config == nullptr) return false;
    char text[512] = {};
    if (std::fscanf(config, "path=%511s\n", text) == 1) overwrite_path(file_of_today(text));
    std::memset(text, 0, sizeof text);
    [[maybe_unused]] const int found = std::fscanf(config, "level=%511s\n", text);
    setting().loglevel = code_of_level(text);
    std::fclose(config);
    return true;
}

log_setting& refresh_setting() {
    char directory[512] = {};
    if (getcwd(directory, sizeof directory) != nullptr) {
        const std::string config = std::string(directory) + "/log.conf";
        if (access(config.c_str(), F_OK) == 0 && read_config(config.c_str())) return setting();
    }
    setting().loglevel = 1;
    setting().maxsize = 4096;
    return setting();
}

bool begin_line(int level) {
    refresh_setting();
    if (level < 1 || level > level_count) return false;
    record() = {};
    write_time();
    const bool has_path = setting().logpath[0] != '\0' || set_default_path();
    std::memcpy(record().logpath, setting().logpath, sizeof record().logpath);
    if (has_path) record().logfile = std::fopen(record().logpath, "a+e");
    if (record().logfile == nullptr) {
        std::perror("Open Log File Fail!");
        return false;
    }
    std::fprintf(record().logfile, "[%s] [%s] ", qvtc_storage_LogLevelText[level - 1],
                 record().timestr);
    return true;
}

void write_message(const char* format, std::va_list arguments) {
    std::FILE* const file = record().logfile;
    if (file == nullptr) return;
    for (const char* at = format; *at != '\0'; ++at) {
        switch (*at) {
        // Conversions wherever they stand, with or without a "%" before them.
        case 'd':
            std::fprintf(file, "%d", va_arg(arguments, int));
            break;
        case 's': {
            const char* const text = va_arg(arguments, const char*);
            std::fputs(text != nullptr ? text : "(null)", file);
            break;
        }
        case 'c':
            std::fputc(va_arg(arguments, int), file);
            break;
        case '%':
        case '\n':
            break;
        default:
            std::fputc(*at, file);
        }
    }
    std::fputc('\n', file);
}

void end_line() {
    if (record().logfile == nullptr) return;
    std::fflush(record().logfile);
    std::fclose(record().logfile);
    record().logfile = nullptr;
}

} // namespace qvtc::dated_log
