/*
 * qvtcapi.h - the public interface of libqvtcapi, the thin-client terminal's
 * device library.  Valid C11 and C++20.
 *
 * This header, update.h, settings.h and factory_defaults.h are what front-ends
 * use.  The library exports further names, workers and data that older programs
 * link; new programs have no need of them.  settings.md, in the package's
 * documentation, has every settings key, every field of a connection and every
 * file named below.
 *
 * BEFORE THE FIRST CALL
 *
 *   Rights        root.  The library runs the terminal's programs and rewrites
 *                 files under /home/root, /root, /etc, /usr/local/vpclient,
 *                 /var/lib/ralo and /tmp.
 *   Shell         Programs run through /bin/sh, which is bash on terminals; dash
 *                 does as well.  PATH must lead to them: sbin directories belong
 *                 in it.
 *   Display       DISPLAY=:0, and XAUTHORITY where the X server asks for it, in
 *                 the environment.  Clients inherit both, and qvtcinitapi(),
 *                 qvsetidle(), qvgetmonitornum() and qvissupportextendscreen()
 *                 ask the caller's display; all others ask :0 whatever DISPLAY
 *                 says.
 *   Language      What programs print is read in English: run with LC_ALL
 *                 unset and LANG=C.UTF-8 or en_US.UTF-8.  After setlocale(),
 *                 LC_NUMERIC must be "C", or brightness is read and set wrong.
 *   SIGCHLD       Neither ignored nor reaped by a handler of the program's own:
 *                 otherwise every status that comes from system() is -1,
 *                 although the program ran.
 *   Descriptors   Clients inherit every descriptor of the caller that is not
 *                 close-on-exec.
 *   Output        What a program says on its standard output or error is the
 *                 caller's: ifup, killall, wget and others write there, and so
 *                 do a few functions (a missing interface, the search for a
 *                 free id, the X server's and the document's errors).  A
 *                 program whose output is read by another one points its
 *                 descriptors 1 and 2 elsewhere.
 *   Passwords     stand in clear text in the command lines of clients and of
 *                 nmcli, which every user can list while they run; in
 *                 /home/root/system.log, which has each client's command line;
 *                 and, the manager password, in the settings document.  The
 *                 records' base64 hides nothing.  Mind what goes into a support
 *                 bundle.
 *   Programs      Where one is missing, the call behaves as if it had printed
 *                 nothing, mostly without a word.
 *
 *     all         awk, cat, cp, date, echo, grep, kill, killall, ln, mv, ps,
 *                 rm, sed, sh, tail, touch, tr, uname, wc, xargs (not repeated
 *                 at the entries)
 *     clients     xfreerdp, vmware-view, remote-viewer, vncviewer, firefox,
 *                 xrandr, xwininfo, curl, qvplugin, /usr/bin/resetusb.sh
 *     screens     xrandr, xset, dmidecode, lspci, systemctl,
 *                 /var/lib/ralo/display.sh
 *     sound       aplay, amixer, pacmd, /usr/bin/pulseaudio,
 *                 /usr/bin/set_default_sink
 *     network     ip, ifconfig, route, ifup, ifdown, nmcli, dhclient,
 *                 systemctl, /usr/sbin/wpa_supplicant,
 *                 /etc/init.d/networking
 *     device      blockdev, hwclock, clock, ntpdate-sync, reboot, shutdown,
 *                 systemctl, wget, x11vnc, system-config-printer
 *     store       qvplugin
 *
 * CONVENTIONS
 *
 *  1. Text.  Every string is a NUL-terminated byte string, UTF-8 where it is
 *     shown to a person.  A string argument is only read during the call
 *     unless its entry says that it is changed.
 *  2. Null.  A null text or buffer does nothing, and gives what the entry gives
 *     for a failure; an entry that always gives the same gives that.
 *  3. Parameter strings.  Setters take "name=value" pairs joined by "&".  A
 *     pair with an empty value counts as absent for most setters; neither a
 *     name nor a value can hold "&" or "=", a password neither.  At most 64
 *     pairs, names of at most 31 and values of at most 255 bytes.
 *  4. Status.  Functions returning int give 0 for success and -1 for failure
 *     unless their entry says otherwise.  Many always give 0: a program that
 *     must know reads back.  The log, /home/root/system.log, has what the
 *     library itself refused or could not write; that a program it ran failed,
 *     or that the settings document is no such document, is in no log, and a
 *     full or read-only disk takes the log with it.
 *  5. Objects.  Functions returning a struct json_object hand over a new
 *     object for each call.  The caller owns it and releases it with
 *     json_object_put().  Null means: nothing to report.
 *  6. Settings.  Values live in /home/root/vpclientData.xml.  A value cannot
 *     hold "%" or "|": they are read back as "&" and backslash.  A value of
 *     blanks only is lost.
 *  7. Threads.  Functions may be called from any thread, and writers of the
 *     settings take turns, between programs too.  One caller at a time for:
 *     LogWrite(), everything that sets the same interface, screen or sound
 *     card, and qvlaunchclient() with its qvgetclientstatus().  Only
 *     qvlaunchclient() starts a thread: it lives up to 20 seconds and is never
 *     joined; dlclose() does not unload the library.
 *  8. Secrets on disk.  Files that the library creates for settings and its log
 *     have mode 0600; one that exists keeps its mode.
 *
 * THE LAST LINES OF EVERY ENTRY
 *
 *   Stores          the keys of the settings document ("tc_config_param_1"),
 *                   numbers of the numbered store and files it changes.
 *   Runs            the programs it starts.
 *   Waits           none      no program runs, no lock is waited for
 *                   programs  until those have ended: milliseconds as a rule,
 *                             without a limit of the library's own
 *                   lock      for another caller of the library: at most ten
 *                             seconds in all (a launch: one), after which a
 *                             setter stores nothing, and what only reads or
 *                             launches goes on
 *                   long      seconds or more, for the reason given: not for a
 *                             thread that draws a screen
 *   Read back with  the function that shows what is stored or in force.
 *   Fails           none      it cannot fail but for want of memory
 *                   not told  the result is the same: read back
 *                   told      by the results named; anything else is not told
 *
 * "nothing" stands where there is nothing to name.
 */
