#include "qvtcctl/base/console.hpp"

#include "qvtcctl/base/text.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

int first_output_error = 0;

/// 0, or the error number with which it ended.
int write_all(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

/// That a line may take: a longer one would go on in the next line, and could not be painted over.
std::size_t columns_of_tty() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::string::npos;
    return size.ws_col - 1U; // in the last one some go on at once
}

} // namespace

void hold_standard_descriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) >= 0) continue;
        // Opened in the wrong direction, so that what is written is an error, as it would have
        // been.
        const int direction = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        [[maybe_unused]] const int lowest_free = open("/dev/null", direction); // NOLINT
    }
}

void write_out(std::string_view text) {
    const int error = write_all(STDOUT_FILENO, text);
    if (first_output_error == 0) first_output_error = error;
}

void write_error(std::string_view text) { write_all(STDERR_FILENO, text); }

std::string lost_output() {
    return first_output_error == 0 ? "" : std::strerror(first_output_error);
}

Progress::Progress(bool switched_on)
    : switched_on_(switched_on), on_tty_(isatty(STDOUT_FILENO) == 1) {}

Progress::~Progress() { clear(); }

void Progress::show(const std::string& stage, long seconds) {
    if (!switched_on_) return;
    if (!on_tty_) {
        if (stage != stage_) write_out(printable(stage) + "\n");
        stage_ = stage;
        return;
    }
    const std::string time = fmt::format(" ({} s)", seconds);
    const std::size_t room = columns_of_tty();
    const std::string shown = printable(stage);
    const std::string line =
        fmt::format("{}{}", first_columns(shown, room - std::min(room, time.size())), time);
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
