#include "qvtcctl/verb/terminal.hpp"

#include "qvtcctl/verb/settings_document.hpp"

#include <filesystem>
#include <string_view>

#include <fmt/format.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view root_home = "/home/root";

} // namespace

void require_terminal() {
    if (geteuid() != 0) {
        throw Refusal(ExitCode::not_possible,
                      "only root may do this: the terminal's settings belong to root. Run it as "
                      "root, for example with sudo.");
    }
    if (!std::filesystem::is_directory(root_home)) {
        throw Refusal(ExitCode::not_possible,
                      fmt::format("this machine is not a terminal that can be managed: it has no "
                                  "directory {}, which holds a terminal's settings.",
                                  root_home));
    }
}

Refusal not_taken(const std::string& what, const LogMark& log) {
    std::string message = fmt::format(
        "{}: {} could not be saved. Check that it is writable and that its disk is not full.", what,
        settings_document);
    const std::string complaint = last_complaint(log.added());
    if (!complaint.empty()) message += fmt::format(" The library's log says: \"{}\".", complaint);
    return Refusal(ExitCode::not_done, message);
}

} // namespace qvtc::qvtcctl