#ifndef QVTCAPI_QVTCAPI_H
#define QVTCAPI_QVTCAPI_H

/* The version of this header, which is that of the package. */
#define QVTC_VERSION_MAJOR 0
#define QVTC_VERSION_MINOR 1
#define QVTC_VERSION_PATCH 0
#define QVTC_VERSION "0.1.0"

/* Limits, in bytes without the NUL unless the name says SIZE. */
#define QVTC_PARAMS_MAX 64             /* pairs of a parameter string */
#define QVTC_PARAM_NAME_MAX_BYTES 31   /* a pair's name */
#define QVTC_PARAM_VALUE_MAX_BYTES 255 /* a pair's value */
#define QVTC_PASSWORD_MAX_BYTES 45     /* a record's password, before base64 */
#define QVTC_VNC_PASSWORD_MAX_BYTES 63 /* a VNC record's, stored as it is */
#define QVTC_WIFI_PASSWORD_MAX_BYTES 127
#define QVTC_HOST_NAME_SIZE 128 /* the buffer of qvgethostname() */
#define QVTC_LOG_MESSAGE_MAX_BYTES 10239
#define QVTC_NUMBERED_VALUE_MAX_BYTES 76782 /* a text for qvwritedb() */
#define QVTC_BRIGHTNESS_MIN 20              /* percent */
#define QVTC_IDLE_MINUTES_MAX 1092          /* the X server counts seconds in 16 bits */

/* What qvgetclientstatus() gives; any other text is a failure, in base64. */
#define QVTC_STATUS_WAITING "0"
#define QVTC_STATUS_CONNECTED "1"

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
 *
 * Stores: /home/root/system.log.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told.
 */
int qvlog(int level, const char *format, ...) QVTC_PRINTF_LIKE(2, 3);

/*
 * The front-end's own log, independent of qvlog(): appends one line
 * "[TAG] [YYYY-MM-DD hh:mm:ss] message\n" to a file named after the day.
 *
 * The file is DIRECTORY/YYYY-MM-DD.log.  DIRECTORY comes from the line
 * "path=DIRECTORY", which must be the first one, of a file "log.conf" in the
 * working directory, and is the environment's HOME without one; in that case
 * the file keeps the date of the process's first write.  A DIRECTORY that
 * becomes shorter while the process runs keeps the tail of the longer one.
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
 *
 * Stores: DIRECTORY/YYYY-MM-DD.log.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: told, -1.
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
 * their ids.  A record is an object of 51 strings (settings.md names them, with
 * their ranges and who uses them), all always present.  An unknown type gives
 * an empty list.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives an empty list too.
 */
struct json_object *qvgetconnections(unsigned int type);

/*
 * Adds a record, or replaces a whole record when params holds an "id".
 *
 * params  pairs of field names and values.  Without an "id" the record gets
 *         the lowest free id of the type, which is not told: list the type and
 *         look for what was stored.  Fields that params lacks are stored empty,
 *         "type" too: give it.  Values are cut at 63 bytes; backslashes are
 *         dropped; a double quote anywhere refuses the whole record.  The text
 *         may be changed by the call.
 *
 * An "id" is taken as it is given: one outside the type's block is stored where
 * no list shows it and no launch finds it, one that does not exist is created.
 *
 * Nothing but what is said above is checked.  An RDP record needs "colorDepth"
 * (8, 15, 16, 24 or 32) unless "useGFX" or "useRemoteFX" is "on", a SPICE
 * record needs "port"; without them the client fails at once.
 *
 * A password field holds the base64 text of at most QVTC_PASSWORD_MAX_BYTES
 * bytes, in which every "+" is first written "-" and then the padding "="
 * "+": "~~~" is "fn5-", "secret!" is "c2VjcmV0IQ++".  A longer one does not
 * decode, and its record is not launched.  A VNC record's password is no
 * base64: it is stored, and given to the viewer, as it is.
 *
 * Always 0.  Nothing is stored for an unknown type, for a parameter string that
 * is not made of pairs or holds a double quote, when all 32 ids are in use
 * (these the log tells), and when the document cannot be written.
 *
 * Stores: the item PREFIX_id_ID of the settings document, all 51 fields.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvgetconnections().
 * Fails: not told.
 */
int qvsetconnections(unsigned int type, char *params);

/*
 * Deletes the record in a slot: the one with the id type*32+slot.  Always 0,
 * also when there is no such record.
 *
 * Stores: the item PREFIX_id_ID of the settings document, which it removes.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvgetconnections().
 * Fails: not told.
 */
int qvdelconnection(unsigned int type, unsigned int slot);

/*
 * The delay before an automatic connection: {"delay": "seconds"}, or null when
 * none is set.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives null too.
 */
struct json_object *qvconnectdelay(void);

/*
 * Stores the delay from "delay=SECONDS"; neither the name before the "=" nor
 * the value is looked at.  Always 1; a text that is no such pair stores
 * nothing.
 *
 * Stores: tc_config_param_1.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvconnectdelay().
 * Fails: not told.
 */
int qvsetconnectdelay(const char *params);

/*
 * Sorts count integers ascending, in place.  Always 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
int qvsort(int *values, int count);

/* -------------------------------------------------------------- clients -- */

/*
 * Starts the client of a stored record and returns while it is starting.
 *
 * id  the connection id, in the block of RDP, SPICE, Horizon, VNC or web.  That
 *     there is a record is not checked: without one the client is started with
 *     an empty address.
 *
 * A client of the same kind that is still running is ended first where its
 * process has the name that is ended: xfreerdp; vmware-view; vncviewer;
 * firefox, but not firefox-esr; for SPICE spicec, spicy and remote-view, so
 * that a running remote-viewer goes on beside the new one.
 *
 * Returns 0 when a launcher was run, whatever came of it (a password that does
 * not decode starts nothing, and gives 0), and -1 for any other id.  The
 * outcome of RDP and SPICE is to be asked for with qvgetclientstatus(); except
 * for RDP it is also written, within ten seconds, to
 * /usr/local/vpclient/config/clientstatus: an empty line while it is open, then
 * "0x00000000 connect success" or "0x00000001 connect failed".  This file is
 * one for all launches: only that of the last one is to be believed, and only
 * when the launch before it was ten seconds earlier.  "success" is a window,
 * not a session: SPICE's viewer, and a browser, open one whatever happens.
 * "failed" is no window within ten seconds: a slow client may still come.
 *
 * Stores: com.valmora.thinclient.para_10_0 (not for Horizon),
 *         /home/root/freerdp.log, spicec.log, vnc.log or firefox.log, and
 *         /usr/local/vpclient/config/clientstatus.
 * Runs: xfreerdp, xrandr and qvplugin, vmware-view, remote-viewer, vncviewer or
 *       firefox; xwininfo and /usr/bin/resetusb.sh in the background.
 * Waits: lock, programs.
 * Read back with: qvgetclientstatus(), for RDP and SPICE.
 * Fails: told, -1 for an id of another type; the log has a password that does
 *        not decode.
 */
