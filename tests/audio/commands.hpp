#pragma once

#include <string>
#include <vector>

/// The command texts of the sound, as a terminal's shell gets them.
namespace qvtc::test {

using Texts = std::vector<std::string>;

inline const std::string find_onboard_card =
    "aplay -l|grep card|grep -v USB|grep -v HDMI|awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}";
inline const std::string find_first_usb_card =
    "aplay -l|grep card|grep USB|awk 'NR==1'|awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}";
inline const std::string look_for_usb = "aplay -l|grep USB";
inline const std::string find_last_usb_card =
    "aplay -l|grep USB|awk 'END{print}'|awk -F':' {print'$1'}|awk -F' ' {print'$2'}";
inline const std::string look_for_hdmi = "aplay -l |grep HDMI";
inline const std::string list_sources = "pacmd list-sources";
inline const std::string chime = "aplay /var/lib/ralo/chord.wav >/dev/null 2>&1 &";

inline const Texts edit_default_pa = {
    R"(sed -i "s/^#load-module module-alsa-sink/load-module module-alsa-sink/" /etc/pulse/default.pa)",
    R"(sed -i "s/^#load-module module-alsa-source/load-module module-alsa-source/" /etc/pulse/default.pa)",
    R"(sed -i "/load-module module-alsa-sink/ s/\(load-module module-alsa-sink\).*/\1 /" /etc/pulse/default.pa)"};

/// A card becomes the sound card, where PulseAudio tells too little of its sources.
inline const Texts configure_a_card = {
    "killall xfreerdp  >/dev/null 2>&1",
    "killall pulseaudio >/dev/null 2>&1",
    "killall pulseaudio >/dev/null 2>&1",
    "rm -rf /etc/asound.conf;mv /etc/asound.conf.bak /etc/asound.conf",
    "/usr/bin/pulseaudio --start",
    list_sources};

inline std::string list_controls(const std::string& card) { return "amixer -c " + card; }

inline std::string read_volume(const std::string& card, const std::string& control) {
    return "amixer -c " + card + " sget '" + control +
           "'|grep '[o[nf]*]'|grep -o '[[0-9]*%]'|grep -o '[0-9]*'|awk 'NR==1'";
}

inline Texts write_volume(const std::string& card, const std::string& control,
                          const std::string& percent) {
    return {"amixer -c " + card + " sset \"" + control + "\" unmute >/dev/null 2>&1",
            "amixer -c " + card + " set \"" + control + "\" " + percent + "% >/dev/null 2>&1"};
}

/// These commands one after the other.
inline Texts joined(std::initializer_list<Texts> parts) {
    Texts all;
    for (const Texts& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// The same commands as ScriptedOs notes them: those that are captured, with the bytes that are
/// looked at, and those that are only run.
inline std::string captured(unsigned limit, const std::string& text) {
    return "capture " + std::to_string(limit) + " " + text;
}

inline Texts run(const Texts& texts) {
    Texts noted;
    for (const std::string& text : texts) noted.push_back("run " + text);
    return noted;
}

} // namespace qvtc::test
