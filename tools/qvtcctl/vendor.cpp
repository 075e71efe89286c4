#include "qvtcctl/device_verbs.hpp"
#include "qvtcctl/json.hpp"
#include "qvtcctl/quiet.hpp"
#include "qvtcctl/terminal.hpp"

#include <array>

#include <CLI/CLI.hpp>
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

} // namespace

Run define_oem(CLI::App&) {
    return [](const Context& context) {
        require_terminal();
        Answer answer;
        answer.json = json_map();
        for (const VendorText& each : vendor_texts) {
            Json stored = read(each, context.chatter());
            answer.text += stored ? fmt::format("{}:\n{}", each.title, to_text(stored))
                                  : fmt::format("{}: none\n", each.title);
            add(answer.json, each.member, std::move(stored));
        }
        return answer;
    };
}

Run define_battery(CLI::App&) {
    return [](const Context& context) {
        require_terminal();
        int charge = -1;
        {
            const Quiet quiet(context.chatter());
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
    };
}

} // namespace qvtc::qvtcctl
