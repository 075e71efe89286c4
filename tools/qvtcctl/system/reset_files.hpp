#pragma once

#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// What a factory reset does to a file, or to all files of a shell pattern.
struct ResetFile {
    std::string_view path;
    std::string_view change;
};

/// What decides about the files that a reset does not touch on every terminal.
struct ResetFacts {
    bool names_host = false;  ///< after the device identity
    bool leaves_hdmi = false; ///< takes the sound off HDMI
};

/// The files that a reset creates, changes or removes on this terminal; the removed ones last.
std::vector<ResetFile> reset_files(const ResetFacts& facts);

/// Whether a shell pattern leads to any file.
bool matches_a_file(std::string_view pattern);

} // namespace qvtc::qvtcctl
