#include "core/exports.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <cstring>

#include "core/base64.hpp"
#include "core/command.hpp"
#include "core/encodings.hpp"
#include "core/exported_data.hpp"
#include "core/json.hpp"
#include "core/log.hpp"
#include "core/log_rotation.hpp"
#include "core/os.hpp"
#include "core/process.hpp"
#include "core/text.hpp"

using namespace qvtc;

namespace {

using Text = char*;
using EncodingTable = std::array<char, base64::alphabet.size()>;
using PaddingTable = std::array<std::int32_t, base64::padding.size()>;
using DecodingTable = std::atomic<char*>;

constexpr EncodingTable make_encoding_table() {
    EncodingTable table{};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = base64::alphabet[i];
    return table;
}

constexpr std::size_t url_text_size = 256;
constexpr std::size_t long_url_text_size = 102400;
constexpr std::size_t decoded_text_size = 1024;

char* unescape(const char* text, char escape, std::size_t size) {
    if (!given(text)) return nullptr;
    return guard<char*>(
        nullptr, [&] { return allocate_copy(unescape_hex_pairs(text, escape, size - 1), size); });
}

/// Deliberate: 0 for the rare outcome, -1 for the usual one.
int status_of(Capture capture) { return capture == Capture::nothing_to_reap ? 0 : -1; }

/// A new buffer of the bytes, and their number; null when memory has run out.
char* hand_over(const std::string& bytes, std::uint32_t* length) {
    if (length != nullptr) *length = static_cast<std::uint32_t>(bytes.size());
    return allocate_copy(bytes);
}

} // namespace

extern "C" {

extern ParamTable::Bytes qvtc_storage_urlparams;
constinit ParamTable::Bytes qvtc_storage_urlparams{};
extern QVTC_EXPORT urlparam urlparams[ParamTable::entry_count]
    __attribute__((alias("qvtc_storage_urlparams")));
}
QVTC_EXPORTED_DATA(Text, __mystrtok, nullptr)
QVTC_EXPORTED_DATA(DecodingTable, base64_decoding_table, nullptr)
QVTC_EXPORTED_DATA(EncodingTable, base64_encoding_table, make_encoding_table())
QVTC_EXPORTED_DATA(PaddingTable, mod_table, base64::padding)

