/*
 * factory_defaults.h - what a factory reset writes into the settings.
 *
 * The one table of them, for the library itself and for programs that show a
 * person what a reset will do.  Plain C data; nothing is linked.
 */
#ifndef QVTCAPI_FACTORY_DEFAULTS_H
#define QVTCAPI_FACTORY_DEFAULTS_H

struct qvtc_factory_default {
    const char *key;     /* under the item configItem */
    const char *value;   /* as it is stored: "%" stands for "&" */
    const char *meaning; /* for a person */
};

/* In the order in which they are written. */
static const struct qvtc_factory_default qvtc_factory_defaults[] = {
    {"tc_config_param_1", "3", "seconds before an automatic connection"},
    {"tc_config_param_2", "0", "demo mode"},
    {"tc_config_param_3", "on", "user portal"},
    {"com.valmora.thinclient.para_77", "monitorPowerSave=off%monitorPowerSaveMins=5",
     "monitor power saving"},
    {"tc_config_param_6_1", "10", "applied resolution (10 is automatic)"},
    {"tc_config_param_6_2", "10", "requested resolution (10 is automatic)"},
    {"tc_config_param_7", "0", "a resolution waits to be kept"},
    {"tc_config_param_8", "en_US", "language"},
    {"tc_config_param_13", "off", "menu bar of the Horizon client"},
    {"tc_config_param_14_0", "100", "playback volume in percent"},
    {"tc_config_param_14_1", "100", "capture volume in percent"},
    {"tc_config_param_15", "off", "Wi-Fi"},
    {"networkconf-wlan0", "0", "wireless addressing (0 is DHCP)"},
    {"tc_config_param_17", "100", "brightness in percent"},
    {"tc_config_param_18", "{'vnc':'off','password':''}", "remote view"},
};

enum { QVTC_FACTORY_DEFAULTS = sizeof qvtc_factory_defaults / sizeof qvtc_factory_defaults[0] };

#endif
