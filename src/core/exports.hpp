#pragma once

#include <cstdarg>
#include <cstdint>

#include "core/dated_log.hpp"
#include "core/edge.hpp"
#include "core/params.hpp"
#include "qvtcapi/qvtcapi.h"

/// The exported names of this folder that the public header leaves out. Their
/// buffers have no size unless an argument gives it: they get whole results.
extern "C" {

struct urlparam {
    char name[qvtc::ParamTable::name_size];
    char value[qvtc::ParamTable::value_size];
};

/// Captures a command's standard output into `size` bytes. Deliberate: -1 when
/// the command has been waited for, which is the normal case, and 0 when there
/// was none to wait for; -1 too when no pipe or process could be had.
QVTC_EXPORT int systemex(const char* command, char* output, int size);
/// First line of a command's output, at most 63 characters, without blanks.
QVTC_EXPORT int execmd(const char* command, char* output);
/// 1 when a process line matches the name, else 0.
QVTC_EXPORT int detect_process(const char* name);

QVTC_EXPORT void log_init();

QVTC_EXPORT int initlog(int level);
QVTC_EXPORT void PrintfLog(const char* format, std::va_list arguments);
QVTC_EXPORT log_setting* getlogset();
QVTC_EXPORT int ReadConfig(const char* path);
QVTC_EXPORT std::uint8_t getcode(const char* name);
/// Exported as "getdate", a name that libc declares otherwise.
QVTC_EXPORT char* qvtc_getdate(char* today) __asm__("getdate");
QVTC_EXPORT void settime();

/// The value stays valid until the next call anywhere in the process.
QVTC_EXPORT char* geturlvalue(const char* text, const char* name);
QVTC_EXPORT int strtojson(char* text, char* output);
/// The text is overwritten by the next call; empty when there is no such member.
QVTC_EXPORT char* getJsonValue(json_object* object, const char* key);
QVTC_EXPORT char* mystrtok(char* text, const char* delimiters);
QVTC_EXPORT int str_replace(char* text, const char* find, const char* replacement);
QVTC_EXPORT void del_char(char* text, char c);
QVTC_EXPORT char* replace(char* text, char c, char replacement);
QVTC_EXPORT void replacechar(char* text, char c, char replacement);
QVTC_EXPORT void repspecchar(char* text, char c, char replacement);
QVTC_EXPORT char* rtrim(char* text);
/// New buffers of 256 and of 102,400 bytes; the caller frees them.
QVTC_EXPORT char* urldecode(const char* text);
QVTC_EXPORT char* urldecode2(const char* text);
/// What "echo -e" makes of the text, which is shell text: 1,024 bytes.
QVTC_EXPORT int stringdecode(const char* text, char* output);
/// New texts; the caller frees them.
QVTC_EXPORT char* base64_encode(const char* data, std::uint32_t length,
                                std::uint32_t* output_length);
QVTC_EXPORT char* base64_decode(const char* text, std::uint32_t length,
                                std::uint32_t* output_length);
QVTC_EXPORT void base64_initialize();
QVTC_EXPORT void base64_cleanup();
QVTC_EXPORT int hexCharToValue(char c);
/// 0; -1 for a null pointer, -2 for an odd length, -3 for a bad character.
QVTC_EXPORT int hexToStr(const char* text, char* output);
QVTC_EXPORT int str2hex(const char* text, char* output, int* length);
/// New texts; the caller frees them.
QVTC_EXPORT char* encode(const char* letters);
QVTC_EXPORT char* decode(const char* letters);
}
