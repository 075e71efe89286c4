// A null text, buffer or object does nothing and gives the documented failure, in every exported
// function alike: each is called with each of its pointers null in turn.
#include "abi/null_calls.hpp"

#include "api/exports.hpp"
#include "audio/exports.hpp"
#include "clients/exports.hpp"
#include "connections/documents.hpp"
#include "connections/exports.hpp"
#include "core/exports.hpp"
#include "display/exports.hpp"
#include "network/exports.hpp"
#include "store/exports.hpp"
#include "support/support.hpp"
#include "system/exports.hpp"

#include <gtest/gtest.h>
#include <optional>
#include <pthread.h>
#include <qvtcapi/qvtcapi.h>
#include <qvtcapi/update.h>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

/// A thread's body ends its thread.
Function ends_its_thread(const std::string& name, void* (*body)(void*)) {
    return with(
        name,
        [body] {
            pthread_t thread{};
            void* result = &thread;
            pthread_create(&thread, nullptr, body, nullptr);
            pthread_join(thread, &result);
            return as_text(result);
        },
        "null");
}

void print_arguments(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    PrintfLog(format, arguments);
    va_end(arguments);
}

#define GIVES(function, ...) gives(#function, function, __VA_ARGS__)
#define NO_POINTER(function) takes_no_pointer(#function, function)

std::vector<Function> functions_of_core() {
    return {
        // The buffer is zeroed before it is known that there is nothing to run.
        GIVES(systemex, "-1"),
        GIVES(execmd, "-1"),
        GIVES(detect_process, "0"),
        with(
            "qvlog", [] { return as_text(qvlog(1, nullptr)); }, "0"),
        with(
            "LogWrite", [] { return as_text(LogWrite(1, nullptr)); }, "-1"),
        with(
            "PrintfLog", [] { return print_arguments(nullptr), ""; }, ""),
        NO_POINTER(log_init),
        NO_POINTER(initlog),
        NO_POINTER(getlogset),
        GIVES(ReadConfig, "-1"),
        GIVES(getcode, std::to_string(dated_log::unknown_level)),
        gives("getdate", qvtc_getdate, "null"),
        NO_POINTER(settime),
        GIVES(geturlvalue, "null"),
        GIVES(strtojson, "-1"),
        GIVES(getJsonValue, "\"\""),
        GIVES(mystrtok, "null", {0}), // goes on in the text before
        GIVES(str_replace, "-1"),
        GIVES(del_char, ""),
        GIVES(replace, "null"),
        GIVES(replacechar, ""),
        GIVES(repspecchar, ""),
        GIVES(rtrim, "null"),
        GIVES(urldecode, "null"),
        GIVES(urldecode2, "null"),
        GIVES(stringdecode, "-1"),
        GIVES(base64_encode, "null", {2}), // a length that nobody asks for
        GIVES(base64_decode, "null", {2}),
        NO_POINTER(base64_initialize),
        NO_POINTER(base64_cleanup),
        NO_POINTER(hexCharToValue),
        GIVES(hexToStr, "-1"),
        GIVES(str2hex, "0", {2}),
        GIVES(encode, "null"),
        GIVES(decode, "null"),
    };
}

std::vector<Function> functions_of_store() {
    return {
        GIVES(xmlread, "-1"),          GIVES(xmlwrite, "-1"),
        GIVES(xml_del_itemNode, "-1"), GIVES(xml_del_grandsonNode, "-1"),
        GIVES(qvreaddb, "-2"),         GIVES(qvwritedb, "-2"),
        GIVES(sql_open, "-1"),         GIVES(sql_createtable, "-2"),
        GIVES(sql_cmd, "-1"),          GIVES(sql_insert, "-1"),
        GIVES(sql_delete, "-1"),       GIVES(sql_modify, "-1"),
        GIVES(sql_query, "-1"),        NO_POINTER(sql_close),
        NO_POINTER(db_init),           NO_POINTER(create_table),
        GIVES(writedata, "0"),         GIVES(readdata, "-1"),
        GIVES(is_exsit_key, "-1"),     GIVES(do_insert, "-1"),
        GIVES(do_modify, "-1"),        GIVES(print_json_value, "", {1}), // an element has no name
        GIVES(json_parse, ""),         GIVES(json_parse_array, "", {1}),
    };
}

