/* A front-end that runs out of memory. Each call is made again and again in a process of its own,
 * each time with another allocation failing, or with less memory; afterwards the settings must be
 * the former ones or the new ones. Prints what is wrong, and nothing else. */
#include <json-c/json.h>
#include <limits.h>
#include <qvtcapi/qvtcapi.h>
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
int xmlwrite(const char* item, const char* key, char* value);
int xml_del_itemNode(const char* item);
int xml_del_grandsonNode(const char* item, const char* key);
int setdispconf(const char* params);

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
static int get_connections(void) {
    json_object_put(qvgetconnections(QVTC_TYPE_RDP));
    return 1;
}
static const struct call {
    const char* name;
    int (*run)(void);
    int samples;
    bool one_change; /* the settings are the former ones or those behind it */
    bool honest;     /* 0 says that it was stored */
} calls[] = {
    {"write_setting", write_setting, 100, true, true},
    {"change_setting", change_setting, 40, true, true},
    {"write_item", write_item, 40, true, true},
    {"delete_item", delete_item, 40, true, true},
    {"delete_key", delete_key, 40, true, true},
    {"add_connection", add_connection, 40, true, false},
    {"delete_connection", delete_connection, 40, false, false},
    {"set_delay", set_delay, 8, false, false},
    {"set_host_name", set_host_name, 8, false, false},
    {"set_password", set_password, 8, false, false},
    {"set_demo_mode", set_demo_mode, 8, false, false},
    {"set_portal", set_portal, 8, false, false},
    {"set_idle", set_idle, 8, false, false},
    {"set_language", set_language, 8, false, false},
    {"set_toolbar", set_toolbar, 8, false, false},
    {"set_volume", set_volume, 8, false, false},
    {"set_brightness", set_brightness, 8, false, false},
    {"set_resolution", set_resolution, 8, false, false},
    {"set_wired", set_wired, 8, false, false},
    {"launch_rdp", launch_rdp, 15, false, false},
    {"launch_spice", launch_spice, 15, false, false},
    {"launch_horizon", launch_horizon, 15, false, false},
    {"launch_vnc", launch_vnc, 15, false, false},
    {"launch_web", launch_web, 15, false, false},
    {"get_connections", get_connections, 40, false, false},
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
    if (status != 0)
        printf("%s: ended with status %d at %s %ld\n", call->name, status, limit_name, number);
    if (!are_whole(text)) printf("%s: settings lost at %s %ld\n", call->name, limit_name, number);
    if (call->one_change && changed && strcmp(text, after) != 0)
        printf("%s: half a change at %s %ld\n", call->name, limit_name, number);
    if (call->honest && outcome->result == 0 && !changed)
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

int main(int count, char** arguments) {
    const bool by_allocation = count < 2 || strcmp(arguments[1], "pages") != 0;
    outcome =
        mmap(NULL, sizeof *outcome, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    setvbuf(stdout, NULL, _IOLBF, 0); /* nothing is left for a child to print again */
    const char* const before = settings();
    long failed = 0;
    for (const struct call* call = calls; call < calls + sizeof calls / sizeof *calls; ++call) {
        if (!by_allocation && !call->one_change) continue;
        write_settings(before);
        try_call(call, fail_allocation, LONG_MAX);
        const long allocations = outcome->allocations;
        char* after = read_settings();
        const long range = by_allocation ? allocations : 600;
        const long step = range / call->samples + 1;
        for (long number = 0; number < range; number += step, ++failed) {
            write_settings(before);
            const int status = try_call(call, by_allocation ? fail_allocation : pages_left, number);
            judge(call, by_allocation ? "allocation" : "pages", number, status, before, after);
        }
        free(after);
    }
    fprintf(stderr, "%ld failures were tried\n", failed);
    return 0;
}