int qvlaunchclient(unsigned int id);

/*
 * Runs "xfreerdp ARGUMENTS" and waits until it has ended.
 *
 * arguments  shell text, used as it stands: quote what must be quoted.
 *
 * Returns what system() returns: a wait status, or -1.
 *
 * Stores: nothing.
 * Runs: xfreerdp.
 * Waits: long, until the session is over.
 * Read back with: nothing.
 * Fails: told, by the wait status.
 */
int qvvelopanelaunchclient(const char *arguments);

/*
 * Ends the running RDP clients that "ps -au" lists: those with a controlling
 * tty.  A client started by a program without one, such as a service or what a
 * display manager starts, is not found and lives on; end it with a signal, or
 * by the next launch of an RDP connection.  Clients of other kinds are left
 * alone.  Returns -1 when the process list cannot be read, else 0, also when
 * none was found.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: told, -1.
 */
int qvcancelconnect(void);

/*
 * What has come of the last launch, read from the client's log:
 * {"status": text}, where text is
 *   "0"          not connected yet;
 *   "1"          connected, or nothing to report;
 *   other text   failed: base64 of the client's own words, or of
 *                "parameter error!" (the record has no address, or one of
 *                fewer than four bytes), "unkown error!" (the RDP client is
 *                gone and its log holds no known words), "encode error!" or
 *                "not velopane!" (the address is no broker of the vendor's).
 *
 * id  the id that was launched last.  The start marker by which the log is
 *     read is one for all launches: asked of any other id the answer is
 *     another connection's, or "1".
 *
 * What an answer is worth:
 *   broker       asked of the broker itself, at each call; no launch needed.
 *   RDP          failures are to be believed, "0" too.  "1" comes at the
 *                seventh question while the client runs and then at every
 *                sixth, whatever the log says, a failure in it included; the
 *                count is one for the process, for all ids, and a launch does
 *                not reset it.  "1" also stands for a log in whose last 200
 *                lines the start marker is not to be found.  So: stop at the
 *                first failure, and take a window on the screen for success.
 *   SPICE        "0", "1" and failures are the viewer's own words; "1" always
 *                while the file /home/root/remote-viewer exists.
 *   HDP          as SPICE, by the phrases of a VNC viewer.
 *   others       oVirt, Citrix, Horizon, VNC and web have no diagnosis: "1" at
 *                once, also when nothing was launched.
 *
 * Stores: nothing.
 * Runs: curl, for a broker.
 * Waits: lock, programs; long for a broker: 3 seconds for the connection, and
 *        without limit for its answer.
 * Read back with: nothing.
 * Fails: not told; a log that cannot be read counts as "1".
 */
struct json_object *qvgetclientstatus(unsigned int id);

/* ----------------------------------------------------------------- start -- */

/*
 * To be called once, before anything else: sets the sound up where it goes to
 * HDMI, rotates logs that have outgrown their limits, applies the stored power
 * saving and brightness, starts the server of the remote view (x11vnc) if the
 * settings ask for one and none runs, and refreshes the front-end's pictures.
 * Everything else works without it.  Always 0; no step's failure stops the
 * later ones.
 *
 * Stores: system.log.old, freerdp.log.old, spicec.log.old and
 *         qvservice.log.old in /home/root; the pictures in
 *         /usr/local/vpclient/bin/image; tc_config_param_17, as it was.
 * Runs: aplay, /usr/bin/set_default_sink, xset, xrandr, x11vnc.
 * Waits: lock, programs.
 * Read back with: nothing.
 * Fails: not told.
 */
int qvtcinitapi(void);

/* --------------------------------------------------------------- display -- */

/*
 * A screen resolution is known under an index, a short decimal text:
 *
 *   index  resolution   index  resolution   index  resolution
 *   "0"    800x600 (1)  "4"    1600x1200    "8"    1600x900
 *   "1"    1024x768     "5"    1920x1080    "9"    1280x800 (2)
 *   "2"    1280x720     "6"    1280x1024    "10"   automatic
 *   "3"    1440x900     "7"    1366x768
 *
 * (1) treated as automatic by the terminal's display script; (2) not offered.
 */

/*
 * What users are offered: {"list": [{"value": "auto"}, {"value": "800x600"},
 * ...]}, ten entries, always the same.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvgetdisplist(void);

/*
 * The requested resolution: {"res": index}; "10" when none is stored.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "10" too.
 */
struct json_object *qvgetdispconf(void);

/*
 * Requests a resolution, puts it into force and restarts the terminal.  Until
 * qvapplydispconf() keeps it, qvrestoredispconf() goes back to the former one;
 * nothing does so by itself.
 *
 * That protects a change only where a resolution was kept before.  On a
 * terminal that never kept one, and for the one that is kept already, nothing
 * waits, and going back means automatic: call qvapplydispconf() once, before
 * the first change, to keep what there is.
 *
 * params  a resolution ("1024x768"), a text that contains "auto", or a
 *         parameter string with "res", an index.  What is none of these counts
 *         as automatic and is stored as an empty index; a "res" that is no
 *         number counts as "0".  With a pair "force" as well, whatever its
 *         value, the resolution is kept at once; "force" goes with "res" only
 *         ("res=5&force=1"): "1920x1080&force=1" keeps an empty index.
 *
 * Returns 0; -1 for an empty text, after which the terminal restarts all the
 * same; and -1, with nothing done, on a virtual machine (one whose product name
 * contains "Virtual") and for null.
 *
 * Stores: tc_config_param_6_2, tc_config_param_7, with "force" also
 *         tc_config_param_6_1; /var/lib/ralo/res, /etc/X11/xorg.conf.
 * Runs: dmidecode, /var/lib/ralo/display.sh, systemctl.
 * Waits: lock, programs.
 * Read back with: qvgetdispconf(), qvisdispchanged().
 * Fails: told, -1; that nothing could be stored is not told.
 */
