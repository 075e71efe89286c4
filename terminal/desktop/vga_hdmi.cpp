// vga_hdmi: preloaded into an X server with the dummy driver, gives its outputs the names that a
// terminal's have, VGA1 and HDMI1, and lets its screens be switched off.
//
// The server offers its driver interface to whatever it loads, so no header of it is needed: the
// types stay behind pointers. "desktop" makes the copy of the driver that calls these two
// functions in place of the server's own.

#include <array>
#include <cstdlib>

#include <dlfcn.h>

namespace {

constexpr std::array names = {"VGA1", "HDMI1"};

template <typename Function>
Function of_the_server(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

// In place of xf86CrtcScreenInit.
extern "C" __attribute__((visibility("default"))) int qvtcCrtcScreenInit(void* screen) {
    const auto initialise = of_the_server<int (*)(void*)>("xf86CrtcScreenInit");
    const auto enable_dpms = of_the_server<int (*)(void*, void*, int)>("xf86DPMSInit");
    void* const set_dpms = dlsym(RTLD_DEFAULT, "xf86DPMSSet");
    return initialise(screen) != 0 && enable_dpms(screen, set_dpms, 0) != 0 ? 1 : 0;
}

// In place of xf86OutputCreate. The driver calls its outputs DUMMY0, DUMMY1 and so on.
extern "C" __attribute__((visibility("default"))) void*
qvtcOutputCreate(void* screen, const void* functions, const char* name) {
    const auto create =
        of_the_server<void* (*)(void*, const void*, const char*)>("xf86OutputCreate");
    constexpr std::size_t prefix = 5;
    const auto number = static_cast<std::size_t>(std::atoi(name + prefix));
    return create(screen, functions, number < names.size() ? names[number] : name);
}
