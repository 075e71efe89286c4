#pragma once

#include "audio/commands.hpp"
#include "connections/documents.hpp"
#include "support/support.hpp"

#include <filesystem>

namespace qvtc::test {

/// A terminal in which nothing makes a sound: every program of the sound is replaced.
class SoundTerminal : public FreshTerminal {
  protected:
    SoundTerminal() {
        installed_default_pa();
        for (const char* file :
             {"/etc/asound.conf", "/etc/asound.conf.bak", "/etc/pulse/default.pa"})
            std::filesystem::remove(file);
        std::filesystem::create_directories("/etc/pulse");
    }

    /// PulseAudio's start script as it was before the first test; empty when there is none.
    static const std::string& installed_default_pa() {
        static const char* const file = "/etc/pulse/default.pa";
        static const std::string text = file_exists(file) ? read_file(file) : "";
        return text;
    }

    StandIn killall{"killall"};
    StandIn aplay{"aplay"};
    StandIn amixer{"amixer"};
    StandIn pacmd{"pacmd"};
    StandIn pulseaudio{"/usr/bin/pulseaudio"};
    StandIn set_default_sink{"/usr/bin/set_default_sink"};
};

/// Lines of "aplay -l", as a terminal prints them.
inline const std::string list_head = "**** List of PLAYBACK Hardware Devices ****\n";

inline std::string listed_card(unsigned number, const std::string& name,
                               const std::string& device) {
    return "card " + std::to_string(number) + ": Card [" + name + "], device 0: " + device + " [" +
           device + "]\n  Subdevices: 1/1\n  Subdevice #0: subdevice #0\n";
}

} // namespace qvtc::test
