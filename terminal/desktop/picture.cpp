#include "picture.hpp"

#include <array>
#include <zlib.h>

namespace qvtc::terminal {

namespace {

constexpr std::size_t colour_map_entry = 12; // bytes, each stands between header and pixels

/// Words of a dump's header, by their place.
enum HeaderWord : std::size_t {
    header_size,
    file_version,
    pixmap_format,
    picture_width = 4,
    picture_height = 5,
    byte_order = 7,
    bits_per_pixel = 11,
    bytes_per_line = 12,
    red_mask = 14,
    green_mask = 15,
    blue_mask = 16,
    colours = 19,
    words_in_header = 25,
};

struct Expected {
    HeaderWord word;
    std::uint32_t value;
};

// clang-format off
constexpr Expected readable_form[] = {
    {file_version,   7},
    {pixmap_format,  2}, // whole pixels, not planes
    {byte_order,     0}, // lowest byte first
    {red_mask,       0xff0000},
    {green_mask,     0x00ff00},
    {blue_mask,      0x0000ff},
};
// clang-format on

std::uint8_t byte_at(std::string_view text, std::size_t place) {
    return static_cast<std::uint8_t>(text[place]);
}

/// The header's numbers have their highest byte first, whatever the pixels have.
std::uint32_t word(std::string_view dump, HeaderWord place) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | byte_at(dump, place * 4 + i);
    return value;
}

bool is_readable(std::string_view dump) {
    if (dump.size() < words_in_header * 4) return false;
    for (const Expected& expected : readable_form) {
        if (word(dump, expected.word) != expected.value) return false;
    }
    // Where windows of several kinds are on the screen, xwd leaves the unused byte out.
    const std::uint32_t bits = word(dump, bits_per_pixel);
    if (bits != 32 && bits != 24) return false;
    const std::uint64_t lines = word(dump, picture_height);
    const std::uint64_t start = word(dump, header_size) + word(dump, colours) * colour_map_entry;
    return word(dump, bytes_per_line) >= word(dump, picture_width) * std::uint64_t{bits / 8} &&
           dump.size() >= start + lines * word(dump, bytes_per_line);
}

std::string number(std::size_t value) {
    std::string text;
    for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(value >> shift & 0xff);
    return text;
}

std::string chunk(std::string_view type, std::string_view data) {
    const std::string checked = std::string(type).append(data);
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
    return number(data.size()) + checked + number(sum);
}

std::string header(const Picture& picture) {
    constexpr std::array<char, 5> eight_bit_true_colour = {8, 2, 0, 0, 0};
    return number(picture.width) + number(picture.height) +
           std::string(eight_bit_true_colour.data(), eight_bit_true_colour.size());
}

std::string compressed(const std::string& data) {
    uLongf size = compressBound(data.size());
    std::string result(size, '\0');
    compress(reinterpret_cast<Bytef*>(result.data()), &size,
             reinterpret_cast<const Bytef*>(data.data()), data.size());
    result.resize(size);
    return result;
}

} // namespace

std::uint32_t Picture::at(std::size_t x, std::size_t y) const {
    const std::uint8_t* const pixel = &pixels[(y * width + x) * 3];
    return static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
}

std::optional<Picture> picture_from_xwd(std::string_view dump) {
    if (!is_readable(dump)) return std::nullopt;
    Picture picture{word(dump, picture_width), word(dump, picture_height), {}};
    picture.pixels.reserve(picture.width * picture.height * 3);
    const std::size_t pixel_size = word(dump, bits_per_pixel) / 8;
    std::size_t line = word(dump, header_size) + word(dump, colours) * colour_map_entry;
    for (std::size_t y = 0; y < picture.height; ++y, line += word(dump, bytes_per_line)) {
        for (std::size_t x = 0; x < picture.width; ++x) {
            for (const std::size_t colour : {2U, 1U, 0U}) { // a pixel is blue, green, red
                picture.pixels.push_back(byte_at(dump, line + x * pixel_size + colour));
            }
        }
    }
    return picture;
}

std::string png_from(const Picture& picture) {
    constexpr char unfiltered = 0; // stands before each line
    std::string lines;
    lines.reserve(picture.height * (picture.width * 3 + 1));
    const char* const pixels = reinterpret_cast<const char*>(picture.pixels.data());
    for (std::size_t y = 0; y < picture.height; ++y) {
        lines += unfiltered;
        lines.append(pixels + y * picture.width * 3, picture.width * 3);
    }
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", header(picture)) + chunk("IDAT", compressed(lines)) +
           chunk("IEND", "");
}

} // namespace qvtc::terminal
