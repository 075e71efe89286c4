/* A front-end that runs out of memory. Each call is made again and again in a process of its own,
 * each time with another allocation failing, or with less memory; afterwards the settings must be
 * the former ones or the new ones. Prints what is wrong, and nothing else. */
#include <alloca.h>
#include <json-c/json.h>
#include <limits.h>
#include <qvtcapi/qvtcapi.h>
#include <qvtcapi/settings.h>
#include <signal.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

void fail_allocation(long number);
long allocations_made(void);
int xml_del_itemNode(const char* item);
int xml_del_grandsonNode(const char* item, const char* key);
int setdispconf(const char* params);
int setdisplaymode(const char* params);
struct json_object* getconnection(unsigned type, unsigned id);

static const char* const document = "/home/root/vpclientData.xml";
static char value[] = "a new value";

/* --- The calls ---------------------------------------------------------------------------- */

static int write_setting(void) { return xmlwrite("configItem", "new", strdupa(value)); }
static int change_setting(void) { return xmlwrite("configItem", "key_3", strdupa(value)); }
static int write_item(void) { return xmlwrite("newItem", "new", strdupa(value)); }
static int delete_item(void) { return xml_del_itemNode("rdpItem_id_33"); }
static int delete_key(void) { return xml_del_grandsonNode("configItem", "key_4"); }
static int add_connection(void) {
    return qvsetconnections(QVTC_TYPE_RDP, strdupa("name=n&serverAddress=10.0.0.5"));
}
static int delete_connection(void) { return qvdelconnection(QVTC_TYPE_RDP, 1); }
static int set_delay(void) { return qvsetconnectdelay("delay=20"); }
static int set_host_name(void) { return qvsethostname("terminal"); }
static int set_password(void) { return qvsetmgrpwd("password=secret"); }
static int set_demo_mode(void) { return qvsetdemomode(1); }
static int set_portal(void) { return qvsetuserportal("useUserportal=off"); }
static int set_idle(void) { return qvsetidle("monitorPowerSave=on&monitorPowerSaveMins=10"); }
static int set_language(void) { return qvsetlanguage("language=zh_CN"); }
static int set_toolbar(void) { return qvsetvmwaretoolbar(1); }
static int set_volume(void) { return qvsetvolume("playVolume=30&micVolume=40"); }
static int set_brightness(void) { return qvsetmonitor("brightness=60"); }
static int set_resolution(void) { return setdispconf("res=5"); }
static int set_wired(void) { return qvsetwiredconf("conf=1&ip=10.0.0.2&mask=255.0.0.0"); }
static int launch_rdp(void) { return qvlaunchclient(32); }
static int launch_spice(void) { return qvlaunchclient(64); }
static int launch_horizon(void) { return qvlaunchclient(160); }
static int launch_vnc(void) { return qvlaunchclient(224); }
static int launch_web(void) { return qvlaunchclient(288); }
static int set_wired2(void) { return qvsetexwiredconf("conf=0"); }
static int set_wireless(void) {
    return qvsetwirelessconf("ssid=4f6666696365&conf=1&ip=10.0.0.2&mask=255.0.0.0");
}
static int join_network(void) {
    return qvsetwifiauth("ssid=4f6666696365&encryptType=WPA2&password=secret12");
}
static int switch_wifi(void) { return qvsetwifionoff("useWifi=on"); }
static int set_route(void) { return qvsetdefaultroute("default=eth0"); }
static int set_clock(void) {
    return qvsetdatetime("useNTP=off&systemTime=2026-12-31&region=Asia&city=Tokyo");
}
static int set_server(void) { return qvsetdatetime("useNTP=on&ntpHost=pool.example"); }
static int set_camera(void) { return qvsethdxcamera(1); }
static int write_number(void) { return qvwritedb(90, "value"); }
static int keep_resolution(void) { return qvapplydispconf(); }
static int revert_resolution(void) { return qvrestoredispconf(); }
static int set_mode(void) { return setdisplaymode("displayMode=clone"); }
static int set_order(void) { return qvsetdisplayorder("displayOrder=Reverse"); }
static int set_refresh(void) { return qvsetdisplayrefresh("{'refresh':'60'}"); }
static int set_sound(void) { return set_sound_config(1); }
static int repair(void) { return qvdiagnsys(); }
static int start(void) { return qvtcinitapi(); }
static int reset(void) { return qvresetsysconf(); }

