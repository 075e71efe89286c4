#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Pictures of an X display: from the form in which xwd writes them to PNG.
namespace qvtc::terminal {

struct Picture {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint8_t> pixels; ///< red, green, blue; row by row from the top

    /// A pixel as 0xRRGGBB; x below width, y below height.
    std::uint32_t at(std::size_t x, std::size_t y) const;
};

/// The picture in what xwd wrote; nothing when it is cut off, or when its pixels are not the 32
/// bits, lowest byte first, of the X servers that the terminal starts.
std::optional<Picture> picture_from_xwd(std::string_view dump);

/// The bytes of a PNG file.
std::string png_from(const Picture& picture);

} // namespace qvtc::terminal
