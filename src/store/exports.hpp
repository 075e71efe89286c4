#pragma once

#include "core/edge.hpp"

/// The exported names of this folder. All give 0 or -1.
extern "C" {

/// Copies a value whole, with its NUL: the buffer must be large enough. -1, and
/// the buffer untouched, when the key is absent or empty.
QVTC_EXPORT int xmlread(const char* item, const char* key, char* output);
/// Changes `value` to its stored form. 0 also when the save failed: the former
/// document then still stands, and the log has the reason.
QVTC_EXPORT int xmlwrite(const char* item, const char* key, char* value);
QVTC_EXPORT int xml_del_itemNode(const char* item);
QVTC_EXPORT int xml_del_grandsonNode(const char* item, const char* key);
}
