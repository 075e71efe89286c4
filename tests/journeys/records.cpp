#include "records.hpp"

#include "desktop.hpp"
#include "support/support.hpp"

#include <algorithm>
#include <cctype>
#include <ctime>
#include <json-c/json.h>
#include <memory>
#include <openssl/evp.h>
#include <qvtcapi/qvtcapi.h>
#include <regex>
#include <stdexcept>

namespace qvtc::test {

namespace {

struct Release {
    void operator()(json_object* object) const { json_object_put(object); }
};
using Object = std::unique_ptr<json_object, Release>;

std::string member(json_object* object, const char* name) {
    const char* const text = json_object_get_string(json_object_object_get(object, name));
    return text == nullptr ? "" : text;
}

std::vector<std::string> record_ids(unsigned type) {
    const Object records(qvgetconnections(type));
    json_object* const list = json_object_object_get(records.get(), "list");
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        ids.push_back(member(json_object_array_get_idx(list, i), "id"));
    }
    return ids;
}

/// What the library looks at: the last 200 lines of what can be printed.
std::string diagnosed_text() {
    constexpr std::size_t diagnosed_lines = 200;
    std::string text = read_file(rdp_log);
    std::erase_if(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte > 127 || (std::isprint(byte) == 0 && std::isspace(byte) == 0);
    });
    std::vector<std::string> lines = lines_of(text);
    const std::size_t skipped = lines.size() - std::min(lines.size(), diagnosed_lines);
    std::string tail;
    for (std::size_t i = skipped; i < lines.size(); ++i) tail += lines[i] + '\n';
    if (!text.ends_with('\n') || !tail.empty()) tail.pop_back();
    return tail;
}

bool client_has_spoken() { return lines_of(read_file(rdp_log)).size() > 1; }

} // namespace

unsigned store_record(const Fields& fields) { return store_record(QVTC_TYPE_RDP, fields); }

unsigned store_record(unsigned type, const Fields& fields) {
    std::string parameters;
    for (const auto& [name, value] : fields) parameters += name + '=' + value + '&';
    parameters += "type=" + std::to_string(type);
    const std::vector<std::string> before = record_ids(type);
    qvsetconnections(type, parameters.data());
    for (const std::string& id : record_ids(type)) {
        if (std::ranges::find(before, id) == before.end()) {
            return static_cast<unsigned>(std::stoul(id));
        }
    }
    throw std::runtime_error("not stored: " + parameters);
}

std::string stored_password(const std::string& password) {
    std::string text = base64_of(password);
    std::ranges::replace(text, '=', '+');
    return text;
}

int launch_within_a_second(unsigned id) {
    const bool has_turned = wait_until([] {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        // time() turns a few milliseconds later, at the next tick of the kernel's clock.
        constexpr long turned = 20'000'000; // nanoseconds
        constexpr long early = 100'000'000;
        return now.tv_nsec > turned && now.tv_nsec < early;
    });
    EXPECT_TRUE(has_turned);
    return qvlaunchclient(id);
}

std::string status_of(unsigned id) {
    const Object answer(qvgetclientstatus(id));
    return member(answer.get(), "status");
}

std::string status_of_failed_launch(unsigned id) {
    EXPECT_EQ(qvlaunchclient(id), 0);
    EXPECT_TRUE(wait_until([] { return client_has_spoken() && !runs("xfreerdp"); }, patience))
        << "the client is still there; its log:\n"
        << read_file(rdp_log);
    return status_of(id);
}

std::vector<std::string> launched_clients() {
    std::vector<std::string> commands = recorded_commands();
    std::erase_if(commands, [](const auto& text) { return !text.starts_with("xfreerdp "); });
    return commands;
}

std::string client_words() {
    const std::string log = read_file(rdp_log);
    const std::size_t first_line = log.find('\n') + 1;
    EXPECT_TRUE(std::regex_match(log.substr(0, first_line),
                                 std::regex(R"(\[[0-9]+\]start to connect\.\.\.\n)")))
        << log;
    return log.substr(first_line);
}

std::string status_from(const std::string& phrase) {
    const std::string text = diagnosed_text();
    const std::size_t place = text.find(phrase);
    EXPECT_NE(place, std::string::npos) << '"' << phrase << "\" is not in the log:\n" << text;
    return place == std::string::npos ? "" : base64_of(text.substr(place));
}

std::string status_unknown() { return base64_of("unkown error!"); }

std::string watchers_verdict() {
    const std::string file = "/usr/local/vpclient/config/clientstatus";
    if (!file_exists(file)) return "";
    const std::vector<std::string> lines = lines_of(read_file(file));
    return lines.empty() ? "" : lines.front();
}

std::string wait_for_verdict() {
    std::string verdict;
    const auto is_there = [&] { return !(verdict = watchers_verdict()).empty(); };
    EXPECT_TRUE(wait_until(is_there, patience)) << "the watcher has written nothing";
    return verdict;
}

std::string base64_of(const std::string& text) {
    std::vector<unsigned char> encoded(text.size() / 3 * 4 + 5);
    const int length =
        EVP_EncodeBlock(encoded.data(), reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
    return {encoded.begin(), encoded.begin() + length};
}

} // namespace qvtc::test