static int done_with(struct json_object* object) {
    json_object_put(object);
    return 1;
}
static int get_connections(void) { return done_with(qvgetconnections(QVTC_TYPE_RDP)); }
static int get_connection(void) { return done_with(getconnection(QVTC_TYPE_RDP, 32)); }
static int get_delay(void) { return done_with(qvconnectdelay()); }
static int get_language(void) { return done_with(qvgetlanguage()); }
static int get_password(void) { return done_with(qvgetmgrpwd()); }
static int get_idle(void) { return done_with(qvgetidle()); }
static int get_portal(void) { return done_with(qvgetuserportal()); }
static int get_resolution(void) { return done_with(qvgetdispconf()); }
static int get_mode(void) { return done_with(qvdisplaymode()); }
static int get_order(void) { return done_with(qvgetdisplayorder()); }
static int get_brightness(void) { return done_with(qvgetmonitor()); }
static int get_volume(void) { return done_with(qvgetvolume()); }
static int get_wired(void) { return done_with(qvgetexwiredconf()); }
static int get_wifi(void) { return done_with(qvgetwifi()); }
static int get_wifi_switch(void) { return done_with(qvgetwifionoff()); }
static int get_toolbar(void) { return done_with(qvgetvmwaretoolbar()); }
static int get_clock(void) { return done_with(qvgetdatetime()); }
static int get_facts(void) { return done_with(qvgetsysinfo()); }
static int get_status(void) { return done_with(qvgetclientstatus(32)); }
static int get_host_name(void) { return qvgethostname(strcpy(alloca(128), "")); }
static int read_setting(void) { return xmlread("configItem", "key_3", alloca(1 << 16)); }
static int read_number(void) { return qvreaddb(90, alloca(64), 64); }

