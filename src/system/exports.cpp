#include "system/exports.hpp"

#include "core/log.hpp"
#include "core/text.hpp"
#include "system/date_time.hpp"
#include "system/factory_reset.hpp"
#include "system/host_name.hpp"
#include "system/machine.hpp"
#include "system/manager_password.hpp"
#include "system/network_repair.hpp"
#include "system/power.hpp"
#include "system/system_information.hpp"
#include "system/update.hpp"

using namespace qvtc;

namespace {

/// Runs a worker whose outcome is not reported, with what a caller gave for it.
template <typename Worker, typename... Given>
int always_0(Worker worker, const Given*... pointers) {
    if (given(pointers...)) guard_void(worker);
    return 0;
}

} // namespace

extern "C" {

int get_tc_hostname(char* out) {
    return always_0([&] { copy_out(out, system::host_name_size, system::host_name()); }, out);
}

int qvgethostname(char* out) {
    return always_0([&] { copy_out(out, system::host_name_size, system::host_name()); }, out);
}

int set_tc_hostname(const char* name) {
    return always_0([&] { system::set_host_name(name); }, name);
}

int qvsethostname(const char* name) {
    return always_0([&] { system::set_host_name(name); }, name);
}

json_object* getmgrpwd() {
    return guard<json_object*>(nullptr, [] { return system::manager_password().release(); });
}

json_object* qvgetmgrpwd() {
    return guard<json_object*>(nullptr, [] { return system::manager_password().release(); });
}

int setmgrpwd(const char* params) {
    return always_0([&] { system::set_manager_password(params); }, params);
}

int qvsetmgrpwd(const char* params) {
    return always_0([&] { system::set_manager_password(params); }, params);
}

int download(const char* url) {
    if (!given(url)) return -1;
    return guard(-1, [&] { return system::download_update(url) ? 0 : -1; });
}

void doupdate() { guard_void(system::run_update_script); }

int updating() {
    return guard(0, [] { return system::update_is_running() ? 1 : 0; });
}

int update() { return always_0(system::update); }

json_object* getdatetime() {
    return guard<json_object*>(nullptr, [] { return system::date_time().release(); });
}

json_object* qvgetdatetime() {
    return guard<json_object*>(nullptr, [] { return system::date_time().release(); });
}

int setdatetime(const char* params) {
    if (given(params)) guard_void([&] { system::set_date_time(params); });
    return 1;
}

int qvsetdatetime(const char* params) {
    // Deliberate: -1 whatever happened; front-ends do not look at it.
    if (given(params)) guard_void([&] { system::set_date_time(params); });
    return -1;
}

json_object* getSysInfo() {
    return guard<json_object*>(nullptr, [] { return system::system_information().release(); });
}

json_object* qvgetsysinfo() {
    return guard<json_object*>(nullptr, [] { return system::system_information().release(); });
}

json_object* getsysinfo2() { return nullptr; }

void sysinfo_init() {}

int resetsysconf() { return always_0(system::reset_to_factory_settings); }

int qvresetsysconf() { return always_0(system::reset_to_factory_settings); }

int CPUType() { return guard(0, system::processor_class); }

int getmemCap() { return guard(0, system::memory_capacity); }

int gethardCap() {
    return guard(-1, [] { return static_cast<int>(system::storage_capacity().value_or(-1)); });
}

void get_tc_type(char* out) {
    if (given(out)) guard_void([&] { copy_out_whole(out, system::model_code()); });
}

char* getcpuInfo(char* out) {
    if (given(out)) guard_void([&] { copy_out_whole(out, system::processor_name()); });
    return out;
}

int getmac(char* out, const char* device) {
    return always_0(
        [&] {
            const auto address = system::hardware_address(device);
            if (address) copy_out_whole(out, *address);
        },
        out, device);
}

int qvreboot() { return always_0(system::reboot); }

int qvshutdown() { return always_0(system::shut_down); }

int diagnsys() { return always_0(system::repair_network); }

int qvdiagnsys() {
    return always_0([] {
        system::repair_network();
        log(Level::info, "%s", "qvdiagnsys");
    });
}
}
