#include "qvtcctl/base/installed.hpp"
#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/program.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/table.hpp"
#include "qvtcctl/system/host_name.hpp"
#include "qvtcctl/verb/quiet.hpp"
#include "qvtcctl/verb/terminal.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <array>
#include <filesystem>

#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

/// What the library has looked up on this terminal.
struct Fact {
    const char* member;
    const char* title;
};

// clang-format off
constexpr std::array<Fact, 7> facts{{
    {"productKey",  "Model"},
    {"deviceType",  "Device type"},
    {"cpuInfo",     "Processor"},
    {"memCap",      "Memory class"},
    {"hardCap",     "Storage class"},
    {"wiredMac",    "Wired hardware address"},
    {"wirelessMac", "Wireless hardware address"},
}};

/// A date that the library makes up where its file is missing.
struct Date {
    const char* member;
    const char* title;
    const char* file;
};
constexpr std::array<Date, 2> dates{{
    {"updateDate", "Last update",             "/home/root/lastupdate"},
    {"logoDate",   "Last update of the logo", "/home/root/logoupdate"},
}};

struct Client {
    const char* title;
    const char* program;
};
constexpr std::array<Client, 5> clients{{
    {"RDP client",     "xfreerdp"},
    {"Horizon client", "vmware-view"},
    {"SPICE client",   "remote-viewer"},
    {"VNC client",     "vncviewer"},
    {"Web client",     "firefox"},
}};

/// The library says these of every terminal, whatever is on it.
constexpr std::array<const char*, 8> fixed_members{
    "osInfo",          "hardwareVersion",   "rdpVersion",            "spiceVersion",
    "velopaneVersion", "vmwareViewVersion", "citrixReceiverVersion", "hdpVersion"};
// clang-format on

/// The library takes the oldest model where it does not know the processor.
bool is_guessed_model(const Json& info) {
    const std::string processor = text_member(info.get(), "cpuInfo");
    return text_member(info.get(), "productKey") == "RX10" &&
           processor.find("J1900") == std::string::npos &&
           processor.find("J1800") == std::string::npos;
}

/// The library takes the smallest disk where it cannot look.
bool is_guessed_storage(const Json& info) {
    if (text_member(info.get(), "hardCap") != "8GB") return false;
    const auto size = run_program({"blockdev", "--getsize64", "/dev/sda"}, "LC_ALL=C");
    return !size || !size->succeeded;
}

/// Empty where it is not known.
std::string known_fact(const Json& info, const char* member) {
    const std::string_view name = member;
    std::string value = text_member(info.get(), member);
    if (value == "N/A") return "";
    if (name == "productKey" && is_guessed_model(info)) return "";
    if (name == "hardCap" && is_guessed_storage(info)) return "";
    return value;
}

std::string known_date(const Json& info, const Date& date) {
    return std::filesystem::exists(date.file) ? text_member(info.get(), date.member) : "";
}

class Report {
  public:
    void add_row(const char* title, const char* member, const std::string& value) {
        rows_.push_back({title, value.empty() ? "unknown" : value});
        add(json_, member, value.empty() ? Json() : json_text(value));
    }
    void add_client(const Client& client) {
        const bool there = is_installed(client.program);
        rows_.push_back({client.title, there ? "installed" : "not installed"});
        add_flag(clients_, client.program, there);
    }
    Answer answer(Json fixed) {
        add(json_, "clients", std::move(clients_));
        add(json_, "fixed", std::move(fixed));
        Answer answer;
        answer.text = layout(rows_);
        answer.json = std::move(json_);
        return answer;
    }

  private:
    std::vector<Row> rows_{{"FACT", "VALUE"}};
    Json json_ = json_map();
    Json clients_ = json_map();
};

Json fixed_texts(const Json& info) {
    Json fixed = json_map();
    for (const char* const member : fixed_members) {
        add(fixed, member, text_member(info.get(), member));
    }
    return fixed;
}

Answer run_info(const Request& request) {
    require_terminal();
    Json info;
    {
        const Quiet quiet(request.chatter());
        info.reset(qvgetsysinfo());
    }
    if (!info) throw Refusal(ExitCode::not_done, "the terminal's information could not be read.");
    Report report;
    report.add_row("Host name", "hostname", stored_host_name(request.chatter()));
    for (const Fact& fact : facts)
        report.add_row(fact.title, fact.member, known_fact(info, fact.member));
    for (const Date& date : dates) report.add_row(date.title, date.member, known_date(info, date));
    for (const Client& client : clients) report.add_client(client);
    return report.answer(fixed_texts(info));
}

} // namespace

const Verb verbs::info{
    .name = "info",
    .summary = "Show what this terminal is",
    .description = "Shows the terminal's name, model, processor, memory, storage, hardware "
                   "addresses, the dates of its updates, and which clients are installed. What "
                   "cannot be looked up is unknown. With --json there is also \"fixed\", the "
                   "texts that the library gives for every terminal, whatever is on it.",
    .examples = {"qvtcctl info", "qvtcctl info --json"},
    .run = run_info,
};

} // namespace qvtc::qvtcctl