enum check {
    whole = 0,       /* the settings are not lost */
    one_change = 1,  /* they are the former ones or those behind the change */
    honest = 2,      /* 0 says that it was stored */
    no_change = 4,   /* they are the former ones */
    parses_text = 8, /* by json-c, which may end the process: see parse_json */
};
static const struct call {
    const char* name;
    int (*run)(void);
    unsigned checks;
    int samples; /* beyond the first allocations, all of which are tried */
} calls[] = {
    {"write_setting", write_setting, one_change | honest, 100},
    {"change_setting", change_setting, one_change | honest, 40},
    {"write_item", write_item, one_change | honest, 40},
    {"delete_item", delete_item, one_change | honest, 40},
    {"delete_key", delete_key, one_change | honest, 40},
    {"add_connection", add_connection, one_change | parses_text, 40},
    {"delete_connection", delete_connection, one_change, 40},
    {"set_delay", set_delay, one_change, 30},
    {"set_host_name", set_host_name, one_change, 30},
    {"set_password", set_password, one_change, 30},
    {"set_demo_mode", set_demo_mode, one_change, 30},
    {"set_portal", set_portal, one_change, 30},
    {"set_idle", set_idle, one_change, 10},
    {"set_language", set_language, one_change, 10},
    {"set_toolbar", set_toolbar, one_change, 30},
    {"set_volume", set_volume, whole, 10},
    {"set_brightness", set_brightness, one_change, 10},
    {"set_resolution", set_resolution, one_change, 30},
    {"keep_resolution", keep_resolution, one_change, 30},
    {"revert_resolution", revert_resolution, one_change, 30},
    {"set_mode", set_mode, no_change, 10},
    {"set_order", set_order, no_change, 10},
    {"set_refresh", set_refresh, whole, 30},
    {"set_wired", set_wired, one_change, 10},
    {"set_wired2", set_wired2, one_change, 10},
    {"set_wireless", set_wireless, one_change, 10},
    {"join_network", join_network, one_change, 10},
    {"switch_wifi", switch_wifi, one_change, 30},
    {"set_route", set_route, one_change, 10},
    {"set_clock", set_clock, one_change, 10},
    {"set_server", set_server, one_change, 10},
    {"set_camera", set_camera, no_change, 10},
    {"write_number", write_number, no_change, 10},
    {"set_sound", set_sound, no_change, 10},
    {"repair", repair, no_change, 10},
    {"start", start, whole, 10},
    {"reset", reset, whole, 20},
    {"launch_rdp", launch_rdp, whole, 20},
    {"launch_spice", launch_spice, whole, 10},
    {"launch_horizon", launch_horizon, whole, 10},
    {"launch_vnc", launch_vnc, whole, 10},
    {"launch_web", launch_web, whole, 10},
    {"get_connections", get_connections, no_change, 60},
    {"get_connection", get_connection, no_change | parses_text, 60},
    {"get_delay", get_delay, no_change, 30},
    {"get_language", get_language, no_change, 30},
    {"get_password", get_password, no_change, 30},
    {"get_idle", get_idle, no_change, 30},
    {"get_portal", get_portal, no_change, 30},
    {"get_resolution", get_resolution, no_change, 30},
    {"get_mode", get_mode, no_change, 30},
    {"get_order", get_order, no_change, 30},
    {"get_brightness", get_brightness, no_change, 10},
    {"get_volume", get_volume, no_change, 10},
    {"get_wired", get_wired, no_change, 10},
    {"get_wifi", get_wifi, no_change, 10},
    {"get_wifi_switch", get_wifi_switch, no_change, 30},
    {"get_toolbar", get_toolbar, no_change, 30},
    {"get_clock", get_clock, no_change, 10},
    {"get_facts", get_facts, no_change, 10},
    {"get_status", get_status, no_change, 10},
    {"get_host_name", get_host_name, no_change, 30},
    {"read_setting", read_setting, no_change, 30},
    {"read_number", read_number, no_change, 30},
};

/* --- The settings ------------------------------------------------------------------------- */

static char* read_settings(void) {
    FILE* file = fopen(document, "r");
    if (file == NULL) return strdup("");
    char* text = calloc(1, 1 << 20);
    if (fread(text, 1, (1 << 20) - 1, file) == 0) text[0] = 0;
    fclose(file);
    return text;
}

static void write_settings(const char* text) {
    FILE* file = fopen(document, "w");
    fputs(text, file);
    fclose(file);
}

static char* item(const char* name, int keys) {
    char* text = NULL;
    size_t size = 0;
    FILE* file = open_memstream(&text, &size);
    fprintf(file, "  <%s>\n", name);
    for (int i = 0; i < keys; ++i) fprintf(file, "    <key_%d>%s %d</key_%d>\n", i, name, i, i);
    fprintf(file, "    <id>%.2s</id>\n  </%s>\n", name + strlen(name) - 2, name);
    fclose(file);
    return text;
}

/* What no call touches stands before and behind what they do. */
static char *first, *last;

static char* settings(void) {
    char* text = NULL;
    first = item("firstItem", 40);
    last = item("lastItem", 40);
    if (asprintf(&text,
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ThinClientConfig>\n%s%s%s%s%s",
                 first, item("configItem", 30), item("rdpItem_id_32", 20),
                 item("rdpItem_id_33", 20), last) < 0)
        exit(2);
    return strcat(realloc(text, strlen(text) + 100), "</ThinClientConfig>\n");
}

static bool are_whole(const char* text) {
    const char* end = strstr(text, "</ThinClientConfig>\n");
    return strstr(text, first) != NULL && strstr(text, last) != NULL && end != NULL && end[20] == 0;
}