std::vector<Function> functions_of_connections() {
    return {
        GIVES(getConnectItemName, "-1"), NO_POINTER(getfreeid),       GIVES(qvsort, "0"),
        GIVES(getconnparams, "0"),       GIVES(setconnections, "-1"), GIVES(qvsetconnections, "0"),
        NO_POINTER(getconnection),       NO_POINTER(getconnections),  NO_POINTER(qvgetconnections),
        NO_POINTER(delconnection),       NO_POINTER(qvdelconnection), NO_POINTER(connectdelay),
        NO_POINTER(qvconnectdelay),      GIVES(setconnectdelay, "1"), GIVES(qvsetconnectdelay, "1"),
    };
}

std::vector<Function> functions_of_clients() {
    return {
        NO_POINTER(qvlaunchclient),
        NO_POINTER(launchclient),
        NO_POINTER(rdpclient),
        NO_POINTER(launch_spice_connection),
        NO_POINTER(vmwareclient),
        NO_POINTER(launch_vnc_connection),
        NO_POINTER(launch_firefox_connection),
        GIVES(qvvelopanelaunchclient, "-1"),
        NO_POINTER(qvcancelconnect),
        NO_POINTER(cancelconnect),
        ends_its_thread("connectstatus_thread", connectstatus_thread),
        ends_its_thread("freerdp_thread", freerdp_thread),
        GIVES(launchclient_thread, "-1"),
        GIVES(addstatusitem, "0"),
        NO_POINTER(qvgetclientstatus),
        NO_POINTER(getclientstatus),
        GIVES(xfreerdp_status, "null"),
        NO_POINTER(qvsetvmwaretoolbar),
        NO_POINTER(qvgetvmwaretoolbar),
        NO_POINTER(qvsethdxcamera),
        NO_POINTER(qvgethdxcamera),
    };
}

std::vector<Function> functions_of_display() {
    return {
        NO_POINTER(qvgetdisplist),
        NO_POINTER(getdisplist),
        GIVES(GetDispIndex, "0"),
        GIVES(getcurrentdisp, "-1"),
        GIVES(savedispconf, "-1"),
        GIVES(savedispconf_bak, "0"),
        GIVES(setdispconf, "-1"),
        GIVES(qvsetdispconf, "-1"),
        NO_POINTER(qvgetdispconf),
        NO_POINTER(getdispconf),
        NO_POINTER(qvisdispchanged),
        NO_POINTER(isdispchanged),
        NO_POINTER(qvapplydispconf),
        NO_POINTER(applydispconf),
        NO_POINTER(qvrestoredispconf),
        NO_POINTER(restoredispconf),
        NO_POINTER(qvdisplaymode),
        GIVES(qvsetdisplaymode, "0"),
        GIVES(setdisplaymode, "1"),
        NO_POINTER(qvgetdisplayorder),
        GIVES(qvsetdisplayorder, "0"),
        GIVES(setdisplayorder, "0"),
        NO_POINTER(qvissupportextendscreen),
        NO_POINTER(check_display_device_interface),
        NO_POINTER(qvsplitverticallymode),
        NO_POINTER(qvgetmonitornum),
        NO_POINTER(qvgetmonitor),
        GIVES(qvsetmonitor, "0"),
        NO_POINTER(qvdisplayrefresh),
        GIVES(qvsetdisplayrefresh, "-2"),
        NO_POINTER(display_init),
        NO_POINTER(qvgetidle),
        NO_POINTER(getidle),
        GIVES(qvsetidle, "0"),
        GIVES(setidle, "0"),
        NO_POINTER(qvgetuserportal),
        NO_POINTER(getuserportal),
        GIVES(qvsetuserportal, "0"),
        GIVES(setuserportal, "0"),
        NO_POINTER(qvdemomode),
        NO_POINTER(demomode),
        NO_POINTER(qvsetdemomode),
        NO_POINTER(setdemomode),
    };
}

