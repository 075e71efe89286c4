#include "picture.hpp"

#include "desktop.hpp"
#include "support/support.hpp"

#include <array>
#include <zlib.h>

namespace qvtc::test {
namespace {

std::string big_endian(std::uint32_t value) {
    std::string text;
    for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(value >> shift & 0xff);
    return text;
}

std::uint32_t number_at(const std::string& bytes, std::size_t place) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[place + i]);
    return value;
}

using Header = std::array<std::uint32_t, 25>;

/// Two pixels by two in lines of three, with a window's name and one colour in the header.
Header small_header() {
    return {104, 7, 2, 24, 2, 2, 0, 0, 32, 0, 32, 32, 12, 4, 0xff0000, 0xff00, 0xff, 8, 256, 1};
}

std::string dump_of(const Header& header) {
    std::string dump;
    for (const std::uint32_t word : header) dump += big_endian(word);
    dump += std::string("xwd\0", 4) + std::string(12, 'c');
    for (const char pixel : {'1', '2', '-', '3', '4', '-'})
        dump += std::string{pixel, 'b', 'c', 'x'};
    return dump;
}

/// The chunks of a PNG file, each as its type and contents; their checksums are checked.
std::vector<std::pair<std::string, std::string>> chunks_of(const std::string& png) {
    std::vector<std::pair<std::string, std::string>> chunks;
    for (std::size_t at = 8; at < png.size();) {
        const std::uint32_t size = number_at(png, at);
        const std::string body = png.substr(at + 4, size + 4);
        EXPECT_EQ(
            number_at(png, at + 8 + size),
            crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size())));
        chunks.emplace_back(body.substr(0, 4), body.substr(4));
        at += size + 12;
    }
    return chunks;
}

std::string expanded(const std::string& data) {
    std::string text(1000, '\0');
    uLongf size = text.size();
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(text.data()), &size,
                         reinterpret_cast<const Bytef*>(data.data()), data.size()),
              Z_OK);
    return text.substr(0, size);
}

TEST(Picture, OfADumpHasItsPixels) {
    const auto picture = terminal::picture_from_xwd(dump_of(small_header()));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 2U);
    EXPECT_EQ(picture->height, 2U);
    EXPECT_EQ(std::string(picture->pixels.begin(), picture->pixels.end()), "cb1cb2cb3cb4");
    EXPECT_EQ(picture->at(1, 1), 0x636234U);
}

// A browser's window, for one, has a depth of its own.
TEST(Picture, OfAScreenWithWindowsOfSeveralKindsHasItsPixelsToo) {
    Header header = small_header();
    header[11] = 24;
    const auto picture = terminal::picture_from_xwd(dump_of(header));
    ASSERT_TRUE(picture);
    EXPECT_EQ(std::string(picture->pixels.begin(), picture->pixels.end()), "cb1b2xcb3b4x");
}

TEST(Picture, IsNotMadeOfWhatIsNoDumpOfOurs) {
    const std::string whole = dump_of(small_header());
    for (const std::size_t length : {std::size_t{0}, std::size_t{99}, whole.size() - 1}) {
        EXPECT_FALSE(terminal::picture_from_xwd(whole.substr(0, length))) << length;
    }
    for (const std::size_t word : {1U, 2U, 7U, 11U, 14U, 15U, 16U}) {
        Header header = small_header();
        ++header[word];
        EXPECT_FALSE(terminal::picture_from_xwd(dump_of(header))) << word;
    }
    for (const std::size_t word : {0U, 4U, 5U, 19U}) { // more than there is
        Header header = small_header();
        header[word] = 0xffffffff;
        EXPECT_FALSE(terminal::picture_from_xwd(dump_of(header))) << word;
    }
}

TEST(Picture, BecomesAPngOfTheSamePixels) {
    const std::string png =
        terminal::png_from(*terminal::picture_from_xwd(dump_of(small_header())));
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    auto chunks = chunks_of(png);
    ASSERT_EQ(chunks.size(), 3U);
    chunks[1].second = expanded(chunks[1].second);
    using Chunks = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(chunks,
              (Chunks{{"IHDR", big_endian(2) + big_endian(2) + std::string("\x08\x02\0\0\0", 5)},
                      {"IDAT", std::string("\0cb1cb2\0cb3cb4", 14)},
                      {"IEND", ""}}));
}

class PictureOfTheScreen : public Journey {};

TEST_F(PictureOfTheScreen, IsSavedAsItIs) {
    ASSERT_EQ(output_of("xsetroot -solid '#123456'").status, 0);
    ASSERT_TRUE(wait_for_colour(1279, 799, 0x123456));
    ASSERT_EQ(
        output_of("QVTC_XWD_TO_PNG=" QVTC_XWD_TO_PNG " " QVTC_DESKTOP " picture /tmp/a.png").status,
        0);
    EXPECT_EQ(read_file("/tmp/a.png"), terminal::png_from(screen()));
}

} // namespace
} // namespace qvtc::test
