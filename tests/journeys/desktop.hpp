#pragma once

#include "picture.hpp"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace qvtc::test {

/// How long a journey waits for a client or a server, on a slow machine.
inline constexpr std::chrono::seconds patience{30};

struct Output {
    int status = 0;   ///< the exit status; 128+N if signal N ended it
    std::string text; ///< standard output
};

/// Runs a shell command and captures what it prints. Throws std::runtime_error if it cannot.
Output output_of(const std::string& command);

/// The colour of the remote desktop's ground, 0xRRGGBB.
inline constexpr std::uint32_t remote_ground = 0x3366cc;

/// A terminal with a screen on display :0. Skipped where a package is missing, and failed in CI
/// or where QVTC_REQUIRE_JOURNEYS is 1.
class Journey : public testing::Test {
  protected:
    /// Starts the screen; `options` are those of "desktop screen".
    explicit Journey(std::string options = "") : screen_options_(std::move(options)) {}
    void SetUp() override;

  private:
    std::string screen_options_;
};

/// Starts the remote desktop; `options` are those of "desktop remote".
void start_remote_desktop(const std::string& options = "");

/// Whether there is a process of this program, also one that has ended but was not waited for yet:
/// the library takes it for a running one too.
bool runs(const std::string& program);

/// The window tree's lines of RDP clients, without indentation and window ids.
std::vector<std::string> client_windows();

/// The same once they are these, or as they are when that does not come: a window gets its place a
/// moment after it has come.
std::vector<std::string> client_windows_once(const std::vector<std::string>& wanted);

/// What display :0 shows. Throws std::runtime_error when it cannot be read.
terminal::Picture screen();

/// Whether a place on the screen has a colour, or one that cannot be told from it.
bool shows(std::size_t x, std::size_t y, std::uint32_t colour);

/// Waits until it has.
[[nodiscard]] bool wait_for_colour(std::size_t x, std::size_t y, std::uint32_t colour);

} // namespace qvtc::test
