#include "display/brightness.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "core/os.hpp"
#include "core/shared_buffer.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "display/pairs.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

namespace {

constexpr int darkest = 20;
constexpr int brightest = 100;
constexpr std::size_t outputs_limit = 128;

/// Truncated toward zero; what no int holds is 0.
int percentage(const char* brightness) {
    const double percent = std::atof(brightness) * 100.0;
    const bool held = std::fabs(percent) < std::numeric_limits<int>::max();
    return held ? static_cast<int>(percent) : 0;
}

void set_outputs(const std::string& names, float brightness) {
    for (std::size_t start = 0; start < names.size();) {
        const std::size_t end = std::min(names.find('\n', start), names.size());
        const std::string name = names.substr(start, end - start);
        start = end + 1;
        if (name.empty()) continue;
        os().run(textf("DISPLAY=:0.0 xrandr --output %s --brightness %1f",
                       shell::word(name).c_str(), static_cast<double>(brightness)));
    }
}

} // namespace

void set_brightness(const std::string& params) {
    const auto asked = value_of(params, "brightness");
    if (!asked) return;
    const int percent = std::clamp(std::atoi(asked->c_str()), darkest, brightest);
    const std::string names =
        os().capture("DISPLAY=:0.0 xrandr |grep -w connected|awk '{print$1}'", outputs_limit);
    set_outputs(names, static_cast<float>(percent) / 100.0F);
    // Deliberate: as it was given, also when the screens got another one.
    store::store_setting(store::keys::brightness, *asked);
}

Json brightness() {
    const std::string said = leave_in_shared_buffer(
        os().capture("DISPLAY=:0.0 xrandr --verbose|grep Brightness|awk -F: 'NR==1{print$2}'",
                     shared_buffer_size));
    return json_pair("brightness", said.empty() ? "" : std::to_string(percentage(said.c_str())));
}

} // namespace qvtc::display
