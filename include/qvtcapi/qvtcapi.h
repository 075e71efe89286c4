/*
 * qvtcapi.h - the public interface of libqvtcapi, the thin-client terminal's
 * device library.
 *
 * Valid C11 and C++20.  Conventions that hold for every function below:
 *
 *  1. Rights.  The library acts on the machine it runs on: it runs the
 *     terminal's programs through /bin/sh and rewrites settings under
 *     /home/root, /etc and /var.  It expects to run as root.
 *  2. Text.  Every string is a NUL-terminated byte string, UTF-8 where it is
 *     shown to a person.  A string argument is only read during the call
 *     unless its entry says that it is changed.  No string argument may be
 *     null unless its entry says what null does.
 *  3. Parameter strings.  Setters take "name=value" pairs joined by "&".  A
 *     pair with an empty value counts as absent for most setters; neither a
 *     name nor a value can hold "&" or "=".  At most 64 pairs, names of at
 *     most 31 and values of at most 255 bytes.
 *  4. Status.  Functions returning int give 0 for success and -1 for failure
 *     unless their entry says otherwise; some always give 0 ("always 0"), and
 *     report what went wrong only in the log, /home/root/system.log.
 *  5. Objects.  Functions returning a struct json_object hand over a new
 *     object for each call.  The caller owns it and releases it with
 *     json_object_put().  Null means: nothing to report.
 *  6. Settings.  Values live in /home/root/vpclientData.xml.  A value cannot
 *     hold "%" or "|": they are read back as "&" and backslash.
 *  7. Threads.  Every function below may be called from any thread.  Only
 *     qvlaunchclient() starts a thread; it ends by itself and is never joined.
 */
