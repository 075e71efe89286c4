#include "qvtcctl/json.hpp"
#include "qvtcctl/quiet.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/secrets.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/terminal_verbs.hpp"
#include "qvtcctl/text.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* what = "manager password";
constexpr std::size_t longest_password = 255;

struct Options {
    bool ask = false;
    bool read = false;
    bool remove = false;
    bool show = false;
};

std::string password_now(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json answer(qvgetmgrpwd());
    return answer ? text_member(answer.get(), "password") : "";
}

/// Refuses what the parameter string or the document would change, without showing it.
void require_carried(const std::string& password) {
    std::string fault;
    if (password.empty()) fault = "is empty. To remove it, use --remove";
    if (password.size() > longest_password)
        fault = fmt::format("has more than {} bytes", longest_password);
    if (password.find_first_of("&=%|") != std::string::npos)
        fault = "contains one of the characters & = % |, which cannot be stored";
    if (!is_utf8(password)) fault = "is not UTF-8 text";
    for (const char c : password) {
        if (is_control(static_cast<unsigned char>(c)) && static_cast<unsigned char>(c) < 0x80)
            fault = "contains a control character";
    }
    if (!fault.empty())
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("the {} {}. Nothing was changed.", what, fault));
}

void set_password(const std::string& password, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter);
        qvsetmgrpwd(fmt::format("password={}", password).c_str());
    }
    if (password_now(chatter) != password)
        throw not_taken(fmt::format("the {} was not stored", what), log);
}

/// Changes the password if an option asks for it; what was done.
std::string changed(const Options& options, Chatter chatter) {
    if (options.ask + options.read + options.remove > 1)
        throw UsageError("--password, --password-stdin and --remove cannot be used together.");
    if (options.remove) {
        set_password("", chatter);
        return "The manager password was removed.\n";
    }
    if (!options.ask && !options.read) return "";
    const std::string password =
        options.ask ? ask_for_password(what, "--password-stdin") : read_password_line(what);
    if (options.read) require_end_of_input();
    require_carried(password);
    set_password(password, chatter);
    return "The manager password was set.\n";
}

} // namespace

Run define_manager_password(CLI::App& app) {
    auto options = std::make_shared<Options>();
    app.add_flag("--password", options->ask, "ask for a new password");
    app.add_flag("--password-stdin", options->read, "read a new password from standard input");
    app.add_flag("--remove", options->remove, "remove the password");
    app.add_flag("--show-password", options->show, "show the password in clear text");
    return [options](const Context& context) {
        require_terminal();
        Answer answer;
        answer.text = changed(*options, context.chatter());
        const std::string now = password_now(context.chatter());
        if (answer.text.empty()) {
            answer.text =
                now.empty() ? "No manager password is set.\n" : "A manager password is set.\n";
        }
        if (options->show && !now.empty()) answer.text += printable(now) + "\n";
        answer.json = json_map();
        add_flag(answer.json, "set", !now.empty());
        if (options->show) add(answer.json, "password", now);
        return answer;
    };
}

} // namespace qvtc::qvtcctl
