#include "qvtcctl/console.hpp"

#include "qvtcctl/text.hpp"

#include <algorithm>
#include <cerrno>

#include <fmt/format.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

void write_all(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

void write_out(std::string_view text) { write_all(STDOUT_FILENO, text); }

void write_error(std::string_view text) { write_all(STDERR_FILENO, text); }

Progress::Progress(bool switched_on)
    : switched_on_(switched_on), on_terminal_(isatty(STDOUT_FILENO) == 1) {}

Progress::~Progress() { clear(); }

void Progress::show(const std::string& stage, long seconds) {
    if (!switched_on_) return;
    if (!on_terminal_) {
        if (stage != stage_) write_out(stage + "\n");
        stage_ = stage;
        return;
    }
    const std::string line = fmt::format("{} ({} s)", stage, seconds);
    const std::size_t columns = display_width(line);
    // In one piece, and only what is left over of the old line is blanked: so nothing flickers.
    std::string text = "\r" + line;
    if (columns < columns_) text += std::string(columns_ - columns, ' ');
    write_out(text);
    columns_ = std::max(columns, columns_);
}

void Progress::clear() {
    if (columns_ == 0) return;
    write_out("\r" + std::string(columns_, ' ') + "\r");
    columns_ = 0;
}

} // namespace qvtc::qvtcctl
