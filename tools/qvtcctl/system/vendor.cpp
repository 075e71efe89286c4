#include "qvtcctl/base/json.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <array>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

struct VendorText {
    const char* title;
    const char* member;
    json_object* (*get)();
};

constexpr std::array<VendorText, 4> vendor_texts{{
    {"Marker", "marker", qvisoem},
    {"Data", "data", qvoemdata},
    {"Information", "information", qvoeminfo},
    {"Features", "features", qvoemfeature},
}};

Json read(const VendorText& text, Chatter chatter) {
    const Quiet quiet(chatter);
    return Json(text.get());
}

Answer run_oem(const Request& request) {
    require_terminal();
    Answer answer;
    answer.json = json_map();
    for (const VendorText& each : vendor_texts) {
        Json stored = read(each, request.chatter());
        answer.text += stored ? fmt::format("{}:\n{}", each.title, to_text(stored))
                              : fmt::format("{}: none\n", each.title);
        add(answer.json, each.member, std::move(stored));
    }
    return answer;
}

Answer run_battery(const Request& request) {
    require_terminal();
    int charge = -1;
    {
        const Quiet quiet(request.chatter());
        charge = qvgetbattery();
    }
    Answer answer;
    answer.json = json_map();
    if (charge < 0) {
        answer.text = "There is no battery.\n";
        add(answer.json, "charge", Json());
    } else {
        answer.text = fmt::format("{} %\n", charge);
        add_number(answer.json, "charge", charge);
    }
    return answer;
}

} // namespace

const Verb verbs::oem{
    .name = "oem",
    .summary = "Show what the terminal's vendor has stored",
    .description = "Shows the vendor's marker, data, information and list of features.",
    .examples = {"qvtcctl oem", "qvtcctl oem --json"},
    .settings = Settings::not_needed,
    .run = run_oem,
};

const Verb verbs::battery{
    .name = "battery",
    .summary = "Show the battery's charge",
    .description = "Shows the charge of the battery in percent, if there is one.",
    .examples = {"qvtcctl battery"},
    .settings = Settings::not_needed,
    .run = run_battery,
};

} // namespace qvtc::qvtcctl
