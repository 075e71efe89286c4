#include "qvtcctl/base/text.hpp"
#include "qvtcctl/connections/stored_connections.hpp"
#include "qvtcctl/connections/validation.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned longest_delay = 86400;

const Argument seconds_argument =
    optional_argument("SECONDS", fmt::format("0 to {}", longest_delay));

Answer run_delay(const Request& request) {
    std::optional<unsigned> wanted;
    if (!request.text(seconds_argument).empty())
        wanted = require_seconds(request.text(seconds_argument), "the delay", 0, longest_delay);
    const StoredConnections connections(request.chatter());
    if (wanted) connections.set_connect_delay(*wanted);
    const std::optional<std::string> delay = connections.connect_delay();
    Answer answer;
    answer.text = !delay   ? "No delay is set.\n"
                  : wanted ? fmt::format("The delay is now {} s.\n", *delay)
                           : fmt::format("{} s\n", *delay);
    answer.json = json_map();
    const std::optional<unsigned> number = parse_number(delay.value_or(""));
    if (number) {
        add_number(answer.json, "delay", *number);
    } else {
        add(answer.json, "delay", delay ? json_text(*delay) : Json());
    }
    return answer;
}

} // namespace

const Verb verbs::delay{
    .name = "delay",
    .summary = "Show or set the delay before an automatic connection",
    .description = "Shows the seconds that the terminal waits before it connects by itself, or "
                   "sets them.",
    .examples = {"qvtcctl delay", "qvtcctl delay 10"},
    .arguments = {seconds_argument},
    .run = run_delay,
};

} // namespace qvtc::qvtcctl
