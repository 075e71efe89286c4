#include "system/update.hpp"

#include <cstdlib>

#include "core/log.hpp"
#include "core/os.hpp"
#include "core/shell.hpp"
#include "core/text.hpp"

namespace qvtc::system {

bool download_update(const std::string& url) {
    os().run("rm -rf /tmp/nfs/update.qvtc");
    // What begins with "-" would be an option, and no URL begins so.
    if (url.empty() || url.starts_with('-')) {
        log(Level::error, "url error!");
        return false;
    }
    os().run(textf("wget -c %s -P /tmp/nfs/", shell::word(url).c_str()));
    if (os().exists("/tmp/nfs/update.qvtc")) return true;
    log(Level::error, "download update file failed.");
    return false;
}

void run_update_script() {
    os().run("cd /tmp/nfs/;./qvupdate.sh");
    log(Level::info, "%s update done\n", "doupdate");
}

bool update_is_running() {
    const std::string count = os().capture("ps -ef|grep qvupdate.sh|grep -v grep |wc -l", 1024);
    // Deliberate: one is not enough. A running script is counted twice, by the
    // command line of the shell that started it and by its own.
    return std::atoi(count.c_str()) > 1;
}

void update() {
    os().run("cd /tmp/nfs/; ./qvupdate.sh");
    while (update_is_running()) os().sleep(1);
}

} // namespace qvtc::system
