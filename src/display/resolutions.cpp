#include "display/resolutions.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/params.hpp"
#include "core/text.hpp"

namespace qvtc::display {

namespace {

constexpr int highest_index = 10;
constexpr std::size_t longest_line = 255; // of the query's output, newline included

constexpr const char* offered =
    "{'list':[{'value':'auto'},{'value':'800x600'},{'value':'1024x768'},{'value':'1280x720'},"
    "{'value':'1440x900'},{'value':'1600x1200'},{'value':'1920x1080'},{'value':'1280x1024'},"
    "{'value':'1366x768'},{'value':'1600x900'}]}";

constexpr const char* query = R"(xrandr |grep -w "connected"|awk -F' ' '{print $3}'|)"
                              R"(grep -o "[0-9]\{1,4\}x[0-9]\{1,4\}")";

std::string index_in(const std::string& params) {
    ParamTable pairs;
    pairs.parse(params);
    const char* const value = pairs.find("res");
    if (value == nullptr) return {};
    // Deliberate: a text that is no number counts as 0.
    const int number = std::atoi(value);
    return number >= 0 && number <= highest_index ? std::to_string(number) : std::string();
}

} // namespace

unsigned number_of_index(std::string_view index) {
    for (unsigned number = 1; number <= highest_index; ++number) {
        if (index == std::to_string(number)) return number;
    }
    return resolution_number::fallback;
}

const char* name_of_number(unsigned number) {
    const auto* const found =
        std::find_if(std::begin(resolutions), std::end(resolutions),
                     [number](const Resolution& each) { return each.number == number; });
    return found == std::end(resolutions) ? name_of_number(resolution_number::automatic)
                                          : found->name;
}

std::string requested_index(const std::string& request) {
    for (const Resolution& each : resolutions) {
        if (each.choice != nullptr && request == each.choice) return std::to_string(each.number);
    }
    if (contains(request, "auto")) return std::to_string(resolution_number::automatic);
    return index_in(request);
}

Json offered_resolutions() { return parse_json(offered); }

std::optional<std::string> current_resolution() {
    const auto lines = os().lines(query);
    if (!lines) {
        log(Level::debug, "execute command failed: %s", std::strerror(errno));
        return std::nullopt;
    }
    if (lines->empty()) return "";
    std::string line = remove_all((lines->front() + '\n').substr(0, longest_line), ' ');
    if (!line.empty()) line.pop_back(); // the newline
    return line;
}

} // namespace qvtc::display
