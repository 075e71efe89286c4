// xwd_to_png: reads what "xwd -root -silent" writes and writes it as a PNG.

#include "picture.hpp"

#include <iostream>
#include <iterator>

int main() {
    using namespace qvtc::terminal;
    const std::string dump{std::istreambuf_iterator<char>(std::cin), {}};
    const auto picture = picture_from_xwd(dump);
    if (!picture) {
        std::cerr << "xwd_to_png: standard input is no picture of xwd's that this can read\n";
        return 1;
    }
    std::cout << png_from(*picture) << std::flush;
    return std::cout ? 0 : 1;
}
