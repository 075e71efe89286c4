#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/secrets.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* what = "manager password";
constexpr std::size_t longest_password = 255;

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

const Argument password_flag = flag("--password", "ask for a new password");
const Argument password_stdin_flag =
    flag("--password-stdin", "read a new password from standard input");
const Argument remove_flag = flag("--remove", "remove the password");
const Argument show_password_flag = flag("--show-password", "show the password in clear text");

/// Changes the password if an option asks for it; what was done.
std::string changed(const Request& request) {
    const bool ask = request.has(password_flag);
    const bool read = request.has(password_stdin_flag);
    const bool remove = request.has(remove_flag);
    if (ask + read + remove > 1)
        throw UsageError("--password, --password-stdin and --remove cannot be used together.");
    if (remove) {
        set_password("", request.chatter());
        return "The manager password was removed.\n";
    }
    if (!ask && !read) return "";
    const std::string password =
        ask ? ask_for_password(what, "--password-stdin") : read_password_line(what);
    if (read) require_end_of_input();
    require_carried(password);
    set_password(password, request.chatter());
    return "The manager password was set.\n";
}

Answer run_manager_password(const Request& request) {
    require_terminal();
    Answer answer;
    answer.text = changed(request);
    const std::string now = password_now(request.chatter());
    if (answer.text.empty()) {
        answer.text =
            now.empty() ? "No manager password is set.\n" : "A manager password is set.\n";
    }
    if (request.has(show_password_flag) && !now.empty()) answer.text += printable(now) + "\n";
    answer.json = json_map();
    add_flag(answer.json, "set", !now.empty());
    if (request.has(show_password_flag)) add(answer.json, "password", now);
    return answer;
}

} // namespace

const Verb verbs::manager_password{
    .name = "manager-password",
    .summary = "Show, set or remove the password of the manager screens",
    .description = "Shows whether the front-end's manager screens are protected by a password, "
                   "sets that password or removes it. A new one is asked for, or read from "
                   "standard input; it is not an argument, as everybody on the machine can read "
                   "a command line.",
    .examples = {"qvtcctl manager-password", "qvtcctl manager-password --password",
                 "qvtcctl manager-password --remove"},
    .arguments = {password_flag, password_stdin_flag, remove_flag, show_password_flag},
    .run = run_manager_password,
};

} // namespace qvtc::qvtcctl
