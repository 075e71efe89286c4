#include "clients/horizon.hpp"

#include "clients/password.hpp"
#include "clients/watcher.hpp"
#include "core/encodings.hpp"
#include "core/log.hpp"
#include "core/os.hpp"
#include "core/paths.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::clients {

namespace {

using connections::Field;

std::string screens(const HorizonFacts& facts) {
    if (facts.screens_cloned) return " --fullscreen";
    const std::string& choice = facts.record[Field::monitorSelect];
    if (choice == "extend") return " --allmonitors --monitors=1,2";
    return choice == "vga" ? " --monitors=1" : " --monitors=2";
}

/// The desktop's name is stored as hexadecimal text.
std::string desktop_name(const connections::Record& record) {
    std::string name;
    hex_to_bytes(record[Field::desktop], name);
    return c_text(name);
}

std::string logon(const HorizonFacts& facts) {
    const connections::Record& record = facts.record;
    std::string text = textf(" -s %s ", shell::bare(record[Field::serverAddress]).c_str());
    if (!record[Field::username].empty()) {
        text += textf(" -u %s ", shell::bare(record[Field::username]).c_str());
        // Deliberate: without a stored password the option has no value.
        text += textf(" -p %s ", shell::bare(facts.password.value_or("")).c_str());
    }
    if (!record[Field::domain].empty())
        text += textf(" -d %s ", shell::bare(record[Field::domain]).c_str());
    if (!record[Field::desktop].empty())
        text += textf(" -n %s ", shell::bare(desktop_name(record)).c_str());
    return text;
}

std::string protocol(const std::string& choice) {
    if (choice.size() < 3) return " --protocol=PCOIP";
    if (contains(choice, "RDP")) {
        // Deliberate: the double blank and the double slash are what the client has always been
        // given.
        return " --protocol=RDP --rdpclient=xfreerdp --xfreerdpOptions=' +auto-reconnect  /rfx "
               "/sound:sys:pulse "
               "/microphone:sys:pulse //multimedia:decoder:gstreamer -compression +fonts "
               "+wallpaper +themes "
               "+bitmap-cache -window-drag -menu-anims /f ' ";
    }
    return contains(choice, "BLAST") ? " --protocol=BLAST" : " --protocol=PCOIP";
}

} // namespace

std::string horizon_command_line(const HorizonFacts& facts) {
    std::string line =
        textf("env GTK2_RC_FILES=/usr/lib/vmware/gtkrc LANG=\"%s.UTF-8\" "
              "LD_LIBRARY_PATH=$LD_LIBRARY_PATH:/usr/lib/vmware vmware-view -q --once --enableMMR ",
              facts.language == "zh_CN" ? "zh_CN" : "en_US");
    line += screens(facts) + logon(facts);
    if (!contains(facts.menu_bar, "on")) line += " --nomenubar ";
    return line + protocol(facts.record[Field::vmwareProtocol]) + " &";
}

bool launch_horizon(connections::ConnectionId id) {
    // Deliberate: the client is ended twice, and before it is known whether there will be another.
    for (const char* const command :
         {"killall vmware-remotemks", "killall vmware-view", "killall vmware-view"}) {
        os().run(command);
    }
    HorizonFacts facts;
    facts.record = connections::stored_record(connections::type_number::horizon, id);
    Password password = decode_password(facts.record[Field::password]);
    if (!password.decodable) {
        // Deliberate: information, where the RDP client's launcher reports an error.
        log(Level::info, "@qvlaunchclient password decode error");
        return false;
    }
    facts.password = std::move(password.text);
    facts.language = store::setting(store::keys::language);
    facts.menu_bar = store::setting(store::keys::horizon_menu_bar);
    facts.screens_cloned = os().exists(paths::screens_cloned);
    const std::string command = horizon_command_line(facts);
    log(Level::info, "vmware cmdline:%s", command.c_str());
    os().run(command);
    return start_watch(watch_for_outcome, "vmware-view");
}

} // namespace qvtc::clients