int qvsetdispconf(const char *params);

/*
 * 1 while a requested resolution waits to be kept or reverted, else 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives 0 too.
 */
int qvisdispchanged(void);

/*
 * Keeps the requested resolution.  The screen is not touched.  Where none was
 * requested, none is kept any more: it becomes automatic.  Always 0.
 *
 * Stores: tc_config_param_6_1, tc_config_param_7.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvisdispchanged().
 * Fails: not told.
 */
int qvapplydispconf(void);

/*
 * Goes back to the resolution that was kept last, on the screen too: it waits
 * for the terminal's display script.  Always 0.
 *
 * Stores: tc_config_param_6_2, tc_config_param_7; /var/lib/ralo/res,
 *         /etc/X11/xorg.conf.
 * Runs: /var/lib/ralo/display.sh.
 * Waits: lock, programs.
 * Read back with: qvgetdispconf(), qvisdispchanged().
 * Fails: not told.
 */
int qvrestoredispconf(void);

/*
 * What several screens show: {"displayMode": mode}, mode being "clone" (all the
 * same), "extendverticalscreen" or "extend" (one desktop over all).
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvdisplaymode(void);

/*
 * Sets it from "displayMode": "clone"; a text that contains
 * "extendverticalscreen"; any other text, also an empty one, means "extend".
 * Puts it into force with the resolution that was kept last, and waits for that.
 *
 * Always 0; without a "displayMode", and on a virtual machine, nothing is done.
 *
 * Stores: /etc/X11/clone, /home/root/hdmi, /etc/xdg/openbox/rc.xml,
 *         /var/lib/ralo/res, /etc/X11/xorg.conf.
 * Runs: dmidecode, /var/lib/ralo/display.sh.
 * Waits: programs.
 * Read back with: qvdisplaymode().
 * Fails: not told.
 */
int qvsetdisplaymode(const char *params);

/*
 * The display refresh setting, a JSON text that only the front-end understands,
 * as an object.  Null when none is stored, when it is no JSON, or when it has
 * 10,240 bytes or more.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvdisplayrefresh(void);

/*
 * Stores that text.  Returns 0 when the terminal's store was run, whatever came
 * of it; -1 for a text of more than some 76,000 bytes, -2 for null.
 *
 * Stores: number 87.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: qvdisplayrefresh().
 * Fails: told, -1 and -2; that the program stored nothing is not told.
 */
int qvsetdisplayrefresh(const char *text);

/*
 * The order of two screens: {"displayOrder": "Positive" or "Reverse"}.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvgetdisplayorder(void);

/*
 * Sets it from "displayOrder": a text that contains "Reverse", any other means
 * the usual order.  Without that pair the order stays.  Applies the display
 * settings in any case, and waits for that.  Always 0.
 *
 * Stores: /etc/X11/reverse.
 * Runs: /var/lib/ralo/display.sh.
 * Waits: programs.
 * Read back with: qvgetdisplayorder().
 * Fails: not told.
 */
int qvsetdisplayorder(const char *params);

/*
 * 1 if the machine has a VGA and an HDMI output (connected or not), which an
 * extended desktop takes; else -1.
 *
 * Stores: nothing.
 * Runs: xrandr, on the caller's DISPLAY.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; an X server that does not answer gives -1 too.
 */
int qvissupportextendscreen(void);

/*
 * Which side a vertical split belongs to: {"splitVerticallyMode": "hdmi", "vga"
 * or ""}.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvsplitverticallymode(void);

/*
 * The brightness of the first output in percent, as a text:
 * {"brightness": "80"}; "" when the X server does not tell it.  It may be one
 * less than what was set.
 *
 * Stores: nothing.
 * Runs: xrandr.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: told, by "".
 */
struct json_object *qvgetmonitor(void);

/*
 * Sets the brightness of all connected outputs from "brightness", a percentage.
 * Below 20 (and for a text that is no number) it is set to 20, above 100 to 100;
 * it is stored as it was given.  Always 0; without that pair nothing is done.
 *
 * Stores: tc_config_param_17.
 * Runs: xrandr.
 * Waits: lock, programs.
 * Read back with: qvgetmonitor().
 * Fails: not told.
 */
int qvsetmonitor(const char *params);

/*
 * The number of connected screens: 0, 1, or 2 for two and more.
 *
 * Stores: nothing.
 * Runs: xrandr, on the caller's DISPLAY.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; an X server that does not answer gives 0 too.
 */
int qvgetmonitornum(void);

/* ------------------------------------------ idle, user portal, demo mode -- */

/*
 * When the screens are switched off for want of input:
 * {"monitorPowerSave": "on" or another text for off,
 *  "monitorPowerSaveMins": minutes}.
 * "off" and "5" when nothing is stored; null when what is stored has fewer than
 * 9 characters.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "off" and "5" too.
 */
struct json_object *qvgetidle(void);

/*
 * Puts it into force and stores it, from these two pairs: "monitorPowerSave=on&
 * monitorPowerSaveMins=5".  For "on" without minutes nothing is put into force,
 * but the text is stored.  Minutes are not checked; the X server takes 1 to
 * QVTC_IDLE_MINUTES_MAX.
 *
 * Always 0; a text of fewer than 9 characters is ignored.
 *
 * Stores: com.valmora.thinclient.para_77.
 * Runs: xset, on the caller's DISPLAY.
 * Waits: lock, programs.
 * Read back with: qvgetidle(), for what is stored.
 * Fails: not told.
 */
int qvsetidle(const char *params);

/*
 * Whether the terminal starts with the user portal: {"useUserportal": "on" or
 * "off"}; "on" when nothing is stored.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "on" too.
 */
struct json_object *qvgetuserportal(void);

