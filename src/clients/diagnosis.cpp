#include "clients/diagnosis.hpp"

#include <atomic>
#include <span>

#include "clients/failure_phrases.hpp"
#include "clients/poll_counter.hpp"
#include "connections/fields.hpp"
#include "connections/list.hpp"
#include "core/base64.hpp"
#include "core/encodings.hpp"
#include "core/file_lock.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/process.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "store/document.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::clients {

namespace {

using connections::ConnectionId;

constexpr std::size_t tail_limit = 131072;
constexpr std::size_t earlier_tail_limit = 10240;
constexpr std::size_t shortest_address = 4;
constexpr std::size_t decoded_address_limit = 255;
constexpr int polls_until_connected = 6;

/// The block of ids after those of the last type, and the one after it, are
/// diagnosed as RDP and SPICE too.
constexpr std::uint32_t first_free_block = 10;

std::string status_text(const std::string& value) { return "{'status':'" + value + "'}"; }

/// The last 200 lines of a log, without what cannot be printed. One asker at a time, of all
/// processes: two would write, read and remove each other's copy of the log.
std::string log_tail(const char* path, std::size_t limit) {
    const FileLock turn(paths::log_tail_lock);
    return os().capture(textf("tr -cd '[:alnum:][:space:][:punct:]\n' < %s > /tmp/tmp.log;"
                              "tail -n 200 /tmp/tmp.log;rm -rf /tmp/tmp.log",
                              path),
                        limit);
}

std::string without_last_newline(std::string text) {
    if (text.ends_with('\n')) text.pop_back();
    return text;
}

std::optional<std::string> reported(std::string_view words, const char* phrase) {
    const auto at = words.find(phrase);
    if (at == std::string_view::npos) return std::nullopt;
    return status_value::failure(words.substr(at));
}

std::string verdict(std::string_view words, std::span<const char* const> failures,
                    const char* connected_words) {
    for (const char* const phrase : failures) {
        if (auto value = reported(words, phrase)) return *value;
    }
    return contains(words, connected_words) ? status_value::connected : status_value::waiting;
}

std::string rdp_value() {
    const std::string marker = store::setting(store::keys::start_marker);
    const std::string tail = without_last_newline(log_tail(paths::rdp_log, tail_limit));
    const auto words = since_marker(tail, marker);
    const bool runs = process_runs("xfreerdp");
    std::string value = status_value::connected;
    if (words) {
        value =
            rdp_verdict(*words, RdpForm::current)
                .value_or(runs ? status_value::waiting : status_value::failure("unkown error!"));
    }
    return counted_poll(std::move(value), runs, poll_counter());
}

std::string spice_value() {
    if (os().exists(paths::custom_remote_viewer)) return status_value::connected;
    const std::string marker = store::setting(store::keys::start_marker);
    const std::string tail = log_tail(paths::spice_log, tail_limit);
    const auto words = since_marker(tail, marker);
    return words ? spice_verdict(*words) : status_value::connected;
}

std::string vnc_value() {
    const std::string marker = store::setting(store::keys::start_marker);
    const std::string tail = log_tail(paths::spice_log, tail_limit);
    const auto words = since_marker(tail, marker);
    if (!words) return status_value::connected;
    // Deliberate: whether the viewer runs is asked, and then outvoted by the log.
    process_runs("tightvncviewer");
    return vnc_verdict(*words);
}

std::string broker_value(const std::string& address) {
    const std::string host = c_text(unescape_hex_pairs(address, '^', decoded_address_limit));
    const std::string answer = os().capture(
        textf(
            "curl --connect-timeout 3 -sk https://%s/public/velopane-identify/is-me.do | grep isMe",
            shell::word(host, shell::At::inside_word).c_str()),
        1024);
    return contains(answer, "{\"isMe\":true}") ? status_value::connected
                                               : status_value::failure("not velopane!");
}

std::string stored_address(ConnectionId id) {
    const auto type = connections::known_type(id / connections::ids_per_type);
    if (!type) return {};
    return store::Document::load()
        .get(connections::item_name(type->prefix, id),
             connections::name_of(connections::Field::serverAddress))
        .value_or("");
}

std::string value_of(ConnectionId id) {
    const std::uint32_t block = id / connections::ids_per_type;
    const std::string address = block < first_free_block ? stored_address(id) : "";
    if (block < first_free_block && address.size() < shortest_address)
        return status_value::failure("parameter error!");
    switch (block) {
    case connections::type_number::broker:
        return broker_value(address);
    case connections::type_number::rdp:
    case first_free_block:
        return rdp_value();
    case connections::type_number::spice:
    case first_free_block + 1:
        return spice_value();
    // Deliberate: VNC is diagnosed under the ids of HDP; its own are not at all.
    case connections::type_number::hdp:
        return vnc_value();
    default:
        return status_value::connected;
    }
}

} // namespace

std::string status_value::failure(std::string_view words) {
    return base64::encode(words.empty() ? "encode error!" : words);
}

std::optional<std::string_view> since_marker(std::string_view log_text, std::string_view marker) {
    const auto at = log_text.find(marker);
    if (at == std::string_view::npos) return std::nullopt;
    return log_text.substr(at);
}

std::optional<std::string> rdp_verdict(std::string_view words, RdpForm form) {
    for (const RdpPhrase& phrase : rdp_failures) {
        if (form == RdpForm::earlier && !phrase.in_earlier_form) continue;
        if (auto value = reported(words, phrase.text)) return value;
    }
    if (contains(words, "xf_player_thread :")) return status_value::connected;
    return std::nullopt;
}

std::string spice_verdict(std::string_view words) {
    return verdict(words, spice_failures, "main channel: opened");
}

std::string vnc_verdict(std::string_view words) {
    return verdict(words, vnc_failures, "Connected to RFB server");
}

std::string counted_poll(std::string value, bool client_runs, int& counter) {
    if (!client_runs) return value;
    // A plain int by contract, but several threads may poll.
    const std::atomic_ref<int> polls(counter);
    if (polls < polls_until_connected) {
        ++polls;
        return value;
    }
    polls = 1;
    return status_value::connected;
}

Json client_status(ConnectionId id) { return json_pair("status", value_of(id)); }

std::string earlier_rdp_status() {
    const std::string marker = store::setting(store::keys::start_marker);
    const std::string tail = without_last_newline(log_tail(paths::rdp_log, earlier_tail_limit));
    std::string value = status_value::connected;
    if (const auto words = since_marker(tail, marker)) {
        const auto said = rdp_verdict(*words, RdpForm::earlier);
        if (said) {
            value = *said;
        } else if (!process_runs("xfreerdp")) {
            value = status_value::failure("unkown error!");
        }
    }
    std::string text = status_text(value);
    log(Level::debug, "%s tmp=%s", "xfreerdp_status", text.c_str());
    return text;
}

} // namespace qvtc::clients
