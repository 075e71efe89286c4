#include "qvtcctl/base/secrets.hpp"

#include "qvtcctl/base/refusal.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <termios.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

/// The controlling tty. It is asked directly, so that standard input and output stay free.
class Tty {
  public:
    Tty() : descriptor_(open("/dev/tty", O_RDWR | O_CLOEXEC)) {}
    ~Tty() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Tty(const Tty&) = delete;
    Tty& operator=(const Tty&) = delete;

    int descriptor() const { return descriptor_; }
    bool is_there() const { return descriptor_ >= 0; }
    void say(const std::string& text) const {
        // A prompt that cannot be written is not worth a failure.
        [[maybe_unused]] const ssize_t ignored = write(descriptor_, text.data(), text.size());
    }

  private:
    int descriptor_;
};

volatile std::sig_atomic_t ending_signal = 0;

/// Switches the echo off while it lives. A signal that would end the program is kept until the
/// echo is on again, and then takes its course: a shell without echo is a bad thing to leave.
class NoEcho {
  public:
    explicit NoEcho(int tty) : tty_(tty) {
        struct sigaction keep {};
        keep.sa_handler = [](int signal) { ending_signal = signal; };
        for (std::size_t i = 0; i < signals.size(); ++i) {
            sigaction(signals[i], &keep, &previous_[i]);
        }
        tcgetattr(tty_, &settings_);
        termios silent = settings_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(tty_, TCSAFLUSH, &silent);
    }
    ~NoEcho() {
        tcsetattr(tty_, TCSAFLUSH, &settings_);
        for (std::size_t i = 0; i < signals.size(); ++i) {
            sigaction(signals[i], &previous_[i], nullptr);
        }
    }
    NoEcho(const NoEcho&) = delete;
    NoEcho& operator=(const NoEcho&) = delete;

  private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};
    int tty_;
    termios settings_{};
    std::array<struct sigaction, signals.size()> previous_{};
};

/// A line without its newline; "whole" says whether there was one.
std::string read_line(int from, bool& whole) {
    std::string line;
    whole = false;
    while (true) {
        char c = 0;
        const ssize_t count = read(from, &c, 1);
        if (count < 0 && errno == EINTR && ending_signal == 0) continue;
        if (count <= 0) return line;
        whole = true;
        if (c == '\n') return line;
        line += c;
    }
}

std::string ask_once(const Tty& tty, const std::string& prompt) {
    tty.say(prompt);
    std::string line;
    {
        const NoEcho unseen(tty.descriptor());
        bool whole = false;
        line = read_line(tty.descriptor(), whole);
    }
    tty.say("\n");
    if (ending_signal != 0) std::raise(std::exchange(ending_signal, 0));
    return line;
}

} // namespace

std::optional<std::string> ask_openly(const std::string& question) {
    const Tty tty;
    if (!tty.is_there()) return std::nullopt;
    tty.say(question);
    bool whole = false;
    return read_line(tty.descriptor(), whole);
}

std::string ask_for_password(const std::string& what, const std::string& instead) {
    const Tty tty;
    if (!tty.is_there()) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("cannot ask for the {} without a tty. Give it on standard "
                                  "input with {}.",
                                  what, instead));
    }
    std::string first = ask_once(tty, fmt::format("New {}: ", what));
    const std::string second = ask_once(tty, fmt::format("Repeat {}: ", what));
    if (first != second) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("the two entries of the {} differ. Nothing was changed.", what));
    }
    return first;
}

std::string read_password_line(const std::string& what) {
    bool whole = false;
    std::string line = read_line(STDIN_FILENO, whole);
    if (!whole) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("standard input contains no {}: give it as a line.", what));
    }
    return line;
}

void require_end_of_input() {
    bool whole = false;
    read_line(STDIN_FILENO, whole);
    if (!whole) return;
    throw Refusal(ExitCode::bad_usage, "standard input contains more than the passwords that were "
                                       "asked for: give one line for each.");
}

} // namespace qvtc::qvtcctl