/*
 * Stores that from "useUserportal=on" or "useUserportal=off"; the name before
 * the "=" is not looked at.  Always 0; a text that is no such pair stores
 * nothing.
 *
 * Stores: tc_config_param_3.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvgetuserportal().
 * Fails: not told.
 */
int qvsetuserportal(const char *params);

/*
 * 1 in demo mode, else 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives 0 too.
 */
int qvdemomode(void);

/*
 * Switches demo mode on (for a value whose lowest byte is not 0) or off.
 * Always 1.
 *
 * Stores: tc_config_param_2.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvdemomode().
 * Fails: not told.
 */
int qvsetdemomode(int on);

/* ----------------------------------------------------------------- sound -- */

/*
 * The volumes, in percent, as the onboard sound card has them:
 * {"playVolume": "55", "micVolume": "40"}.  "0" also stands for a card that
 * tells no volume of that kind, or for none at all.
 *
 * Stores: nothing.
 * Runs: aplay, amixer.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; what cannot be read gives "0" too.
 */
struct json_object *qvgetvolume(void);

/*
 * Sets the volumes that params names, on the onboard card and on the last USB
 * card, switches them on, and stores them with the settings.
 *
 * params  "playVolume=PERCENT" (loudspeakers) and "micVolume=PERCENT"
 *         (microphone), either or both, 0 to 100.  What is no number counts
 *         as 0.  A value out of range sets nothing, and keeps a micVolume from
 *         being looked at when it is the playVolume's.
 *
 * Always 0, also when nothing was set, or when no card has such a control.
 * Setting the playback volume plays a chime, which the call does not wait for.
 *
 * Stores: tc_config_param_14_0, tc_config_param_14_1.
 * Runs: aplay, amixer.
 * Waits: lock, programs.
 * Read back with: qvgetvolume(), for the onboard card; nothing for a USB card.
 * Fails: not told.
 */
int qvsetvolume(const char *params);

/*
 * Whether ALSA lists an HDMI sound device: 1, else 0.  This is not whether
 * sound goes to it: that is decided by the file /home/root/enable_hdmi_audio.
 *
 * Stores: nothing.
 * Runs: aplay.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives 0 too.
 */
int qvishdmiaudioenable(void);

/*
 * Makes a sound card the terminal's default: writes /etc/asound.conf for it,
 * restarts PulseAudio, and makes a USB webcam's microphone PulseAudio's
 * default source, at full volume where its card has a number of one digit.  Of
 * the source's own number only the last digit counts: with ten and more sources
 * another one may become the default.  Ends all running RDP clients.
 *
 * card  the card's number in ALSA, as "aplay -l" shows it.  It is not checked:
 *       with a card that does not exist the terminal is silent.
 *
 * Always 0.
 *
 * Stores: /etc/asound.conf.
 * Runs: /usr/bin/pulseaudio, pacmd, amixer.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told.
 */
int set_sound_config(unsigned int card);

/* -------------------------------------------- wired and wireless network -- */

/*
 * Addressing.  The wired ports are eth0 (the main one) and eth1 (the extra
 * one), the wireless link is wlan0.  Their IPv4 configuration is an object of
 * six strings, always all present:
 * {"conf": mode, "ip", "mask", "gateway", "dns1", "dns2"}.  The mode is "1" for
 * a static address and "0" for DHCP; the others are dotted quads, at most 63
 * bytes long, "0.0.0.0" for what cannot be read.
 *
 * Setters take the same six names: "conf=1&ip=192.168.1.20&mask=255.255.255.0&
 * gateway=192.168.1.1&dns1=192.168.1.1".  "conf" must be there: without it
 * nothing is changed, and the log says so.  "0", or an "ip" of "0" or
 * "0.0.0.0", stands for DHCP, anything else for a static address.  Addresses
 * are not checked, and a call is the whole request: a static one needs ip, mask
 * and gateway, as each that is absent is written as 0.0.0.0, which takes the
 * terminal off the network.  So is a name server, for DHCP too: name both
 * ("dns1" and "dns2"); a text of fewer than six characters, such as "0", leaves
 * one out.
 *
 * The setters work on the files and programs of a system without NetworkManager
 * on that port.  Where NetworkManager manages it, it may undo the change.
 */

/*
 * The configuration of eth0: the mode as its file ifcfg-eth0 has it, the rest
 * as it is in use; "dns1" and "dns2" are the whole machine's, and empty where
 * /etc/resolv.conf names no server.  Null when there is no eth0.
 *
 * Stores: nothing.
 * Runs: ip, ifconfig.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; what cannot be read is "0.0.0.0".
 */
struct json_object *qvgetwiredconf(void);

/*
 * Stores the configuration of eth0, writes it to the system's files and
 * restarts the interface, which takes as long as ifdown and ifup do.  With
 * name servers alone ("conf=1" and no address) the interface's file stays.
 *
 * Returns the status of ifup, as system() gives it; -1, with nothing changed,
 * for a text of fewer than four characters or without "conf".
 *
 * Stores: networkconf-eth0; /etc/sysconfig/network-scripts/ifcfg-eth0,
 *         /etc/resolv.conf, /root/resolv.conf, for a static address also
 *         /etc/sysconfig/network and /tmp/abcd-eth0.
 * Runs: ifdown, ifup.
 * Waits: lock, long: a minute where no DHCP server answers.
 * Read back with: qvgetwiredconf().
 * Fails: told, by -1 and the status of ifup; what could not be written is not
 *        told.
 */
int qvsetwiredconf(const char *params);

/*
 * 1 when any of eth0, eth1 and, with Wi-Fi switched on, wlan0 is up and
 * running, else 0.
 *
 * Stores: nothing.
 * Runs: ifconfig, ip.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives 0 too.
 */
int qvgetwiredstatus(void);

/*
 * As qvgetwiredconf(), for eth1.  When there is no eth1, "conf" is "none" and
 * the other members are empty.
 *
 * Stores: nothing.
 * Runs: ip, ifconfig.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; what cannot be read is "0.0.0.0".
 */
struct json_object *qvgetexwiredconf(void);

