/*
 * update.h - the software update of libqvtcapi.
 *
 * Apart from qvtcapi.h, as these names are common words: a program that has a
 * function of its own under one of them does without this header, and then
 * cannot call the library's.  What qvtcapi.h says before its first function
 * holds here too.
 */
#ifndef QVTCAPI_UPDATE_H
#define QVTCAPI_UPDATE_H

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif
#ifdef __cplusplus
extern "C" {
#endif

/*
 * Fetches the update package into /tmp/nfs, in place of a former one, and waits
 * for it.
 *
 * url  as wget takes it; it must name a file called update.qvtc.
 *
 * Returns 0 when /tmp/nfs/update.qvtc is there afterwards, else -1; the log
 * says why.  0 does not mean a whole package: a transfer that broke off leaves
 * its beginning.  Nothing is verified, and nothing unpacks the package: compare
 * its size and its signature, and put qvupdate.sh into /tmp/nfs, before
 * doupdate() runs that script as root.  A script left there by an earlier
 * package, or by another user, is run just the same.
 *
 * Stores: /tmp/nfs/update.qvtc.
 * Runs: wget.
 * Waits: long: wget tries again, up to 20 times.
 * Read back with: nothing.
 * Fails: told, -1; part of a package is not told.
 */
int download(const char *url);

/*
 * Runs /tmp/nfs/qvupdate.sh and waits for it.  What it has come to is not told,
 * nor that there is none.
 *
 * Stores: nothing.
 * Runs: /tmp/nfs/qvupdate.sh.
 * Waits: long, until the script has ended.
 * Read back with: nothing.
 * Fails: not told.
 */
void doupdate(void);

/*
 * 1 while the process list has two lines with "qvupdate.sh" or more, else 0.
 *
 * So it is 1 while update() or doupdate() runs the script through a shell that
 * stays beside it; a bash that becomes its last command leaves one line, and
 * the answer is 0 although the script runs.  It is 0, too, for a script that
 * another program started directly.  To know whether an update runs, look for
 * the script's process, or remember that update() has not returned.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: programs.
 * Read back with: nothing.
 * Fails: not told.
 */
int updating(void);

/*
 * As doupdate(), and also waits for what the script may have left running under
 * its own name, as updating() sees it, asking once a second.  Always 0.
 *
 * Stores: nothing.
 * Runs: /tmp/nfs/qvupdate.sh.
 * Waits: long, until the script has ended.
 * Read back with: nothing.
 * Fails: not told.
 */
int update(void);

#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
