#include "qvtcctl/system/clock.hpp"
#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/system/host_name.hpp"
#include "qvtcctl/system/zones.hpp"
#include "qvtcctl/verb/answer.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <array>
#include <cstdlib>

#include <arpa/inet.h>
#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// The clock may have gone on by this much between setting and looking.
constexpr long tolerated_seconds = 60;

/// The terminal's own, which the library starts.
constexpr const char* synchronisation_program = "ntpdate-sync";

struct Clock {
    long seconds = 0; ///< since 1970
    Zone zone;
    bool is_set = false; ///< somebody has decided whether it follows a server
    bool follows = false;
    std::string server;
};

struct ClockOptions {
    std::string time;
    std::string zone;
    std::string server;
    bool no_server = false;

    bool changes() const { return !time.empty() || !zone.empty() || !server.empty() || no_server; }
};

Clock clock_now(Chatter chatter) {
    Json answer;
    {
        const Quiet quiet(chatter);
        answer.reset(qvgetdatetime());
    }
    if (!answer) throw Refusal(ExitCode::not_done, "date and time could not be read.");
    constexpr long milliseconds = 1000;
    Clock clock;
    clock.seconds = std::atol(text_member(answer.get(), "systemTime").c_str()) / milliseconds;
    clock.zone = {text_member(answer.get(), "region"), text_member(answer.get(), "city")};
    const std::string synchronisation = text_member(answer.get(), "useNTP");
    clock.is_set = !synchronisation.empty();
    clock.follows = synchronisation == "on";
    clock.server = text_member(answer.get(), "ntpHost");
    return clock;
}

/// From here on this program's own times are of that zone.
void use_zone(const Zone& zone) {
    setenv("TZ", (":/usr/share/zoneinfo/posix/" + zone.name()).c_str(), 1);
    tzset();
}

std::string time_text(const Clock& clock) {
    use_zone(clock.zone);
    const std::time_t seconds = clock.seconds;
    std::tm parts{};
    localtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return text.data();
}

void require_server(const std::string& server) {
    std::array<unsigned char, sizeof(in6_addr)> address{};
    if (inet_pton(AF_INET, server.c_str(), address.data()) == 1 ||
        inet_pton(AF_INET6, server.c_str(), address.data()) == 1)
        return;
    const std::string fault = fault_in_host_name(server);
    if (fault.empty()) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("time server \"{}\" {}", printable(server), fault));
}

void require_consistent(const ClockOptions& options) {
    if (!options.server.empty() && options.no_server)
        throw UsageError("--ntp and --no-ntp cannot be used together.");
    if (!options.server.empty() && !options.time.empty())
        throw UsageError("--ntp and --set cannot be used together: a clock that follows a "
                         "server is not set by hand.");
    if (!options.server.empty()) require_server(options.server);
    if (!options.time.empty() && !parse_time(options.time)) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("\"{}\" is not a valid time. Write it as \"2026-12-31 23:59\" "
                                  "or \"2026-12-31 23:59:30\".",
                                  printable(options.time)));
    }
}

/// What is to hold afterwards: what was asked for, and what holds already.
Clock wanted(const ClockOptions& options, Clock now) {
    if (!options.zone.empty()) now.zone = require_zone(options.zone);
    if (!options.server.empty()) {
        now.follows = true;
        now.server = options.server;
    }
    if (options.no_server || !options.time.empty()) now.follows = false;
    use_zone(now.zone);
    if (auto parts = parse_time(options.time)) now.seconds = std::mktime(&*parts);
    return now;
}

std::string parameters(const ClockOptions& options, const Clock& wish) {
    std::string params =
        fmt::format("useNTP={}&ntpHost={}&region={}&city={}", wish.follows ? "on" : "off",
                    wish.server, wish.zone.region, wish.zone.city);
    if (!options.time.empty()) params += "&systemTime=" + options.time;
    return params;
}

void require_taken(const ClockOptions& options, const Clock& wish, const Clock& now,
                   const LogMark& log) {
    if (now.zone.name() != wish.zone.name() || now.follows != wish.follows ||
        now.server != wish.server)
        throw not_taken("date and time were not stored", log);
    if (options.time.empty() || std::abs(now.seconds - wish.seconds) <= tolerated_seconds) return;
    throw Refusal(
        ExitCode::not_done,
        "the zone and the server were stored, but the clock was not set: \"date\" was not "
        "allowed to set it.");
}

