#include "qvtcctl/system/reset_files.hpp"

#include <glob.h>
#include <string>

namespace qvtc::qvtcctl {
namespace {

/// On which terminals a file is touched.
enum class Where { everywhere, where_it_is, with_identity, off_hdmi };

struct Entry {
    ResetFile file;
    Where where;
};

constexpr std::string_view removed = "removed";
constexpr std::string_view left_behind = "removed: left by an interrupted save";

// clang-format off
constexpr Entry entries[] = {
    {{"/home/root/vpclientData.xml",                   "connections removed, settings written as above"}, Where::everywhere},
    {{"/etc/hostname",                                 "rewritten"},                       Where::with_identity},
    {{"/etc/sysconfig/network-scripts/ifcfg-eth0",     "rewritten: asks DHCP"},            Where::everywhere},
    {{"/etc/sysconfig/network-scripts/ifcfg-eth1",     "rewritten: asks DHCP"},            Where::everywhere},
    {{"/etc/asound.conf",                              "rewritten: the first sound card"}, Where::everywhere},
    {{"/etc/pulse/default.pa",                         "edited: no sound over HDMI"},      Where::off_hdmi},
    {{"/etc/X11/clone",                                "created"},                         Where::everywhere},
    {{"/etc/X11/xorg.conf",                            "rewritten: automatic resolution"}, Where::everywhere},
    {{"/etc/xdg/openbox/rc.xml",                       "replaced by its copy rc.xml.clone"}, Where::everywhere},
    {{"/var/lib/ralo/res",                             "rewritten: automatic resolution"}, Where::everywhere},
    {{"/home/root/hdmi",                               removed},                           Where::where_it_is},
    {{"/home/root/enable_hdmi_audio",                  removed},                           Where::off_hdmi},
    {{"/home/root/*.log",                              removed},                           Where::where_it_is},
    {{"/root/*.log",                                   removed},                           Where::where_it_is},
    {{"/root/*.txt",                                   removed},                           Where::where_it_is},
    {{"/home/root/.*.qvtc-*",               left_behind},                       Where::where_it_is},
    {{"/run/.*.qvtc-*",                     left_behind},                       Where::where_it_is},
    {{"/etc/.*.qvtc-*",                     left_behind},                       Where::where_it_is},
    {{"/etc/X11/.*.qvtc-*",                 left_behind},                       Where::where_it_is},
    {{"/etc/default/.*.qvtc-*",             left_behind},                       Where::where_it_is},
    {{"/etc/sysconfig/.*.qvtc-*",           left_behind},                       Where::where_it_is},
    {{"/etc/sysconfig/network-scripts/.*.qvtc-*", left_behind},                 Where::where_it_is},
};
// clang-format on

bool is_touched(const Entry& entry, const ResetFacts& facts) {
    switch (entry.where) {
    case Where::everywhere:
        return true;
    case Where::with_identity:
        return facts.names_host;
    case Where::off_hdmi:
        return facts.leaves_hdmi && matches_a_file(entry.file.path);
    case Where::where_it_is:
        break;
    }
    return matches_a_file(entry.file.path);
}

} // namespace

std::vector<ResetFile> reset_files(const ResetFacts& facts) {
    std::vector<ResetFile> files;
    for (const Entry& entry : entries) {
        if (is_touched(entry, facts)) files.push_back(entry.file);
    }
    return files;
}

bool matches_a_file(std::string_view pattern) {
    glob_t found{};
    const bool matches = glob(std::string(pattern).c_str(), 0, nullptr, &found) == 0;
    globfree(&found);
    return matches;
}

} // namespace qvtc::qvtcctl
