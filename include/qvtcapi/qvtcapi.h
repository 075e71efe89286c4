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

/*
 * To be called once, before anything else: sets the sound up where it goes to
 * HDMI, rotates logs that have outgrown their limits, applies the stored power
 * saving and brightness, starts the server of the remote view (x11vnc) if the
 * settings ask for one and none runs, and refreshes the front-end's pictures.
 * Everything else works without it.  Always 0; no step's failure stops the
 * later ones.
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
 */
struct json_object *qvgetdisplist(void);

/*
 * The requested resolution: {"res": index}; "10" when none is stored.
 */
struct json_object *qvgetdispconf(void);

/*
 * Requests a resolution, puts it into force and restarts the terminal.  Until
 * qvapplydispconf() keeps it, qvrestoredispconf() goes back to the former one;
 * nothing does so by itself.
 *
 * params  a resolution ("1024x768"), a text that contains "auto", or a
 *         parameter string with "res", an index.  What is none of these counts
 *         as automatic and is stored as an empty index; a "res" that is no
 *         number counts as "0".  With a pair "force" as well, whatever its
 *         value, the resolution is kept at once.
 *
 * Returns 0; -1 for an empty text, after which the terminal restarts all the
 * same; and -1, with nothing done, on a virtual machine (one whose product name
 * contains "Virtual").
 */
int qvsetdispconf(const char *params);

/* 1 while a requested resolution waits to be kept or reverted, else 0. */
int qvisdispchanged(void);

/* Keeps the requested resolution.  The screen is not touched.  Always 0. */
int qvapplydispconf(void);

/*
 * Goes back to the resolution that was kept last, on the screen too: it waits
 * for the terminal's display script.  Always 0.
 */
int qvrestoredispconf(void);

/*
 * What several screens show: {"displayMode": mode}, mode being "clone" (all the
 * same), "extendverticalscreen" or "extend" (one desktop over all).
 */
struct json_object *qvdisplaymode(void);

/*
 * Sets it from "displayMode": "clone"; a text that contains
 * "extendverticalscreen"; any other text, also an empty one, means "extend".
 * Puts it into force with the resolution that was kept last, and waits for that.
 *
 * Always 0; without a "displayMode", and on a virtual machine, nothing is done.
 */
int qvsetdisplaymode(const char *params);

/*
 * The display refresh setting, a JSON text that only the front-end understands,
 * as an object.  Null when none is stored, when it is no JSON, or when it has
 * 10,240 bytes or more.
 */
struct json_object *qvdisplayrefresh(void);

/*
 * Stores that text.  Returns 0 when the terminal's store was run, whatever came
 * of it; -1 for a text of more than some 76,000 bytes, -2 for null.
 */
int qvsetdisplayrefresh(const char *text);

/* The order of two screens: {"displayOrder": "Positive" or "Reverse"}. */
struct json_object *qvgetdisplayorder(void);

/*
 * Sets it from "displayOrder": a text that contains "Reverse", any other means
 * the usual order.  Without that pair the order stays.  Applies the display
 * settings in any case, and waits for that.  Always 0.
 */
int qvsetdisplayorder(const char *params);

/*
 * 1 if the machine has a VGA and an HDMI output (connected or not), which an
 * extended desktop takes; else -1.
 */
int qvissupportextendscreen(void);

/*
 * Which side a vertical split belongs to: {"splitVerticallyMode": "hdmi", "vga"
 * or ""}.
 */
struct json_object *qvsplitverticallymode(void);

/*
 * The brightness of the first output in percent, as a text:
 * {"brightness": "80"}; "" when the X server does not tell it.
 */
struct json_object *qvgetmonitor(void);

/*
 * Sets the brightness of all connected outputs from "brightness", a percentage.
 * Below 20 (and for a text that is no number) it is set to 20, above 100 to 100;
 * it is stored as it was given.  Always 0; without that pair nothing is done.
 */
int qvsetmonitor(const char *params);

/* The number of connected screens: 0, 1, or 2 for two and more. */
int qvgetmonitornum(void);

/* ------------------------------------------ idle, user portal, demo mode -- */

/*
 * When the screens are switched off for want of input:
 * {"monitorPowerSave": "on" or another text for off,
 *  "monitorPowerSaveMins": minutes}.
 * "off" and "5" when nothing is stored; null when what is stored has fewer than
 * 9 characters.
 */
struct json_object *qvgetidle(void);

/*
 * Puts it into force and stores it, from these two pairs.  For "on" without
 * minutes nothing is put into force, but the text is stored.
 *
 * Always 0; a text of fewer than 9 characters is ignored.
 */
int qvsetidle(const char *params);

