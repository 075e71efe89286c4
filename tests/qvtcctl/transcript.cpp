#include "transcript.hpp"

#include "support/support.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <stdexcept>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace qvtc::test {
namespace {

constexpr const char* command_file = "/tmp/transcript/command";
constexpr const char* input_file = "/tmp/transcript/input";
constexpr const char* output_file = "/tmp/transcript/output";
constexpr const char* error_file = "/tmp/transcript/error";

int run_bash(const std::string& command, const std::string& redirections) {
    write_file(command_file, command);
    const int status = std::system(("bash " + std::string(command_file) + redirections).c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// Times are the only thing that differs from one run to the next.
std::string without_times(const std::string& text) {
    static const std::regex milliseconds(R"("milliseconds": \d+)");
    static const std::regex log_time(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)");
    return std::regex_replace(std::regex_replace(text, milliseconds, "\"milliseconds\": N"),
                              log_time, "DATE TIME");
}

/// A program on a terminal of its own, which this side reads and types into.
class TerminalSession {
  public:
    explicit TerminalSession(const std::string& command)
        : child_(forkpty(&master_, nullptr, nullptr, nullptr)) {
        if (child_ != 0) return;
        execl("/bin/bash", "bash", "-c", command.c_str(), nullptr);
        _exit(127);
    }
    ~TerminalSession() { close(master_); }
    TerminalSession(const TerminalSession&) = delete;
    TerminalSession& operator=(const TerminalSession&) = delete;

    /// Types each line when the program asks for it: it has printed one more colon, and has
    /// switched the echo off.
    void type(const std::string& lines) {
        long asked = 0;
        for (const std::string& line : lines_of(lines)) {
            ++asked;
            while (std::count(output_.begin(), output_.end(), ':') < asked || echoes()) {
                if (!read_more()) return;
            }
            send(line + "\n");
        }
    }

    /// Types a line once the program has asked for consent.
    void answer(const std::string& line) {
        while (output_.find("[y/N] ") == std::string::npos) {
            if (!read_more()) return;
        }
        send(line + "\n");
    }

    /// Its exit status, once everything it printed has been read.
    int finish() {
        while (read_more()) {
        }
        int status = 0;
        waitpid(child_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    const std::string& output() const { return output_; }

  private:
    bool echoes() const {
        termios settings{};
        return tcgetattr(master_, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
    }

    void send(const std::string& text) const {
        if (write(master_, text.data(), text.size()) < 0) throw std::runtime_error("cannot type");
    }

    /// False at the end. Waits a moment at most: that the echo goes off is nothing to be read.
    bool read_more() {
        pollfd waiting{master_, POLLIN, 0};
        if (poll(&waiting, 1, 10) <= 0) return true;
        std::array<char, 4096> buffer{};
        const ssize_t count = read(master_, buffer.data(), buffer.size());
        if (count <= 0) return false;
        output_.append(buffer.data(), static_cast<std::size_t>(count));
        return true;
    }

    int master_ = -1;
    pid_t child_;
    std::string output_;
};

/// The lines as they stood on the terminal one after the other, also those that were overwritten;
/// one that was painted again with nothing but another time counts once.
std::string painted_lines(std::string output) {
    static const std::regex seconds(R"( \(\d+ s\))");
    output = std::regex_replace(output, seconds, " (N s)");
    output = std::regex_replace(output, std::regex("\r\n"), "\n");
    std::replace(output.begin(), output.end(), '\r', '\n');
    std::string painted;
    std::string last;
    for (std::string line : lines_of(output)) {
        line.erase(line.find_last_not_of(' ') + 1);
        if (line.empty() || line == last) continue;
        painted += line + "\n";
        last = line;
    }
    return painted;
}

} // namespace

Transcript::Transcript() {
    std::error_code exists;
    std::filesystem::create_symlink(QVTCCTL_PROGRAM, "/usr/local/bin/qvtcctl", exists);
}

Transcript& Transcript::run(const std::string& command, const std::string& input) {
    write_file(input_file, input);
    const int status =
        run_bash(command, std::string(" <") + input_file + " >" + output_file + " 2>" + error_file);
    add("$ ", command + "\n");
    add("< ", input);
    add("| ", without_times(read_file(output_file)));
    add("! ", without_times(read_file(error_file)));
    add("= ", std::to_string(status) + "\n");
    return *this;
}

Transcript& Transcript::run_on_terminal(const std::string& command, const std::string& typed) {
    TerminalSession session(command);
    session.type(typed);
    const int status = session.finish();
    add("$ ", command + "\n");
    add("< ", typed);
    add("| ", painted_lines(session.output()));
    add("= ", std::to_string(status) + "\n");
    return *this;
}

Transcript& Transcript::run_with_answer(const std::string& command, const std::string& typed) {
    TerminalSession session(command);
    session.answer(typed);
    const int status = session.finish();
    add("$ ", command + "\n");
    add("| ", painted_lines(session.output()));
    add("= ", std::to_string(status) + "\n");
    return *this;
}

void Transcript::expect(const std::string& name) const {
    expect_golden("qvtcctl/" + name + ".txt", text_);
}

void Transcript::add(const std::string& mark, const std::string& output) {
    for (const std::string& line : lines_of(output)) text_ += mark + line + "\n";
}

} // namespace qvtc::test