#ifndef QVTCAPI_QVTCAPI_H
#define QVTCAPI_QVTCAPI_H

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif
#ifdef __cplusplus
extern "C" {
#endif

/* The json-c object type; include <json-c/json.h> to look into one. */
struct json_object;

#if defined(__GNUC__)
#define QVTC_PRINTF_LIKE(format_index, first_argument)                                             \
    __attribute__((format(printf, format_index, first_argument)))
#else
#define QVTC_PRINTF_LIKE(format_index, first_argument)
#endif

/* ------------------------------------------------------------------ log -- */

/*
 * Appends one line to /home/root/system.log:
 * "YYYY-MM-DD hh:mm:ss [TAG] message\n" in local time.
 *
 * level   0 writes the tag DEBUG, 1 INFO, 2 ERROR.  Any other level writes no
 *         line, but still creates a missing log file.
 * format  as for printf; a message is cut at 10,239 bytes.
 *
 * Returns 0, also when the log cannot be opened.  A log file that this call
 * creates has mode 0600.
 */
int qvlog(int level, const char *format, ...) QVTC_PRINTF_LIKE(2, 3);

/*
 * The front-end's own log, independent of qvlog(): appends one line
 * "[TAG] [YYYY-MM-DD hh:mm:ss] message\n" to a file named after the day.
 *
 * The file is DIRECTORY/YYYY-MM-DD.log.  DIRECTORY comes from the line
 * "path=DIRECTORY" of a file "log.conf" in the working directory, and is the
 * environment's HOME without one; in that case the file keeps the date of the
 * process's first write.
 *
 * level   1 INFO, 2 DEBUG, 3 WARN, 4 ERROR.  Levels are not filtered.
 * format  NOT printf's: every letter d, s and c, wherever it stands, takes the
 *         next argument (an int, a string, an int written as one character);
 *         "%" and newline write nothing; everything else is written as it
 *         stands.  Mind the d, s and c inside words.
 *
 * Returns 0 when the line was written, -1 for another level or when the file
 * cannot be opened (the reason is on standard error).  For one thread at a
 * time.
 */
int LogWrite(int level, const char *format, ...);

/* ---------------------------------------------------------- connections -- */

/*
 * Connection types, and the block of 32 connection ids that each one owns:
 * type t has the ids t*32 to t*32+31.  6 is not a type.
 */
enum {
    QVTC_TYPE_BROKER = 0,  /* ids   0- 31 */
    QVTC_TYPE_RDP = 1,     /* ids  32- 63 */
    QVTC_TYPE_SPICE = 2,   /* ids  64- 95 */
    QVTC_TYPE_OVIRT = 3,   /* ids  96-127 */
    QVTC_TYPE_CITRIX = 4,  /* ids 128-159 */
    QVTC_TYPE_HORIZON = 5, /* ids 160-191 */
    QVTC_TYPE_VNC = 7,     /* ids 224-255 */
    QVTC_TYPE_HDP = 8,     /* ids 256-287 */
    QVTC_TYPE_WEB = 9,     /* ids 288-319 */
    QVTC_IDS_PER_TYPE = 32,
    QVTC_FIELD_SIZE = 64 /* bytes of a record's field, with its NUL */
};

/*
 * All records of one type: {"list": [record, ...]}, in ascending order of
 * their ids.  A record is an object of 51 strings (docs/settings.md names
 * them), all always present.  An unknown type gives an empty list.
 */
struct json_object *qvgetconnections(unsigned int type);

/*
 * Adds a record, or replaces a whole record when params holds an "id".
 *
 * params  pairs of field names and values.  Without an "id" the record gets
 *         the lowest free id of the type.  Fields that params lacks are stored
 *         empty.  Values are cut at 63 bytes; double quotes and backslashes
 *         are not stored.  A password field holds base64 text in which the
 *         padding "=" is written "+" (it could not be carried otherwise).
 *         The text may be changed by the call.
 *
 * Always 0.  When nothing was stored - an unknown type, a parameter string
 * that is not made of pairs, all 32 ids in use - the log says why.
 */
int qvsetconnections(unsigned int type, char *params);

/*
 * Deletes the record in a slot: the one with the id type*32+slot.  Always 0,
 * also when there is no such record.
 */
int qvdelconnection(unsigned int type, unsigned int slot);

/*
 * The delay before an automatic connection: {"delay": "seconds"}, or null when
 * none is set.
 */
struct json_object *qvconnectdelay(void);

/*
 * Stores the delay from "delay=SECONDS"; the name before the "=" is not
 * looked at.  Always 1; a text that is no such pair stores nothing.
 */
int qvsetconnectdelay(const char *params);

/* Sorts count integers ascending, in place.  Always 0. */
int qvsort(int *values, int count);

/* -------------------------------------------------------------- clients -- */

/*
 * Starts the client of a stored record and returns while it is starting.  A
 * client of the same kind that is still running is ended first.
 *
 * id  the connection id, in the block of RDP, SPICE, Horizon, VNC or web.
 *
 * Returns 0 when a launcher was run, whatever came of it, and -1 for any other
 * id.  The outcome is to be asked for with qvgetclientstatus(); except for RDP
 * it is also written, within ten seconds, to
 * /usr/local/vpclient/config/clientstatus: an empty line while it is open,
 * then "0x00000000 connect success" or "0x00000001 connect failed".
 */
int qvlaunchclient(unsigned int id);

/*
 * Runs "xfreerdp ARGUMENTS" and waits until it has ended.
 *
 * arguments  shell text, used as it stands: quote what must be quoted.
 *
 * Returns what system() returns: a wait status, or -1.
 */
int qvvelopanelaunchclient(const char *arguments);

/*
 * Ends the running RDP clients.  Returns -1 when the process list cannot be
 * read, else 0.
 */
int qvcancelconnect(void);

/*
 * What has come of the last launch, read from the client's log:
 * {"status": text}, where text is
 *   "0"          not connected yet;
 *   "1"          connected, or nothing to report (for types without a
 *                diagnosis always; for RDP also at every sixth call while the
 *                client runs);
 *   other text   failed: base64 of the client's own words, or of
 *                "parameter error!" (the record has no usable address),
 *                "unkown error!" (the RDP client is gone and its log holds no
 *                known words), "encode error!" or "not velopane!" (the address
 *                is no broker of the vendor's).
 */
struct json_object *qvgetclientstatus(unsigned int id);

/* ----------------------------------------------------------------- start -- */

/* --------------------------------------------------------------- display -- */

/* ------------------------------------------ idle, user portal, demo mode -- */

/* ----------------------------------------------------------------- sound -- */

/* -------------------------------------------- wired and wireless network -- */

/* ------------------------------------------------------- time and device -- */

/* ------------------------------------ host name, password, update, power -- */

/* -------------------------------------------------------- numbered store -- */

/*
 * The terminal keeps texts under small numbers: one program, qvplugin, owns
 * them, and the two functions below run it.  docs/numbered-store.md tells the
 * numbers in use.
 */

/*
 * Reads the text under a number.
 *
 * output  gets the text and its NUL, and is untouched when there is none to be
 *         had.  May be null only if size is 0.
 * size    the buffer's bytes.  The text must be shorter; one of 10,240 bytes
 *         does not fit into 10,240.
 *
 * Returns 0; -2 when nothing is stored or the text is too long for the buffer;
 * -1 when what the program prints is no base64.  At most 102,400 bytes of its
 * output are looked at, that is 76,800 bytes of text.
 */
int qvreaddb(unsigned int key, char *output, unsigned int size);

/*
 * Stores a text under a number, in place of the one that is there.
 *
 * value  any text of at most 76,782 bytes, the empty one too; null stores
 *        nothing.
 *
 * Returns 0 once the program was run: whether it stored the text, it does not
 * tell.  -2 for null, -1 for a longer text (which the log tells).
 */
int qvwritedb(unsigned int key, const char *value);

/* ---------------------------------------- language, battery, vendor data -- */

/*
 * The interface language: {"language": "zh_CN"}.  A stored name that contains
 * zh_CN, ko_KR or en_US is given as just that, any other as it is stored (its
 * first 127 bytes), "" when none is.  Never null.
 */
struct json_object *qvgetlanguage(void);

/*
 * Stores the language from "language=NAME" and copies its picture to the start
 * screen: the Chinese one when the name contains zh_CN, else the English one.
 * Without a language, or for null, nothing is changed.
 *
 * Returns 0, or -1 when the picture is locked by a setting: the language is
 * stored, the picture stays.  0 also hides a language that could not be stored
 * (the log has it) and a picture that could not be copied.
 */
int qvsetlanguage(const char *params);

/* The battery's charge in percent, or -1 without a battery. */
int qvgetbattery(void);

/*
 * What the terminal's vendor has left in the numbered store, as it stands
 * there: under 23 whether this is a terminal of another brand, under 50 a text
 * of at most 10,239 bytes about it, under 56 its data, under 42 its list of
 * features, which counts only if the text has more than 100 characters.
 *
 * Each gives null when nothing is stored, or no JSON.  qvoemdata() and
 * qvoemfeature() keep a text of more than 500 or 100 characters until the
 * process ends: a change is not seen before.
 */
struct json_object *qvisoem(void);
struct json_object *qvoeminfo(void);
struct json_object *qvoemdata(void);
struct json_object *qvoemfeature(void);

/* ------------------------------------------ horizon, citrix and printing -- */

#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
