#include "qvtcctl/base/confirmation.hpp"
#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/processes.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/system/only_root_writes.hpp"
#include "qvtcctl/verb/child.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <filesystem>

#include <fmt/format.h>
#include <qvtcapi/update.h>
#include <unistd.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* directory = "/tmp/nfs";
constexpr const char* package = "/tmp/nfs/update.qvtc";
constexpr const char* script = "/tmp/nfs/qvupdate.sh";
constexpr const char* script_name = "qvupdate.sh";
constexpr std::string_view package_name = "update.qvtc";

/// Bytes of the package, as far as it is there.
std::uintmax_t package_size() {
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(package, missing);
    return missing ? 0 : size;
}

std::string size_text(std::uintmax_t bytes) {
    constexpr std::uintmax_t kilobyte = 1000;
    if (bytes < kilobyte) return fmt::format("{} bytes", bytes);
    if (bytes < kilobyte * kilobyte) return fmt::format("{} kB", bytes / kilobyte);
    return fmt::format("{:.1f} MB", static_cast<double>(bytes) / (kilobyte * kilobyte));
}

/// The path's last part, without what may follow a "?" or "#".
std::string_view file_of(std::string_view url) {
    url = url.substr(0, url.find_first_of("?#"));
    return url.substr(url.rfind('/') + 1);
}

void require_url(const std::string& url) {
    const bool known =
        url.starts_with("http://") || url.starts_with("https://") || url.starts_with("ftp://");
    if (!known) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("\"{}\" is not a valid URL: it must begin with http://, https:// "
                                  "or ftp://.",
                                  printable(url)));
    }
    if (file_of(url) != package_name || url.find_first_of("?#") != std::string::npos) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("URL \"{}\" must end in \"/{}\": the terminal accepts only a "
                                  "package of that name.",
                                  printable(url), package_name));
    }
}

/// The library takes a script that runs under a shell's own command line for a running one; where
/// the shell has been replaced by the script there is only that.
bool is_running(Chatter chatter) {
    if (!running_processes(script_name).empty()) return true;
    const Quiet quiet(chatter);
    return updating() == 1;
}

void require_none_running(Chatter chatter) {
    if (is_running(chatter))
        throw Refusal(ExitCode::not_done, "an update is running. Wait until it has finished.");
}

/// The script runs as root, so nobody else may be able to put one there, or to exchange it.
void require_only_root_writes(const std::string& fault, std::string_view consequence) {
    if (fault.empty()) return;
    throw Refusal(ExitCode::not_done,
                  fmt::format("{}: {}. Only root may be able to write to {} and to what is in it. "
                              "Remove it, then download and unpack the package again as root.",
                              consequence, fault, directory));
}

void require_script() {
    if (access(script, X_OK) != 0) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("there is no executable update script {}. Download a package "
                                  "with \"qvtcctl update download\" and unpack it there.",
                                  script));
    }
    require_only_root_writes(other_writer_of(directory, script_name),
                             "the update script was not run");
}

void require_safe_directory() {
    std::error_code missing;
    if (!std::filesystem::exists(std::filesystem::symlink_status(directory, missing))) return;
    require_only_root_writes(other_writer_of(directory), "nothing was downloaded");
}

const Argument url_argument = required_argument("URL", "where to download it from");

Answer run_update_download(const Request& request) {
    require_url(request.text(url_argument));
    require_terminal();
    require_none_running(request.chatter());
    require_safe_directory();
    Progress progress(!request.json);
    const int failed = run_in_child(
        [&] { return download(request.text(url_argument).c_str()); }, request.chatter(),
        [&](long seconds) { progress.show("Downloading the update package", seconds); });
    progress.clear();
    if (failed != 0) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("nothing could be downloaded from {}. Check the URL, that its "
                                  "server can be reached from this terminal, and that wget is "
                                  "installed.",
                                  printable(request.text(url_argument))));
    }
    Answer answer;
    answer.text = fmt::format("Downloaded {} ({}).\n", package, size_text(package_size()));
    answer.json = json_map();
    add(answer.json, "package", package);
    add_number(answer.json, "bytes", static_cast<long>(package_size()));
    return answer;
}

Answer run_update_run(const Request& request) {
    require_terminal();
    require_script();
    require_none_running(request.chatter());
    require_consent(request.has(yes_flag),
                    "This runs the update script, which may restart the terminal.");
    Progress progress(!request.json);
    run_in_child([] { return update(); }, request.chatter(),
                 [&](long seconds) { progress.show("Updating", seconds); });
    progress.clear();
    Answer answer;
    answer.text = "The update script has finished.\n";
    answer.notes = {"whether the update succeeded is not known: only the update itself can tell."};
    answer.json = json_map();
    add(answer.json, "state", "ended");
    return answer;
}

Answer run_update_status(const Request& request) {
    require_terminal();
    const bool running = is_running(request.chatter());
    const bool fetched = std::filesystem::exists(package);
    Answer answer;
    answer.text = running ? "An update is running.\n" : "No update is running.\n";
    answer.text += fetched
                       ? fmt::format("Downloaded: {} ({}).\n", package, size_text(package_size()))
                       : "No update package has been downloaded.\n";
    answer.json = json_map();
    add_flag(answer.json, "running", running);
    add_flag(answer.json, "fetched", fetched);
    return answer;
}

} // namespace

const Verb verbs::update_download{
    .name = "download",
    .summary = "Download an update package",
    .description = "Downloads an update package, which replaces any earlier one. The URL "
                   "must name a file called update.qvtc. Only root may be able to write "
                   "to /tmp/nfs, where it is put.",
    .examples = {"qvtcctl update download http://server/terminals/update.qvtc"},
    .arguments = {url_argument},
    .settings = Settings::not_needed,
    .run = run_update_download,
};

const Verb verbs::update_run{
    .name = "run",
    .summary = "Run the update script",
    .description = "Runs /tmp/nfs/qvupdate.sh, the script of an update package, and waits until "
                   "it has finished. It runs as root: the script and its directory must belong "
                   "to root, and nobody else may be able to write to them. The script may "
                   "restart the terminal, so you are asked first.",
    .examples = {"qvtcctl update run", "qvtcctl update run --yes"},
    .arguments = {yes_flag},
    .settings = Settings::not_needed,
    .run = run_update_run,
};

const Verb verbs::update_status{
    .name = "status",
    .summary = "Show whether an update is running",
    .description = "Shows whether the update script is running, and whether a package has been "
                   "downloaded.",
    .examples = {"qvtcctl update status"},
    .settings = Settings::not_needed,
    .run = run_update_status,
};

} // namespace qvtc::qvtcctl
