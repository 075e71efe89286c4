// What "qvtcctl factory-reset --plan" announces, held against what the reset then does.
#include "reset_programs.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <algorithm>
#include <filesystem>
#include <fnmatch.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/stat.h>

namespace qvtc::qvtcctl {
namespace {

using test::StandIn;
using test::write_file;
using Texts = std::vector<std::string>;
/// Each file, with what changes when somebody touches it.
using Files = std::map<std::string, std::string>;

/// Of /root, the files themselves: below it lie caches of the machine around the terminal.
bool is_left_out(const std::filesystem::path& directory) {
    return directory == "/run/disposable-terminal" || directory.parent_path() == "/root";
}

Files files_of_the_terminal() {
    Files files;
    for (const char* const top :
         {"/etc", "/home", "/root", "/run", "/usr/local/vpclient", "/var/lib/ralo"}) {
        std::error_code missing;
        for (std::filesystem::recursive_directory_iterator at(top, missing), end; at != end; ++at) {
            if (is_left_out(at->path())) at.disable_recursion_pending();
            struct stat status {};
            if (lstat(at->path().c_str(), &status) != 0 || S_ISDIR(status.st_mode)) continue;
            files[at->path()] = std::to_string(status.st_ino) + ' ' +
                                std::to_string(status.st_mtim.tv_sec) + '.' +
                                std::to_string(status.st_mtim.tv_nsec);
        }
    }
    return files;
}

/// The paths that are new, gone or different.
Texts touched(const Files& before, const Files& after) {
    Texts paths;
    for (const auto& [path, state] : before) {
        const auto found = after.find(path);
        if (found == after.end() || found->second != state) paths.push_back(path);
    }
    for (const auto& [path, state] : after) {
        if (!before.contains(path)) paths.push_back(path);
    }
    return paths;
}

/// The first column of the plan's table of files.
Texts announced_patterns(const std::string& plan) {
    Texts patterns;
    bool in_table = false;
    for (const std::string& line : test::lines_of(plan)) {
        if (in_table && line.starts_with("| /"))
            patterns.push_back(line.substr(2, line.find(' ', 2) - 2));
        in_table = in_table || line.starts_with("| FILE ");
    }
    return patterns;
}

bool matches(const std::string& pattern, const std::string& path) {
    return fnmatch(pattern.c_str(), path.c_str(), FNM_PATHNAME) == 0;
}

/// Every command of a reset, and the words of the plan for what it does; none for a question.
constexpr std::pair<const char*, const char*> commands[] = {
    {"/var/lib/ralo/display.sh >/dev/null 2>&1", "in automatic resolution"},
    {"nmcli connect|grep wlan|awk '{print $2}' |xargs nmcli c delet",
     "forgets the wireless networks"},
    {"rm -rf /root/tclog.txt", "/root/*.txt "},
    {"echo \"TC4711\" > /etc/hostname", "sets the host name to TC4711"},
    {"rm -rf /root/*.log", "/root/*.log "},
    {"rm -rf /home/root/*.log", "/home/root/*.log "},
    {"rm -rf /root/*.txt", "/root/*.txt "},
    {"aplay -l|grep card|grep -v USB|awk 'NR==1'|awk -F ':' {print'$1'}|awk -F ' ' {print'$2'}",
     ""},
    {"cat /proc/cpuinfo |grep \"model name\" |sed -n 1p", ""},
    {"rm -rf /home/root/enable_hdmi_audio", "/home/root/enable_hdmi_audio "},
    {"sed -i \"/load-module module-alsa-sink device/ s/\\(load-module module-alsa-sink "
     "device=\\).*/\\1dmixer mmap=0/\" /etc/pulse/default.pa",
     "/etc/pulse/default.pa "},
    {"killall xfreerdp  >/dev/null 2>&1", "ends RDP sessions"},
    {"killall pulseaudio >/dev/null 2>&1", "sets up the sound"},
    {"rm -rf /etc/asound.conf;mv /etc/asound.conf.bak /etc/asound.conf", "/etc/asound.conf "},
    {"/usr/bin/pulseaudio --start", "sets up the sound"},
    {"pacmd list-sources", ""},
    {"touch /etc/X11/clone", "/etc/X11/clone "},
    {"rm -rf /etc/xdg/openbox/rc.xml", "/etc/xdg/openbox/rc.xml "},
    {"cp /etc/xdg/openbox/rc.xml.clone /etc/xdg/openbox/rc.xml", "/etc/xdg/openbox/rc.xml "},
    {"rm -rf /home/root/hdmi", "/home/root/hdmi "},
    {"reboot > /dev/null 2>&1", "restarts the terminal"},
};

/// Leaves something for every step of a reset to do.
void use_the_terminal() {
    for (const char* const path :
         {"/root/own.log", "/root/tclog.txt", "/root/notes.txt", "/home/root/freerdp.log",
          "/home/root/hdmi", "/home/root/enable_hdmi_audio", "/etc/x11vnc.pass",
          "/home/root/system.log.old", "/etc/xdg/openbox/rc.xml.clone"})
        write_file(path, "x\n");
    for (const char* const directory : {"/home/root", "/run", "/etc", "/etc/X11", "/etc/default",
                                        "/etc/sysconfig", "/etc/sysconfig/network-scripts"})
        write_file(std::string(directory) + "/.file.qvtc-draft", "half of it");
    write_file("/etc/pulse/default.pa", "load-module module-alsa-sink device=hw:0,3\n");
    test::Transcript()
        .run("qvtcctl connection add rdp name=office serverAddress=10.0.0.5")
        .run("qvtcctl manager-password --password-stdin", "secret\n")
        .run("sed -i 's#</configItem>#<tc_config_param_11>4711</tc_config_param_11>&#' "
             "/home/root/vpclientData.xml; ip link add wlan0 type veth peer name far0");
}

} // namespace

TEST(FactoryResetPlan, NamesEveryFileThatTheResetTouchesAndEveryThingThatItDoes) {
    const test::ResetPrograms programs;
    StandIn cat("cat"); // what the processor is asked with
    cat.prints("model name\t: Intel(R) Celeron(R) N5095 @ 2.00GHz\n");
    use_the_terminal();
    test::Transcript announced;
    test::forget_commands();
    const std::string plan = announced.run("qvtcctl factory-reset --plan").text();
    const std::size_t asked = test::recorded_commands_of(QVTCCTL_PROGRAM).size();
    const Texts patterns = announced_patterns(plan);
    const Files before = files_of_the_terminal();
    test::forget_commands();
    test::Transcript().run("qvtcctl factory-reset --yes");
    const Texts paths = touched(before, files_of_the_terminal());
    ASSERT_EQ(programs.reboot.calls().size(), 1U);

    for (const std::string& path : paths) {
        EXPECT_TRUE(std::any_of(patterns.begin(), patterns.end(),
                                [&](const std::string& each) { return matches(each, path); }))
            << path << " is touched, and not announced:\n"
            << plan;
    }
    for (const std::string& pattern : patterns) {
        EXPECT_TRUE(std::any_of(paths.begin(), paths.end(),
                                [&](const std::string& path) { return matches(pattern, path); }))
            << pattern << " is announced, and not touched";
    }
    Texts run = test::recorded_commands_of(QVTCCTL_PROGRAM);
    run.erase(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(asked)); // for the plan
    EXPECT_GE(run.size(), std::size(commands));
    for (const std::string& command : run) {
        const auto* const known =
            std::find_if(std::begin(commands), std::end(commands),
                         [&](const auto& each) { return each.first == command; });
        ASSERT_NE(known, std::end(commands)) << command << " is not announced";
        EXPECT_NE(plan.find(known->second), std::string::npos) << known->second;
    }
}

TEST(FactoryResetPlan, NamesOnlyWhatIsThere) {
    const test::ResetPrograms programs;
    test::Transcript announced;
    const Texts patterns = announced_patterns(announced.run("qvtcctl factory-reset --plan").text());
    EXPECT_EQ(
        patterns,
        (Texts{"/home/root/vpclientData.xml", "/etc/sysconfig/network-scripts/ifcfg-eth0",
               "/etc/sysconfig/network-scripts/ifcfg-eth1", "/etc/asound.conf", "/etc/X11/clone",
               "/etc/X11/xorg.conf", "/etc/xdg/openbox/rc.xml", "/var/lib/ralo/res",
               "/home/root/*.log"})); // begun by what the plan asks the library
}

} // namespace qvtc::qvtcctl
