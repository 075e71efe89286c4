#include "qvtcctl/child.hpp"
#include "qvtcctl/confirmation.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/only_root_writes.hpp"
#include "qvtcctl/processes.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/terminal_verbs.hpp"
#include "qvtcctl/text.hpp"

#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>
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

} // namespace

Run define_update_download(CLI::App& app) {
    auto url = std::make_shared<std::string>();
    app.add_option("URL", *url, "where to download it from")->required();
    return [url](const Context& context) {
        require_url(*url);
        require_terminal();
        require_none_running(context.chatter());
        require_safe_directory();
        Progress progress(!context.json);
        const int failed = run_in_child(
            [&] { return download(url->c_str()); }, context.chatter(),
            [&](long seconds) { progress.show("Downloading the update package", seconds); });
        progress.clear();
        if (failed != 0) {
            throw Refusal(
                ExitCode::not_done,
                fmt::format("nothing could be downloaded from {}. Check the URL, that its "
                            "server can be reached from this terminal, and that wget is "
                            "installed.",
                            printable(*url)));
        }
        Answer answer;
        answer.text = fmt::format("Downloaded {} ({}).\n", package, size_text(package_size()));
        answer.json = json_map();
        add(answer.json, "package", package);
        add_number(answer.json, "bytes", static_cast<long>(package_size()));
        return answer;
    };
}

Run define_update_run(CLI::App& app) {
    auto yes = std::make_shared<bool>(false);
    app.add_flag("--yes", *yes, "do not ask");
    return [yes](const Context& context) {
        require_terminal();
        require_script();
        require_none_running(context.chatter());
        require_consent(*yes, "This runs the update script, which may restart the terminal.");
        Progress progress(!context.json);
        run_in_child([] { return update(); }, context.chatter(),
                     [&](long seconds) { progress.show("Updating", seconds); });
        progress.clear();
        Answer answer;
        answer.text = "The update script has finished.\n";
        answer.notes = {
            "whether the update succeeded is not known: only the update itself can tell."};
        answer.json = json_map();
        add(answer.json, "state", "ended");
        return answer;
    };
}

Run define_update_status(CLI::App&) {
    return [](const Context& context) {
        require_terminal();
        const bool running = is_running(context.chatter());
        const bool fetched = std::filesystem::exists(package);
        Answer answer;
        answer.text = running ? "An update is running.\n" : "No update is running.\n";
        answer.text +=
            fetched ? fmt::format("Downloaded: {} ({}).\n", package, size_text(package_size()))
                    : "No update package has been downloaded.\n";
        answer.json = json_map();
        add_flag(answer.json, "running", running);
        add_flag(answer.json, "fetched", fetched);
        return answer;
    };
}

} // namespace qvtc::qvtcctl