/*
 * As qvsetwiredconf(), for eth1, but always 0.
 *
 * Stores: networkconf-eth1; /etc/sysconfig/network-scripts/ifcfg-eth1,
 *         /etc/resolv.conf, /root/resolv.conf, for a static address also
 *         /etc/sysconfig/network and /tmp/abcd-eth1.
 * Runs: ifdown, ifup.
 * Waits: lock, long: a minute where no DHCP server answers.
 * Read back with: qvgetexwiredconf().
 * Fails: not told.
 */
int qvsetexwiredconf(const char *params);

/*
 * Whether there is Wi-Fi hardware that is not disabled on this terminal:
 * {"status": "1"} or {"status": "0"}.
 *
 * Stores: nothing.
 * Runs: ip.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives "0" too.
 */
struct json_object *qvgetwifi(void);

/*
 * The Wi-Fi switch: {"useWifi": "on"} or {"useWifi": "off"}.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "off" too.
 */
struct json_object *qvgetwifionoff(void);

/*
 * Stores the switch and brings wlan0 up or down.
 *
 * params  "useWifi=on" or "useWifi=off"; stored as it stands.
 *
 * Always 0.
 *
 * Stores: tc_config_param_15.
 * Runs: ifconfig.
 * Waits: lock, programs.
 * Read back with: qvgetwifionoff().
 * Fails: not told.
 */
int qvsetwifionoff(const char *params);

/*
 * The networks in range: {"list": [network, ...]}, where each network has
 *   "ssid"         its name, words separated by one blank;
 *   "connected"    "on" for the network in use, else "off";
 *   "encryptType"  "open", "wpa", "wpa2", "802.1X" or "wep" (anything else);
 *   "sigStrength"  from "0" to "6".
 * A name of one word is listed once, one of several words once for each access
 * point.  Hidden networks are left out, and so is all behind the 51st.  Empty
 * when Wi-Fi is switched off or there is nothing to be asked.
 *
 * Asking changes things: with Wi-Fi switched on and no wpa_supplicant running,
 * every dhclient of the machine is ended, that of a wired port included,
 * wpa_supplicant is started, wlan0 brought up and asked an address for.
 *
 * Stores: nothing.
 * Runs: nmcli; without a running wpa_supplicant also /usr/sbin/wpa_supplicant,
 *       ifconfig, dhclient.
 * Waits: long, for the scan that nmcli may begin.
 * Read back with: nothing.
 * Fails: not told; a missing program gives an empty list too.
 */
struct json_object *qvgetwifilist(void);

/*
 * Begins to join a network and returns at once; qvgetwifilist() shows what has
 * come of it.  All former wireless profiles are removed, and the link returns
 * to DHCP.
 *
 * params  "ssid": the name as hexadecimal text, two digits a byte; "password",
 *         at most QVTC_WIFI_PASSWORD_MAX_BYTES bytes and without "&" and "=",
 *         which a password of the network may well have; for 802.1X also
 *         "username"; and "encryptType=open", "encryptType=802.1X" or another
 *         type, which is joined with a shared key.  The type is looked for in
 *         the whole text.
 *
 * Always 0.  Without an "ssid" nothing is changed, and the log says so.
 *
 * Stores: networkconf-wlan0; NetworkManager's profiles,
 *         /etc/sysconfig/network-scripts/ifcfg-NAME.
 * Runs: nmcli, with the password in its command line.
 * Waits: lock, programs.
 * Read back with: qvgetwifilist().
 * Fails: not told.
 */
int qvsetwifiauth(const char *params);

/*
 * The configuration of wlan0: the mode as it was stored, the rest as it is in
 * use.  Null when there is no Wi-Fi hardware, or it is disabled.
 *
 * Stores: nothing.
 * Runs: ip, ifconfig.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; what cannot be read is "0.0.0.0".
 */
struct json_object *qvgetwirelessconf(void);

/*
 * Stores the configuration of wlan0, writes it to the profile of a network and
 * restarts the link, which takes as long as that does.  Every dhclient of the
 * machine is ended.
 *
 * params  the six names above, and "ssid" as for qvsetwifiauth(): that of a
 *         network that was joined before.  Without it the profile of no
 *         network is written.
 *
 * Always 0.  For a text of fewer than four characters or without "conf"
 * nothing is changed, and the log says so.
 *
 * Stores: networkconf-wlan0; /etc/wpa_supplicant.conf,
 *         /etc/sysconfig/network-scripts/ifcfg-NAME.
 * Runs: nmcli, dhclient, systemctl.
 * Waits: lock, long: a minute where no DHCP server answers.
 * Read back with: qvgetwirelessconf().
 * Fails: not told.
 */
int qvsetwirelessconf(const char *params);

/*
 * What json-c makes of what qvsetdefaultroute() has stored: null for its own
 * texts, and when nothing is stored.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives null too.
 */
struct json_object *qvgetdefaultroute(void);

/*
 * Adds a default route through an interface, beside those that there are, when
 * it has none yet; its gateway is the one that the routing table names for it.
 * Stores the line of the route that was found, or the command that was run.
 *
 * params  "default=eth0", "default=eth1" or "default=wlan0"; without a name
 *         eth0 is meant.  A text of fewer than nine characters does nothing.
 *
 * Always 0, also when no route could be added.
 *
 * Stores: tc_config_param_16.
 * Runs: route, ip, ifconfig.
 * Waits: lock, long: route asks for the names of gateways, ten seconds where no
 *        name server answers.
 * Read back with: nothing; qvgetdefaultroute() gives null for what it stores.
 * Fails: not told.
 */
int qvsetdefaultroute(const char *params);

/* ------------------------------------------------------- time and device -- */

/*
 * What the terminal is, as an object of 19 texts: hostname, productName (the
 * same), productKey (the model code), hardCap and memCap (size classes, such as
 * "64GB"), cpuInfo, wiredMac and wirelessMac ("N/A" without the hardware),
 * updateDate, logoDate, osInfo, rdpVersion, spiceVersion, velopaneVersion,
 * vmwareViewVersion, citrixReceiverVersion, hdpVersion, hardwareVersion and
 * deviceType.
 *
 * osInfo, hardwareVersion and the six versions of clients are constants of this
 * library and say nothing of what is installed.  memCap has the classes 1, 2, 4
 * and 8 GB; a memory of more than 8 GB counts as 2.  The rest is read, and has a
 * default where it cannot be: an unknown processor is model "RX10", a missing
 * date of update or logo "20170801175612".
 *
 * Stores: nothing.
 * Runs: blockdev, ifconfig, ip.
 * Waits: programs, a dozen of them.
 * Read back with: nothing.
 * Fails: not told; what cannot be read has its default.
 */
