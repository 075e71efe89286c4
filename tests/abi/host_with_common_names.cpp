// A host program that has names of its own which the library exports too. Each
// calls or reads its own, and the library its own, whichever the linker met
// first. Everything but main() stands for what a front-end may well contain.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dlfcn.h>
#include <json-c/json.h>
#include <qvtcapi/qvtcapi.h>
#include <unistd.h>

namespace {
int host_calls = 0;
int failures = 0;

void expect(bool holds, const char* what) {
    std::printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    if (!holds) ++failures;
}
} // namespace

// The names of the library's functions, with the wrong arguments and results.
#define HOST_FUNCTION(name)                                                                        \
    extern "C" __attribute__((visibility("default"))) int name() { return ++host_calls; }
HOST_FUNCTION(replace)
HOST_FUNCTION(replacechar)
HOST_FUNCTION(repspecchar)
HOST_FUNCTION(encode)
HOST_FUNCTION(decode)
HOST_FUNCTION(rtrim)
HOST_FUNCTION(del_char)
HOST_FUNCTION(str_replace)
HOST_FUNCTION(strtojson)
HOST_FUNCTION(getJsonValue)
HOST_FUNCTION(geturlvalue)
HOST_FUNCTION(mystrtok)
HOST_FUNCTION(systemex)
HOST_FUNCTION(execmd)
HOST_FUNCTION(detect_process)
HOST_FUNCTION(xmlread)
HOST_FUNCTION(xmlwrite)
HOST_FUNCTION(urldecode)
HOST_FUNCTION(base64_encode)
HOST_FUNCTION(base64_decode)
HOST_FUNCTION(base64_initialize)
HOST_FUNCTION(getcode)
HOST_FUNCTION(settime)
HOST_FUNCTION(initlog)
HOST_FUNCTION(getlogset)
HOST_FUNCTION(ReadConfig)
HOST_FUNCTION(PrintfLog)
HOST_FUNCTION(getconnection)
HOST_FUNCTION(getconnections)
HOST_FUNCTION(setconnections)
HOST_FUNCTION(getfreeid)
HOST_FUNCTION(launchclient)
HOST_FUNCTION(rdpclient)
HOST_FUNCTION(getclientstatus)
HOST_FUNCTION(log_init)
HOST_FUNCTION(download)
HOST_FUNCTION(update)
HOST_FUNCTION(updating)
HOST_FUNCTION(doupdate)
HOST_FUNCTION(audio_volume)
HOST_FUNCTION(getvolume)
HOST_FUNCTION(setvolume)
HOST_FUNCTION(volumeinit)
HOST_FUNCTION(getconf)
HOST_FUNCTION(getdns)
HOST_FUNCTION(getmask)
HOST_FUNCTION(getipaddr)
HOST_FUNCTION(getgateway)
HOST_FUNCTION(networkstatus)
HOST_FUNCTION(getnetworkstatus)
HOST_FUNCTION(getnetconf)
HOST_FUNCTION(network_restart)
HOST_FUNCTION(resetnetwork)
HOST_FUNCTION(signal_level)
HOST_FUNCTION(getwifi)
HOST_FUNCTION(getdefaultroute)
HOST_FUNCTION(setdefaultroute)
HOST_FUNCTION(getdisplist)
HOST_FUNCTION(getcurrentdisp)
HOST_FUNCTION(display_init)
HOST_FUNCTION(savedispconf)
HOST_FUNCTION(setdispconf)
HOST_FUNCTION(getdispconf)
HOST_FUNCTION(isdispchanged)
HOST_FUNCTION(applydispconf)
HOST_FUNCTION(restoredispconf)
HOST_FUNCTION(setdisplaymode)
HOST_FUNCTION(setdisplayorder)
HOST_FUNCTION(getidle)
HOST_FUNCTION(setidle)
HOST_FUNCTION(getuserportal)
HOST_FUNCTION(setuserportal)
HOST_FUNCTION(demomode)
HOST_FUNCTION(setdemomode)
HOST_FUNCTION(create_table)
HOST_FUNCTION(db_init)
HOST_FUNCTION(do_insert)
HOST_FUNCTION(do_modify)
HOST_FUNCTION(is_exsit_key)
HOST_FUNCTION(json_parse)
HOST_FUNCTION(json_parse_array)
HOST_FUNCTION(print_json_value)
HOST_FUNCTION(readdata)
HOST_FUNCTION(writedata)
HOST_FUNCTION(sql_open)
HOST_FUNCTION(sql_close)
HOST_FUNCTION(sql_cmd)
HOST_FUNCTION(sql_query)

