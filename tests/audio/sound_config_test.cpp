#include "audio/sound_config.hpp"

#include "audio/sound_terminal.hpp"
#include "support/scripted_os.hpp"

#include <alsa/asoundlib.h>
#include <gtest/gtest.h>

namespace qvtc::audio {

namespace {

using test::read_file;
using test::Texts;

class SoundConfig : public test::SoundTerminal {};

/// The text at a place of ALSA's whole configuration, the system's own files included.
std::string setting_of_alsa(const char* place) {
    snd_config_t* node = nullptr;
    char* text = nullptr;
    if (snd_config_search(snd_config, place, &node) != 0) return "(nothing)";
    if (snd_config_get_ascii(node, &text) != 0) return "(no text)";
    std::string result = text;
    std::free(text);
    return result;
}

} // namespace

TEST_F(SoundConfig, IsWrittenToTheByte) {
    for (const unsigned card : {0U, 1U, 12U}) {
        configure_card(card);
        test::expect_golden("audio/asound_" + std::to_string(card) + ".conf",
                            read_file("/etc/asound.conf"));
        EXPECT_FALSE(test::file_exists("/etc/asound.conf.bak"));
    }
}

TEST_F(SoundConfig, NamesTheCardInThreePlaces) {
    for (const unsigned card : {0U, 1U, 31U, 4294967295U}) {
        const std::string number = std::to_string(card);
        Texts naming;
        for (const std::string& line : asound_conf_lines(card)) {
            if (line.find(number + ",0\"") != std::string::npos || line.starts_with("\tcard"))
                naming.push_back(line);
        }
        EXPECT_EQ(naming, (Texts{"\t\tpcm \"hw:" + number + ",0\"",
                                 "\t\tpcm \"hw:" + number + ",0\"", "\tcard " + number}));
    }
}

TEST_F(SoundConfig, DeliberatelyDefinesTheDefaultTwice) {
    const Texts lines = asound_conf_lines(0);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "pcm.!default {"), 2);
}

TEST_F(SoundConfig, IsAcceptedByAlsa) {
    for (const unsigned card : {0U, 1U, 12U}) {
        configure_card(card);
        const std::string number = std::to_string(card);
        ASSERT_EQ(snd_config_update_free_global(), 0);
        ASSERT_GE(snd_config_update(), 0);
        const std::pair<const char*, std::string> settings[] = {
            {"pcm.default.type", "plug"},
            {"pcm.default.slave.pcm", "duplexasym"},
            {"pcm.dsp0.slave.pcm", "dmixer"},
            {"pcm.dmixer.type", "dmix"},
            {"pcm.dmixer.ipc_key", "1024"},
            {"pcm.dmixer.slave.pcm", "hw:" + number + ",0"},
            {"pcm.dmixer.slave.period_time", "0"},
            {"pcm.dmixer.slave.period_size", "1024"},
            {"pcm.dmixer.slave.buffer_size", "8192"},
            {"pcm.dmixer.slave.rate", "48000"},
            {"pcm.dmixer.slave.channels", "2"},
            {"pcm.dsnooper.type", "dsnoop"},
            {"pcm.dsnooper.ipc_key", "1098"},
            {"pcm.dsnooper.slave.pcm", "hw:" + number + ",0"},
            {"pcm.dsnooper.slave.buffer_size", "4096"},
            {"pcm.dsnooper.slave.rate", "48000"},
            {"pcm.duplexasym.type", "asym"},
            {"pcm.duplexasym.playback.pcm", "dmixer"},
            {"pcm.duplexasym.capture.pcm", "dsnooper"},
            {"pcm.duplex.slave.pcm", "duplexasym"},
            {"ctl.duplex.type", "hw"},
            {"ctl.duplex.card", number},
        };
        for (const auto& [place, text] : settings) EXPECT_EQ(setting_of_alsa(place), text) << place;
        EXPECT_EQ(setting_of_alsa("pcm.nosuch.type"), "(nothing)");
    }
}

TEST_F(SoundConfig, RunsItsCommandsInOrder) {
    {
        test::ScriptedOs system;
        configure_card(1);
        Texts noted = test::run(test::configure_a_card);
        noted.back() = test::captured(1'024'000, test::list_sources);
        EXPECT_EQ(system.record, noted);
        EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf.bak")), asound_conf_lines(1));
    }
    configure_card(1);
    EXPECT_EQ(test::recorded_commands(), test::configure_a_card);
    EXPECT_EQ(killall.calls(),
              (test::StandIn::Calls{{"xfreerdp"}, {"pulseaudio"}, {"pulseaudio"}}));
    EXPECT_EQ(pulseaudio.calls(), (test::StandIn::Calls{{"--start"}}));
    EXPECT_EQ(pacmd.calls(), (test::StandIn::Calls{{"list-sources"}}));
    EXPECT_EQ(test::log_lines(), Texts{});
}

TEST_F(SoundConfig, ReplacesWhateverIsThere) {
    test::write_file("/etc/asound.conf", std::string(100'000, 'x'));
    test::write_file("/etc/asound.conf.bak", "an unfinished one");
    configure_card(0);
    EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf")), asound_conf_lines(0));
    std::filesystem::remove("/etc/asound.conf");
    std::filesystem::create_directory("/etc/asound.conf");
    configure_card(0);
    EXPECT_EQ(test::lines_of(read_file("/etc/asound.conf")), asound_conf_lines(0));
}

TEST_F(SoundConfig, StaysWhenNoNewOneCanBeWritten) {
    test::write_file("/etc/asound.conf", "former\n");
    std::filesystem::create_directory("/etc/asound.conf.bak");
    configure_card(1);
    EXPECT_EQ(read_file("/etc/asound.conf"), "former\n");
    EXPECT_EQ(test::log_lines(),
              Texts{"[ERROR] @write_lines /etc/asound.conf.bak: Is a directory"});
    Texts commands = test::configure_a_card;
    commands.erase(commands.begin() + 3);
    EXPECT_EQ(test::recorded_commands(), commands);
}

} // namespace qvtc::audio
