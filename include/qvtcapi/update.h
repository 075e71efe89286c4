/*
 * update.h - the software update of libqvtcapi.
 *
 * Apart from qvtcapi.h, as these names are common words: a program that has a
 * function of its own under one of them does without this header, and then
 * cannot call the library's.  The conventions are those of qvtcapi.h.
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
 * says why.
 */
int download(const char *url);

/*
 * Runs /tmp/nfs/qvupdate.sh, which the package provides, and waits for it.
 * What it has come to is not told.
 */
void doupdate(void);

/* 1 while that script runs, else 0. */
int updating(void);

/*
 * As doupdate(), and also waits for what the script may have left running under
 * its own name, asking once a second.  Always 0.
 */
int update(void);

#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
