#include "audio/sound_config.hpp"

#include <string_view>

#include "audio/microphone.hpp"
#include "core/line_file.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/text.hpp"

namespace qvtc::audio {

namespace {

// Where the card's number stands.
constexpr std::string_view card_place = "<card>";

// Deliberate: the default device is defined twice. ALSA keeps the later one; both
// stay in the file.
constexpr const char* line_table[] = {
    "#defaults.pcm.rate_converter \"samplerate_linear\"",
    "",
    "",
    "pcm.!default {",
    "\ttype plug",
    "\tslave.pcm \"dmixer\"",
    "}",
    "",
    "",
    "pcm.dsp0 {",
    "\ttype plug",
    "\tslave.pcm \"dmixer\"",
    "}",
    "",
    "",
    "pcm.dmixer {",
    "\ttype dmix",
    "\tipc_key 1024",
    "\tslave {",
    "\t\tpcm \"hw:<card>,0\"",
    "\t\tperiod_time 0",
    "\t\tperiod_size 1024",
    "\t\tbuffer_size 8192",
    "\t\trate 48000",
    "\t\tchannels 2",
    "\t}",
    "}",
    "",
    "",
    "pcm.dsnooper {",
    "\ttype dsnoop",
    "\tipc_key 1098",
    "\tslave {",
    "\t\tpcm \"hw:<card>,0\"",
    "\t\trate 48000",
    "\t\tperiod_time 0",
    "\t\tperiod_size 1024",
    "\t\tbuffer_size 4096",
    "\t}",
    "}",
    "",
    "",
    "pcm.duplexasym {",
    "\ttype asym",
    "\tplayback.pcm \"dmixer\"",
    "\tcapture.pcm \"dsnooper\"",
    "}",
    "",
    "",
    "pcm.duplex {",
    "\ttype plug",
    "\tslave.pcm \"duplexasym\"",
    "}",
    "",
    "",
    "pcm.!default {",
    "\ttype plug",
    "\tslave.pcm \"duplexasym\"",
    "}",
    "",
    "",
    "ctl.duplex {",
    "\ttype hw",
    "\tcard <card>",
    "}",
    "",
    "",
};

} // namespace

std::vector<std::string> asound_conf_lines(unsigned card) {
    const std::string number = std::to_string(card);
    std::vector<std::string> lines;
    lines.reserve(std::size(line_table));
    for (const char* const line : line_table)
        lines.push_back(replace_all(line, card_place, number));
    return lines;
}

void configure_card(unsigned card) {
    os().run("killall xfreerdp  >/dev/null 2>&1");
    os().run("killall pulseaudio >/dev/null 2>&1");
    os().run("killall pulseaudio >/dev/null 2>&1");
    // With no new configuration to put in its place, the former one stays.
    if (write_lines(paths::asound_conf_draft, asound_conf_lines(card)))
        os().run("rm -rf /etc/asound.conf;mv /etc/asound.conf.bak /etc/asound.conf");
    os().run("/usr/bin/pulseaudio --start");
    prefer_webcam_microphone();
}

} // namespace qvtc::audio