extern "C" {

int systemex(const char* command, char* output, int size) {
    if (output == nullptr || size < 0) return -1;
    const auto room = static_cast<std::size_t>(size);
    if (command == nullptr) {
        std::memset(output, 0, room);
        return -1;
    }
    return status_of(capture_output_or_fork(command, output, room));
}

int execmd(const char* command, char* output) {
    if (!given(command, output)) return -1;
    return guard(-1, [&] {
        const auto line = first_line(command);
        if (!line) return -1;
        copy_out_whole(output, *line);
        return 0;
    });
}

int detect_process(const char* name) {
    if (!given(name)) return 0;
    return guard(0, [&] { return process_runs(name) ? 1 : 0; });
}

int qvlog(int level, const char* format, ...) {
    if (!given(format)) return 0;
    va_list arguments;
    va_start(arguments, format);
    guard_void([&] { log_arguments(static_cast<Level>(level), format, arguments); });
    va_end(arguments);
    return 0;
}

void log_init() { guard_void(rotate_logs); }

int LogWrite(int level, const char* format, ...) {
    if (!given(format) || initlog(level) != 0) return -1;
    va_list arguments;
    va_start(arguments, format);
    dated_log::write_message(format, arguments);
    va_end(arguments);
    dated_log::end_line();
    return 0;
}

int initlog(int level) {
    return guard(-1, [&] { return dated_log::begin_line(level) ? 0 : -1; });
}

void PrintfLog(const char* format, std::va_list arguments) {
    if (given(format)) dated_log::write_message(format, arguments);
}

log_setting* getlogset() {
    return guard<log_setting*>(nullptr, [] { return &dated_log::refresh_setting(); });
}

int ReadConfig(const char* path) {
    if (!given(path)) return -1;
    return guard(-1, [&] { return dated_log::read_config(path) ? 0 : -1; });
}

std::uint8_t getcode(const char* name) {
    return given(name) ? dated_log::code_of_level(name) : dated_log::unknown_level;
}

char* qvtc_getdate(char* today) {
    if (given(today)) dated_log::write_date(today);
    return today;
}

void settime() { dated_log::write_time(); }

char* geturlvalue(const char* text, const char* name) {
    if (!given(text, name) || *text == '\0') return nullptr;
    const std::size_t readable = ParamTable::fill(qvtc_storage_urlparams, text);
    return const_cast<char*>(ParamTable::find(qvtc_storage_urlparams, readable, name));
}

int strtojson(char* text, char* output) {
    if (!given(text, output)) return -1;
    return guard(-1, [&] {
        copy_out_whole(output, params_to_json(text));
        return 0;
    });
}

char* getJsonValue(json_object* object, const char* key) {
    static char value[json_plain_text_limit + 1];
    static char none[1];
    value[0] = '\0';
    if (!given(key)) return none;
    return guard(+none, [&] {
        const auto text = json_plain_text(object, key);
        if (!text) return +none;
        copy_out(value, sizeof value, *text);
        return +value;
    });
}

char* mystrtok(char* text, const char* delimiters) {
    // Without a text it goes on in the one before.
    return given(delimiters) ? next_token(text, delimiters, qvtc_storage___mystrtok) : nullptr;
}

int str_replace(char* text, const char* find, const char* replacement) {
    return guard(-1, [&] {
        if (text == nullptr) log(Level::error, "%s str is NULL", "str_replace");
        if (!given(text, find, replacement) || *find == '\0') return -1;
        copy_out_whole(text, replace_all(text, std::string_view(find), replacement));
        return 0;
    });
}

void del_char(char* text, char c) {
    if (given(text) && c != '\0') *std::remove(text, text + std::strlen(text), c) = '\0';
}

char* replace(char* text, char c, char replacement) {
    if (given(text)) std::replace(text, text + std::strlen(text), c, replacement);
    return text;
}

void replacechar(char* text, char c, char replacement) { replace(text, c, replacement); }

void repspecchar(char* text, char c, char replacement) { replace(text, c, replacement); }

char* rtrim(char* text) {
    if (!given(text)) return text;
    for (std::size_t end = std::strlen(text);
         end > 0 && std::isspace(static_cast<unsigned char>(text[end - 1])) != 0;) {
        text[--end] = '\0';
    }
    return text;
}

char* urldecode(const char* text) { return unescape(text, '^', url_text_size); }

char* urldecode2(const char* text) { return unescape(text, '%', long_url_text_size); }

int stringdecode(const char* text, char* output) {
    if (!given(text, output)) return -1;
    return guard(-1, [&] {
        return status_of(
            capture_output(textf("echo -e %s", text).c_str(), output, decoded_text_size));
    });
}

char* base64_encode(const char* data, std::uint32_t length, std::uint32_t* output_length) {
    if (!given(data)) return nullptr;
    return guard<char*>(nullptr, [&] {
        return hand_over(base64::encode({data, length}), output_length);
    });
}

char* base64_decode(const char* text, std::uint32_t length, std::uint32_t* output_length) {
    if (!given(text)) return nullptr;
    base64_initialize();
    return guard<char*>(nullptr, [&]() -> char* {
        const auto bytes = base64::decode({text, length});
        return bytes ? hand_over(*bytes, output_length) : nullptr;
    });
}

void base64_initialize() {
    if (qvtc_storage_base64_decoding_table.load() != nullptr) return;
    auto* const table = static_cast<char*>(std::malloc(base64::decoding_table.size()));
    if (table == nullptr) return;
    std::memcpy(table, base64::decoding_table.data(), base64::decoding_table.size());
    char* none = nullptr;
    if (!qvtc_storage_base64_decoding_table.compare_exchange_strong(none, table)) std::free(table);
}

void base64_cleanup() { std::free(qvtc_storage_base64_decoding_table.exchange(nullptr)); }

int hexCharToValue(char c) { return hex_value(c); }

int hexToStr(const char* text, char* output) {
    if (!given(text, output)) return -1;
    return guard(-1, [&] {
        std::string bytes;
        const HexResult result = hex_to_bytes(text, bytes);
        if (result == HexResult::odd_length) return -2;
        copy_out_whole(output, bytes);
        return result == HexResult::complete ? 0 : -3;
    });
}

int str2hex(const char* text, char* output, int* length) {
    if (!given(text, output)) return 0;
    return guard(0, [&] {
        const std::string bytes = digits_to_bytes(text);
        copy_out_whole(output, bytes);
        if (length != nullptr) *length = static_cast<int>(bytes.size());
        return static_cast<int>(bytes.size());
    });
}

char* encode(const char* letters) {
    if (!given(letters)) return nullptr;
    return guard<char*>(nullptr, [&] { return allocate_copy(encode_letters(letters)); });
}

char* decode(const char* letters) {
    if (!given(letters)) return nullptr;
    return guard<char*>(nullptr, [&] { return allocate_copy(decode_letters(letters)); });
}
}
