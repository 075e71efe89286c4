/* A front-end in C11 that calls every function of the public header once. */
#include <json-c/json.h>
#include <qvtcapi/qvtcapi.h>

#include <stdio.h>
#include <string.h>

static int failures = 0;

static void expect(int holds, const char* what) {
    printf("%s: %s\n", holds ? "ok" : "FAILED", what);
    if (!holds) ++failures;
}

static void expect_json(struct json_object* object, const char* text) {
    expect(object != NULL &&
               strcmp(json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN), text) == 0,
           text);
    json_object_put(object);
}

int main(void) {
    expect(qvlog(1, "%s %d", "hello", 5) == 0, "qvlog");
    expect(LogWrite(1, "x") == 0, "LogWrite");
    expect(LogWrite(5, "x") == -1, "LogWrite of no level");

    char params[] = "name=office&serverAddress=127.0.0.1";
    expect(qvsetconnections(QVTC_TYPE_WEB, params) == 0, "qvsetconnections");
    struct json_object* list = qvgetconnections(QVTC_TYPE_WEB);
    expect(json_object_array_length(json_object_object_get(list, "list")) == 1, "qvgetconnections");
    json_object_put(list);
    expect(qvdelconnection(QVTC_TYPE_WEB, 0) == 0, "qvdelconnection");
    expect_json(qvgetconnections(QVTC_TYPE_WEB), "{\"list\":[]}");

    expect(qvconnectdelay() == NULL, "no delay");
    expect(qvsetconnectdelay("delay=7") == 1, "qvsetconnectdelay");
    expect_json(qvconnectdelay(), "{\"delay\":\"7\"}");

    int numbers[] = {3, -1, 2};
    expect(qvsort(numbers, 3) == 0 && numbers[0] == -1 && numbers[1] == 2 && numbers[2] == 3,
           "qvsort");

    expect(qvlaunchclient(100) == -1, "qvlaunchclient of a type without a client");
    expect(qvvelopanelaunchclient("--version >/dev/null 2>&1; exit 3") == 3 << 8,
           "qvvelopanelaunchclient");
    expect(qvcancelconnect() == 0, "qvcancelconnect");
    expect_json(qvgetclientstatus(35), "{\"status\":\"cGFyYW1ldGVyIGVycm9yIQ==\"}");

    char value[8] = "before";
    expect(qvreaddb(90, value, sizeof value) == -2 && strcmp(value, "before") == 0, "qvreaddb");
    expect(qvwritedb(90, "hdxcamera=on") == 0, "qvwritedb");
    expect(qvwritedb(90, NULL) == -2, "qvwritedb of null");

    expect_json(qvgetlanguage(), "{\"language\":\"\"}");
    expect(qvsetlanguage("language=ko_KR") == 0, "qvsetlanguage");
    expect_json(qvgetlanguage(), "{\"language\":\"ko_KR\"}");
    expect(qvgetbattery() >= -1, "qvgetbattery");
    expect(qvisoem() == NULL && qvoeminfo() == NULL && qvoemdata() == NULL &&
               qvoemfeature() == NULL,
           "no vendor's data");
    return failures == 0 ? 0 : 1;
}
