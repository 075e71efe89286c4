#pragma once

#include "core/edge.hpp"

/// Data that the library exports under common names. Its own code uses hidden
/// storage of another name, to which the exported name is an alias: a host
/// program that defines, say, a `counter` of its own never redirects ours.
///
/// To be used at file scope, outside any namespace. The storage of NAME is
/// qvtc_storage_NAME.
#define QVTC_EXPORTED_DATA(type, name, ...)                                                        \
    extern "C" {                                                                                   \
    extern type qvtc_storage_##name;                                                               \
    type qvtc_storage_##name = __VA_ARGS__;                                                        \
    extern QVTC_EXPORT type name __attribute__((alias("qvtc_storage_" #name)));                    \
    }

#define QVTC_EXPORTED_ARRAY(type, name, extent, ...)                                               \
    extern "C" {                                                                                   \
    extern type qvtc_storage_##name extent;                                                        \
    type qvtc_storage_##name extent = __VA_ARGS__;                                                 \
    extern QVTC_EXPORT type name extent __attribute__((alias("qvtc_storage_" #name)));             \
    }
