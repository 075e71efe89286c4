#include "display/exports.hpp"

#include "core/text.hpp"
#include "display/brightness.hpp"
#include "display/configuration_writer.hpp"
#include "display/demo_mode.hpp"
#include "display/modes.hpp"
#include "display/portal.hpp"
#include "display/power_saving.hpp"
#include "display/refresh.hpp"
#include "display/resolution_protocol.hpp"
#include "display/resolutions.hpp"

using namespace qvtc;

namespace {

constexpr std::size_t resolution_size = 256;

/// A getter's object for a caller who will own it; null when memory has run out.
json_object* object_of(Json (*getter)()) {
    return guard<json_object*>(nullptr, [&] { return getter().release(); });
}

/// Runs a setter that reports nothing, and gives what its edge always gives.
template <typename Argument>
int always(int result, void (*setter)(Argument), const char* params) {
    if (given(params)) guard_void([&] { setter(params); });
    return result;
}

int demo_mode_of_low_byte(int on) {
    // Deliberate: 256 is off.
    guard_void([&] { display::set_demo_mode((static_cast<unsigned>(on) & 0xffU) != 0); });
    return 1;
}

int revert() {
    guard_void([] { display::revert_resolution(); });
    return 0;
}

int keep() {
    guard_void([] { display::keep_resolution(); });
    return 0;
}

int waits() {
    return guard(0, [] { return display::resolution_waits() ? 1 : 0; });
}

int demo() {
    return guard(0, [] { return display::demo_mode() ? 1 : 0; });
}

} // namespace

extern "C" {

json_object* qvgetdisplist() { return object_of(display::offered_resolutions); }

json_object* getdisplist() { return object_of(display::offered_resolutions); }

unsigned GetDispIndex(const char* index) {
    if (!given(index)) return 0;
    return guard(0U, [&] { return display::number_of_index(index); });
}

int getcurrentdisp(char* out) {
    if (!given(out)) return -1;
    return guard(-1, [&] {
        const auto resolution = display::current_resolution();
        if (!resolution) return -1;
        copy_out(out, resolution_size, *resolution);
        return 0;
    });
}

int savedispconf(const char* index) {
    if (!given(index)) return -1;
    return guard(-1, [&] { return display::write_configuration(index); });
}

int savedispconf_bak(const char* index) {
    return always(0, display::write_static_configuration, index);
}

int setdispconf(const char* params) {
    if (!given(params)) return -1;
    return guard(-1, [&] { return display::set_resolution(params); });
}

json_object* qvgetdispconf() { return object_of(display::requested_resolution); }

json_object* getdispconf() { return object_of(display::requested_resolution); }

int qvisdispchanged() { return waits(); }

int isdispchanged() { return waits(); }

int qvapplydispconf() { return keep(); }

int applydispconf() { return keep(); }

int qvrestoredispconf() { return revert(); }

int restoredispconf() { return revert(); }

json_object* qvdisplaymode() { return object_of(display::mode); }

int qvsetdisplaymode(const char* params) {
    return always(0, display::set_mode_of_real_machine, params);
}

int setdisplaymode(const char* params) {
    if (!given(params)) return 1;
    return guard(1, [&] { return display::set_mode(params); });
}

json_object* qvgetdisplayorder() { return object_of(display::order); }

int qvsetdisplayorder(const char* params) { return always(0, display::set_order, params); }

int setdisplayorder(const char* params) { return always(0, display::set_order, params); }

int qvissupportextendscreen() {
    return guard(-1, [] { return display::has_vga_and_hdmi() ? 1 : -1; });
}

int check_display_device_interface() {
    return guard(-1, [] { return display::has_display_interfaces() ? 0 : -1; });
}

json_object* qvsplitverticallymode() { return object_of(display::vertical_split); }

int qvgetmonitornum() {
    return guard(0, [] { return display::connected_screens(); });
}

json_object* qvgetmonitor() { return object_of(display::brightness); }

int qvsetmonitor(const char* params) { return always(0, display::set_brightness, params); }

json_object* qvdisplayrefresh() { return object_of(display::refresh); }

int qvsetdisplayrefresh(const char* text) {
    return guard(-1, [&] { return display::store_refresh(text); });
}

int display_init() {
    guard_void([] { display::start(); });
    return 0;
}

json_object* qvgetidle() { return object_of(display::power_saving); }

json_object* getidle() { return object_of(display::power_saving); }

int qvsetidle(const char* params) { return always(0, display::set_power_saving, params); }

int setidle(const char* params) { return always(0, display::set_power_saving, params); }

json_object* qvgetuserportal() { return object_of(display::user_portal); }

json_object* getuserportal() { return object_of(display::user_portal); }

int qvsetuserportal(const char* params) { return always(0, display::set_user_portal, params); }

int setuserportal(const char* params) { return always(0, display::set_user_portal, params); }

int qvdemomode() { return demo(); }

int demomode() { return demo(); }

int qvsetdemomode(int on) { return demo_mode_of_low_byte(on); }

int setdemomode(int on) { return demo_mode_of_low_byte(on); }
}