/*
 * Whether the terminal starts with the user portal: {"useUserportal": "on" or
 * "off"}; "on" when nothing is stored.
 */
struct json_object *qvgetuserportal(void);

/*
 * Stores that from "useUserportal=on" or "useUserportal=off"; the name before
 * the "=" is not looked at.  Always 0; a text that is no such pair stores
 * nothing.
 */
int qvsetuserportal(const char *params);

/* 1 in demo mode, else 0. */
int qvdemomode(void);

/*
 * Switches demo mode on (for a value whose lowest byte is not 0) or off.
 * Always 1.
 */
int qvsetdemomode(int on);

/* ----------------------------------------------------------------- sound -- */

/*
 * The volumes, in percent, as the onboard sound card has them:
 * {"playVolume": "55", "micVolume": "40"}.  "0" also stands for a card that
 * tells no volume of that kind, or for none at all.
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
 */
int qvsetvolume(const char *params);

/*
 * Whether ALSA lists an HDMI sound device: 1, else 0.  This is not whether
 * sound goes to it: that is decided by the file /home/root/enable_hdmi_audio.
 */
int qvishdmiaudioenable(void);

/*
 * Makes a sound card the terminal's default: writes /etc/asound.conf for it,
 * restarts PulseAudio, and makes a USB webcam's microphone PulseAudio's
 * default source, at full volume.  Ends all running RDP clients.
 *
 * card  the card's number in ALSA, as "aplay -l" shows it.  It is not checked:
 *       with a card that does not exist the terminal is silent.
 *
 * Always 0.
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
 * are not checked.  A name server of fewer than six characters is left out,
 * and one that is absent is written as 0.0.0.0.
 */

/*
 * The configuration in use of eth0; "dns1" and "dns2" are empty where
 * /etc/resolv.conf names no server.  Null when there is no eth0.
 */
struct json_object *qvgetwiredconf(void);

/*
 * Stores the configuration of eth0, writes it to the system's files and
 * restarts the interface, which takes as long as ifdown and ifup do.  With
 * name servers alone ("conf=1" and no address) the interface's file stays.
 *
 * Returns the status of ifup, as system() gives it; -1, with nothing changed,
 * for a text of fewer than four characters or without "conf".
 */
int qvsetwiredconf(const char *params);

/*
 * 1 when any of eth0, eth1 and, with Wi-Fi switched on, wlan0 is up and
 * running, else 0.
 */
int qvgetwiredstatus(void);

/*
 * As qvgetwiredconf(), for eth1.  When there is no eth1, "conf" is "none" and
 * the other members are empty.
 */
struct json_object *qvgetexwiredconf(void);

/* As qvsetwiredconf(), for eth1, but always 0. */
int qvsetexwiredconf(const char *params);

/*
 * Whether there is Wi-Fi hardware that is not disabled on this terminal:
 * {"status": "1"} or {"status": "0"}.
 */
struct json_object *qvgetwifi(void);

/* The Wi-Fi switch: {"useWifi": "on"} or {"useWifi": "off"}. */
struct json_object *qvgetwifionoff(void);

/*
 * Stores the switch and brings wlan0 up or down.
 *
 * params  "useWifi=on" or "useWifi=off"; stored as it stands.
 *
 * Always 0.
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
 */
struct json_object *qvgetwifilist(void);

/*
 * Begins to join a network and returns at once; qvgetwifilist() shows what has
 * come of it.  All former wireless profiles are removed, and the link returns
 * to DHCP.
 *
 * params  "ssid": the name as hexadecimal text, two digits a byte; "password",
 *         at most 127 bytes; for 802.1X also "username"; and
 *         "encryptType=open", "encryptType=802.1X" or another type, which is
 *         joined with a shared key.
 *
 * Always 0.  Without an "ssid" nothing is changed, and the log says so.
 */
int qvsetwifiauth(const char *params);

/*
 * The configuration of wlan0: the mode as it was stored, the rest as it is in
 * use.  Null when there is no Wi-Fi hardware, or it is disabled.
 */
struct json_object *qvgetwirelessconf(void);

/*
 * Stores the configuration of wlan0, writes it to the profile of a network and
 * restarts the link, which takes as long as that does.
 *
 * params  the six names above, and "ssid" as for qvsetwifiauth().
 *
 * Always 0.  For a text of fewer than four characters or without "conf"
 * nothing is changed, and the log says so.
 */
int qvsetwirelessconf(const char *params);

/*
 * What json-c makes of what qvsetdefaultroute() has stored: null for its own
 * texts, and when nothing is stored.
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
 */
int qvsetdefaultroute(const char *params);

/* ------------------------------------------------------- time and device -- */

