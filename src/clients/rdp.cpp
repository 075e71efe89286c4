#include "clients/rdp.hpp"

#include "clients/password.hpp"
#include "clients/rdp_options.hpp"
#include "clients/start_marker.hpp"
#include "clients/watcher.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/process.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::clients {

namespace {

using connections::Field;

constexpr const char* size_query =
    R"(DISPLAY=:0.0 xrandr |grep -w "current" |awk -F',' '{print$2}')"
    R"(|grep -o "[0-9]\{1,4\} x [0-9]\{1,4\}"|sed -n "1,1p"|sed s/[[:space:]]//g)";
constexpr std::size_t size_query_limit = 1024;
constexpr std::size_t shortest_size = 5; // bytes of the query's output, newline included

bool audio_server_runs() {
    if (process_runs("pulseaudio")) return true;
    os().run("qvplugin 0 96 >/dev/null 2>&1"); // lets the system start it
    return process_runs("pulseaudio");
}

RdpFacts gather_facts(connections::Record record, Password password, Password gateway_password) {
    RdpFacts facts;
    facts.record = std::move(record);
    facts.password = std::move(password.text);
    facts.gateway_password = std::move(gateway_password.text);
    facts.audio_available = audio_server_runs();
    facts.screen_size = screen_size_in(os().capture(size_query, size_query_limit));
    facts.usb_denied = os().exists(paths::usb_denied);
    facts.screens_cloned = os().exists(paths::screens_cloned);
    facts.vga_left_of_hdmi = os().exists(paths::vga_left_of_hdmi);
    facts.notebook = os().exists(paths::n5095_notebook) || os().exists(paths::j4105_notebook);
    return facts;
}

void start_client(const std::string& command_line) {
    const std::string marker = store_start_marker();
    os().run(textf("echo '%s'>%s", marker.c_str(), paths::rdp_log));
    const std::string command = textf("%s >>%s 2>&1 &", command_line.c_str(), paths::rdp_log);
    log(Level::info, "xfreerdp params:%s", command.c_str());
    os().run("killall xfreerdp");
    os().run(command);
}

} // namespace

std::string rdp_command_line(const RdpFacts& facts) {
    const std::string size =
        facts.screen_size.empty()
            ? "/f"
            : "/size:" + shell::bare(facts.screen_size, shell::At::inside_word);
    std::string line = textf(
        "xfreerdp /t:%s /v:'%s' %s +auto-reconnect /auto-reconnect-max-retries:5 /cert-ignore ",
        shell::bare(facts.record[Field::name], shell::At::inside_word).c_str(),
        shell::in_single(facts.record[Field::serverAddress]).c_str(), size.c_str());
    for (const rdp_options::Option& option : rdp_options::in_order) {
        if (option.decide != nullptr) {
            line += option.decide(facts);
        } else {
            line += is_on(facts.record[option.switch_field]) ? option.when_on : option.when_off;
        }
    }
    return line;
}

std::string screen_size_in(std::string output) {
    if (output.size() < shortest_size) return {};
    output.pop_back(); // the newline
    return output;
}

bool launch_rdp(connections::ConnectionId id) {
    log(Level::info, "%s id=%d\n", "rdpclient", static_cast<int>(id));
    connections::Record record = connections::stored_record(connections::type_number::rdp, id);
    Password password = decode_password(record[Field::password]);
    if (!password.decodable) {
        log(Level::error, "@qvlaunchclient password decode error");
        return false;
    }
    Password gateway_password = decode_password(record[Field::rdGatewayPassword]);
    if (!gateway_password.decodable) {
        log(Level::error, "@qvlaunchclient pgupasswd decode error");
        return false;
    }
    start_client(rdp_command_line(
        gather_facts(std::move(record), std::move(password), std::move(gateway_password))));
    return start_watch(watch_rdp_window, "xfreerdp");
}

} // namespace qvtc::clients
