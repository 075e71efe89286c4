#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <algorithm>

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

constexpr std::string_view lower_case = "abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view upper_case = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view in_a_suffix = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "0123456789.@_-";

/// Takes the characters of a set from the start of the text, and tells how many.
std::size_t skip(std::string_view& text, std::string_view set) {
    const std::size_t count = std::min(text.find_first_not_of(set), text.size());
    text.remove_prefix(count);
    return count;
}

/// "en_US", "ast_ES" or "de_AT.UTF-8@euro"
bool is_locale(std::string_view text) {
    const std::size_t language = skip(text, lower_case);
    if (language < 2 || language > 3 || !text.starts_with('_')) return false;
    text.remove_prefix(1);
    if (skip(text, upper_case) != 2) return false;
    if (text.empty()) return true;
    return text.find_first_of(".@") == 0 && text.size() > 1 && skip(text, in_a_suffix) > 0 &&
           text.empty();
}

void require_locale(const std::string& locale) {
    if (locale.size() <= longest_locale && is_locale(locale)) return;
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

const Argument locale_argument = optional_argument("LOCALE", "the new language, such as en_US");

Answer run_language(const Request& request) {
    const bool set = request.has(locale_argument);
    if (set) require_locale(request.text(locale_argument));
    require_terminal();
    Answer answer;
    if (set && !set_language(request.text(locale_argument), request.chatter()))
        answer.notes = {"the start picture is locked and was not changed."};
    const std::string now = language_now(request.chatter());
    answer.text = set           ? fmt::format("The language is now {}.\n", now)
                  : now.empty() ? "No language is set.\n"
                                : fmt::format("{}\n", printable(now));
    answer.json = json_map();
    add(answer.json, "language", now);
    return answer;
}

} // namespace

const Verb verbs::language{
    .name = "language",
    .summary = "Show or set the language of the front-end",
    .description = "Shows the language, or sets it together with the picture that the terminal "
                   "shows while it starts. The front-end is translated to zh_CN, ko_KR and "
                   "en_US.",
    .examples = {"qvtcctl language", "qvtcctl language ko_KR"},
    .arguments = {locale_argument},
    .run = run_language,
};

} // namespace qvtc::qvtcctl