/*
 * What the terminal is, as an object of 19 texts: hostname, productName (the
 * same), productKey (the model code), hardCap and memCap (size classes, such as
 * "64GB"), cpuInfo, wiredMac and wirelessMac ("N/A" without the hardware),
 * updateDate, logoDate, osInfo, rdpVersion, spiceVersion, velopaneVersion,
 * vmwareViewVersion, citrixReceiverVersion, hdpVersion, hardwareVersion and
 * deviceType.  What cannot be read has a default.
 */
struct json_object *qvgetsysinfo(void);

/*
 * Clock, zone and synchronisation, as an object of texts:
 *   systemTime      milliseconds since 1970
 *   useNTP          "on" or "off" as stored; "" when nothing was ever set
 *   ntpHost         the server, or ""
 *   region, city    the zone's two halves; "Etc" and "UTC" without any
 * Where a value of useNTP is stored, "off" included, asking also starts a
 * synchronisation in the background.
 */
struct json_object *qvgetdatetime(void);

/*
 * Sets them.
 *
 * params  useNTP      "on" to follow ntpHost, anything else for a time by hand
 *         ntpHost     a name or an address
 *         systemTime  a time by hand, as date(1) takes it after -s
 *         region      the directory below /usr/share/zoneinfo/posix,
 *         city        and the file in it; without both it is Etc/UTC
 *
 * Always -1, whatever happened.
 */
int qvsetdatetime(const char *params);
/*
 * Returns the terminal to its factory state and restarts it.  It forgets the
 * connections (but those with the ids 192 to 255), writes the settings of
 * factory_defaults.h, removes the manager password, names the host after the
 * device identity if there is one, lets both wired ports ask DHCP, forgets the
 * wireless networks, deletes logs, sets sound and screens up anew.  It keeps
 * the stored wired addressing, the device identity, the default route and date
 * and time.  Always 0; no step's failure stops the later ones.
 */
int qvresetsysconf(void);

/* ------------------------------------ host name, password, update, power -- */

/*
 * The host name: the one that was chosen; else "TC" and the device identity;
 * else "ThinClient".
 *
 * out  at least 128 bytes; a longer name is cut at 127.
 *
 * Always 0.
 */
int qvgethostname(char *out);

/*
 * Chooses the host name for the next start: stores it and writes /etc/hostname.
 * The running system keeps its name.  An empty name changes nothing.  Nothing
 * is checked: give a name by the rules of host names.  Always 0.
 */
int qvsethostname(const char *name);

/*
 * The password of the front-end's manager screens: {"password": text}, in clear
 * text, empty when none is set.  Comparing it with what a person types is the
 * front-end's business.  Never null but for lack of memory.
 */
struct json_object *qvgetmgrpwd(void);

/*
 * Stores the password from "password=TEXT" as it is given, or removes it when
 * the pair is absent or empty.  It is kept in clear text in the settings
 * document.  Always 0; the log says when the document could not be written.
 */
int qvsetmgrpwd(const char *params);

/*
 * Restarts the terminal, or switches it off.  Returns 0 at once, before it
 * happens; that it does not happen is not reported.
 */
int qvreboot(void);
int qvshutdown(void);

/*
 * Repairs the network: writes a plain /etc/wpa_supplicant.conf, drops the
 * static gateway, asks DHCP for every interface's address and restarts the
 * networking service.  Waits for dhclient, which takes a minute where no
 * server answers.  Always 0.
 */
int qvdiagnsys(void);
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

/*
 * Whether the Horizon client shows its menu bar.
 *
 * on  its low byte decides: 0 is off, anything else is on (so 256 is off).
 *
 * The setter returns -1 when the settings document cannot take the value, else
 * 0.  The getter gives {"toolbar": "on"} or {"toolbar": "off"}.
 */
int qvsetvmwaretoolbar(int on);
struct json_object *qvgetvmwaretoolbar(void);

/*
 * Whether a camera is redirected into sessions; kept in the numbered store
 * under 90.  The setter returns what qvwritedb() returns.  The getter gives
 * what is stored only where another program has stored JSON there: what the
 * setter stores is none, and reads back as null.
 */
int qvsethdxcamera(int on);
struct json_object *qvgethdxcamera(void);

/*
 * Switches of a client that terminals no longer ship.  The setters give 0 and
 * the getters null; none touches anything.
 */
int qvsetcitrixtoolbar(int on);
struct json_object *qvgetcitrixtoolbar(void);
int qvsetcitrixprinter(int on);
struct json_object *qvgetcitrixprinter(void);

/*
 * Shows the printer dialog on the terminal's screen and waits until it is
 * closed.  Returns what system() returns.
 */
int qvcentos_printer(void);
#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
