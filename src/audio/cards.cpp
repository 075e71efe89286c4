#include "audio/cards.hpp"

#include <cstdlib>
#include <string>

#include "core/os.hpp"
#include "core/text.hpp"

namespace qvtc::audio {

namespace {

constexpr std::size_t line_limit = 128;
constexpr std::size_t hdmi_listing_limit = 1024;

} // namespace

int onboard_card() {
    // Several such cards print a line each; the number of the first one counts.
    const std::string numbers = os().capture("aplay -l|grep card|grep -v USB|grep -v HDMI|"
                                             "awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}",
                                             listing_limit);
    return std::atoi(numbers.c_str());
}

std::optional<int> first_usb_card() {
    const std::string number = os().capture("aplay -l|grep card|grep USB|awk 'NR==1'|"
                                            "awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}",
                                            listing_limit);
    if (number.empty()) return std::nullopt;
    return std::atoi(number.c_str());
}

std::optional<int> last_usb_card() {
    if (!contains(os().capture("aplay -l|grep USB", line_limit), "USB")) return std::nullopt;
    const std::string number = os().capture("aplay -l|grep USB|awk 'END{print}'|"
                                            "awk -F':' {print'$1'}|awk -F' ' {print'$2'}",
                                            line_limit);
    return std::atoi(number.c_str());
}

bool hdmi_device_present() {
    return !os().capture("aplay -l |grep HDMI", hdmi_listing_limit).empty();
}

} // namespace qvtc::audio