// The names of its data, of another size and content.
extern "C" {
__attribute__((visibility("default"))) char counter[3] = "no";
__attribute__((visibility("default"))) char goemdata[4] = "no";
__attribute__((visibility("default"))) char gfeature[4] = "no";
__attribute__((visibility("default"))) char urlparams[4] = "no";
__attribute__((visibility("default"))) char logsetting[4] = "no";
__attribute__((visibility("default"))) char loging[4] = "no";
__attribute__((visibility("default"))) char LogLevelText[4] = "no";
__attribute__((visibility("default"))) char base64_encoding_table[4] = "no";
__attribute__((visibility("default"))) char base64_decoding_table[16] = "no";
__attribute__((visibility("default"))) char mod_table[4] = "no";
__attribute__((visibility("default"))) char conn_info_param[4] = "no";
__attribute__((visibility("default"))) char __mystrtok[16] = "no";
}

namespace {

std::string first_name() {
    json_object* const object = qvgetconnections(QVTC_TYPE_RDP);
    json_object* const list = json_object_object_get(object, "list");
    std::string name = "none";
    if (json_object_array_length(list) > 0) {
        json_object* const record = json_object_array_get_idx(list, 0);
        name = json_object_get_string(json_object_object_get(record, "name"));
    }
    json_object_put(object);
    return name;
}

void use_the_library() {
    char params[] = "name=mine&serverAddress=127.0.0.1&password=eHg+";
    qvsetconnections(QVTC_TYPE_RDP, params);
    expect(first_name() == "mine", "a record is stored and read");
    qvdelconnection(QVTC_TYPE_RDP, 0);
    expect(first_name() == "none", "and deleted");
    qvsetconnectdelay("delay=7");
    json_object* const delay = qvconnectdelay();
    expect(delay != nullptr, "a setting is stored");
    json_object_put(delay);
    json_object* const status = qvgetclientstatus(35);
    const std::string value = json_object_get_string(json_object_object_get(status, "status"));
    expect(value == "cGFyYW1ldGVyIGVycm9yIQ==", "a status is diagnosed and encoded");
    json_object_put(status);
    expect(LogWrite(4, "x") == 0, "a line is logged");
    expect(qvlaunchclient(100) == -1, "an id without a client is refused");
    qvsetvolume("micVolume=40");
    json_object* const volumes = qvgetvolume();
    expect(volumes != nullptr, "volumes are set and read");
    json_object_put(volumes);
    expect(qvgetwiredstatus() == 0, "the network's status is asked for");
    json_object_put(qvgetexwiredconf());
    json_object_put(qvgetwifi());
}

/// The library has a "main" too, which makes a table. It is not what was started here, and it
/// works with the library's own functions.
void use_the_test_entry(void* library) {
    void* const entry = dlsym(library, "main");
    expect(entry != nullptr, "the library has a main of its own");
    char directory[] = "/tmp/host.XXXXXX";
    expect(mkdtemp(directory) != nullptr && chdir(directory) == 0, "a working directory is made");
    expect(access("data", F_OK) != 0, "the library's main was not run");
    expect(reinterpret_cast<int (*)()>(entry)() == 0, "it can be called");
    expect(access("data/vpclientconfigure.db", F_OK) == 0, "and makes its table");
}

using EncodeBytes = char* (*)(const char*, unsigned, unsigned*);

void use_the_exported_names(void* library) {
    const auto encode_bytes = reinterpret_cast<EncodeBytes>(dlsym(library, "base64_encode"));
    char* const text = encode_bytes("Ma", 2, nullptr);
    expect(std::strcmp(text, "TWE=") == 0, "the library's own function is found in it");
    std::free(text);
    const auto* const table = static_cast<const char*>(dlsym(library, "base64_encoding_table"));
    expect(table != base64_encoding_table && std::memcmp(table, "ABCD", 4) == 0,
           "and its own data");
}

bool host_data_is_untouched() {
    const char* const texts[] = {counter,      urlparams,
                                 goemdata,     gfeature,
                                 logsetting,   loging,
                                 LogLevelText, base64_encoding_table,
                                 mod_table,    base64_decoding_table,
                                 __mystrtok,   conn_info_param};
    for (const char* const text : texts) {
        if (std::strcmp(text, "no") != 0) return false;
    }
    return true;
}

} // namespace

int main(int, char** arguments) {
    use_the_library();
    void* const library = dlopen(arguments[1], RTLD_NOW);
    use_the_exported_names(library);
    use_the_test_entry(library);
    expect(dlclose(library) == 0, "the library is closed");
    expect(host_calls == 0, "no function of the host was called");
    expect(host_data_is_untouched(), "no data of the host was written");
    return failures == 0 ? 0 : 1;
}
