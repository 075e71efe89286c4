#pragma once

#include "connections/documents.hpp"
#include "core/json.hpp"
#include "support/support.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace qvtc::test {

using Texts = std::vector<std::string>;

inline constexpr const char* applied_key = "tc_config_param_6_1";
inline constexpr const char* requested_key = "tc_config_param_6_2";
inline constexpr const char* waits_key = "tc_config_param_7";
inline constexpr const char* brightness_key = "tc_config_param_17";
inline constexpr const char* power_saving_key = "com.valmora.thinclient.para_77";
inline constexpr const char* portal_key = "tc_config_param_3";
inline constexpr const char* demo_key = "tc_config_param_2";

inline constexpr const char* run_script = "/var/lib/ralo/display.sh >/dev/null 2>&1";

/// The command that follows a written configuration, whose resolution is looked at.
inline Texts written(const std::string& name) {
    EXPECT_EQ(read_file("/var/lib/ralo/res"), name + "\n");
    return {run_script};
}

inline Texts operator+(Texts texts, const Texts& more) {
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

inline std::string golden_file(const std::string& name) {
    return read_file(std::filesystem::path(QVTC_GOLDEN_DIRECTORY) / "display" / name);
}

inline std::string text_of(const Json& object) {
    return object == nullptr ? "null"
                             : json_object_to_json_string_ext(object.get(), JSON_C_TO_STRING_PLAIN);
}

/// Owns what a getter hands over.
inline std::string text_of(json_object* object) { return text_of(Json(object)); }

/// A terminal as after its first start, with nothing in the places that displays use.
class DisplayTerminal : public FreshTerminal {
  protected:
    DisplayTerminal() {
        for (const char* const path :
             {"/etc/X11/clone", "/etc/X11/reverse", "/home/root/hdmi", "/home/root/vga",
              "/home/root/n5095_notebook", "/etc/X11/xorg.conf", "/tmp/backup_xorg.conf",
              "/var/lib/ralo/res", "/etc/xdg/openbox"}) {
            std::filesystem::remove_all(path);
        }
        std::filesystem::create_directories("/etc/X11");
        std::filesystem::create_directories("/etc/xdg/openbox");
        std::filesystem::create_directories("/var/lib/ralo");
    }

    /// The device settings that are stored; nothing else is.
    static void store_settings(const Values& values) { store_items({{"configItem", values}}); }
};

} // namespace qvtc::test
