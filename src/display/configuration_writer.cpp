#include "display/configuration_writer.hpp"

#include <array>

#include "core/line_file.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"
#include "display/resolutions.hpp"
#include "display/xorg_conf.hpp"

namespace qvtc::display {

namespace {

constexpr std::size_t mode_limit = 1024;
constexpr std::size_t facts_limit = 256;

std::string preferred_mode() {
    std::string mode = os().capture(
        "xrandr --verbose|grep +preferred |grep -v current |awk -F' ' '{printf $1}'", mode_limit);
    if (!mode.empty()) return mode;
    return os().capture("xrandr --verbose|grep +preferred |awk -F' ' '{printf $1}'", mode_limit);
}

std::string processor() {
    std::string model =
        os().capture("cat /proc/cpuinfo |grep \"model name\" |sed -n 1p", facts_limit);
    return model.size() > 1 ? model : "";
}

bool output_test_holds(OutputTest test) {
    const auto prints_a_line = [](const char* command) {
        return os().capture(command, facts_limit).size() > 1;
    };
    switch (test) {
    case OutputTest::is_notebook:
        return os().exists(paths::n5095_notebook);
    case OutputTest::dp1_is_connected:
        return prints_a_line("DISPLAY=:0.0 xrandr |grep  connected|grep DP1");
    case OutputTest::hdmi1_is_not_connected:
        return !prints_a_line("DISPLAY=:0.0 xrandr |grep  connected|grep HDMI1");
    case OutputTest::none:
        break;
    }
    return true;
}

} // namespace

int write_configuration(const std::string& index) {
    write_lines(paths::resolution, std::array{std::string(name_of_number(number_of_index(index)))});
    write_lines(paths::xorg_conf, minimal_configuration());
    return run_display_script();
}

void write_static_configuration(const std::string& index) {
    os().run("cp -dpR /etc/X11/xorg.conf /tmp/backup_xorg.conf");
    StaticFacts facts;
    facts.dual = !os().exists(paths::screens_cloned);
    const unsigned number = number_of_index(index);
    if (number == resolution_number::automatic) {
        facts.mode = preferred_mode();
        // Deliberate: cloned screens of automatic resolution get no other section.
        if (!facts.dual) {
            write_lines(paths::xorg_conf, flags_only_configuration());
            return;
        }
    } else {
        facts.mode = static_mode_of(number);
    }
    facts.driver = driver_of(os().capture("lspci |grep VGA", facts_limit));
    const std::string model = processor();
    if (facts.dual) facts.outputs = outputs_of(model, output_test_holds);
    write_lines(paths::xorg_conf, static_configuration(facts));
}

int run_display_script() { return os().run("/var/lib/ralo/display.sh >/dev/null 2>&1"); }

} // namespace qvtc::display