/* --- One try ------------------------------------------------------------------------------ */

static struct outcome {
    int result;
    long allocations;
} * outcome; /* shared with the process that tries */

typedef void limit(long number);

/* Makes the call with the limit in force; the status of its process. */
static int try_call(const struct call* call, limit* set_limit, long number) {
    *outcome = (struct outcome){-2, 0};
    const pid_t process = fork();
    if (process == 0) {
        alarm(30);
        if (freopen("/dev/null", "w", stdout) == NULL || freopen("/dev/null", "w", stderr) == NULL)
            _exit(2);
        set_limit(number);
        outcome->result = call->run();
        outcome->allocations = allocations_made();
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    return status;
}

static void judge(const struct call* call, const char* limit_name, long number, int status,
                  const char* before, const char* after) {
    char* text = read_settings();
    const bool changed = strcmp(text, before) != 0;
    const bool in_json_c = (call->checks & parses_text) != 0 && WTERMSIG(status) == SIGSEGV;
    if (status != 0 && !in_json_c)
        printf("%s: ended with status %d at %s %ld\n", call->name, status, limit_name, number);
    if (!are_whole(text)) printf("%s: settings lost at %s %ld\n", call->name, limit_name, number);
    if ((call->checks & one_change) != 0 && changed && strcmp(text, after) != 0)
        printf("%s: half a change at %s %ld\n", call->name, limit_name, number);
    if ((call->checks & no_change) != 0 && changed)
        printf("%s: a change at %s %ld\n", call->name, limit_name, number);
    if ((call->checks & honest) != 0 && outcome->result == 0 && !changed)
        printf("%s: not stored, but 0, at %s %ld\n", call->name, limit_name, number);
    free(text);
}

static long address_space(void) {
    long pages = 0;
    FILE* file = fopen("/proc/self/statm", "r");
    if (fscanf(file, "%ld", &pages) != 1) exit(2);
    fclose(file);
    return pages;
}

/* A front-end has its stack already. */
static void grow_stack(void) {
    volatile char room[1 << 18];
    for (size_t at = 0; at < sizeof room; at += 4096) room[at] = 1;
}

static void pages_left(long number) {
    grow_stack();
    const rlim_t bytes = (rlim_t)(address_space() + number) * 4096;
    setrlimit(RLIMIT_AS, &(struct rlimit){bytes, bytes});
}

/* All of the first ones; then one of so many that no more than the samples are tried. */
static long next_number(const struct call* call, long number, long range) {
    const long all = 20;
    return number < all ? number + 1 : number + (range - all) / call->samples + 1;
}

/* Makes the call with each of its limits. */
static long try_calls(const struct call* call, bool by_allocation, const char* before) {
    write_settings(before);
    try_call(call, fail_allocation, LONG_MAX);
    const long range = by_allocation ? outcome->allocations : 600;
    char* after = read_settings();
    long tried = 0;
    for (long number = 0; number < range; number = next_number(call, number, range), ++tried) {
        write_settings(before);
        const int status = try_call(call, by_allocation ? fail_allocation : pages_left, number);
        judge(call, by_allocation ? "allocation" : "pages", number, status, before, after);
    }
    free(after);
    return tried;
}

int main(int count, char** arguments) {
    const bool by_allocation = count < 2 || strcmp(arguments[1], "pages") != 0;
    outcome =
        mmap(NULL, sizeof *outcome, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    setvbuf(stdout, NULL, _IOLBF, 0); /* nothing is left for a child to print again */
    const char* const before = settings();
    long failed = 0;
    for (const struct call* call = calls; call < calls + sizeof calls / sizeof *calls; ++call) {
        if (!by_allocation && (call->checks & (honest | parses_text)) == 0) continue;
        failed += try_calls(call, by_allocation, before);
    }
    fprintf(stderr, "%ld failures were tried\n", failed);
    return 0;
}
