#include "qvtcctl/device_verbs.hpp"
#include "qvtcctl/json.hpp"
#include "qvtcctl/quiet.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/text.hpp"

#include <memory>
#include <regex>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t longest_locale = 32;

std::string language_now(Chatter chatter) {
    const Quiet quiet(chatter);
    const Json answer(qvgetlanguage());
    return answer ? text_member(answer.get(), "language") : "";
}

void require_locale(const std::string& locale) {
    static const std::regex form("[a-z]{2,3}_[A-Z]{2}([.@][A-Za-z0-9.@_-]+)?");
    if (locale.size() <= longest_locale && std::regex_match(locale, form)) return;
    throw Refusal(
        ExitCode::bad_usage,
        fmt::format("\"{}\" is not a locale name. Write it as en_US.", printable(locale)));
}

/// True when the picture that goes with the language was put in place too.
bool set_language(const std::string& locale, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    int status = 0;
    {
        const Quiet quiet(chatter);
        status = qvsetlanguage(fmt::format("language={}", locale).c_str());
    }
    const std::string now = language_now(chatter);
    if (now.empty() || !locale.starts_with(now))
        throw not_taken("the language was not stored", log);
    return status == 0;
}

} // namespace

Run define_language(CLI::App& app) {
    auto locale = std::make_shared<std::string>();
    const CLI::Option* given = app.add_option("LOCALE", *locale, "the new language, such as en_US");
    return [locale, given](const Context& context) {
        const bool set = given->count() > 0;
        if (set) require_locale(*locale);
        require_terminal();
        Answer answer;
        if (set && !set_language(*locale, context.chatter()))
            answer.notes = {"the start picture is locked and was not changed."};
        const std::string now = language_now(context.chatter());
        answer.text = set           ? fmt::format("The language is now {}.\n", now)
                      : now.empty() ? "No language is set.\n"
                                    : fmt::format("{}\n", printable(now));
        answer.json = json_map();
        add(answer.json, "language", now);
        return answer;
    };
}

} // namespace qvtc::qvtcctl
