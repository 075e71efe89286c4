#pragma once

#include <cstddef>
#include <string>

/// Texts under small numbers, which the terminal's program `qvplugin` keeps. They
/// travel base64-encoded, on its command line and in its output.
namespace qvtc::store {

enum class ReadOutcome : int {
    read = 0,
    not_base64 = -1,      ///< what the program printed is none
    none_or_too_long = -2 ///< it printed nothing, or the value does not fit
};

/// Reads the text under a key; it must be shorter than `size`. `text` changes
/// only when it was read.
ReadOutcome read_numbered(unsigned key, std::size_t size, std::string& text);

/// The text under a key when it could be read and is not empty, else the empty text.
std::string numbered_text(unsigned key, std::size_t size);

/// 0 once the program was run (whether it stored the text it does not tell), -2
/// for null, -1 for a text too long for a command line.
int write_numbered(unsigned key, const char* text);

namespace numbers {
inline constexpr unsigned vendor_marker = 23;
inline constexpr unsigned vendor_features = 42;
inline constexpr unsigned vendor_info = 50;
inline constexpr unsigned vendor_data = 56;
inline constexpr unsigned display_refresh = 87;
inline constexpr unsigned hdx_camera = 90;
} // namespace numbers

} // namespace qvtc::store
