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

std::string text_or_empty(const char* text) { return text == nullptr ? "" : text; }

/// Runs a worker whose outcome is not told.
template <typename Worker>
int always_0(Worker worker) {
    guard_void(worker);
    return 0;
}

} // namespace

extern "C" {

int get_tc_hostname(char* out) {
    return always_0([&] { copy_out(out, system::host_name_size, system::host_name()); });
}

int qvgethostname(char* out) {
    return always_0([&] { copy_out(out, system::host_name_size, system::host_name()); });
}

int set_tc_hostname(const char* name) {
    return always_0([&] { system::set_host_name(text_or_empty(name)); });
}

int qvsethostname(const char* name) {
    return always_0([&] { system::set_host_name(text_or_empty(name)); });
}

json_object* getmgrpwd() {
    return guard<json_object*>(nullptr, [] { return system::manager_password().release(); });
}

json_object* qvgetmgrpwd() {
    return guard<json_object*>(nullptr, [] { return system::manager_password().release(); });
}

int setmgrpwd(const char* params) {
    return always_0([&] { system::set_manager_password(params); });
}

int qvsetmgrpwd(const char* params) {
    return always_0([&] { system::set_manager_password(params); });
}

int download(const char* url) {
    return guard(-1, [&] { return system::download_update(text_or_empty(url)) ? 0 : -1; });
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
    guard_void([&] { system::set_date_time(text_or_empty(params)); });
    return 1;
}

int qvsetdatetime(const char* params) {
    // Deliberate: -1 whatever happened; front-ends do not look at it.
    guard_void([&] { system::set_date_time(text_or_empty(params)); });
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
    guard_void([&] { copy_out_whole(out, system::model_code()); });
}

char* getcpuInfo(char* out) {
    guard_void([&] { copy_out_whole(out, system::processor_name()); });
    return out;
}

int getmac(char* out, const char* device) {
    return always_0([&] {
        const auto address = system::hardware_address(text_or_empty(device));
        if (address) copy_out_whole(out, *address);
    });
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
