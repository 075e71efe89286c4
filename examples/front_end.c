/*
 * front_end.c - a small front-end: stores an RDP connection, launches it,
 * follows it to its outcome and says in plain words what came of it.
 *
 * It needs nothing but the installed library:
 *
 *     cc -std=c11 front_end.c -o front_end $(pkg-config --cflags --libs qvtcapi json-c)
 *
 * and, like every front-end, root's rights and an X server on display :0.
 */
#define _POSIX_C_SOURCE 200809L

#include <qvtcapi/qvtcapi.h>

#include <json-c/json.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

static const char usage[] =
    "Usage: front_end HOST[:PORT] [USER]\n"
    "Connect to an RDP server, and say what came of it. The user's password is taken\n"
    "from the environment variable RDP_PASSWORD.\n"
    "\n"
    "Exit status: 0 connected, 1 not connected, 2 wrong command line.\n";

static const char client_log[] = "/home/root/freerdp.log";

enum { patience_in_seconds = 60, longest_password = 45, parameters_size = 1024 };

struct target {
    const char* host;
    const char* port; /* "" is RDP's own */
    const char* user; /* "" is none */
    const char* password;
};

/* ------------------------------------------------------------- base64 ---- */

/*
 * The form in which a record holds a password: base64 that a parameter string
 * can carry, with "-" for the alphabet's "+" and "+" for the padding.
 */
static void encode_password(const char* password, char* out) {
    static const char alphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-/";
    const size_t length = strlen(password);
    for (size_t at = 0; at < length; at += 3) {
        uint32_t group = 0;
        for (size_t i = 0; i < 3; ++i)
            group = group << 8 | (at + i < length ? (unsigned char)password[at + i] : 0U);
        for (size_t i = 0; i < 4; ++i)
            *out++ = at + i > length ? '+' : alphabet[group >> (18 - 6 * i) & 63];
    }
    *out = '\0';
}

/* The text behind the base64 form of a reason; the caller frees it. */
static char* decode_reason(const char* base64) {
    static const char alphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    char* const text = malloc(strlen(base64) + 1);
    const char* place = NULL;
    uint32_t bits = 0;
    unsigned count = 0;
    size_t length = 0;
    if (text == NULL) abort();
    while (*base64 != '\0' && (place = strchr(alphabet, *base64++)) != NULL) {
        bits = bits << 6 | (uint32_t)(place - alphabet);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        text[length++] = (char)(bits >> count & 255);
    }
    text[length] = '\0';
    return text;
}

/* ------------------------------------------------------------- records --- */

/* Whether a record, and on the way there a parameter string, can hold a value. */
static bool is_storable(const char* value) {
    return strlen(value) < QVTC_FIELD_SIZE && strpbrk(value, "&='\"\\%|") == NULL;
}

/* A member that is a string, or "". */
static const char* member(struct json_object* object, const char* name) {
    const char* const text = json_object_get_string(json_object_object_get(object, name));
    return text == NULL ? "" : text;
}

/* Finds the id, as text, of the RDP record of a name; "" if there is none. */
static void find_record(const char* name, char id[QVTC_FIELD_SIZE]) {
    struct json_object* const records = qvgetconnections(QVTC_TYPE_RDP);
    struct json_object* const list = json_object_object_get(records, "list");
    const size_t count = list == NULL ? 0 : json_object_array_length(list);
    id[0] = '\0';
    for (size_t i = 0; i < count; ++i) {
        struct json_object* const record = json_object_array_get_idx(list, i);
        if (strcmp(member(record, "name"), name) == 0)
            snprintf(id, QVTC_FIELD_SIZE, "%s", member(record, "id"));
    }
    json_object_put(records);
}

/*
 * Stores the connection, over the one of the last time if there is one, and
 * returns its id, or 0, which no RDP record has, if it could not be stored.
 */
