#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace qvtc::fuzz {

/// What must hold for every input: else the fuzzer stops here and keeps the input.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The input up to its first NUL, as a C caller's text would end there.
inline std::string_view c_text_of(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = text_of(data, size);
    return text.substr(0, text.find('\0'));
}

} // namespace qvtc::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
