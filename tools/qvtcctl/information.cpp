#include "qvtcctl/json.hpp"
#include "qvtcctl/quiet.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/table.hpp"
#include "qvtcctl/terminal.hpp"
#include "qvtcctl/time_verbs.hpp"

#include <array>

#include <CLI/CLI.hpp>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

struct Fact {
    const char* member;
    const char* title;
};

// clang-format off
constexpr std::array<Fact, 18> facts{{
    {"hostname",              "Host name"},
    {"productKey",            "Model"},
    {"deviceType",            "Device type"},
    {"cpuInfo",               "Processor"},
    {"memCap",                "Memory"},
    {"hardCap",               "Storage"},
    {"wiredMac",              "Wired hardware address"},
    {"wirelessMac",           "Wireless hardware address"},
    {"osInfo",                "System"},
    {"hardwareVersion",       "Hardware"},
    {"updateDate",            "Last update"},
    {"logoDate",              "Last update of the logo"},
    {"rdpVersion",            "RDP client"},
    {"spiceVersion",          "SPICE client"},
    {"vmwareViewVersion",     "Horizon client"},
    {"citrixReceiverVersion", "Citrix client"},
    {"velopaneVersion",       "Broker client"},
    {"hdpVersion",            "HDP client"},
}};
// clang-format on

} // namespace

Run define_information(CLI::App&) {
    return [](const Context& context) {
        require_terminal();
        Answer answer;
        {
            const Quiet quiet(context.chatter());
            answer.json.reset(qvgetsysinfo());
        }
        if (!answer.json)
            throw Refusal(ExitCode::not_done, "the terminal's facts could not be read.");
        std::vector<Row> rows{{"FACT", "VALUE"}};
        for (const Fact& fact : facts)
            rows.push_back({fact.title, text_member(answer.json.get(), fact.member)});
        answer.text = layout(rows);
        return answer;
    };
}

} // namespace qvtc::qvtcctl