struct json_object *qvgetsysinfo(void);

/*
 * Clock, zone and synchronisation, as an object of texts:
 *   systemTime      milliseconds since 1970 (not a form that the setter takes)
 *   useNTP          "on" or "off" as stored; "" when nothing was ever set
 *   ntpHost         the server, or ""
 *   region, city    the zone's two halves; "Etc" and "UTC" without any
 * Where a value of useNTP is stored, "off" included, asking also starts a
 * synchronisation in the background.
 *
 * Stores: nothing.
 * Runs: ntpdate-sync, in the background.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "" too.
 */
struct json_object *qvgetdatetime(void);

/*
 * Sets them.  A call is the whole request: what it leaves out is cleared, so a
 * call without region and city puts the terminal on UTC.
 *
 * params  useNTP      "on" to follow ntpHost, anything else for a time by hand;
 *                     "on" without a host is by hand too
 *         ntpHost     a name or an address
 *         systemTime  a time by hand, as date(1) takes it after -s
 *                     ("2026-12-31 23:59:00"), in the zone that is set
 *         region      the directory below /usr/share/zoneinfo/posix,
 *         city        and the file in it; without both it is Etc/UTC.  That
 *                     there is such a file is not checked: without it
 *                     /etc/localtime leads nowhere, and the clock shows UTC
 *
 * By hand, the hardware clock is set too, also without a systemTime.
 *
 * Always -1, whatever happened.
 *
 * Stores: tc_config_param_9; /etc/default/ntpdate, /etc/localtime,
 *         /etc/timezone.
 * Runs: hwclock and clock, or ntpdate-sync in the background.
 * Waits: lock, programs.
 * Read back with: qvgetdatetime().
 * Fails: not told.
 */
int qvsetdatetime(const char *params);

/*
 * Returns the terminal to its factory state and restarts it.  It forgets the
 * connections (but those with the ids 192 to 255), writes the settings of
 * factory_defaults.h, removes the manager password, names the host after the
 * device identity if there is one, lets both wired ports ask DHCP, forgets the
 * wireless networks, deletes the logs (all *.log of /root and /home/root) and
 * all *.txt of /root, sets the sound up anew and all screens to clone with
 * automatic resolution; on model RX16 it takes the sound off HDMI.
 *
 * It keeps the stored wired addressing, the device identity, the default route,
 * date and time, the host name where there is no identity, the numbered store,
 * the rotated logs (*.log.old) and /etc/x11vnc.pass.  Always 0; no step's
 * failure stops the later ones.
 *
 * Stores: tc_config_param_1, tc_config_param_2, tc_config_param_3,
 *         com.valmora.thinclient.para_77, tc_config_param_6_1,
 *         tc_config_param_6_2, tc_config_param_7, tc_config_param_8,
 *         tc_config_param_10, tc_config_param_12, tc_config_param_13,
 *         tc_config_param_14_0, tc_config_param_14_1, tc_config_param_15,
 *         networkconf-wlan0, tc_config_param_17, tc_config_param_18;
 *         /etc/hostname, ifcfg-eth0, ifcfg-eth1, /etc/asound.conf,
 *         /etc/pulse/default.pa and the files of qvsetdisplaymode().
 * Runs: /var/lib/ralo/display.sh, nmcli, aplay, amixer, pacmd,
 *       /usr/bin/pulseaudio, reboot.
 * Waits: lock, programs.
 * Read back with: nothing; the terminal restarts.
 * Fails: not told.
 */
int qvresetsysconf(void);

/* ------------------------------------ host name, password, update, power -- */

/*
 * The host name: the one that was chosen; else "TC" and the device identity;
 * else "ThinClient".
 *
 * out  at least QVTC_HOST_NAME_SIZE bytes; a longer name is cut at 127.
 *
 * Always 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "ThinClient" too.
 */
int qvgethostname(char *out);

/*
 * Chooses the host name for the next start: stores it and writes /etc/hostname.
 * The running system keeps its name.  An empty name changes nothing, nor does
 * one that echo(1) takes for an option ("-n"), which the log tells.  Nothing
 * else is checked: give a name by the rules of host names, at most 63 letters,
 * digits and inner hyphens.  Always 0.
 *
 * Stores: tc_config_param_12; /etc/hostname.
 * Runs: nothing.
 * Waits: lock, programs.
 * Read back with: qvgethostname().
 * Fails: not told.
 */
int qvsethostname(const char *name);

/*
 * The password of the front-end's manager screens: {"password": text}, in clear
 * text, empty when none is set.  Comparing it with what a person types is the
 * front-end's business.  Never null but for lack of memory.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "" too.
 */
struct json_object *qvgetmgrpwd(void);

/*
 * Stores the password from "password=TEXT" as it is given.  Mind that it
 * removes the password when the pair is absent, misspelt or empty.  It is kept
 * in clear text in the settings document; it cannot hold "&" or "=", and "%"
 * and "|" are read back as other characters.  Always 0.
 *
 * Stores: tc_config_param_10.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvgetmgrpwd().
 * Fails: not told.
 */
int qvsetmgrpwd(const char *params);

/*
 * Restarts the terminal.  Returns 0 at once, before it happens; that it does
 * not happen is not reported.
 *
 * Stores: nothing.
 * Runs: systemctl.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told.
 */
int qvreboot(void);

/*
 * Switches the terminal off.  Returns 0 at once, before it happens; that it
 * does not happen is not reported.
 *
 * Stores: nothing.
 * Runs: shutdown.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told.
 */
int qvshutdown(void);

/*
 * Repairs the network: writes a plain /etc/wpa_supplicant.conf, drops the
 * static gateway, asks DHCP for every interface's address and restarts the
 * networking service.  Always 0.
 *
 * Stores: /etc/wpa_supplicant.conf, /etc/sysconfig/network.
 * Runs: dhclient; /etc/init.d/networking in the background.
 * Waits: long, for dhclient, which takes a minute where no server answers.
 * Read back with: qvgetwiredconf(), qvgetwirelessconf().
 * Fails: not told.
 */