std::vector<Function> functions_of_network() {
    return {
        NO_POINTER(qvgetwiredconf),    GIVES(qvsetwiredconf, "-1"),   NO_POINTER(qvgetwiredstatus),
        NO_POINTER(qvgetexwiredconf),  GIVES(qvsetexwiredconf, "0"),  NO_POINTER(qvgetwifi),
        NO_POINTER(qvgetwifionoff),    GIVES(qvsetwifionoff, "0"),    NO_POINTER(qvgetwifilist),
        GIVES(qvsetwifiauth, "0"),     NO_POINTER(qvgetwirelessconf), GIVES(qvsetwirelessconf, "0"),
        NO_POINTER(qvgetdefaultroute), GIVES(qvsetdefaultroute, "0"), GIVES(getwiredconf, "null"),
        GIVES(setwiredconf, "-1"),     GIVES(setexwiredconf, "0"),    NO_POINTER(getwiredstatus),
        NO_POINTER(getnetworkstatus),  GIVES(networkstatus, "0"),     GIVES(getnetconf, "0"),
        GIVES(getipaddr, "-1"),        GIVES(getmask, "-1"),          GIVES(getgateway, "-1"),
        GIVES(getconf, "-1"),          GIVES(getdns, "-1"),           GIVES(setnetworkconf, "-1"),
        GIVES(savenetconf, "-1"),      GIVES(network_restart, "-1"),  GIVES(getnetdevname, "0"),
        GIVES(wiredconf_init, ""),     GIVES(resetnetwork, "-1"),     NO_POINTER(getwifi),
        GIVES(setwifionoff, "0"),      GIVES(getwifionoff, "-1"),     NO_POINTER(getwifilist),
        GIVES(scan_tabbed_data, "0"),  GIVES(enctype_type, "4"), // of no kind that is known
        NO_POINTER(signal_level),      NO_POINTER(resetWifi),         GIVES(setwifiauth, "0"),
        GIVES(getwirelessconf, "0"),   GIVES(setwirelessconf, "-1"),  GIVES(savewirelessconf, "-1"),
        GIVES(setdefaultroute, "0"),   GIVES(getdefaultroute, "0"),
    };
}

std::vector<Function> functions_of_audio() {
    return {
        NO_POINTER(set_sound_config),    NO_POINTER(set_camera_mic_default_source),
        NO_POINTER(volumeinit),          GIVES(audio_volume, "-1"),
        NO_POINTER(qvgetvolume),         NO_POINTER(getvolume),
        GIVES(qvsetvolume, "0"),         GIVES(setvolume, "0"),
        NO_POINTER(qvishdmiaudioenable),
    };
}

std::vector<Function> functions_of_system() {
    return {
        GIVES(qvgethostname, "0"),   GIVES(get_tc_hostname, "0"), GIVES(qvsethostname, "0"),
        GIVES(set_tc_hostname, "0"), NO_POINTER(qvgetmgrpwd),     NO_POINTER(getmgrpwd),
        GIVES(qvsetmgrpwd, "0"),     GIVES(setmgrpwd, "0"),       GIVES(download, "-1"),
        NO_POINTER(doupdate),        NO_POINTER(updating),        NO_POINTER(update),
        NO_POINTER(qvgetdatetime),   NO_POINTER(getdatetime),     GIVES(qvsetdatetime, "-1"),
        GIVES(setdatetime, "1"),     NO_POINTER(qvgetsysinfo),    NO_POINTER(getSysInfo),
        NO_POINTER(getsysinfo2),     NO_POINTER(sysinfo_init),    NO_POINTER(CPUType),
        NO_POINTER(getmemCap),       NO_POINTER(gethardCap),      GIVES(get_tc_type, ""),
        GIVES(getcpuInfo, "null"),   GIVES(getmac, "0"),          NO_POINTER(qvresetsysconf),
        NO_POINTER(resetsysconf),    NO_POINTER(qvreboot),        NO_POINTER(qvshutdown),
        NO_POINTER(qvdiagnsys),      NO_POINTER(diagnsys),
    };
}

