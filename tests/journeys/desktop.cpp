#include "desktop.hpp"

#include "support/support.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>

namespace qvtc::test {

namespace {

struct Needed {
    const char* program;
    const char* package;
};

// clang-format off
constexpr Needed needed[] = {
    {"Xorg",               "xserver-xorg-core"},
    {"xfreerdp",           "freerdp2-x11"},
    {"freerdp-shadow-cli", "freerdp2-shadow-x11"},
    {"xclock",             "x11-apps"},
    {"xwininfo",           "x11-utils"},
    {"xrandr",             "x11-xserver-utils"},
    {"killall",            "psmisc"},
    {"ps",                 "procps"},
};
// clang-format on
constexpr const char* dummy_driver = "/usr/lib/xorg/modules/drivers/dummy_drv.so";

/// The packages that must be installed first; empty if none.
std::string missing_packages() {
    std::string missing;
    for (const Needed& each : needed) {
        if (!has_program(each.program)) missing += std::string(" ") + each.package;
    }
    if (!file_exists(dummy_driver)) missing += " xserver-xorg-video-dummy";
    return missing;
}

bool must_run() {
    const char* const required = std::getenv("QVTC_REQUIRE_JOURNEYS");
    return skipping_is_forbidden() || (required != nullptr && std::string(required) == "1");
}

/// Runs a command of the desktop program; throws what it said when it failed.
void desktop(const std::string& arguments) {
    const Output said = output_of(QVTC_DESKTOP " " + arguments + " 2>&1");
    if (said.status != 0) throw std::runtime_error("desktop " + arguments + ": " + said.text);
}

} // namespace

Output output_of(const std::string& command) {
    std::FILE* const stream = popen(command.c_str(), "re");
    if (stream == nullptr) throw std::runtime_error("cannot run " + command);
    Output output;
    std::array<char, 65536> block{};
    while (const std::size_t length = fread(block.data(), 1, block.size(), stream)) {
        output.text.append(block.data(), length);
    }
    const int status = pclose(stream);
    output.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return output;
}

void Journey::SetUp() {
    if (const std::string missing = missing_packages(); !missing.empty()) {
        const std::string reason = "not installed:" + missing;
        if (must_run()) FAIL() << reason;
        GTEST_SKIP() << reason;
    }
    desktop("screen " + screen_options_);
    forget_commands();
}

void start_remote_desktop(const std::string& options) {
    desktop("remote " + options);
    forget_commands();
}

bool runs(const std::string& program) {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(process.path() / "comm"); // none where it is no process, or has ended
        std::string name;
        if (std::getline(file, name) && name == program) return true;
    }
    return false;
}

std::vector<std::string> client_windows() {
    std::vector<std::string> windows;
    for (std::string& line : lines_of(output_of("xwininfo -root -tree").text)) {
        if (line.find("(\"xfreerdp\" \"xfreerdp\")") == std::string::npos) continue;
        windows.push_back(line.substr(line.find('"')));
    }
    return windows;
}

std::vector<std::string> client_windows_once(const std::vector<std::string>& wanted) {
    std::vector<std::string> windows;
    (void)wait_until([&] { return (windows = client_windows()) == wanted; }, patience);
    return windows;
}

terminal::Picture screen() {
    const auto picture = terminal::picture_from_xwd(output_of("xwd -root -silent").text);
    if (!picture) throw std::runtime_error("display :0 gives no picture");
    return *picture;
}

bool shows(std::size_t x, std::size_t y, std::uint32_t colour) {
    constexpr int tolerance = 4; // some ways to draw round colours
    const std::uint32_t seen = screen().at(x, y);
    for (const int shift : {16, 8, 0}) {
        const int difference =
            static_cast<int>(seen >> shift & 0xff) - static_cast<int>(colour >> shift & 0xff);
        if (std::abs(difference) > tolerance) return false;
    }
    return true;
}

bool wait_for_colour(std::size_t x, std::size_t y, std::uint32_t colour) {
    return wait_until([&] { return shows(x, y, colour); }, patience);
}

} // namespace qvtc::test