int qvdiagnsys(void);

/* -------------------------------------------------------- numbered store -- */

/*
 * The terminal keeps texts under small numbers: one program, qvplugin, owns
 * them, and the two functions below run it.  numbered-store.md, in the
 * package's documentation, has the numbers in use.
 */

/*
 * Reads the text under a number.
 *
 * key     0 to 2,147,483,647; a larger one reaches the program as a negative
 *         number.
 * output  gets the text and its NUL, and is untouched when there is none to be
 *         had.  May be null only if size is 0.
 * size    the buffer's bytes.  The text must be shorter; one of 10,240 bytes
 *         does not fit into 10,240.
 *
 * Returns 0; -2 when nothing is stored or the text is too long for the buffer;
 * -1 when what the program prints is no base64.  At most 102,400 bytes of its
 * output are looked at, that is 76,800 bytes of text.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: told, -1 and -2; a missing program gives -2.
 */
int qvreaddb(unsigned int key, char *output, unsigned int size);

/*
 * Stores a text under a number, in place of the one that is there.
 *
 * key    as for qvreaddb(); qvplugin stores nothing under a negative number.
 * value  any text of at most 76,782 bytes, the empty one too; null stores
 *        nothing.
 *
 * Returns 0 once the program was run: whether it stored the text, it does not
 * tell.  -2 for null, -1 for a longer text (which the log tells).
 *
 * Stores: the number key.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: qvreaddb().
 * Fails: told, -1 and -2; that the program stored nothing is not told.
 */
int qvwritedb(unsigned int key, const char *value);

/* ---------------------------------------- language, battery, vendor data -- */

/*
 * The interface language: {"language": "zh_CN"}.  A stored name that contains
 * zh_CN, ko_KR or en_US is given as just that, any other as it is stored (its
 * first 127 bytes), "" when none is.  Never null.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "" too.
 */
struct json_object *qvgetlanguage(void);

/*
 * Stores the language from "language=NAME" and copies its picture to the start
 * screen: the Chinese one when the name contains zh_CN, else the English one.
 * Without a language, or for null, nothing is changed.
 *
 * Returns 0, or -1 when the picture is locked by a setting
 * (com.valmora.thinclient.para_23): the language is stored, the picture stays.
 * 0 also hides a language that could not be stored and a picture that could not
 * be copied.
 *
 * Stores: tc_config_param_8; /usr/share/plymouth/themes/darwin/logo.png.
 * Runs: nothing.
 * Waits: lock, programs.
 * Read back with: qvgetlanguage().
 * Fails: told, -1 for a locked picture; the rest is not told.
 */
int qvsetlanguage(const char *params);

/*
 * The battery's charge in percent, or -1 without a battery.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: told, -1.
 */
int qvgetbattery(void);

/*
 * Whether this is a terminal of another brand: what the terminal's vendor has
 * left under 23 in the numbered store, at most 1,023 bytes of JSON in which
 * single quotes are read as double ones.  Null when nothing is stored, or no
 * JSON.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvisoem(void);

/*
 * What the vendor has left about the terminal under 50: at most 10,239 bytes of
 * JSON, as it stands there.  Null when nothing is stored, or no JSON.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvoeminfo(void);

/*
 * The vendor's data, under 56: base64 of JSON with percent escapes, in which
 * single quotes are read as double ones; a text that is no base64 is taken as
 * it stands.  Null when nothing is stored, or no JSON.  A text of more than 500
 * characters is kept until the process ends: a change is not seen before.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvoemdata(void);

/*
 * The vendor's list of features, under 42, which counts only if the text has
 * more than 100 characters: JSON, as it stands there.  Null when nothing is
 * stored, or no JSON.  It is kept until the process ends: a change is not seen
 * before.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvoemfeature(void);

/* ------------------------------------------ horizon, citrix and printing -- */

/*
 * Sets whether the Horizon client shows its menu bar.
 *
 * on  its low byte decides: 0 is off, anything else is on (so 256 is off).
 *
 * Returns -1 when the settings document could not be read, is no such document
 * or stayed locked, else 0.
 *
 * Stores: tc_config_param_13.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: qvgetvmwaretoolbar().
 * Fails: told, -1; that the document could not be saved is in the log only.
 */
int qvsetvmwaretoolbar(int on);

/*
 * Whether it does: {"toolbar": "on"} or {"toolbar": "off"}.  "on" when nothing
 * is stored, although a launch then hides the bar: store one of the two.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: not told; a document that cannot be read gives "on" too.
 */
struct json_object *qvgetvmwaretoolbar(void);

/*
 * Sets whether a camera is redirected into sessions, by the low byte of on.
 * Returns what qvwritedb() returns.
 *
 * Stores: number 90.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: qvreaddb(), as the text "hdxcamera=on" or "hdxcamera=off".
 * Fails: not told.
 */
int qvsethdxcamera(int on);

/*
 * What is stored about the camera, only where another program has stored JSON
 * there: what qvsethdxcamera() stores is none, and reads back as null.
 *
 * Stores: nothing.
 * Runs: qvplugin.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told; a missing program gives null too.
 */
struct json_object *qvgethdxcamera(void);

/*
 * A switch of a client that terminals no longer ship.  Always 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
int qvsetcitrixtoolbar(int on);

/*
 * A switch of a client that terminals no longer ship.  Always null.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvgetcitrixtoolbar(void);

/*
 * A switch of a client that terminals no longer ship.  Always 0.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
int qvsetcitrixprinter(int on);

/*
 * A switch of a client that terminals no longer ship.  Always null.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: none.
 */
struct json_object *qvgetcitrixprinter(void);

/*
 * Shows the printer dialog on the terminal's screen and waits until it is
 * closed.  Returns what system() returns.
 *
 * Stores: nothing.
 * Runs: system-config-printer.
 * Waits: long, until a person has closed the dialog.
 * Read back with: nothing.
 * Fails: told, by the wait status.
 */
int qvcentos_printer(void);

#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