std::vector<Function> functions_of_api() {
    return {
        NO_POINTER(qvtcinitapi),        NO_POINTER(qvsetcitrixtoolbar),
        NO_POINTER(qvgetcitrixtoolbar), NO_POINTER(qvsetcitrixprinter),
        NO_POINTER(qvgetcitrixprinter), NO_POINTER(qvisoem),
        NO_POINTER(qvoemdata),          NO_POINTER(qvoeminfo),
        NO_POINTER(qvoemfeature),       NO_POINTER(qvgetlanguage),
        GIVES(qvsetlanguage, "0"),      NO_POINTER(qvgetbattery),
        NO_POINTER(qvcentos_printer),
    };
}

std::vector<Function> all_functions() {
    std::vector<Function> all;
    for (const auto of_folder : {functions_of_core, functions_of_store, functions_of_connections,
                                 functions_of_clients, functions_of_display, functions_of_network,
                                 functions_of_audio, functions_of_system, functions_of_api}) {
        for (Function& each : of_folder()) all.push_back(std::move(each));
    }
    return all;
}

const std::set<std::string> exported_data = {"LogLevelText",
                                             "__mystrtok",
                                             "base64_decoding_table",
                                             "base64_encoding_table",
                                             "buffer",
                                             "conn_info_param",
                                             "counter",
                                             "gfeature",
                                             "goemdata",
                                             "loging",
                                             "logsetting",
                                             "mod_table",
                                             "urlparams"};
// The library's test entry, which takes nothing.
const std::string entry = "main";

/// What a call in a process of its own gives; nothing if it does not come back.
std::optional<std::string> in_a_child(const std::function<std::string()>& call) {
    int ends[2];
    if (pipe(ends) != 0) return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        const std::string result = call();
        const bool told = write(ends[1], result.data(), result.size()) >= 0;
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    std::string result;
    char bytes[256];
    for (ssize_t count = 0; (count = read(ends[0], bytes, sizeof bytes)) > 0;)
        result.append(bytes, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 ? std::optional(result) : std::nullopt;
}

class NullArguments : public FreshTerminal {};

} // namespace

TEST_F(NullArguments, DoNothingInAnyExportedFunction) {
    const std::string document =
        document_text({{"configItem", {{"tc_config_param_5", "secret"}, {"language", "zh_CN"}}}});
    write_file(document_path, document);
    std::filesystem::create_directories("/tmp/empty");
    std::filesystem::current_path("/tmp/empty");
    forget_commands();
    for (const Function& function : all_functions()) {
        for (const Attempt& attempt : function.attempts) {
            EXPECT_EQ(in_a_child(attempt.call), std::optional(attempt.expected)) << attempt.what;
            EXPECT_EQ(recorded_commands(), std::vector<std::string>{}) << attempt.what;
            EXPECT_EQ(stored_document(), document) << attempt.what;
            EXPECT_TRUE(std::filesystem::is_empty("/tmp/empty")) << attempt.what;
            forget_commands();
            write_file(document_path, document);
        }
    }
}

TEST_F(NullArguments, AreTriedInEveryExportedName) {
    std::set<std::string> tried = exported_data;
    tried.insert(entry);
    for (const Function& function : all_functions()) tried.insert(function.name);
    const std::vector<std::string> listed = lines_of(read_file(QVTC_EXPORTS));
    EXPECT_EQ(tried, std::set<std::string>(listed.begin(), listed.end()));
}

} // namespace qvtc::test
