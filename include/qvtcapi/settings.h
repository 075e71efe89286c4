/*
 * settings.h - single values of the settings document of libqvtcapi.
 *
 * For programs that show or keep what is stored where qvtcapi.h has no function
 * for it.  A value that has a function there is changed by that function, which
 * also makes the terminal follow it.  The conventions are those of qvtcapi.h.
 */
#ifndef QVTCAPI_SETTINGS_H
#define QVTCAPI_SETTINGS_H

#if defined(__GNUC__)
#pragma GCC visibility push(default)
#endif
#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies the value of a key to output, which must have room for the longest
 * value that can be stored there: the size of the document is always enough.
 *
 * item  an item of the document; the terminal's own settings are in
 *       "configItem"
 * key   a key in that item, such as "tc_config_param_8"
 *
 * Returns 0, or -1 when no value or an empty one is stored; output is then
 * left as it was.
 *
 * Stores: nothing.
 * Runs: nothing.
 * Waits: none.
 * Read back with: nothing.
 * Fails: told, -1; a document that cannot be read looks like one without the
 *   value.
 */
int xmlread(const char *item, const char *key, char *output);

/*
 * Stores a value under a key, and creates document, item and key where they are
 * missing.
 *
 * value  is changed in place to its stored form: "&" becomes "%" and "\" "|".
 *
 * Returns 0, also when the document could not be saved (the log then says
 * why), or -1 when it is unusable.
 *
 * Stores: the value, under the key that is given.
 * Runs: nothing.
 * Waits: lock.
 * Read back with: xmlread().
 * Fails: told, -1: nothing is stored; a disk that did not take it is not told.
 */
int xmlwrite(const char *item, const char *key, char *value);

#ifdef __cplusplus
}
#endif
#if defined(__GNUC__)
#pragma GCC visibility pop
#endif

#endif