void change_clock(const ClockOptions& options, Chatter chatter) {
    const LogMark log{std::string(system_log)};
    const Clock wish = wanted(options, clock_now(chatter));
    {
        const Quiet quiet(chatter);
        qvsetdatetime(parameters(options, wish).c_str());
    }
    require_taken(options, wish, clock_now(chatter), log);
}

std::string server_text(const Clock& clock) {
    if (clock.follows) return printable(clock.server);
    return clock.is_set ? "none" : "none has been set";
}

bool is_known_to_name_servers(const std::string& server) {
    const auto answer = run_program({"getent", "ahosts", server}, "LC_ALL=C");
    return answer && answer->succeeded;
}

/// Why the clock does not follow the server that is stored: the library only starts the program
/// that sets it, in the background, and hears nothing of what it came to.
std::vector<std::string> notes_on(const Clock& clock, bool changed) {
    if (!clock.follows) return {};
    if (!is_installed(synchronisation_program)) {
        return {fmt::format("the time server is stored, but nothing sets the clock from it: the "
                            "program {} is not installed.",
                            synchronisation_program)};
    }
    if (changed && !is_known_to_name_servers(clock.server)) {
        return {fmt::format("the time server is stored, but the name {} cannot be resolved now. "
                            "The clock is not set until it can be resolved.",
                            printable(clock.server))};
    }
    if (!changed) return {};
    return {"the clock is set in the background, as soon as the time server responds."};
}

Answer answer_of(const Clock& clock, bool changed) {
    Answer answer;
    const std::string time = time_text(clock);
    answer.text = fmt::format("Time         {}\nZone         {}\nTime server  {}\n", time,
                              printable(clock.zone.name()), server_text(clock));
    answer.json = json_map();
    add(answer.json, "time", time);
    add_number(answer.json, "seconds", clock.seconds);
    add(answer.json, "zone", clock.zone.name());
    add_flag(answer.json, "followsServer", clock.follows);
    add(answer.json, "server", clock.server);
    add_notes(answer, notes_on(clock, changed));
    return answer;
}

} // namespace

std::optional<std::tm> parse_time(const std::string& text) {
    std::tm parts{};
    const char* rest = strptime(text.c_str(), "%Y-%m-%d %H:%M", &parts);
    if (rest != nullptr && *rest == ':') rest = strptime(rest, ":%S", &parts);
    if (text.empty() || rest == nullptr || *rest != '\0') return std::nullopt;
    parts.tm_isdst = -1;
    // A 30th of February would silently become another day.
    std::tm normal = parts;
    std::mktime(&normal);
    if (normal.tm_mday != parts.tm_mday || normal.tm_mon != parts.tm_mon) return std::nullopt;
    return parts;
}

namespace {

const Argument set_option =
    option("--set", "\"YYYY-MM-DD hh:mm[:ss]\"", "set the clock, in the terminal's zone");
const Argument zone_option = option("--zone", "REGION/CITY", "set the time zone");
const Argument ntp_option = option("--ntp", "HOST", "follow a time server");
const Argument no_ntp_flag = flag("--no-ntp", "follow no time server");

Answer run_time(const Request& request) {
    const ClockOptions options{request.text(set_option), request.text(zone_option),
                               request.text(ntp_option), request.has(no_ntp_flag)};
    require_consistent(options);
    if (!options.zone.empty()) require_zone(options.zone);
    require_terminal();
    if (options.changes()) change_clock(options, request.chatter());
    return answer_of(clock_now(request.chatter()), !options.server.empty());
}

} // namespace

const Verb verbs::time{
    .name = "time",
    .summary = "Show or set the clock, time zone and time server",
    .description = "Shows the time, the time zone and the time server, or changes them. What is "
                   "not named stays as it is; setting the clock turns off time synchronisation. "
                   "A time server is asked in the background, by the terminal's program "
                   "ntpdate-sync.",
    .examples = {"qvtcctl time", "qvtcctl time --zone Europe/Vienna --ntp pool.ntp.org",
                 "qvtcctl time --set \"2026-12-31 23:59\""},
    .arguments = {set_option, zone_option, ntp_option, no_ntp_flag},
    .run = run_time,
};

} // namespace qvtc::qvtcctl