static unsigned store_record(const struct target* target) {
    static const char name[] = "front_end"; /* the window's title too: without a blank */
    char id[QVTC_FIELD_SIZE], password[QVTC_FIELD_SIZE + 1], parameters[parameters_size];
    find_record(name, id);
    encode_password(target->password, password);
    /* An empty value, such as a new record's id, counts as missing. */
    snprintf(parameters, sizeof parameters,
             "id=%s&type=%d&name=%s&serverAddress=%s&useCustomRDPPort=%s&rdpPort=%s"
             "&username=%s&password=%s&colorDepth=32&useCompress=on",
             id, QVTC_TYPE_RDP, name, target->host, *target->port != '\0' ? "on" : "off",
             target->port, target->user, password);
    qvsetconnections(QVTC_TYPE_RDP, parameters);
    find_record(name, id);
    return (unsigned)strtoul(id, NULL, 10);
}

/* ------------------------------------------------------------- launching - */

/*
 * Asks once a second until there is an outcome; returns it as
 * qvgetclientstatus() gives it, or "0" when patience ran out.  The caller
 * frees it.
 *
 * Once a second is the right pace: an RDP client that still runs at the seventh
 * question and has not named a failure counts as connected, whatever the screen
 * shows.  A front-end that has to be sure looks for the client's window, or runs
 * "qvtcctl launch ID --wait", which does.
 */
static char* follow(unsigned id) {
    const struct timespec second = {.tv_sec = 1, .tv_nsec = 0};
    for (int asked = 0;; ++asked) {
        struct json_object* const answer = qvgetclientstatus(id);
        char* const status = strdup(member(answer, "status"));
        json_object_put(answer);
        if (status == NULL) abort();
        if (strcmp(status, "0") != 0 || asked == patience_in_seconds) {
            printf(" %d s\n", asked);
            return status;
        }
        putchar('.');
        fflush(stdout);
        nanosleep(&second, NULL);
        free(status);
    }
}

/* Shows the client's log without its first line, the start marker. */
static void show_client_log(void) {
    int before = '\n', c = '\n';
    FILE* const log = fopen(client_log, "r");
    if (log == NULL) return;
    do c = getc(log);
    while (c != '\n' && c != EOF);
    printf("The client's log, %s:\n", client_log);
    for (; (c = getc(log)) != EOF; before = c) {
        if (before == '\n') fputs("    ", stdout);
        putchar(c);
    }
    if (before != '\n') putchar('\n');
    fclose(log);
}

/* Says what came of a launch; returns the program's exit status. */
static int report(const char* status) {
    if (strcmp(status, "1") == 0) {
        puts("Connected.");
        return EXIT_SUCCESS;
    }
    if (strcmp(status, "0") == 0) {
        puts("Not connected: the client is still trying.");
        return EXIT_FAILURE;
    }
    char* const reason = decode_reason(status);
    printf("Not connected: %.*s\n", (int)strcspn(reason, "\n"), reason);
    /* The library's words (its spelling) for a log in which it knows none. */
    if (strcmp(reason, "unkown error!") == 0) show_client_log();
    free(reason);
    return EXIT_FAILURE;
}

/* ------------------------------------------------------------- main ------ */

/* Reads the command line and splits HOST:PORT; false if it is wrong. */
static bool read_target(int count, char** arguments, struct target* target) {
    const char* const password = getenv("RDP_PASSWORD");
    if (count < 2 || count > 3 || arguments[1][0] == '-') return false;
    target->host = arguments[1];
    target->port = "";
    char* const colon = strrchr(arguments[1], ':');
    if (colon != NULL) {
        *colon = '\0';
        target->port = colon + 1;
        if (*target->port == '\0' || strspn(target->port, "0123456789") != strlen(target->port))
            return false;
    }
    target->user = count == 3 ? arguments[2] : "";
    target->password = password == NULL ? "" : password;
    return is_storable(target->host) && is_storable(target->port) && is_storable(target->user) &&
           strlen(target->password) <= longest_password;
}

int main(int count, char** arguments) {
    struct target target;
    if (!read_target(count, arguments, &target)) {
        fputs(usage, stderr);
        return 2;
    }
    const unsigned id = store_record(&target);
    if (id == 0) {
        fputs("The connection could not be stored; /home/root/system.log says why.\n", stderr);
        return EXIT_FAILURE;
    }
    qvlog(1, "front_end launches connection %u", id);
    printf("Launching connection %u to %s ", id, target.host);
    fflush(stdout);
    qvlaunchclient(id);
    char* const status = follow(id);
    const int result = report(status);
    free(status);
    return result;
}
